#pragma once

#include "OvGsObject.h"

#include <QPointF>
#include <QString>
#include <QVector>

class KxGsManipulator;
class QMouseEvent;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

// One circle measurement: a circle through three rim nodes with a cross at its centre,
// the node squares while current, and a label showing the radius or the diameter. Once
// three nodes are known the item's origin is the centre (snapped to whole units) and
// the nodes are relative to it. Dragging a node reshapes the circle and is reported to
// the manipulator on release through KxGsManipulator::gsObjectChangedShape(); dragging
// the body moves it and is not reported.
class OvGsCircle : public OvGsObject
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1120 };

    // aRadiusMode: true labels the value with "R", false with "D".
    OvGsCircle(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName, bool aRadiusMode);

    // Prefixes the value with "R" or "D" after radiusMode.
    void setDisplayValue(const QString& aValue) override;
    // Called by the editor with its zoom: keeps node squares, cross and tolerance
    // constant on screen. The trash button follows at the next geometry change.
    void adjustScale(double aZoom) override;
    int type() const override;
    // aPart: the base's part for a label/button hit, else 0.
    bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTol) const override;
    bool isRectContainsObject(const QRectF& aRect) const override;
    void moveObjectBy(const QPointF& aDelta) override;
    bool isMoving() const override;
    bool isReshaping() const override;
    // The events carry localPos() in item coordinates and screenPos() in global
    // coordinates. An accepted press means the item takes the following moves and
    // the release; a release after a node drag calls gsObjectChangedShape(this).
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    void manipMouseMoveEvent(QMouseEvent* anEvent) override;
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;
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
    // aPoint in item coordinates; anIndex gets the first node hit, -1 when none.
    bool isPointOnNode(const QPointF& aPoint, int& anIndex, int aTol) const;

    // Distance from the centre to node 0, in item units.
    double radius;
    // Rim nodes in item coordinates, at most three.
    QVector<QPointF> nodes;
    // Pointer position at the last press or move, in the parent's coordinates and
    // rounded to whole units, so drags follow the mouse at any zoom.
    QPointF lastMousePos;
    bool moving;
    bool reshaping;
    double selSize;
    double nodeSize;
    QPointF trashOffset;
    double penScale;
    int activeNode;
    bool radiusMode;

private:
    QRectF nodeRect(const QPointF& aCentre) const;
    QPointF pointerInParent(const QMouseEvent* anEvent) const;
};
