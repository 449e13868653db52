#include "OvGsManipAngle.h"

#include "KxGsEditor.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "OvGsAngle.h"
#include "OvGuiMeasurementTool.h"

#include <QGraphicsSceneMouseEvent>
#include <QLineF>
#include <QPolygonF>

namespace {

const int kAngleType = 66651;
// The shortest line that can be fixed.
const double kMinLineLength = 10.0;

OvGsManipFrame::Kind angleKind()
{
    OvGsManipFrame::Kind kind = OvGsManipFrame::standardKind(
        "OvGsManipAngle", kAngleType, QT_TRANSLATE_NOOP("OvGsManipAngle", "Angle"),
        { QT_TRANSLATE_NOOP("OvGsManipAngle", "Inner angle"), QT_TRANSLATE_NOOP("OvGsManipAngle", "Outer angle") },
        "nodes", QMetaType::QPolygonF, OvGsManipFrame::AngleButton);
    kind.units = { OvGuiMeasurementTool::UnitDeg };
    kind.magnifierLeadsHover = true;
    return kind;
}

// The label starts above and right of the arc's start, clear of the trash button
// below and right of node 0; the angle keeps that offset as it changes.
void liftLabel(OvGsAngle* anAngle)
{
    const double gap = anAngle->trashOffset.x();
    anAngle->setLabelPos(anAngle->getLabelAnchor() + QPointF(gap, -gap - anAngle->getLabelHeight()));
}

} // namespace

OvGsManipAngle::OvGsManipAngle(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipFrame(aToolBase, aPanel, anUndoStack, angleKind())
    , activeNode(-1)
{
    initFrame();
}

OvGsManipAngle::~OvGsManipAngle() = default;

QString OvGsManipAngle::getCalculatedValueAsString(const QString& aName, const KxGsObject* anObj)
{
    return KxGsManipulator::getCalculatedValueAsString(aName, anObj);
}

QString OvGsManipAngle::getCalculatedValueAsString(const QString& aName, const KxKernelObjectData* aData)
{
    return KxGsManipulator::getCalculatedValueAsString(aName, aData);
}

OvGsAngle* OvGsManipAngle::getInProgressAngle() const
{
    return inProgress;
}

int OvGsManipAngle::getActiveNode() const
{
    return activeNode;
}

KxGsObject* OvGsManipAngle::getInProgressItem() const
{
    return inProgress;
}

void OvGsManipAngle::forgetInProgressItem()
{
    inProgress = nullptr;
    activeNode = -1;
}

QString OvGsManipAngle::valueNameOf(const KxGsObject* anItem) const
{
    const bool inner = !anItem || anItem->type() != kAngleType || static_cast<const OvGsAngle*>(anItem)->innerAngle;
    return valueNames.value(inner ? 0 : 1);
}

bool OvGsManipAngle::fixActiveNode(const QPointF& aPos)
{
    OvGsAngle* angle = inProgress;
    if ((activeNode == 1 || activeNode == 3)
        && QLineF(angle->nodes.at(activeNode - 1) + angle->pos(), aPos).length() < kMinLineLength)
        return false;
    angle->setNode(activeNode, aPos);
    activeNode = -1;
    return true;
}

void OvGsManipAngle::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    if (anEvent->button() != Qt::LeftButton) {
        anEvent->ignore();
        return;
    }
    anEvent->accept();
    const QPointF pos = anEvent->pos();
    OvGsAngle* angle = inProgress;
    if (!angle) {
        angle = new OvGsAngle(this, editor, QString());
        inProgress = angle;
        angle->startCreationMode(getPanel()->innerAngleMode);
        dressNewItem(angle);
        angle->ensureLabelVisible();
        liftLabel(angle);
        angle->setPos(pos);
        angle->allowTrashVisible(false);
        angle->setNode(0, pos);
        angle->setNode(1, pos);
        activeNode = 1;
        editor->setCurrentObject(angle, false);
        if (!isLocalMagnifier())
            showMagnifierAt(pos);
        return;
    }
    if (activeNode < 0) {
        if (angle->nodes.size() == 2) {
            angle->setNode(2, pos);
            angle->setNode(3, pos);
            activeNode = 3;
        }
        return;
    }
    if (fixActiveNode(pos) && angle->nodes.size() == 4) {
        finalizeAngle();
        if (isLocalMagnifier())
            removeLocalMagnifier();
    }
}

void OvGsManipAngle::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (!inProgress || activeNode < 0 || anEvent->button() != Qt::LeftButton)
        return;
    if (fixActiveNode(anEvent->pos()) && inProgress->nodes.size() == 4)
        finalizeAngle();
}

void OvGsManipAngle::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    mouseMove(moveMagnifier(anEvent->pos(), anEvent->scenePos()));
    anEvent->accept();
}

void OvGsManipAngle::pointerMovedInProgress(const QPointF& aPos)
{
    mouseMove(aPos);
}

void OvGsManipAngle::mouseMove(const QPointF& aPos)
{
    OvGsAngle* angle = inProgress;
    if (!angle)
        return;
    if (activeNode >= 0)
        angle->setNode(activeNode, aPos);
    updateDisplayValue(angle, valueNameOf(angle), false, true);
    angle->ensureLabelVisible();
}

void OvGsManipAngle::finalizeAngle()
{
    OvGsAngle* angle = inProgress;
    if (!angle)
        return;
    angle->setFinalShape();
    angle->setPenStyle(Qt::SolidLine, getPanel()->getLineWidth());
    const int index = adoptFinishedItem(angle);
    storeNewObject(angle, index, angle->nodes);
    inProgress = nullptr;
    activeNode = -1;
}

void OvGsManipAngle::applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                         const QPoint& anOrigin)
{
    OvGsManipFrame::applyStoredGeometry(anItem, aKeyframes, anOrigin);
    // The item draws and measures the angle its stored value name names.
    static_cast<OvGsAngle*>(anItem)->innerAngle = keyframeValue(aKeyframes, 2).toString() != valueNames.value(1);
    static_cast<OvGsAngle*>(anItem)->setAllNodes(
        getDescriptor()->getValue(aKeyframes, QStringLiteral("nodes")).value<QPolygonF>());
}

QVariant OvGsManipAngle::itemGeometry(const KxGsObject* anItem) const
{
    return static_cast<const OvGsAngle*>(anItem)->nodes;
}

void OvGsManipAngle::objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kAngleType || !aData || gsObjectMap.contains(anIdx))
        return;
    auto* angle = new OvGsAngle(this, editor, QString());
    dressStoredItem(angle, anIdx, aData->getDefaultKeyframes());
    liftLabel(angle);
    gsObjectMap.insert(anIdx, angle);
}

OvGsManipFrame::Measure OvGsManipAngle::measureItem(const QString&, const KxGsObject* anItem) const
{
    Measure measure;
    measure.valid = true;
    measure.value = static_cast<const OvGsAngle*>(anItem)->angleValue;
    measure.unit = OvGuiMeasurementTool::UnitDeg;
    return measure;
}

OvGsManipFrame::Measure OvGsManipAngle::measureKeyframes(const QString& aName,
                                                         const KxParamKeyframeVector& aKeyframes) const
{
    const QVariant stored = getDescriptor()->getValue(aKeyframes, QStringLiteral("nodes"));
    const QPolygonF nodes = stored.canConvert<QPolygonF>() ? stored.value<QPolygonF>() : QPolygonF();
    if (nodes.size() != 4)
        return Measure();
    const QPointF& a = nodes.at(0);
    const QPointF& b = nodes.at(1);
    const QPointF& c = nodes.at(2);
    const QPointF& d = nodes.at(3);
    const QLineF first(a, b);
    const QLineF second(c, d);
    // The sign of the cross product tells from which arm the counter-clockwise
    // sweep on screen is the inner angle.
    const double cross = (d.y() - c.y()) * (b.x() - a.x()) - (d.x() - c.x()) * (b.y() - a.y());
    double degrees = cross < 0.0 ? first.angleTo(second) : second.angleTo(first);
    if (aName == valueNames.value(1))
        degrees = 360.0 - degrees;
    Measure measure;
    measure.valid = true;
    measure.value = degrees;
    measure.unit = OvGuiMeasurementTool::UnitDeg;
    return measure;
}
