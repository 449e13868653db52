#include "OvGsDistance.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"

#include <QGraphicsPixmapItem>
#include <QPainter>
#include <QPen>

OvGsDistance::OvGsDistance(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aTypeName,
                           const QString& aLineName)
    : OvGsHandleShape(aManipulator, aParent, aTypeName)
    , manipulator(nullptr)
    , lineName(aLineName)
    , vector(0.0, 0.0)
{
}

void OvGsDistance::adjustScale(double aZoom)
{
    OvGsHandleShape::adjustScale(aZoom);
    if (isUsableZoom(aZoom) && isScaleAdjustAllowed())
        updateButtonPositions();
}

int OvGsDistance::type() const
{
    return Type;
}

bool OvGsDistance::isPointOnBody(const QPointF& aPoint, int aTol) const
{
    return crossesDiagonals(QPointF(0.0, 0.0), vector, bodyProbeRect(aPoint, aTol));
}

bool OvGsDistance::isRectContainsObject(const QRectF& aRect) const
{
    return aRect.contains(QPointF(0.0, 0.0)) && aRect.contains(vector);
}

void OvGsDistance::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (hidden)
        return;
    aPainter->save();
    currentPen.setCapStyle(Qt::FlatCap);
    normalPen.setCapStyle(Qt::FlatCap);
    aPainter->setPen(prepareOutline(aPainter));
    aPainter->setBrush(Qt::NoBrush);
    aPainter->drawLine(QPointF(0.0, 0.0), vector);

    if (isCurrent() && !moving) {
        aPainter->setPen(handlePen());
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
    updateButtonPositions();
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
    setTrashPos(placeButton(getTrashButton(), vector + trashOffset, trashOffset.y()));
}

void OvGsDistance::updateButtonPositions()
{
    updateTrashPos();
}

QPointF OvGsDistance::placeButton(const QGraphicsItem* aButton, const QPointF& aFirst, double aFlip) const
{
    if (!aButton)
        return aFirst;

    // The button keeps its size on screen; measure it in item units.
    const QSizeF size = aButton->boundingRect().size() * unitsPerPixel();
    const qreal w = size.width();
    const qreal h = size.height();
    QPointF place = aFirst;
    if (crossesDiagonals(QPointF(0.0, 0.0), vector, QRectF(place, QSizeF(w, h)))) {
        const float y = vector.y() > place.y() ? float(place.y() + h + 2.0 * aFlip)
                                               : float(place.y() - h - 2.0 * aFlip);
        place.setY(y);
    }

    const KxGsEditor* editor = getEditor();
    if (!editor)
        return place;
    const QRectF button(pos() + place, QSizeF(w, h));
    const QRectF area = editor->getEditorArea();
    if (area.contains(button))
        return place;
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
    return QPointF(x, y) - pos();
}

int OvGsDistance::handleAt(const QPointF& aPoint, int aTol) const
{
    int end = -1;
    isPointOnEnds(aPoint, end, aTol);
    return end;
}

void OvGsDistance::dragHandle(int aHandle, const QPointF& aPoint, const QPointF& aDelta)
{
    if (aHandle == 0) {
        // The end stays where it is while the start follows the mouse.
        const QPointF end = pos() + vector;
        setVector(vector - aDelta);
        setPos(end - vector);
    } else if (aHandle == 1) {
        setVector(aPoint);
    }
    ensureLabelVisible();
}

void OvGsDistance::gestureReleased()
{
    updateButtonPositions();
}

KxGsManipulator* OvGsDistance::reshapeReceiver() const
{
    return manipulator ? manipulator : getManipulator();
}
