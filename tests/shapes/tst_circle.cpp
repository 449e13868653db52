#include "KxGsEditor.h"
#include "OvGsCircle.h"
#include "ShapesTestHelper.h"

#include <QImage>
#include <QPainter>
#include <QVector>
#include <QStyleOptionGraphicsItem>
#include <QTest>
#include <QtMath>

class tst_circle : public QObject
{
    Q_OBJECT

private slots:
    void geometry_data();
    void geometry();
    void labelAndTrashFollowTheCentre();
    void outOfRangeIndexIgnored_data();
    void outOfRangeIndexIgnored();
    void adjustScale_data();
    void adjustScale();
    void labelPrefix_data();
    void labelPrefix();
    void pointOnNode_data();
    void pointOnNode();
    void pointOnObject_data();
    void pointOnObject();
    void boundingRect_data();
    void boundingRect();
    void drag_data();
    void drag();
    void dragNodeZeroKeepsLabelOffset();
    void paint_data();
    void paint();
};

namespace {

using Points = QVector<QPointF>;

Points shifted(const Points& aPoints, const QPointF& aDelta)
{
    Points result;
    for (const QPointF& point : aPoints)
        result.append(point + aDelta);
    return result;
}

void compareNodes(const QVector<QPointF>& anActual, const Points& anExpected)
{
    QCOMPARE(anActual.size(), anExpected.size());
    for (int i = 0; i < anActual.size(); ++i)
        QCOMPARE(anActual.at(i), anExpected.at(i));
}

// A finished circle around (200, 150) with radius 25 (nodes given in the
// parent's coordinates).
void makeCircle(OvGsCircle& aCircle, const QPointF& aCentre = QPointF(200, 150))
{
    aCircle.setNode(0, aCentre + QPointF(-20, 15));
    aCircle.setNode(1, aCentre + QPointF(0, 25));
    aCircle.setNode(2, aCentre + QPointF(20, 15));
}

} // namespace

void tst_circle::geometry_data()
{
    QTest::addColumn<Points>("created");
    QTest::addColumn<int>("index");
    QTest::addColumn<QPointF>("moveTo");
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<double>("radius");
    QTest::addColumn<Points>("nodes");

    const Points ring{QPointF(0, 0), QPointF(20, 10), QPointF(40, 0)};
    const Points ringNodes{QPointF(-20, 15), QPointF(0, 25), QPointF(20, 15)};

    QTest::newRow("two-point rule on a new circle")
        << Points{QPointF(0, 0), QPointF(10, 0), QPointF(10, 0)} << -1 << QPointF() << QPointF(5, 0) << 5.0
        << Points{QPointF(-5, 0), QPointF(5, 0), QPointF(5, 0)};
    QTest::newRow("two-point rule, rounded centre")
        << Points{QPointF(10, 10), QPointF(15, 22), QPointF(15, 22)} << -1 << QPointF() << QPointF(13, 16)
        << qSqrt(9.0 + 36.0) << Points{QPointF(-3, -6), QPointF(2, 6), QPointF(2, 6)};
    QTest::newRow("three-point rule") << ring << -1 << QPointF() << QPointF(20, -15) << 25.0 << ringNodes;
    QTest::newRow("three-point rule away from the origin") << shifted(ring, QPointF(100, 50)) << -1 << QPointF()
                                                           << QPointF(120, 35) << 25.0 << ringNodes;
    QTest::newRow("third node moved off the second: three points")
        << Points{QPointF(0, 0), QPointF(20, 10), QPointF(20, 10)} << 2 << QPointF(40, 0) << QPointF(20, -15)
        << 25.0 << ringNodes;
    QTest::newRow("collinear nodes change nothing")
        << Points{QPointF(0, 0), QPointF(10, 10), QPointF(20, 20)} << -1 << QPointF() << QPointF(0, 0) << 0.0
        << Points{QPointF(0, 0), QPointF(10, 10), QPointF(20, 20)};
    QTest::newRow("nearly collinear nodes change nothing")
        << Points{QPointF(0, 0), QPointF(20, 10), QPointF(40, 19)} << -1 << QPointF() << QPointF(0, 0) << 0.0
        << Points{QPointF(0, 0), QPointF(20, 10), QPointF(40, 19)};
    QTest::newRow("new third node below the second changes nothing")
        << Points{QPointF(0, 0), QPointF(10, 0), QPointF(10, 5)} << -1 << QPointF() << QPointF(0, 0) << 0.0
        << Points{QPointF(0, 0), QPointF(10, 0), QPointF(10, 5)};
    QTest::newRow("horizontal chord on a circle: only the node moves")
        << ring << 2 << QPointF(40, 10) << QPointF(20, -15) << 25.0
        << Points{QPointF(-20, 15), QPointF(0, 25), QPointF(20, 25)};
    QTest::newRow("vertical chord on a circle: only the node moves")
        << ring << 1 << QPointF(0, 10) << QPointF(20, -15) << 25.0
        << Points{QPointF(-20, 15), QPointF(-20, 25), QPointF(20, 15)};
    QTest::newRow("reshaped circle") << ring << 2 << QPointF(30, -10) << QPointF(15, -5) << qSqrt(250.0)
                                     << Points{QPointF(-15, 5), QPointF(5, 15), QPointF(15, -5)};
    QTest::newRow("far-off nodes change nothing")
        << Points{QPointF(0, 0), QPointF(1, 1e12), QPointF(2, -1e12)} << -1 << QPointF() << QPointF(0, 0)
        << 0.0 << Points{QPointF(0, 0), QPointF(1, 1e12), QPointF(2, -1e12)};
}

void tst_circle::geometry()
{
    QFETCH(Points, created);
    QFETCH(int, index);
    QFETCH(QPointF, moveTo);
    QFETCH(QPointF, pos);
    QFETCH(double, radius);
    QFETCH(Points, nodes);

    OvGsCircle circle(nullptr, nullptr, QString(), true);
    for (int i = 0; i < created.size(); ++i)
        circle.setNode(i, created.at(i));
    if (index >= 0)
        circle.setNode(index, moveTo);

    QCOMPARE(circle.pos(), pos);
    QCOMPARE(circle.radius, radius);
    compareNodes(circle.nodes, nodes);
}

void tst_circle::labelAndTrashFollowTheCentre()
{
    OvGsCircle circle(nullptr, nullptr, QString(), true);
    circle.setNode(0, QPointF(0, 0));
    circle.setNode(1, QPointF(10, 0));
    circle.setLabelPos(QPointF(3, 4));
    circle.setNode(2, QPointF(10, 0));

    QCOMPARE(circle.pos(), QPointF(5, 0));
    // The label keeps its place on the picture while the origin moves.
    QCOMPARE(circle.getLabelPos(), QPointF(-2, 4));
    QCOMPARE(circle.getLabelAnchor(), QPointF(-5, 0));
    QCOMPARE(circle.getTrashPos(), QPointF(5, 10));
}

void tst_circle::outOfRangeIndexIgnored_data()
{
    QTest::addColumn<int>("existing");
    QTest::addColumn<int>("index");

    QTest::newRow("index 3 on a new circle") << 0 << 3;
    QTest::newRow("index -1 on a new circle") << 0 << -1;
    QTest::newRow("index 3 on a segment") << 2 << 3;
    QTest::newRow("index 3 on a finished circle") << 3 << 3;
}

void tst_circle::outOfRangeIndexIgnored()
{
    QFETCH(int, existing);
    QFETCH(int, index);

    const Points ring{QPointF(0, 0), QPointF(20, 10), QPointF(40, 0)};
    OvGsCircle circle(nullptr, nullptr, QString(), true);
    for (int i = 0; i < existing; ++i)
        circle.setNode(i, ring.at(i));
    const QPointF pos = circle.pos();
    const QVector<QPointF> nodes = circle.nodes;
    const double radius = circle.radius;

    circle.setNode(index, QPointF(77, 33));
    QCOMPARE(circle.pos(), pos);
    QCOMPARE(circle.nodes, nodes);
    QCOMPARE(circle.radius, radius);
}

void tst_circle::adjustScale_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("selSize");
    QTest::addColumn<double>("nodeSize");
    QTest::addColumn<double>("penScale");
    QTest::addColumn<QPointF>("trashOffset");

    const double sel = KxGsObject::kDefaultSelSize;
    QTest::newRow("zoom 1") << 1.0 << sel << 11.0 << 1.0 << QPointF(10, 10);
    QTest::newRow("zoom 2 halves") << 2.0 << sel / 2 << 5.5 << 0.5 << QPointF(5, 5);
    QTest::newRow("zoom 0.5 doubles") << 0.5 << sel * 2 << 22.0 << 2.0 << QPointF(20, 20);
    QTest::newRow("zero zoom is ignored") << 0.0 << sel << 11.0 << 1.0 << QPointF(10, 10);
    QTest::newRow("NaN zoom is ignored") << qQNaN() << sel << 11.0 << 1.0 << QPointF(10, 10);
}

void tst_circle::adjustScale()
{
    QFETCH(double, zoom);
    QFETCH(double, selSize);
    QFETCH(double, nodeSize);
    QFETCH(double, penScale);
    QFETCH(QPointF, trashOffset);

    OvGsCircle circle(nullptr, nullptr, QString(), true);
    makeCircle(circle);
    const QPointF trash = circle.getTrashPos();
    circle.adjustScale(zoom);
    QCOMPARE(circle.selSize, selSize);
    QCOMPARE(circle.nodeSize, nodeSize);
    QCOMPARE(circle.penScale, penScale);
    QCOMPARE(circle.trashOffset, trashOffset);
    // The trash button waits for the next geometry change.
    QCOMPARE(circle.getTrashPos(), trash);
    circle.setNode(0, circle.pos() + circle.nodes.at(0));
    QCOMPARE(circle.getTrashPos(), circle.nodes.at(0) + trashOffset);
}

void tst_circle::labelPrefix_data()
{
    QTest::addColumn<bool>("radiusMode");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("shown");

    QTest::newRow("radius") << true << QStringLiteral(" = 12.50 mm") << QStringLiteral("R = 12.50 mm");
    QTest::newRow("diameter") << false << QStringLiteral(" = 25.00 mm") << QStringLiteral("D = 25.00 mm");
    QTest::newRow("no value, no bare prefix") << true << QString() << QString();
}

void tst_circle::labelPrefix()
{
    QFETCH(bool, radiusMode);
    QFETCH(QString, value);
    QFETCH(QString, shown);

    OvGsCircle circle(nullptr, nullptr, QStringLiteral("Circle1"), radiusMode);
    circle.setDisplayValue(value);
    QCOMPARE(circle.getDisplayValue(), shown);
    QVERIFY(circle.getLabelText().endsWith(shown));
}

void tst_circle::pointOnNode_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("tolerance");
    QTest::addColumn<int>("index");

    // Nodes at (-20, 15), (0, 25), (20, 15), squares of side 11.
    QTest::newRow("on node 0") << QPointF(-20, 15) << 8 << 0;
    QTest::newRow("on node 2") << QPointF(20, 15) << 8 << 2;
    QTest::newRow("9 right of node 0, tolerance 8") << QPointF(-11, 15) << 8 << 0;
    QTest::newRow("10.5 right of node 0, tolerance 8") << QPointF(-9.5, 15) << 8 << -1;
    QTest::newRow("near node 1") << QPointF(3, 29) << 8 << 1;
    QTest::newRow("centre is no node") << QPointF(0, 0) << 8 << -1;
    QTest::newRow("zero tolerance never hits") << QPointF(-20, 15) << 0 << -1;
}

void tst_circle::pointOnNode()
{
    QFETCH(QPointF, point);
    QFETCH(int, tolerance);
    QFETCH(int, index);

    OvGsCircle circle(nullptr, nullptr, QString(), true);
    makeCircle(circle);
    int found = 42;
    QCOMPARE(circle.isPointOnNode(point, found, tolerance), index >= 0);
    QCOMPARE(found, index);
}

void tst_circle::pointOnObject_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("hit");

    QTest::newRow("centre") << QPointF(0, 0) << true;
    QTest::newRow("inside the disc") << QPointF(-10, 12) << true;
    QTest::newRow("3 outside the rim") << QPointF(28, 0) << true;
    QTest::newRow("5 outside the rim") << QPointF(30, 0) << false;
    QTest::newRow("far away") << QPointF(60, 60) << false;
    QTest::newRow("on a node") << QPointF(0, 25) << true;
}

void tst_circle::pointOnObject()
{
    QFETCH(QPointF, point);
    QFETCH(bool, hit);

    OvGsCircle circle(nullptr, nullptr, QString(), true);
    makeCircle(circle);
    int part = 99;
    QCOMPARE(circle.isPointOnObject(point, part, 8), hit);
    QCOMPARE(part, 0);
}

void tst_circle::boundingRect_data()
{
    QTest::addColumn<Points>("created");
    QTest::addColumn<QRectF>("expected");

    QTest::newRow("no node") << Points() << QRectF();
    QTest::newRow("one node") << Points{QPointF(50, 50)} << QRectF(-5.5, -5.5, 11, 11);
    QTest::newRow("segment") << Points{QPointF(50, 50), QPointF(60, 30)} << QRectF(-5.5, -25.5, 21, 31);
    QTest::newRow("circle") << Points{QPointF(0, 0), QPointF(20, 10), QPointF(40, 0)}
                            << QRectF(-25.5, -25, 51, 55.5);
}

void tst_circle::boundingRect()
{
    QFETCH(Points, created);
    QFETCH(QRectF, expected);

    OvGsCircle circle(nullptr, nullptr, QString(), true);
    for (int i = 0; i < created.size(); ++i)
        circle.setNode(i, created.at(i));
    QCOMPARE(circle.boundingRect(), expected);
}

void tst_circle::drag_data()
{
    QTest::addColumn<QPointF>("grip");
    QTest::addColumn<QPoint>("by");
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<double>("radius");
    QTest::addColumn<int>("reports");
    QTest::addColumn<int>("moveWrites");

    // The circle's centre is (200, 150), its nodes (-20, 15), (0, 25), (20, 15).
    // (Node 1 lies under the trash button of a current circle, so node 2 is
    // the one to drag.)
    QTest::newRow("node 2 up by 5") << QPointF(20, 15) << QPoint(0, -5) << QPointF(199, 152) << qSqrt(530.0) << 1
                                    << 0;
    QTest::newRow("node 2 sideways onto a vertical chord") << QPointF(20, 15) << QPoint(-20, 0) << QPointF(200, 150)
                                                           << 25.0 << 1 << 0;
    QTest::newRow("body by (10,-5)") << QPointF(5, 5) << QPoint(10, -5) << QPointF(210, 145) << 25.0 << 0 << 1;
    QTest::newRow("outside the circle") << QPointF(60, 0) << QPoint(10, 10) << QPointF(200, 150) << 25.0 << 0 << 0;
}

void tst_circle::drag()
{
    QFETCH(QPointF, grip);
    QFETCH(QPoint, by);
    QFETCH(QPointF, pos);
    QFETCH(double, radius);
    QFETCH(int, reports);
    QFETCH(int, moveWrites);

    ShapeScene env;
    auto* circle = new OvGsCircle(env.manipulator, env.editor, QString(), true);
    makeCircle(*circle);
    env.manipulator->store(1, circle);
    env.editor->setCurrentObject(circle, false);

    env.drag(env.toViewport(circle, grip), {by});
    QCOMPARE(circle->pos(), pos);
    QCOMPARE(circle->radius, radius);
    QCOMPARE(env.manipulator->changedShapes.size(), reports);
    if (reports > 0)
        QCOMPARE(env.manipulator->changedShapes.first(), static_cast<KxGsObject*>(circle));
    QCOMPARE(env.manipulator->paramWrites.size(), moveWrites);
    if (moveWrites > 0)
        QCOMPARE(env.manipulator->paramWrites.first().second.toPoint(), pos.toPoint());
    QVERIFY(!circle->isMoving());
    QVERIFY(!circle->isReshaping());
}

void tst_circle::dragNodeZeroKeepsLabelOffset()
{
    ShapeScene env;
    auto* circle = new OvGsCircle(env.manipulator, env.editor, QString(), true);
    makeCircle(*circle);
    circle->setLabelPos(circle->nodes.at(0) + QPointF(30, -40));
    env.manipulator->store(1, circle);
    env.editor->setCurrentObject(circle, false);

    env.drag(env.toViewport(circle, circle->nodes.at(0)), {QPoint(-4, 3), QPoint(-8, 6)});
    // Node 0 now at (172, 171) on the picture: a new centre, same label offset.
    QCOMPARE(circle->pos() + circle->nodes.at(0), QPointF(172, 171));
    QVERIFY(circle->pos() != QPointF(200, 150));
    QCOMPARE(circle->getLabelPos() - circle->nodes.at(0), QPointF(30, -40));
    QCOMPARE(env.manipulator->changedShapes.size(), 1);
}

void tst_circle::paint_data()
{
    QTest::addColumn<int>("nodeCount");
    QTest::addColumn<bool>("current");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("rim");
    QTest::addColumn<bool>("cross");
    QTest::addColumn<bool>("segment");
    QTest::addColumn<bool>("nodeSquares");

    QTest::newRow("finished and current") << 3 << true << false << true << true << false << true;
    QTest::newRow("finished, not current") << 3 << false << false << true << true << false << false;
    QTest::newRow("hidden") << 3 << true << true << false << false << false << false;
    QTest::newRow("segment while drawing") << 2 << true << false << false << false << true << true;
}

void tst_circle::paint()
{
    QFETCH(int, nodeCount);
    QFETCH(bool, current);
    QFETCH(bool, hidden);
    QFETCH(bool, rim);
    QFETCH(bool, cross);
    QFETCH(bool, segment);
    QFETCH(bool, nodeSquares);

    // Centre (20, -15) for three nodes; node 0 at the origin for two.
    const Points ring{QPointF(0, 0), QPointF(20, 10), QPointF(40, 0)};
    OvGsCircle circle(nullptr, nullptr, QString(), true);
    for (int i = 0; i < nodeCount; ++i)
        circle.setNode(i, ring.at(i));
    circle.setColor(QColor(255, 0, 0));
    circle.setPenStyle(Qt::SolidLine, 2);
    circle.setCurrent(current);
    circle.setAlwaysHidden(hidden);

    QImage image(120, 120, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.translate(60, 60);
        QStyleOptionGraphicsItem option;
        circle.paint(&painter, &option, nullptr);
    }
    auto paintedAt = [&image](const QPointF& aPoint) {
        return qAlpha(image.pixel(60 + qFloor(aPoint.x()), 60 + qFloor(aPoint.y()))) > 0;
    };

    QCOMPARE(paintedAt(QPointF(0, -25)), rim);
    QCOMPARE(paintedAt(QPointF(-25, 0)), rim);
    QCOMPARE(paintedAt(QPointF(8, 0)), cross);
    QCOMPARE(paintedAt(QPointF(0, -8)), cross);
    QCOMPARE(paintedAt(QPointF(10, 5)), segment);
    // Left edge of the square of the last node (node 2 or node 1).
    const QPointF node = circle.nodes.isEmpty() ? QPointF() : circle.nodes.last();
    const QRgb edge = image.pixel(60 + qFloor(node.x() - 5.5), 60 + qFloor(node.y() - 3));
    if (nodeSquares)
        QCOMPARE(QColor(edge), QColor(49, 49, 49));
    else
        QCOMPARE(qAlpha(edge), 0);
}

QTEST_MAIN(tst_circle)
#include "tst_circle.moc"
