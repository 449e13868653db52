#include "ManipTestHelper.h"

#include "CmdCreateObject.h"
#include "KxAppSettings.h"
#include "OvGsManipMultiply.h"
#include "OvGsManipParalell.h"
#include "OvGsRelativeDistance.h"

#include <QGraphicsPixmapItem>

#include <QUndoCommand>

#include <functional>
#include <memory>

namespace {

const int kMultiply = 66658;
const int kParalell = 66659;
const QString kMicro = QStringLiteral(" \u03BCm");

} // namespace

// Of kind `type`, with a base drawn from `from` to `to`: a click at `click`
// gives a line at `pos` with `vector` on the editor, `len` in the store and
// `text` on its label (0.5 um per pixel).
struct Measured { int type; QPoint from, to, click; QPointF pos, vector; QVariant len; QString text; };
Q_DECLARE_METATYPE(Measured)

class tst_ManipRelative : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;
    OvGsManipMultiply* multiply = nullptr;
    OvGsManipParalell* paralell = nullptr;

    OvGsManipRelative* manip(int aType) const
    {
        return aType == kMultiply ? static_cast<OvGsManipRelative*>(multiply) : paralell;
    }
    // Makes the kind's manipulator the editor's one through the panel's button.
    void use(int aType)
    {
        h->panel->theDistanceButton->setChecked(false);
        h->activate(aType == kMultiply ? 2 : 3);
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(manip(aType)));
    }
    OvGsRelativeDistance* line(int aType, int anIdx) const
    {
        return static_cast<OvGsRelativeDistance*>(manip(aType)->getGsObject(anIdx));
    }
    QList<int> stored(int aType) const { return h->kernel->getObjectsOfType(aType).keys(); }
    QVariant storedParam(int aType, int anIdx, const QString& aName) const
    {
        const KxKernelObjectData* data = h->kernel->getObject(aType, anIdx);
        return data ? h->kernel->getDataDescriptor(aType)->getValue(data->getDefaultKeyframes(), aName) : QVariant();
    }
    QString storedText(int aType, int anIdx) const
    {
        return manip(aType)->getCalculatedValueAsString(QStringLiteral("Length"), h->kernel->getObject(aType, anIdx));
    }
    // A line's item and stored data: "item 150,300 by 0,-100 '50.000 μm'; stored 150,300 by 0,-100".
    QString state(int aType, int anIdx) const
    {
        const auto xy = [](const QPointF& aPoint) { return QStringLiteral("%1,%2").arg(aPoint.x()).arg(aPoint.y()); };
        const OvGsRelativeDistance* item = line(aType, anIdx);
        const QString itemText = item ? QStringLiteral("item %1 by %2 '%3'").arg(xy(item->pos()), xy(item->vector),
                                                                                 item->getDisplayValue())
                                      : QStringLiteral("no item");
        if (!h->kernel->getObject(aType, anIdx))
            return itemText + QStringLiteral("; not stored");
        return itemText + QStringLiteral("; stored %1 by %2").arg(xy(storedParam(aType, anIdx, "pos").toPoint()),
                                                                 xy(storedParam(aType, anIdx, "len").toPointF()));
    }
    // A drag from aFrom to aTo through its midpoint.
    QString drag(const QPoint& aFrom, const QPoint& aTo) const
    {
        const QPoint mid = (aFrom + aTo) / 2;
        return QStringLiteral("p%1,%2 m%3,%4 m%5,%6 r%5,%6")
            .arg(aFrom.x()).arg(aFrom.y()).arg(mid.x()).arg(mid.y()).arg(aTo.x()).arg(aTo.y());
    }
    QString click(const QPoint& anAt) const
    {
        return QStringLiteral("p%1,%2 r%1,%2").arg(anAt.x()).arg(anAt.y());
    }
    // The middle of a line's active button, in picture pixels.
    QPoint activeButton(int aType, int anIdx) const { return activeButtonOf(line(aType, anIdx)); }
    static QPoint activeButtonOf(const OvGsRelativeDistance* item)
    {
        const QSizeF size = item->getActiveButton()->boundingRect().size() * item->unitsPerPixel();
        return item->mapToParent(item->getActivePos() + QPointF(size.width() / 2, size.height() / 2)).toPoint();
    }
    // The last undo step: its text, then the texts of the commands it holds
    // (macros flattened), in the order they were pushed.
    QStringList lastStep() const
    {
        QStringList texts;
        const QUndoCommand* step = h->stack->command(h->stack->count() - 1);
        if (!step)
            return texts;
        texts << step->text();
        std::function<void(const QUndoCommand*)> leaves = [&](const QUndoCommand* aCommand) {
            if (aCommand->childCount() == 0)
                texts << aCommand->text();
            for (int i = 0; i < aCommand->childCount(); ++i)
                leaves(aCommand->child(i));
        };
        for (int i = 0; i < step->childCount(); ++i)
            leaves(step->child(i));
        return texts;
    }
    // A base from (100, 200) to (500, 200) and lines clicked at aClicks.
    void drawBaseAndLines(int aType, const QList<QPoint>& aClicks)
    {
        use(aType);
        h->play(drag({100, 200}, {500, 200}));
        for (const QPoint& at : aClicks)
            h->play(click(at));
    }

    static void addKindRows()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("multiple") << kMultiply;
        QTest::newRow("parallel") << kParalell;
    }

private slots:
    void init()
    {
        h.reset(new ManipTestHelper());
        KxAppSettings::setValue(QStringLiteral("DistanceAllowedAsBase"), false);
        multiply = new OvGsManipMultiply(h->tool, h->panel, h->stack);
        paralell = new OvGsManipParalell(h->tool, h->panel, h->stack);
    }

    void cleanup()
    {
        h->editor->restoreOverrideManipulator();
        h->editor->setCurrentObject(nullptr, false);
        delete multiply;
        delete paralell;
        h.reset();
    }

    void firstLineIsBaseNextIsMeasured_data()
    {
        QTest::addColumn<Measured>("m");
        QTest::newRow("multiple: perpendicular below the base")
            << Measured{kMultiply, {100, 200}, {500, 200}, {150, 300}, {150, 300}, {0, -100}, QPointF(0, -100),
                        "50.000" + kMicro};
        QTest::newRow("multiple: beyond the base's end, on its extension")
            << Measured{kMultiply, {100, 200}, {500, 200}, {600, 260}, {600, 260}, {0, -60}, QPointF(0, -60),
                        "30.000" + kMicro};
        // Foot at t = 0.24 along (400, 300): (196, 272), 160 pixels away.
        QTest::newRow("multiple: slanted base")
            << Measured{kMultiply, {100, 200}, {500, 500}, {100, 400}, {100, 400}, {96, -128}, QPointF(96, -128),
                        "80.000" + kMicro};
        QTest::newRow("parallel: copy of the base below it")
            << Measured{kParalell, {100, 200}, {500, 200}, {150, 300}, {150, 300}, {400, 0}, QPoint(100, 0),
                        "50.000" + kMicro};
        QTest::newRow("parallel: beyond the base's end")
            << Measured{kParalell, {100, 200}, {500, 200}, {600, 260}, {600, 260}, {400, 0}, QPoint(60, 0),
                        "30.000" + kMicro};
        QTest::newRow("parallel: slanted base")
            << Measured{kParalell, {100, 200}, {500, 500}, {100, 400}, {100, 400}, {400, 300}, QPoint(160, 0),
                        "80.000" + kMicro};
    }

    void firstLineIsBaseNextIsMeasured()
    {
        QFETCH(Measured, m);
        use(m.type);
        h->play(drag(m.from, m.to));
        OvGsRelativeDistance* base = line(m.type, 1);
        QVERIFY(base);
        QCOMPARE((QVariantList{ base->isBase, base->getDisplayValue(), base->getUseActiveButton(),
                                base->getActivePressed(), base->getActiveButton()->isVisible() }),
                 (QVariantList{ true, "base", true, true, true }));
        QCOMPARE(h->editor->getCurrentObject(), static_cast<KxGsObject*>(base));
        QCOMPARE(base->vector, QPointF(m.to - m.from));
        // The store keeps a base as a zero-length object at its start.
        QCOMPARE(storedParam(m.type, 1, "pos").toPoint(), m.from);
        QCOMPARE(storedParam(m.type, 1, "len").toPointF(), QPointF());
        QCOMPARE(storedText(m.type, 1), QString());

        h->play(click(m.click));
        OvGsRelativeDistance* measured = line(m.type, 2);
        QVERIFY(measured);
        QVERIFY(!measured->isBase);
        QCOMPARE(measured->baseName, base->lineName);
        QCOMPARE(measured->pos(), m.pos);
        QVERIFY2((measured->vector - m.vector).manhattanLength() < 1e-3, qPrintable(state(m.type, 2)));
        QCOMPARE(measured->getDisplayValue(), m.text);
        if (m.len.userType() == QMetaType::QPointF)
            QVERIFY((storedParam(m.type, 2, "len").toPointF() - m.len.toPointF()).manhattanLength() < 1e-3);
        else
            QCOMPARE(storedParam(m.type, 2, "len"), m.len);
        QCOMPARE(storedText(m.type, 2), m.text);
        QCOMPARE(measured->getActiveButton()->isVisible(), false);
        // The base stays selected for the next line.
        QCOMPARE(h->editor->getCurrentObject(), static_cast<KxGsObject*>(base));
    }

    // A stored "no unit" (1000) reads as the automatic unit.
    void storedNoUnitReadsAutomatic()
    {
        drawBaseAndLines(kMultiply, {{150, 300}});
        QVERIFY(multiply->setGsObjectParamValue(line(kMultiply, 2), QStringLiteral("ut"), 1000));
        QCOMPARE(storedText(kMultiply, 2), "50.000" + kMicro);
    }

    void clickWithoutDragKeepsDrawing()
    {
        use(kMultiply);
        h->play(click({100, 200}) + " h300,250");
        OvGsRelativeDistance* base = multiply->getInProgressLine();
        QVERIFY(base && stored(kMultiply).isEmpty());
        QCOMPARE(base->vector, QPointF(200, 50));
        h->play(click({300, 250}));
        QCOMPARE(stored(kMultiply), QList<int>{1});
        QVERIFY(!multiply->getInProgressLine());
    }

    // While a base is drawn by clicks its active button sits just past the
    // end, where the pointer is heading: the line still follows the pointer
    // over it, and the click there ends the base there.
    void clickedBaseFollowsOverItsOwnButton_data() { addKindRows(); }
    void clickedBaseFollowsOverItsOwnButton()
    {
        QFETCH(int, type);
        use(type);
        h->play(click({100, 200}) + " h300,250");
        const OvGsRelativeDistance* base = manip(type)->getInProgressLine();
        QVERIFY(base && base->getActiveButton() && base->getActiveButton()->isVisible());
        const QPoint button = activeButtonOf(base);
        h->play(QStringLiteral("h%1,%2 ").arg(button.x()).arg(button.y()) + click(button));
        QCOMPARE(stored(type), QList<int>{1});
        QCOMPARE(storedParam(type, 1, "pos").toPoint(), QPoint(100, 200));
        QCOMPARE(line(type, 1)->vector, QPointF(button - QPoint(100, 200)));
    }

    void activeButtonTogglesBase_data() { addKindRows(); }

    void activeButtonTogglesBase()
    {
        QFETCH(int, type);
        drawBaseAndLines(type, {});
        OvGsRelativeDistance* first = line(type, 1);
        h->play(click(activeButton(type, 1)));
        QVERIFY(!first->getActivePressed());
        QVERIFY(!h->editor->getCurrentObject());
        // The tool stays in use: the next line is a new base.
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(manip(type)));
        QVERIFY(h->panel->theDistanceButton->isChecked());
        h->play(drag({100, 400}, {400, 400}));
        OvGsRelativeDistance* second = line(type, 2);
        QVERIFY(second && second->isBase && second->getActivePressed());
        QCOMPARE(stored(type), (QList<int>{1, 2}));

        // Pressing the first base's button selects it again and releases the second.
        h->play(click(activeButton(type, 1)));
        QCOMPARE((QList<bool>{ first->getActivePressed(), second->getActivePressed() }), (QList<bool>{ true, false }));
        QCOMPARE(h->editor->getCurrentObject(), static_cast<KxGsObject*>(first));
        h->play(click({200, 300}));
        QCOMPARE(line(type, 3)->baseName, first->lineName);
    }

    void draggingBaseRewritesEveryLine_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("after");
        QTest::newRow("multiple") << kMultiply
            << QStringList{ "item 150,300 by 0,-100 '50.000 μm'; stored 150,300 by 0,-100",
                            "item 300,250 by 0,-50 '25.000 μm'; stored 300,250 by 0,-50" }
            << QStringList{ "item 150,300 by 0,-80 '40.000 μm'; stored 150,300 by 0,-80",
                            "item 300,250 by 0,-30 '15.000 μm'; stored 300,250 by 0,-30" };
        QTest::newRow("parallel") << kParalell
            << QStringList{ "item 150,300 by 400,0 '50.000 μm'; stored 150,300 by 100,0",
                            "item 300,250 by 400,0 '25.000 μm'; stored 300,250 by 50,0" }
            << QStringList{ "item 150,300 by 400,0 '40.000 μm'; stored 150,300 by 80,0",
                            "item 300,250 by 400,0 '15.000 μm'; stored 300,250 by 30,0" };
    }

    void draggingBaseRewritesEveryLine()
    {
        QFETCH(int, type);
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);
        drawBaseAndLines(type, {{150, 300}, {300, 250}});
        const auto lines = [&] { return QStringList{ state(type, 2), state(type, 3) }; };
        QCOMPARE(lines(), before);
        const int count = h->stack->count();
        QSignalSpy steps(h->stack, &QUndoStack::indexChanged);

        h->play("p300,200 m300,210 m300,220 r300,220");
        const QString name = type == kMultiply ? QStringLiteral("M_DST") : QStringLiteral("P_DST");
        // One step, each object with its own command.
        QCOMPARE(lastStep(), (QStringList{ "Move " + name + " 1", "Change " + name + " 1", "Change " + name + " 2",
                                           "Change " + name + " 3" }));
        QCOMPARE(h->stack->count(), count + 1);
        QCOMPARE(storedParam(type, 1, "pos").toPoint(), QPoint(100, 220));
        QCOMPARE(lines(), after);

        h->stack->undo();
        QCOMPARE(storedParam(type, 1, "pos").toPoint(), QPoint(100, 200));
        QCOMPARE(line(type, 1)->pos(), QPointF(100, 200));
        QCOMPARE(lines(), before);
        h->stack->redo();
        QCOMPARE(lines(), after);
        // Undo and redo replay the history; they push nothing of their own.
        QCOMPARE(h->stack->count(), count + 1);
        QCOMPARE(steps.count(), 1 + 2);
    }

    // The store holds the base's vector and each line as placed: one undo of
    // the reshape brings the base's whole shape and its lines back.
    void reshapedBaseComesBackWhole_data() { addKindRows(); }

    void reshapedBaseComesBackWhole()
    {
        QFETCH(int, type);
        drawBaseAndLines(type, {{150, 300}});
        const QStringList before{ state(type, 1), state(type, 2) };
        h->play("p500,200 m500,230 m500,260 r500,260");
        QCOMPARE(line(type, 1)->vector, QPointF(400, 60));
        const QStringList after{ state(type, 1), state(type, 2) };
        QVERIFY(after != before);
        h->stack->undo();
        QCOMPARE((QStringList{ state(type, 1), state(type, 2) }), before);
        h->stack->redo();
        QCOMPARE((QStringList{ state(type, 1), state(type, 2) }), after);
    }

    void removingBaseRemovesItsLines_data() { addKindRows(); }

    void removingBaseRemovesItsLines()
    {
        QFETCH(int, type);
        drawBaseAndLines(type, {{150, 300}, {300, 250}, {450, 150}});
        // A second base with a line of its own stays (measured clear of the
        // base's label, which sits above the base's start).
        h->play(click(activeButton(type, 1)) + " " + drag({100, 450}, {400, 450}) + " " + click({350, 400}));
        QCOMPARE(stored(type), (QList<int>{1, 2, 3, 4, 5, 6}));
        const QString restoredLine = state(type, 2);

        h->play(click(activeButton(type, 1)));
        h->editor->deleteSelected();
        const QString name = type == kMultiply ? QStringLiteral("Delete M_DST ") : QStringLiteral("Delete P_DST ");
        // One step; the lines' removals are pushed before the base's.
        QCOMPARE(lastStep(), (QStringList{ name + "1", name + "2", name + "3", name + "4", name + "1" }));
        QCOMPARE(stored(type), (QList<int>{5, 6}));
        QVERIFY(!line(type, 1) && !line(type, 2) && !line(type, 4));
        const int count = h->stack->count();

        h->stack->undo();
        QCOMPARE(stored(type), (QList<int>{1, 2, 3, 4, 5, 6}));
        QCOMPARE(h->stack->count(), count);
        // As the store's show-value notification does for every object it brings back.
        for (int idx = 1; idx <= 6; ++idx) {
            QVERIFY(line(type, idx));
            manip(type)->updateDisplayValue(line(type, idx), QStringLiteral("Length"), true, true);
        }
        // Back as they left: the base a base again with its whole line, its
        // lines linked to it.
        QVERIFY(line(type, 1)->isBase);
        QCOMPARE(line(type, 1)->vector, QPointF(400, 0));
        QCOMPARE(line(type, 1)->getDisplayValue(), QStringLiteral("base"));
        QCOMPARE(line(type, 2)->baseName, line(type, 1)->lineName);
        QCOMPARE(state(type, 2), restoredLine);

        h->stack->redo();
        QCOMPARE(stored(type), (QList<int>{5, 6}));
        QCOMPARE(h->stack->count(), count);
        QVERIFY(!line(type, 1) && !line(type, 2));
    }

    void plainDistanceAsBase_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("allowed");
        QTest::newRow("multiple, setting on") << kMultiply << true;
        QTest::newRow("multiple, setting off") << kMultiply << false;
        QTest::newRow("parallel, setting on") << kParalell << true;
        QTest::newRow("parallel, setting off") << kParalell << false;
    }

    void plainDistanceAsBase()
    {
        QFETCH(int, type);
        QFETCH(bool, allowed);
        h->activate(0);
        h->play(drag({100, 200}, {500, 200}));
        QCOMPARE(h->storedIndices(), QList<int>{1});
        KxAppSettings::setValue(QStringLiteral("DistanceAllowedAsBase"), allowed);
        QCOMPARE(manip(type)->getConnectedObjectType(), allowed ? 66653 : 7906255);
        use(type);
        // Select the distance, then click below it.
        h->play(click({300, 200}));
        QCOMPARE(h->editor->getCurrentObject(), static_cast<KxGsObject*>(h->item(1)));
        h->play(click({150, 300}));
        // A base drawn by a click stays under way until the next press.
        OvGsRelativeDistance* drawn = allowed ? line(type, 1) : manip(type)->getInProgressLine();
        QVERIFY(drawn);
        QCOMPARE(drawn->isBase, !allowed);
        if (!allowed)
            return;
        QCOMPARE(drawn->baseName, h->item(1)->lineName);
        QCOMPARE(drawn->getDisplayValue(), "50.000" + kMicro);

        // Moving the distance writes the line against it; undo pushes nothing.
        h->play("p300,200 m300,210 m300,220 r300,220");
        const QString name = type == kMultiply ? QStringLiteral("M_DST") : QStringLiteral("P_DST");
        QCOMPARE(lastStep(), (QStringList{ "Change Distance 1", "Change " + name + " 1", "Change Distance 1" }));
        QCOMPARE(drawn->getDisplayValue(), "40.000" + kMicro);
        QCOMPARE(storedText(type, 1), "40.000" + kMicro);
        const int count = h->stack->count();
        h->stack->undo();
        QCOMPARE(storedText(type, 1), "50.000" + kMicro);
        h->stack->redo();
        QCOMPARE(h->stack->count(), count);
        QCOMPARE(storedText(type, 1), "40.000" + kMicro);

        // Removing the distance removes the line first.
        h->editor->setCurrentObject(h->item(1), false);
        h->editor->deleteSelected();
        QCOMPARE(lastStep(), (QStringList{ "Delete Distance 1", "Delete " + name + " 1", "Delete Distance 1" }));
        QVERIFY(stored(type).isEmpty());
    }

    void resolutionChangeScalesLines_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("measured");
        QTest::newRow("multiple") << kMultiply << "item 75,150 by 0,-50 '25.000 μm'; stored 75,150 by 0,-50";
        QTest::newRow("parallel") << kParalell << "item 75,150 by 200,0 '25.000 μm'; stored 75,150 by 50,0";
    }

    // Half the width: positions, stored geometry and stored vectors halve;
    // no line collapses.
    void resolutionChangeScalesLines()
    {
        QFETCH(int, type);
        QFETCH(QString, measured);
        drawBaseAndLines(type, {{150, 300}});
        h->kernel->changeCameraResolution(QSize(320, 240));
        QCOMPARE(state(type, 1), QStringLiteral("item 50,100 by 200,0 'base'; stored 50,100 by 0,0"));
        QCOMPARE(state(type, 2), measured);
        QCOMPARE(storedText(type, 2), "25.000" + kMicro);
    }

    // A parallel object stored without its vector (an older file) is drawn
    // from its start along x for its stored distance, never with zero length.
    void parallelNeverSeenIsRebuilt_data()
    {
        QTest::addColumn<QPoint>("len");
        QTest::addColumn<QPointF>("vector");
        QTest::addColumn<QString>("text");
        QTest::newRow("distance 30") << QPoint(30, 0) << QPointF(30, 0) << "15.000" + kMicro;
        QTest::newRow("distance 0") << QPoint(0, 0) << QPointF(15, -15) << QStringLiteral("base");
    }

    void parallelNeverSeenIsRebuilt()
    {
        QFETCH(QPoint, len);
        QFETCH(QPointF, vector);
        QFETCH(QString, text);
        const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(kParalell);
        KxParamKeyframeVector keyframes = descr->createKeyframeVector();
        keyframes[0].setValue(true);
        keyframes[3].setValue(QPoint(40, 50));
        descr->setValue(keyframes, QStringLiteral("len"), len);
        h->stack->push(new CmdCreateObject(kParalell, 7, new KxKernelObjectData(keyframes, descr->getKeyframeTypes(),
                                                                                false)));
        OvGsRelativeDistance* rebuilt = line(kParalell, 7);
        QVERIFY(rebuilt);
        QCOMPARE(rebuilt->pos(), QPointF(40, 50));
        QCOMPARE(rebuilt->vector, vector);
        paralell->updateDisplayValue(rebuilt, QStringLiteral("Length"), true, false);
        QCOMPARE(rebuilt->getDisplayValue(), text);
    }

    void parallelLabelReadsBaseOnTheBaseLine()
    {
        drawBaseAndLines(kParalell, {{150, 300}});
        OvGsRelativeDistance* parallelLine = line(kParalell, 2);
        // Moved onto the base line by hand: closer than one pixel reads "base".
        parallelLine->setPos(120, 200.5);
        paralell->updateDisplayValue(parallelLine, QStringLiteral("Length"), false, false);
        QCOMPARE(parallelLine->getDisplayValue(), QStringLiteral("base"));
        QCOMPARE(paralell->findDistance(parallelLine), 0);
        parallelLine->setPos(120, 233.9);
        QCOMPARE(paralell->findDistance(parallelLine), 33);
        QCOMPARE(paralell->findDistance(line(kParalell, 1)), 0);
        QCOMPARE(paralell->findDistance(nullptr), 0);
    }

    void deactivateHidesActiveButtons()
    {
        drawBaseAndLines(kMultiply, {});
        QVERIFY(line(kMultiply, 1)->getActiveButton()->isVisible());
        use(kParalell);
        QVERIFY(!line(kMultiply, 1)->getActiveButton()->isVisible());
        use(kMultiply);
        QVERIFY(line(kMultiply, 1)->getActiveButton()->isVisible());
        // The pressed base is selected again.
        QCOMPARE(h->editor->getCurrentObject(), static_cast<KxGsObject*>(line(kMultiply, 1)));
    }
};

QTEST_MAIN(tst_ManipRelative)
#include "tst_maniprelative.moc"
