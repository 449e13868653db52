#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "CmdRemoveObject.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxSignalCenter.h"

#include <QColor>
#include <QUndoStack>
#include <QtTest>

namespace {

const int kType = 8001;

class TestManipulator : public KxGsManipulator
{
public:
    TestManipulator()
        : KxGsManipulator(nullptr, nullptr)
    {
    }
    int getObjectType() const override { return kType; }
    QString getObjectTypeName(int) const override { return QStringLiteral("Ruler"); }
};

// Every kernel notification as text, in arrival order.
class Recorder
{
public:
    Recorder()
    {
        KxSignalCenter* hub = KxSignalCenter::getInstance();
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectCreated, hub,
                                        [this](int, int anIdx, const KxKernelObjectData*) {
                                            log << QStringLiteral("created %1").arg(anIdx);
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectChanged, hub,
                                        [this](int, int anIdx, const KxKernelObjectData* aData) {
                                            log << QStringLiteral("changed %1").arg(anIdx);
                                            changedData << aData;
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectBeforeRemove, hub,
                                        [this](int, int anIdx) { log << QStringLiteral("before %1").arg(anIdx); });
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectRemoved, hub,
                                        [this](int, int anIdx) { log << QStringLiteral("removed %1").arg(anIdx); });
    }
    ~Recorder()
    {
        for (const auto& connection : qAsConst(connections))
            QObject::disconnect(connection);
    }
    QStringList take()
    {
        const QStringList result = log;
        log.clear();
        return result;
    }
    QStringList log;
    QList<const KxKernelObjectData*> changedData;

private:
    QList<QMetaObject::Connection> connections;
};

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

} // namespace

class tst_Commands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void roundTripCreateChangeRemove();
    void changeWritesOnlyHeldValues_data();
    void changeWritesOnlyHeldValues();
    void undoRestoresAnimatedFlag();
    void mergeableChanges_data();
    void mergeableChanges();
    void obsoleteCommandsAreDropped_data();
    void obsoleteCommandsAreDropped();
    void commandsOutliveNewMedia();
    void undoTexts();

private:
    // Checks presence, identity and the complete state of the object.
    void checkState(const char* aStep, KxKernelObjectData* anExpectedPtr,
                    const KxKernelObjectData::State* anExpected);

    KxKernelData* store = KxKernelData::getInstance();
};

void tst_Commands::init()
{
    store->loadMedia(KxMediaInfo(), QSize(800, 600));
}

void tst_Commands::cleanup()
{
    store->removeAllObjects();
}

void tst_Commands::checkState(const char* aStep, KxKernelObjectData* anExpectedPtr,
                              const KxKernelObjectData::State* anExpected)
{
    KxKernelObjectData* stored = store->getObject(kType, 1);
    if (!anExpected) {
        QVERIFY2(!stored, aStep);
        return;
    }
    QVERIFY2(stored == anExpectedPtr, aStep);
    QVERIFY2(stored->getState() == *anExpected, aStep);
}

void tst_Commands::roundTripCreateChangeRemove()
{
    QUndoStack stack;
    QSignalSpy indexSpy(&stack, &QUndoStack::indexChanged);
    Recorder recorder;

    KxKernelObjectData* data = newObject(true);
    const KxKernelObjectData::State s0 = data->getState();

    stack.push(new CmdCreateObject(kType, 1, data));
    checkState("created", data, &s0);
    QCOMPARE(recorder.take(), QStringList{"created 1"});

    stack.push(new CmdChangeObject(kType, 1, change(10, {{3, QPoint(50, 60)}, {1, QColor(Qt::red)}}), false));
    const KxKernelObjectData::State s1 = data->getState();
    QCOMPARE(data->getKeyframesAt(10)[3].getValue().toPoint(), QPoint(50, 60));
    QCOMPARE(data->getKeyframesAt(9)[3].getValue().toPoint(), QPoint(10, 20));
    QCOMPARE(data->getDefaultKeyframes()[1].getValue().value<QColor>(), QColor(Qt::red));
    QCOMPARE(recorder.take(), QStringList{"changed 1"});
    QCOMPARE(recorder.changedData.last(), data);

    stack.push(new CmdChangeObject(kType, 1, change(-1, {{5, QPoint(7, 7)}}), false));
    const KxKernelObjectData::State s2 = data->getState();
    QVERIFY(s2 != s1);
    QCOMPARE(recorder.take(), QStringList{"changed 1"});

    stack.push(new CmdRemoveObject(kType, 1));
    checkState("removed", nullptr, nullptr);
    QCOMPARE(recorder.take(), QStringList({"before 1", "removed 1"}));
    QCOMPARE(stack.count(), 4);
    QCOMPARE(indexSpy.count(), 4);

    stack.undo();
    checkState("undo remove", data, &s2);
    QCOMPARE(recorder.take(), QStringList{"created 1"});
    stack.undo();
    checkState("undo second change", data, &s1);
    QCOMPARE(recorder.take(), QStringList{"changed 1"});
    stack.undo();
    checkState("undo first change", data, &s0);
    QCOMPARE(recorder.take(), QStringList{"changed 1"});
    stack.undo();
    checkState("undo create", nullptr, nullptr);
    QCOMPARE(recorder.take(), QStringList({"before 1", "removed 1"}));
    QCOMPARE(stack.index(), 0);

    stack.redo();
    checkState("redo create", data, &s0);
    stack.redo();
    checkState("redo first change", data, &s1);
    stack.redo();
    checkState("redo second change", data, &s2);
    stack.redo();
    checkState("redo remove", nullptr, nullptr);
    QCOMPARE(recorder.take(), QStringList({"created 1", "changed 1", "changed 1", "before 1", "removed 1"}));
    QCOMPARE(indexSpy.count(), 12);

    // The removed object is owned by the command on the stack; clearing
    // the stack must free it (checked by the sanitizer build).
    stack.undo();
    stack.undo();
    checkState("undo twice more", data, &s1);
    stack.clear();
    checkState("clear leaves the store alone", data, &s1);
}

void tst_Commands::changeWritesOnlyHeldValues_data()
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
    QTest::newRow("animated, at frame, read there") << true << qint64(5) << 3 << QVariant(QPoint(1, 2))
                                                    << qint64(5) << QVariant(QPoint(1, 2)) << false;
    QTest::newRow("animated, at frame, read before") << true << qint64(5) << 3 << QVariant(QPoint(1, 2))
                                                     << qint64(4) << QVariant(QPoint(10, 20)) << false;
    QTest::newRow("animated, constant width goes to defaults") << true << qint64(5) << 6 << QVariant(9)
                                                               << qint64(0) << QVariant(9) << true;
    QTest::newRow("animated, geometry at frame") << true << qint64(3) << 5 << QVariant(QPoint(4, 4)) << qint64(8)
                                                 << QVariant(QPoint(4, 4)) << false;
}

void tst_Commands::changeWritesOnlyHeldValues()
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

void tst_Commands::undoRestoresAnimatedFlag()
{
    QUndoStack stack;
    KxKernelObjectData* data = newObject(false);
    stack.push(new CmdCreateObject(kType, 1, data));
    data->animated = true;
    stack.push(new CmdChangeObject(kType, 1, change(4, {{3, QPoint(0, 0)}}), false));
    const KxKernelObjectData::State after = data->getState();
    // The host switches animation off directly after the change ...
    data->animated = false;
    stack.undo();
    // ... and undo brings back the whole state from before the change.
    QVERIFY(data->animated);
    QVERIFY(data->getKeyframeNumbers().isEmpty());
    stack.redo();
    QVERIFY(data->getState() == after);
}

void tst_Commands::mergeableChanges_data()
{
    QTest::addColumn<bool>("firstMergeable");
    QTest::addColumn<bool>("secondMergeable");
    QTest::addColumn<int>("secondIdx");
    QTest::addColumn<int>("steps");

    QTest::newRow("two mergeable, same object: one step") << true << true << 1 << 1;
    QTest::newRow("two mergeable, other objects: two steps") << true << true << 2 << 2;
    QTest::newRow("mergeable then plain: two steps") << true << false << 1 << 2;
    QTest::newRow("plain then mergeable: two steps") << false << true << 1 << 2;
    QTest::newRow("two plain: two steps") << false << false << 1 << 2;
}

void tst_Commands::mergeableChanges()
{
    QFETCH(bool, firstMergeable);
    QFETCH(bool, secondMergeable);
    QFETCH(int, secondIdx);
    QFETCH(int, steps);

    QUndoStack stack;
    stack.push(new CmdCreateObject(kType, 1, newObject(false)));
    stack.push(new CmdCreateObject(kType, 2, newObject(false)));
    QCOMPARE(stack.count(), 2);
    stack.setClean();
    const KxKernelObjectData::State before1 = store->getObject(kType, 1)->getState();
    const KxKernelObjectData::State before2 = store->getObject(kType, 2)->getState();

    stack.push(new CmdChangeObject(kType, 1, change(-1, {{3, QPoint(1, 1)}}), firstMergeable));
    stack.push(new CmdChangeObject(kType, secondIdx, change(-1, {{5, QPoint(2, 2)}}), secondMergeable));
    QCOMPARE(stack.count(), 2 + steps);
    const KxKernelObjectData::State after1 = store->getObject(kType, 1)->getState();
    QCOMPARE(after1.defaults[3].getValue().toPoint(), QPoint(1, 1));

    while (!stack.isClean())
        stack.undo();
    QVERIFY(store->getObject(kType, 1)->getState() == before1);
    QVERIFY(store->getObject(kType, 2)->getState() == before2);
    while (stack.canRedo())
        stack.redo();
    QVERIFY(store->getObject(kType, 1)->getState() == after1);
}

void tst_Commands::obsoleteCommandsAreDropped_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("change of a missing object") << "change";
    QTest::newRow("remove of a missing object") << "remove";
    QTest::newRow("create at a taken place") << "create";
    QTest::newRow("create with null data") << "null";
}

void tst_Commands::obsoleteCommandsAreDropped()
{
    QFETCH(QString, command);

    QUndoStack stack;
    KxKernelObjectData* existing = newObject(false);
    stack.push(new CmdCreateObject(kType, 5, existing));
    const KxKernelObjectData::State before = existing->getState();
    Recorder recorder;
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

void tst_Commands::commandsOutliveNewMedia()
{
    QUndoStack stack;
    KxKernelObjectData* first = newObject(false);
    stack.push(new CmdCreateObject(kType, 1, first));
    stack.push(new CmdChangeObject(kType, 1, change(-1, {{3, QPoint(3, 3)}}), false));
    store->loadMedia(KxMediaInfo(), QSize(100, 100));

    // A new object at the same place must not be touched by the old commands.
    KxKernelObjectData* second = newObject(false);
    QVERIFY(store->insertObject(kType, 1, second));
    const KxKernelObjectData::State secondState = second->getState();
    Recorder recorder;
    stack.undo();
    stack.undo();
    QCOMPARE(store->getObject(kType, 1), second);
    QVERIFY(second->getState() == secondState);
    stack.redo();
    stack.redo();
    QCOMPARE(store->getObject(kType, 1), second);
    QVERIFY(second->getState() == secondState);
    QVERIFY(recorder.log.isEmpty());
}

void tst_Commands::undoTexts()
{
    QUndoStack stack;
    stack.push(new CmdCreateObject(kType, 3, newObject(false)));
    QCOMPARE(stack.text(0), QStringLiteral("Add object 3"));

    TestManipulator manipulator;
    QVERIFY(store->registerObjectType(&manipulator, kType));
    stack.push(new CmdChangeObject(kType, 3, change(-1, {{6, 4}}), false));
    stack.push(new CmdRemoveObject(kType, 3));
    stack.push(new CmdCreateObject(kType, 4, newObject(false)));
    QCOMPARE(stack.text(1), QStringLiteral("Change Ruler 3"));
    QCOMPARE(stack.text(2), QStringLiteral("Delete Ruler 3"));
    QCOMPARE(stack.text(3), QStringLiteral("Add Ruler 4"));
    store->unregisterObjectType(kType);
}

QTEST_MAIN(tst_Commands)
#include "tst_commands.moc"
