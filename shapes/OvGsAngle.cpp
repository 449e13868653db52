#include "OvGsAngle.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"

#include <QPainter>
#include <QPen>
#include <QtMath>

#include <cmath>

namespace {

const double kArcRadius = 40.0;
const double kAxisTolerance = 0.001;
const double kParallelTolerance = 0.0001;
// Crossings further out come from lines parallel in all but rounding; they would
// overflow whole-pixel positions.
const double kMaxVertexOffset = 1.0e9;

// Direction of aVector in Qt's arc degrees (counter-clockwise on screen), 0 to 360.
double screenDegrees(const QPointF& aVector)
{
    double degrees = -std::atan2(float(aVector.y()), float(aVector.x())) * 180.0 / M_PI;
    if (degrees < 0.0)
        degrees += 360.0;
    return degrees;
}

QRectF lineRect(const QLineF& aLine)
{
    return QRectF(aLine.p1(), aLine.p2()).normalized();
}

} // namespace

QLineF calcLine(const QPointF& aP1, const QPointF& aP2, double aWidth, double aHeight)
{
    if (qAbs(aP2.y() - aP1.y()) < kAxisTolerance)
        return QLineF(0.0, aP1.y(), aWidth, aP1.y());
    if (qAbs(aP2.x() - aP1.x()) < kAxisTolerance)
        return QLineF(aP1.x(), 0.0, aP1.x(), aHeight);
    const double m = (aP2.y() - aP1.y()) / (aP2.x() - aP1.x());
    const double c = aP1.y() - aP1.x() * m;
    const double yW = aWidth * m + c;
    QPointF start(0.0, c);
    if (c < 0.0)
        start = QPointF(-c / m, 0.0);
    else if (c > aHeight)
        start = QPointF((aHeight - c) / m, aHeight);
    QPointF end(aWidth, yW);
    if (yW < 0.0)
        end = QPointF(-c / m, 0.0);
    else if (yW > aHeight)
        end = QPointF((aHeight - c) / m, aHeight);
    return QLineF(start, end);
}

namespace {

// Rounds to single precision. Kept out of line: GCC 12's vectoriser drops the
// rounding of two such conversions computed side by side.
Q_NEVER_INLINE double singlePrecision(double aValue)
{
    return double(float(aValue));
}

// The crossing of calcLinesIntersection(), told apart from a crossing at (0, 0).
bool linesCross(const QLineF& aL1, const QLineF& aL2, QPointF& aCrossing)
{
    aCrossing = QPointF(0.0, 0.0);
    if (aL1.isNull() || aL2.isNull())
        return false;
    const double x1 = aL1.x1(), y1 = aL1.y1(), x2 = aL1.x2(), y2 = aL1.y2();
    const double x3 = aL2.x1(), y3 = aL2.y1(), x4 = aL2.x2(), y4 = aL2.y2();
    const float d = float((x1 - x2) * (y3 - y4) - (x3 - x4) * (y1 - y2));
    if (qAbs(d) < kParallelTolerance)
        return false;
    const float a = float(x1 * y2 - y1 * x2);
    const float b = float(x3 * y4 - y3 * x4);
    const double x = singlePrecision((a * (x3 - x4) - (x1 - x2) * b) / d);
    const double y = singlePrecision((a * (y3 - y4) - (y1 - y2) * b) / d);
    if (!(qAbs(x) < kMaxVertexOffset && qAbs(y) < kMaxVertexOffset))
        return false;
    aCrossing = QPointF(x, y);
    return true;
}

} // namespace

QPointF calcLinesIntersection(const QLineF& aL1, const QLineF& aL2)
{
    QPointF crossing;
    linesCross(aL1, aL2, crossing);
    return crossing;
}

int findCloserPoint(const QPointF& aFrom, const QPointF& aA, const QPointF& aB)
{
    return QLineF(aFrom, aA).length() < QLineF(aFrom, aB).length() ? 1 : 2;
}

OvGsAngle::OvGsAngle(KxGsManipulator* aManipulator, QGraphicsItem* aParent, const QString& aName)
    : OvGsHandleShape(aManipulator, aParent, aName)
    , angleValue(0.0)
    , creating(false)
    , arcRadius(kArcRadius)
    , innerAngle(true)
{
}

int OvGsAngle::type() const
{
    return Type;
}

void OvGsAngle::adjustScale(double aZoom)
{
    if (!isUsableZoom(aZoom))
        return;
    OvGsHandleShape::adjustScale(aZoom);
    if (isScaleAdjustAllowed()) {
        prepareGeometryChange();
        arcRadius = kArcRadius / aZoom;
        // The arc keeps its size on screen; the label stays where it is on the
        // picture, as every label does on a zoom, and as the store has it.
        const QPointF label = getLabelPos();
        rebuildArc();
        setLabelPos(label);
        updateTrashPos();
    }
    update();
}

QRectF OvGsAngle::parentRect() const
{
    const KxGsEditor* editor = getEditor();
    return editor ? editor->boundingRect() : QRectF();
}

QPointF OvGsAngle::outerNode(int aFirst) const
{
    const QPointF origin(0.0, 0.0);
    const QPointF& a = nodes.at(aFirst);
    const QPointF& b = nodes.at(aFirst + 1);
    return findCloserPoint(origin, a, b) == 1 ? b : a;
}

void OvGsAngle::startCreationMode(bool anInner)
{
    prepareGeometryChange();
    innerAngle = anInner;
    creating = true;
    update();
}

void OvGsAngle::setNode(int anIndex, const QPointF& aPoint)
{
    if (anIndex < 0 || anIndex > 3 || nodes.size() > 4)
        return;
    const int count = nodes.size();
    if (count == 0) {
        prepareGeometryChange();
        nodes.append(QPointF(0.0, 0.0));
        setPos(aPoint);
        update();
        return;
    }
    if (count == 1) {
        prepareGeometryChange();
        nodes.append(aPoint - pos());
        update();
        return;
    }
    // Nodes are appended in order; a later index has nothing to refer to yet.
    if (anIndex > count)
        return;
    prepareGeometryChange();
    if (anIndex == count)
        nodes.append(aPoint - pos());
    else
        nodes[anIndex] = aPoint - pos();
    recalcGeometry();
}

void OvGsAngle::setAllNodes(const QPolygonF& aNodes)
{
    prepareGeometryChange();
    nodes = aNodes.mid(0, 4);
    recalcGeometry();
}

void OvGsAngle::rebuildArc()
{
    const QPointF labelOffset = getLabelPos() - getLabelAnchor();
    QPointF anchor(0.0, 0.0);
    arcPath = createArc(angleValue, anchor);
    setLabelAnchor(anchor);
    setLabelPos(anchor + labelOffset);
}

void OvGsAngle::recalcGeometry()
{
    prepareGeometryChange();
    firstLine = QLineF();
    secondLine = QLineF();
    arcPath = QPainterPath();
    angleValue = 0.0;
    if (nodes.size() < 2)
        return;
    const QRectF area = parentRect();
    const QPointF origin = pos();
    firstLine = calcLine(nodes.at(0) + origin, nodes.at(1) + origin, area.width(), area.height())
                    .translated(-origin);
    if (nodes.size() == 4) {
        secondLine = calcLine(nodes.at(2) + origin, nodes.at(3) + origin, area.width(), area.height())
                         .translated(-origin);
        rebuildArc();
    }
    updateTrashPos();
    ensureLabelVisible();
    update();
}

QPainterPath OvGsAngle::createArc(double& anAngle, QPointF& aLabelAnchor) const
{
    if (nodes.size() < 4)
        return QPainterPath();
    // A finished angle has its vertex on the item's origin: that is a vertex too.
    QPointF vertex;
    if (!linesCross(firstLine, secondLine, vertex)) {
        // Parallel arms have no vertex to draw an arc at; they measure what the
        // store gives them: 0° pointing the same way, 180° pointing apart.
        const QLineF first(nodes.at(0), nodes.at(1));
        const QLineF second(nodes.at(2), nodes.at(3));
        const double cross = second.dy() * first.dx() - second.dx() * first.dy();
        const double between = cross < 0.0 ? first.angleTo(second) : second.angleTo(first);
        anAngle = innerAngle ? between : 360.0 - between;
        return QPainterPath();
    }

    double radius = arcRadius;
    // A vertex outside the picture gets an arc that reaches into it.
    if (!parentRect().contains(vertex + pos())) {
        const QPointF entry = findCloserPoint(vertex, firstLine.p1(), firstLine.p2()) == 2 ? firstLine.p2()
                                                                                           : firstLine.p1();
        radius = QLineF(entry, vertex).length() + arcRadius;
    }

    const auto armPoint = [&](int aFirst) {
        const QPointF& a = nodes.at(aFirst);
        const QPointF& b = nodes.at(aFirst + 1);
        const QPointF direction = findCloserPoint(vertex, a, b) == 1 ? b - vertex : a - vertex;
        const double length = std::hypot(direction.x(), direction.y());
        return length > 0.0 ? vertex + direction * (radius / length) : vertex;
    };
    const QPointF s1 = armPoint(0);
    const QPointF s2 = armPoint(2);
    const QPointF u1 = s1 - vertex;
    const QPointF u2 = s2 - vertex;
    if (u1.isNull() || u2.isNull())
        return QPainterPath();

    // Starting on the arm that makes the counter-clockwise sweep the inner angle.
    const bool startOnSecond = u1.x() * u2.y() - u1.y() * u2.x() >= 0.0;
    const QPointF start = startOnSecond ? s2 : s1;
    const double startDegrees = screenDegrees(startOnSecond ? u2 : u1);
    const double endDegrees = screenDegrees(startOnSecond ? u1 : u2);

    QPainterPath path;
    path.moveTo(start);
    double sweep = endDegrees - startDegrees;
    if (innerAngle) {
        if (sweep < 0.0)
            sweep += 360.0;
        anAngle = sweep;
    } else {
        sweep -= 360.0;
        if (sweep < -360.0)
            sweep += 360.0;
        anAngle = -sweep;
    }
    path.arcTo(QRectF(vertex.x() - radius, vertex.y() - radius, 2.0 * radius, 2.0 * radius), startDegrees, sweep);
    aLabelAnchor = start;
    return path;
}

void OvGsAngle::updateTrashPos()
{
    if (nodes.size() > 2)
        setTrashPos(nodes.at(0) + trashOffset);
}

void OvGsAngle::setFinalShape()
{
    if (nodes.size() < 4)
        return;
    prepareGeometryChange();
    reshaping = false;
    creating = false;
    QPointF vertex;
    if (!linesCross(firstLine, secondLine, vertex)) {
        update();
        return;
    }

    const bool inside = parentRect().contains(vertex + pos());
    for (int first : { 0, 2 }) {
        const int nearer = findCloserPoint(vertex, nodes.at(first), nodes.at(first + 1)) == 1 ? first : first + 1;
        const int farther = nearer == first ? first + 1 : first;
        if (inside) {
            nodes[nearer] = vertex + 0.25 * (nodes.at(farther) - vertex);
        } else {
            // The inner node goes where the line enters the picture.
            const QLineF& line = first == 0 ? firstLine : secondLine;
            nodes[nearer] = findCloserPoint(vertex, line.p1(), line.p2()) == 1 ? line.p1() : line.p2();
        }
        if (findCloserPoint(vertex, nodes.at(first), nodes.at(first + 1)) == 2)
            std::swap(nodes[first], nodes[first + 1]);
    }

    for (QPointF& node : nodes)
        node -= vertex;
    // The label stays where it was on screen.
    setLabelAnchor(getLabelAnchor() - vertex);
    setLabelPos(getLabelPos() - vertex);
    setPos(pos() + vertex);
    recalcGeometry();
    update();
}

bool OvGsAngle::isPointOnNode(const QPointF& aPoint, int& anIndex, int aTol) const
{
    anIndex = nodeAt(nodes, nodes.size(), aPoint, aTol);
    return anIndex >= 0;
}

int OvGsAngle::handleAt(const QPointF& aPoint, int aTol) const
{
    return nodeAt(nodes, nodes.size(), aPoint, aTol);
}

bool OvGsAngle::isPointOnBody(const QPointF& aPoint, int aTol) const
{
    if (nodes.size() < 2)
        return false;
    const QRectF probe = bodyProbeRect(aPoint, aTol);
    const QPointF origin(0.0, 0.0);
    if (crossesDiagonals(origin, outerNode(0), probe))
        return true;
    return nodes.size() == 4 && crossesDiagonals(origin, outerNode(2), probe);
}

bool OvGsAngle::isRectContainsObject(const QRectF& aRect) const
{
    for (const QPointF& node : nodes) {
        if (!aRect.contains(node))
            return false;
    }
    return true;
}

void OvGsAngle::dragHandle(int aHandle, const QPointF& aPoint, const QPointF&)
{
    if (aHandle < 0 || aHandle >= nodes.size())
        return;
    prepareGeometryChange();
    nodes[aHandle] = aPoint;
    recalcGeometry();
}

void OvGsAngle::reshapeFinished()
{
    setFinalShape();
}

void OvGsAngle::paint(QPainter* aPainter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (hidden)
        return;
    aPainter->save();
    QPen pen = prepareOutline(aPainter);
    const bool editing = (creating || reshaping) && !solidEdit;
    if (editing)
        pen.setStyle(Qt::DashLine);
    aPainter->setPen(pen);
    aPainter->setBrush(Qt::NoBrush);

    if (editing) {
        if (!firstLine.isNull())
            aPainter->drawLine(firstLine);
        if (!secondLine.isNull())
            aPainter->drawLine(secondLine);
        if (!arcPath.isEmpty())
            aPainter->drawPath(arcPath);
    } else if (nodes.size() == 4) {
        if (parentRect().contains(pos())) {
            aPainter->drawLine(QPointF(0.0, 0.0), outerNode(0));
            aPainter->drawLine(QPointF(0.0, 0.0), outerNode(2));
        } else {
            aPainter->drawLine(nodes.at(0), nodes.at(1));
            aPainter->drawLine(nodes.at(2), nodes.at(3));
        }
        aPainter->drawPath(arcPath);
    }

    if (!nodes.isEmpty() && isCurrent() && !moving) {
        aPainter->setPen(handlePen());
        for (const QPointF& node : nodes)
            aPainter->drawRect(nodeRect(node));
    }
    aPainter->restore();
}

QRectF OvGsAngle::boundingRect() const
{
    if (nodes.isEmpty() || nodes.size() > 4)
        return QRectF();
    QRectF rect = nodeRect(QPointF(0.0, 0.0));
    for (const QPointF& node : nodes)
        rect |= nodeRect(node);
    if (creating || reshaping) {
        if (!firstLine.isNull())
            rect |= lineRect(firstLine);
        if (!secondLine.isNull())
            rect |= lineRect(secondLine);
    }
    if (!arcPath.isEmpty())
        rect |= arcPath.boundingRect();
    const double margin = penWidth / 2.0 + 1.0;
    return rect.adjusted(-margin, -margin, margin, margin);
}
