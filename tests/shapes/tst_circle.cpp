#include "OvGsCircle.h"
#include "ShapesTestHelper.h"

#include <QtTest>

using Points = QVector<QPointF>;

// Nodes set in order, then node `index` moved to `moveTo` (-1 and 3 are out of
// range); the circle expected after that.
struct Fit { Points created; int index; QPointF moveTo; QPointF pos; double radius; Points nodes; };
Q_DECLARE_METATYPE(Fit)

// A press at `grip` (item coordinates), moves along `path` (viewport pixels)
// and a release; "reshaped" is reported, "moved" written back as the position.
struct CircleDrag { QPointF grip; QList<QPoint> path; QPointF pos; double radius; QString outcome; };
Q_DECLARE_METATYPE(CircleDrag)

// `point` with `tolerance`: the node hit (-1 for none) and whether the circle is.
struct Hit { QPointF point; int tolerance; int node; bool onObject; };
Q_DECLARE_METATYPE(Hit)

namespace {

const Points kRing{{0, 0}, {20, 10}, {40, 0}};

OvGsCircle* withNodes(OvGsCircle* aCircle, const Points& aPoints)
{
    for (int i = 0; i < aPoints.size(); ++i)
        aCircle->setNode(i, aPoints.at(i));
    return aCircle;
}

// A finished circle around (200, 150) with radius 25, nodes (-20, 15), (0, 25), (20, 15).
OvGsCircle* makeCircle(OvGsCircle* aCircle)
{
    return withNodes(aCircle, {{180, 165}, {200, 175}, {220, 165}});
}

} // namespace

class tst_circle : public QObject
{
    Q_OBJECT

private slots:
    void geometry_data()
    {
        QTest::addColumn<Fit>("fit");

        const Points ringNodes{{-20, 15}, {0, 25}, {20, 15}};
        const QPointF none(77, 33);
        QTest::newRow("two-point rule, rounded centre")
            << Fit{{{10, 10}, {15, 22}, {15, 22}}, -1, none, {13, 16}, qSqrt(45.0), {{-3, -6}, {2, 6}, {2, 6}}};
        QTest::newRow("three-point rule away from the origin")
            << Fit{{{100, 50}, {120, 60}, {140, 50}}, -1, none, {120, 35}, 25.0, ringNodes};
        QTest::newRow("third node moved off the second: three points")
            << Fit{{{0, 0}, {20, 10}, {20, 10}}, 2, {40, 0}, {20, -15}, 25.0, ringNodes};
        QTest::newRow("nearly collinear nodes change nothing")
            << Fit{{{0, 0}, {20, 10}, {40, 19}}, -1, none, {0, 0}, 0.0, {{0, 0}, {20, 10}, {40, 19}}};
        QTest::newRow("new third node below the second changes nothing")
            << Fit{{{0, 0}, {10, 0}, {10, 5}}, -1, none, {0, 0}, 0.0, {{0, 0}, {10, 0}, {10, 5}}};
        QTest::newRow("horizontal chord on a circle: only the node moves")
            << Fit{kRing, 2, {40, 10}, {20, -15}, 25.0, {{-20, 15}, {0, 25}, {20, 25}}};
        QTest::newRow("vertical chord on a circle: only the node moves")
            << Fit{kRing, 1, {0, 10}, {20, -15}, 25.0, {{-20, 15}, {-20, 25}, {20, 15}}};
        QTest::newRow("reshaped circle")
            << Fit{kRing, 2, {30, -10}, {15, -5}, qSqrt(250.0), {{-15, 5}, {5, 15}, {15, -5}}};
        QTest::newRow("far-off nodes change nothing")
            << Fit{{{0, 0}, {1, 1e12}, {2, -1e12}}, -1, none, {0, 0}, 0.0, {{0, 0}, {1, 1e12}, {2, -1e12}}};
        QTest::newRow("index 3 on a segment") << Fit{kRing.mid(0, 2), 3, none, {0, 0}, 0.0, kRing.mid(0, 2)};
        QTest::newRow("index 3 on a finished circle") << Fit{kRing, 3, none, {20, -15}, 25.0, ringNodes};
    }

    void geometry()
    {
        QFETCH(Fit, fit);
        OvGsCircle circle(nullptr, nullptr, QString(), true);
        withNodes(&circle, fit.created)->setNode(fit.index, fit.moveTo);
        QCOMPARE(circle.pos(), fit.pos);
        QCOMPARE(circle.radius, fit.radius);
        QCOMPARE(circle.nodes, fit.nodes);
    }

    void labelAndTrashFollowTheCentre()
    {
        OvGsCircle circle(nullptr, nullptr, QString(), true);
        withNodes(&circle, {{0, 0}, {10, 0}})->setLabelPos(QPointF(3, 4));
        circle.setNode(2, QPointF(10, 0));
        QCOMPARE(circle.pos(), QPointF(5, 0));
        // The label keeps its place on the picture while the origin moves.
        QCOMPARE(circle.getLabelPos(), QPointF(-2, 4));
        QCOMPARE(circle.getLabelAnchor(), QPointF(-5, 0));
        QCOMPARE(circle.getTrashPos(), QPointF(5, 10));
    }

    void adjustScale_data() { addZoomRows(); }
    void adjustScale()
    {
        QFETCH(double, zoom);
        QFETCH(double, used);
        OvGsCircle circle(nullptr, nullptr, QString(), true);
        makeCircle(&circle);
        const QPointF trash = circle.getTrashPos();
        circle.adjustScale(zoom);
        QCOMPARE((QVector<double>{circle.selSize, circle.nodeSize, circle.penScale, circle.trashOffset.x()}),
                 (QVector<double>{8 / used, 11 / used, 1 / used, 10 / used}));
        // The trash button waits for the next geometry change.
        QCOMPARE(circle.getTrashPos(), trash);
        circle.setNode(0, circle.pos() + circle.nodes.at(0));
        QCOMPARE(circle.getTrashPos(), circle.nodes.at(0) + circle.trashOffset);
    }

    void labelPrefix_data()
    {
        QTest::addColumn<bool>("radiusMode");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("shown");
        QTest::newRow("radius") << true << " = 12.50 mm" << "R = 12.50 mm";
        QTest::newRow("diameter") << false << " = 25.00 mm" << "D = 25.00 mm";
        QTest::newRow("no value, no bare prefix") << true << "" << "";
    }

    void labelPrefix()
    {
        QFETCH(bool, radiusMode);
        QFETCH(QString, value);
        QFETCH(QString, shown);
        OvGsCircle circle(nullptr, nullptr, QStringLiteral("Circle1"), radiusMode);
        circle.setDisplayValue(value);
        QCOMPARE(circle.getDisplayValue(), shown);
        QVERIFY(circle.getLabelText().endsWith(shown));
    }

    void hitTest_data()
    {
        QTest::addColumn<Hit>("hit");
        // Radius 25, nodes at (-20, 15), (0, 25), (20, 15), squares of side 11.
        QTest::newRow("9 right of node 0") << Hit{{-11, 15}, 8, 0, true};
        QTest::newRow("10.5 right of node 0, inside") << Hit{{-9.5, 15}, 8, -1, true};
        QTest::newRow("near node 1") << Hit{{3, 29}, 8, 1, true};
        QTest::newRow("3 outside the rim") << Hit{{28, 0}, 8, -1, true};
        QTest::newRow("5 outside the rim") << Hit{{30, 0}, 8, -1, false};
        QTest::newRow("zero tolerance hits no node") << Hit{{-20, 15}, 0, -1, true};
    }

    void hitTest()
    {
        QFETCH(Hit, hit);
        OvGsCircle circle(nullptr, nullptr, QString(), true);
        makeCircle(&circle);
        int found = 42;
        QCOMPARE(circle.isPointOnNode(hit.point, found, hit.tolerance), hit.node >= 0);
        QCOMPARE(found, hit.node);
        int part = 99;
        QCOMPARE(circle.isPointOnObject(hit.point, part, hit.tolerance), hit.onObject);
        QCOMPARE(part, 0);
    }

    void boundingRect_data()
    {
        QTest::addColumn<Points>("created");
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("no node") << Points() << QRectF();
        QTest::newRow("one node") << Points{{50, 50}} << QRectF(-5.5, -5.5, 11, 11);
        QTest::newRow("segment") << Points{{50, 50}, {60, 30}} << QRectF(-5.5, -25.5, 21, 31);
        QTest::newRow("circle") << kRing << QRectF(-25.5, -25, 51, 55.5);
    }

    void boundingRect()
    {
        QFETCH(Points, created);
        QFETCH(QRectF, expected);
        OvGsCircle circle(nullptr, nullptr, QString(), true);
        QCOMPARE(withNodes(&circle, created)->boundingRect(), expected);
    }

    void drag_data()
    {
        QTest::addColumn<CircleDrag>("drag");
        // Centre (200, 150). Node 1 lies under the trash button of a current
        // circle, so nodes 0 and 2 are the ones to drag.
        QTest::newRow("node 2 up by 5") << CircleDrag{{20, 15}, {{0, -5}}, {199, 152}, qSqrt(530.0), "reshaped"};
        QTest::newRow("node 0 in two steps")
            << CircleDrag{{-20, 15}, {{-4, 3}, {-8, 6}}, {192, 131}, qSqrt(2000.0), "reshaped"};
        QTest::newRow("body by (10,-5)") << CircleDrag{{5, 5}, {{10, -5}}, {210, 145}, 25.0, "moved"};
        QTest::newRow("outside the circle") << CircleDrag{{60, 0}, {{10, 10}}, {200, 150}, 25.0, ""};
    }

    void drag()
    {
        QFETCH(CircleDrag, drag);
        ShapeScene env;
        auto* circle = makeCircle(new OvGsCircle(env.manipulator, env.editor, QString(), true));
        circle->setLabelPos(circle->nodes.at(0) + QPointF(30, -40));
        env.manipulator->store(circle);
        env.editor->setCurrentObject(circle, false);

        const QPoint from = env.toViewport(circle, drag.grip);
        env.press(from);
        QCOMPARE(circle->isReshaping(), drag.outcome == QLatin1String("reshaped"));
        QCOMPARE(circle->isMoving(), drag.outcome == QLatin1String("moved"));
        env.finishDrag(from, drag.path);
        QCOMPARE(circle->pos(), drag.pos);
        QCOMPARE(circle->radius, drag.radius);
        // The label stays beside node 0 whatever moved.
        QCOMPARE(circle->getLabelPos() - circle->nodes.at(0), QPointF(30, -40));
        env.compareReports(circle, drag.outcome);
    }

    void paint_data()
    {
        QTest::addColumn<int>("nodeCount");
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("drawn");
        QTest::newRow("finished and current") << 3 << "current" << "rim cross squares";
        QTest::newRow("finished, not current") << 3 << "" << "rim cross";
        QTest::newRow("hidden") << 3 << "current hidden" << "";
        QTest::newRow("segment while drawing") << 2 << "current" << "segment squares";
    }

    void paint()
    {
        QFETCH(int, nodeCount);
        QFETCH(QString, state);
        QFETCH(QString, drawn);
        // Centre (20, -15) for three nodes; node 0 at the origin for two.
        OvGsCircle circle(nullptr, nullptr, QString(), true);
        withNodes(&circle, kRing.mid(0, nodeCount));
        circle.setColor(QColor(255, 0, 0));
        circle.setPenStyle(Qt::SolidLine, 2);
        circle.setCurrent(state.contains(QLatin1String("current")));
        circle.setAlwaysHidden(state.contains(QLatin1String("hidden")));

        const QImage image = paintedImage(circle, QSize(120, 120), QPoint(60, 60));
        const struct { const char* part; QPoint at; } probes[] = {
            {"rim", {0, -25}}, {"rim", {-25, 0}}, {"cross", {8, 0}}, {"cross", {0, -8}}, {"segment", {10, 5}}};
        for (const auto& probe : probes)
            QVERIFY2((qAlpha(image.pixel(QPoint(60, 60) + probe.at)) > 0) == drawn.contains(QLatin1String(probe.part)),
                     probe.part);
        // Left edge of the square of the last node (node 2 or node 1).
        const QPoint edge = QPoint(60 - 6, 60 - 3) + circle.nodes.last().toPoint();
        QCOMPARE(QColor::fromRgba(image.pixel(edge)),
                 drawn.contains(QLatin1String("squares")) ? QColor(49, 49, 49) : QColor::fromRgba(0));
    }
};

QTEST_MAIN(tst_circle)
#include "tst_circle.moc"
