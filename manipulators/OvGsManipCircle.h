#pragma once

#include "OvGsManipFrame.h"

#include <QPointF>
#include <QPointer>

class OvGsCircle;
class QGraphicsSceneMouseEvent;

// Circles through three rim points (kernel type 66656, geometry "nodes": the three rim
// nodes relative to the stored centre). The label shows the radius ("R") or the
// diameter ("D") after the panel's circle menu when the circle was started.
//
// Three clicks (press, move, press, move, press) place the nodes; the first diameter
// may also be dragged (a release 10 units or more from the start in x or y adds the
// third node on the second), and a drag after the second press finishes at its release.
// Until then the dashed circle follows the mouse and is not stored.
class OvGsManipCircle : public OvGsManipFrame
{
    Q_OBJECT

public:
    OvGsManipCircle(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipCircle() override;

    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    // The last node of the circle under way follows aPos (editor item coordinates).
    void mouseMove(const QPointF& aPos);
    // Stores the circle under way under the next free index and makes it solid.
    void finalizeCircle();

    // The circle being drawn, null when idle.
    OvGsCircle* getInProgressCircle() const;

protected:
    KxGsObject* getInProgressItem() const override;
    void forgetInProgressItem() override;
    void pointerMovedInProgress(const QPointF& aPos) override;
    // "Radius" for circles in radius mode, else "Diameter".
    QString valueNameOf(const KxGsObject* anItem) const override;
    void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) override;
    // Centre (kernel position minus anOrigin) and nodes from stored key frames.
    void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                             const QPoint& anOrigin) override;
    // The nodes relative to the centre.
    QVariant itemGeometry(const KxGsObject* anItem) const override;
    Measure measureItem(const QString& aName, const KxGsObject* anItem) const override;
    Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const override;

private:
    QPointer<OvGsCircle> inProgress;
    QPointF startPoint;
    QPointF lastPressPoint;
};
