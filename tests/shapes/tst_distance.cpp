#include "KxGsEditor.h"
#include "OvGsDistance.h"
#include "ShapesTestHelper.h"

#include <QGraphicsPixmapItem>
#include <QImage>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QTest>

#include <memory>

class tst_distance : public QObject
{
    Q_OBJECT

private slots:
    void boundingRect_data();
    void boundingRect();
    void adjustScale_data();
    void adjustScale();
    void hitTest_data();
    void hitTest();
    void ends_data();
    void ends();
    void pressNearLine_data();
    void pressNearLine();
    void drag_data();
    void drag();
    void labelDragIsNotReported();
    void trashPlacement_data();
    void trashPlacement();
    void paint_data();
    void paint();
    void handlesKeepScreenSizeWhenZoomed();
};

namespace {

QSizeF trashSize(const OvGsDistance& anItem)
{
    return anItem.getTrashButton()->boundingRect().size() * anItem.unitsPerPixel();
}

} // namespace

void tst_distance::boundingRect_data()
{
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QRectF>("expected");

    QTest::newRow("zero vector is one handle square") << QPointF(0, 0) << 1.0 << QRectF(-5.5, -5.5, 11, 11);
    QTest::newRow("zero vector at zoom 2") << QPointF(0, 0) << 2.0 << QRectF(-2.75, -2.75, 5.5, 5.5);
    QTest::newRow("horizontal line") << QPointF(60, 0) << 1.0 << QRectF(-5.5, -5.5, 71, 11);
    QTest::newRow("vector to the lower left") << QPointF(-20, 30) << 1.0 << QRectF(-25.5, -5.5, 31, 41);
    QTest::newRow("vector to the upper right at zoom 0.5") << QPointF(40, -40) << 0.5
                                                           << QRectF(-11, -51, 62, 62);
}

void tst_distance::boundingRect()
{
    QFETCH(QPointF, vector);
    QFETCH(double, zoom);
    QFETCH(QRectF, expected);

    OvGsDistance item(nullptr, nullptr, QString(), QStringLiteral("Distance_Line_0"));
    item.adjustScale(zoom);
    item.setVector(vector);
    const QRectF rect = item.boundingRect();
    QVERIFY2(qFuzzyCompare(rect.left() + 1000, expected.left() + 1000)
                 && qFuzzyCompare(rect.top() + 1000, expected.top() + 1000)
                 && qFuzzyCompare(rect.width(), expected.width())
                 && qFuzzyCompare(rect.height(), expected.height()),
             qPrintable(QStringLiteral("got %1,%2 %3x%4")
                            .arg(rect.left()).arg(rect.top()).arg(rect.width()).arg(rect.height())));
}

void tst_distance::adjustScale_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("selSize");
    QTest::addColumn<double>("nodeSize");
    QTest::addColumn<double>("penScale");
    QTest::addColumn<QPointF>("trashOffset");

    const double sel = KxGsObject::kDefaultSelSize;
    QTest::newRow("zoom 1") << 1.0 << sel << 11.0 << 1.0 << QPointF(10, 10);
    QTest::newRow("zoom 2 halves") << 2.0 << sel / 2 << 5.5 << 0.5 << QPointF(5, 5);
    QTest::newRow("zoom 0.25 quadruples") << 0.25 << sel * 4 << 44.0 << 4.0 << QPointF(40, 40);
    QTest::newRow("zero zoom is ignored") << 0.0 << sel << 11.0 << 1.0 << QPointF(10, 10);
    QTest::newRow("negative zoom is ignored") << -2.0 << sel << 11.0 << 1.0 << QPointF(10, 10);
    QTest::newRow("infinite zoom is ignored") << qInf() << sel << 11.0 << 1.0 << QPointF(10, 10);
    QTest::newRow("NaN zoom is ignored") << qQNaN() << sel << 11.0 << 1.0 << QPointF(10, 10);
}

void tst_distance::adjustScale()
{
    QFETCH(double, zoom);
    QFETCH(double, selSize);
    QFETCH(double, nodeSize);
    QFETCH(double, penScale);
    QFETCH(QPointF, trashOffset);

    OvGsDistance item(nullptr, nullptr, QString(), QString());
    item.setVector(QPointF(30, 40));
    item.adjustScale(zoom);
    QCOMPARE(item.selSize, selSize);
    QCOMPARE(item.nodeSize, nodeSize);
    QCOMPARE(item.penScale, penScale);
    QCOMPARE(item.trashOffset, trashOffset);
    // The trash follows the new offset at once.
    QCOMPARE(item.getTrashPos(), QPointF(30, 40) + trashOffset);
}

void tst_distance::hitTest_data()
{
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("tolerance");
    QTest::addColumn<bool>("hit");

    const QPointF line(100, 0);
    QTest::newRow("1 below the line, tolerance 5") << line << QPointF(50, 1) << 5 << true;
    QTest::newRow("1 above the line, tolerance 5") << line << QPointF(50, -1) << 5 << true;
    QTest::newRow("5 below the line, tolerance 5") << line << QPointF(50, 5) << 5 << false;
    QTest::newRow("5 above the line, tolerance 5") << line << QPointF(50, -5) << 5 << false;
    QTest::newRow("5 below the line, tolerance 12") << line << QPointF(50, 5) << 12 << true;
    QTest::newRow("beyond the end, on its handle") << line << QPointF(104, 3) << 1 << true;
    QTest::newRow("beyond the end handle") << line << QPointF(112, 0) << 5 << false;
    QTest::newRow("on a diagonal line") << QPointF(80, 60) << QPointF(40, 31) << 5 << true;
    QTest::newRow("beside a diagonal line") << QPointF(80, 60) << QPointF(40, 36) << 5 << false;
    QTest::newRow("zero vector, on the handle") << QPointF(0, 0) << QPointF(2, -2) << 5 << true;
}

void tst_distance::hitTest()
{
    QFETCH(QPointF, vector);
    QFETCH(QPointF, point);
    QFETCH(int, tolerance);
    QFETCH(bool, hit);

    OvGsDistance item(nullptr, nullptr, QString(), QString());
    item.setVector(vector);
    int part = 99;
    QCOMPARE(item.isPointOnObject(point, part, tolerance), hit);
    QCOMPARE(part, 0);
}

void tst_distance::ends_data()
{
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("end");

    QTest::newRow("on the start") << QPointF(50, 50) << QPointF(0, 0) << 0;
    QTest::newRow("on the end") << QPointF(50, 50) << QPointF(50, 50) << 1;
    QTest::newRow("edge of the end handle") << QPointF(50, 50) << QPointF(57, 50) << 1;
    QTest::newRow("mid line is no end") << QPointF(50, 50) << QPointF(25, 25) << -1;
    QTest::newRow("overlapping handles: the start wins") << QPointF(3, 0) << QPointF(3, 0) << 0;
}

void tst_distance::ends()
{
    QFETCH(QPointF, vector);
    QFETCH(QPointF, point);
    QFETCH(int, end);

    OvGsDistance item(nullptr, nullptr, QString(), QString());
    item.setVector(vector);
    int found = 42;
    QCOMPARE(item.isPointOnEnds(point, found, 5), end >= 0);
    QCOMPARE(found, end);
}

void tst_distance::pressNearLine_data()
{
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("grabbed");

    QTest::newRow("1 unit below") << QPointF(0, 1) << false << false << true;
    QTest::newRow("1 unit above") << QPointF(0, -1) << false << false << true;
    QTest::newRow("5 units below") << QPointF(0, 5) << false << false << false;
    QTest::newRow("5 units above") << QPointF(0, -5) << false << false << false;
    QTest::newRow("on a locked line") << QPointF(0, 0) << true << false << false;
    QTest::newRow("on an always hidden line") << QPointF(0, 0) << false << true << false;
}

void tst_distance::pressNearLine()
{
    QFETCH(QPointF, offset);
    QFETCH(bool, locked);
    QFETCH(bool, hidden);
    QFETCH(bool, grabbed);

    ShapeScene env;
    auto* item = new OvGsDistance(env.manipulator, env.editor, QString(), QStringLiteral("line"));
    item->setPos(100, 100);
    item->setVector(QPointF(100, 0));
    item->selSize = 5.0;
    item->setLocked(locked);
    item->setAlwaysHidden(hidden);
    env.manipulator->store(1, item);

    const QPoint at = env.toViewport(item, QPointF(50, 0) + offset);
    env.press(at);
    QCOMPARE(env.editor->getMouseGrabberObject() == item, grabbed);
    QCOMPARE(item->isMoving(), grabbed);
    QVERIFY(!item->isReshaping());
    env.move(at + QPoint(10, 10));
    env.release(at + QPoint(10, 10));
    QCOMPARE(item->pos(), grabbed ? QPointF(110, 110) : QPointF(100, 100));
    QCOMPARE(item->vector, QPointF(100, 0));
    QVERIFY(env.manipulator->changedShapes.isEmpty());
}

void tst_distance::drag_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPointF>("grip");
    QTest::addColumn<QList<QPoint>>("path");
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<int>("reports");
    QTest::addColumn<int>("moveWrites");

    // The line runs from (100, 120) to (160, 80).
    QTest::newRow("start handle by (3,-2)") << 1.0 << QPointF(0, 0) << QList<QPoint>{QPoint(3, -2)}
                                            << QPointF(103, 118) << QPointF(57, -38) << 1 << 0;
    QTest::newRow("start handle in steps") << 1.0 << QPointF(0, 0)
                                           << QList<QPoint>{QPoint(1, 0), QPoint(10, 10), QPoint(3, -2)}
                                           << QPointF(103, 118) << QPointF(57, -38) << 1 << 0;
    QTest::newRow("end handle by (7,4)") << 1.0 << QPointF(60, -40) << QList<QPoint>{QPoint(7, 4)}
                                         << QPointF(100, 120) << QPointF(67, -36) << 1 << 0;
    QTest::newRow("line body by (5,5) moves, unreported") << 1.0 << QPointF(30, -20)
                                                          << QList<QPoint>{QPoint(5, 5)} << QPointF(105, 125)
                                                          << QPointF(60, -40) << 0 << 1;
    QTest::newRow("start handle at zoom 2 follows the mouse") << 2.0 << QPointF(0, 0)
                                                              << QList<QPoint>{QPoint(6, -4)} << QPointF(103, 118)
                                                              << QPointF(57, -38) << 1 << 0;
    QTest::newRow("body at zoom 2 follows the mouse") << 2.0 << QPointF(30, -20) << QList<QPoint>{QPoint(10, 10)}
                                                      << QPointF(105, 125) << QPointF(60, -40) << 0 << 1;
    QTest::newRow("press without moving on an end") << 1.0 << QPointF(60, -40) << QList<QPoint>{}
                                                    << QPointF(100, 120) << QPointF(60, -40) << 1 << 0;
}

void tst_distance::drag()
{
    QFETCH(double, zoom);
    QFETCH(QPointF, grip);
    QFETCH(QList<QPoint>, path);
    QFETCH(QPointF, pos);
    QFETCH(QPointF, vector);
    QFETCH(int, reports);
    QFETCH(int, moveWrites);

    ShapeScene env;
    auto* item = new OvGsDistance(env.manipulator, env.editor, QString(), QStringLiteral("line"));
    item->manipulator = env.manipulator;
    item->setPos(100, 120);
    item->setVector(QPointF(60, -40));
    env.manipulator->store(1, item);
    env.setZoom(zoom);
    env.editor->setCurrentObject(item, false);

    env.drag(env.toViewport(item, grip), path);
    QCOMPARE(item->pos(), pos);
    QCOMPARE(item->vector, vector);
    QCOMPARE(env.manipulator->changedShapes.size(), reports);
    if (reports > 0)
        QCOMPARE(env.manipulator->changedShapes.first(), static_cast<KxGsObject*>(item));
    QCOMPARE(env.manipulator->paramWrites.size(), moveWrites);
    if (moveWrites > 0) {
        QCOMPARE(env.manipulator->paramWrites.first().first, 3u);
        QCOMPARE(env.manipulator->paramWrites.first().second.toPoint(), pos.toPoint());
    }
    QVERIFY(!item->isMoving());
    QVERIFY(!item->isReshaping());
    QCOMPARE(env.editor->getCurrentObject(), static_cast<KxGsObject*>(item));
}

void tst_distance::labelDragIsNotReported()
{
    ShapeScene env;
    auto* item = new OvGsDistance(env.manipulator, env.editor, QStringLiteral("Distance"), QStringLiteral("line"));
    item->manipulator = env.manipulator;
    item->setPos(100, 100);
    item->setVector(QPointF(120, 0));
    item->setLabelVisible(true);
    item->setLabelPos(QPointF(30, 40));
    env.manipulator->store(1, item);
    env.editor->setCurrentObject(item, false);

    const QRectF label = item->getLabelRect();
    QVERIFY(!label.isEmpty());
    const QPoint grip = env.toViewport(item, label.center());
    env.press(grip);
    QVERIFY(item->isReshaping());
    env.move(grip + QPoint(15, 10));
    env.release(grip + QPoint(15, 10));
    QCOMPARE(item->getLabelPos(), QPointF(45, 50));
    QCOMPARE(item->pos(), QPointF(100, 100));
    QCOMPARE(item->vector, QPointF(120, 0));
    QVERIFY(env.manipulator->changedShapes.isEmpty());
    QVERIFY(!item->isReshaping());
}

void tst_distance::trashPlacement_data()
{
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<QPointF>("vector");
    QTest::addColumn<double>("zoom");
    // Trash position, with the button's size in item units as w and h.
    QTest::addColumn<QPointF>("fixed");
    QTest::addColumn<QPointF>("perW");
    QTest::addColumn<QPointF>("perH");

    QTest::newRow("beside the end") << QPointF(100, 100) << QPointF(50, 40) << 1.0 << QPointF(60, 50)
                                    << QPointF() << QPointF();
    QTest::newRow("beside the end at zoom 2") << QPointF(100, 100) << QPointF(50, 40) << 2.0 << QPointF(55, 45)
                                              << QPointF() << QPointF();
    // Right edge of the 400-wide picture: x = 400 - w - 300.
    QTest::newRow("pushed left inside the right edge") << QPointF(300, 100) << QPointF(95, 0) << 1.0
                                                       << QPointF(100, 10) << QPointF(-1, 0) << QPointF();
    // Bottom edge of the 300-high picture: y = 300 - h - 250.
    QTest::newRow("pushed up inside the bottom edge") << QPointF(100, 250) << QPointF(50, 40) << 1.0
                                                      << QPointF(60, 50) << QPointF() << QPointF(0, -1);
    QTest::newRow("pushed into the corner") << QPointF(300, 250) << QPointF(95, 45) << 1.0 << QPointF(100, 50)
                                            << QPointF(-1, 0) << QPointF(0, -1);
    // The line crosses its own button: the button jumps above it, by its
    // height and twice the offset.
    QTest::newRow("moved off the line") << QPointF(300, 250) << QPointF(-100, -150) << 1.0 << QPointF(-90, -160)
                                        << QPointF() << QPointF(0, -1);
}

void tst_distance::trashPlacement()
{
    QFETCH(QPointF, pos);
    QFETCH(QPointF, vector);
    QFETCH(double, zoom);
    QFETCH(QPointF, fixed);
    QFETCH(QPointF, perW);
    QFETCH(QPointF, perH);

    ShapeScene env;
    env.setZoom(zoom);
    auto* item = new OvGsDistance(env.manipulator, env.editor, QString(), QString());
    item->adjustScale(zoom);
    item->setPos(pos);
    item->setVector(vector);
    const QSizeF size = trashSize(*item);
    QVERIFY(size.width() > 0.0);
    const QPointF expected = fixed + perW * size.width() + perH * size.height();
    QCOMPARE(item->getTrashPos(), expected);

    const QRectF button(item->pos() + item->getTrashPos(), size);
    QVERIFY(env.editor->getEditorArea().contains(button));
}

void tst_distance::paint_data()
{
    QTest::addColumn<bool>("current");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("moving");
    QTest::addColumn<bool>("reshaping");
    QTest::addColumn<bool>("solidEdit");
    QTest::addColumn<bool>("line");
    QTest::addColumn<bool>("dashed");
    QTest::addColumn<bool>("handles");

    QTest::newRow("current: solid line and handles") << true << false << false << false << false << true << false
                                                     << true;
    QTest::newRow("not current: line only") << false << false << false << false << false << true << false << false;
    QTest::newRow("hidden: nothing") << true << true << false << false << false << false << false << false;
    QTest::newRow("moving: no handles") << true << false << true << false << false << true << false << false;
    QTest::newRow("reshaping: dashed") << true << false << false << true << false << true << true << true;
    QTest::newRow("reshaping with solid edit: solid") << true << false << false << true << true << true << false
                                                      << true;
}

void tst_distance::paint()
{
    QFETCH(bool, current);
    QFETCH(bool, hidden);
    QFETCH(bool, moving);
    QFETCH(bool, reshaping);
    QFETCH(bool, solidEdit);
    QFETCH(bool, line);
    QFETCH(bool, dashed);
    QFETCH(bool, handles);

    OvGsDistance item(nullptr, nullptr, QString(), QString());
    item.setColor(QColor(255, 0, 0));
    item.setPenStyle(Qt::SolidLine, 2);
    item.setVector(QPointF(100, 0));
    item.setCurrent(current);
    item.setAlwaysHidden(hidden);
    item.moving = moving;
    item.reshaping = reshaping;
    item.solidEdit = solidEdit;

    QImage image(200, 100, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.translate(50, 50);
        QStyleOptionGraphicsItem option;
        item.paint(&painter, &option, nullptr);
    }

    int painted = 0;
    for (int x = 60; x < 140; ++x) {
        if (qAlpha(image.pixel(x, 50)) > 0)
            ++painted;
    }
    if (!line)
        QCOMPARE(painted, 0);
    else if (dashed)
        QVERIFY2(painted > 20 && painted < 75, qPrintable(QString::number(painted)));
    else
        QCOMPARE(painted, 80);

    // Left edge of the start handle, away from the line.
    const QRgb edge = image.pixel(50 - 6, 50 - 3);
    if (handles)
        QCOMPARE(QColor(edge), QColor(49, 49, 49));
    else
        QCOMPARE(qAlpha(edge), 0);
    // The handles are outlines only.
    QCOMPARE(qAlpha(image.pixel(50 + 100 + 3, 50 - 3)), 0);
}

void tst_distance::handlesKeepScreenSizeWhenZoomed()
{
    ShapeScene env;
    auto* item = new OvGsDistance(env.manipulator, env.editor, QString(), QString());
    item->setPos(50, 50);
    item->setVector(QPointF(40, 0));
    env.manipulator->store(1, item);
    env.setZoom(2.0);
    QCOMPARE(item->nodeSize, 5.5);
    QCOMPARE(item->penScale, 0.5);
    // The handle square covers 11 screen pixels at zoom 2.
    const QRectF onScreen = env.view.viewportTransform().mapRect(item->sceneTransform().mapRect(item->boundingRect()));
    QCOMPARE(onScreen.height(), 11.0);

    // The reach of the start handle on screen: 5.5 pixels of handle plus half
    // the 8-pixel tolerance, whatever the zoom.
    const QPoint start = env.toViewport(item, QPointF(0, 0));
    env.press(start + QPoint(-14, 0));
    QVERIFY(env.editor->getMouseGrabberObject() == nullptr);
    env.release(start + QPoint(-14, 0));

    env.press(start + QPoint(-8, 0));
    QVERIFY(item->isReshaping());
    QCOMPARE(item->activeNode, 0);
    env.release(start + QPoint(-8, 0));
    QCOMPARE(env.manipulator->changedShapes.size(), 1);
}

QTEST_MAIN(tst_distance)
#include "tst_distance.moc"
