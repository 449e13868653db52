#include "OvGsManipDistance.h"

#include "CmdCreateObject.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvGsCircle.h"
#include "OvGsDistance.h"
#include "OvGuiMeasurementTool.h"
#include "OvQtCompat.h"

#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QtMath>

namespace {

const int kDistanceType = 66653;
const int kCircleType = 66656;
const int kCircleDistanceVariant = 4;
// Stored after the label place: the line name that relative lines name when
// this distance serves as their base.
const char* const kLineKey = "line";
const char* const kLinePrefix = "Distance_Line_";
// A release or second press must leave this box around the start point.
const double kClickBox = 10.0;

OvGsManipFrame::Kind distanceKind()
{
    OvGsManipFrame::Kind kind = OvGsManipFrame::standardKind(
        "OvGsManipDistance", kDistanceType, QT_TRANSLATE_NOOP("OvGsManipDistance", "Distance"),
        { QT_TRANSLATE_NOOP("OvGsManipDistance", "Length") }, "len", QMetaType::QPoint, OvGsManipFrame::DistanceButton);
    kind.freehandTypes = (1u << 0) | (1u << kCircleDistanceVariant);
    return kind;
}

QPoint rounded(const QPointF& aPoint)
{
    return QPoint(OvQtCompat::round(aPoint.x()), OvQtCompat::round(aPoint.y()));
}

double lengthOf(const QPointF& aVector)
{
    return qSqrt(aVector.x() * aVector.x() + aVector.y() * aVector.y());
}

} // namespace

int OvGsManipDistance::theCount = 0;

OvGsManipDistance::OvGsManipDistance(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipFrame(aToolBase, aPanel, anUndoStack, distanceKind())
{
    initFrame();
}

OvGsManipDistance::~OvGsManipDistance() = default;

bool OvGsManipDistance::isCircleMode() const
{
    return getPanel()->freehandType == kCircleDistanceVariant;
}

OvGsDistance* OvGsManipDistance::getInProgressDistance() const
{
    return inProgress;
}

QPointF OvGsManipDistance::getStartPoint() const
{
    return startPoint;
}

KxGsObject* OvGsManipDistance::getInProgressItem() const
{
    return inProgress;
}

void OvGsManipDistance::forgetInProgressItem()
{
    inProgress = nullptr;
}

OvGsCircle* OvGsManipDistance::findCircleAt(const QPointF& aPos, const OvGsCircle* aSkip) const
{
    OvGsCircle* nearest = nullptr;
    float nearestDistance = 0.0f;
    const QList<KxGsObject*> children = editor->getAllChildGsObjects();
    for (KxGsObject* obj : children) {
        if (obj->type() != kCircleType || obj == aSkip)
            continue;
        auto* circle = static_cast<OvGsCircle*>(obj);
        const double side = circle->radius;
        const QRectF pick(circle->pos() - QPointF(side / 2.0, side / 2.0), QSizeF(side, side));
        if (!pick.contains(aPos))
            continue;
        const QPointF delta = circle->pos() - aPos;
        const float distance = float(delta.x() * delta.x() + delta.y() * delta.y());
        if (!nearest || distance < nearestDistance) {
            nearest = circle;
            nearestDistance = distance;
        }
    }
    return nearest;
}

OvGsDistance* OvGsManipDistance::createLine()
{
    auto* item = new OvGsDistance(this, editor, getObjectTypeName(0),
                                  QStringLiteral("Distance_Line_%1").arg(theCount++));
    item->manipulator = this;
    inProgress = item;
    dressNewItem(item);
    item->setPos(rounded(startPoint));
    item->setVector(QPointF(15.0, -15.0));
    item->setLabelPos(QPointF(10.0, -10.0));
    item->ensureLabelVisible();
    item->allowTrashVisible(false);
    editor->setCurrentObject(item, false);
    return item;
}

void OvGsManipDistance::followMouse(const QPointF& aPos)
{
    inProgress->setVector(rounded(aPos - startPoint));
    updateDisplayValue(inProgress, valueNames.value(0), false, true);
    inProgress->ensureLabelVisible();
}

void OvGsManipDistance::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->ignore();
    if (anEvent->button() != Qt::LeftButton)
        return;
    const QPointF pos = anEvent->pos();
    if (inProgress) {
        const double dx = qAbs(pos.x() - startPoint.x());
        const double dy = qAbs(pos.y() - startPoint.y());
        if (dx <= kClickBox && dy <= kClickBox)
            return;
        finalizeDistance();
        if (isLocalMagnifier())
            removeLocalMagnifier();
        return;
    }
    if (isCircleMode()) {
        OvGsCircle* circle = findCircleAt(pos, nullptr);
        if (!circle)
            return;
        startCircle = circle;
        startPoint = circle->pos();
    } else {
        startPoint = pos;
    }
    createLine();
    if (!isLocalMagnifier())
        showMagnifierAt(pos);
    anEvent->accept();
}

bool OvGsManipDistance::claimsPress(const QPointF& aPos)
{
    return isCircleMode() && (inProgress || findCircleAt(aPos, nullptr));
}

void OvGsManipDistance::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    if (!editor->getEditorArea().contains(anEvent->pos())) {
        anEvent->ignore();
        return;
    }
    moveMagnifier(anEvent->pos(), anEvent->scenePos());
    if (inProgress)
        followMouse(anEvent->pos());
    moveMagnifier(anEvent->pos(), anEvent->scenePos());
    anEvent->accept();
}

void OvGsManipDistance::hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent)
{
    if (inProgress)
        followMouse(anEvent->pos());
}

void OvGsManipDistance::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->ignore();
    if (isCircleMode())
        return;
    const double dx = qAbs(anEvent->pos().x() - startPoint.x());
    const double dy = qAbs(anEvent->pos().y() - startPoint.y());
    if (dx < kClickBox && dy < kClickBox)
        return;
    // Exactly 10 units is neither a click nor a finished drag: accepted, still drawing.
    if (inProgress && (dx > kClickBox || dy > kClickBox))
        finalizeDistance();
    anEvent->accept();
}

void OvGsManipDistance::finalizeDistance()
{
    OvGsDistance* item = inProgress;
    if (!item)
        return;

    if (isCircleMode()) {
        OvGsCircle* target = findCircleAt(item->pos() + item->vector, startCircle);
        startCircle = nullptr;
        if (!target) {
            if (editor->getCurrentObject() == item) {
                inProgress = nullptr;
                editor->setCurrentObject(nullptr, false);
                item->discard();
            }
            return;
        }
        const QPointF vector = item->vector;
        item->setLabelPos(QPointF(vector.x() / 2, item->getLabelFontPixSize() + vector.y() / 2));
        item->setVector(target->pos() - item->pos());
    }

    const int index = adoptFinishedItem(item);
    item->setPenStyle(Qt::SolidLine, item->penWidth);

    const KxKernelObjectDataDescr* descr = getDescriptor();
    // Stored positions are whole pixels; the label shows the stored text and
    // takes its final place before that place is stored.
    const QPointF end = item->pos() + item->vector;
    item->setPos(rounded(item->pos()));
    item->setVector(rounded(end - item->pos()));
    updateDisplayValue(item, valueNameOf(item), false, false);
    item->ensureLabelVisible();
    KxParamKeyframeVector keyframes = createObjectKeyframes(item, rounded(item->vector));
    descr->setValue(keyframes, QString::fromLatin1(kLineKey), item->lineName);
    auto* data = new KxKernelObjectData(keyframes, descr->getKeyframeTypes(), false);
    pushOwnCommand(new CmdCreateObject(kDistanceType, index, data));
    showStoredObject(item);

    changeAnimationGsObject(item, kernelData->getMediaInfo().isVideoFile(), false, false);
    inProgress = nullptr;
}

void OvGsManipDistance::objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kDistanceType || !aData || gsObjectMap.contains(anIdx))
        return;
    // A file written before the name was stored gives a fresh one; a stored
    // name keeps the counter beyond its number.
    const QString stored = getDescriptor()->getValue(aData->getDefaultKeyframes(), QString::fromLatin1(kLineKey))
                               .toString();
    const QString prefix = QString::fromLatin1(kLinePrefix);
    bool numbered = false;
    const int number = stored.startsWith(prefix) ? stored.mid(prefix.size()).toInt(&numbered) : -1;
    if (numbered && number >= theCount)
        theCount = number + 1;
    const QString name = stored.isEmpty() ? prefix + QString::number(theCount++) : stored;
    auto* item = new OvGsDistance(this, editor, QString(), name);
    item->manipulator = this;
    dressStoredItem(item, anIdx, aData->getDefaultKeyframes());
    gsObjectMap.insert(anIdx, item);
}

void OvGsManipDistance::describeExtraParams(KxKernelObjectDataDescr* aDescr) const
{
    aDescr->addParamDescr(kLineNameParam, QString::fromLatin1(kLineKey), QMetaType::QString,
                          ParamDescr::KeyframeConstant);
}

void OvGsManipDistance::applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                            const QPoint& anOrigin)
{
    auto* item = static_cast<OvGsDistance*>(anItem);
    item->setPos(keyframeValue(aKeyframes, 3).toPoint() - anOrigin);
    item->setVector(getDescriptor()->getValue(aKeyframes, QStringLiteral("len")).toPoint());
}

QVariant OvGsManipDistance::itemGeometry(const KxGsObject* anItem) const
{
    return rounded(static_cast<const OvGsDistance*>(anItem)->vector);
}

OvGsManipFrame::Measure OvGsManipDistance::measureItem(const QString&, const KxGsObject* anItem) const
{
    return lengthFromPixels(lengthOf(static_cast<const OvGsDistance*>(anItem)->vector));
}

OvGsManipFrame::Measure OvGsManipDistance::measureKeyframes(const QString&,
                                                            const KxParamKeyframeVector& aKeyframes) const
{
    return lengthFromPixels(lengthOf(getDescriptor()->getValue(aKeyframes, QStringLiteral("len")).toPoint()));
}
