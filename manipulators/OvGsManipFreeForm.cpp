#include "OvGsManipFreeForm.h"

#include "CmdCreateObject.h"
#include "KxCVSequence.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvGsFreeForm.h"
#include "OvGuiMeasurementTool.h"
#include "OvQtCompat.h"

#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QLineF>
#include <QPolygon>
#include <QtMath>

#include <algorithm>

namespace {

const int kFreeFormType = 66655;
// The first node waits until the pointer is this far from the press.
const double kStartDistance = 10.0;
// Beyond this a coordinate is garbage: whole-unit rounding would overflow.
const double kMaxCoordinate = 1.0e9;
const char* const kNodesKey = "nodes";

OvGsManipFrame::Kind freeFormKind()
{
    OvGsManipFrame::Kind kind = OvGsManipFrame::standardKind(
        "OvGsManipFreeForm", kFreeFormType, QT_TRANSLATE_NOOP("OvGsManipFreeForm", "Free form"),
        { QT_TRANSLATE_NOOP("OvGsManipFreeForm", "Area"), QT_TRANSLATE_NOOP("OvGsManipFreeForm", "Length") },
        kNodesKey, QMetaType::QPolygonF, OvGsManipFrame::FreeFormButton);
    kind.drawButtonSlot = SLOT(slotFreeformButtonToggled(bool));
    kind.squaredUnits = true;
    kind.removalSignal = SIGNAL(signalObjectBeforeRemove(const int, const int));
    kind.removalSlot = SLOT(slotObjectBeforeRemoveInKernel(const int, const int));
    return kind;
}

QPoint rounded(const QPointF& aPoint)
{
    return QPoint(OvQtCompat::round(aPoint.x()), OvQtCompat::round(aPoint.y()));
}

bool isUsable(const QPointF& aPoint)
{
    return qIsFinite(aPoint.x()) && qIsFinite(aPoint.y()) && qAbs(aPoint.x()) <= kMaxCoordinate
        && qAbs(aPoint.y()) <= kMaxCoordinate;
}

// Stored nodes are a QPolygonF; a QPolygon is taken too. Anything else is no nodes.
QPolygonF polygonFrom(const QVariant& aNodes)
{
    if (aNodes.userType() == QMetaType::QPolygonF)
        return aNodes.value<QPolygonF>();
    if (aNodes.userType() == QMetaType::QPolygon)
        return QPolygonF(aNodes.value<QPolygon>());
    return QPolygonF();
}

} // namespace

OvGsManipFreeForm::OvGsManipFreeForm(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipFreeForm(aToolBase, aPanel, anUndoStack, freeFormKind(), true)
{
    initFrame();
}

OvGsManipFreeForm::OvGsManipFreeForm(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack,
                                     const Kind& aKind, bool aClosed)
    : OvGsManipFrame(aToolBase, aPanel, anUndoStack, aKind)
    , closedShapes(aClosed)
{
}

OvGsManipFreeForm::~OvGsManipFreeForm() = default;

OvGsFreeForm* OvGsManipFreeForm::getInProgressShape() const
{
    return inProgress;
}

QPointF OvGsManipFreeForm::getStartPoint() const
{
    return startPoint;
}

KxGsObject* OvGsManipFreeForm::getInProgressItem() const
{
    return inProgress;
}

void OvGsManipFreeForm::forgetInProgressItem()
{
    inProgress = nullptr;
}

void OvGsManipFreeForm::slotFreeformButtonToggled(bool aChecked)
{
    drawButtonToggled(aChecked);
}

QPolygonF OvGsManipFreeForm::roundedNodes(const QVariant& aNodes)
{
    const QPolygonF stored = polygonFrom(aNodes);
    QPolygonF nodes;
    nodes.reserve(stored.size());
    for (const QPointF& node : stored) {
        if (isUsable(node))
            nodes.append(QPointF(rounded(node)));
    }
    return nodes;
}

QPointF OvGsManipFreeForm::nodePoint(const QPointF& aPos) const
{
    QPointF point = aPos;
    const QRectF area = editor ? editor->getEditorArea() : QRectF();
    if (!area.isEmpty()) {
        point.setX(std::clamp(point.x(), area.left(), area.right()));
        point.setY(std::clamp(point.y(), area.top(), area.bottom()));
    }
    return isUsable(point) ? QPointF(rounded(point)) : QPointF();
}

void OvGsManipFreeForm::anchorLabel(OvGsFreeForm* anItem)
{
    if (anItem->nodes.isEmpty())
        return;
    const QPointF corner = anItem->nodes.boundingRect().bottomRight();
    QPointF nearest = anItem->nodes.first();
    for (const QPointF& node : qAsConst(anItem->nodes)) {
        if (QLineF(node, corner).length() < QLineF(nearest, corner).length())
            nearest = node;
    }
    anItem->setLabelAnchor(nearest);
}

void OvGsManipFreeForm::placeLabel(OvGsFreeForm* anItem)
{
    if (anItem->nodes.isEmpty())
        return;
    anchorLabel(anItem);
    anItem->setLabelPos(anItem->nodes.boundingRect().bottomRight());
    anItem->ensureLabelVisible();
}

void OvGsManipFreeForm::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    if (anEvent->button() != Qt::LeftButton) {
        anEvent->ignore();
        return;
    }
    anEvent->accept();
    if (inProgress)
        return;

    startPoint = anEvent->pos();
    auto* item = new OvGsFreeForm(this, editor, getObjectTypeName(0));
    inProgress = item;
    dressNewItem(item);
    item->ensureLabelVisible();
    item->setPos(nodePoint(startPoint));
    item->allowTrashVisible(false);
    editor->setCurrentObject(item, false);
    if (!isLocalMagnifier())
        showMagnifierAt(anEvent->pos());
}

void OvGsManipFreeForm::mouseMove(const QPointF& aPos)
{
    if (!inProgress)
        return;
    const QPointF point = nodePoint(aPos);
    if (inProgress->nodes.isEmpty()) {
        const QPointF start = nodePoint(startPoint);
        if (QLineF(start, point).length() < kStartDistance)
            return;
        inProgress->addNode(start);
    } else if (point - inProgress->pos() == inProgress->nodes.last()) {
        // A move within the last node's pixel (the view also repeats the last
        // position after a click) adds nothing to the shape.
        return;
    }
    inProgress->addNode(point);
    updateDisplayValue(inProgress, valueNames.value(0), false, true);
    inProgress->ensureLabelVisible();
}

void OvGsManipFreeForm::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    moveMagnifier(anEvent->pos(), anEvent->scenePos());
    mouseMove(anEvent->pos());
    anEvent->accept();
}

void OvGsManipFreeForm::hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent)
{
    mouseMove(anEvent->pos());
}

void OvGsManipFreeForm::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    // Only the left button draws: another button's release ends nothing.
    if (anEvent->button() != Qt::LeftButton) {
        anEvent->ignore();
        return;
    }
    anEvent->accept();
    if (!inProgress)
        return;
    if (inProgress->nodes.isEmpty()) {
        inProgress->addNode(nodePoint(anEvent->pos()));
        return;
    }
    inProgress->setClosed(closedShapes);
    if (isLocalMagnifier())
        removeLocalMagnifier();
    finalizeShape();
}

void OvGsManipFreeForm::finalizeShape()
{
    OvGsFreeForm* item = inProgress;
    if (!item)
        return;
    item->setPenStyle(Qt::SolidLine, getPanel()->getLineWidth());
    const int index = adoptFinishedItem(item);
    // Placed now: the zoom was applied while the shape had no nodes yet.
    item->updateTrashPos();
    placeLabel(item);
    storeNewObject(item, index, QVariant::fromValue(item->nodes));
    inProgress = nullptr;
}

void OvGsManipFreeForm::objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData)
{
    if (aType != kind.objectType || !aData || gsObjectMap.contains(anIdx))
        return;
    auto* item = new OvGsFreeForm(this, editor, QString());
    dressStoredItem(item, anIdx, aData->getDefaultKeyframes());
    placeLabel(item);
    gsObjectMap.insert(anIdx, item);
}

void OvGsManipFreeForm::applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                                            const QPoint& anOrigin)
{
    auto* item = static_cast<OvGsFreeForm*>(anItem);
    item->setPos(keyframeValue(aKeyframes, 3).toPoint() - anOrigin);
    item->setClosed(closedShapes);
    item->setNodes(roundedNodes(getDescriptor()->getValue(aKeyframes, QString::fromLatin1(kNodesKey))));
    // The leader follows the nodes (a resolution change scales them).
    anchorLabel(item);
}

QVariant OvGsManipFreeForm::itemGeometry(const KxGsObject* anItem) const
{
    return QVariant::fromValue(static_cast<const OvGsFreeForm*>(anItem)->nodes);
}

int OvGsManipFreeForm::activationUnit() const
{
    if (!closedShapes)
        return OvGsManipFrame::activationUnit();
    KxGsObject* current = editor ? editor->getCurrentObject() : nullptr;
    if (!current || current->type() != kind.objectType)
        return OvGuiMeasurementTool::UnitAuto;
    const KxKernelObjectData* data = kernelData->getObject(kind.objectType, gsObjectMap.key(current, -1));
    if (!data)
        return OvGuiMeasurementTool::UnitAuto;
    return getDescriptor()->getValue(data->getDefaultKeyframes(), QStringLiteral("ut")).toInt();
}

OvGsManipFrame::Measure OvGsManipFreeForm::measureNodes(const QString& aName, const QPolygonF& aNodes) const
{
    const int count = aNodes.size();
    if (count < 3)
        return Measure();
    KxCVSequence sequence(count, 8);
    for (int i = 0; i < count; ++i) {
        const QPointF& node = aNodes.at(i);
        if (!isUsable(node))
            return Measure();
        sequence.putPoint(i, OvQtCompat::round(node.x()), OvQtCompat::round(node.y()));
    }
    const double umPerPixel = kernelData->getMediaInfo().calculateUmForPixels(1.0, 0.0);

    Measure measure;
    if (closedShapes && aName == valueNames.value(0)) {
        // Uncalibrated, the area is a valid 0 while the length has no value.
        measure.value = sequence.calculateArea() * umPerPixel * umPerPixel;
        measure.squared = true;
        measure.valid = measure.value >= 0.0;
    } else if (aName == valueNames.value(closedShapes ? 1 : 0)) {
        measure.value = sequence.calculatePerimeter(closedShapes) * umPerPixel;
        measure.valid = measure.value > 0.0;
    }
    return measure;
}

OvGsManipFrame::Measure OvGsManipFreeForm::measureItem(const QString& aName, const KxGsObject* anItem) const
{
    return measureNodes(aName, static_cast<const OvGsFreeForm*>(anItem)->nodes);
}

OvGsManipFrame::Measure OvGsManipFreeForm::measureKeyframes(const QString& aName,
                                                            const KxParamKeyframeVector& aKeyframes) const
{
    return measureNodes(aName, polygonFrom(getDescriptor()->getValue(aKeyframes, QString::fromLatin1(kNodesKey))));
}
