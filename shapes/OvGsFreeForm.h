#pragma once

#include "OvGsObject.h"

#include <QPointF>
#include <QPolygonF>
#include <QString>

class KxGsManipulator;
class QMouseEvent;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

// A measurement drawn by hand: a closed outline (free form, area and perimeter) or an
// open polyline (free line, length), with the label and trash button of the base. Its
// type() follows setClosed(), so one class serves both kinds. The item only shows its
// nodes: the manipulators add them, close the shape and compute its values. A finished
// shape is neither reshaped nor moved through the item; a press on it selects it.
class OvGsFreeForm : public OvGsObject
{
    Q_OBJECT

public:
    enum { ClosedType = QGraphicsItem::UserType + 1119, OpenType = QGraphicsItem::UserType + 1219 };

    OvGsFreeForm(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName);

    // Keeps the hit tolerance and the trash offset constant on screen. A zoom that is
    // not finite and positive changes nothing.
    void adjustScale(double aZoom) override;
    // ClosedType while closed, else OpenType (also while a free form is being drawn).
    int type() const override;
    // The base's label and buttons, else any point inside the area the nodes enclose
    // (winding rule; an open line counts as closed by its last-to-first segment).
    // aTolerance serves only the base's test.
    bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const override;
    bool isRectContainsObject(const QRectF& aRect) const override;
    // Does nothing: the shape is not moved through the editor.
    void moveObjectBy(const QPointF& aDelta) override;
    bool isMoving() const override;
    bool isReshaping() const override;
    // Hidden, locked or invisible items ignore the press. Presses on the label and
    // buttons go to the base (a label drag counts as reshaping); a press inside the
    // shape is accepted and does nothing more, so the editor just selects it.
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    // Ends a label drag; no shape change is ever reported.
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;
    // The nodes' bounding rectangle (null without nodes); label and buttons are child
    // items with bounding rectangles of their own.
    QRectF boundingRect() const override;

    // aPoint in the parent's coordinates. The first node puts the item there and is
    // stored as (0, 0); later nodes are stored relative to the item's position.
    void addNode(const QPointF& aPoint);
    // aNodes in item coordinates; the position stays.
    void setNodes(const QPolygonF& aNodes);
    void setClosed(bool aClosed);
    bool isClosed() const;
    // With more than two nodes the trash button goes to trashPos; otherwise it stays.
    void updateTrashPos();

protected:
    // A closed outline only: inside it and more than half the tolerance (at
    // least selSize) away from each of its segments.
    bool isPointInsideOutline(const QPointF& aPoint, int aTolerance) const override;

public:
    // In item coordinates; node 0 sits at the item's origin when drawn by hand.
    QPolygonF nodes;
    // Never set by the item; cleared on every press and release.
    bool moving;
    // True while the base handles a press on the label.
    bool reshaping;
    // Hit tolerance in item units: the host's selection size divided by the zoom.
    double selSize;
    // Where the trash button goes, in item units: 10 screen pixels right of and below
    // node 0.
    QPointF trashPos;
    bool closed;
};
