#pragma once

#include "OvGsObject.h"

#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QString>

class KxGsManipulator;
class QMouseEvent;
class QPainter;

// A measurement drawn with square handles while it is current, on top of the label and
// buttons of the base. Owns the gesture: a press on a handle reshapes the shape, a press
// on the body moves it as a whole, presses on the label and buttons go to the base first.
// A reshape is reported on release through KxGsManipulator::gsObjectChangedShape(); a
// move is not (the editor writes back moves). Each shape supplies its geometry through
// the hooks below; the frame never changes the geometry itself.
class OvGsHandleShape : public OvGsObject
{
    Q_OBJECT

public:
    OvGsHandleShape(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName);

    // Called by the editor with its zoom: keeps handles, tolerance and trash offset
    // constant on screen. A zoom that is not finite and positive changes nothing.
    void adjustScale(double aZoom) override;
    // The label and buttons of the base (aPart as the base reports it), else the body
    // or a handle (aPart 0).
    bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTol) const override;
    // The base part, then translateBy(aDelta).
    void moveObjectBy(const QPointF& aDelta) override;
    // While moving, unless the shape reports its moves itself (reportsMoves()):
    // the editor writes back a move it sees here, which must not happen twice.
    bool isMoving() const override;
    bool isReshaping() const override;
    // The events carry localPos() in item coordinates and screenPos() in global
    // coordinates. A press clears both flags and does nothing more on a hidden, locked or
    // invisible item. An accepted press means the item takes the following moves and the
    // release; a press the base takes on the label counts as reshaping. Moves the base
    // takes (label drags) leave the shape alone; every other move is accepted. A release
    // after a handle drag calls gsObjectChangedShape(this) on reshapeReceiver(); every
    // release the base does not take ends with gestureReleased().
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    void manipMouseMoveEvent(QMouseEvent* anEvent) override;
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;

    // Pointer position at the last press or move, in the parent's coordinates and
    // rounded to whole units, so drags follow the mouse at any zoom.
    QPointF lastMousePos;
    bool moving;
    bool reshaping;
    // Hit tolerance, handle side, trash offset and handle pen width in item units: their
    // screen sizes divided by the zoom.
    double selSize;
    double nodeSize;
    QPointF trashOffset;
    double penScale;
    // The handle under the last press, -1 when none was hit.
    int activeNode;

protected:
    // Sets moving and reshaping, telling the scene first when they change (the
    // scene's index must never hold an outdated bounding rectangle).
    void setGestureState(bool aMoving, bool aReshaping);
    // aPoint in item coordinates, aTol the hit tolerance in item units. Whether the shape
    // itself (not its handles, label or buttons) lies within the tolerance.
    virtual bool isPointOnBody(const QPointF& aPoint, int aTol) const = 0;
    // aPoint in item coordinates (rounded to whole units on a press), aTol the side of the
    // tolerance square around it. Returns the handle whose square meets the tolerance
    // square (the first in the shape's order when several do), or -1.
    virtual int handleAt(const QPointF& aPoint, int aTol) const = 0;
    // Called on each move while reshaping. aHandle is activeNode and may be -1 or out of
    // the shape's range, which the shape ignores; aPoint is the pointer in item
    // coordinates rounded to whole units, aDelta the pointer's travel since the last
    // press or move in the parent's coordinates. The shape announces its own geometry
    // changes (prepareGeometryChange()).
    virtual void dragHandle(int aHandle, const QPointF& aPoint, const QPointF& aDelta) = 0;
    // Moves the whole item by aDelta in the parent's coordinates: on each move while
    // moving, and from moveObjectBy(). Default: shifts pos() and keeps the label inside
    // the editor's area.
    virtual void translateBy(const QPointF& aDelta);
    // Called on a release that ends a handle drag, before the reshape is reported: the
    // shape may normalise its geometry first. Default: nothing.
    virtual void reshapeFinished();
    // Called last on every release the base did not take, whether or not a gesture ran;
    // both flags are already cleared and a reshape already reported. Default: nothing.
    virtual void gestureReleased();
    // Who hears about a finished reshape; may be null. Default: getManipulator().
    virtual KxGsManipulator* reshapeReceiver() const;
    // Asked on a press on the body: whether it starts a move of the whole
    // shape. When false the press is still taken (the shape becomes current)
    // but a drag leaves it where it is. Default: true.
    virtual bool canMoveWhole() const;
    // Whether a finished move is reported to reshapeReceiver() like a reshape
    // (the receiver then writes it back instead of the editor). Default: false.
    virtual bool reportsMoves() const;
    // Whether the outline is drawn solid whatever the pen's own style while no
    // reshape runs. Default: false.
    virtual bool solidWhileIdle() const;

    static QPointF roundedPoint(const QPointF& aPoint);
    // The square around aPoint, centred on it, that hit tests probe with: of
    // side aTol, or selSize where aTol is selSize truncated (at high zoom an
    // integer tolerance truncates to 0 and nothing would ever be hit).
    QRectF probeRect(const QPointF& aPoint, int aTol) const;
    // probeRect() for a shape's lines: never narrower than the outline's
    // width, so a wide line is hit wherever it shows.
    QRectF bodyProbeRect(const QPointF& aPoint, int aTol) const;
    double probeSide(int aTol) const;
    static bool isUsableZoom(double aZoom);
    // Whether the segment aFrom-aTo crosses a diagonal of aProbe: how lines
    // are hit tested against a probeRect().
    static bool crossesDiagonals(const QPointF& aFrom, const QPointF& aTo, const QRectF& aProbe);
    // The handle square centred on aCentre.
    QRectF nodeRect(const QPointF& aCentre) const;
    // The first of the first aCount nodes whose handle square meets the
    // probeRect() around aPoint, or -1.
    int nodeAt(const QVector<QPointF>& aNodes, int aCount, const QPointF& aPoint, int aTol) const;
    QPointF pointerInParent(const QMouseEvent* anEvent) const;
    // Sets aPainter's antialiasing for the outline and returns the outline's pen: the
    // current pen while selected or current, dashed while reshaping unless solidEdit.
    QPen prepareOutline(QPainter* aPainter) const;
    QPen handlePen() const;
};
