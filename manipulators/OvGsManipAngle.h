#pragma once

#include "OvGsManipFrame.h"

#include <QPointF>
#include <QPointer>

class OvGsAngle;
class QGraphicsSceneMouseEvent;

// Angles between two lines (kernel type 66651, geometry "nodes": inner and outer node
// of the first arm, then of the second, relative to the vertex). Values are degrees;
// the panel's angle menu decides, when an angle is started, whether it measures the
// inner angle (below 180 degrees) or the outer one.
//
// Each line is drawn by press-drag-release or by click-move-click: a release or press
// 10 units or more from the line's first node fixes its second node. The third press
// starts the second line with both its nodes at the press point; fixing its second node
// finishes and stores the angle.
//
// An angle rebuilt from the store (undo, redo) draws and reports its inner angle; its
// stored value name still decides which value its label and the export show.
class OvGsManipAngle : public OvGsManipFrame
{
    Q_OBJECT

public:
    OvGsManipAngle(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipAngle() override;

    // The host's own texts: the number as printed by QString::number and the unit name.
    QString getCalculatedValueAsString(const QString& aName, const KxGsObject* anObj) override;
    QString getCalculatedValueAsString(const QString& aName, const KxKernelObjectData* aData) override;

    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    // The node that follows the mouse goes to aPos; the label follows the angle.
    void mouseMove(const QPointF& aPos);
    // Normalises the angle under way, stores it under the next free index, makes it solid.
    void finalizeAngle();

    // The angle being drawn, null when idle.
    OvGsAngle* getInProgressAngle() const;
    // The node following the mouse, -1 when none.
    int getActiveNode() const;

protected:
    KxGsObject* getInProgressItem() const override;
    void forgetInProgressItem() override;
    void pointerMovedInProgress(const QPointF& aPos) override;
    // "Inner angle" or "Outer angle" after the item's innerAngle.
    QString valueNameOf(const KxGsObject* anItem) const override;
    void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) override;
    // The position first: the lines are clipped to the picture around it.
    void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                             const QPoint& anOrigin) override;
    // The vertex moves with the position; the nodes, relative to it, are stored.
    QVariant itemGeometry(const KxGsObject* anItem) const override;
    Measure measureItem(const QString& aName, const KxGsObject* anItem) const override;
    Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const override;

private:
    // Fixes the active node at aPos unless it would end a line shorter than 10 units.
    bool fixActiveNode(const QPointF& aPos);

    QPointer<OvGsAngle> inProgress;
    int activeNode;
};
