#include "OvGsHandleShape.h"

#include "KxGsManipulator.h"
#include "OvQtCompat.h"

#include <QBrush>
#include <QColor>
#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

#include <algorithm>

namespace {

const double kNodeSize = 11.0;
const double kTrashOffset = 10.0;
const QColor kHandleColor(49, 49, 49, 255);

} // namespace

OvGsHandleShape::OvGsHandleShape(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName)
    : OvGsObject(aManipulator, aParent, aName)
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

void OvGsHandleShape::adjustScale(double aZoom)
{
    if (!isUsableZoom(aZoom))
        return;
    prepareGeometryChange();
    OvGsObject::adjustScale(aZoom);
    selSize = KxGsObject::kDefaultSelSize / aZoom;
    penScale = 1.0 / aZoom;
    nodeSize = kNodeSize / aZoom;
    if (isScaleAdjustAllowed())
        trashOffset = QPointF(kTrashOffset / aZoom, kTrashOffset / aZoom);
    update();
}

void OvGsHandleShape::setGestureState(bool aMoving, bool aReshaping)
{
    if (aMoving == moving && aReshaping == reshaping)
        return;
    // A shape may draw more while it is reshaped (an angle's full lines).
    prepareGeometryChange();
    moving = aMoving;
    reshaping = aReshaping;
}

bool OvGsHandleShape::isPointOnObject(const QPointF& aPoint, int& aPart, int aTol) const
{
    if (OvGsObject::isPointOnObject(aPoint, aPart, aTol))
        return true;
    aPart = 0;
    return isPointOnBody(aPoint, aTol) || handleAt(aPoint, aTol) >= 0;
}

void OvGsHandleShape::moveObjectBy(const QPointF& aDelta)
{
    OvGsObject::moveObjectBy(aDelta);
    translateBy(aDelta);
}

bool OvGsHandleShape::isMoving() const
{
    return moving && !reportsMoves();
}

bool OvGsHandleShape::isReshaping() const
{
    return reshaping;
}

void OvGsHandleShape::manipMousePressEvent(QMouseEvent* anEvent)
{
    setGestureState(false, false);
    setPenStyle(penStyle, penWidth);
    anEvent->ignore();
    if (hidden || isLocked() || !isVisible())
        return;

    OvGsObject::manipMousePressEvent(anEvent);
    const QPointF point = roundedPoint(OvQtCompat::localPos(anEvent));
    if (anEvent->isAccepted()) {
        setGestureState(false, isPointOnLabel(point));
        return;
    }

    const int tol = int(selSize);
    activeNode = handleAt(point, tol);
    int part = 0;
    if (activeNode >= 0)
        setGestureState(false, true);
    else if (isPointOnObject(OvQtCompat::localPos(anEvent), part, tol))
        setGestureState(canMoveWhole(), false);
    else
        return;
    lastMousePos = pointerInParent(anEvent);
    anEvent->accept();
}

void OvGsHandleShape::manipMouseMoveEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    OvGsObject::manipMouseMoveEvent(anEvent);
    if (anEvent->isAccepted())
        return;

    const QPointF pointer = pointerInParent(anEvent);
    const QPointF delta = pointer - lastMousePos;
    if (moving)
        translateBy(delta);
    else if (reshaping)
        dragHandle(activeNode, roundedPoint(OvQtCompat::localPos(anEvent)), delta);
    lastMousePos = pointer;
    anEvent->accept();
}

void OvGsHandleShape::manipMouseReleaseEvent(QMouseEvent* anEvent)
{
    anEvent->ignore();
    OvGsObject::manipMouseReleaseEvent(anEvent);
    if (anEvent->isAccepted()) {
        setGestureState(false, false);
        return;
    }
    if (moving || reshaping) {
        if (reshaping || reportsMoves()) {
            if (reshaping)
                reshapeFinished();
            if (KxGsManipulator* receiver = reshapeReceiver())
                receiver->gsObjectChangedShape(this);
        }
        setGestureState(false, false);
        anEvent->accept();
    }
    gestureReleased();
}

void OvGsHandleShape::translateBy(const QPointF& aDelta)
{
    setPos(pos() + aDelta);
    ensureLabelVisible();
}

void OvGsHandleShape::reshapeFinished()
{
}

void OvGsHandleShape::gestureReleased()
{
}

KxGsManipulator* OvGsHandleShape::reshapeReceiver() const
{
    return getManipulator();
}

bool OvGsHandleShape::canMoveWhole() const
{
    return true;
}

bool OvGsHandleShape::reportsMoves() const
{
    return false;
}

bool OvGsHandleShape::solidWhileIdle() const
{
    return false;
}

QPointF OvGsHandleShape::roundedPoint(const QPointF& aPoint)
{
    return QPointF(OvQtCompat::round(aPoint.x()), OvQtCompat::round(aPoint.y()));
}

double OvGsHandleShape::probeSide(int aTol) const
{
    // An integer tolerance is the on-screen tolerance truncated: within one
    // unit of it, the exact value serves (at high zoom it truncates to 0).
    return (aTol < selSize && selSize - aTol < 1.0) ? selSize : double(aTol);
}

QRectF OvGsHandleShape::probeRect(const QPointF& aPoint, int aTol) const
{
    // Centred on the point: half of a small integer tolerance, rounded down,
    // would leave the probe beside the point.
    const double side = probeSide(aTol);
    return QRectF(aPoint - QPointF(side / 2.0, side / 2.0), QSizeF(side, side));
}

QRectF OvGsHandleShape::bodyProbeRect(const QPointF& aPoint, int aTol) const
{
    // A line drawn wider than the tolerance (its width is in picture pixels,
    // wide at high zoom) is hit wherever it shows.
    const double side = std::max(probeSide(aTol), double(penWidth));
    return QRectF(aPoint - QPointF(side / 2.0, side / 2.0), QSizeF(side, side));
}

bool OvGsHandleShape::isUsableZoom(double aZoom)
{
    return aZoom > 0.0 && qIsFinite(aZoom);
}

bool OvGsHandleShape::crossesDiagonals(const QPointF& aFrom, const QPointF& aTo, const QRectF& aProbe)
{
    QPointF crossing;
    return linesIntersect(aFrom, aTo, aProbe.topLeft(), aProbe.bottomRight(), crossing)
        || linesIntersect(aFrom, aTo, aProbe.topRight(), aProbe.bottomLeft(), crossing);
}

int OvGsHandleShape::nodeAt(const QVector<QPointF>& aNodes, int aCount, const QPointF& aPoint, int aTol) const
{
    const QRectF probe = probeRect(aPoint, aTol);
    for (int i = 0; i < aCount && i < aNodes.size(); ++i) {
        if (probe.intersects(nodeRect(aNodes.at(i))))
            return i;
    }
    return -1;
}

QRectF OvGsHandleShape::nodeRect(const QPointF& aCentre) const
{
    return QRectF(aCentre - QPointF(nodeSize / 2.0, nodeSize / 2.0), QSizeF(nodeSize, nodeSize));
}

QPointF OvGsHandleShape::pointerInParent(const QMouseEvent* anEvent) const
{
    return roundedPoint(mapToParent(OvQtCompat::localPos(anEvent)));
}

QPen OvGsHandleShape::prepareOutline(QPainter* aPainter) const
{
    QPen pen = (isSelected() || isCurrent()) ? currentPen : normalPen;
    if (reshaping && !solidEdit)
        pen.setStyle(Qt::DashLine);
    else if (solidWhileIdle())
        pen.setStyle(Qt::SolidLine);
    // Hairline-thin lines look washed out when antialiased.
    aPainter->setRenderHint(QPainter::Antialiasing, pen.widthF() * aPainter->transform().m11() >= 1.0);
    return pen;
}

QPen OvGsHandleShape::handlePen() const
{
    return QPen(QBrush(kHandleColor, Qt::SolidPattern), penScale, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}
