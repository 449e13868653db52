#pragma once

#include "KxGsObject.h"

#include <QPixmap>
#include <QPointF>
#include <QRectF>
#include <QVector>

class QGraphicsLineItem;
class QGraphicsPixmapItem;
class OvLabelItem;
class QPainter;

// Measurement item with a value label, a trash button and an optional active
// button. Label and buttons are child items scaled by one over the zoom, so
// they keep their size on screen at every zoom; their positions are given in
// this item's coordinates. Shapes call the base handlers first: an event they
// accept was a press on the label or a button and the shape leaves it alone.
class KX_HOST_EXPORT OvGsObject : public KxGsObject
{
    Q_OBJECT

public:
    // Parts reported by isPointOnObject() for the label and the buttons.
    enum ButtonPart { PartLabel = -2, PartTrash = -3, PartActive = -4 };

    OvGsObject(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName);
    ~OvGsObject() override;

    // While held (calls nest), labels are not settled: keeping a label inside
    // the picture (ensureLabelVisible) and its leader line wait, and each
    // label is settled once when the last hold ends. An item rebuilt from the
    // store gets its name, its geometry, its stored label place, then its
    // value: its label is measured and placed once, with all of them.
    static void holdLabels();
    static void releaseLabels();

    // The label reads "<name>: <value>", or only the name while the value is
    // empty.
    void setLabelVisible(bool aVisible);
    bool isLabelVisible() const;
    void setLabelPos(const QPointF& aPos);
    QPointF getLabelPos() const;
    // The point of the shape the label belongs to; a thin leader line joins
    // them while the label is far from it.
    void setLabelAnchor(const QPointF& anAnchor);
    QPointF getLabelAnchor() const;
    void setLabelFontPixSize(int aPixelSize);
    int getLabelFontPixSize() const;
    void updateLabel();
    // Moves the label so that its rectangle lies inside the editor's area
    // (the parent's getEditorArea()); nothing without such a parent. While
    // the host chooses the label's place (isLabelPlacedByHost()) it also moves
    // it off the shape, its handles and its buttons, to the nearest clear
    // place inside the area: a press on a label wins over the shape, so a
    // label there would make a handle unreachable.
    void ensureLabelVisible();
    // The host chooses the label's place while the measurement is being drawn
    // (not stored yet; current or the chosen tool's) and while nobody has
    // placed its label (an item rebuilt from the store). Once stored, a label placed by the shape, the
    // manipulator or the user stays where it was put.
    bool isLabelPlacedByHost() const;
    // True when aRect (item coordinates) covers the shape's line, a handle or
    // a visible button, with a margin of a few screen pixels.
    bool isRectOnShape(const QRectF& aRect) const;
    bool isPointOnLabel(const QPointF& aPoint) const;
    // The label's rectangle in item coordinates at the current zoom.
    QRectF getLabelRect() const;
    // getLabelRect()'s height, without measuring the label's text.
    double getLabelHeight() const;
    QString getLabelText() const;

    // The trash button shows only while allowed and the item is current.
    void setTrashPos(const QPointF& aPos);
    QPointF getTrashPos() const;
    void allowTrashVisible(bool anAllow);
    bool isTrashAllowed() const;
    QGraphicsPixmapItem* getTrashButton() const;
    bool isPointOnTrash(const QPointF& aPoint) const;

    // The active button shows while allowed; its image tells whether it is
    // pressed.
    void setActivePos(const QPointF& aPos);
    QPointF getActivePos() const;
    QGraphicsPixmapItem* getActiveButton() const;
    void allowActiveVisible(bool anAllow);
    // Also replaces the button's two images.
    void allowActiveVisible(bool anAllow, QPixmap& anOffPixmap, QPixmap& anOnPixmap);
    void setUseActiveButton(bool aUse);
    bool getUseActiveButton() const;
    void setActivePressed(bool aPressed);
    bool getActivePressed() const;
    // Unpresses the active button of every OvGsObject that exists.
    static void makeAllActiveGray();
    // Every object whose active button is allowed and not hidden, in no
    // particular order.
    static QList<OvGsObject*> objectsShowingActiveButton();
    bool isPointOnActiveButton(const QPointF& aPoint) const;

    void setCurrent(bool aCurrent) override;
    // A selected item's label is framed in the item's colour, so that a
    // selection of several measurements shows.
    void setSelected(bool aSelected) override;
    void setName(const QString& aName) override;
    void setDisplayValue(const QString& aValue) override;
    // Sets `hidden`: nothing is drawn and presses are ignored.
    void setAlwaysHidden(bool aHidden);

    void adjustScale(double aZoom) override;
    void zoomSettled() override;
    // Label and buttons are children and follow the shape's own setPos(); the
    // base part only refreshes the leader line.
    void moveObjectBy(const QPointF& aDelta) override;
    // Label (PartLabel), trash (PartTrash) and active button (PartActive) only;
    // false elsewhere so that shapes test their own geometry next.
    bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const override;
    // False on the label and the buttons, else isPointInsideOutline().
    bool isPointInsideOnly(const QPointF& aPoint, int aTolerance) const override;

    // Press on the trash removes the item through its manipulator; on the
    // active button toggles it and emits signalActiveButtonClicked; on the
    // label starts a label drag. Each of these accepts the event; every other
    // press stays ignored.
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    // Accepted only while a label drag runs (the label follows the mouse).
    void manipMouseMoveEvent(QMouseEvent* anEvent) override;
    // Accepted only when it ends a label drag.
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;
    bool isLabelDragging() const;

    // Paints the item and its visible children (label, buttons, leader line)
    // into aPainter, which is set up in this item's coordinates; used to
    // render measurements outside a view.
    void paintWithChildren(QPainter* aPainter);

    // Item units per screen pixel at the current view and zoom.
    double unitsPerPixel() const;

signals:
    void signalActiveButtonClicked(OvGsObject* anObj);

protected:
    QVariant itemChange(GraphicsItemChange aChange, const QVariant& aValue) override;
    // For closed shapes: aPoint (item coordinates, never on the label or a
    // button) lies inside the outline and off its lines and handles by more
    // than aTolerance / 2 item units. Default: false.
    virtual bool isPointInsideOutline(const QPointF& aPoint, int aTolerance) const;

private:
    void updateButtons();
    void updateLeader();
    // While labels are held: notes aPending (labelPending or leaderPending)
    // for releaseLabels() and says so.
    bool waitsForRelease(bool& aPending);
    // Shows the label at aPos without taking it as the label's place.
    void moveLabelTo(const QPointF& aPos);
    // A near place for the label (from its current one, on a screen-pixel
    // grid) that lies inside anArea and off the shape: straight up, right,
    // left or down first, then diagonally; unchanged when none.
    void placeLabelBeside(const QRectF& anArea);
    QRectF childRect(const QGraphicsItem* aChild) const;
    // The label and the buttons keep their size on the screen.
    bool isScreenSized(const QGraphicsItem* aChild) const;
    void applyScreenUnits();
public:
    void setScreenUnits(double aUnitsPerPixel) override;
private:
    QRectF trashRect() const;
    QRectF activeRect() const;
    QGraphicsPixmapItem* buttonItem(QGraphicsPixmapItem*& anItem, const QPixmap& aPixmap, const QPointF& aPos,
                                    bool aShown) const;
    // The labels and buttons of the other measurements whose items meet
    // aRegion (item coordinates), found through the scene's index; in item
    // coordinates.
    QVector<QRectF> neighbourRects(const QRectF& aRegion) const;

    OvLabelItem* labelItem;
    // Made when first needed.
    QGraphicsLineItem* leaderLine = nullptr;
    mutable QGraphicsPixmapItem* trashButton = nullptr;
    mutable QGraphicsPixmapItem* activeButton = nullptr;
    QPointF trashPos;
    QPointF activePos;
    bool trashShown = false;
    bool activeShown = false;
    QPixmap activeOffPixmap;
    QPixmap activeOnPixmap;
    QPointF labelAnchor;
    QPointF labelDragStart;
    QPointF labelPosAtDragStart;
    int labelFontPixSize = 16;
    // A measurement shows its value unless told otherwise, also when it is
    // rebuilt from the store rather than drawn.
    bool labelVisible = true;
    bool labelDragging = false;
    // Someone put the label somewhere (setLabelPos or a drag).
    bool labelPlaced = false;
    // Where the label was last put (setLabelPos, host placement); what
    // ensureLabelVisible() shows is that place kept inside the picture.
    QPointF labelWanted;
    // Set while isRectOnShape() probes the shape: the base part of
    // isPointOnObject() then reports nothing, so shapes test their geometry.
    mutable bool probingShape = false;
    bool trashAllowed = true;
    bool activeAllowed = false;
    bool useActiveButton = false;
    bool activePressed = false;
    // Waiting for releaseLabels(): a label to keep inside, a leader to draw.
    bool labelPending = false;
    bool leaderPending = false;
};
