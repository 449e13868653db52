#include "KxGsEditor.h"

#include "KxGsManipulator.h"
#include "KxGsObject.h"
#include "KxKernelData.h"
#include "KxLocalMagnifier.h"
#include "KxView.h"
#include "OvQtCompat.h"

#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneDragDropEvent>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsRectItem>
#include <QGraphicsSceneWheelEvent>
#include <QGraphicsView>
#include <QScrollBar>
#include <QSet>
#include <QKeyEvent>
#include <QKeySequence>
#include <QPainter>
#include <QUndoStack>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

// Hands an event the editor does not handle itself to the override
// manipulator; without one the event stays ignored.
template <typename Event>
void forwardIgnored(KxGsManipulator* aManipulator, Event* anEvent, void (KxGsManipulator::*aHandler)(Event*))
{
    anEvent->ignore();
    if (aManipulator)
        (aManipulator->*aHandler)(anEvent);
}

// Holds consecutive measurement items; draws nothing itself.
class ItemGroup : public QGraphicsItem
{
public:
    ItemGroup() { setFlag(QGraphicsItem::ItemHasNoContents); }
    QRectF boundingRect() const override { return QRectF(); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}
};

} // namespace

KxGsEditor* KxGsEditor::theInstance = nullptr;

KxGsEditor::KxGsEditor(QGraphicsItem* aParent)
    : QGraphicsObject(aParent)
    , view(new KxView(QPoint(0, 0), 1.0))
    , labelsCheck(this, [this]() { checkLabelsShown(); })
{
    setFlag(QGraphicsItem::ItemIsFocusable);
    setAcceptHoverEvents(true);
    setAcceptDrops(true);
    setAcceptedMouseButtons(Qt::AllButtons);
    if (!theInstance) {
        theInstance = this;
        KxKernelData::getInstance()->setCurrentView(view);
    }
}

KxGsEditor::~KxGsEditor()
{
    // The measurement items go with the editor, as its children would.
    const std::map<quint64, KxGsObject*> owned = std::move(objectsByArrival);
    objectsByArrival.clear();
    arrivalOf.clear();
    for (const auto& entry : owned)
        delete entry.second;
    for (const auto& entry : groups)
        delete entry.second.item;
    delete band;
    if (theInstance == this)
        theInstance = nullptr;
    KxKernelData* kernel = KxKernelData::getInstance();
    if (kernel->getCurrentView() == view)
        kernel->setCurrentView(nullptr);
    delete view;
}

QRectF KxGsEditor::getEditorArea() const
{
    return QRectF(QPointF(0.0, 0.0), QSizeF(image.size()));
}

KxGsEditor* KxGsEditor::getInstance()
{
    if (!theInstance)
        new KxGsEditor();
    return theInstance;
}

KxGsEditor* KxGsEditor::existingInstance()
{
    return theInstance;
}

void KxGsEditor::setImage(const QImage& anImage)
{
    prepareGeometryChange();
    image = anImage;
    update();
    scheduleLabelsCheck();
}

const QImage& KxGsEditor::getImage() const
{
    return image;
}

QRectF KxGsEditor::boundingRect() const
{
    return getEditorArea();
}

void KxGsEditor::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (image.isNull())
        return;
    // Pixels stay crisp when enlarged; a reduced picture is smoothed.
    aPainter->setRenderHint(QPainter::SmoothPixmapTransform, zoom < 1.0);
    aPainter->drawImage(QPointF(0.0, 0.0), image);
}

void KxGsEditor::setZoom(double aZoom)
{
    if (!(aZoom > 0.0) || !std::isfinite(aZoom))
        return;
    zoom = aZoom;
    applyZoomToViews();
    view->setZoom(aZoom);
    const QList<KxGsObject*> objects = getAllChildGsObjects();
    for (KxGsObject* obj : objects)
        obj->adjustScale(aZoom);
    // Only once every item has its new geometry: settling may look up others.
    for (KxGsObject* obj : objects)
        obj->zoomSettled();
    if (KxLocalMagnifier* magnifier = KxGsManipulator::localMagnifier())
        magnifier->update();
    emit scaleChanged();
}

void KxGsEditor::applyZoomToViews()
{
    if (!scene())
        return;
    const QTransform transform = QTransform::fromScale(zoom, zoom);
    for (QGraphicsView* each : scene()->views()) {
        if (each->transform() != transform)
            each->setTransform(transform);
        if (watchedViews.contains(each))
            continue;
        watchedViews.append(each);
        // Scrolling and resizing change how much of the picture is in view.
        for (QScrollBar* bar : { each->horizontalScrollBar(), each->verticalScrollBar() }) {
            connect(bar, &QScrollBar::valueChanged, this, &KxGsEditor::scheduleLabelsCheck);
            connect(bar, &QScrollBar::rangeChanged, this, &KxGsEditor::scheduleLabelsCheck);
        }
    }
    scheduleLabelsCheck();
}

void KxGsEditor::checkLabelsShown()
{
    const QGraphicsView* first = scene() && !scene()->views().isEmpty() ? scene()->views().first() : nullptr;
    const QSize port = first ? first->viewport()->size() : QSize();
    labelLimit = std::max(kMinLabelsInView, port.width() * port.height() / kScreenPixelsPerLabel);
    // Counted only when there are more than could all be in view at once:
    // a measurement is in view when its position is (a look at each
    // position costs far less than asking the scene for everything in view).
    // Counting stops at twice the limit: that many removals may follow
    // before the labels could come back.
    inView = int(objectsByArrival.size());
    if (first && inView > labelLimit) {
        const QRectF shown = first->mapToScene(first->viewport()->rect()).boundingRect();
        inView = 0;
        for (const auto& entry : objectsByArrival) {
            const KxGsObject* obj = entry.second;
            if (!obj->isDiscarded() && obj->isVisible() && shown.contains(obj->scenePos()) && ++inView > 2 * labelLimit)
                break;
        }
    }
    const bool shownNow = inView <= labelLimit;
    if (shownNow == labelsShown)
        return;
    labelsShown = shownNow;
    if (scene())
        scene()->update();
}

void KxGsEditor::scheduleLabelsCheck()
{
    // Once after a burst (a file opened, a base removed with its lines).
    labelsCheck.request();
}

bool KxGsEditor::areLabelsShown() const
{
    return labelsShown || renderingPicture;
}

void KxGsEditor::beginPictureRender()
{
    renderingPicture = true;
    for (const auto& entry : objectsByArrival)
        entry.second->setScreenUnits(1.0);
}

void KxGsEditor::endPictureRender()
{
    renderingPicture = false;
    for (const auto& entry : objectsByArrival)
        entry.second->setScreenUnits(1.0 / zoom);
}

QVariant KxGsEditor::itemChange(GraphicsItemChange aChange, const QVariant& aValue)
{
    if (aChange == ItemSceneHasChanged) {
        // The items follow the editor into its scene, above the picture.
        QGraphicsScene* now = scene();
        QList<QGraphicsItem*> followers;
        for (const auto& entry : groups)
            followers.append(entry.second.item);
        if (band)
            followers.append(band);
        for (QGraphicsItem* item : qAsConst(followers)) {
            if (item->scene() == now)
                continue;
            if (item->scene())
                item->scene()->removeItem(item);
            if (now)
                now->addItem(item);
        }
        applyZoomToViews();
    }
    return QGraphicsObject::itemChange(aChange, aValue);
}

double KxGsEditor::getZoom() const
{
    return zoom;
}

KxView* KxGsEditor::getView() const
{
    return view;
}

KxGsObject* KxGsEditor::getCurrentObject() const
{
    return currentObject.data();
}

QList<KxGsObject*> KxGsEditor::getSelectedObjects() const
{
    QList<KxGsObject*> result;
    for (const QPointer<KxGsObject>& obj : selectedObjects) {
        if (obj)
            result.append(obj.data());
    }
    return result;
}

void KxGsEditor::setCurrentObject(KxGsObject* anObj, bool aAddToSelection)
{
    KxGsObject* old = currentObject.data();
    if (anObj && anObj->isDiscarded())
        anObj = nullptr;
    if (!anObj || !aAddToSelection) {
        for (const QPointer<KxGsObject>& obj : selectedObjects) {
            if (obj && obj != anObj)
                obj->setSelected(false);
        }
        selectedObjects.clear();
    }
    if (anObj) {
        if (!getSelectedObjects().contains(anObj))
            selectedObjects.append(anObj);
        anObj->setSelected(true);
    }
    if (old && old != anObj)
        old->setCurrent(false);
    currentObject = anObj;
    if (anObj)
        anObj->setCurrent(true);
    if (old != anObj)
        emit signalCurrentObjectChanged(anObj);
    emit signalSelectionChanged();
}

void KxGsEditor::deselectObject(KxGsObject* anObj)
{
    if (!anObj)
        return;
    selectedObjects.removeAll(anObj);
    selectedObjects.removeAll(QPointer<KxGsObject>());
    anObj->setSelected(false);
    if (currentObject == anObj) {
        const QList<KxGsObject*> remaining = getSelectedObjects();
        KxGsObject* next = remaining.isEmpty() ? nullptr : remaining.last();
        anObj->setCurrent(false);
        currentObject = next;
        if (next)
            next->setCurrent(true);
        emit signalCurrentObjectChanged(next);
    }
    emit signalSelectionChanged();
}

QList<KxGsObject*> KxGsEditor::selectableObjects() const
{
    QList<KxGsObject*> result;
    for (KxGsObject* obj : getAllChildGsObjects()) {
        KxGsManipulator* manipulator = obj->getManipulator();
        if (obj->isVisible() && !obj->hidden && manipulator && manipulator->getObjectIdx(obj) >= 0)
            result.append(obj);
    }
    return result;
}

void KxGsEditor::selectAll()
{
    if (isGestureUnderWay())
        return;
    for (KxGsObject* obj : selectableObjects())
        setCurrentObject(obj, true);
}

void KxGsEditor::selectInRect(const QRectF& aRect, bool aAdd)
{
    if (!aAdd)
        setCurrentObject(nullptr, false);
    const QRectF rect = aRect.normalized();
    for (KxGsObject* obj : selectableObjects()) {
        if (obj->isRectContainsObject(obj->mapRectFromParent(rect)))
            setCurrentObject(obj, true);
    }
}

bool KxGsEditor::isGestureUnderWay() const
{
    if (itemOwnsMouse || manipulatorHasMouse || band)
        return true;
    if (overrideManipulator && overrideManipulator->hasGestureInProgress())
        return true;
    const KxGsObject* current = currentObject.data();
    if (current && !current->isDiscarded()) {
        const KxGsManipulator* manipulator = current->getManipulator();
        if (!manipulator || manipulator->getObjectIdx(current) < 0)
            return true;
    }
    return false;
}

bool KxGsEditor::cancelOrDeselect()
{
    if (band) {
        delete band;
        band = nullptr;
        return true;
    }
    QPointer<KxGsManipulator> tool = overrideManipulator;
    if (!isGestureUnderWay()) {
        if (!currentObject && getSelectedObjects().isEmpty())
            return false;
        setCurrentObject(nullptr, false);
        if (tool && !overrideManipulator)
            setOverrideManipulator(tool.data());
        return true;
    }
    // Dragging a stored item is not a measurement in progress: it stays.
    if (itemOwnsMouse)
        return false;
    // Clearing the current object may make a tool panel drop its drawing
    // tool; the tool stays chosen for the next measurement.
    bool cancelled = tool && tool->cancelGesture();
    // Whatever kind it belongs to, an unstored current item is the unfinished
    // measurement: the frame forgets it when the current object turns null.
    KxGsObject* current = currentObject.data();
    if (current && !current->isDiscarded()) {
        KxGsManipulator* manipulator = current->getManipulator();
        if (!manipulator || manipulator->getObjectIdx(current) < 0) {
            setCurrentObject(nullptr, false);
            current->discard();
            cancelled = true;
        }
    }
    if (tool && !overrideManipulator)
        setOverrideManipulator(tool.data());
    return cancelled;
}

QGraphicsRectItem* KxGsEditor::getSelectionBand() const
{
    return band;
}

int KxGsEditor::hitTolerance() const
{
    return std::max(1, int(KxGsObject::kDefaultSelSize / zoom));
}

bool KxGsEditor::toggleOffUnderMouse(QGraphicsSceneMouseEvent* anEvent)
{
    const int tolerance = hitTolerance();
    for (KxGsObject* candidate : pressCandidates(anEvent->scenePos())) {
        int part = 0;
        if (candidate->hidden
            || !candidate->isPointOnObject(candidate->mapFromScene(anEvent->scenePos()), part, tolerance))
            continue;
        // The topmost item hit decides: an unselected one takes the press and
        // joins the selection as usual.
        if (!candidate->isSelected())
            return false;
        deselectObject(candidate);
        itemOwnsMouse = true;
        grabbedObject = nullptr;
        pressButton = anEvent->button();
        return true;
    }
    return false;
}

void KxGsEditor::startBand(QGraphicsSceneMouseEvent* anEvent)
{
    bandStart = anEvent->pos();
    bandAdds = anEvent->modifiers() & Qt::ControlModifier;
    // A scene item of its own like the measurements, to be drawn above them.
    band = new QGraphicsRectItem(QRectF(bandStart, QSizeF(0.0, 0.0)));
    if (scene())
        scene()->addItem(band);
    QPen pen(QColor(0, 177, 253), 1.0, Qt::DashLine);
    pen.setCosmetic(true);
    band->setPen(pen);
    band->setBrush(QColor(0, 177, 253, 40));
    band->setAcceptedMouseButtons(Qt::NoButton);
    band->setZValue(1.0e5);
}

void KxGsEditor::forgetObject(KxGsObject* anObj)
{
    if (!anObj)
        return;
    selectedObjects.removeAll(anObj);
    // QPointer entries of objects already being destroyed have turned null.
    selectedObjects.removeAll(QPointer<KxGsObject>());
    if (currentObject == anObj)
        currentObject = nullptr;
    if (grabbedObject == anObj)
        grabbedObject = nullptr;
}

void KxGsEditor::setOverrideManipulator(KxGsManipulator* aManipulator)
{
    if (!aManipulator) {
        restoreOverrideManipulator();
        return;
    }
    if (overrideManipulator == aManipulator)
        return;
    KxGsManipulator* old = overrideManipulator.data();
    overrideManipulator = nullptr;
    manipulatorHasMouse = false;
    if (old)
        old->deactivate();
    unsetCursor();
    overrideManipulator = aManipulator;
    aManipulator->activate();
}

void KxGsEditor::restoreOverrideManipulator()
{
    KxGsManipulator* old = overrideManipulator.data();
    overrideManipulator = nullptr;
    manipulatorHasMouse = false;
    if (old)
        old->deactivate();
    unsetCursor();
}

KxGsManipulator* KxGsEditor::getOverrideManipulator() const
{
    return overrideManipulator.data();
}

QList<KxGsObject*> KxGsEditor::getAllChildGsObjects() const
{
    QList<KxGsObject*> result;
    result.reserve(int(objectsByArrival.size()));
    for (const auto& entry : objectsByArrival) {
        if (!entry.second->isDiscarded())
            result.append(entry.second);
    }
    return result;
}

bool KxGsEditor::isGsObjectFound(const KxGsObject* anObj) const
{
    return anObj && arrivalOf.contains(anObj) && !anObj->isDiscarded();
}

void KxGsEditor::adoptGsObject(KxGsObject* anObj)
{
    if (!anObj || arrivalOf.contains(anObj))
        return;
    const quint64 arrival = nextArrival++;
    arrivalOf.insert(anObj, arrival);
    objectsByArrival.emplace(arrival, anObj);
    Group& group = groups[arrival / kGroupSize];
    if (!group.item) {
        group.item = new ItemGroup;
        if (scene())
            scene()->addItem(group.item);
    }
    ++group.count;
    anObj->setParentItem(group.item);
    // Its place is not known yet: taken as in view. Only labels shown can
    // be crowded out by one more; they are left out at once (a paint may
    // come before the count) and the count puts them back if there is room.
    if (labelsShown && ++inView > labelLimit) {
        labelsShown = false;
        scheduleLabelsCheck();
    }
}

void KxGsEditor::releaseGsObject(KxGsObject* anObj)
{
    const auto it = arrivalOf.find(anObj);
    if (it == arrivalOf.end())
        return;
    const quint64 arrival = it.value();
    objectsByArrival.erase(arrival);
    arrivalOf.erase(it);
    const auto group = groups.find(arrival / kGroupSize);
    if (group != groups.end())
        --group->second.count;
    // Discarded items stay in their groups until deleted, so groups stay
    // too; once no item is left the numbering starts again and fills them.
    if (objectsByArrival.empty())
        nextArrival = 0;
    // Only labels left out can come back with one fewer.
    if (!labelsShown && --inView <= labelLimit)
        scheduleLabelsCheck();
}

QList<KxGsObject*> KxGsEditor::objectsNear(const QPointF& aPoint, double aMargin) const
{
    QList<KxGsObject*> found;
    if (scene()) {
        const QRectF area(aPoint - QPointF(aMargin, aMargin), QSizeF(2 * aMargin, 2 * aMargin));
        QSet<const KxGsObject*> seen;
        for (QGraphicsItem* item : scene()->items(area, Qt::IntersectsItemBoundingRect, Qt::AscendingOrder)) {
            // A label, button or handle stands for the measurement it belongs to.
            for (QGraphicsItem* up = item; up; up = up->parentItem()) {
                auto* obj = qobject_cast<KxGsObject*>(up->toGraphicsObject());
                if (obj && arrivalOf.contains(obj)) {
                    if (!seen.contains(obj)) {
                        seen.insert(obj);
                        found.append(obj);
                    }
                    break;
                }
            }
        }
    } else {
        found = getAllChildGsObjects();
    }
    QList<KxGsObject*> result;
    for (KxGsObject* obj : qAsConst(found)) {
        KxGsManipulator* manipulator = obj->getManipulator();
        if (!obj->isDiscarded() && obj->isVisible() && manipulator && manipulator->getObjectIdx(obj) >= 0)
            result.append(obj);
    }
    // From the top down: the higher stacking value first, then the later item.
    std::sort(result.begin(), result.end(), [this](const KxGsObject* a, const KxGsObject* b) {
        if (a->zValue() != b->zValue())
            return a->zValue() > b->zValue();
        return arrivalOf.value(a) > arrivalOf.value(b);
    });
    // The current object first: its handles are drawn on top of everything.
    if (currentObject && result.removeOne(currentObject.data()))
        result.prepend(currentObject.data());
    return result;
}

KxGsObject* KxGsEditor::getMouseGrabberObject() const
{
    return itemOwnsMouse ? grabbedObject.data() : nullptr;
}

void KxGsEditor::deleteSelected()
{
    QList<QPointer<KxGsObject>> doomed;
    for (KxGsObject* obj : getSelectedObjects()) {
        KxGsManipulator* manipulator = obj->getManipulator();
        if (!obj->isDiscarded() && manipulator && manipulator->getObjectIdx(obj) >= 0)
            doomed.append(obj);
    }
    if (doomed.isEmpty())
        return;
    QUndoStack* stack = doomed.first()->getManipulator()->getUndoStack();
    const bool macro = stack && doomed.size() > 1;
    if (macro)
        stack->beginMacro(tr("Delete measurements"));
    for (const QPointer<KxGsObject>& obj : doomed) {
        if (obj && !obj->isDiscarded())
            obj->getManipulator()->removeGsObject(obj.data());
    }
    if (macro)
        stack->endMacro();
}

QList<KxGsObject*> KxGsEditor::pressCandidates(const QPointF& aPoint) const
{
    // Only items whose area comes within the hit tolerance can take a press:
    // the scene's index finds them without asking every stored item.
    return objectsNear(aPoint, hitTolerance());
}

QMouseEvent KxGsEditor::makeMouseEvent(QEvent::Type aType, const KxGsObject* anObj,
                                       QGraphicsSceneMouseEvent* anEvent) const
{
    const QPointF local = anObj->mapFromScene(anEvent->scenePos());
    const QPointF screen(anEvent->screenPos());
    const QPointF window = anEvent->widget() ? QPointF(anEvent->widget()->mapFromGlobal(anEvent->screenPos())) : local;
    const Qt::MouseButton button = aType == QEvent::MouseMove ? Qt::NoButton : anEvent->button();
    // Returned as a temporary: Qt 6 events cannot be copied.
    return QMouseEvent(aType, local, window, screen, button, anEvent->buttons(), anEvent->modifiers());
}

bool KxGsEditor::pressItem(QGraphicsSceneMouseEvent* anEvent, bool aDoubleClick)
{
    for (KxGsObject* candidate : pressCandidates(anEvent->scenePos())) {
        // With a drawing tool chosen, the inside of a closed outline is free
        // picture: a nucleus can be measured inside its cell.
        if (overrideManipulator
            && candidate->isPointInsideOnly(candidate->mapFromScene(anEvent->scenePos()), hitTolerance()))
            continue;
        QPointer<KxGsObject> obj(candidate);
        QMouseEvent event = makeMouseEvent(aDoubleClick ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress,
                                           candidate, anEvent);
        event.setAccepted(false);
        if (aDoubleClick)
            candidate->manipMouseDoubleClickEvent(&event);
        else
            candidate->manipMousePressEvent(&event);
        if (!event.isAccepted())
            continue;
        itemOwnsMouse = true;
        pressButton = anEvent->button();
        // The press may have removed the item (its trash button): then the
        // rest of the gesture goes nowhere.
        if (obj && !obj->isDiscarded() && isGsObjectFound(obj.data())) {
            grabbedObject = obj;
            grabbedStartPos = obj->pos();
            setCurrentObject(obj.data(), anEvent->modifiers() & Qt::ControlModifier);
        } else {
            grabbedObject = nullptr;
        }
        return true;
    }
    return false;
}

bool KxGsEditor::isOverrideDrawing() const
{
    const KxGsObject* current = currentObject.data();
    return overrideManipulator && current && current->getManipulator() == overrideManipulator
        && overrideManipulator->getObjectIdx(current) < 0;
}

void KxGsEditor::startGesture(QGraphicsSceneMouseEvent* anEvent, bool aDoubleClick)
{
    const bool left = anEvent->button() == Qt::LeftButton;
    const bool control = anEvent->modifiers() & Qt::ControlModifier;
    if (left && !aDoubleClick && control && toggleOffUnderMouse(anEvent))
        return;
    // A drawing gesture keeps every press, and a manipulator may claim a press
    // over a stored item (a circle-to-circle line starts on a circle).
    const bool claimed = isOverrideDrawing()
                         || (overrideManipulator && overrideManipulator->claimsPress(anEvent->pos()));
    if (!claimed && pressItem(anEvent, aDoubleClick))
        return;
    // Empty picture area: a band selects, unless a drawing tool takes the
    // press (Ctrl makes it a band even then) or a measurement is unfinished.
    if (left && !aDoubleClick && (!overrideManipulator || control) && !isGestureUnderWay()) {
        startBand(anEvent);
        return;
    }
    if (overrideManipulator) {
        manipulatorHasMouse = true;
        if (aDoubleClick)
            overrideManipulator->mouseDoubleClickEvent(anEvent);
        else
            overrideManipulator->mousePressEvent(anEvent);
        anEvent->accept();
        return;
    }
    if (anEvent->button() == Qt::LeftButton)
        setCurrentObject(nullptr, false);
}

void KxGsEditor::mousePressEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (band)
        return;
    if (itemOwnsMouse || manipulatorHasMouse) {
        // A further button during a gesture belongs to whoever holds it.
        if (manipulatorHasMouse && overrideManipulator)
            overrideManipulator->mousePressEvent(anEvent);
        anEvent->accept();
        return;
    }
    setFocus(Qt::MouseFocusReason);
    startGesture(anEvent, false);
}

void KxGsEditor::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (itemOwnsMouse || manipulatorHasMouse || band)
        return;
    startGesture(anEvent, true);
}

void KxGsEditor::mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (band) {
        band->setRect(QRectF(bandStart, anEvent->pos()).normalized());
        return;
    }
    if (itemOwnsMouse) {
        if (grabbedObject && !grabbedObject->isDiscarded()) {
            QMouseEvent event = makeMouseEvent(QEvent::MouseMove, grabbedObject.data(), anEvent);
            event.setAccepted(false);
            grabbedObject->manipMouseMoveEvent(&event);
        }
        return;
    }
    if (overrideManipulator)
        overrideManipulator->mouseMoveEvent(anEvent);
}

void KxGsEditor::mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent)
{
    anEvent->accept();
    if (band) {
        if (anEvent->button() != Qt::LeftButton)
            return;
        const QRectF rect = QRectF(bandStart, anEvent->pos()).normalized();
        delete band;
        band = nullptr;
        selectInRect(rect, bandAdds);
        return;
    }
    if (itemOwnsMouse) {
        if (anEvent->button() != pressButton)
            return;
        itemOwnsMouse = false;
        QPointer<KxGsObject> obj = grabbedObject;
        grabbedObject = nullptr;
        if (!obj || obj->isDiscarded())
            return;
        const bool wasMoving = obj->isMoving() && !obj->isReshaping();
        QMouseEvent event = makeMouseEvent(QEvent::MouseButtonRelease, obj.data(), anEvent);
        event.setAccepted(false);
        obj->manipMouseReleaseEvent(&event);
        // Handles hidden during a move come back: repaint whatever the item did.
        if (obj && !obj->isDiscarded())
            obj->update();
        if (obj && !obj->isDiscarded() && wasMoving && obj->pos() != grabbedStartPos)
            writeBackMove(obj.data());
        return;
    }
    if (anEvent->buttons() == Qt::NoButton)
        manipulatorHasMouse = false;
    if (overrideManipulator)
        overrideManipulator->mouseReleaseEvent(anEvent);
}

void KxGsEditor::writeBackMove(KxGsObject* anObj)
{
    KxGsManipulator* manipulator = anObj->getManipulator();
    if (!manipulator)
        return;
    const KxView* current = KxKernelData::getInstance()->getCurrentView();
    const QPoint origin = current ? current->getOrigin() : view->getOrigin();
    const QPoint pos(OvQtCompat::round(anObj->pos().x()), OvQtCompat::round(anObj->pos().y()));
    manipulator->gsObjectMoved(anObj, pos + origin);
}

void KxGsEditor::hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent)
{
    if (overrideManipulator)
        overrideManipulator->hoverEnterEvent(anEvent);
}

void KxGsEditor::hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    if (overrideManipulator)
        overrideManipulator->hoverMoveEvent(anEvent);
}

void KxGsEditor::hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent)
{
    if (overrideManipulator)
        overrideManipulator->hoverLeaveEvent(anEvent);
}

void KxGsEditor::wheelEvent(QGraphicsSceneWheelEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::wheelEvent);
}

void KxGsEditor::contextMenuEvent(QGraphicsSceneContextMenuEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::contextMenuEvent);
}

void KxGsEditor::keyPressEvent(QKeyEvent* anEvent)
{
    if (overrideManipulator) {
        anEvent->ignore();
        overrideManipulator->keyPressEvent(anEvent);
        if (anEvent->isAccepted())
            return;
    }
    if (anEvent->key() == Qt::Key_Delete || anEvent->key() == Qt::Key_Backspace) {
        anEvent->accept();
        deleteSelected();
        return;
    }
    if (anEvent->key() == Qt::Key_Escape) {
        anEvent->setAccepted(cancelOrDeselect());
        return;
    }
    if (anEvent->matches(QKeySequence::SelectAll)) {
        anEvent->accept();
        selectAll();
        return;
    }
    anEvent->ignore();
}

void KxGsEditor::keyReleaseEvent(QKeyEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::keyReleaseEvent);
}

void KxGsEditor::dragEnterEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::dragEnterEvent);
}

void KxGsEditor::dragMoveEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::dragMoveEvent);
}

void KxGsEditor::dragLeaveEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::dragLeaveEvent);
}

void KxGsEditor::dropEvent(QGraphicsSceneDragDropEvent* anEvent)
{
    forwardIgnored(overrideManipulator.data(), anEvent, &KxGsManipulator::dropEvent);
}
