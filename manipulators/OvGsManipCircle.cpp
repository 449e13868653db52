#include "OvGsManipCircle.h"

#include "KxGsEditor.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "OvGsCircle.h"
#include "OvGuiMeasurementTool.h"
#include "OvQtCompat.h"

#include <QGraphicsSceneMouseEvent>
#include <QPolygonF>
#include <QtMath>

namespace {

const int kCircleType = 66656;
// A release must leave this box around the press that placed the last node.
const double kClickBox = 10.0;

OvGsManipFrame::Kind circleKind()
{
    OvGsManipFrame::Kind kind = OvGsManipFrame::standardKind(
        "OvGsManipCircle", kCircleType, QT_TRANSLATE_NOOP("OvGsManipCircle", "Circle"),
        { QT_TRANSLATE_NOOP("OvGsManipCircle", "Radius"), QT_TRANSLATE_NOOP("OvGsManipCircle", "Diameter") },
        "nodes", QMetaType::QPolygonF, OvGsManipFrame::RadiusButton);
    kind.fontChangeEnsuresLabel = false;
    kind.magnifierLeadsHover = true;
    kind.clearsUnitsAfterDiscard = false;
    return kind;
}

QPointF rounded(const QPointF& aPoint)
{
    return QPointF(OvQtCompat::round(aPoint.x()), OvQtCompat::round(aPoint.y()));
}

bool leftBox(const QPointF& aPoint, const QPointF& aFrom)
{
    return qAbs(aPoint.x() - aFrom.x()) >= kClickBox || qAbs(aPoint.y() - aFrom.y()) >= kClickBox;
}

} // namespace

OvGsManipCircle::OvGsManipCircle(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipFrame(aToolBase, aPanel, anUndoStack, circleKind())
{
    initFrame();
}

OvGsManipCircle::~OvGsManipCircle() = default;

OvGsCircle* OvGsManipCircle::getInProgressCircle() const
{
    return inProgress;
}

KxGsObject* OvGsManipCircle::getInProgressItem() const
{
    return inProgress;
}

void OvGsManipCircle::forgetInProgressItem()
{
    inProgress = nullptr;
}

QString OvGsManipCircle::valueNameOf(const KxGsObject* anItem) const
{
    const bool radius = !anItem || anItem->type() != kCircleType || static_cast<const OvGsCircle*>(anItem)->radiusMode;
    return valueNames.value(radius ? 0 : 1);
}

void OvGsManipCircle::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    if (anEvent->button() != Qt::LeftButton) {
        anEvent->ignore();
        return;
    }
    anEvent->accept();
    const QPointF pos = anEvent->pos();
    if (!inProgress) {
        startPoint = pos;
        lastPressPoint = pos;
        auto* circle = new OvGsCircle(this, editor, QString(), getPanel()->radiusMode);
        inProgress = circle;
        dressNewItem(circle);
        circle->setPos(rounded(startPoint));
        circle->setNode(0, rounded(startPoint));
        circle->setNode(1, rounded(lastPressPoint));
        circle->ensureLabelVisible();
        circle->allowTrashVisible(false);
        editor->setCurrentObject(circle, false);
        if (!isLocalMagnifier())
            showMagnifierAt(pos);
        return;
    }
    if (inProgress->nodes.size() == 2) {
        inProgress->setNode(2, rounded(pos));
        lastPressPoint = pos;
    } else if (inProgress->nodes.size() == 3) {
        if (isLocalMagnifier())
            removeLocalMagnifier();
        finalizeCircle();
    }
}

void OvGsManipCircle::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (!inProgress || anEvent->button() != Qt::LeftButton)
        return;
    const QPointF pos = anEvent->pos();
    if (inProgress->nodes.size() == 2) {
        if (leftBox(pos, startPoint)) {
            inProgress->setNode(2, rounded(pos));
            lastPressPoint = pos;
        }
    } else if (inProgress->nodes.size() == 3 && leftBox(pos, lastPressPoint)) {
        if (isLocalMagnifier())
            removeLocalMagnifier();
        finalizeCircle();
    }
}

void OvGsManipCircle::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    mouseMove(moveMagnifier(anEvent->pos(), anEvent->scenePos()));
    anEvent->accept();
}

void OvGsManipCircle::pointerMovedInProgress(const QPointF& aPos)
{
    mouseMove(aPos);
}

void OvGsManipCircle::mouseMove(const QPointF& aPos)
{
    OvGsCircle* circle = inProgress;
    if (!circle)
        return;
    if (circle->nodes.size() >= 2)
        circle->setNode(circle->nodes.size() - 1, rounded(aPos));
    updateDisplayValue(circle, valueNameOf(circle), false, true);
    circle->ensureLabelVisible();
}

void OvGsManipCircle::finalizeCircle()
{
    OvGsCircle* circle = inProgress;
    if (!circle)
        return;
    circle->setPenStyle(Qt::SolidLine, getPanel()->getLineWidth());
    const int index = adoptFinishedItem(circle);
    storeNewObject(circle, index, QPolygonF(circle->nodes));
    inProgress = nullptr;
}

void OvGsManipCircle::applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                          const QPoint& anOrigin)
{
    OvGsManipFrame::applyStoredGeometry(anItem, aKeyframes, anOrigin);
    static_cast<OvGsCircle*>(anItem)->setCentredNodes(
        getDescriptor()->getValue(aKeyframes, QStringLiteral("nodes")).value<QPolygonF>());
}

QVariant OvGsManipCircle::itemGeometry(const KxGsObject* anItem) const
{
    return QPolygonF(static_cast<const OvGsCircle*>(anItem)->nodes);
}

void OvGsManipCircle::objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kCircleType || !aData || gsObjectMap.contains(anIdx))
        return;
    const KxParamKeyframeVector keyframes = aData->getDefaultKeyframes();
    const bool radiusMode = keyframeValue(keyframes, 2).toString() == valueNames.value(0);
    auto* circle = new OvGsCircle(this, editor, QString(), radiusMode);
    dressStoredItem(circle, anIdx, keyframes);
    gsObjectMap.insert(anIdx, circle);
}

OvGsManipFrame::Measure OvGsManipCircle::measureItem(const QString& aName, const KxGsObject* anItem) const
{
    const double radius = static_cast<const OvGsCircle*>(anItem)->radius;
    return lengthFromPixels(aName == valueNames.value(1) ? 2.0 * radius : radius);
}

OvGsManipFrame::Measure OvGsManipCircle::measureKeyframes(const QString& aName,
                                                          const KxParamKeyframeVector& aKeyframes) const
{
    const QPolygonF nodes = getDescriptor()->getValue(aKeyframes, QStringLiteral("nodes")).value<QPolygonF>();
    if (nodes.isEmpty())
        return Measure();
    const double radius = qSqrt(QPointF::dotProduct(nodes.first(), nodes.first()));
    return lengthFromPixels(aName == valueNames.value(1) ? 2.0 * radius : radius);
}
