#pragma once

#include "KxHostGlobal.h"

#include <QColor>
#include <QGraphicsObject>
#include <QPen>
#include <QPointer>
#include <QString>

class KxGsEditor;
class KxGsManipulator;
class QHoverEvent;
class QMouseEvent;

// Base of every measurement item on the editor. Items never take scene mouse
// or hover events themselves: the editor item underneath receives them and
// hands them on through the manip*Event() handlers, with localPos() in the
// item's coordinates and screenPos() the global position. An event left
// accepted by a handler means "this item takes the gesture".
class KX_HOST_EXPORT KxGsObject : public QGraphicsObject
{
    Q_OBJECT

public:
    // Hit tolerance in screen pixels; shapes divide it by the zoom.
    static const int kDefaultSelSize = 8;

    // An editor as aParent makes the item one of the editor's measurement
    // items (a scene item of its own, not the editor's child); any other
    // parent is an ordinary graphics parent.
    explicit KxGsObject(KxGsManipulator* aManipulator, QGraphicsItem* aParent = nullptr);
    ~KxGsObject() override;

    // Called by the editor with its zoom factor whenever the zoom changes.
    virtual void adjustScale(double aZoom);
    // Called by the editor after every item took a new zoom. Base: nothing.
    virtual void zoomSettled();
    // Sizes the parts that keep their size on the screen (labels, buttons)
    // with aUnitsPerPixel item units per pixel. Base: nothing.
    virtual void setScreenUnits(double aUnitsPerPixel);
    // True when aPoint (item coordinates) hits the item within aTolerance
    // item units; aPart tells which part was hit (0 the body by default).
    virtual bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const;
    // True when aPoint (item coordinates) lies in the area a closed outline
    // encloses but on none of its lines (within aTolerance item units),
    // handles, label or buttons: while a drawing tool is chosen, such a press
    // starts a new measurement inside the outline instead of selecting it.
    // Base: false (a press on the item is always the item's).
    virtual bool isPointInsideOnly(const QPointF& aPoint, int aTolerance) const;
    virtual bool isRectContainsObject(const QRectF& aRect) const;
    virtual void moveObjectBy(const QPointF& aDelta);
    // Queried by the editor before it passes the release on: an item that was
    // moving as a whole gets its new position written back by the editor.
    virtual bool isMoving() const;
    virtual bool isReshaping() const;
    virtual void manipMousePressEvent(QMouseEvent* anEvent);
    virtual void manipMouseMoveEvent(QMouseEvent* anEvent);
    virtual void manipMouseReleaseEvent(QMouseEvent* anEvent);
    // Default: handled like a press.
    virtual void manipMouseDoubleClickEvent(QMouseEvent* anEvent);
    virtual void manipHoverEnterEvent(QHoverEvent* anEvent);
    virtual void manipHoverLeaveEvent(QHoverEvent* anEvent);
    virtual void setDisplayValue(const QString& aValue);
    virtual void setName(const QString& aName);
    // Called by the editor when the item becomes or stops being current.
    virtual void setCurrent(bool aCurrent);

    KxGsManipulator* getManipulator() const;
    // The editor the item belongs to; null when it was made without one or
    // has been discarded.
    KxGsEditor* getEditor() const;

    void setColor(const QColor& aColor);
    QColor getColor() const;
    // Both pens take the style and width; the current pen keeps the colour.
    void setPenStyle(Qt::PenStyle aStyle, int aWidth);

    // The item's own selection flag (the editor's selection), not the
    // graphics-view one: items are never selectable in the scene's sense.
    // Virtual so that items can show the selection (the label's frame).
    virtual void setSelected(bool aSelected);
    bool isSelected() const;
    void setLocked(bool aLocked);
    bool isLocked() const;
    bool isCurrent() const;

    // Calibration step (image width in micrometres per image) and its unit.
    void setStep(double aStep, const QString& aUnitName);
    double getStep() const;
    QString getStepUnitName() const;

    QString getName() const;
    QString getDisplayValue() const;
    // The value name the label shows, kept for the manipulator.
    void setDisplayedValueName(const QString& aValueName);
    QString getDisplayedValueName() const;

    // False when the host forbids zoom-constant placement of buttons.
    bool isScaleAdjustAllowed() const;
    static void setScaleAdjustAllowed(bool anAllowed);

    // True when the segments a1-a2 and b1-b2 share a point (ends included);
    // anIntersection receives it. Collinear overlapping segments give the
    // overlap point nearest to a1; parallel disjoint ones give false.
    static bool linesIntersect(QPointF a1, QPointF a2, QPointF b1, QPointF b2, QPointF& anIntersection);

    // Hides the item, takes it out of its editor's items and deletes it
    // later; safe while one of the item's own handlers is running.
    // Idempotent.
    void discard();
    bool isDiscarded() const;

    QPen currentPen;
    QPen normalPen;
    Qt::PenStyle penStyle = Qt::SolidLine;
    int penWidth = 1;
    bool hidden = false;
    bool solidEdit = false;

signals:
    // setColor() was called.
    void signalColorChanged(const QColor& aColor);

private:
    KxGsManipulator* gsManipulator;
    QPointer<KxGsEditor> ownerEditor;
    QString name;
    QString displayValue;
    QString displayedValueName;
    QString stepUnitName;
    double step = 0.0;
    bool selected = false;
    bool locked = false;
    bool current = false;
    bool discarded = false;
    static bool theScaleAdjustAllowed;
};
