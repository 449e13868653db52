#pragma once

#include "OvGsManipFrame.h"

#include <QPointF>
#include <QPointer>
#include <QPolygonF>

class OvGsFreeForm;
class QGraphicsSceneMouseEvent;

// Free forms drawn by hand (kernel type 66655, geometry "nodes": the outline in item
// coordinates, node 0 at the stored position): their area and perimeter, from the
// nodes rounded to whole pixels through the host's point sequence. The panel offers
// its units squared while this tool is active or a free form is current.
//
// A shape is drawn by press-drag-release (the drag adds the nodes, the release ends
// it) or by click, move, click (the first release places the first node, every move
// adds one, the second release ends it). Nodes are whole picture pixels inside the
// picture: a drag beyond its edge adds nodes on the edge, and a move that stays on
// the last node's pixel adds none. Fewer than three nodes are stored too but never
// measure.
//
// OvGsManipFreeLine is the open twin on the same code: see the protected constructor.
class OvGsManipFreeForm : public OvGsManipFrame
{
    Q_OBJECT

public:
    OvGsManipFreeForm(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipFreeForm() override;

    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    // Stores the shape under way under the next free index and makes it solid.
    void finalizeShape();
    // Adds the point (editor item coordinates) to the shape under way: the first
    // node only once the pointer is 10 units from the start, then one per call
    // unless it falls on the last node's pixel.
    void mouseMove(const QPointF& aPos);

    // The shape being drawn, null when idle.
    OvGsFreeForm* getInProgressShape() const;
    QPointF getStartPoint() const;

    // Stored nodes as the items show them: rounded to whole units. Nodes that are not
    // finite numbers or lie beyond a billion units are left out.
    static QPolygonF roundedNodes(const QVariant& aNodes);

protected:
    // The free line: the same gesture and synchronisation for open shapes of aKind.
    OvGsManipFreeForm(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack,
                      const Kind& aKind, bool aClosed);

    KxGsObject* getInProgressItem() const override;
    void forgetInProgressItem() override;
    void hoverMoveInProgress(QGraphicsSceneHoverEvent* anEvent) override;
    void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData* aData) override;
    // The first node's pixel, open or closed after the kind, and roundedNodes().
    void applyStoredGeometry(KxGsObject* anItem, const KxParamKeyframeVector& aKeyframes,
                             const QPoint& anOrigin) override;
    QVariant itemGeometry(const KxGsObject* anItem) const override;
    Measure measureItem(const QString& aName, const KxGsObject* anItem) const override;
    Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const override;
    // The stored unit of the free form that is current, else automatic.
    int activationUnit() const override;

private slots:
    void slotFreeformButtonToggled(bool aChecked);

private:
    // "Area" and "Length" of nodes in picture pixels; invalid for fewer than three.
    Measure measureNodes(const QString& aName, const QPolygonF& aNodes) const;
    // aPos clamped into the picture and rounded to whole units.
    QPointF nodePoint(const QPointF& aPos) const;
    // A finished shape's label goes below and right of its nodes, clear of the outline
    // and of the trash button beside node 0; its leader points to the nearest node.
    static void placeLabel(OvGsFreeForm* anItem);
    // The leader starts at the node nearest the nodes' bottom-right corner.
    static void anchorLabel(OvGsFreeForm* anItem);

    const bool closedShapes;
    QPointer<OvGsFreeForm> inProgress;
    QPointF startPoint;
};
