#include "OvGsDistance.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"

#include <QGraphicsPixmapItem>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QtMath>

namespace {

const double kNodeSize = 11.0;
const double kTrashOffset = 10.0;
const QColor kHandleColor(49, 49, 49, 255);

QPointF roundedPoint(const QPointF& aPoint)
{
    return QPointF(qRound(aPoint.x()), qRound(aPoint.y()));
}

// The square of side aTol around aPoint that hit tests probe with.
QRectF probeRect(const QPointF& aPoint, int aTol)
{
    const int half = aTol / 2;
    return QRectF(aPoint - QPointF(half, half), QSizeF(aTol, aTol));
}

bool crossesDiagonals(const QPointF& aFrom, const QPointF& aTo, const QRectF& aRect)
{
    QPointF crossing;
    return KxGsObject::linesIntersect(aFrom, aTo, aRect.topLeft(), aRect.bottomRight(), crossing)
        || KxGsObject::linesIntersect(aFrom, aTo, aRect.topRight(), aRect.bottomLeft(), crossing);
}

} // namespace

OvGsDistance::OvGsDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                           const QString& aLineName)
    : OvGsObject(aManipulator, aParent, aTypeName)
    , manipulator(nullptr)
    , lineName(aLineName)
    , vector(0.0, 0.0)
    , lastMousePos(0.0, 0.0)
    , moving(false)
    , reshaping(false)
    , selSize(KxGsObject::kDefaultSelSize)
    , nodeSize(kNodeSize)
    , trashOffset(kTrashOffset, kTrashOffset)
    , penScale(1.0)
    , activeNode(-1)
{
}

void OvGsDistance::adjustScale(double aZoom)
{
    if (!(aZoom > 0.0) || !qIsFinite(aZoom))
        return;
    prepareGeometryChange();
    OvGsObject::adjustScale(aZoom);
    selSize = KxGsObject::kDefaultSelSize / aZoom;
    penScale = 1.0 / aZoom;
    nodeSize = kNodeSize / aZoom;
    if (isScaleAdjustAllowed()) {
        trashOffset = QPointF(kTrashOffset / aZoom, kTrashOffset / aZoom);
        updateTrashPos();
    }
    update();
}

int OvGsDistance::type() const
{
    return Type;
}

bool OvGsDistance::isPointOnObject(const QPointF& aPoint, int& aPart, int aTol) const
{
    if (OvGsObject::isPointOnObject(aPoint, aPart, aTol))
        return true;
    aPart = 0;
    if (crossesDiagonals(QPointF(0.0, 0.0), vector, probeRect(aPoint, aTol)))
        return true;
    int end = -1;
    return isPointOnEnds(aPoint, end, aTol);
}

bool OvGsDistance::isRectContainsObject(const QRectF& aRect) const
{
    return aRect.contains(QPointF(0.0, 0.0)) && aRect.contains(vector);
}

void OvGsDistance::moveObjectBy(const QPointF& aDelta)
{
    OvGsObject::moveObjectBy(aDelta);
    setPos(pos() + aDelta);
    ensureLabelVisible();
}

bool OvGsDistance::isMoving() const
{
    return moving;
}

bool OvGsDistance::isReshaping() const
{
    return reshaping;
}

void OvGsDistance::manipMousePressEvent(QMouseEvent* anEvent)
{
    moving = false;
    reshaping = false;
    setPenStyle(penStyle, penWidth);
    anEvent->ignore();
    if (hidden || isLocked() || !isVisible())
        return;

    OvGsObject::manipMousePressEvent(anEvent);
    if (anEvent->isAccepted()) {
        reshaping = isPointOnLabel(roundedPoint(anEvent->localPos()));
        return;
    }

    const int tol = int(selSize);
    if (isPointOnEnds(roundedPoint(anEvent->localPos()), activeNode, tol)) {
        reshaping = true;
        lastMousePos = pointerInParent(anEvent);
        anEvent->accept();
        return;
    }
    int part = 0;
    if (isPointOnObject(anEvent->localPos(), part, tol)) {
        moving = true;
        lastMousePos = pointerInParent(anEvent);
        anEvent->accept();
        return;
    }
    anEvent->ignore();
}

void OvGsDistance::manipMouseMoveEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    OvGsObject::manipMouseMoveEvent(anEvent);
    if (anEvent->isAccepted())
        return;

    const QPointF pointer = pointerInParent(anEvent);
    const QPointF delta = pointer - lastMousePos;
    if (moving) {
        setPos(pos() + delta);
    } else if (reshaping) {
        if (activeNode == 0) {
            // The end stays where it is while the start follows the mouse.
            const QPointF end = pos() + vector;
            setVector(vector - delta);
            setPos(end - vector);
        } else if (activeNode == 1) {
            setVector(roundedPoint(anEvent->localPos()));
        }
    }
    ensureLabelVisible();
    lastMousePos = pointer;
    anEvent->accept();
}

void OvGsDistance::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    OvGsObject::manipMouseReleaseEvent(anEvent);
    if (anEvent->isAccepted()) {
        moving = false;
        reshaping = false;
        return;
    }
    if (!moving && !reshaping) {
        updateTrashPos();
        return;
    }
    if (reshaping) {
        KxGsManipulator* owner = manipulator ? manipulator : getManipulator();
        if (owner)
            owner->gsObjectChangedShape(this);
    }
    moving = false;
    reshaping = false;
    anEvent->accept();
    updateTrashPos();
}

void OvGsDistance::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (hidden)
        return;
    aPainter->save();
    currentPen.setCapStyle(Qt::FlatCap);
    normalPen.setCapStyle(Qt::FlatCap);
    QPen pen = (isSelected() || isCurrent()) ? currentPen : normalPen;
    if (reshaping && !solidEdit)
        pen.setStyle(Qt::DashLine);
    // Hairline-thin lines look washed out when antialiased.
    aPainter->setRenderHint(QPainter::Antialiasing, pen.widthF() * aPainter->transform().m11() >= 1.0);
    aPainter->setPen(pen);
    aPainter->setBrush(Qt::NoBrush);
    aPainter->drawLine(QPointF(0.0, 0.0), vector);

    if (isCurrent() && !moving) {
        aPainter->setPen(QPen(QBrush(kHandleColor, Qt::SolidPattern), penScale, Qt::SolidLine, Qt::SquareCap,
                              Qt::BevelJoin));
        aPainter->drawRect(nodeRect(QPointF(0.0, 0.0)));
        aPainter->drawRect(nodeRect(vector));
    }
    aPainter->restore();
}

QRectF OvGsDistance::boundingRect() const
{
    const QRectF line(QPointF(0.0, 0.0), QSizeF(vector.x(), vector.y()));
    return line | nodeRect(QPointF(0.0, 0.0)) | nodeRect(vector);
}

void OvGsDistance::setVector(const QPointF& aVector)
{
    prepareGeometryChange();
    vector = aVector;
    updateTrashPos();
    update();
}

bool OvGsDistance::isPointOnEnds(const QPointF& aPoint, int& anEnd, int aTol) const
{
    anEnd = -1;
    const QRectF probe = probeRect(aPoint, aTol);
    if (probe.intersects(nodeRect(QPointF(0.0, 0.0)))) {
        anEnd = 0;
        return true;
    }
    if (probe.intersects(nodeRect(vector))) {
        anEnd = 1;
        return true;
    }
    return false;
}

void OvGsDistance::updateTrashPos()
{
    setTrashPos(vector + trashOffset);
    const QGraphicsPixmapItem* trash = getTrashButton();
    if (!trash)
        return;

    // The button keeps its size on screen; measure it in item units.
    const QSizeF size = trash->boundingRect().size() * unitsPerPixel();
    const qreal w = size.width();
    const qreal h = size.height();
    QPointF place = getTrashPos();
    if (crossesDiagonals(QPointF(0.0, 0.0), vector, QRectF(place, QSizeF(w, h)))) {
        const float y = vector.y() > place.y() ? float(place.y() + h + 2.0 * trashOffset.y())
                                               : float(place.y() - h - 2.0 * trashOffset.y());
        place.setY(y);
        setTrashPos(place);
    }

    const KxGsEditor* editor = qobject_cast<const KxGsEditor*>(parentObject());
    if (!editor)
        return;
    const QRectF button(pos() + place, QSizeF(w, h));
    const QRectF area = editor->getEditorArea();
    if (area.contains(button))
        return;
    qreal x = button.left();
    qreal y = button.top();
    if (button.left() < area.left())
        x = area.left();
    if (button.right() > area.right())
        x = area.right() - button.width();
    if (button.top() < area.top())
        y = area.top();
    if (button.bottom() > area.bottom())
        y = area.bottom() - button.height();
    setTrashPos(QPointF(x, y) - pos());
}

QRectF OvGsDistance::nodeRect(const QPointF& aCentre) const
{
    return QRectF(aCentre - QPointF(nodeSize / 2.0, nodeSize / 2.0), QSizeF(nodeSize, nodeSize));
}

QPointF OvGsDistance::pointerInParent(const QMouseEvent* anEvent) const
{
    return roundedPoint(mapToParent(anEvent->localPos()));
}
