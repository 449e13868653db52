#pragma once

#include "OvGsHandleShape.h"

#include <QPointF>
#include <QString>

class KxGsManipulator;
class QGraphicsItem;
class QPainter;
class QStyleOptionGraphicsItem;
class QWidget;

// One straight distance: a line from pos() to pos() + vector, in item coordinates from
// (0, 0) to vector, with a square handle at each end while the item is current, plus the
// label and trash button of the base. Dragging an end reshapes the line and is reported
// on release to `manipulator` (to the base's manipulator while it is null); dragging the
// line moves it. The trash button is placed again after every release.
class OvGsDistance : public OvGsHandleShape
{
    Q_OBJECT

public:
    enum { Type = QGraphicsItem::UserType + 1117 };

    // aTypeName is the base's name (shown on the label); aLineName is the unique line
    // name other measurements use to refer to this line as their base.
    OvGsDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                 const QString& aLineName);

    // Also places the trash button again when the zoom changes its offset.
    void adjustScale(double aZoom) override;
    int type() const override;
    bool isRectContainsObject(const QRectF& aRect) const override;
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

protected:
    // The line, probed along the tolerance square's diagonals.
    bool isPointOnBody(const QPointF& aPoint, int aTol) const override;
    // Handles: 0 the start, 1 the end.
    int handleAt(const QPointF& aPoint, int aTol) const override;
    // The start follows the pointer while the end stays put, or the end follows it.
    void dragHandle(int aHandle, const QPointF& aPoint, const QPointF& aDelta) override;
    void gestureReleased() override;
    KxGsManipulator* reshapeReceiver() const override;

    // Places every button after a change of the line or of the zoom. Default:
    // updateTrashPos().
    virtual void updateButtonPositions();
    // Where aButton (null: aFirst as it is) goes when asked to sit at aFirst:
    // moved across the line by its height plus twice aFlip when it would lie
    // across it, then pushed inside the editor's area (right and bottom edges
    // winning when the button is larger than the area). Item coordinates.
    QPointF placeButton(const QGraphicsItem* aButton, const QPointF& aFirst, double aFlip) const;
};
