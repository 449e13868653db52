#include "OvGsCircle.h"

#include "KxGsManipulator.h"
#include "OvQtCompat.h"

#include <QPainter>
#include <QPen>
#include <QtMath>

namespace {

// Centres further out than this come from nonsense nodes and would overflow the rounding.
const double kMaxCentreOffset = 1.0e9;

bool isUsableOffset(double aValue)
{
    return qIsFinite(aValue) && qAbs(aValue) < kMaxCentreOffset;
}

} // namespace

OvGsCircle::OvGsCircle(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName, bool aRadiusMode)
    : OvGsHandleShape(aManipulator, aParent, aName)
    , radius(0.0)
    , radiusMode(aRadiusMode)
{
}

void OvGsCircle::setDisplayValue(const QString& aValue)
{
    // No value (uncalibrated picture) leaves the label without a bare prefix.
    if (aValue.isEmpty()) {
        OvGsObject::setDisplayValue(aValue);
        return;
    }
    OvGsObject::setDisplayValue((radiusMode ? tr("R") : tr("D")) + aValue);
}

int OvGsCircle::type() const
{
    return Type;
}

bool OvGsCircle::isPointOnBody(const QPointF& aPoint, int aTol) const
{
    if (nodes.size() != 3 || !(radius > 0.0))
        return false;
    // The disc itself, grown by half the tolerance so the rim is easy to catch.
    const QPointF point = roundedPoint(aPoint);
    const double margin = qMax(selSize, double(aTol)) / 2.0;
    return qSqrt(QPointF::dotProduct(point, point)) <= radius + margin;
}

bool OvGsCircle::isRectContainsObject(const QRectF& aRect) const
{
    return aRect.contains(QRectF(-radius, -radius, 2.0 * radius, 2.0 * radius));
}

void OvGsCircle::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (hidden)
        return;
    aPainter->save();
    QPen pen = prepareOutline(aPainter);
    aPainter->setBrush(Qt::NoBrush);
    aPainter->setPen(pen);

    if (nodes.size() == 2) {
        aPainter->drawLine(QPointF(0.0, 0.0), nodes.at(1));
    } else if (nodes.size() == 3) {
        aPainter->drawEllipse(QRectF(-radius, -radius, 2.0 * radius, 2.0 * radius));
        pen.setStyle(Qt::SolidLine);
        pen.setWidth(int(penScale));
        aPainter->setPen(pen);
        aPainter->drawLine(QPointF(-nodeSize, 0.0), QPointF(nodeSize, 0.0));
        aPainter->drawLine(QPointF(0.0, -nodeSize), QPointF(0.0, nodeSize));
    }

    if (!nodes.isEmpty() && isCurrent() && !moving) {
        aPainter->setPen(handlePen());
        for (const QPointF& node : nodes)
            aPainter->drawRect(nodeRect(node));
    }
    aPainter->restore();
}

QRectF OvGsCircle::boundingRect() const
{
    switch (nodes.size()) {
    case 1:
        return nodeRect(QPointF(0.0, 0.0));
    case 2: {
        const QPointF& end = nodes.at(1);
        return nodeRect(QPointF(0.0, 0.0)) | QRectF(QPointF(0.0, 0.0), QSizeF(end.x(), end.y())) | nodeRect(end);
    }
    case 3:
        return QRectF(-radius, -radius, 2.0 * radius, 2.0 * radius) | nodeRect(nodes.at(0)) | nodeRect(nodes.at(1))
            | nodeRect(nodes.at(2));
    default:
        return QRectF();
    }
}

void OvGsCircle::setNode(int anIndex, const QPointF& aPoint)
{
    if (anIndex < 0 || anIndex > 2)
        return;
    switch (nodes.size()) {
    case 0:
        prepareGeometryChange();
        nodes.append(QPointF(0.0, 0.0));
        setPos(aPoint);
        update();
        break;
    case 1:
        prepareGeometryChange();
        nodes.append(aPoint - pos());
        update();
        break;
    case 2:
        prepareGeometryChange();
        if (anIndex == 2)
            nodes.append(aPoint - pos());
        else
            nodes[anIndex] = aPoint - pos();
        recalcGeometry();
        update();
        break;
    case 3:
        prepareGeometryChange();
        nodes[anIndex] = aPoint - pos();
        recalcGeometry();
        update();
        break;
    default:
        break;
    }
}

void OvGsCircle::recalcGeometry()
{
    if (nodes.size() < 3)
        return;
    const double x0 = nodes.at(0).x();
    const double y0 = nodes.at(0).y();
    const double x1 = nodes.at(1).x();
    const double y1 = nodes.at(1).y();
    const double x2 = nodes.at(2).x();
    const double y2 = nodes.at(2).y();

    double cx = 0.0;
    double cy = 0.0;
    if (radius >= 0.1 || qAbs(x2 - x1) >= 1.0) {
        // Crossing of the perpendicular bisectors of the chords 0-1 and 1-2.
        if (qAbs(x1 - x0) < 1.0 || qAbs(x2 - x1) < 1.0 || qAbs(y1 - y0) < 1.0 || qAbs(y2 - y1) < 1.0)
            return;
        const double ma = (y1 - y0) / (x1 - x0);
        const double mb = (y2 - y1) / (x2 - x1);
        if (qAbs(ma - mb) < 0.1)
            return;
        const double rawX = (ma * mb * (y0 - y2) + mb * (x0 + x1) - ma * (x1 + x2)) / (2.0 * (mb - ma));
        if (!isUsableOffset(rawX))
            return;
        cx = OvQtCompat::round(rawX);
        const double rawY = -(1.0 / ma) * (cx - (x0 + x1) / 2.0) + (y0 + y1) / 2.0;
        if (!isUsableOffset(rawY))
            return;
        cy = OvQtCompat::round(rawY);
    } else {
        // A new circle whose third node still sits on the second: nodes 0 and 1 span
        // a diameter.
        if (qAbs(y2 - y1) >= 1.0)
            return;
        const double rawX = (x1 - x0) * 0.5;
        const double rawY = (y1 - y0) * 0.5;
        if (!isUsableOffset(rawX) || !isUsableOffset(rawY))
            return;
        cx = OvQtCompat::round(rawX);
        cy = OvQtCompat::round(rawY);
    }

    prepareGeometryChange();
    const QPointF centre(cx, cy);
    const QPointF labelOffset = getLabelPos() - nodes.at(0);
    setPos(pos() + centre);
    for (QPointF& node : nodes)
        node -= centre;
    followFirstNode(labelOffset);
    update();
}

void OvGsCircle::setCentredNodes(const QVector<QPointF>& aNodes)
{
    prepareGeometryChange();
    const QPointF labelOffset = getLabelPos() - (nodes.isEmpty() ? QPointF(0.0, 0.0) : nodes.at(0));
    nodes = aNodes.mid(0, 3);
    radius = 0.0;
    if (!nodes.isEmpty())
        followFirstNode(labelOffset);
    update();
}

void OvGsCircle::followFirstNode(const QPointF& aLabelOffset)
{
    const QPointF& first = nodes.at(0);
    radius = qSqrt(QPointF::dotProduct(first, first));
    setTrashPos(first + trashOffset);
    setLabelAnchor(first);
    setLabelPos(first + aLabelOffset);
    ensureLabelVisible();
}

bool OvGsCircle::isPointOnNode(const QPointF& aPoint, int& anIndex, int aTol) const
{
    anIndex = nodeAt(nodes, 3, aPoint, aTol);
    return anIndex >= 0;
}

int OvGsCircle::handleAt(const QPointF& aPoint, int aTol) const
{
    return nodeAt(nodes, 3, aPoint, aTol);
}

bool OvGsCircle::isPointInsideOutline(const QPointF& aPoint, int aTol) const
{
    if (nodes.size() != 3 || !(radius > 0.0))
        return false;
    const double margin = qMax(selSize, double(aTol)) / 2.0;
    return qSqrt(QPointF::dotProduct(aPoint, aPoint)) < radius - margin && handleAt(aPoint, aTol) < 0;
}

void OvGsCircle::dragHandle(int aHandle, const QPointF& aPoint, const QPointF&)
{
    if (aHandle < 0 || aHandle >= nodes.size())
        return;
    const QPointF labelOffset = getLabelPos() - nodes.at(0);
    prepareGeometryChange();
    nodes[aHandle] = aPoint;
    recalcGeometry();
    if (aHandle == 0)
        setLabelPos(nodes.at(0) + labelOffset);
    update();
}
