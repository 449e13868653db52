#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxSignalCenter.h"
#include "OvCamera.h"
#include "OvDeviceSetManager.h"

#include <QColor>
#include <QtTest>

namespace {

const int kType = 7001;
const int kOtherType = 7002;

class TestManipulator : public KxGsManipulator
{
public:
    explicit TestManipulator(int aType)
        : KxGsManipulator(nullptr, nullptr)
        , type(aType)
    {
    }
    int getObjectType() const override { return type; }
    QString getObjectTypeName(int) const override { return QStringLiteral("Ruler"); }

private:
    int type;
};

// Records every kernel notification as text, in the order they arrive.
class Recorder
{
public:
    Recorder()
    {
        KxSignalCenter* hub = KxSignalCenter::getInstance();
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectCreated, hub,
                                        [this](int aType, int anIdx, const KxKernelObjectData* aData) {
                                            log << QStringLiteral("created %1:%2").arg(aType).arg(anIdx);
                                            stored << (KxKernelData::getInstance()->getObject(aType, anIdx) == aData);
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectChanged, hub,
                                        [this](int aType, int anIdx, const KxKernelObjectData*) {
                                            log << QStringLiteral("changed %1:%2").arg(aType).arg(anIdx);
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectBeforeRemove, hub,
                                        [this](int aType, int anIdx) {
                                            log << QStringLiteral("before %1:%2").arg(aType).arg(anIdx);
                                            stored << (KxKernelData::getInstance()->getObject(aType, anIdx) != nullptr);
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalObjectRemoved, hub,
                                        [this](int aType, int anIdx) {
                                            log << QStringLiteral("removed %1:%2").arg(aType).arg(anIdx);
                                            stored << (KxKernelData::getInstance()->getObject(aType, anIdx) == nullptr);
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalNewMediaReady, hub,
                                        [this](const KxMediaInfo& anInfo, bool&) {
                                            log << QStringLiteral("newMedia %1").arg(anInfo.getFileName());
                                        });
        connections << QObject::connect(hub, &KxSignalCenter::signalMediaLoaded, hub,
                                        [this]() { log << QStringLiteral("loaded"); });
        connections << QObject::connect(hub, &KxSignalCenter::signalFrameReady, hub,
                                        [this](qint64 aFrame) { log << QStringLiteral("frame %1").arg(aFrame); });
    }
    ~Recorder()
    {
        for (const auto& connection : qAsConst(connections))
            QObject::disconnect(connection);
    }
    QStringList log;
    // Whether the store already/still held the object when each signal came.
    QList<bool> stored;

private:
    QList<QMetaObject::Connection> connections;
};

KxParamKeyframeVector valuesAt(qint64 aFrame, const QList<QPair<int, QVariant>>& aValues, int aCount = 6)
{
    KxParamKeyframeVector vector(aCount);
    vector.setFrameNumber(aFrame);
    for (const auto& value : aValues)
        vector[value.first].setValue(value.second);
    return vector;
}

KxKernelObjectData* newObject(bool anAnimated = false)
{
    KxKernelObjectDataDescr descr(kType, 6);
    descr.addDefaultParamsDescr();
    descr.addParamDescr(5, QStringLiteral("len"), QMetaType::QPoint, ParamDescr::KeyframeAnimated);
    KxParamKeyframeVector defaults = descr.createKeyframeVector();
    defaults[0].setValue(true);
    defaults[3].setValue(QPoint(1, 1));
    return new KxKernelObjectData(defaults, descr.getKeyframeTypes(), anAnimated);
}

} // namespace

class tst_Kernel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void descriptorDefaults_data();
    void descriptorDefaults();
    void descriptorValueByName();

    void valueAtFrame_data();
    void valueAtFrame();
    void animatedChangedAtTenReadAround_data();
    void animatedChangedAtTenReadAround();
    void nonAnimatedGivesDefaults();
    void updateWritesOnlyHeldValues();

    void signalSignatures_data();
    void signalSignatures();
    void registrationFailures_data();
    void registrationFailures();
    void destroyedManipulatorUnregisters();
    void insertTakeNotifyOrder();
    void nextFreeIndex();
    void loadMediaClearsObjectsKeepsRegistry();
    void frameAndResolutionSignals();
    void calibrationFromMediaOrCamera_data();
    void calibrationFromMediaOrCamera();
    void liveCameraMediaFollowsObjective();

private:
    KxKernelData* store = KxKernelData::getInstance();
};

void tst_Kernel::init()
{
    store->removeAllObjects();
    for (int type : store->getObjectTypes())
        store->unregisterObjectType(type);
    OvDeviceSetManager::instance()->createDefaultSet();
    store->loadMedia(KxMediaInfo(), QSize(1000, 500));
}

void tst_Kernel::cleanup()
{
    store->removeAllObjects();
}

void tst_Kernel::descriptorDefaults_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("keyframeType");

    QTest::newRow("visible") << 0 << "visible" << int(QMetaType::Bool) << int(ParamDescr::KeyframeAnimated);
    QTest::newRow("color") << 1 << "color" << int(QMetaType::QColor) << int(ParamDescr::KeyframeConstant);
    QTest::newRow("valueName") << 2 << "valueName" << int(QMetaType::QString) << int(ParamDescr::KeyframeConstant);
    QTest::newRow("pos") << 3 << "pos" << int(QMetaType::QPoint) << int(ParamDescr::KeyframeAnimated);
    QTest::newRow("alwaysHidden") << 4 << "alwaysHidden" << int(QMetaType::Bool) << int(ParamDescr::KeyframeConstant);
}

void tst_Kernel::descriptorDefaults()
{
    QFETCH(int, id);
    QFETCH(QString, name);
    QFETCH(int, type);
    QFETCH(int, keyframeType);

    KxKernelObjectDataDescr descr(kType, 9);
    descr.addDefaultParamsDescr();
    QCOMPARE(descr.getParamCount(), 9);
    QCOMPARE(descr.getParamId(name), id);
    QCOMPARE(descr.getParamDescr(id).name, name);
    QCOMPARE(int(descr.getParamDescr(id).type), type);
    QCOMPARE(int(descr.getKeyframeTypes().at(id)), keyframeType);
    QCOMPARE(descr.createKeyframeVector().size(), 9);
    QCOMPARE(descr.createKeyframeVector().countValues(), 0);
}

void tst_Kernel::descriptorValueByName()
{
    KxKernelObjectDataDescr descr(kType, 2);
    descr.addDefaultParamsDescr();
    QVERIFY(descr.addParamDescr(8, QStringLiteral("ut"), QMetaType::Int, ParamDescr::KeyframeConstant));
    QCOMPARE(descr.getParamCount(), 9);
    KxParamKeyframeVector vector = descr.createKeyframeVector();
    QVERIFY(descr.setValue(vector, QStringLiteral("ut"), 3));
    QCOMPARE(vector[8].getValue().toInt(), 3);
    QCOMPARE(descr.getValue(vector, QStringLiteral("ut")).toInt(), 3);
    QVERIFY(!descr.getValue(vector, QStringLiteral("UT")).isValid());
    QVERIFY(!descr.setValue(vector, QStringLiteral("nope"), 1));
    KxParamKeyframeVector shorter(4);
    QVERIFY(!descr.setValue(shorter, QStringLiteral("ut"), 1));
    // A name can only belong to one id.
    QVERIFY(!descr.addParamDescr(5, QStringLiteral("pos"), QMetaType::QPoint, ParamDescr::KeyframeAnimated));
}

void tst_Kernel::valueAtFrame_data()
{
    QTest::addColumn<int>("keyframeType");
    QTest::addColumn<qint64>("frame");
    QTest::addColumn<int>("expected");

    // Default 0, key frames 10 at frame 4 and 20 at frame 8.
    const int animated = ParamDescr::KeyframeAnimated;
    const int discrete = ParamDescr::KeyframeDiscrete;
    const int constant = ParamDescr::KeyframeConstant;
    QTest::newRow("animated before first key") << animated << qint64(3) << 0;
    QTest::newRow("animated at first key") << animated << qint64(4) << 10;
    QTest::newRow("animated between keys") << animated << qint64(7) << 10;
    QTest::newRow("animated at second key") << animated << qint64(8) << 20;
    QTest::newRow("animated after last key") << animated << qint64(100) << 20;
    QTest::newRow("discrete at key") << discrete << qint64(4) << 10;
    QTest::newRow("discrete between keys") << discrete << qint64(7) << 0;
    QTest::newRow("discrete after last key") << discrete << qint64(9) << 0;
    QTest::newRow("constant at key frame: writes went to defaults") << constant << qint64(4) << 20;
    QTest::newRow("constant anywhere") << constant << qint64(0) << 20;
}

void tst_Kernel::valueAtFrame()
{
    QFETCH(int, keyframeType);
    QFETCH(qint64, frame);
    QFETCH(int, expected);

    KxParamKeyframeVector defaults(2);
    defaults[0].setValue(0);
    defaults[1].setValue(QStringLiteral("untouched"));
    const QVector<ParamDescr::KeyframeType> types{ParamDescr::KeyframeType(keyframeType),
                                                  ParamDescr::KeyframeAnimated};
    KxKernelObjectData data(defaults, types, true);
    KxParamKeyframeVector at4 = valuesAt(4, {{0, 10}}, 2);
    KxParamKeyframeVector at8 = valuesAt(8, {{0, 20}}, 2);
    data.update(at4);
    data.update(at8);

    const KxParamKeyframeVector values = data.getKeyframesAt(frame);
    QCOMPARE(values[0].getValue().toInt(), expected);
    QCOMPARE(values[1].getValue().toString(), QStringLiteral("untouched"));
    QCOMPARE(values.getFrameNumber(), frame);
}

void tst_Kernel::animatedChangedAtTenReadAround_data()
{
    QTest::addColumn<qint64>("frame");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("visible");

    QTest::newRow("5: default") << qint64(5) << QPoint(1, 1) << true;
    QTest::newRow("10: the change") << qint64(10) << QPoint(30, 40) << false;
    QTest::newRow("20: carried on") << qint64(20) << QPoint(30, 40) << false;
}

void tst_Kernel::animatedChangedAtTenReadAround()
{
    QFETCH(qint64, frame);
    QFETCH(QPoint, pos);
    QFETCH(bool, visible);

    QScopedPointer<KxKernelObjectData> data(newObject(true));
    KxParamKeyframeVector change = valuesAt(10, {{0, false}, {3, QPoint(30, 40)}, {1, QColor(Qt::red)}});
    data->update(change);

    const KxParamKeyframeVector values = data->getKeyframesAt(frame);
    QCOMPARE(values[3].getValue().toPoint(), pos);
    QCOMPARE(values[0].getValue().toBool(), visible);
    // Colour is constant: the write at frame 10 changed it everywhere.
    QCOMPARE(values[1].getValue().value<QColor>(), QColor(Qt::red));
    QCOMPARE(data->getDefaultKeyframes()[1].getValue().value<QColor>(), QColor(Qt::red));
    QCOMPARE(data->getDefaultKeyframes()[3].getValue().toPoint(), QPoint(1, 1));
    QCOMPARE(data->getKeyframeNumbers(), QList<qint64>{10});
}

void tst_Kernel::nonAnimatedGivesDefaults()
{
    QScopedPointer<KxKernelObjectData> data(newObject(false));
    KxParamKeyframeVector change = valuesAt(10, {{3, QPoint(30, 40)}});
    data->update(change);
    KxParamKeyframeVector values = data->getKeyframesAt(10);
    QCOMPARE(values[3].getValue().toPoint(), QPoint(1, 1));
    QVERIFY(!values.hasFrameNumber());

    // Writing the vector back changes the defaults, never a frame.
    values[3].setValue(QPoint(2, 2));
    data->update(values);
    QCOMPARE(data->getDefaultKeyframes()[3].getValue().toPoint(), QPoint(2, 2));
    QCOMPARE(data->getKeyframeNumbers(), QList<qint64>{10});

    // The frame's key frame shows once the object is animated.
    data->animated = true;
    QCOMPARE(data->getKeyframesAt(10)[3].getValue().toPoint(), QPoint(30, 40));
    QCOMPARE(data->getKeyframesAt(9)[3].getValue().toPoint(), QPoint(2, 2));
}

void tst_Kernel::updateWritesOnlyHeldValues()
{
    QScopedPointer<KxKernelObjectData> data(newObject(false));
    KxParamKeyframeVector change(6);
    change[5].setValue(QPoint(7, 8));
    data->update(change);
    const KxParamKeyframeVector values = data->getDefaultKeyframes();
    QCOMPARE(values[5].getValue().toPoint(), QPoint(7, 8));
    QCOMPARE(values[0].getValue().toBool(), true);
    QCOMPARE(values[3].getValue().toPoint(), QPoint(1, 1));
    QVERIFY(!values[1].hasValue());
    QCOMPARE(change[5].getValue().toPoint(), QPoint(7, 8));
}

void tst_Kernel::signalSignatures_data()
{
    QTest::addColumn<QByteArray>("signature");

    // Receivers connect by these texts.
    for (const char* signature :
         {"signalObjectCreated(const int, const int, const KxKernelObjectData*)",
          "signalObjectChanged(const int, const int, const KxKernelObjectData*)",
          "signalObjectRemoved(const int, const int)", "signalObjectBeforeRemove(const int, const int)",
          "signalObjectShowValue(const int, const int, const QString&)",
          "signalCurrentResChangedByCamera(QSize, QSize)", "signalNewMediaReady(const KxMediaInfo&, bool&)",
          "signalAppAboutToClose()", "signalMediaLoaded()", "signalFrameReady(qint64)"})
        QTest::newRow(signature) << QByteArray(signature);
}

void tst_Kernel::signalSignatures()
{
    QFETCH(QByteArray, signature);
    const QByteArray normalized = QMetaObject::normalizedSignature(signature.constData());
    QVERIFY(KxSignalCenter::getInstance()->metaObject()->indexOfSignal(normalized.constData()) >= 0);
    QCOMPARE(store->getNotifier(), KxSignalCenter::getInstance());
}

void tst_Kernel::registrationFailures_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("expected");

    QTest::newRow("type, then descriptor") << "ok" << true;
    QTest::newRow("null manipulator") << "null manipulator" << false;
    QTest::newRow("type twice") << "type twice" << false;
    QTest::newRow("descriptor for unregistered type") << "unregistered" << false;
    QTest::newRow("descriptor twice") << "descriptor twice" << false;
    QTest::newRow("descriptor of another type") << "other type" << false;
    QTest::newRow("null descriptor") << "null descriptor" << false;
}

void tst_Kernel::registrationFailures()
{
    QFETCH(QString, what);
    QFETCH(bool, expected);

    TestManipulator manipulator(kType);
    TestManipulator second(kType);
    auto* descr = new KxKernelObjectDataDescr(kType, 9);
    bool result = false;
    if (what == QLatin1String("null manipulator")) {
        result = store->registerObjectType(nullptr, kType);
        QVERIFY(!store->getObjectTypes().contains(kType));
    } else if (what == QLatin1String("unregistered")) {
        result = store->registerDataDescriptor(descr, kType);
    } else {
        QVERIFY(store->registerObjectType(&manipulator, kType));
        if (what == QLatin1String("type twice")) {
            result = store->registerObjectType(&second, kType);
            QCOMPARE(store->getManipulator(kType), &manipulator);
        } else if (what == QLatin1String("descriptor twice")) {
            QVERIFY(store->registerDataDescriptor(new KxKernelObjectDataDescr(kType, 9), kType));
            result = store->registerDataDescriptor(descr, kType);
        } else if (what == QLatin1String("other type")) {
            auto* wrong = new KxKernelObjectDataDescr(kOtherType, 9);
            result = store->registerDataDescriptor(wrong, kType);
            delete wrong;
        } else if (what == QLatin1String("null descriptor")) {
            result = store->registerDataDescriptor(nullptr, kType);
        } else {
            result = store->registerDataDescriptor(descr, kType);
            QCOMPARE(store->getDataDescriptor(kType), descr);
        }
    }
    QCOMPARE(result, expected);
    if (store->getDataDescriptor(kType) != descr)
        delete descr;
}

void tst_Kernel::destroyedManipulatorUnregisters()
{
    {
        TestManipulator manipulator(kType);
        QVERIFY(store->registerObjectType(&manipulator, kType));
        QVERIFY(store->registerDataDescriptor(new KxKernelObjectDataDescr(kType, 9), kType));
        QVERIFY(store->insertObject(kType, 1, newObject()));
    }
    QVERIFY(!store->getManipulator(kType));
    QVERIFY(!store->getDataDescriptor(kType));
    QVERIFY(store->getObject(kType, 1));
    TestManipulator successor(kType);
    QVERIFY(store->registerObjectType(&successor, kType));
}

void tst_Kernel::insertTakeNotifyOrder()
{
    Recorder recorder;
    KxKernelObjectData* data = newObject();
    QVERIFY(store->insertObject(kType, 3, data));
    QCOMPARE(store->getObject(kType, 3), data);
    QCOMPARE(store->getObjectsOfType(kType).keys(), QList<int>{3});
    QVERIFY(store->notifyObjectChanged(kType, 3));
    QVERIFY(!store->notifyObjectChanged(kType, 4));
    QScopedPointer<KxKernelObjectData> taken(store->takeObject(kType, 3));
    QCOMPARE(taken.data(), data);
    QVERIFY(!store->takeObject(kType, 3));
    QVERIFY(store->getObjectsOfType(kType).isEmpty());
    QCOMPARE(recorder.log, QStringList({"created 7001:3", "changed 7001:3", "before 7001:3", "removed 7001:3"}));
    QCOMPARE(recorder.stored, QList<bool>({true, true, true}));
}

void tst_Kernel::nextFreeIndex()
{
    QCOMPARE(store->nextFreeIndex(kType), 1);
    QVERIFY(store->insertObject(kType, 1, newObject()));
    QVERIFY(store->insertObject(kType, 5, newObject()));
    QCOMPARE(store->nextFreeIndex(kType), 6);
    QCOMPARE(store->nextFreeIndex(kOtherType), 1);
}

void tst_Kernel::loadMediaClearsObjectsKeepsRegistry()
{
    TestManipulator manipulator(kType);
    QVERIFY(store->registerObjectType(&manipulator, kType));
    auto* descr = new KxKernelObjectDataDescr(kType, 9);
    QVERIFY(store->registerDataDescriptor(descr, kType));
    QVERIFY(store->insertObject(kType, 1, newObject()));
    QVERIFY(store->insertObject(kOtherType, 2, newObject()));
    store->setCurrentFrame(12);

    Recorder recorder;
    KxMediaInfo info;
    info.setFileName(QStringLiteral("next.png"));
    info.setUmPerPixel(0.5);
    store->loadMedia(info, QSize(640, 480));

    QCOMPARE(recorder.log, QStringList({"before 7001:1", "removed 7001:1", "before 7002:2", "removed 7002:2",
                                        "newMedia next.png", "loaded"}));
    QVERIFY(store->getObjectsOfType(kType).isEmpty());
    QVERIFY(store->getObjectsOfType(kOtherType).isEmpty());
    QCOMPARE(store->getCurrentFrame(), qint64(0));
    QCOMPARE(store->getCurrentImageSize(), QSize(640, 480));
    QCOMPARE(store->getMediaInfo().getFileName(), QStringLiteral("next.png"));
    QCOMPARE(store->getManipulator(kType), &manipulator);
    QCOMPARE(store->getDataDescriptor(kType), descr);

    // Loading with nothing stored is as safe.
    store->loadMedia(info, QSize(640, 480));
}

void tst_Kernel::frameAndResolutionSignals()
{
    Recorder recorder;
    store->setCurrentFrame(42);
    QCOMPARE(store->getCurrentFrame(), qint64(42));
    QCOMPARE(recorder.log, QStringList{"frame 42"});

    QSignalSpy resolution(KxSignalCenter::getInstance(), &KxSignalCenter::signalCurrentResChangedByCamera);
    store->changeCameraResolution(QSize(500, 250));
    store->changeCameraResolution(QSize(500, 250));
    QCOMPARE(resolution.count(), 1);
    QCOMPARE(resolution.at(0).at(0).toSize(), QSize(1000, 500));
    QCOMPARE(resolution.at(0).at(1).toSize(), QSize(500, 250));
    QCOMPARE(store->getCurrentImageSize(), QSize(500, 250));
}

void tst_Kernel::calibrationFromMediaOrCamera_data()
{
    QTest::addColumn<double>("mediaUm");
    QTest::addColumn<bool>("camera");
    QTest::addColumn<double>("objectiveUm");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("source");

    QTest::newRow("media 0.5 um over 1000 px") << 0.5 << false << 0.0 << 500.0 << "slide.png";
    QTest::newRow("media uncalibrated") << 0.0 << false << 2.0 << 0.0 << "slide.png";
    QTest::newRow("camera wins over media") << 0.5 << true << 2.0 << 2000.0 << "10x";
    QTest::newRow("camera objective uncalibrated") << 0.5 << true << 0.0 << 0.0 << "10x";
}

void tst_Kernel::calibrationFromMediaOrCamera()
{
    QFETCH(double, mediaUm);
    QFETCH(bool, camera);
    QFETCH(double, objectiveUm);
    QFETCH(double, value);
    QFETCH(QString, source);

    KxMediaInfo info;
    info.setFileName(QStringLiteral("slide.png"));
    info.setUmPerPixel(mediaUm);
    store->loadMedia(info, QSize(1000, 500));
    OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    devices->addObjective(QStringLiteral("10x"), objectiveUm);
    devices->setCurrentObjective(QStringLiteral("10x"));
    OvCamera cam(QStringLiteral("cam"), QSize(1000, 500));
    if (camera)
        devices->setActiveCamera(&cam);

    QString name;
    const KxCalibData calib = store->getCurrentCalibData(name);
    QCOMPARE(calib.value, value);
    QCOMPARE(calib.text, QStringLiteral("\u00B5m"));
    QCOMPARE(name, source);
    devices->setActiveCamera(nullptr);
}

void tst_Kernel::liveCameraMediaFollowsObjective()
{
    OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    devices->addObjective(QStringLiteral("40x"), 0.25);
    devices->setCurrentObjective(QStringLiteral("40x"));
    KxMediaInfo live;
    live.setParameter(KxMediaInfo::MetaImageSource, int(KxMediaInfo::SourceLiveCamera));
    store->loadMedia(live, QSize(800, 600));
    QCOMPARE(store->getMediaInfo().getUmPerPixelX(), 0.25);

    devices->setMeasurementCalibration(QStringLiteral("40x"), 0.1);
    QCOMPARE(store->getMediaInfo().getUmPerPixelX(), 0.1);
    QCOMPARE(store->getMediaInfo().getParameter(KxMediaInfo::MetaObjectiveName).toString(), QStringLiteral("40x"));

    // Half the resolution: each pixel covers twice as much.
    OvCamera camera(QStringLiteral("cam"), {QSize(800, 600), QSize(400, 300)});
    devices->setActiveCamera(&camera);
    QVERIFY(camera.setResolutionIndex(1));
    double seen = 0.0;
    auto connection = connect(KxSignalCenter::getInstance(), &KxSignalCenter::signalCurrentResChangedByCamera, this,
                              [this, &seen]() { seen = store->getMediaInfo().getUmPerPixelX(); });
    store->changeCameraResolution(QSize(400, 300));
    disconnect(connection);
    QCOMPARE(seen, 0.2);
    devices->setActiveCamera(nullptr);

    // A file keeps its own calibration.
    KxMediaInfo file;
    file.setUmPerPixel(3.0);
    store->loadMedia(file, QSize(800, 600));
    devices->setMeasurementCalibration(QStringLiteral("40x"), 0.2);
    QCOMPARE(store->getMediaInfo().getUmPerPixelX(), 3.0);
}

QTEST_MAIN(tst_Kernel)
#include "tst_kernel.moc"
