#include "GsTestHelper.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "CmdRemoveObject.h"

#include <QColor>

using State = KxKernelObjectData::State;

class tst_Commands : public QObject
{
    Q_OBJECT

    KxKernelData* store = KxKernelData::getInstance();
    QUndoStack stack;

    // Presence, identity and the complete state of box anIdx after aStep.
    void checkState(const char* aStep, KxKernelObjectData* anExpectedPtr, const State& anExpected, int anIdx = 1)
    {
        KxKernelObjectData* stored = store->getObject(kBoxType, anIdx);
        QVERIFY2(stored == anExpectedPtr, aStep);
        QVERIFY2(!stored || stored->getState() == anExpected, aStep);
    }

    void change(int anIdx, qint64 aFrame, const QList<QPair<int, QVariant>>& aValues, bool aMergeable = false)
    {
        stack.push(new CmdChangeObject(kBoxType, anIdx, keyframes(aFrame, aValues), aMergeable));
    }

private slots:
    void init() { store->loadMedia(KxMediaInfo(), QSize(800, 600)); }

    void cleanup()
    {
        stack.clear();
        store->removeAllObjects();
    }

    void roundTripCreateChangeRemove()
    {
        QSignalSpy indexSpy(&stack, &QUndoStack::indexChanged);
        KernelRecorder recorder;
        KxKernelObjectData* data = newBoxData(kBoxType, true);
        const State s0 = data->getState();
        stack.push(new CmdCreateObject(kBoxType, 1, data));
        change(1, 10, {{3, QPoint(50, 60)}, {1, QColor(Qt::red)}});
        const State s1 = data->getState();
        change(1, -1, {{5, QSizeF(7, 7)}});
        const State s2 = data->getState();
        stack.push(new CmdRemoveObject(kBoxType, 1));
        checkState("removed", nullptr, s0);
        // Doing, undoing and redoing the lot notify in the same order.
        const QStringList forward{"created 70001:1", "changed 70001:1", "changed 70001:1", "before 70001:1",
                                  "removed 70001:1"};

        const QList<std::pair<KxKernelObjectData*, State>> steps{
            {nullptr, s0}, {data, s0}, {data, s1}, {data, s2}, {nullptr, s0}};
        for (int i = 3; i >= 0; --i) {
            stack.undo();
            checkState("undo", steps[i].first, steps[i].second);
        }
        for (int i = 1; i <= 4; ++i) {
            stack.redo();
            checkState("redo", steps[i].first, steps[i].second);
        }
        QCOMPARE(recorder.log, forward + forward + forward);
        QCOMPARE(indexSpy.count(), 12);
        QVERIFY(!recorder.stored.contains(false));

        // The removed object is owned by the command on the stack; clearing
        // the stack must free it (checked by the sanitizer build).
        stack.undo();
        stack.undo();
        stack.clear();
        checkState("clear leaves the store alone", data, s1);
    }

    void changeWritesOnlyHeldValues()
    {
        KxKernelObjectData* data = newBoxData(kBoxType, true);
        stack.push(new CmdCreateObject(kBoxType, 1, data));
        const State before = data->getState();
        // The size goes to frame 5, the constant width to every frame.
        change(1, 5, {{5, QSizeF(4, 4)}, {6, 9}});
        const State after = data->getState();
        for (qint64 frame : {0, 4, 5, 8}) {
            const KxParamKeyframeVector now = data->getKeyframesAt(frame);
            QCOMPARE(now[5].getValue().toSizeF(), frame < 5 ? QSizeF(100, 50) : QSizeF(4, 4));
            QCOMPARE(now[6].getValue().toInt(), 9);
            for (int other = 0; other < 5; ++other)
                QCOMPARE(now[other].getValue(), before.defaults[other].getValue());
        }
        stack.undo();
        QVERIFY(data->getState() == before);
        stack.redo();
        QVERIFY(data->getState() == after);
    }

    void undoRestoresAnimatedFlag()
    {
        KxKernelObjectData* data = newBoxData(kBoxType, true);
        stack.push(new CmdCreateObject(kBoxType, 1, data));
        change(1, 4, {{3, QPoint(0, 0)}});
        const State after = data->getState();
        // The host switches animation off directly after the change; undo
        // brings back the whole state from before the change.
        data->animated = false;
        stack.undo();
        QVERIFY(data->animated);
        QVERIFY(data->getKeyframeNumbers().isEmpty());
        stack.redo();
        QVERIFY(data->getState() == after);
    }

    void mergeableChanges_data()
    {
        QTest::addColumn<bool>("firstMergeable");
        QTest::addColumn<bool>("secondMergeable");
        QTest::addColumn<int>("secondIdx");
        QTest::addColumn<int>("steps");

        QTest::newRow("two mergeable, same object: one step") << true << true << 1 << 1;
        QTest::newRow("two mergeable, other objects: two steps") << true << true << 2 << 2;
        QTest::newRow("mergeable then plain: two steps") << true << false << 1 << 2;
        QTest::newRow("plain then mergeable: two steps") << false << true << 1 << 2;
    }

    void mergeableChanges()
    {
        QFETCH(bool, firstMergeable);
        QFETCH(bool, secondMergeable);
        QFETCH(int, secondIdx);
        QFETCH(int, steps);

        KxKernelObjectData* one = newBoxData(kBoxType);
        KxKernelObjectData* two = newBoxData(kBoxType);
        stack.push(new CmdCreateObject(kBoxType, 1, one));
        stack.push(new CmdCreateObject(kBoxType, 2, two));
        stack.setClean();
        const State before = one->getState();
        change(1, -1, {{3, QPoint(1, 1)}}, firstMergeable);
        change(secondIdx, -1, {{5, QSizeF(2, 2)}}, secondMergeable);
        QCOMPARE(stack.count(), 2 + steps);
        const State after1 = one->getState();
        const State after2 = two->getState();

        while (!stack.isClean())
            stack.undo();
        checkState("undone", one, before);
        checkState("undone", two, before, 2);
        while (stack.canRedo())
            stack.redo();
        checkState("redone", one, after1);
        checkState("redone", two, after2, 2);
    }

    void obsoleteCommandsAreDropped_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("change of a missing object") << "change";
        QTest::newRow("remove of a missing object") << "remove";
        QTest::newRow("create at a taken place") << "create";
        QTest::newRow("create with null data") << "null";
    }

    void obsoleteCommandsAreDropped()
    {
        QFETCH(QString, command);

        KxKernelObjectData* existing = newBoxData(kBoxType);
        stack.push(new CmdCreateObject(kBoxType, 5, existing));
        const State before = existing->getState();
        KernelRecorder recorder;
        if (command == QLatin1String("change"))
            change(1, -1, {{3, QPoint(1, 1)}});
        else if (command == QLatin1String("remove"))
            stack.push(new CmdRemoveObject(kBoxType, 1));
        else
            stack.push(new CmdCreateObject(kBoxType, command == QLatin1String("null") ? 1 : 5,
                                           command == QLatin1String("null") ? nullptr : newBoxData(kBoxType)));
        QVERIFY(stack.count() == 1 && recorder.log.isEmpty() && !store->getObject(kBoxType, 1));
        checkState("existing untouched", existing, before, 5);
    }

    void commandsOutliveNewMedia()
    {
        stack.push(new CmdCreateObject(kBoxType, 1, newBoxData(kBoxType)));
        change(1, -1, {{3, QPoint(3, 3)}});
        store->loadMedia(KxMediaInfo(), QSize(100, 100));

        // A new object at the same place must not be touched by the old commands.
        KxKernelObjectData* second = newBoxData(kBoxType);
        QVERIFY(store->insertObject(kBoxType, 1, second));
        const State secondState = second->getState();
        KernelRecorder recorder;
        stack.undo();
        stack.undo();
        stack.redo();
        stack.redo();
        checkState("untouched", second, secondState);
        QVERIFY(recorder.log.isEmpty());
    }

    void undoTexts()
    {
        stack.push(new CmdCreateObject(kBoxType, 3, newBoxData(kBoxType)));
        BareManipulator manipulator(kBoxType);
        QVERIFY(store->registerObjectType(&manipulator, kBoxType));
        change(3, -1, {{6, 4}});
        stack.push(new CmdRemoveObject(kBoxType, 3));
        stack.push(new CmdCreateObject(kBoxType, 4, newBoxData(kBoxType)));
        QStringList texts;
        for (int i = 0; i < stack.count(); ++i)
            texts << stack.text(i);
        QCOMPARE(texts, QStringList({"Add object 3", "Change Ruler 3", "Delete Ruler 3", "Add Ruler 4"}));
        stack.clear();
        store->unregisterObjectType(kBoxType);
    }
};

QTEST_MAIN(tst_Commands)
#include "tst_commands.moc"
