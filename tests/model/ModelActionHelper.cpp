#include "ModelActionHelper.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStringList>
#include <QtMath>

namespace {

// How often each action is drawn, out of the sum: drawing and editing
// dominate, so sequences build up measurements to act on.
const int kWeights[ModelActionHelper::KindCount] = {
    22, // Draw
    4,  // SelectNone
    8,  // Select
    2,  // SelectAll
    3,  // ClickBody
    7,  // MoveBody
    7,  // DragHandle
    2,  // ToggleActive
    8,  // Style
    3,  // Delete
    3,  // Trash
    9,  // Undo
    5,  // Redo
    3,  // HistoryJump
    2,  // Frame
    2,  // Calibrate
    1,  // CameraResolution
    1,  // SaveReopen
};

// Even picture coordinates: halving the camera resolution and doubling it
// again then gives back the same pixels.
QPoint evenPoint(QRandomGenerator& aRandom, int aMinX, int aMaxX, int aMinY, int aMaxY)
{
    return QPoint(aRandom.bounded(aMinX / 2, aMaxX / 2) * 2, aRandom.bounded(aMinY / 2, aMaxY / 2) * 2);
}

QPoint evenRound(const QPointF& aPoint)
{
    return QPoint(qRound(aPoint.x() / 2.0) * 2, qRound(aPoint.y() / 2.0) * 2);
}

// A second point 60 to 300 pixels away from aFrom, inside the picture.
QPoint pointAway(QRandomGenerator& aRandom, const QPoint& aFrom)
{
    for (;;) {
        const double angle = aRandom.bounded(2.0 * M_PI);
        const double length = 60.0 + aRandom.bounded(240.0);
        const QPoint to = evenRound(QPointF(aFrom) + QPointF(std::cos(angle), std::sin(angle)) * length);
        if (to.x() >= 60 && to.x() <= 1220 && to.y() >= 60 && to.y() <= 900)
            return to;
    }
}

// aCount points on a circle, in angle order and at least 50 degrees apart.
QVector<QPoint> pointsOnCircle(QRandomGenerator& aRandom, int aCount)
{
    const QPoint centre = evenPoint(aRandom, 220, 1060, 220, 740);
    const double radius = 50.0 + aRandom.bounded(110.0);
    const double start = aRandom.bounded(2.0 * M_PI);
    const double step = 2.0 * M_PI / aCount;
    QVector<QPoint> points;
    for (int i = 0; i < aCount; ++i) {
        const double angle = start + i * step + aRandom.bounded(step - qDegreesToRadians(50.0) + 0.01);
        points << evenRound(QPointF(centre) + QPointF(std::cos(angle), std::sin(angle)) * radius);
    }
    return points;
}

} // namespace

const QStringList& ModelActionHelper::shapeNames()
{
    static const QStringList names{ "distance", "angle", "outer-angle", "circle", "diameter", "free-form",
                                    "free-line", "multiple", "parallel" };
    return names;
}

int ModelActionHelper::shapeType(int aShape)
{
    static const int types[] = { 66653, 66651, 66651, 66656, 66656, 66655, 66755, 66658, 66659 };
    return types[aShape];
}

QString ModelActionHelper::describe() const
{
    auto pointList = [this] {
        QStringList list;
        for (const QPoint& point : points)
            list << QStringLiteral("(%1,%2)").arg(point.x()).arg(point.y());
        return list.join(QLatin1Char(' '));
    };
    const QString by = QStringLiteral("target %1").arg(target);
    const QString moved = QStringLiteral("by (%1,%2)").arg(delta.x()).arg(delta.y());
    switch (kind) {
    case Draw:
        return QStringLiteral("draw %1 by %2 %3").arg(shapeNames().at(shape), byClicks ? "clicks" : "drag", pointList());
    case SelectNone: return QStringLiteral("select none");
    case Select: return QStringLiteral("%1 %2").arg(add ? "ctrl+click" : "click", by);
    case SelectAll: return QStringLiteral("select all");
    case ClickBody: return QStringLiteral("click without moving on %1").arg(by);
    case MoveBody: return QStringLiteral("move body of %1 %2").arg(by, moved);
    case DragHandle: return QStringLiteral("drag handle %1 of %2 %3").arg(handle).arg(by, moved);
    case ToggleActive: return QStringLiteral("press active button of %1").arg(by);
    case Style: {
        static const char* const names[] = { "unit", "width", "font size", "colour" };
        return QStringLiteral("style %1 choice %2").arg(names[style]).arg(value);
    }
    case Delete: return QStringLiteral("delete selected");
    case Trash: return QStringLiteral("trash button of %1").arg(by);
    case Undo: return QStringLiteral("undo");
    case Redo: return QStringLiteral("redo");
    case HistoryJump: return QStringLiteral("history jump choice %1").arg(value);
    case Frame: return QStringLiteral("frame %1 and back").arg(value);
    case Calibrate: return QStringLiteral("calibrate choice %1").arg(value);
    case CameraResolution: return QStringLiteral("camera resolution change");
    case SaveReopen: return QStringLiteral("save and reopen");
    case KindCount: break;
    }
    return QStringLiteral("?");
}

bool ModelActionHelper::parse(const QString& aLine, ModelActionHelper* anAction)
{
    const QString line = aLine.trimmed();
    ModelActionHelper action;
    auto number = [&line](const char* aPattern, int aGroup = 1) {
        const QRegularExpressionMatch match = QRegularExpression(QString::fromLatin1(aPattern)).match(line);
        return match.hasMatch() ? match.captured(aGroup).toInt() : 0;
    };
    static const QRegularExpression pointPattern(QStringLiteral("\\((-?\\d+),(-?\\d+)\\)"));
    QVector<QPoint> points;
    for (auto it = pointPattern.globalMatch(line); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        points << QPoint(match.captured(1).toInt(), match.captured(2).toInt());
    }
    action.target = number("target (\\d+)");
    action.value = number("choice (\\d+)");
    if (line.startsWith(QLatin1String("draw "))) {
        action.kind = Draw;
        action.shape = shapeNames().indexOf(line.section(QLatin1Char(' '), 1, 1));
        action.byClicks = line.contains(QLatin1String(" by clicks "));
        action.points = points;
        if (action.shape < 0 || points.isEmpty())
            return false;
    } else if (line == QLatin1String("select none")) {
        action.kind = SelectNone;
    } else if (line == QLatin1String("select all")) {
        action.kind = SelectAll;
    } else if (line.startsWith(QLatin1String("click without moving"))) {
        action.kind = ClickBody;
    } else if (line.startsWith(QLatin1String("click target")) || line.startsWith(QLatin1String("ctrl+click target"))) {
        action.kind = Select;
        action.add = line.startsWith(QLatin1String("ctrl"));
    } else if (line.startsWith(QLatin1String("move body"))) {
        action.kind = MoveBody;
        action.delta = points.value(0);
    } else if (line.startsWith(QLatin1String("drag handle"))) {
        action.kind = DragHandle;
        action.handle = number("handle (\\d+)");
        action.delta = points.value(0);
    } else if (line.startsWith(QLatin1String("press active button"))) {
        action.kind = ToggleActive;
    } else if (line.startsWith(QLatin1String("style "))) {
        static const QStringList styles{ "unit", "width", "font size", "colour" };
        action.kind = Style;
        action.style = styles.indexOf(line.mid(6, line.indexOf(QLatin1String(" choice")) - 6));
        if (action.style < 0)
            return false;
    } else if (line == QLatin1String("delete selected")) {
        action.kind = Delete;
    } else if (line.startsWith(QLatin1String("trash button"))) {
        action.kind = Trash;
    } else if (line == QLatin1String("undo")) {
        action.kind = Undo;
    } else if (line == QLatin1String("redo")) {
        action.kind = Redo;
    } else if (line.startsWith(QLatin1String("history jump"))) {
        action.kind = HistoryJump;
    } else if (line.startsWith(QLatin1String("frame "))) {
        action.kind = Frame;
        action.value = number("frame (\\d+)");
    } else if (line.startsWith(QLatin1String("calibrate"))) {
        action.kind = Calibrate;
    } else if (line == QLatin1String("camera resolution change")) {
        action.kind = CameraResolution;
    } else if (line == QLatin1String("save and reopen")) {
        action.kind = SaveReopen;
    } else {
        return false;
    }
    *anAction = action;
    return true;
}

ModelActionHelper ModelActionHelper::random(QRandomGenerator& aRandom, bool aSeries)
{
    int total = 0;
    for (int weight : kWeights)
        total += weight;
    int pick = aRandom.bounded(total);
    int kind = 0;
    while (pick >= kWeights[kind]) {
        pick -= kWeights[kind];
        ++kind;
    }
    ModelActionHelper action;
    action.kind = Kind(kind);
    if (action.kind == Frame && !aSeries)
        action.kind = SelectNone;
    action.target = aRandom.bounded(1000);
    action.add = aRandom.bounded(2) == 1;
    action.byClicks = aRandom.bounded(2) == 1;
    action.handle = aRandom.bounded(4);
    action.style = aRandom.bounded(4);
    action.value = aRandom.bounded(1000);
    action.delta = QPoint(aRandom.bounded(-40, 41) * 2, aRandom.bounded(-40, 41) * 2);
    if (action.delta.manhattanLength() < 24)
        action.delta += QPoint(30, 0);
    if (action.kind == Draw) {
        action.shape = aRandom.bounded(shapeNames().size());
        const int type = shapeType(action.shape);
        if (type == 66656) {
            action.points = pointsOnCircle(aRandom, 3);
        } else if (type == 66655) {
            action.points = pointsOnCircle(aRandom, 5);
        } else if (type == 66755) {
            action.points << evenPoint(aRandom, 100, 1180, 100, 860);
            for (int i = 0; i < 3; ++i)
                action.points << pointAway(aRandom, action.points.last());
        } else if (type == 66651) {
            action.points << evenPoint(aRandom, 100, 1180, 100, 860);
            action.points << pointAway(aRandom, action.points.last());
            action.points << evenPoint(aRandom, 100, 1180, 100, 860);
            action.points << pointAway(aRandom, action.points.last());
        } else {
            action.points << evenPoint(aRandom, 100, 1180, 100, 860);
            action.points << pointAway(aRandom, action.points.last());
        }
    }
    return action;
}

QVector<ModelActionHelper> ModelActionHelper::randomSequence(quint64 aSeed, int aCount, bool aSeries)
{
    QRandomGenerator random(quint32(aSeed ^ (aSeed >> 32)));
    QVector<ModelActionHelper> actions;
    actions.reserve(aCount);
    for (int i = 0; i < aCount; ++i)
        actions << ModelActionHelper::random(random, aSeries);
    return actions;
}
