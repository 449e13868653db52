#pragma once

#include "OvGsManipFrame.h"

#include <QPointF>
#include <QPointer>

class OvGsCircle;
class OvGsDistance;
class QGraphicsSceneMouseEvent;

// Straight distance lines (kernel type 66653, geometry "len": end point minus
// start point in pixels). Under the panel's free-hand variant 4 a line runs
// from the centre of one circle measurement to the centre of another.
//
// A line is drawn by press-drag-release or by click-move-click: a release or a
// second press more than 10 units from the start along either axis finishes
// it; until then the dashed line follows the mouse and is not stored.
//
// After the label place a distance stores its line name (QString "line",
// kLineNameParam), which relative lines name when it serves as their base;
// an object stored without it (older files) gets a fresh name.
class OvGsManipDistance : public OvGsManipFrame
{
    Q_OBJECT

public:
    static const int kLineNameParam = 10;

    OvGsManipDistance(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipDistance() override;

    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    // In circle-distance mode a press on a circle, and every press while a line is
    // drawn, picks circles: it comes here before the circle under it could take it.
    bool claimsPress(const QPointF& aPos) override;

    // Stores the line under way under the next free index and makes it solid.
    // In circle-distance mode the line snaps to the centre of another circle
    // under its end, or is discarded when there is none.
    void finalizeDistance();

    // The line being drawn, null when idle.
    OvGsDistance* getInProgressDistance() const;
    QPointF getStartPoint() const;

    // Numbers the line names "Distance_Line_%1" for the life of the process.
    static int theCount;

protected:
    KxGsObject* getInProgressItem() const override;
    void forgetInProgressItem() override;
    void hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent) override;
    void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) override;
    void describeExtraParams(KxKernelObjectDataDescr* aDescr) const override;
    // The start in whole pixels and the vector "len".
    void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                             const QPoint& anOrigin) override;
    QVariant itemGeometry(const KxGsObject* anItem) const override;
    Measure measureItem(const QString& aName, const KxGsObject* anItem) const override;
    Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const override;

private:
    bool isCircleMode() const;
    // The circle whose pick square (side = its radius, centred on its centre)
    // holds aPos and whose centre is nearest to it; aSkip is never chosen.
    OvGsCircle* findCircleAt(const QPointF& aPos, const OvGsCircle* aSkip) const;
    OvGsDistance* createLine();
    void followMouse(const QPointF& aPos);

    QPointer<OvGsDistance> inProgress;
    QPointer<OvGsCircle> startCircle;
    QPointF startPoint;
};
