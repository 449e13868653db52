#include "OvGsDistance.h"
#include "ShapesTestHelper.h"

#include <QGraphicsPixmapItem>
#include <QtTest>

// At `zoom`, a press at `grip` (item coordinates), moves along `path` (viewport pixels) and a
// release on a line in `state` "locked", "hidden" or "label" (its label shown at (30, 40), the
// grip taken from its centre); the line expected after, "reshaped" reported or "moved" written back.
struct LineDrag { double zoom; QString state; QPointF grip; QList<QPoint> path; QPointF pos, vector; QString outcome; };
Q_DECLARE_METATYPE(LineDrag)

// `point` on a line from the origin to `vector`: on the object, and on which end.
struct Hit { QPointF vector, point; int tolerance; bool onObject; int end; };
Q_DECLARE_METATYPE(Hit)

// A line at `pos` with `vector`: its trash button expected at fixed + w * perW +
// h * perH, with the button's size w x h in item units.
struct Trash { QPointF pos, vector, fixed, perW, perH; };
Q_DECLARE_METATYPE(Trash)

class tst_distance : public QObject
{
    Q_OBJECT

private slots:
    void boundingRect_data()
    {
        QTest::addColumn<QPointF>("vector");
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("zero vector is one handle square") << QPointF(0, 0) << 1.0 << QRectF(-5.5, -5.5, 11, 11);
        QTest::newRow("vector to the lower left") << QPointF(-20, 30) << 1.0 << QRectF(-25.5, -5.5, 31, 41);
        QTest::newRow("to the upper right at zoom 0.5") << QPointF(40, -40) << 0.5 << QRectF(-11, -51, 62, 62);
    }

    void boundingRect()
    {
        QFETCH(QPointF, vector);
        QFETCH(double, zoom);
        QFETCH(QRectF, expected);
        OvGsDistance item(nullptr, nullptr, QString(), QStringLiteral("Distance_Line_0"));
        item.adjustScale(zoom);
        item.setVector(vector);
        QCOMPARE(item.boundingRect(), expected);
    }

    void adjustScale_data() { addZoomRows(); }
    void adjustScale()
    {
        QFETCH(double, zoom);
        QFETCH(double, used);
        OvGsDistance item(nullptr, nullptr, QString(), QString());
        item.setVector(QPointF(30, 40));
        item.adjustScale(zoom);
        QCOMPARE((QVector<double>{item.selSize, item.nodeSize, item.penScale, item.trashOffset.x()}),
                 (QVector<double>{8 / used, 11 / used, 1 / used, 10 / used}));
        // The trash follows the new offset at once.
        QCOMPARE(item.getTrashPos(), QPointF(30, 40) + QPointF(10, 10) / used);
    }

    void hitTest_data()
    {
        QTest::addColumn<Hit>("hit");
        const QPointF line(100, 0);
        QTest::newRow("1 below the line, tolerance 5") << Hit{line, {50, 1}, 5, true, -1};
        QTest::newRow("5 above the line, tolerance 5") << Hit{line, {50, -5}, 5, false, -1};
        QTest::newRow("5 below the line, tolerance 12") << Hit{line, {50, 5}, 12, true, -1};
        QTest::newRow("beyond the end, on its handle") << Hit{line, {104, 3}, 1, true, 1};
        QTest::newRow("beyond the end handle") << Hit{line, {112, 0}, 5, false, -1};
        QTest::newRow("on a diagonal line") << Hit{{80, 60}, {40, 31}, 5, true, -1};
        QTest::newRow("beside a diagonal line") << Hit{{80, 60}, {40, 36}, 5, false, -1};
        QTest::newRow("zero vector, on the handle") << Hit{{0, 0}, {2, -2}, 5, true, 0};
        QTest::newRow("overlapping handles: the start wins") << Hit{{3, 0}, {3, 0}, 5, true, 0};
    }

    void hitTest()
    {
        QFETCH(Hit, hit);
        OvGsDistance item(nullptr, nullptr, QString(), QString());
        item.setVector(hit.vector);
        int part = 99;
        QCOMPARE(item.isPointOnObject(hit.point, part, hit.tolerance), hit.onObject);
        QCOMPARE(part, 0);
        int found = 42;
        QCOMPARE(item.isPointOnEnds(hit.point, found, hit.tolerance), hit.end >= 0);
        QCOMPARE(found, hit.end);
    }

    void drag_data()
    {
        QTest::addColumn<LineDrag>("drag");

        // The line runs from (100, 120) to (160, 80).
        const QPointF pos(100, 120);
        const QPointF vec(60, -40);
        QTest::newRow("start handle in steps")
            << LineDrag{1, "", {0, 0}, {{1, 0}, {10, 10}, {3, -2}}, {103, 118}, {57, -38}, "reshaped"};
        QTest::newRow("end handle by (7,4)") << LineDrag{1, "", {60, -40}, {{7, 4}}, pos, {67, -36}, "reshaped"};
        QTest::newRow("press without moving on an end") << LineDrag{1, "", {60, -40}, {}, pos, vec, "reshaped"};
        QTest::newRow("1 unit below the line") << LineDrag{1, "", {30, -19}, {{5, 5}}, {105, 125}, vec, "moved"};
        QTest::newRow("8 units below the line") << LineDrag{1, "", {30, -12}, {{5, 5}}, pos, vec, ""};
        QTest::newRow("locked line") << LineDrag{1, "locked", {30, -20}, {{5, 5}}, pos, vec, ""};
        QTest::newRow("always hidden line") << LineDrag{1, "hidden", {30, -20}, {{5, 5}}, pos, vec, ""};
        QTest::newRow("label drag is not reported") << LineDrag{1, "label", {0, 0}, {{15, 10}}, pos, vec, ""};
        QTest::newRow("body at zoom 2 follows the mouse")
            << LineDrag{2, "", {30, -20}, {{10, 10}}, {105, 125}, vec, "moved"};
        // A handle reaches 5.5 screen pixels of handle plus half the 8-pixel
        // tolerance, whatever the zoom.
        QTest::newRow("8 px left of the start at zoom 2")
            << LineDrag{2, "", {-4, 0}, {{6, -4}}, {103, 118}, {57, -38}, "reshaped"};
        QTest::newRow("14 px left of the start at zoom 2") << LineDrag{2, "", {-7, 0}, {{6, -4}}, pos, vec, ""};
    }

    void drag()
    {
        QFETCH(LineDrag, drag);
        ShapeScene env;
        auto* item = new OvGsDistance(env.manipulator, env.editor, QStringLiteral("Distance"), QStringLiteral("line"));
        item->setPos(100, 120);
        item->setVector(QPointF(60, -40));
        item->setLocked(drag.state == QLatin1String("locked"));
        item->setAlwaysHidden(drag.state == QLatin1String("hidden"));
        const bool label = drag.state == QLatin1String("label");
        item->setLabelVisible(label);
        item->setLabelPos(QPointF(30, 40));
        env.manipulator->store(item);
        env.editor->setZoom(drag.zoom);
        env.editor->setCurrentObject(item, false);

        const QPoint from = env.toViewport(item, drag.grip + (label ? item->getLabelRect().center() : QPointF()));
        env.press(from);
        // A press the label takes counts as reshaping.
        QCOMPARE(item->isReshaping(), label || drag.outcome == QLatin1String("reshaped"));
        QCOMPARE(item->isMoving(), drag.outcome == QLatin1String("moved"));
        env.finishDrag(from, drag.path);
        QCOMPARE(item->pos(), drag.pos);
        QCOMPARE(item->vector, drag.vector);
        QCOMPARE(item->getLabelPos(), label ? QPointF(45, 50) : QPointF(30, 40));
        if (label || !drag.outcome.isEmpty())
            QCOMPARE(env.editor->getCurrentObject(), static_cast<KxGsObject*>(item));
        env.compareReports(item, drag.outcome);
    }

    void trashPlacement_data()
    {
        QTest::addColumn<Trash>("trash");
        QTest::newRow("beside the end") << Trash{{100, 100}, {50, 40}, {60, 50}, {}, {}};
        // Inside the right edge of the 400-wide picture: x = 400 - w - 300.
        QTest::newRow("pushed left") << Trash{{300, 100}, {95, 0}, {100, 10}, {-1, 0}, {}};
        // Inside the bottom edge of the 300-high picture: y = 300 - h - 250.
        QTest::newRow("pushed up") << Trash{{100, 250}, {50, 40}, {60, 50}, {}, {0, -1}};
        QTest::newRow("pushed into the corner") << Trash{{300, 250}, {95, 45}, {100, 50}, {-1, 0}, {0, -1}};
        // The line crosses its own button: the button jumps above it, by its
        // height and twice the offset.
        QTest::newRow("moved off the line") << Trash{{300, 250}, {-100, -150}, {-90, -160}, {}, {0, -1}};
    }

    void trashPlacement()
    {
        QFETCH(Trash, trash);
        ShapeScene env;
        auto* item = new OvGsDistance(env.manipulator, env.editor, QString(), QString());
        item->setPos(trash.pos);
        item->setVector(trash.vector);
        const QSizeF size = item->getTrashButton()->boundingRect().size() * item->unitsPerPixel();
        QVERIFY(size.width() > 0.0);
        QCOMPARE(item->getTrashPos(), trash.fixed + trash.perW * size.width() + trash.perH * size.height());
        QVERIFY(env.editor->getEditorArea().contains(QRectF(item->pos() + item->getTrashPos(), size)));
    }

    void paint_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("handles");
        QTest::newRow("current: solid line and handles") << "current" << "solid" << true;
        QTest::newRow("not current: line only") << "" << "solid" << false;
        QTest::newRow("hidden: nothing") << "current hidden" << "" << false;
        QTest::newRow("moving: no handles") << "current moving" << "solid" << false;
        QTest::newRow("reshaping: dashed") << "current reshaping" << "dashed" << true;
        QTest::newRow("reshaping with solid edit: solid") << "current reshaping solidEdit" << "solid" << true;
    }

    void paint()
    {
        QFETCH(QString, state);
        QFETCH(QString, line);
        QFETCH(bool, handles);
        OvGsDistance item(nullptr, nullptr, QString(), QString());
        item.setColor(QColor(255, 0, 0));
        item.setPenStyle(Qt::SolidLine, 2);
        item.setVector(QPointF(100, 0));
        item.setCurrent(state.contains(QLatin1String("current")));
        item.setAlwaysHidden(state.contains(QLatin1String("hidden")));
        item.moving = state.contains(QLatin1String("moving"));
        item.reshaping = state.contains(QLatin1String("reshaping"));
        item.solidEdit = state.contains(QLatin1String("solidEdit"));

        const QImage image = paintedImage(item, QSize(200, 100), QPoint(50, 50));
        int painted = 0;
        for (int x = 60; x < 140; ++x)
            painted += qAlpha(image.pixel(x, 50)) > 0 ? 1 : 0;
        if (line == QLatin1String("dashed"))
            QVERIFY2(painted > 20 && painted < 75, qPrintable(QString::number(painted)));
        else
            QCOMPARE(painted, line.isEmpty() ? 0 : 80);
        // Left edge of the start handle, away from the line; the handles are outlines only.
        QCOMPARE(QColor::fromRgba(image.pixel(50 - 6, 50 - 3)), handles ? QColor(49, 49, 49) : QColor::fromRgba(0));
        QCOMPARE(qAlpha(image.pixel(50 + 100 + 3, 50 - 3)), 0);
    }
};

QTEST_MAIN(tst_distance)
#include "tst_distance.moc"
