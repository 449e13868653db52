#include "OvCamera.h"
#include "OvDeviceSetManager.h"

#include <QtTest>

// Acts on a device set ("10x" added, a camera at hand); true when the set
// answered as it should.
using DeviceAction = bool (*)(OvDeviceSetManager&, OvCamera&);
Q_DECLARE_METATYPE(DeviceAction)

namespace {

DeviceAction act(DeviceAction anAction)
{
    return anAction;
}

} // namespace

class tst_Devices : public QObject
{
    Q_OBJECT

private slots:
    void setterFlags_data()
    {
        QTest::addColumn<DeviceAction>("action");
        QTest::addColumn<QList<int>>("flags");

        using D = OvDeviceSetManager;
        using C = OvCamera;
        const int cam = D::FlagCameraChanged;
        const int obj = D::FlagObjectiveChanged;
        const int cal = D::FlagCalibrationChanged;
        const int units = D::FlagUnitsChanged;
        QTest::newRow("add objective") << act([](D& d, C&) { d.addObjective("20x", 0.5); return true; })
                                       << QList<int>{cal | units};
        QTest::newRow("switch objective") << act([](D& d, C&) { return d.setCurrentObjective("10x"); })
                                          << QList<int>{obj | units};
        QTest::newRow("switch to the current objective")
            << act([](D& d, C&) { return d.setCurrentObjective("Default"); }) << QList<int>{};
        QTest::newRow("switch to an unknown objective")
            << act([](D& d, C&) { return !d.setCurrentObjective("100x"); }) << QList<int>{};
        QTest::newRow("calibrate") << act([](D& d, C&) { return d.setMeasurementCalibration("Default", 2.0); })
                                   << QList<int>{cal | units};
        QTest::newRow("calibrate unknown objective")
            << act([](D& d, C&) { return !d.setMeasurementCalibration("100x", 2.0); }) << QList<int>{};
        QTest::newRow("same camera twice")
            << act([](D& d, C& c) { d.setActiveCamera(&c); d.setActiveCamera(&c); return true; })
            << QList<int>{cam | units};
        QTest::newRow("default set") << act([](D& d, C&) { d.createDefaultSet(); return true; })
                                     << QList<int>{cam | obj | cal | units};
    }

    void setterFlags()
    {
        QFETCH(DeviceAction, action);
        QFETCH(QList<int>, flags);

        OvDeviceSetManager devices(nullptr, nullptr);
        devices.createDefaultSet();
        devices.addObjective(QStringLiteral("10x"), 1.0);
        OvCamera camera(QStringLiteral("cam"), QSize(100, 100));
        QSignalSpy spy(&devices, &OvDeviceSetManager::signalDeviceSetModified);
        QVERIFY(action(devices, camera));
        QList<int> emitted;
        for (const auto& args : spy)
            emitted << args.at(0).toInt();
        QCOMPARE(emitted, flags);
    }

    void calibrationPerResolution_data()
    {
        QTest::addColumn<double>("calibration");
        QTest::addColumn<bool>("withCamera");
        QTest::addColumn<int>("askedIndex");
        QTest::addColumn<double>("expected");

        // At the full 2000 px width; the camera runs at half width.
        QTest::newRow("no camera: stored value") << 0.5 << false << -1 << 0.5;
        QTest::newRow("current half width: pixels twice as big") << 0.5 << true << -1 << 1.0;
        QTest::newRow("explicit quarter width") << 0.5 << true << 2 << 2.0;
        QTest::newRow("unknown resolution index") << 0.5 << true << 7 << 0.0;
        QTest::newRow("negative kept as uncalibrated") << -1.0 << false << -1 << -1.0;
        QTest::newRow("not a number") << qQNaN() << true << -1 << 0.0;
        QTest::newRow("infinite") << qInf() << true << -1 << 0.0;
    }

    void calibrationPerResolution()
    {
        QFETCH(double, calibration);
        QFETCH(bool, withCamera);
        QFETCH(int, askedIndex);
        QFETCH(double, expected);

        OvDeviceSetManager devices(nullptr, nullptr);
        devices.addObjective(QStringLiteral("10x"), 0.25);
        QVERIFY(devices.setMeasurementCalibration(QStringLiteral("10x"), calibration));
        OvCamera camera(QStringLiteral("cam"), {QSize(2000, 1500), QSize(1000, 750), QSize(500, 375)});
        QVERIFY(camera.setResolutionIndex(1));
        devices.setActiveCamera(withCamera ? &camera : nullptr);
        QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("10x"), askedIndex), expected);
        QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("unknown"), askedIndex), 0.0);
    }

    void cameraStateSignals()
    {
        OvDeviceSetManager devices(nullptr, nullptr);
        QSignalSpy changed(&devices, &OvDeviceSetManager::signalCameraStateChanged);
        QSignalSpy forGood(&devices, &OvDeviceSetManager::signalCameraStatePermanentlyChanged);
        // Without a camera there is no state to change.
        devices.setCameraState(OvCamera::StateLive);
        QCOMPARE(changed.count() + forGood.count(), 0);
        OvCamera camera(QStringLiteral("cam"), QSize(640, 480));
        devices.setActiveCamera(&camera);
        devices.setCameraState(OvCamera::StateLive);
        devices.setCameraState(OvCamera::StateLive | OvCamera::StateDisconnected);
        QCOMPARE(camera.getState(), int(OvCamera::StateLive | OvCamera::StateDisconnected));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(forGood.count(), 1);
    }

    void destroyedCameraIsForgotten()
    {
        // The shared set starts with one uncalibrated objective; other sets leave it alone.
        OvDeviceSetManager* shared = OvDeviceSetManager::instance();
        QVERIFY(shared->getObjectives() == QStringList{"Default"} && shared->getCurrentObjective() == "Default");
        QCOMPARE(shared->getMeasurementCalibration(QStringLiteral("Default"), -1), 0.0);
        OvDeviceSetManager devices(nullptr, nullptr);
        devices.addObjective(QStringLiteral("10x"), 0.5);
        {
            OvCamera camera(QStringLiteral("cam"), QList<QSize>());
            QCOMPARE(camera.getResolution(), QSize(640, 480));
            QVERIFY(!camera.setResolutionIndex(1));
            devices.setActiveCamera(&camera);
        }
        QVERIFY(!devices.getActiveCamera());
        devices.setCameraState(OvCamera::StateLive);
        QCOMPARE(devices.getMeasurementCalibration(QStringLiteral("10x"), -1), 0.5);
        QVERIFY(OvDeviceSetManager::instance() == shared && !shared->getActiveCamera());
    }
};

QTEST_MAIN(tst_Devices)
#include "tst_devices.moc"
