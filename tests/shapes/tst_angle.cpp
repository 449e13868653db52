#include "OvGsAngle.h"
#include "ShapesTestHelper.h"

#include <QtTest>

using Points = QVector<QPointF>;

// Four nodes placed in order (picture coordinates, picture 400 x 300) for an inner or
// outer angle, then setFinalShape(): the item's position (the vertex), its nodes and
// angle, and where the label's leader points (the arc's start).
struct Final { Points placed; bool inner; QPointF pos; Points nodes; double angle; QPointF anchor; };
Q_DECLARE_METATYPE(Final)

// A press on `grip` (item coordinates of the finished right angle) and moves along
// `path` (viewport pixels), then a release: position and angle after it.
struct AngleDrag { QPointF grip; QList<QPoint> path; QPointF pos; double angle; QString outcome; Points nodes; };
Q_DECLARE_METATYPE(AngleDrag)

namespace {

// The right angle with its vertex at (100, 200): first arm to the right, second up.
const Points kRightAngle{{100, 200}, {300, 200}, {100, 280}, {100, 100}};

OvGsAngle* placed(OvGsAngle* anAngle, const Points& aPoints, bool anInner = true)
{
    anAngle->startCreationMode(anInner);
    for (int i = 0; i < aPoints.size(); ++i)
        anAngle->setNode(i, aPoints.at(i));
    return anAngle;
}

bool near(const QPointF& a, const QPointF& b, double aTolerance = 1e-3)
{
    return qAbs(a.x() - b.x()) < aTolerance && qAbs(a.y() - b.y()) < aTolerance;
}

QString text(const QPointF& aPoint)
{
    return QStringLiteral("(%1, %2)").arg(aPoint.x()).arg(aPoint.y());
}

} // namespace

class tst_angle : public QObject
{
    Q_OBJECT

private slots:
    void calcLine_data()
    {
        QTest::addColumn<QPointF>("p1");
        QTest::addColumn<QPointF>("p2");
        QTest::addColumn<QLineF>("line");
        QTest::newRow("same y within 0.001: across the width")
            << QPointF(10, 50) << QPointF(300, 50.0005) << QLineF(0, 50, 400, 50);
        QTest::newRow("same x within 0.001: across the height")
            << QPointF(80, 10) << QPointF(80.0005, 20) << QLineF(80, 0, 80, 300);
        QTest::newRow("left to right edge") << QPointF(0, 100) << QPointF(400, 200) << QLineF(0, 100, 400, 200);
        QTest::newRow("steep down: top to bottom") << QPointF(100, 100) << QPointF(110, 120)
                                                   << QLineF(50, 0, 200, 300);
        QTest::newRow("steep up: bottom corner to top") << QPointF(100, 100) << QPointF(110, 80)
                                                        << QLineF(0, 300, 150, 0);
    }

    void calcLine()
    {
        QFETCH(QPointF, p1);
        QFETCH(QPointF, p2);
        QFETCH(QLineF, line);
        QCOMPARE(::calcLine(p1, p2, 400, 300), line);
    }

    void calcLinesIntersection_data()
    {
        QTest::addColumn<QLineF>("l1");
        QTest::addColumn<QLineF>("l2");
        QTest::addColumn<QPointF>("crossing");
        QTest::newRow("diagonals") << QLineF(0, 0, 10, 10) << QLineF(0, 10, 10, 0) << QPointF(5, 5);
        // 2.1 and 0.7 are not single-precision numbers: the result is rounded to them.
        QTest::newRow("single precision") << QLineF(0, 0, 3, 1) << QLineF(0, 1, 7, 0)
                                          << QPointF(double(2.1f), double(0.7f));
        QTest::newRow("parallel: none") << QLineF(0, 0, 10, 0) << QLineF(0, 5, 10, 5) << QPointF(0, 0);
        QTest::newRow("nearly parallel: none") << QLineF(0, 0, 100, 0) << QLineF(0, 5, 100, 5.0000005)
                                               << QPointF(0, 0);
        QTest::newRow("crossing 10^10 away: none") << QLineF(0, 0, 1, 0) << QLineF(0, 1, 1e10, 0) << QPointF(0, 0);
        QTest::newRow("null line: none") << QLineF(3, 3, 3, 3) << QLineF(0, 10, 10, 0) << QPointF(0, 0);
    }

    void calcLinesIntersection()
    {
        QFETCH(QLineF, l1);
        QFETCH(QLineF, l2);
        QFETCH(QPointF, crossing);
        const QPointF found = ::calcLinesIntersection(l1, l2);
        QCOMPARE(found.x(), crossing.x());
        QCOMPARE(found.y(), crossing.y());
    }

    void findCloserPoint_data()
    {
        QTest::addColumn<QPointF>("a");
        QTest::addColumn<QPointF>("b");
        QTest::addColumn<int>("closer");
        QTest::newRow("a nearer") << QPointF(3, 4) << QPointF(6, 0) << 1;
        QTest::newRow("tie gives b") << QPointF(3, 4) << QPointF(-5, 0) << 2;
        QTest::newRow("b nearer") << QPointF(30, 4) << QPointF(0, -1) << 2;
    }

    void findCloserPoint()
    {
        QFETCH(QPointF, a);
        QFETCH(QPointF, b);
        QFETCH(int, closer);
        QCOMPARE(::findCloserPoint(QPointF(0, 0), a, b), closer);
    }

    void finalShape_data()
    {
        QTest::addColumn<Final>("final");
        const Points rightNodes{{50, 0}, {200, 0}, {0, -25}, {0, -100}};
        QTest::newRow("right angle, inner: 90")
            << Final{kRightAngle, true, {100, 200}, rightNodes, 90.0, {40, 0}};
        QTest::newRow("right angle, outer: 270")
            << Final{kRightAngle, false, {100, 200}, rightNodes, 270.0, {40, 0}};
        QTest::newRow("first arm drawn towards the vertex: nodes swapped")
            << Final{{{300, 200}, {100, 200}, {100, 280}, {100, 100}}, true, {100, 200}, rightNodes, 90.0, {40, 0}};
        // The lines cross at (-20, 100), left of the picture: the inner nodes go where
        // the lines enter it, and the arc reaches 40 into it.
        QTest::newRow("vertex outside: 45")
            << Final{{{10, 100}, {200, 100}, {10, 130}, {100, 220}}, true, {-20, 100},
                     {{20, 0}, {220, 0}, {20, 20}, {120, 120}}, 45.0, {60 / M_SQRT2, 60 / M_SQRT2}};
        QTest::newRow("parallel: no vertex, nodes kept")
            << Final{{{50, 100}, {150, 100}, {50, 200}, {150, 200}}, true, {50, 100},
                     {{0, 0}, {100, 0}, {0, 100}, {100, 100}}, 0.0, {0, 0}};
        // Arms pointing apart measure what the store gives them, though no arc is drawn.
        QTest::newRow("parallel, pointing apart: 180")
            << Final{{{150, 100}, {50, 100}, {50, 200}, {150, 200}}, true, {150, 100},
                     {{0, 0}, {-100, 0}, {-100, 100}, {0, 100}}, 180.0, {0, 0}};
        QTest::newRow("parallel, same way, outer: 360")
            << Final{{{50, 100}, {150, 100}, {50, 200}, {150, 200}}, false, {50, 100},
                     {{0, 0}, {100, 0}, {0, 100}, {100, 100}}, 360.0, {0, 0}};
    }

    void finalShape()
    {
        QFETCH(Final, final);
        ShapeScene env;
        OvGsAngle* angle = placed(new OvGsAngle(nullptr, env.editor, QString()), final.placed, final.inner);
        QVERIFY(angle->creating);
        angle->setFinalShape();
        QVERIFY(!angle->creating && !angle->reshaping);
        QVERIFY2(near(angle->pos(), final.pos), qPrintable(text(angle->pos())));
        QCOMPARE(angle->nodes.size(), 4);
        for (int i = 0; i < 4; ++i)
            QVERIFY2(near(angle->nodes.at(i), final.nodes.at(i)), qPrintable(text(angle->nodes.at(i))));
        // Up to the single-precision atan2f the arc is built from.
        QVERIFY2(qAbs(angle->angleValue - final.angle) < 1e-4, qPrintable(QString::number(angle->angleValue)));
        const bool noVertex = QByteArray(QTest::currentDataTag()).startsWith("parallel");
        QCOMPARE(angle->arcPath.isEmpty(), noVertex || final.angle == 0.0);
        QVERIFY2(near(angle->getLabelAnchor(), final.anchor), qPrintable(text(angle->getLabelAnchor())));
        QCOMPARE(angle->getTrashPos(), angle->nodes.at(0) + angle->trashOffset);
    }

    // While the second line starts both its nodes coincide: it shows as the horizontal
    // line through the press point, with an arc against the first line.
    void secondLineStartsHorizontal()
    {
        ShapeScene env;
        OvGsAngle* angle = placed(new OvGsAngle(nullptr, env.editor, QString()), {{100, 50}, {200, 150}});
        QVERIFY(angle->secondLine.isNull() && angle->arcPath.isEmpty());
        angle->setNode(2, QPointF(250, 100));
        angle->setNode(3, QPointF(250, 100));
        QCOMPARE(angle->secondLine, QLineF(-100, 50, 300, 50));
        // Both pairs tie in distance from the vertex (50, 50): the arms run to nodes 0 and 2.
        QVERIFY(!angle->arcPath.isEmpty());
        QVERIFY(qAbs(angle->angleValue - 135.0) < 1e-4);
    }

    void adjustScale_data() { addZoomRows(); }
    void adjustScale()
    {
        QFETCH(double, zoom);
        QFETCH(double, used);
        ShapeScene env;
        OvGsAngle* angle = placed(new OvGsAngle(nullptr, env.editor, QString()), kRightAngle);
        angle->setFinalShape();
        angle->adjustScale(zoom);
        QCOMPARE((QVector<double>{angle->selSize, angle->nodeSize, angle->penScale, angle->trashOffset.x(),
                                  angle->arcRadius}),
                 (QVector<double>{8 / used, 11 / used, 1 / used, 10 / used, 40 / used}));
        // Arc, label leader and trash follow at once.
        QVERIFY(near(angle->getLabelAnchor(), QPointF(40 / used, 0)));
        QVERIFY(near(angle->arcPath.boundingRect().topRight(), QPointF(40 / used, -40 / used)));
        QCOMPARE(angle->getTrashPos(), QPointF(50, 0) + angle->trashOffset);
    }

    void hitTest_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("node");
        QTest::addColumn<bool>("onObject");
        // Finished right angle: arms (0,0)-(200,0) and (0,0)-(0,-100), nodes at
        // (50,0), (200,0), (0,-25), (0,-100); tolerance 8.
        QTest::newRow("3 below the first arm") << QPointF(120, 3) << -1 << true;
        QTest::newRow("5 below the first arm") << QPointF(120, 5) << -1 << false;
        QTest::newRow("on the second arm") << QPointF(2, -60) << -1 << true;
        QTest::newRow("the line beyond the vertex is no arm") << QPointF(-40, 0) << -1 << false;
        QTest::newRow("inner node of the second arm") << QPointF(4, -28) << 2 << true;
        QTest::newRow("first node wins") << QPointF(52, 0) << 0 << true;
    }

    void hitTest()
    {
        QFETCH(QPointF, point);
        QFETCH(int, node);
        QFETCH(bool, onObject);
        ShapeScene env;
        OvGsAngle* angle = placed(new OvGsAngle(nullptr, env.editor, QString()), kRightAngle);
        angle->setFinalShape();
        angle->setLabelPos(QPointF(-150, -150));
        int found = 42;
        QCOMPARE(angle->isPointOnNode(point, found, 8), node >= 0);
        QCOMPARE(found, node);
        int part = 99;
        QCOMPARE(angle->isPointOnObject(point, part, 8), onObject);
    }

    void drag_data()
    {
        QTest::addColumn<AngleDrag>("drag");
        // Along its own line the vertex stays on the origin: the inner node is found again.
        QTest::newRow("outer node 3 along its line")
            << AngleDrag{{0, -100}, {{0, 40}}, {100, 200}, 90.0, "reshaped", {{50, 0}, {200, 0}, {0, -15}, {0, -60}}};
        // The first line turns about node 0: the arms now meet at 36.87 degrees,
        // 200/3 below the old vertex.
        QTest::newRow("outer node 1 up") << AngleDrag{{200, 0}, {{0, -100}, {0, -200}}, {100, 200 + 200.0 / 3},
                                                       qRadiansToDegrees(qAtan2(3.0, 4.0)), "reshaped", {}};
        QTest::newRow("body") << AngleDrag{{120, 0}, {{10, 5}}, {110, 205}, 90.0, "moved", {}};
        QTest::newRow("beside it") << AngleDrag{{120, 30}, {{10, 5}}, {100, 200}, 90.0, "", {}};
    }

    void drag()
    {
        QFETCH(AngleDrag, drag);
        ShapeScene env;
        OvGsAngle* angle = placed(new OvGsAngle(env.manipulator, env.editor, QString()), kRightAngle);
        angle->setFinalShape();
        angle->setLabelPos(QPointF(-150, -150));
        env.manipulator->store(angle);
        env.editor->setCurrentObject(angle, false);

        const QPoint from = env.toViewport(angle, drag.grip);
        env.press(from);
        QCOMPARE(angle->isReshaping(), drag.outcome == QLatin1String("reshaped"));
        QCOMPARE(angle->isMoving(), drag.outcome == QLatin1String("moved"));
        env.finishDrag(from, drag.path);
        QVERIFY2(near(angle->pos(), drag.pos), qPrintable(text(angle->pos())));
        QVERIFY2(qAbs(angle->angleValue - drag.angle) < 1e-3, qPrintable(QString::number(angle->angleValue)));
        for (int i = 0; i < drag.nodes.size(); ++i)
            QVERIFY2(near(angle->nodes.at(i), drag.nodes.at(i)), qPrintable(text(angle->nodes.at(i))));
        env.compareReports(angle, drag.outcome);
    }

    void paint_data()
    {
        QTest::addColumn<bool>("finished");
        QTest::addColumn<bool>("current");
        QTest::addColumn<QString>("drawn");
        QTest::newRow("creating: full lines and arc") << false << true << "arm arc beyond squares";
        QTest::newRow("finished and current") << true << true << "arm arc squares";
        QTest::newRow("finished") << true << false << "arm arc";
    }

    void paint()
    {
        QFETCH(bool, finished);
        QFETCH(bool, current);
        QFETCH(QString, drawn);
        ShapeScene env;
        OvGsAngle* angle = placed(new OvGsAngle(nullptr, env.editor, QString()), kRightAngle);
        if (finished)
            angle->setFinalShape();
        angle->setColor(QColor(255, 0, 0));
        angle->setPenStyle(Qt::SolidLine, 2);
        angle->setCurrent(current);

        const QImage image = paintedImage(*angle, QSize(400, 400), QPoint(150, 250));
        const auto inked = [&](const QPointF& anAt) {
            for (int dx = -2; dx <= 2; ++dx)
                for (int dy = -2; dy <= 2; ++dy)
                    if (qAlpha(image.pixel(QPoint(150, 250) + anAt.toPoint() + QPoint(dx, dy))) > 0)
                        return true;
            return false;
        };
        QCOMPARE(inked({120, 0}), drawn.contains(QLatin1String("arm")));
        QCOMPARE(inked({40 / M_SQRT2, -40 / M_SQRT2}), drawn.contains(QLatin1String("arc")));
        QCOMPARE(inked({-60, 0}), drawn.contains(QLatin1String("beyond")));
        // Left edge of the square around the outer node of the second arm.
        QCOMPARE(QColor::fromRgba(image.pixel(QPoint(150 - 6, 250 - 100 - 3))),
                 drawn.contains(QLatin1String("squares")) ? QColor(49, 49, 49) : QColor::fromRgba(0));
        // Everything painted lies inside the bounding rectangle.
        const QRect bounds = angle->boundingRect().translated(150, 250).toAlignedRect();
        for (int y = 0; y < image.height(); y += 2)
            for (int x = 0; x < image.width(); x += 2)
                if (qAlpha(image.pixel(x, y)) > 0)
                    QVERIFY2(bounds.contains(x, y), qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
    }
};

QTEST_MAIN(tst_angle)
#include "tst_angle.moc"
