#pragma once

#include "KxHostGlobal.h"
#include "OvQueuedCall.h"

#include <QEvent>
#include <QGraphicsObject>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QHash>
#include <QPointer>

#include <map>

class KxGsManipulator;
class KxGsObject;
class KxView;
class QGraphicsRectItem;
class QGraphicsView;
class QMouseEvent;

// The graphics editor: the item that shows the picture and owns every
// measurement item. Items take no scene events of their own; this item
// receives every mouse, hover, key and wheel event of the picture and routes
// it either to a stored measurement item under the mouse (which then keeps the
// mouse until release) or to the override manipulator.
//
// Scene coordinates are picture pixels: the editor stays unscaled at the
// origin and the zoom is the transform of the scene's views. Measurement
// items are not the editor's children: the scene walks every child of an item
// its index finds, on every lookup and paint. They sit in groups of at most
// kGroupSize consecutive items (scene items without contents, stacked in the
// order the items came), so that a lookup walks a few groups and the scene's
// pass over changed items walks the groups rather than every item.
class KX_HOST_EXPORT KxGsEditor : public QGraphicsObject
{
    Q_OBJECT

public:
    explicit KxGsEditor(QGraphicsItem* aParent = nullptr);
    ~KxGsEditor() override;

    // The area inside which shapes keep their labels and buttons: the picture
    // rectangle, in this item's coordinates.
    virtual QRectF getEditorArea() const;

    // The one editor: the first one constructed, or a new one created here
    // when none exists yet.
    static KxGsEditor* getInstance();
    // Null when none exists; never creates one.
    static KxGsEditor* existingInstance();

    void setImage(const QImage& anImage);
    const QImage& getImage() const;

    QRectF boundingRect() const override;
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;

    // Scales the scene's views, lets every measurement item adjust its
    // zoom-constant sizes, stores the zoom in the kernel's current view and
    // emits scaleChanged(). Non-positive or non-finite values are ignored.
    void setZoom(double aZoom);
    double getZoom() const;
    // The kernel view this editor keeps current (origin and zoom).
    KxView* getView() const;

    KxGsObject* getCurrentObject() const;
    QList<KxGsObject*> getSelectedObjects() const;
    // Makes anObj current; with aAddToSelection false it becomes the only
    // selected object, with true it joins the selection. Null clears the
    // current object and the selection. Emits signalCurrentObjectChanged when
    // the current object changes.
    void setCurrentObject(KxGsObject* anObj, bool aAddToSelection);
    // Drops anObj from current and selection without any signal (used when an
    // item is going away).
    void forgetObject(KxGsObject* anObj);
    // Takes anObj out of the selection; when it was current, the most
    // recently selected remaining object becomes current (null when none).
    void deselectObject(KxGsObject* anObj);
    // Selects every visible stored measurement; the last one becomes current.
    // Ignored while a gesture is under way.
    void selectAll();
    // Selects the visible stored measurements that lie inside aRect (this
    // item's coordinates), replacing the selection or, with aAdd, joining it.
    void selectInRect(const QRectF& aRect, bool aAdd);

    // A gesture is under way: the mouse is held by an item, the manipulator or
    // a selection band, the override manipulator has an unfinished item, or
    // the current object is not stored yet.
    bool isGestureUnderWay() const;
    // Escape: cancels the gesture under way (the unfinished measurement is
    // discarded, nothing is stored) or, when there is none, clears the
    // selection; either way the override manipulator stays chosen. A drag of
    // a stored item is left alone. True when something was cancelled or
    // deselected.
    bool cancelOrDeselect();
    // The selection band being dragged, null when none.
    QGraphicsRectItem* getSelectionBand() const;

    // The previous override manipulator gets deactivate(), the new one
    // activate(). Null is the same as restoreOverrideManipulator().
    void setOverrideManipulator(KxGsManipulator* aManipulator);
    // Deactivates the override manipulator; afterwards the editor only selects
    // and edits existing items.
    void restoreOverrideManipulator();
    KxGsManipulator* getOverrideManipulator() const;

    // The editor's measurement items in the order they came, without items
    // being deleted.
    QList<KxGsObject*> getAllChildGsObjects() const;
    bool isGsObjectFound(const KxGsObject* anObj) const;
    // Takes anObj among the editor's items and into its scene; an item that
    // is already one of them is left alone. releaseGsObject() lets it go
    // again (an item being discarded or destroyed). Both cost the same
    // however many items there are.
    void adoptGsObject(KxGsObject* anObj);
    void releaseGsObject(KxGsObject* anObj);
    // The stored, visible items whose area (label and buttons included) comes
    // within aMargin of aPoint, the order presses are offered in: the
    // current object first, then from the top of the stacking order down.
    QList<KxGsObject*> objectsNear(const QPointF& aPoint, double aMargin) const;

    // Labels are drawn while their boxes would not cover the view more than
    // once: at most one measurement per kScreenPixelsPerLabel pixels of the
    // view (a label of the default size is about 120 x 21 pixels), and never
    // fewer than kMinLabelsInView. With more in view they would only cover
    // each other and the picture, and are left out until the view is zoomed
    // in. They still take their places, so nothing moves when they come back.
    static constexpr int kScreenPixelsPerLabel = 2500;
    static constexpr int kMinLabelsInView = 200;
    bool areLabelsShown() const;
    // Labels and buttons sized one picture pixel per pixel and every label
    // drawn, for rendering the picture at its own size; endPictureRender()
    // gives back the screen's sizes.
    void beginPictureRender();
    void endPictureRender();
    // The item that currently holds the mouse (between an accepted press and
    // its release), null otherwise.
    KxGsObject* getMouseGrabberObject() const;

    // Removes every selected stored item through its manipulator, in one undo
    // macro when more than one goes.
    void deleteSelected();

signals:
    void scaleChanged();
    void signalCurrentObjectChanged(const KxGsObject* anObj);
    // The set of selected objects may have changed.
    void signalSelectionChanged();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void wheelEvent(QGraphicsSceneWheelEvent* anEvent) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* anEvent) override;
    void keyPressEvent(QKeyEvent* anEvent) override;
    void keyReleaseEvent(QKeyEvent* anEvent) override;
    void dragEnterEvent(QGraphicsSceneDragDropEvent* anEvent) override;
    void dragMoveEvent(QGraphicsSceneDragDropEvent* anEvent) override;
    void dragLeaveEvent(QGraphicsSceneDragDropEvent* anEvent) override;
    void dropEvent(QGraphicsSceneDragDropEvent* anEvent) override;
    QVariant itemChange(GraphicsItemChange aChange, const QVariant& aValue) override;

private:
    // Skips an item whose enclosed area (not its line) is under the mouse
    // while a drawing tool is chosen: that press starts a new measurement.
    bool pressItem(QGraphicsSceneMouseEvent* anEvent, bool aDoubleClick);
    // The hit tolerance in item units: the default selection size on screen.
    int hitTolerance() const;
    // A press (or double click) that starts a gesture: a stored item under the
    // mouse first, then the override manipulator, else it clears the selection.
    // While the override manipulator draws (its unstored item is current) the
    // press is its own, so a click that ends a drawing never lands on a label.
    void startGesture(QGraphicsSceneMouseEvent* anEvent, bool aDoubleClick);
    bool isOverrideDrawing() const;
    QMouseEvent makeMouseEvent(QEvent::Type aType, const KxGsObject* anObj, QGraphicsSceneMouseEvent* anEvent) const;
    QList<KxGsObject*> pressCandidates(const QPointF& aPoint) const;
    void applyZoomToViews();
    // Counts the measurements in view, once per turn of the event loop after
    // a zoom or a scroll, or after measurements coming or going could change
    // whether labels are shown (scheduleLabelsCheck); repaints when labels
    // come or go.
    void checkLabelsShown();
    void scheduleLabelsCheck();
    void writeBackMove(KxGsObject* anObj);
    // Ctrl+press on a selected item: takes it out of the selection. True when
    // the press was used so.
    bool toggleOffUnderMouse(QGraphicsSceneMouseEvent* anEvent);
    void startBand(QGraphicsSceneMouseEvent* anEvent);
    QList<KxGsObject*> selectableObjects() const;

    QImage image;
    double zoom = 1.0;
    KxView* view;
    QPointer<KxGsObject> currentObject;
    QList<QPointer<KxGsObject>> selectedObjects;
    QPointer<KxGsManipulator> overrideManipulator;
    QPointer<KxGsObject> grabbedObject;
    QPointF grabbedStartPos;
    Qt::MouseButton pressButton = Qt::NoButton;
    // A press went to an item: the gesture stays with it (or with nobody
    // when the item went away) until the release.
    bool itemOwnsMouse = false;
    bool manipulatorHasMouse = false;
    // Selection band: drawn while the left button drags on empty picture area.
    QGraphicsRectItem* band = nullptr;
    QPointF bandStart;
    bool bandAdds = false;
    static constexpr int kGroupSize = 256;
    struct Group
    {
        QGraphicsItem* item = nullptr;
        int count = 0;
    };
    // By number (arrival / kGroupSize).
    std::map<quint64, Group> groups;
    // The measurement items by arrival, and each one's place in that order.
    std::map<quint64, KxGsObject*> objectsByArrival;
    QHash<const KxGsObject*, quint64> arrivalOf;
    quint64 nextArrival = 0;
    // Whether labels are drawn, the count on its way, the measurements in
    // view at the last count (counting stops above twice the limit) with
    // those added since, and the view's limit.
    bool labelsShown = true;
    OvQueuedCall labelsCheck;
    int inView = 0;
    int labelLimit = kMinLabelsInView;
    bool renderingPicture = false;
    QList<QPointer<QGraphicsView>> watchedViews;
    static KxGsEditor* theInstance;
};
