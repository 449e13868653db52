#include "GsTestHelper.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "CmdRemoveObject.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"

#include <QColor>
#include <QtTest>

namespace {

const int kType = 8001;

KxKernelObjectDataDescr makeDescr()
{
    KxKernelObjectDataDescr descr(kType, 7);
    descr.addDefaultParamsDescr();
    descr.addParamDescr(5, QStringLiteral("len"), QMetaType::QPoint, ParamDescr::KeyframeAnimated);
    descr.addParamDescr(6, QStringLiteral("w"), QMetaType::Int, ParamDescr::KeyframeConstant);
    return descr;
}

KxKernelObjectData* newObject(bool anAnimated)
{
    const KxKernelObjectDataDescr descr = makeDescr();
    KxParamKeyframeVector defaults = descr.createKeyframeVector();
    defaults[0].setValue(true);
    defaults[1].setValue(QColor(Qt::green));
    defaults[3].setValue(QPoint(10, 20));
    defaults[5].setValue(QPoint(100, 0));
    defaults[6].setValue(2);
    return new KxKernelObjectData(defaults, descr.getKeyframeTypes(), anAnimated);
}

KxParamKeyframeVector change(qint64 aFrame, const QList<QPair<int, QVariant>>& aValues)
{
    KxParamKeyframeVector vector = makeDescr().createKeyframeVector();
    vector.setFrameNumber(aFrame);
    for (const auto& value : aValues)
        vector[value.first].setValue(value.second);
    return vector;
}

KxKernelObjectData::State stateOf(int anIdx)
{
    const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(kType, anIdx);
    return data ? data->getState() : KxKernelObjectData::State();
}

} // namespace

class tst_Commands : public QObject
{
    Q_OBJECT

    KxKernelData* store = KxKernelData::getInstance();

    // Presence, identity and the complete state of object 1 after aStep.
    void checkState(const char* aStep, KxKernelObjectData* anExpectedPtr, const KxKernelObjectData::State* anExpected)
    {
        KxKernelObjectData* stored = store->getObject(kType, 1);
        QVERIFY2(stored == anExpectedPtr, aStep);
        QVERIFY2(!stored || stored->getState() == *anExpected, aStep);
    }

private slots:
    void init() { store->loadMedia(KxMediaInfo(), QSize(800, 600)); }
    void cleanup() { store->removeAllObjects(); }

    void roundTripCreateChangeRemove()
    {
        QUndoStack stack;
        QSignalSpy indexSpy(&stack, &QUndoStack::indexChanged);
        KernelRecorder recorder;

        KxKernelObjectData* data = newObject(true);
        const KxKernelObjectData::State s0 = data->getState();
        stack.push(new CmdCreateObject(kType, 1, data));
        checkState("created", data, &s0);
        QCOMPARE(recorder.take(), QStringList{"created 8001:1"});

        stack.push(new CmdChangeObject(kType, 1, change(10, {{3, QPoint(50, 60)}, {1, QColor(Qt::red)}}), false));
        const KxKernelObjectData::State s1 = data->getState();
        QCOMPARE(data->getKeyframesAt(10)[3].getValue().toPoint(), QPoint(50, 60));
        QCOMPARE(data->getKeyframesAt(9)[3].getValue().toPoint(), QPoint(10, 20));
        QCOMPARE(data->getDefaultKeyframes()[1].getValue().value<QColor>(), QColor(Qt::red));
        stack.push(new CmdChangeObject(kType, 1, change(-1, {{5, QPoint(7, 7)}}), false));
        const KxKernelObjectData::State s2 = data->getState();
        QVERIFY(s2 != s1);
        stack.push(new CmdRemoveObject(kType, 1));
        checkState("removed", nullptr, nullptr);
        QCOMPARE(recorder.take(), QStringList({"changed 8001:1", "changed 8001:1", "before 8001:1", "removed 8001:1"}));
        QCOMPARE(indexSpy.count(), 4);

        stack.undo();
        checkState("undo remove", data, &s2);
        stack.undo();
        checkState("undo second change", data, &s1);
        stack.undo();
        checkState("undo first change", data, &s0);
        stack.undo();
        checkState("undo create", nullptr, nullptr);
        QCOMPARE(recorder.take(), QStringList({"created 8001:1", "changed 8001:1", "changed 8001:1", "before 8001:1",
                                               "removed 8001:1"}));
        stack.redo();
        checkState("redo create", data, &s0);
        stack.redo();
        checkState("redo first change", data, &s1);
        stack.redo();
        checkState("redo second change", data, &s2);
        stack.redo();
        checkState("redo remove", nullptr, nullptr);
        QCOMPARE(recorder.take(), QStringList({"created 8001:1", "changed 8001:1", "changed 8001:1", "before 8001:1",
                                               "removed 8001:1"}));
        QCOMPARE(indexSpy.count(), 12);
        QVERIFY(!recorder.stored.contains(false));

        // The removed object is owned by the command on the stack; clearing
        // the stack must free it (checked by the sanitizer build).
        stack.undo();
        stack.undo();
        stack.clear();
        checkState("clear leaves the store alone", data, &s1);
    }

    void changeWritesOnlyHeldValues_data()
    {
        QTest::addColumn<bool>("animated");
        QTest::addColumn<qint64>("frame");
        QTest::addColumn<int>("id");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<qint64>("readFrame");
        QTest::addColumn<QVariant>("expected");
        QTest::addColumn<bool>("defaultsChanged");

        QTest::newRow("static object, defaults") << false << qint64(-1) << 3 << QVariant(QPoint(1, 2)) << qint64(5)
                                                 << QVariant(QPoint(1, 2)) << true;
        QTest::newRow("animated, at frame, read before") << true << qint64(5) << 3 << QVariant(QPoint(1, 2))
                                                         << qint64(4) << QVariant(QPoint(10, 20)) << false;
        QTest::newRow("animated, geometry carried on") << true << qint64(3) << 5 << QVariant(QPoint(4, 4))
                                                       << qint64(8) << QVariant(QPoint(4, 4)) << false;
        QTest::newRow("animated, constant width goes to defaults") << true << qint64(5) << 6 << QVariant(9)
                                                                   << qint64(0) << QVariant(9) << true;
    }

    void changeWritesOnlyHeldValues()
    {
        QFETCH(bool, animated);
        QFETCH(qint64, frame);
        QFETCH(int, id);
        QFETCH(QVariant, value);
        QFETCH(qint64, readFrame);
        QFETCH(QVariant, expected);
        QFETCH(bool, defaultsChanged);

        QUndoStack stack;
        KxKernelObjectData* data = newObject(animated);
        stack.push(new CmdCreateObject(kType, 1, data));
        const KxKernelObjectData::State before = data->getState();

        stack.push(new CmdChangeObject(kType, 1, change(frame, {{id, value}}), false));
        const KxKernelObjectData::State after = data->getState();
        QCOMPARE(data->getKeyframesAt(readFrame)[id].getValue(), expected);
        // Every other parameter reads as before, at every frame looked at.
        for (qint64 f : {qint64(0), frame, readFrame}) {
            const KxParamKeyframeVector now = data->getKeyframesAt(f);
            for (int other = 0; other < now.size(); ++other) {
                if (other != id)
                    QCOMPARE(now[other].getValue(), before.defaults[other].getValue());
            }
        }
        QCOMPARE(after.defaults != before.defaults, defaultsChanged);
        stack.undo();
        QVERIFY(data->getState() == before);
        stack.redo();
        QVERIFY(data->getState() == after);
    }

    void undoRestoresAnimatedFlag()
    {
        QUndoStack stack;
        KxKernelObjectData* data = newObject(false);
        stack.push(new CmdCreateObject(kType, 1, data));
        data->animated = true;
        stack.push(new CmdChangeObject(kType, 1, change(4, {{3, QPoint(0, 0)}}), false));
        const KxKernelObjectData::State after = data->getState();
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

        QUndoStack stack;
        stack.push(new CmdCreateObject(kType, 1, newObject(false)));
        stack.push(new CmdCreateObject(kType, 2, newObject(false)));
        stack.setClean();
        const KxKernelObjectData::State before1 = stateOf(1);
        const KxKernelObjectData::State before2 = stateOf(2);

        stack.push(new CmdChangeObject(kType, 1, change(-1, {{3, QPoint(1, 1)}}), firstMergeable));
        stack.push(new CmdChangeObject(kType, secondIdx, change(-1, {{5, QPoint(2, 2)}}), secondMergeable));
        QCOMPARE(stack.count(), 2 + steps);
        const KxKernelObjectData::State after1 = stateOf(1);
        const KxKernelObjectData::State after2 = stateOf(2);
        QCOMPARE(after1.defaults[3].getValue().toPoint(), QPoint(1, 1));

        while (!stack.isClean())
            stack.undo();
        QVERIFY(stateOf(1) == before1);
        QVERIFY(stateOf(2) == before2);
        while (stack.canRedo())
            stack.redo();
        QVERIFY(stateOf(1) == after1);
        QVERIFY(stateOf(2) == after2);
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

        QUndoStack stack;
        KxKernelObjectData* existing = newObject(false);
        stack.push(new CmdCreateObject(kType, 5, existing));
        const KxKernelObjectData::State before = existing->getState();
        KernelRecorder recorder;
        if (command == QLatin1String("change"))
            stack.push(new CmdChangeObject(kType, 1, change(-1, {{3, QPoint(1, 1)}}), false));
        else if (command == QLatin1String("remove"))
            stack.push(new CmdRemoveObject(kType, 1));
        else if (command == QLatin1String("create"))
            stack.push(new CmdCreateObject(kType, 5, newObject(false)));
        else
            stack.push(new CmdCreateObject(kType, 1, nullptr));

        QCOMPARE(stack.count(), 1);
        QVERIFY(recorder.log.isEmpty());
        QCOMPARE(store->getObject(kType, 5), existing);
        QVERIFY(existing->getState() == before);
        QVERIFY(!store->getObject(kType, 1));
    }

    void commandsOutliveNewMedia()
    {
        QUndoStack stack;
        stack.push(new CmdCreateObject(kType, 1, newObject(false)));
        stack.push(new CmdChangeObject(kType, 1, change(-1, {{3, QPoint(3, 3)}}), false));
        store->loadMedia(KxMediaInfo(), QSize(100, 100));

        // A new object at the same place must not be touched by the old commands.
        KxKernelObjectData* second = newObject(false);
        QVERIFY(store->insertObject(kType, 1, second));
        const KxKernelObjectData::State secondState = second->getState();
        KernelRecorder recorder;
        stack.undo();
        stack.undo();
        checkState("undone", second, &secondState);
        stack.redo();
        stack.redo();
        checkState("redone", second, &secondState);
        QVERIFY(recorder.log.isEmpty());
    }

    void undoTexts()
    {
        QUndoStack stack;
        stack.push(new CmdCreateObject(kType, 3, newObject(false)));
        QCOMPARE(stack.text(0), QStringLiteral("Add object 3"));

        BareManipulator manipulator(kType);
        QVERIFY(store->registerObjectType(&manipulator, kType));
        stack.push(new CmdChangeObject(kType, 3, change(-1, {{6, 4}}), false));
        stack.push(new CmdRemoveObject(kType, 3));
        stack.push(new CmdCreateObject(kType, 4, newObject(false)));
        QCOMPARE(stack.text(1), QStringLiteral("Change Ruler 3"));
        QCOMPARE(stack.text(2), QStringLiteral("Delete Ruler 3"));
        QCOMPARE(stack.text(3), QStringLiteral("Add Ruler 4"));
        store->unregisterObjectType(kType);
    }
};

QTEST_MAIN(tst_Commands)
#include "tst_commands.moc"
