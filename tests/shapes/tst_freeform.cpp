#include "OvGsFreeForm.h"
#include "ShapesTestHelper.h"

#include <QGraphicsPixmapItem>
#include <QtTest>

namespace {

// A U open at the top: (0, 0) down to (0, 100), across to (100, 100), up to (100, 0).
const QPolygonF kU(QVector<QPointF>{ QPointF(0, 0), QPointF(0, 100), QPointF(100, 100), QPointF(100, 0) });

} // namespace

// `point` (item coordinates) on the U, open or closed: whether it hits.
struct Hit { bool closed; QPointF point; bool onObject; };
Q_DECLARE_METATYPE(Hit)

// A press at `grip` (item coordinates) and a drag by `path` (viewport pixels) on a
// stored free form at (100, 80) in `state` "locked", "hidden", "invisible" or "";
// whether the editor made it current. The shape never moves and reports nothing.
struct Press { QString state; QPointF grip; QList<QPoint> path; bool selected; };
Q_DECLARE_METATYPE(Press)

class tst_freeform : public QObject
{
    Q_OBJECT

private slots:
    void addNode()
    {
        OvGsFreeForm item(nullptr, nullptr, QString());
        // A free form being drawn is open: of the free-line type until closed.
        QCOMPARE(item.type(), 66755);
        QCOMPARE(item.boundingRect(), QRectF());
        QVERIFY(item.boundingRect().isNull());
        item.addNode(QPointF(40, 30));
        QCOMPARE(item.pos(), QPointF(40, 30));
        item.addNode(QPointF(50, 10));
        item.addNode(QPointF(35, 45));
        QCOMPARE(item.nodes, QPolygonF(QVector<QPointF>{ QPointF(0, 0), QPointF(10, -20), QPointF(-5, 15) }));
        QCOMPARE(item.pos(), QPointF(40, 30));
        // The nodes only: no room for pen, label or buttons.
        QCOMPARE(item.boundingRect(), QRectF(-5, -20, 15, 35));
        QVERIFY(item.isRectContainsObject(QRectF(-5, -20, 15, 35)));
        QVERIFY(!item.isRectContainsObject(QRectF(-5, -20, 14, 35)));

        // setNodes replaces them in item coordinates and leaves the position.
        item.setNodes(kU);
        QCOMPARE(item.pos(), QPointF(40, 30));
        QCOMPARE(item.boundingRect(), QRectF(0, 0, 100, 100));
        // Not moved through the editor.
        item.moveObjectBy(QPointF(7, 7));
        QCOMPARE(item.pos(), QPointF(40, 30));
        item.setClosed(true);
        QCOMPARE(item.type(), 66655);
        item.setClosed(false);
        QCOMPARE(item.type(), 66755);
    }

    void hitTest_data()
    {
        QTest::addColumn<Hit>("hit");
        QTest::newRow("open U: inside the implied closing side") << Hit{false, {50, 2}, true};
        QTest::newRow("open U: in the middle") << Hit{false, {50, 50}, true};
        QTest::newRow("open U: on the drawn line, outside") << Hit{false, {-2, 50}, false};
        QTest::newRow("open U: just above the open side") << Hit{false, {50, -2}, false};
        QTest::newRow("closed: in the middle") << Hit{true, {50, 50}, true};
        QTest::newRow("closed: below the bottom") << Hit{true, {50, 103}, false};
    }

    void hitTest()
    {
        QFETCH(Hit, hit);
        OvGsFreeForm item(nullptr, nullptr, QString());
        item.setNodes(kU);
        item.setClosed(hit.closed);
        int part = 99;
        // The tolerance does not widen the shape.
        QCOMPARE(item.isPointOnObject(hit.point, part, 20), hit.onObject);
        QCOMPARE(part, 0);
    }

    void hitTestLabelFirst()
    {
        OvGsFreeForm item(nullptr, nullptr, QStringLiteral("Free form"));
        item.setNodes(kU);
        item.setLabelVisible(true);
        item.setLabelPos(QPointF(200, 200));
        int part = 0;
        QVERIFY(item.isPointOnObject(item.getLabelRect().center(), part, 1));
        QCOMPARE(part, int(OvGsObject::PartLabel));
    }

    void adjustScale_data() { addZoomRows(); }
    void adjustScale()
    {
        QFETCH(double, zoom);
        QFETCH(double, used);
        OvGsFreeForm item(nullptr, nullptr, QString());
        item.setNodes(kU);
        item.adjustScale(zoom);
        QCOMPARE(item.selSize, 8 / used);
        QCOMPARE(item.trashPos, QPointF(10, 10) / used);
        if (used == zoom)
            QCOMPARE(item.getTrashPos(), QPointF(10, 10) / used);
    }

    void trashNeedsThreeNodes()
    {
        OvGsFreeForm item(nullptr, nullptr, QString());
        item.setTrashPos(QPointF(-1, -1));
        item.setNodes(QPolygonF(QVector<QPointF>{ QPointF(0, 0), QPointF(30, 0) }));
        item.adjustScale(2.0);
        QCOMPARE(item.getTrashPos(), QPointF(-1, -1));
        item.setNodes(kU);
        item.updateTrashPos();
        QCOMPARE(item.getTrashPos(), QPointF(5, 5));
    }

    void press_data()
    {
        QTest::addColumn<Press>("press");
        QTest::newRow("inside: selected, not moved") << Press{"", {50, 50}, {{20, 15}}, true};
        QTest::newRow("inside, no drag") << Press{"", {30, 70}, {}, true};
        QTest::newRow("beside the outline") << Press{"", {-6, 50}, {{5, 5}}, false};
        QTest::newRow("locked") << Press{"locked", {50, 50}, {{5, 5}}, false};
        QTest::newRow("always hidden") << Press{"hidden", {50, 50}, {{5, 5}}, false};
        QTest::newRow("invisible") << Press{"invisible", {50, 50}, {{5, 5}}, false};
    }

    void press()
    {
        QFETCH(Press, press);
        ShapeScene env;
        auto* item = new OvGsFreeForm(env.manipulator, env.editor, QString());
        item->setPos(100, 80);
        item->setNodes(kU);
        item->setClosed(true);
        item->setLocked(press.state == QLatin1String("locked"));
        item->setAlwaysHidden(press.state == QLatin1String("hidden"));
        item->setVisible(press.state != QLatin1String("invisible"));
        env.manipulator->store(item);

        const QPoint from = env.toViewport(item, press.grip);
        env.press(from);
        QVERIFY(!item->isMoving() && !item->isReshaping());
        env.finishDrag(from, press.path);
        QCOMPARE(env.editor->getCurrentObject() == item, press.selected);
        QCOMPARE(item->pos(), QPointF(100, 80));
        QCOMPARE(item->nodes, kU);
        env.compareReports(item, QString());
    }

    void labelDrag()
    {
        ShapeScene env;
        auto* item = new OvGsFreeForm(env.manipulator, env.editor, QStringLiteral("Free form"));
        item->setPos(100, 80);
        item->setNodes(kU);
        item->setLabelVisible(true);
        item->setLabelPos(QPointF(30, 40));
        env.manipulator->store(item);
        const QPoint from = env.toViewport(item, item->getLabelRect().center());
        env.press(from);
        QVERIFY(item->isReshaping());
        env.finishDrag(from, { QPoint(15, 10) });
        QVERIFY(!item->isReshaping());
        QCOMPARE(item->getLabelPos(), QPointF(45, 50));
        QCOMPARE(item->nodes, kU);
        env.compareReports(item, QString());
    }

    void paint_data()
    {
        QTest::addColumn<bool>("closed");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("closed: the top side is drawn") << true << false;
        QTest::newRow("open: no top side") << false << false;
        QTest::newRow("hidden: nothing") << true << true;
    }

    void paint()
    {
        QFETCH(bool, closed);
        QFETCH(bool, hidden);
        OvGsFreeForm item(nullptr, nullptr, QString());
        item.setColor(QColor(255, 0, 0));
        item.setPenStyle(Qt::SolidLine, 2);
        item.setNodes(kU);
        item.setClosed(closed);
        item.setAlwaysHidden(hidden);
        const QImage image = paintedImage(item, QSize(200, 200), QPoint(50, 50));
        const auto painted = [&](int x, int y) { return qAlpha(image.pixel(50 + x, 50 + y)) > 0; };
        QCOMPARE(painted(0, 50), !hidden);
        QCOMPARE(painted(50, 100), !hidden);
        QCOMPARE(painted(50, 0), closed && !hidden);
        // Never filled, no node squares.
        QVERIFY(!painted(50, 50));
        QVERIFY(!painted(-5, 100));
    }
};

QTEST_MAIN(tst_freeform)
#include "tst_freeform.moc"
