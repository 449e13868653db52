#include "OvGsFreeForm.h"

#include "OvQtCompat.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QtMath>

namespace {

const double kTrashOffset = 10.0;

} // namespace

OvGsFreeForm::OvGsFreeForm(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName)
    : OvGsObject(aManipulator, aParent, aName)
    , moving(false)
    , reshaping(false)
    , selSize(KxGsObject::kDefaultSelSize)
    , trashPos(kTrashOffset, kTrashOffset)
    , closed(false)
{
}

void OvGsFreeForm::adjustScale(double aZoom)
{
    if (!(aZoom > 0.0) || !qIsFinite(aZoom))
        return;
    prepareGeometryChange();
    OvGsObject::adjustScale(aZoom);
    selSize = KxGsObject::kDefaultSelSize / aZoom;
    if (isScaleAdjustAllowed()) {
        trashPos = QPointF(kTrashOffset / aZoom, kTrashOffset / aZoom);
        updateTrashPos();
    }
    update();
}

int OvGsFreeForm::type() const
{
    return closed ? ClosedType : OpenType;
}

bool OvGsFreeForm::isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const
{
    if (OvGsObject::isPointOnObject(aPoint, aPart, aTolerance))
        return true;
    aPart = 0;
    return nodes.containsPoint(aPoint, Qt::WindingFill);
}

bool OvGsFreeForm::isPointInsideOutline(const QPointF& aPoint, int aTolerance) const
{
    if (!closed || nodes.size() < 3 || !nodes.containsPoint(aPoint, Qt::WindingFill))
        return false;
    const double margin = qMax(selSize, double(aTolerance)) / 2.0;
    for (int i = 0; i < nodes.size(); ++i) {
        const QPointF a = nodes.at(i);
        const QPointF ab = nodes.at((i + 1) % nodes.size()) - a;
        const double length2 = QPointF::dotProduct(ab, ab);
        const double t = length2 > 0.0 ? qBound(0.0, QPointF::dotProduct(aPoint - a, ab) / length2, 1.0) : 0.0;
        const QPointF offset = aPoint - (a + t * ab);
        if (QPointF::dotProduct(offset, offset) <= margin * margin)
            return false;
    }
    return true;
}

bool OvGsFreeForm::isRectContainsObject(const QRectF& aRect) const
{
    return aRect.contains(nodes.boundingRect());
}

void OvGsFreeForm::moveObjectBy(const QPointF&)
{
}

bool OvGsFreeForm::isMoving() const
{
    return moving;
}

bool OvGsFreeForm::isReshaping() const
{
    return reshaping;
}

void OvGsFreeForm::manipMousePressEvent(QMouseEvent* anEvent)
{
    moving = false;
    reshaping = false;
    setPenStyle(penStyle, penWidth);
    anEvent->ignore();
    if (hidden || isLocked() || !isVisible())
        return;
    OvGsObject::manipMousePressEvent(anEvent);
    if (anEvent->isAccepted()) {
        reshaping = isPointOnLabel(OvQtCompat::localPos(anEvent));
        return;
    }
    int part = 0;
    if (isPointOnObject(OvQtCompat::localPos(anEvent), part, int(selSize)))
        anEvent->accept();
}

void OvGsFreeForm::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    OvGsObject::manipMouseReleaseEvent(anEvent);
    if (anEvent->isAccepted()) {
        moving = false;
        reshaping = false;
        return;
    }
    if (moving || reshaping) {
        moving = false;
        reshaping = false;
        anEvent->accept();
    }
}

void OvGsFreeForm::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (hidden)
        return;
    aPainter->save();
    const QPen pen = (isSelected() || isCurrent()) ? currentPen : normalPen;
    // Hairline-thin lines look washed out when antialiased.
    aPainter->setRenderHint(QPainter::Antialiasing, pen.widthF() * aPainter->transform().m11() >= 1.0);
    aPainter->setPen(pen);
    aPainter->setBrush(Qt::NoBrush);
    if (closed)
        aPainter->drawPolygon(nodes, Qt::OddEvenFill);
    else
        aPainter->drawPolyline(nodes);
    aPainter->restore();
}

QRectF OvGsFreeForm::boundingRect() const
{
    return nodes.boundingRect();
}

void OvGsFreeForm::addNode(const QPointF& aPoint)
{
    prepareGeometryChange();
    if (nodes.isEmpty()) {
        nodes.append(QPointF(0.0, 0.0));
        setPos(aPoint);
    } else {
        nodes.append(aPoint - pos());
    }
    update();
}

void OvGsFreeForm::setNodes(const QPolygonF& aNodes)
{
    prepareGeometryChange();
    nodes = aNodes;
    update();
}

void OvGsFreeForm::setClosed(bool aClosed)
{
    prepareGeometryChange();
    closed = aClosed;
    update();
}

bool OvGsFreeForm::isClosed() const
{
    return closed;
}

void OvGsFreeForm::updateTrashPos()
{
    if (nodes.size() > 2)
        setTrashPos(trashPos);
}
