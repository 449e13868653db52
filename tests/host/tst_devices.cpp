#include "OvCamera.h"
#include "OvDeviceSetManager.h"

#include <QtTest>

class tst_Devices : public QObject
{
    Q_OBJECT

private slots:
    void sharedInstanceHasDefaultSet();
    void setterFlags_data();
    void setterFlags();
    void calibrationPerResolution_data();
    void calibrationPerResolution();
    void badCalibrationInputs_data();
    void badCalibrationInputs();
    void cameraStateSignals_data();
    void cameraStateSignals();
    void destroyedCameraIsForgotten();
};

void tst_Devices::sharedInstanceHasDefaultSet()
{
    QVERIFY(!OvDeviceSetManager::theInstance);
    OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    QCOMPARE(OvDeviceSetManager::theInstance, devices);
    QCOMPARE(OvDeviceSetManager::instance(), devices);
    QCOMPARE(devices->getObjectives(), QStringList{"Default"});
    QCOMPARE(devices->getCurrentObjective(), QStringLiteral("Default"));
    QCOMPARE(devices->getMeasurementCalibration(QStringLiteral("Default"), -1), 0.0);
    QVERIFY(!devices->getActiveCamera());

    // Other managers leave the shared one alone.
    OvDeviceSetManager own(nullptr, "named");
    QCOMPARE(OvDeviceSetManager::theInstance, devices);
}

void tst_Devices::setterFlags_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QList<int>>("flags");

    const int camera = OvDeviceSetManager::FlagCameraChanged;
    const int objective = OvDeviceSetManager::FlagObjectiveChanged;
    const int calibration = OvDeviceSetManager::FlagCalibrationChanged;
    const int units = OvDeviceSetManager::FlagUnitsChanged;
    QTest::newRow("add objective") << "add" << QList<int>{calibration | units};
    QTest::newRow("switch objective") << "switch" << QList<int>{objective | units};
    QTest::newRow("switch to the current objective") << "switch same" << QList<int>{};
    QTest::newRow("switch to an unknown objective") << "switch unknown" << QList<int>{};
    QTest::newRow("calibrate") << "calibrate" << QList<int>{calibration | units};
    QTest::newRow("calibrate unknown objective") << "calibrate unknown" << QList<int>{};
    QTest::newRow("camera on") << "camera" << QList<int>{camera | units};
    QTest::newRow("same camera again") << "camera twice" << QList<int>{camera | units};
    QTest::newRow("default set") << "default" << QList<int>{camera | objective | calibration | units};
}

void tst_Devices::setterFlags()
{
    QFETCH(QString, action);
    QFETCH(QList<int>, flags);

    OvDeviceSetManager devices(nullptr, nullptr);
    devices.createDefaultSet();
    devices.addObjective(QStringLiteral("10x"), 1.0);
    OvCamera camera(QStringLiteral("cam"), QSize(100, 100));
    QSignalSpy spy(&devices, &OvDeviceSetManager::signalDeviceSetModified);

    bool accepted = true;
    if (action == QLatin1String("add"))
        devices.addObjective(QStringLiteral("20x"), 0.5);
    else if (action == QLatin1String("switch"))
        accepted = devices.setCurrentObjective(QStringLiteral("10x"));
    else if (action == QLatin1String("switch same"))
        accepted = devices.setCurrentObjective(QStringLiteral("Default"));
    else if (action == QLatin1String("switch unknown"))
        accepted = !devices.setCurrentObjective(QStringLiteral("100x"));
    else if (action == QLatin1String("calibrate"))
        accepted = devices.setMeasurementCalibration(QStringLiteral("Default"), 2.0);
    else if (action == QLatin1String("calibrate unknown"))
        accepted = !devices.setMeasurementCalibration(QStringLiteral("100x"), 2.0);
    else if (action == QLatin1String("camera"))
        devices.setActiveCamera(&camera);
    else if (action == QLatin1String("camera twice")) {
        devices.setActiveCamera(&camera);
        devices.setActiveCamera(&camera);
    } else
        devices.createDefaultSet();

    QVERIFY(accepted);
    QList<int> emitted;
    for (const auto& args : spy)
        emitted << args.at(0).toInt();
    QCOMPARE(emitted, flags);
}

void tst_Devices::calibrationPerResolution_data()
{
    QTest::addColumn<bool>("withCamera");
    QTest::addColumn<int>("currentIndex");
    QTest::addColumn<int>("askedIndex");
    QTest::addColumn<double>("expected");

    // 0.5 um per pixel at the full 2000 px width.
    QTest::newRow("no camera: stored value") << false << 0 << -1 << 0.5;
    QTest::newRow("full resolution") << true << 0 << -1 << 0.5;
    QTest::newRow("current half width: pixels twice as big") << true << 1 << -1 << 1.0;
    QTest::newRow("explicit quarter width") << true << 0 << 2 << 2.0;
    QTest::newRow("unknown resolution index") << true << 0 << 7 << 0.0;
}

void tst_Devices::calibrationPerResolution()
{
    QFETCH(bool, withCamera);
    QFETCH(int, currentIndex);
    QFETCH(int, askedIndex);
    QFETCH(double, expected);

    OvDeviceSetManager devices(nullptr, nullptr);
    devices.createDefaultSet();
    devices.addObjective(QStringLiteral("10x"), 0.5);
    OvCamera camera(QStringLiteral("cam"), {QSize(2000, 1500), QSize(1000, 750), QSize(500, 375)});
    QVERIFY(camera.setResolutionIndex(currentIndex));
    if (withCamera)
        devices.setActiveCamera(&camera);
    QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("10x"), askedIndex), expected);
    QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("unknown"), askedIndex), 0.0);
}

void tst_Devices::badCalibrationInputs_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("stored");

    QTest::newRow("negative kept as uncalibrated") << -1.0 << -1.0;
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("not a number") << qQNaN() << 0.0;
    QTest::newRow("infinite") << qInf() << 0.0;
}

void tst_Devices::badCalibrationInputs()
{
    QFETCH(double, value);
    QFETCH(double, stored);

    OvDeviceSetManager devices(nullptr, nullptr);
    devices.createDefaultSet();
    QVERIFY(devices.setMeasurementCalibration(QStringLiteral("Default"), value));
    OvCamera camera(QStringLiteral("cam"), QSize(640, 480));
    devices.setActiveCamera(&camera);
    QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("Default"), -1), stored);
    QVERIFY(!(devices.getMeasurementCalibration(QStringLiteral("Default"), -1) > 0.0));
}

void tst_Devices::cameraStateSignals_data()
{
    QTest::addColumn<bool>("withCamera");
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("changed");
    QTest::addColumn<int>("permanent");

    QTest::newRow("live started") << true << int(OvCamera::StateLive) << 1 << 0;
    QTest::newRow("stopped") << true << 0 << 1 << 0;
    QTest::newRow("disconnected for good") << true << int(OvCamera::StateDisconnected) << 1 << 1;
    QTest::newRow("both bits") << true << int(OvCamera::StateLive | OvCamera::StateDisconnected) << 1 << 1;
    QTest::newRow("no camera: ignored") << false << int(OvCamera::StateLive) << 0 << 0;
}

void tst_Devices::cameraStateSignals()
{
    QFETCH(bool, withCamera);
    QFETCH(int, state);
    QFETCH(int, changed);
    QFETCH(int, permanent);

    OvDeviceSetManager devices(nullptr, nullptr);
    OvCamera camera(QStringLiteral("cam"), QSize(640, 480));
    if (withCamera)
        devices.setActiveCamera(&camera);
    QSignalSpy changedSpy(&devices, &OvDeviceSetManager::signalCameraStateChanged);
    QSignalSpy permanentSpy(&devices, &OvDeviceSetManager::signalCameraStatePermanentlyChanged);
    devices.setCameraState(state);
    QCOMPARE(changedSpy.count(), changed);
    QCOMPARE(permanentSpy.count(), permanent);
    if (changed)
        QCOMPARE(changedSpy.at(0).at(0).toInt(), state);
    QCOMPARE(camera.getState(), withCamera ? state : 0);
}

void tst_Devices::destroyedCameraIsForgotten()
{
    OvDeviceSetManager devices(nullptr, nullptr);
    devices.createDefaultSet();
    devices.addObjective(QStringLiteral("10x"), 0.5);
    {
        OvCamera camera(QStringLiteral("cam"), QList<QSize>());
        QCOMPARE(camera.getResolution(), QSize(640, 480));
        QVERIFY(!camera.setResolutionIndex(1));
        devices.setActiveCamera(&camera);
        QCOMPARE(devices.getActiveCamera(), &camera);
    }
    QVERIFY(!devices.getActiveCamera());
    devices.setCameraState(OvCamera::StateLive);
    QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("10x"), -1), 0.5);
}

QTEST_MAIN(tst_Devices)
#include "tst_devices.moc"
