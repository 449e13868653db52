// The plug-in as the host sees it: loaded with QPluginLoader, cast by the
// interface identifier, asked for its features and then following the host's
// notifications with its tool entry.
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxMediaInfo.h"
#include "KxPluginInterface.h"
#include "KxSignalCenter.h"
#include "OvCamera.h"
#include "OvDeviceSetManager.h"
#include "OvGuiMainWindowBase.h"
#include "OvToolBase.h"

#include <QJsonObject>
#include <QListWidget>
#include <QPluginLoader>
#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

namespace {

const QString kPluginFile = QStringLiteral(OV_PLUGIN_DIR "/libOvMeasurementTool.so");

void loadPicture(bool aCalibrated, int aSource = KxMediaInfo::SourceFile, bool aVideo = false)
{
    KxMediaInfo media;
    media.setFileName(QStringLiteral("picture.png"));
    media.setUmPerPixel(aCalibrated ? 0.5 : 0.0);
    media.setParameter(KxMediaInfo::MetaImageSource, aSource);
    media.setVideoFile(aVideo);
    KxKernelData::getInstance()->loadMedia(media, QSize(640, 480));
}

} // namespace

class tst_Plugin : public QObject
{
    Q_OBJECT

private:
    OvToolBase* tool() const
    {
        const QList<OvToolBase*> tools = window->getToolEntries();
        return tools.isEmpty() ? nullptr : tools.first();
    }

    QPluginLoader loader{ kPluginFile };
    QObject* instance = nullptr;
    KxPluginInterface* plugin = nullptr;
    OvGuiMainWindowBase* window = nullptr;
    QUndoStack undoStack;

private Q_SLOTS:
    void initTestCase()
    {
        instance = loader.instance();
        QVERIFY2(instance, qPrintable(loader.errorString()));
        plugin = qobject_cast<KxPluginInterface*>(instance);
        QVERIFY(plugin);
        window = new OvGuiMainWindowBase;
        window->addConfigurationPage(QStringLiteral("Device Configuration"), new QWidget);
        window->getEditor()->setImage(QImage(640, 480, QImage::Format_RGB32));
    }

    void cleanupTestCase() { delete window; }

    void metadataNamesThePluginClass()
    {
        const QJsonObject meta = loader.metaData();
        QCOMPARE(meta.value(QStringLiteral("IID")).toString(), QStringLiteral("OvMeasurementToolPlugin"));
        QCOMPARE(meta.value(QStringLiteral("className")).toString(), QStringLiteral("OvMeasurementToolPlugin"));
        QVERIFY(meta.value(QStringLiteral("MetaData")).toObject().isEmpty());
        QCOMPARE(instance->metaObject()->className(), "OvMeasurementToolPlugin");
        QCOMPARE(QLatin1String(qobject_interface_iid<KxPluginInterface*>()),
                 QLatin1String("com.Vellmora.plugin.ManipulatorPluginInterface/1.0"));
    }

    void instanceIsShared()
    {
        QPluginLoader second(kPluginFile);
        QCOMPARE(second.instance(), instance);
    }

    void featuresAndOrder()
    {
        QCOMPARE(plugin->featureList(), QStringList{ QStringLiteral("Measurement") });
        QCOMPARE(plugin->getOrderID(), 50);
    }

    void wrongInterfaceIsRefused()
    {
        QPluginLoader wrong(QStringLiteral(OV_WRONG_PLUGIN));
        QObject* object = wrong.instance();
        QVERIFY2(object, qPrintable(wrong.errorString()));
        QVERIFY(!qobject_cast<KxPluginInterface*>(object));
    }

    void brokenLibraryGivesAMessage()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("libBroken.so"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("this is not a shared library");
        file.close();
        QPluginLoader broken(path);
        QVERIFY(!broken.instance());
        QVERIFY(!broken.errorString().isEmpty());
    }

    void otherFeatureNamesCreateNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("lower case") << QStringLiteral("measurement");
        QTest::newRow("upper case") << QStringLiteral("MEASUREMENT");
        QTest::newRow("trailing space") << QStringLiteral("Measurement ");
        QTest::newRow("empty") << QString();
        QTest::newRow("other feature") << QStringLiteral("Annotation");
    }
    void otherFeatureNamesCreateNothing()
    {
        QFETCH(QString, name);
        QVERIFY(!plugin->addFeatures(name, window, &undoStack));
        QVERIFY(window->getToolEntries().isEmpty());
        QVERIFY(!window->findChild<QWidget*>(QStringLiteral("theDistanceButton")));
    }

    void measurementCreatesToolEntryAndPanel()
    {
        QVERIFY(plugin->addFeatures(QStringLiteral("Measurement"), window, &undoStack));
        QCOMPARE(window->getToolEntries().size(), 1);
        QCOMPARE(tool()->getName(), QStringLiteral("Measurement"));
        QCOMPARE(tool()->getIconName(), QStringLiteral("tool-measure"));
        QVERIFY(!tool()->isEnabled());
        QVERIFY(tool()->getGuiWidget());
        QCOMPARE(tool()->getGuiWidget()->metaObject()->className(), "OvGuiMeasurementTool");
        QVERIFY(window->findChild<QToolButton*>(QStringLiteral("theDistanceButton")));
        // The distance manipulator registered its object type.
        QVERIFY(KxKernelData::getInstance()->getManipulator(66653));
        // Every other kind registered its type with its own manipulator.
        const QList<QPair<int, QByteArray>> kinds{ { 66655, "OvGsManipFreeForm" }, { 66755, "OvGsManipFreeLine" },
                                                   { 66658, "OvGsManipMultiply" }, { 66659, "OvGsManipParalell" },
                                                   { 66656, "OvGsManipCircle" }, { 66651, "OvGsManipAngle" } };
        for (const auto& kind : kinds) {
            const KxGsManipulator* manipulator = KxKernelData::getInstance()->getManipulator(kind.first);
            QVERIFY(manipulator);
            QCOMPARE(QByteArray(manipulator->metaObject()->className()), kind.second);
        }
    }

    void init()
    {
        if (!tool())
            return;
        KxGsEditor::getInstance()->restoreOverrideManipulator();
        KxGsEditor::getInstance()->setZoom(1.0);
        OvDeviceSetManager::instance()->setActiveCamera(nullptr);
        tool()->slotActivate(false);
        loadPicture(true);
    }

    void mediaDecidesWhetherToolIsEnabled_data()
    {
        QTest::addColumn<bool>("calibrated");
        QTest::addColumn<int>("source");
        QTest::addColumn<bool>("video");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("calibrated file") << true << int(KxMediaInfo::SourceFile) << false << true;
        QTest::newRow("uncalibrated file") << false << int(KxMediaInfo::SourceFile) << false << false;
        QTest::newRow("calibrated video") << true << int(KxMediaInfo::SourceFile) << true << false;
        QTest::newRow("uncalibrated live picture") << false << int(KxMediaInfo::SourceLiveCamera) << false << true;
        QTest::newRow("calibrated thumbnail") << true << int(KxMediaInfo::SourceThumbnail) << false << false;
        QTest::newRow("calibrated composite") << true << int(KxMediaInfo::SourceComposite) << false << false;
        QTest::newRow("unknown source, calibrated") << true << 7 << false << true;
    }
    void mediaDecidesWhetherToolIsEnabled()
    {
        QFETCH(bool, calibrated);
        QFETCH(int, source);
        QFETCH(bool, video);
        QFETCH(bool, enabled);
        QSignalSpy activated(tool(), &OvToolBase::toolActivated);
        loadPicture(calibrated, source, video);
        QCOMPARE(tool()->isEnabled(), enabled);
        QCOMPARE(tool()->isDisabledByMedia(), !enabled);
        QCOMPARE(activated.count(), 0); // signals are blocked while the plug-in decides
    }

    void calibratingThePictureEnablesTheTool()
    {
        loadPicture(false);
        QVERIFY(!tool()->isEnabled());
        KxKernelData::getInstance()->setMediaCalibration(0.25);
        Q_EMIT KxSignalCenter::getInstance()->signalMediaLoaded();
        QVERIFY(tool()->isEnabled());
    }

    void activationWithoutCalibrationOpensDeviceConfiguration()
    {
        loadPicture(false, KxMediaInfo::SourceLiveCamera);
        QVERIFY(tool()->isEnabled());
        QListWidget* pages = window->getConfigurationList();
        pages->setCurrentRow(-1);
        tool()->slotActivate(true);
        QVERIFY(window->getConfigurationPanel()->isVisible());
        QVERIFY(pages->currentItem());
        QCOMPARE(pages->currentItem()->whatsThis(), QStringLiteral("Device Configuration"));
        QVERIFY(!tool()->isActive());
        QVERIFY(!tool()->isExpanded());
        window->getConfigurationPanel()->hide();
    }

    void missingConfigurationPageLeavesToolActive()
    {
        loadPicture(false, KxMediaInfo::SourceLiveCamera);
        QListWidget* pages = window->getConfigurationList();
        QListWidgetItem* page = pages->takeItem(0);
        tool()->slotActivate(true);
        QVERIFY(tool()->isActive());
        pages->insertItem(0, page);
        window->getConfigurationPanel()->hide();
    }

    void activationWithCalibratedObjectiveStaysActive()
    {
        loadPicture(false, KxMediaInfo::SourceLiveCamera);
        OvDeviceSetManager* devices = OvDeviceSetManager::instance();
        devices->setMeasurementCalibration(devices->getCurrentObjective(), 0.8);
        tool()->slotActivate(true);
        QVERIFY(tool()->isActive());
        devices->setMeasurementCalibration(devices->getCurrentObjective(), 0.0);
    }

    void permanentCameraChangeKeepsActivationWish()
    {
        tool()->slotActivate(true);
        QVERIFY(tool()->isActive());
        Q_EMIT OvDeviceSetManager::instance()->signalCameraStatePermanentlyChanged(OvCamera::StateDisconnected);
        QVERIFY(!tool()->isActive());
        QVERIFY(!tool()->isEnabled());
        loadPicture(true);
        QVERIFY(tool()->isEnabled());
        QVERIFY(tool()->isActive()); // the wish survived
    }

    void cameraStateWithoutPermanentBitIsIgnored()
    {
        tool()->slotActivate(true);
        Q_EMIT OvDeviceSetManager::instance()->signalCameraStatePermanentlyChanged(OvCamera::StateLive);
        QVERIFY(tool()->isActive());
        QVERIFY(tool()->isEnabled());
    }

    void liveCameraWithoutCalibrationDeactivates()
    {
        tool()->slotActivate(true);
        Q_EMIT OvDeviceSetManager::instance()->signalCameraStateChanged(OvCamera::StateLive);
        QVERIFY(!tool()->isActive());
    }

    void deviceSetFlags_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("withCamera");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("camera flag with camera") << 0x80 << true << true;
        QTest::newRow("objective flag with camera") << 0x100 << true << true;
        QTest::newRow("calibration flag only") << 0x200 << true << false;
        QTest::newRow("units flag only") << 0x400 << true << false;
        QTest::newRow("objective flag, no camera, file") << 0x100 << false << false;
    }
    void deviceSetFlags()
    {
        QFETCH(int, flags);
        QFETCH(bool, withCamera);
        QFETCH(bool, enabled);
        loadPicture(false);
        QVERIFY(!tool()->isEnabled());
        OvCamera camera(QStringLiteral("Simulated"), QSize(1280, 960));
        if (withCamera) {
            const QSignalBlocker blocker(OvDeviceSetManager::instance());
            OvDeviceSetManager::instance()->setActiveCamera(&camera);
        }
        Q_EMIT OvDeviceSetManager::instance()->signalDeviceSetModified(flags);
        QCOMPARE(tool()->isEnabled(), enabled);
        const QSignalBlocker blocker(OvDeviceSetManager::instance());
        OvDeviceSetManager::instance()->setActiveCamera(nullptr);
    }

    void liveSourceWithoutCameraDisablesByMedia()
    {
        loadPicture(true);
        KxKernelData::getInstance()->getMediaInfo().setParameter(KxMediaInfo::MetaImageSource,
                                                                 int(KxMediaInfo::SourceLiveCamera));
        Q_EMIT OvDeviceSetManager::instance()->signalDeviceSetModified(0x100);
        QVERIFY(!tool()->isEnabled());
        QVERIFY(tool()->isDisabledByMedia());
    }

    void tinyZoomDisablesUntilZoomReturns()
    {
        QVERIFY(tool()->isEnabled());
        KxGsEditor::getInstance()->setZoom(1.0 / 32.0);
        QVERIFY(!tool()->isEnabled());
        // A media load while disabled by scale leaves it disabled.
        loadPicture(true);
        QVERIFY(!tool()->isEnabled());
        KxGsEditor::getInstance()->setZoom(0.5);
        QVERIFY(tool()->isEnabled());
    }

    void disablingThePanelRestoresTheDefaultManipulator()
    {
        auto* button = window->findChild<QToolButton*>(QStringLiteral("theDistanceButton"));
        QVERIFY(button);
        button->setChecked(true);
        QVERIFY(KxGsEditor::getInstance()->getOverrideManipulator());
        tool()->setEnabled(false, false);
        QVERIFY(!KxGsEditor::getInstance()->getOverrideManipulator());
        tool()->setEnabled(true, false);
    }

    void deactivatingTheToolRestoresTheDefaultManipulator_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("type");
        QTest::newRow("distance") << "theDistanceButton" << 66653;
        QTest::newRow("circle") << "theRadiusButton" << 66656;
        QTest::newRow("angle, the last manipulator") << "theAngleButton" << 66651;
    }

    void deactivatingTheToolRestoresTheDefaultManipulator()
    {
        QFETCH(QString, button);
        QFETCH(int, type);
        tool()->slotActivate(true);
        window->findChild<QToolButton*>(button)->setChecked(true);
        QVERIFY(KxGsEditor::getInstance()->getOverrideManipulator());
        QCOMPARE(KxGsEditor::getInstance()->getOverrideManipulator()->getObjectType(), type);
        tool()->slotActivate(false);
        QVERIFY(!KxGsEditor::getInstance()->getOverrideManipulator());
    }
};

QTEST_MAIN(tst_Plugin)
#include "tst_plugin.moc"
