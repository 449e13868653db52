#pragma once

#include "OvGsHandleShape.h"

#include <QPointF>
#include <QString>
#include <QVector>

class KxGsManipulator;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

// One circle measurement: a circle through three rim nodes with a cross at its centre,
// the node squares while current, and a label showing the radius or the diameter. Once
// three nodes are known the item's origin is the centre (snapped to whole units) and
// the nodes are relative to it. Dragging a node reshapes the circle and is reported to
// the manipulator on release; dragging the body moves it. The trash button sits at
// node 0 plus trashOffset and follows a new zoom at the next fit.
class OvGsCircle : public OvGsHandleShape
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1120 };

    // aRadiusMode: true labels the value with "R", false with "D".
    OvGsCircle(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName, bool aRadiusMode);

    // Prefixes the value with "R" or "D" after radiusMode.
    void setDisplayValue(const QString& aValue) override;
    int type() const override;
    bool isRectContainsObject(const QRectF& aRect) const override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;
    QRectF boundingRect() const override;

    // aPoint is in the parent's coordinates. The first node fixes the item's position,
    // the second is appended, the third is appended (anIndex 2) or replaces one; with
    // three nodes anIndex replaces that node. Indices outside 0..2 are ignored.
    void setNode(int anIndex, const QPointF& aPoint);
    // Moves the origin to the centre through the three nodes. Leaves everything as it
    // was when the nodes give no usable centre (collinear, a chord within one unit of
    // vertical or horizontal).
    void recalcGeometry();
    // Nodes already relative to the centre (stored geometry), taken as they are without a
    // new fit; at most three are used. A fit can fail where the stored circle is sound
    // (a diameter drawn along an axis), so items rebuilt from the store use this.
    void setCentredNodes(const QVector<QPointF>& aNodes);
    // aPoint in item coordinates; anIndex gets the first node hit, -1 when none.
    bool isPointOnNode(const QPointF& aPoint, int& anIndex, int aTol) const;

    // Distance from the centre to node 0, in item units.
    double radius;
    // Rim nodes in item coordinates, at most three.
    QVector<QPointF> nodes;
    bool radiusMode;

protected:
    // The disc grown by half the tolerance, once the circle is fitted.
    bool isPointOnBody(const QPointF& aPoint, int aTol) const override;
    // Handles are the nodes, in their order.
    int handleAt(const QPointF& aPoint, int aTol) const override;
    // Inside the disc by more than half the tolerance and off every handle.
    bool isPointInsideOutline(const QPointF& aPoint, int aTol) const override;
    // The node goes to the pointer and the circle is fitted again; node 0 carries the
    // label along.
    void dragHandle(int aHandle, const QPointF& aPoint, const QPointF& aDelta) override;

private:
    // Radius, trash button and label anchor follow node 0 (which must exist); the
    // label keeps aLabelOffset from it inside the editor's area.
    void followFirstNode(const QPointF& aLabelOffset);
};
