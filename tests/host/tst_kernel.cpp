#include "GsTestHelper.h"

#include "KxKernelObjectDataDescr.h"
#include "KxSignalCenter.h"
#include "OvCamera.h"
#include "OvDeviceSetManager.h"

namespace {

KxMediaInfo media(const QString& aFileName, double anUmPerPixel)
{
    KxMediaInfo info;
    info.setFileName(aFileName);
    info.setUmPerPixel(anUmPerPixel);
    return info;
}

} // namespace

class tst_Kernel : public QObject
{
    Q_OBJECT

    KxKernelData* store = KxKernelData::getInstance();

private slots:
    void init()
    {
        store->removeAllObjects();
        for (int type : store->getObjectTypes())
            store->unregisterObjectType(type);
        OvDeviceSetManager::instance()->createDefaultSet();
        store->loadMedia(KxMediaInfo(), QSize(1000, 500));
    }

    void cleanup() { store->removeAllObjects(); }

    void descriptorLayoutAndNames()
    {
        KxKernelObjectDataDescr descr(kBoxType, 2);
        descr.addDefaultParamsDescr();
        // The shared parameters every measurement has, at fixed ids; visibility
        // and position may change over time, style may not.
        const QStringList names{"visible", "color", "valueName", "pos", "alwaysHidden"};
        const QList<int> types{QMetaType::Bool, QMetaType::QColor, QMetaType::QString, QMetaType::QPoint,
                               QMetaType::Bool};
        for (int id = 0; id < names.size(); ++id) {
            QCOMPARE(descr.getParamId(names[id]), id);
            QCOMPARE(int(descr.getParamDescr(id).type), types[id]);
            QCOMPARE(descr.getKeyframeTypes().at(id),
                     id == 0 || id == 3 ? ParamDescr::KeyframeAnimated : ParamDescr::KeyframeConstant);
        }
        // Adding beyond the count grows it; a name belongs to one id only.
        QVERIFY(descr.addParamDescr(8, QStringLiteral("ut"), QMetaType::Int, ParamDescr::KeyframeConstant));
        QVERIFY(!descr.addParamDescr(5, QStringLiteral("pos"), QMetaType::QPoint, ParamDescr::KeyframeAnimated));
        KxParamKeyframeVector shorter(4);
        QVERIFY(descr.createKeyframeVector().size() == 9 && !descr.setValue(shorter, QStringLiteral("ut"), 1));
    }

    void valueAtFrame_data()
    {
        QTest::addColumn<bool>("animated");
        QTest::addColumn<int>("keyframeType");
        QTest::addColumn<qint64>("frame");
        QTest::addColumn<int>("expected");

        // Default 0, key frames 10 at frame 4 and 20 at frame 8.
        const int animated = ParamDescr::KeyframeAnimated;
        const int discrete = ParamDescr::KeyframeDiscrete;
        QTest::newRow("animated before first key") << true << animated << qint64(3) << 0;
        QTest::newRow("animated between keys") << true << animated << qint64(7) << 10;
        QTest::newRow("animated after last key") << true << animated << qint64(100) << 20;
        QTest::newRow("discrete at key") << true << discrete << qint64(4) << 10;
        QTest::newRow("discrete between keys") << true << discrete << qint64(7) << 0;
        QTest::newRow("constant: writes went to defaults") << true << int(ParamDescr::KeyframeConstant) << qint64(0)
                                                           << 20;
        QTest::newRow("not animated: defaults at a key") << false << animated << qint64(4) << 0;
    }

    void valueAtFrame()
    {
        QFETCH(bool, animated);
        QFETCH(int, keyframeType);
        QFETCH(qint64, frame);
        QFETCH(int, expected);

        KxParamKeyframeVector defaults = keyframes(-1, {{0, 0}, {1, QStringLiteral("untouched")}}, 2);
        KxKernelObjectData data(defaults, {ParamDescr::KeyframeType(keyframeType), ParamDescr::KeyframeAnimated},
                                animated);
        for (qint64 key : {4, 8}) {
            KxParamKeyframeVector change = keyframes(key, {{0, int(key / 4 * 10)}}, 2);
            data.update(change);
        }
        KxParamKeyframeVector values = data.getKeyframesAt(frame);
        QCOMPARE(values[0].getValue().toInt(), expected);
        QCOMPARE(values[1].getValue().toString(), QStringLiteral("untouched"));
        QCOMPARE(values.getFrameNumber(), animated ? frame : -1);
        QCOMPARE(data.getKeyframeNumbers(), keyframeType == ParamDescr::KeyframeConstant ? QList<qint64>()
                                                                                          : QList<qint64>({4, 8}));
        if (animated)
            return;
        // Written back, values read from a still object change the defaults, never a frame.
        values[0].setValue(2);
        data.update(values);
        QCOMPARE(data.getDefaultKeyframes()[0].getValue().toInt(), 2);
        QCOMPARE(data.getKeyframeNumbers(), QList<qint64>({4, 8}));
        // The key frames show once the object is animated.
        data.animated = true;
        QCOMPARE(data.getKeyframesAt(frame)[0].getValue().toInt(), 10);
    }

    void registration()
    {
        auto* descr = new KxKernelObjectDataDescr(kBoxType, 9);
        {
            BareManipulator manipulator(kBoxType);
            BareManipulator second(kBoxType);
            // Refused registrations leave ownership with the caller.
            QVERIFY(!store->registerObjectType(nullptr, kBoxType));
            KxKernelObjectDataDescr early(kBoxType, 9);
            QVERIFY(!store->registerDataDescriptor(&early, kBoxType));
            QVERIFY(store->registerObjectType(&manipulator, kBoxType));
            QVERIFY(!store->registerObjectType(&second, kBoxType) && store->getManipulator(kBoxType) == &manipulator);
            QVERIFY(!store->registerDataDescriptor(nullptr, kBoxType));
            KxKernelObjectDataDescr wrong(kOtherBoxType, 9);
            QVERIFY(!store->registerDataDescriptor(&wrong, kBoxType));
            QVERIFY(store->registerDataDescriptor(descr, kBoxType));
            QCOMPARE(store->getDataDescriptor(kBoxType), descr);
            KxKernelObjectDataDescr twice(kBoxType, 9);
            QVERIFY(!store->registerDataDescriptor(&twice, kBoxType));
            QVERIFY(store->insertObject(kBoxType, 1, newBoxData(kBoxType)));
        }
        // A destroyed manipulator takes its registration and descriptor along, not the objects.
        QVERIFY(!store->getManipulator(kBoxType) && !store->getDataDescriptor(kBoxType));
        QVERIFY(store->getObject(kBoxType, 1));
        BareManipulator successor(kBoxType);
        QVERIFY(store->registerObjectType(&successor, kBoxType));
    }

    void indexesAndNotifications()
    {
        KernelRecorder recorder;
        store->setCurrentFrame(42);
        QCOMPARE(store->nextFreeIndex(kBoxType), 1);
        QVERIFY(store->insertObject(kBoxType, 3, newBoxData(kBoxType)));
        QCOMPARE(store->nextFreeIndex(kBoxType), 4);
        QCOMPARE(store->nextFreeIndex(kOtherBoxType), 1);
        QVERIFY(store->notifyObjectChanged(kBoxType, 3) && !store->notifyObjectChanged(kBoxType, 4));
        delete store->takeObject(kBoxType, 3);
        QVERIFY(!store->takeObject(kBoxType, 3));
        QCOMPARE(recorder.log, QStringList({"frame 42", "created 70001:3", "changed 70001:3", "before 70001:3",
                                            "removed 70001:3"}));
        QCOMPARE(recorder.stored, QList<bool>({true, true, true, true}));
    }

    void loadMediaClearsObjectsKeepsRegistry()
    {
        BareManipulator manipulator(kBoxType);
        QVERIFY(store->registerObjectType(&manipulator, kBoxType));
        QVERIFY(store->insertObject(kBoxType, 1, newBoxData(kBoxType)));
        QVERIFY(store->insertObject(kOtherBoxType, 2, newBoxData(kOtherBoxType)));
        store->setCurrentFrame(12);

        KernelRecorder recorder;
        store->loadMedia(media(QStringLiteral("next.png"), 0.0), QSize(640, 480));
        QCOMPARE(recorder.log, QStringList({"before 70001:1", "removed 70001:1", "before 70002:2", "removed 70002:2",
                                            "newMedia next.png", "loaded"}));
        QVERIFY(store->getCurrentFrame() == 0 && store->getCurrentImageSize() == QSize(640, 480));
        QCOMPARE(store->getManipulator(kBoxType), &manipulator);
    }

    void calibrationFromPictureOrCamera()
    {
        store->loadMedia(media(QStringLiteral("slide.png"), 0.5), QSize(1000, 500));
        OvDeviceSetManager* devices = OvDeviceSetManager::instance();
        devices->addObjective(QStringLiteral("40x"), 0.25);
        devices->setCurrentObjective(QStringLiteral("40x"));
        // The width of the picture in its own unit, 0.5 um over 1000 px.
        QString name;
        QVERIFY(store->getCurrentCalibData(name).value == 500.0 && name == QLatin1String("slide.png"));
        // A camera wins over the picture.
        OvCamera still(QStringLiteral("cam"), QSize(1000, 500));
        devices->setActiveCamera(&still);
        const KxCalibData calib = store->getCurrentCalibData(name);
        QCOMPARE(calib.value, 250.0);
        QVERIFY(calib.text == QStringLiteral("\u00B5m") && name == QLatin1String("40x"));
        devices->setActiveCamera(nullptr);
        store->loadMedia(media(QStringLiteral("slide.png"), 0.0), QSize(1000, 500));
        QCOMPARE(store->getCurrentCalibData(name).value, 0.0);
    }

    void liveCalibrationFollowsObjectiveAndResolutionBeforeReceivers()
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

        // Half the resolution: each pixel covers twice as much, already when receivers hear of it.
        OvCamera camera(QStringLiteral("cam"), {QSize(800, 600), QSize(400, 300)});
        devices->setActiveCamera(&camera);
        QVERIFY(camera.setResolutionIndex(1));
        QList<QVariant> seen;
        QObject scope;
        connect(KxSignalCenter::getInstance(), &KxSignalCenter::signalCurrentResChangedByCamera, &scope,
                [&](QSize anOld, QSize aNew) { seen << anOld << aNew << store->getMediaInfo().getUmPerPixelX(); });
        store->changeCameraResolution(QSize(400, 300));
        store->changeCameraResolution(QSize(400, 300));
        QCOMPARE(seen, QList<QVariant>({QSize(800, 600), QSize(400, 300), 0.2}));
        QCOMPARE(store->getCurrentImageSize(), QSize(400, 300));
        devices->setActiveCamera(nullptr);

        // A file keeps its own calibration.
        store->loadMedia(media(QStringLiteral("file.png"), 3.0), QSize(800, 600));
        devices->setMeasurementCalibration(QStringLiteral("40x"), 0.2);
        QCOMPARE(store->getMediaInfo().getUmPerPixelX(), 3.0);
    }
};

QTEST_MAIN(tst_Kernel)
#include "tst_kernel.moc"
