#include "OvGsManipDistance.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvGsCircle.h"
#include "OvGsDistance.h"
#include "OvGuiMeasurementTool.h"

#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QtMath>

namespace {

const int kDistanceType = 66653;
const int kCircleType = 66656;
const int kCircleDistanceVariant = 4;
// A release or second press must leave this box around the start point.
const double kClickBox = 10.0;

OvGsManipFrame::Kind distanceKind()
{
    OvGsManipFrame::Kind kind;
    kind.context = "OvGsManipDistance";
    kind.objectType = kDistanceType;
    kind.typeName = QT_TRANSLATE_NOOP("OvGsManipDistance", "Distance");
    kind.valueNames = { QT_TRANSLATE_NOOP("OvGsManipDistance", "Length") };
    kind.geometryKey = "len";
    kind.geometryType = QMetaType::QPoint;
    kind.drawButton = OvGsManipFrame::DistanceButton;
    kind.freehandTypes = (1u << 0) | (1u << kCircleDistanceVariant);
    kind.drawButtonSlot = SLOT(slotDrawButtonToggled(bool));
    kind.units = { 0, 1, 2, 5, 3, 4, 6, 7, 8 };
    kind.squaredUnits = false;
    kind.removalSignal = SIGNAL(signalObjectRemoved(const int, const int));
    kind.removalSlot = SLOT(slotObjectRemovedInKernel(const int, const int));
    kind.followsMediaAndTool = true;
    kind.fontChangeEnsuresLabel = true;
    return kind;
}

QPoint rounded(const QPointF& aPoint)
{
    return QPoint(qRound(aPoint.x()), qRound(aPoint.y()));
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
    QString stepText;
    const double step = getCalibrationStep(stepText);
    const QString typeName = getObjectTypeName(0);
    OvGuiMeasurementTool* panel = getPanel();

    auto* item = new OvGsDistance(this, editor, typeName, QStringLiteral("Distance_Line_%1").arg(theCount++));
    item->manipulator = this;
    inProgress = item;
    item->setName(typeName);
    item->setLabelVisible(true);
    item->setColor(panel->getColor());
    item->setPenStyle(Qt::DashLine, panel->getLineWidth());
    item->setLabelFontPixSize(panel->getFontSize());
    item->setStep(step, stepText);
    item->adjustScale(editor->scale());
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

    const int index = getNextObjectIndex();
    gsObjectMap.insert(index, item);
    item->setName(getItemName(index));
    item->allowTrashVisible(true);
    item->setPenStyle(Qt::SolidLine, item->penWidth);

    const KxKernelObjectDataDescr* descr = getDescriptor();
    const KxParamKeyframeVector keyframes = createObjectKeyframes(item, rounded(item->vector));
    auto* data = new KxKernelObjectData(keyframes, descr->getKeyframeTypes(), false);
    pushOwnCommand(new CmdCreateObject(kDistanceType, index, data));

    changeAnimationGsObject(item, kernelData->getMediaInfo().isVideoFile(), false, false);
    inProgress = nullptr;
}

void OvGsManipDistance::gsObjectChangedShape(KxGsObject* anObj)
{
    if (!anObj || anObj->type() != kDistanceType)
        return;
    const int index = gsObjectMap.key(anObj, -1);
    if (index < 0)
        return;
    auto* item = static_cast<OvGsDistance*>(anObj);
    const KxKernelObjectDataDescr* descr = getDescriptor();
    KxParamKeyframeVector keyframes = descr->createKeyframeVector();
    keyframes[3].setValue(rounded(item->pos()) + getViewOrigin());
    descr->setValue(keyframes, QStringLiteral("len"), rounded(item->vector));
    const KxKernelObjectData* data = kernelData->getObject(kDistanceType, index);
    if (data && data->animated)
        keyframes.setFrameNumber(kernelData->getCurrentFrame());
    pushOwnCommand(new CmdChangeObject(kDistanceType, index, keyframes, false));
    // The change notification was blocked: the label still shows the old length.
    updateDisplayValue(item, getValueNameToDisplay(item), true, true);
}

void OvGsManipDistance::objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kDistanceType || !aData || gsObjectMap.contains(anIdx))
        return;
    const KxParamKeyframeVector keyframes = aData->getDefaultKeyframes();
    const KxKernelObjectDataDescr* descr = getDescriptor();
    QString stepText;
    const double step = getCalibrationStep(stepText);

    auto* item = new OvGsDistance(this, editor, QString(), QStringLiteral("Distance_Line_%1").arg(theCount++));
    item->manipulator = this;
    item->setName(getItemName(anIdx));
    item->setColor(colorFromVariant(keyframeValue(keyframes, 1)));
    item->setPos(keyframeValue(keyframes, 3).toPoint() - getViewOrigin());
    item->setVisible(keyframeValue(keyframes, 0).toBool());
    item->setAlwaysHidden(keyframeValue(keyframes, 4).toBool());
    item->setVector(descr->getValue(keyframes, QStringLiteral("len")).toPoint());
    item->setPenStyle(Qt::SolidLine, descr->getValue(keyframes, QStringLiteral("w")).toInt());
    item->setStep(step, stepText);
    item->setLabelFontPixSize(descr->getValue(keyframes, QStringLiteral("fs")).toInt());
    item->adjustScale(editor->scale());
    gsObjectMap.insert(anIdx, item);
    editor->update();
}

void OvGsManipDistance::objectChangedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kDistanceType || !aData)
        return;
    KxGsObject* obj = gsObjectMap.value(anIdx);
    if (!obj)
        return;
    auto* item = static_cast<OvGsDistance*>(obj);
    const KxParamKeyframeVector keyframes = aData->getKeyframesAt(kernelData->getCurrentFrame());
    item->setPos(keyframeValue(keyframes, 3).toPoint() - getViewOrigin());
    item->setVector(getDescriptor()->getValue(keyframes, QStringLiteral("len")).toPoint());
    item->setVisible(keyframeValue(keyframes, 0).toBool());
    item->setAlwaysHidden(keyframeValue(keyframes, 4).toBool());
    item->setColor(colorFromVariant(keyframeValue(keyframes, 1)));
    updateDisplayValue(item, keyframeValue(keyframes, 2).toString(), true, true);
    item->ensureLabelVisible();
    if (editor->getCurrentObject() == item)
        updateGuiFromObjectData(aData);
    editor->update();
}

void OvGsManipDistance::recreateGraphicsObjects(QPoint anOrigin, qint64 aFrame, bool aForce)
{
    const KxKernelObjectDataDescr* descr = getDescriptor();
    const QMap<int, KxKernelObjectData*> objects = kernelData->getObjectsOfType(kDistanceType);
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (!it.value()->animated && !aForce)
            continue;
        KxGsObject* obj = gsObjectMap.value(it.key());
        if (!obj)
            continue;
        auto* item = static_cast<OvGsDistance*>(obj);
        const KxParamKeyframeVector keyframes = it.value()->getKeyframesAt(aFrame);
        item->setPos(keyframeValue(keyframes, 3).toPoint() - anOrigin);
        item->setVector(descr->getValue(keyframes, QStringLiteral("len")).toPoint());
        updateDisplayValue(item, keyframeValue(keyframes, 2).toString(), true, true);
        item->ensureLabelVisible();
    }
    editor->update();
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
