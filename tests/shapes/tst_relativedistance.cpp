#include "KxGsEditor.h"
#include "OvGsMultiplyDistance.h"
#include "OvGsParalellDistance.h"
#include "ShapesTestHelper.h"

#include <QGraphicsPixmapItem>
#include <QtTest>

#include <memory>

// Of kind `type` (66658 or 66659), a base or a measured line, at `zoom`: a press
// at `grip` (item coordinates), moves along `path` (viewport pixels); where
// the line ends up and what was reported ("changed": the item reported its
// gesture to the manipulator, which then writes it back; "" nothing).
struct RelativeDrag { int type; bool base; double zoom; QPointF grip; QList<QPoint> path; QPointF pos, vector;
                      bool taken; QString outcome; };
Q_DECLARE_METATYPE(RelativeDrag)

namespace {

OvGsRelativeDistance* makeLine(ShapeScene& anEnv, int aType)
{
    if (aType == OvGsMultiplyDistance::Type)
        return new OvGsMultiplyDistance(anEnv.manipulator, anEnv.editor, QStringLiteral("M_DST"), QStringLiteral("l"));
    return new OvGsParalellDistance(anEnv.manipulator, anEnv.editor, QStringLiteral("P_DST"), QStringLiteral("l"));
}

} // namespace

class tst_RelativeDistance : public QObject
{
    Q_OBJECT

private slots:
    void drag_data()
    {
        QTest::addColumn<RelativeDrag>("drag");
        // The line runs from (100, 120) to (160, 80).
        const QPointF pos(100, 120);
        const QPointF vec(60, -40);
        for (int type : { 66658, 66659 }) {
            const QByteArray kind = type == 66658 ? "multiple: " : "parallel: ";
            QTest::newRow(kind + "base dragged by its body moves and is reported")
                << RelativeDrag{type, true, 1, {30, -20}, {{5, 5}}, {105, 125}, vec, true, "changed"};
            QTest::newRow(kind + "measured line pressed on its body is taken but stays")
                << RelativeDrag{type, false, 1, {30, -20}, {{5, 5}}, pos, vec, true, ""};
            QTest::newRow(kind + "measured line reshaped by its end")
                << RelativeDrag{type, false, 1, {60, -40}, {{7, 4}}, pos, {67, -36}, true, "changed"};
            QTest::newRow(kind + "base at zoom 2 follows the mouse")
                << RelativeDrag{type, true, 2, {30, -20}, {{10, 10}}, {105, 125}, vec, true, "changed"};
            QTest::newRow(kind + "press beside the line") << RelativeDrag{type, true, 1, {30, -5}, {{5, 5}}, pos, vec,
                                                                          false, ""};
        }
    }

    void drag()
    {
        QFETCH(RelativeDrag, drag);
        ShapeScene env;
        OvGsRelativeDistance* item = makeLine(env, drag.type);
        item->isBase = drag.base;
        item->setPos(100, 120);
        item->setVector(QPointF(60, -40));
        env.manipulator->store(item);
        env.editor->setZoom(drag.zoom);
        env.editor->setCurrentObject(nullptr, false);

        const QPoint from = env.toViewport(item, drag.grip);
        env.press(from);
        QCOMPARE(env.editor->getMouseGrabberObject() == item, drag.taken);
        // The editor never writes back a move of its own: the item reports it.
        QVERIFY(!item->isMoving());
        env.finishDrag(from, drag.path);
        QCOMPARE(item->pos(), drag.pos);
        QCOMPARE(item->vector, drag.vector);
        QCOMPARE(env.manipulator->changedShapes,
                 drag.outcome.isEmpty() ? QList<KxGsObject*>() : QList<KxGsObject*>{item});
        QVERIFY(env.manipulator->paramWrites.isEmpty());
        if (drag.taken)
            QCOMPARE(env.editor->getCurrentObject(), static_cast<KxGsObject*>(item));
    }

    void activeButtonPressIsLeftToTheManipulator()
    {
        ShapeScene env;
        OvGsRelativeDistance* item = makeLine(env, OvGsMultiplyDistance::Type);
        item->isBase = true;
        item->setPos(100, 120);
        item->setVector(QPointF(60, -40));
        item->setUseActiveButton(true);
        item->allowActiveVisible(true);
        env.manipulator->store(item);
        const QSizeF size = item->getActiveButton()->boundingRect().size() * item->unitsPerPixel();
        env.press(env.toViewport(item, item->getActivePos() + QPointF(size.width() / 2, size.height() / 2)));
        QVERIFY(!env.editor->getMouseGrabberObject());
        QVERIFY(!item->getActivePressed());
        env.finishDrag(env.toViewport(item, item->getActivePos()), {});
    }

    // The active button sits beside the start at (-10, 10) screen pixels; a
    // line running down-left through that place sends it further down, by its
    // height plus twice the offset; near the picture's left edge it is pushed
    // inside.
    void activePlacement_data()
    {
        QTest::addColumn<QPointF>("pos");
        QTest::addColumn<QPointF>("vector");
        QTest::addColumn<QPointF>("fixed");
        QTest::addColumn<QPointF>("perH");
        QTest::newRow("beside the start") << QPointF(100, 100) << QPointF(60, -40) << QPointF(-10, 10) << QPointF();
        QTest::newRow("moved off the line") << QPointF(100, 100) << QPointF(-60, 80) << QPointF(-10, 30)
                                            << QPointF(0, 1);
        QTest::newRow("pushed inside the left edge") << QPointF(3, 100) << QPointF(60, -40) << QPointF(-3, 10)
                                                     << QPointF();
    }

    void activePlacement()
    {
        QFETCH(QPointF, pos);
        QFETCH(QPointF, vector);
        QFETCH(QPointF, fixed);
        QFETCH(QPointF, perH);
        ShapeScene env;
        OvGsRelativeDistance* item = makeLine(env, OvGsParalellDistance::Type);
        item->setPos(pos);
        item->setVector(vector);
        const QSizeF size = item->getActiveButton()->boundingRect().size() * item->unitsPerPixel();
        QVERIFY(size.height() > 0.0);
        QCOMPARE(item->getActivePos(), fixed + perH * size.height());
        // The zoom keeps the offset constant on screen.
        env.editor->setZoom(2.0);
        QCOMPARE(item->activeOffset, QPointF(-5, 5));
    }

    void outlineIsSolidUnlessReshaping()
    {
        ShapeScene env;
        OvGsRelativeDistance* item = makeLine(env, OvGsMultiplyDistance::Type);
        item->setVector(QPointF(60, 0));
        item->setPenStyle(Qt::DashLine, 1);
        item->setColor(Qt::red);
        const QImage image = paintedImage(*item, QSize(100, 40), QPoint(20, 20));
        // A dashed pen would leave gaps along the line.
        for (int x = 22; x < 78; ++x)
            QVERIFY2(qAlpha(image.pixel(x, 20)) > 0, qPrintable(QString::number(x)));
    }
};

QTEST_MAIN(tst_RelativeDistance)
#include "tst_relativedistance.moc"
