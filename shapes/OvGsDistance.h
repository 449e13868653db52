#pragma once

#include "OvGsObject.h"

#include <QPointF>
#include <QString>

class KxGsManipulator;
class QMouseEvent;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

// One straight distance: a line from pos() to pos() + vector, in item coordinates from
// (0, 0) to vector, with a square handle at each end while the item is current, plus the
// label and trash button of the base. Dragging an end reshapes the line and is reported
// to the manipulator on release through KxGsManipulator::gsObjectChangedShape(); dragging
// the line moves it and is not reported (the editor writes back moves).
class OvGsDistance : public OvGsObject
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1117 };

    // aTypeName is the base's name (shown on the label); aLineName is the unique line
    // name other measurements use to refer to this line as their base.
    OvGsDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                 const QString& aLineName);

    // Called by the editor with its zoom: keeps handles, tolerance and trash offset
    // constant on screen.
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
    // the release; a release after an end drag calls gsObjectChangedShape(this).
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    void manipMouseMoveEvent(QMouseEvent* anEvent) override;
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;
    QRectF boundingRect() const override;

    void setVector(const QPointF& aVector);
    // anEnd: 0 start, 1 end, -1 none; the start wins when both ends are hit.
    bool isPointOnEnds(const QPointF& aPoint, int& anEnd, int aTol) const;
    // Places the trash button beside the end point, off the line and inside the
    // editor's area.
    void updateTrashPos();

    // Set by the manipulator that creates the item; reshapes are reported to it
    // (to the base's manipulator while it is null).
    KxGsManipulator* manipulator;
    QString lineName;
    // End point minus start point, in item coordinates.
    QPointF vector;
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

private:
    QRectF nodeRect(const QPointF& aCentre) const;
    QPointF pointerInParent(const QMouseEvent* anEvent) const;
};
