#include "ModelStoreHelper.h"

#include "OvQtCompat.h"

#include <QPolygonF>
#include <QStringList>
#include <QVariant>

#include <cmath>

using namespace ModelKinds;

namespace {

bool near(const QPointF& a, const QPointF& b, double aTolerance)
{
    return std::abs(a.x() - b.x()) <= aTolerance && std::abs(a.y() - b.y()) <= aTolerance;
}

} // namespace

std::optional<QPointF> ModelStoreHelper::itemOrigin(const Object& anObject)
{
    const QVector<QPointF>& p = anObject.points;
    if (anObject.type == kCircle && p.size() == 3) {
        // The centre of the circle through the three nodes.
        const double ax = p[0].x(), ay = p[0].y(), bx = p[1].x(), by = p[1].y(), cx = p[2].x(), cy = p[2].y();
        const double d = 2.0 * (ax * (by - cy) + bx * (cy - ay) + cx * (ay - by));
        if (std::abs(d) < 1e-9)
            return std::nullopt;
        const double a2 = ax * ax + ay * ay, b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
        return QPointF((a2 * (by - cy) + b2 * (cy - ay) + c2 * (ay - by)) / d,
                       (a2 * (cx - bx) + b2 * (ax - cx) + c2 * (bx - ax)) / d);
    }
    if (anObject.type == kAngle && p.size() == 4) {
        // The vertex: where the lines through the two arms cross.
        const QPointF r = p[1] - p[0];
        const QPointF s = p[3] - p[2];
        const double denominator = r.x() * s.y() - r.y() * s.x();
        if (std::abs(denominator) < 1e-3 * std::hypot(r.x(), r.y()) * std::hypot(s.x(), s.y()))
            return std::nullopt;
        const QPointF q = p[2] - p[0];
        const double t = (q.x() * s.y() - q.y() * s.x()) / denominator;
        return p[0] + t * r;
    }
    return p.value(0);
}

int ModelStoreHelper::nextIndex(int aType) const
{
    int last = 0;
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (it.key().first == aType)
            last = qMax(last, it.key().second);
    }
    return last + 1;
}

QList<ModelStoreHelper::Key> ModelStoreHelper::linesOf(const Key& aKey) const
{
    QList<Key> lines;
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (it.key().first == aKey.first && it->role == Line && it->baseIndex == aKey.second)
            lines << it.key();
    }
    return lines;
}

QPointF ModelStoreHelper::lineEnd(const Object& aBase, const QPointF& aStart)
{
    const QPointF b0 = aBase.points.value(0);
    const QPointF d = aBase.points.value(1) - b0;
    if (aBase.type == kParallel)
        return aStart + d;
    const double q = d.x() * d.x() + d.y() * d.y();
    if (q <= 0.0)
        return aStart + QPointF(15, -15);
    const double t = -((b0.x() - aStart.x()) * d.x() + (b0.y() - aStart.y()) * d.y()) / q;
    return b0 + t * d;
}

double ModelStoreHelper::distanceToBase(const Object& aBase, const QPointF& aPoint)
{
    const QPointF b0 = aBase.points.value(0);
    const QPointF d = aBase.points.value(1) - b0;
    const double length = std::hypot(d.x(), d.y());
    if (length <= 0.0)
        return std::hypot(aPoint.x() - b0.x(), aPoint.y() - b0.y());
    return std::abs(d.x() * (aPoint.y() - b0.y()) - d.y() * (aPoint.x() - b0.x())) / length;
}

void ModelStoreHelper::placeLines(const Key& aKey)
{
    const Object base = objects.value(aKey);
    for (const Key& key : linesOf(aKey)) {
        Object& line = objects[key];
        line.points.resize(2);
        line.points[1] = lineEnd(base, line.points[0]);
        if (line.type == kParallel)
            line.points << QPointF(distanceToBase(base, line.points[0]), 0.0);
    }
}

void ModelStoreHelper::scale(double aFactor, const QMap<Key, QPoint>& aPositions)
{
    for (auto it = objects.begin(); it != objects.end(); ++it) {
        Object& object = it.value();
        // Positions are whole pixels; the rest of the geometry keeps its
        // place relative to them.
        const QPointF oldStart = aPositions.value(it.key());
        const QPointF newStart(OvQtCompat::round(oldStart.x() * aFactor), OvQtCompat::round(oldStart.y() * aFactor));
        for (QPointF& point : object.points)
            point = newStart + (point - oldStart) * aFactor;
        if (object.type == kDistance && object.points.size() == 2) {
            const QPointF len = object.points[1] - object.points[0];
            object.points[1] = object.points[0] + QPointF(OvQtCompat::round(len.x()), OvQtCompat::round(len.y()));
        }
    }
    for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
        if (it->role == Base)
            placeLines(it.key());
    }
}

QVector<QPointF> ModelStoreHelper::storedPoints(int aType, const KxParamKeyframeVector& aStored)
{
    const QPointF pos = aStored.size() > 3 ? QPointF(aStored[3].getValue().toPoint()) : QPointF();
    const QVariant geometry = aStored.size() > 5 ? aStored[5].getValue() : QVariant();
    QVector<QPointF> points;
    if (aType == kDistance) {
        points << pos << pos + QPointF(geometry.toPoint());
    } else if (aType == kMultiple) {
        points << pos << pos + geometry.toPointF();
    } else if (aType == kParallel) {
        points << pos;
    } else {
        for (const QPointF& node : geometry.value<QPolygonF>())
            points << pos + node;
    }
    return points;
}

ModelStoreHelper::Object ModelStoreHelper::fromStore(int aType, int anIndex, const KxParamKeyframeVector& aStored)
{
    Object object;
    object.type = aType;
    object.index = anIndex;
    object.color = aStored[1].getValue().value<QColor>();
    object.valueName = aStored[2].getValue().toString();
    object.width = aStored[6].getValue().toInt();
    object.font = aStored[7].getValue().toInt();
    object.unit = aStored[8].getValue().toInt();
    object.points = storedPoints(aType, aStored);
    return object;
}

QString ModelStoreHelper::toText(const QVariant& aValue)
{
    switch (aValue.userType()) {
    case QMetaType::QPoint:
        return QStringLiteral("(%1,%2)").arg(aValue.toPoint().x()).arg(aValue.toPoint().y());
    case QMetaType::QPointF:
        return QStringLiteral("(%1,%2)").arg(aValue.toPointF().x()).arg(aValue.toPointF().y());
    case QMetaType::QColor:
        return aValue.value<QColor>().name(QColor::HexArgb);
    case QMetaType::QPolygonF: {
        QStringList nodes;
        for (const QPointF& node : aValue.value<QPolygonF>())
            nodes << QStringLiteral("(%1,%2)").arg(node.x()).arg(node.y());
        return QLatin1Char('[') + nodes.join(QLatin1Char(' ')) + QLatin1Char(']');
    }
    default:
        return aValue.isValid() ? aValue.toString() : QStringLiteral("<none>");
    }
}

QString ModelStoreHelper::compare(const Object& anObject, const KxParamKeyframeVector& aStored)
{
    if (aStored.size() < 9)
        return QStringLiteral("only %1 parameters stored").arg(aStored.size());
    QStringList diffs;
    auto expect = [&](int anId, bool anOk, const QString& aWanted) {
        if (!anOk)
            diffs << QStringLiteral("param %1 is %2, model %3").arg(anId).arg(toText(aStored[anId].getValue()), aWanted);
    };
    expect(0, aStored[0].getValue().toBool(), QStringLiteral("true"));
    expect(1, aStored[1].getValue().value<QColor>() == anObject.color, anObject.color.name(QColor::HexArgb));
    expect(2, aStored[2].getValue().toString() == anObject.valueName, anObject.valueName);
    expect(4, !aStored[4].getValue().toBool(), QStringLiteral("false"));
    expect(6, aStored[6].getValue().toInt() == anObject.width, QString::number(anObject.width));
    expect(7, aStored[7].getValue().toInt() == anObject.font, QString::number(anObject.font));
    if (anObject.unitKnown)
        expect(8, aStored[8].getValue().toInt() == anObject.unit, QString::number(anObject.unit));

    const QPoint pos = aStored[3].getValue().toPoint();
    const std::optional<QPointF> origin = itemOrigin(anObject);
    // A circle is checked by its nodes: its centre is the shape's own.
    if (origin && anObject.type != kCircle)
        expect(3, near(pos, *origin, 0.51), toText(*origin));
    const QVariant geometry = aStored[5].getValue();
    const bool relative = anObject.type == kMultiple || anObject.type == kParallel;
    if (relative && anObject.role != Line) {
        expect(5, geometry.toPointF() == QPointF(), QStringLiteral("(0,0) for a base"));
    } else if (anObject.type == kMultiple) {
        const QPointF wanted = anObject.points.value(1) - QPointF(pos);
        expect(5, near(geometry.toPointF(), wanted, 0.05), toText(wanted));
    } else if (anObject.type == kParallel) {
        // Written in whole pixels: the model does not round the same way.
        const double wanted = anObject.points.size() > 2 ? anObject.points[2].x() : -1.0;
        expect(5, geometry.toPoint().y() == 0 && std::abs(geometry.toPoint().x() - wanted) <= 1.0,
               QStringLiteral("(%1,0)").arg(wanted));
    } else {
        // Nodes are kept relative to an exact centre or vertex while the
        // position is rounded: half a pixel either way.
        const QVector<QPointF> stored = storedPoints(anObject.type, aStored);
        bool same = stored.size() == anObject.points.size();
        for (int i = 0; same && i < stored.size(); ++i) {
            same = near(stored[i], anObject.points[i], 0.75);
        }
        QStringList wanted;
        for (const QPointF& point : anObject.points)
            wanted << toText(point);
        expect(5, same, QStringLiteral("absolute ") + wanted.join(QLatin1Char(' ')));
    }
    return diffs.join(QStringLiteral("; "));
}
