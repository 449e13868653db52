#include "OvGsObject.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "OvLabelItem.h"
#include "OvQtCompat.h"

#include <QGraphicsLineItem>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QHash>
#include <QMouseEvent>
#include <QPainter>
#include <QSet>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>

namespace {

const double kLabelPadding = 3.0;
// Beyond this many screen pixels between anchor and label a leader is drawn.
const double kLeaderDistance = 24.0;
// Label placement clear of the shape: screen pixels kept free around the
// label, the side of the probes, the grid step and how many rings are tried
// (about 100 pixels around the wanted place).
const double kShapeMargin = 4.0;
const double kProbePixels = 8.0;
const double kPlacementStep = 6.0;
const int kPlacementRings = 16;

// Objects whose active button is pressed: releasing them all must not walk
// every measurement.
QSet<OvGsObject*>& pressedObjects()
{
    static QSet<OvGsObject*> thePressed;
    return thePressed;
}

// Objects showing their active button, for finding the button under the
// mouse without walking every measurement.
QSet<OvGsObject*>& activeShownObjects()
{
    static QSet<OvGsObject*> theShown;
    return theShown;
}

// Items whose label waits for the last hold to end.
int labelHolds = 0;
QSet<OvGsObject*>& labelsPending()
{
    static QSet<OvGsObject*> thePending;
    return thePending;
}

QPointF nearestPointOnRect(const QRectF& aRect, const QPointF& aPoint)
{
    return QPointF(std::clamp(aPoint.x(), aRect.left(), aRect.right()),
                   std::clamp(aPoint.y(), aRect.top(), aRect.bottom()));
}

void paintTree(QPainter* aPainter, QGraphicsItem* anItem)
{
    QStyleOptionGraphicsItem option;
    option.rect = anItem->boundingRect().toRect();
    option.exposedRect = anItem->boundingRect();
    anItem->paint(aPainter, &option, nullptr);
    for (QGraphicsItem* child : anItem->childItems()) {
        if (!child->isVisibleTo(anItem))
            continue;
        aPainter->save();
        aPainter->translate(child->pos());
        aPainter->setTransform(child->transform(), true);
        aPainter->scale(child->scale(), child->scale());
        paintTree(aPainter, child);
        aPainter->restore();
    }
}

// Loaded once and shared by every item: loading a resource picture asks for
// its time stamp, which costs more than the rest of an item.
QPixmap resourcePixmap(const QString& aName)
{
    static QHash<QString, QPixmap> theLoaded;
    auto it = theLoaded.find(aName);
    if (it == theLoaded.end())
        it = theLoaded.insert(aName, QPixmap(QStringLiteral(":/tessilarresources/") + aName));
    return it.value();
}

} // namespace

OvGsObject::OvGsObject(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName)
    : KxGsObject(aManipulator, aParent)
{

    labelItem = new OvLabelItem(this);
    labelItem->setZValue(2.0);
    labelItem->hide();

    activeOffPixmap = resourcePixmap(QStringLiteral("active-off.png"));
    activeOnPixmap = resourcePixmap(QStringLiteral("active-on.png"));

    connect(this, &KxGsObject::signalColorChanged, this, [this]() { updateLabel(); });
    setName(aName);
    applyScreenUnits();
}

OvGsObject::~OvGsObject()
{
    pressedObjects().remove(this);
    activeShownObjects().remove(this);
    if (labelPending || leaderPending)
        labelsPending().remove(this);
}

void OvGsObject::holdLabels()
{
    ++labelHolds;
}

void OvGsObject::releaseLabels()
{
    if (labelHolds == 0 || --labelHolds > 0)
        return;
    const QSet<OvGsObject*> pending = std::exchange(labelsPending(), {});
    for (OvGsObject* each : pending) {
        const bool label = std::exchange(each->labelPending, false);
        const bool leader = std::exchange(each->leaderPending, false);
        if (label)
            each->ensureLabelVisible();
        if (leader)
            each->updateLeader();
    }
}

bool OvGsObject::waitsForRelease(bool& aPending)
{
    if (labelHolds == 0)
        return false;
    if (!labelPending && !leaderPending)
        labelsPending().insert(this);
    aPending = true;
    return true;
}

void OvGsObject::setLabelVisible(bool aVisible)
{
    labelVisible = aVisible;
    updateLabel();
}

bool OvGsObject::isLabelVisible() const
{
    return labelVisible;
}

void OvGsObject::setLabelPos(const QPointF& aPos)
{
    labelPlaced = true;
    labelWanted = aPos;
    moveLabelTo(aPos);
}

void OvGsObject::moveLabelTo(const QPointF& aPos)
{
    labelItem->setPos(aPos);
    updateLeader();
}

QPointF OvGsObject::getLabelPos() const
{
    return labelItem->pos();
}

void OvGsObject::setLabelAnchor(const QPointF& anAnchor)
{
    labelAnchor = anAnchor;
    updateLeader();
}

QPointF OvGsObject::getLabelAnchor() const
{
    return labelAnchor;
}

void OvGsObject::setLabelFontPixSize(int aPixelSize)
{
    if (aPixelSize < 1)
        return;
    labelFontPixSize = aPixelSize;
    updateLabel();
}

int OvGsObject::getLabelFontPixSize() const
{
    return labelFontPixSize;
}

QString OvGsObject::getLabelText() const
{
    const QString name = getName();
    const QString value = getDisplayValue();
    if (value.isEmpty())
        return name;
    if (name.isEmpty())
        return value;
    return name + QStringLiteral(": ") + value;
}

void OvGsObject::updateLabel()
{
    QColor color = getColor();
    if (!color.isValid())
        color = Qt::white;
    color.setAlpha(255);
    const QString text = getLabelText();
    labelItem->setLabel(text, labelFontPixSize, color);
    labelItem->setFrame(isSelected() ? QPen(color, 2.0) : QPen(Qt::NoPen));
    const bool visible = labelVisible && !hidden && !text.isEmpty();
    if (labelItem->isVisibleTo(this) != visible)
        labelItem->setVisible(visible);
    updateLeader();
}

QRectF OvGsObject::childRect(const QGraphicsItem* aChild) const
{
    const QRectF local = aChild->boundingRect();
    const double units = isScreenSized(aChild) ? unitsPerPixel() : 1.0;
    return QRectF(aChild->pos() + local.topLeft() * units, local.size() * units);
}

bool OvGsObject::isScreenSized(const QGraphicsItem* aChild) const
{
    return aChild == labelItem || aChild == trashButton || aChild == activeButton;
}

void OvGsObject::applyScreenUnits()
{
    // Scaled against the zoom rather than ignoring transformations: the
    // scene's index keeps every item that ignores them on a list it walks on
    // each lookup and paint.
    setScreenUnits(unitsPerPixel());
}

void OvGsObject::setScreenUnits(double aUnitsPerPixel)
{
    for (QGraphicsItem* child : { static_cast<QGraphicsItem*>(labelItem), static_cast<QGraphicsItem*>(trashButton),
                                  static_cast<QGraphicsItem*>(activeButton) }) {
        if (child && child->scale() != aUnitsPerPixel)
            child->setScale(aUnitsPerPixel);
    }
}

double OvGsObject::getLabelHeight() const
{
    return labelItem->boxHeight() * unitsPerPixel();
}

QRectF OvGsObject::getLabelRect() const
{
    // The box without its selection frame: selecting a label must not change
    // where it is kept (its top-left corner is its position).
    const double units = unitsPerPixel();
    const QRectF box = labelItem->rect();
    return QRectF(labelItem->pos() + box.topLeft() * units, box.size() * units);
}

void OvGsObject::ensureLabelVisible()
{
    if (waitsForRelease(labelPending))
        return;
    const KxGsEditor* editor = getEditor();
    if (!editor)
        return;
    const QRectF area = editor->getEditorArea();
    // Kept inside from where the label was put, not from where an earlier,
    // wider text or another zoom pushed it: the place does not drift.
    if (labelItem->pos() != labelWanted)
        moveLabelTo(labelWanted);
    if (isLabelPlacedByHost()) {
        placeLabelBeside(mapRectFromParent(area));
        // A stored measurement's label is placed once; then it stays.
        const KxGsManipulator* manipulator = getManipulator();
        if (manipulator && manipulator->getObjectIdx(this) >= 0)
            labelPlaced = true;
        labelWanted = labelItem->pos();
    }
    const QRectF label = mapRectToParent(getLabelRect());
    // A label larger than the area (the view is not laid out yet, or zoomed
    // far out) cannot fit: it stays where it was put rather than being pushed
    // off the picture's far side.
    if (area.contains(label) || label.width() > area.width() || label.height() > area.height())
        return;
    double left = label.left();
    double top = label.top();
    if (label.left() < area.left())
        left = area.left();
    if (label.right() > area.right())
        left = area.right() - label.width();
    if (label.top() < area.top())
        top = area.top();
    if (label.bottom() > area.bottom())
        top = area.bottom() - label.height();
    moveLabelTo(mapFromParent(QPointF(left, top)));
}

bool OvGsObject::isLabelPlacedByHost() const
{
    if (!labelItem->isVisibleTo(this))
        return false;
    if (!labelPlaced)
        return true;
    // Being drawn: not stored yet, and current or the chosen tool's (a line
    // measured against a selected base is drawn without becoming current).
    const KxGsManipulator* manipulator = getManipulator();
    if (!manipulator || manipulator->getObjectIdx(this) >= 0)
        return false;
    const KxGsEditor* editor = getEditor();
    return isCurrent() || (editor && editor->getOverrideManipulator() == manipulator);
}

bool OvGsObject::isRectOnShape(const QRectF& aRect) const
{
    const double units = unitsPerPixel();
    const QRectF rect = aRect.adjusted(-kShapeMargin * units, -kShapeMargin * units, kShapeMargin * units,
                                       kShapeMargin * units);
    if ((trashShown && trashRect().intersects(rect)) || (activeShown && activeRect().intersects(rect)))
        return true;
    // Square probes of side `tolerance` laid edge to edge over the rectangle.
    const int tolerance = std::max(1, int(std::ceil(kProbePixels * units)));
    const double half = tolerance / 2.0;
    probingShape = true;
    bool hit = false;
    for (double y = rect.top() + half; !hit && y - half < rect.bottom(); y += tolerance) {
        for (double x = rect.left() + half; !hit && x - half < rect.right(); x += tolerance) {
            int part = 0;
            hit = isPointOnObject(QPointF(std::min(x, rect.right()), std::min(y, rect.bottom())), part, tolerance);
        }
    }
    probingShape = false;
    return hit;
}

QVector<QRectF> OvGsObject::neighbourRects(const QRectF& aRegion) const
{
    QVector<QRectF> rects;
    QGraphicsScene* itemScene = scene();
    if (!itemScene)
        return rects;
    QSet<const OvGsObject*> seen;
    const QList<QGraphicsItem*> found
        = itemScene->items(mapRectToScene(aRegion), Qt::IntersectsItemBoundingRect, Qt::AscendingOrder);
    for (QGraphicsItem* item : found) {
        const OvGsObject* owner = nullptr;
        for (QGraphicsItem* up = item; up && !owner; up = up->parentItem())
            owner = qobject_cast<OvGsObject*>(up->toGraphicsObject());
        if (!owner || owner == this || owner->hidden || owner->isDiscarded() || seen.contains(owner))
            continue;
        seen.insert(owner);
        if (owner->labelItem->isVisibleTo(owner))
            rects.append(mapRectFromItem(owner, owner->getLabelRect()));
        // Buttons show only while their item is current: keep clear of them anyway.
        if (owner->trashAllowed)
            rects.append(mapRectFromItem(owner, owner->trashRect()));
        if (owner->activeAllowed)
            rects.append(mapRectFromItem(owner, owner->activeRect()));
    }
    return rects;
}

void OvGsObject::placeLabelBeside(const QRectF& anArea)
{
    const QRectF label = getLabelRect();
    if (label.isEmpty())
        return;
    const double step = kPlacementStep * unitsPerPixel();
    // Other measurements' labels and buttons within reach of every candidate.
    const double reach = (kPlacementRings + 1) * step;
    const QVector<QRectF> others = neighbourRects(label.adjusted(-reach, -reach, reach, reach));
    const double gap = kLabelPadding * unitsPerPixel();
    const auto onOthers = [&](const QRectF& aRect) {
        const QRectF grown = aRect.adjusted(-gap, -gap, gap, gap);
        return std::any_of(others.begin(), others.end(),
                           [&](const QRectF& anOther) { return grown.intersects(anOther); });
    };
    if (anArea.contains(label) && !onOthers(label) && !isRectOnShape(label))
        return;
    auto tryAt = [&](int anI, int aJ) {
        const QRectF candidate = label.translated(anI * step, aJ * step);
        if (!anArea.contains(candidate) || onOthers(candidate) || isRectOnShape(candidate))
            return false;
        labelItem->setPos(labelItem->pos() + candidate.topLeft() - label.topLeft());
        updateLeader();
        return true;
    };
    // Straight moves first, in the order annotations are usually read: above
    // the shape, after it, before it, below it; each as short as it can be.
    const int directions[4][2] = { { 0, -1 }, { 1, 0 }, { -1, 0 }, { 0, 1 } };
    for (const auto& direction : directions) {
        for (int k = 1; k <= kPlacementRings; ++k) {
            if (tryAt(direction[0] * k, direction[1] * k))
                return;
        }
    }
    // Then rings of growing distance around the wanted place (fewer: each
    // costs a probe of the shape, which grows with its node count).
    for (int ring = 1; ring <= kPlacementRings / 2; ++ring) {
        for (int j = -ring; j <= ring; ++j) {
            for (int i = -ring; i <= ring; ++i) {
                if (std::max(std::abs(i), std::abs(j)) == ring && i != 0 && j != 0 && tryAt(i, j))
                    return;
            }
        }
    }
}

bool OvGsObject::isPointOnLabel(const QPointF& aPoint) const
{
    // A label left out of painting cannot be taken either.
    const KxGsEditor* editor = getEditor();
    return labelItem->isVisibleTo(this) && (!editor || editor->areLabelsShown()) && getLabelRect().contains(aPoint);
}

void OvGsObject::setTrashPos(const QPointF& aPos)
{
    trashPos = aPos;
    if (trashButton)
        trashButton->setPos(aPos);
}

QPointF OvGsObject::getTrashPos() const
{
    return trashPos;
}

void OvGsObject::allowTrashVisible(bool anAllow)
{
    trashAllowed = anAllow;
    updateButtons();
}

bool OvGsObject::isTrashAllowed() const
{
    return trashAllowed;
}

QGraphicsPixmapItem* OvGsObject::getTrashButton() const
{
    return buttonItem(trashButton, resourcePixmap(QStringLiteral("trash.png")), trashPos, trashShown);
}

QRectF OvGsObject::trashRect() const
{
    return QRectF(trashPos, QSizeF(resourcePixmap(QStringLiteral("trash.png")).size()) * unitsPerPixel());
}

QRectF OvGsObject::activeRect() const
{
    return QRectF(activePos, QSizeF((activePressed ? activeOnPixmap : activeOffPixmap).size()) * unitsPerPixel());
}

QGraphicsPixmapItem* OvGsObject::buttonItem(QGraphicsPixmapItem*& anItem, const QPixmap& aPixmap, const QPointF& aPos,
                                            bool aShown) const
{
    // Made when first shown or asked for: most measurements never show them.
    if (!anItem) {
        auto* self = const_cast<OvGsObject*>(this);
        anItem = new QGraphicsPixmapItem(aPixmap, self);
        anItem->setAcceptedMouseButtons(Qt::NoButton);
        anItem->setZValue(3.0);
        anItem->setPos(aPos);
        anItem->setScale(unitsPerPixel());
        anItem->setVisible(aShown);
    }
    return anItem;
}

bool OvGsObject::isPointOnTrash(const QPointF& aPoint) const
{
    return trashShown && trashRect().contains(aPoint);
}

void OvGsObject::setActivePos(const QPointF& aPos)
{
    activePos = aPos;
    if (activeButton)
        activeButton->setPos(aPos);
}

QPointF OvGsObject::getActivePos() const
{
    return activePos;
}

QGraphicsPixmapItem* OvGsObject::getActiveButton() const
{
    return buttonItem(activeButton, activePressed ? activeOnPixmap : activeOffPixmap, activePos, activeShown);
}

void OvGsObject::allowActiveVisible(bool anAllow)
{
    activeAllowed = anAllow;
    updateButtons();
}

void OvGsObject::allowActiveVisible(bool anAllow, QPixmap& anOffPixmap, QPixmap& anOnPixmap)
{
    if (!anOffPixmap.isNull())
        activeOffPixmap = anOffPixmap;
    if (!anOnPixmap.isNull())
        activeOnPixmap = anOnPixmap;
    allowActiveVisible(anAllow);
}

void OvGsObject::setUseActiveButton(bool aUse)
{
    useActiveButton = aUse;
}

bool OvGsObject::getUseActiveButton() const
{
    return useActiveButton;
}

void OvGsObject::setActivePressed(bool aPressed)
{
    activePressed = aPressed;
    if (aPressed)
        pressedObjects().insert(this);
    else
        pressedObjects().remove(this);
    updateButtons();
}

bool OvGsObject::getActivePressed() const
{
    return activePressed;
}

void OvGsObject::makeAllActiveGray()
{
    const QSet<OvGsObject*> pressed = pressedObjects();
    for (OvGsObject* obj : pressed)
        obj->setActivePressed(false);
}

bool OvGsObject::isPointOnActiveButton(const QPointF& aPoint) const
{
    return activeShown && activeRect().contains(aPoint);
}

void OvGsObject::updateButtons()
{
    trashShown = trashAllowed && isCurrent() && !hidden;
    if (trashShown || trashButton)
        getTrashButton()->setVisible(trashShown);
    activeShown = activeAllowed && !hidden;
    if (activeShown || activeButton) {
        getActiveButton()->setPixmap(activePressed ? activeOnPixmap : activeOffPixmap);
        activeButton->setVisible(activeShown);
    }
    if (activeAllowed && !hidden)
        activeShownObjects().insert(this);
    else
        activeShownObjects().remove(this);
}

QList<OvGsObject*> OvGsObject::objectsShowingActiveButton()
{
    return activeShownObjects().values();
}

void OvGsObject::updateLeader()
{
    if (waitsForRelease(leaderPending))
        return;
    // A hidden label needs no size yet: its text is measured once shown.
    bool show = false;
    QPointF near;
    if (labelItem->isVisibleTo(this)) {
        near = nearestPointOnRect(getLabelRect(), labelAnchor);
        show = QLineF(labelAnchor, near).length() / unitsPerPixel() > kLeaderDistance;
    }
    if (!show) {
        if (leaderLine)
            leaderLine->hide();
        return;
    }
    if (!leaderLine) {
        leaderLine = new QGraphicsLineItem(this);
        leaderLine->setAcceptedMouseButtons(Qt::NoButton);
        leaderLine->setZValue(1.0);
    }
    {
        QColor color = getColor().isValid() ? getColor() : QColor(Qt::white);
        color.setAlpha(170);
        QPen pen(color, 1.0, Qt::DotLine);
        pen.setCosmetic(true);
        leaderLine->setPen(pen);
        leaderLine->setLine(QLineF(labelAnchor, near));
    }
    leaderLine->show();
}

void OvGsObject::setCurrent(bool aCurrent)
{
    KxGsObject::setCurrent(aCurrent);
    updateButtons();
}

void OvGsObject::setSelected(bool aSelected)
{
    KxGsObject::setSelected(aSelected);
    updateLabel();
}

void OvGsObject::setName(const QString& aName)
{
    KxGsObject::setName(aName);
    updateLabel();
}

void OvGsObject::setDisplayValue(const QString& aValue)
{
    KxGsObject::setDisplayValue(aValue);
    updateLabel();
}

void OvGsObject::setAlwaysHidden(bool aHidden)
{
    hidden = aHidden;
    updateButtons();
    updateLabel();
    update();
}

void OvGsObject::adjustScale(double)
{
    applyScreenUnits();
    updateLeader();
}

void OvGsObject::zoomSettled()
{
    // Labels keep their screen size: at another zoom they are kept inside
    // the picture again, from where they were put.
    ensureLabelVisible();
}

void OvGsObject::moveObjectBy(const QPointF&)
{
    updateLeader();
}

bool OvGsObject::isPointOnObject(const QPointF& aPoint, int& aPart, int) const
{
    if (probingShape)
        return false;
    if (isPointOnLabel(aPoint)) {
        aPart = PartLabel;
        return true;
    }
    if (isPointOnTrash(aPoint)) {
        aPart = PartTrash;
        return true;
    }
    if (isPointOnActiveButton(aPoint)) {
        aPart = PartActive;
        return true;
    }
    return false;
}

bool OvGsObject::isPointInsideOnly(const QPointF& aPoint, int aTolerance) const
{
    if (hidden || isPointOnLabel(aPoint) || isPointOnTrash(aPoint) || isPointOnActiveButton(aPoint))
        return false;
    return isPointInsideOutline(aPoint, aTolerance);
}

bool OvGsObject::isPointInsideOutline(const QPointF&, int) const
{
    return false;
}

void OvGsObject::manipMousePressEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    labelDragging = false;
    if (hidden || !isVisible())
        return;
    const QPointF local = OvQtCompat::localPos(anEvent);
    if (isPointOnTrash(local)) {
        anEvent->accept();
        if (KxGsManipulator* manipulator = getManipulator())
            manipulator->removeGsObject(this);
        return;
    }
    if (isPointOnActiveButton(local)) {
        anEvent->accept();
        const bool pressed = !activePressed;
        makeAllActiveGray();
        setActivePressed(pressed);
        emit signalActiveButtonClicked(this);
        return;
    }
    if (isPointOnLabel(local)) {
        anEvent->accept();
        labelDragging = true;
        labelDragStart = local;
        labelPosAtDragStart = getLabelPos();
    }
}

void OvGsObject::manipMouseMoveEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    if (!labelDragging)
        return;
    setLabelPos(labelPosAtDragStart + (OvQtCompat::localPos(anEvent) - labelDragStart));
    ensureLabelVisible();
    anEvent->accept();
}

void OvGsObject::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    if (!labelDragging)
        return;
    labelDragging = false;
    anEvent->accept();
    KxGsManipulator* manipulator = getManipulator();
    if (manipulator && getLabelPos() != labelPosAtDragStart)
        manipulator->gsObjectLabelMoved(this);
}

bool OvGsObject::isLabelDragging() const
{
    return labelDragging;
}

void OvGsObject::paintWithChildren(QPainter* aPainter)
{
    if (!aPainter)
        return;
    aPainter->save();
    paintTree(aPainter, this);
    aPainter->restore();
}

double OvGsObject::unitsPerPixel() const
{
    if (const KxGsEditor* editor = getEditor())
        return 1.0 / editor->getZoom();
    QTransform transform = sceneTransform();
    if (scene() && !scene()->views().isEmpty())
        transform *= scene()->views().first()->viewportTransform();
    const double scale = std::sqrt(std::abs(transform.determinant()));
    if (!(scale > 1e-12) || !std::isfinite(scale))
        return 1.0;
    return 1.0 / scale;
}

QVariant OvGsObject::itemChange(GraphicsItemChange aChange, const QVariant& aValue)
{
    if (aChange == ItemSceneHasChanged || aChange == ItemParentHasChanged) {
        applyScreenUnits();
        updateLeader();
    }
    return KxGsObject::itemChange(aChange, aValue);
}
