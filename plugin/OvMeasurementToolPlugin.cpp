#include "OvMeasurementToolPlugin.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxGsObject.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxMediaInfo.h"
#include "KxSignalCenter.h"
#include "KxView.h"
#include "OvCamera.h"
#include "OvDeviceSetManager.h"
#include "OvGuiMainWindowBase.h"
#include "OvGuiMeasurementTool.h"
#include "OvGsManipAngle.h"
#include "OvGsManipCircle.h"
#include "OvGsManipDistance.h"
#include "OvGsManipFreeForm.h"
#include "OvGsManipFreeLine.h"
#include "OvGsManipMultiply.h"
#include "OvGsManipParalell.h"
#include "OvToolBase.h"

#include <QEvent>
#include <QListWidget>
#include <QMainWindow>

namespace {
const char kFeatureName[] = "Measurement";
const char kConfigurationPage[] = "Device Configuration";
const int kOrderId = 50;
}

OvMeasurementToolPlugin::OvMeasurementToolPlugin()
    : QWidget(nullptr)
    , mainWindow(nullptr)
    , tool(nullptr)
    , panel(nullptr)
    , activationWanted(false)
    , manipulators{}
    , disabledByScale(false)
{
}

OvMeasurementToolPlugin::~OvMeasurementToolPlugin() = default;

QStringList OvMeasurementToolPlugin::featureList() const
{
    return QStringList() << QString::fromLatin1(kFeatureName);
}

int OvMeasurementToolPlugin::getOrderID()
{
    return kOrderId;
}

bool OvMeasurementToolPlugin::addFeatures(const QString& aFeatureName, QMainWindow* aMainWindow,
                                          QUndoStack* anUndoStack)
{
    mainWindow = nullptr;
    tool = nullptr;
    panel = nullptr;
    if (aFeatureName != QLatin1String(kFeatureName))
        return false;

    mainWindow = aMainWindow;
    activationWanted = false;
    disabledByScale = false;

    tool = new OvToolBase(static_cast<OvGuiMainWindowBase*>(aMainWindow), QStringLiteral("tool-measure"),
                          tr("Measurement"), QString::fromLatin1(kFeatureName), false);
    panel = new OvGuiMeasurementTool();
    panel->installEventFilter(this);
    tool->setGuiWidget(panel);
    tool->setEnabled(false, false);

    OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    connect(devices, SIGNAL(signalDeviceSetModified(int)), this, SLOT(slotDeviceSetModified(int)));

    // Creation order is registration order with the kernel store.
    manipulators[0] = new OvGsManipDistance(tool, panel, anUndoStack);
    manipulators[1] = new OvGsManipFreeForm(tool, panel, anUndoStack);
    manipulators[2] = new OvGsManipFreeLine(tool, panel, anUndoStack);
    manipulators[3] = new OvGsManipMultiply(tool, panel, anUndoStack);
    manipulators[4] = new OvGsManipParalell(tool, panel, anUndoStack);
    manipulators[5] = new OvGsManipCircle(tool, panel, anUndoStack);
    manipulators[6] = new OvGsManipAngle(tool, panel, anUndoStack);

    connect(tool, SIGNAL(toolActivated(bool)), this, SLOT(slotToolActivated(bool)));
    connect(devices, SIGNAL(signalCameraStatePermanentlyChanged(int)), this,
            SLOT(slotCameraStatePermanentlyChanged(int)));
    connect(devices, SIGNAL(signalCameraStateChanged(int)), this, SLOT(slotCameraStateChanged(int)));
    connect(KxSignalCenter::getInstance(), SIGNAL(signalMediaLoaded()), this, SLOT(slotMediaLoaded()));
    connect(KxGsEditor::getInstance(), SIGNAL(scaleChanged()), this, SLOT(slotEditorScaleChanged()));
    return true;
}

bool OvMeasurementToolPlugin::isCameraCalibrated()
{
    OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    return devices->getMeasurementCalibration(devices->getCurrentObjective(), -1) > 0.0;
}

bool OvMeasurementToolPlugin::isCurrentCalibration()
{
    return isCameraCalibrated() || KxKernelData::getInstance()->getMediaInfo().isCalibrated();
}

bool OvMeasurementToolPlugin::isOverrideManipulatorOurs() const
{
    KxGsManipulator* current = KxGsEditor::getInstance()->getOverrideManipulator();
    if (!current)
        return false;
    for (KxGsManipulator* manipulator : manipulators) {
        if (manipulator == current)
            return true;
    }
    return false;
}

bool OvMeasurementToolPlugin::eventFilter(QObject* /*anObj*/, QEvent* anEvent)
{
    if (anEvent->type() != QEvent::EnabledChange || !panel || panel->isEnabled())
        return false;
    if (isOverrideManipulatorOurs())
        KxGsEditor::getInstance()->restoreOverrideManipulator();
    return true;
}

void OvMeasurementToolPlugin::slotToolActivated(bool aToolActivate)
{
    activationWanted = aToolActivate;
    if (aToolActivate && !isCurrentCalibration()) {
        OvGuiMainWindowBase* window = static_cast<OvGuiMainWindowBase*>(mainWindow);
        if (!window)
            return;
        window->getConfigurationPanel()->show();
        QListWidget* pages = window->getConfigurationList();
        for (int row = 0; pages && row < pages->count(); ++row) {
            QListWidgetItem* item = pages->item(row);
            if (item->whatsThis() == QLatin1String(kConfigurationPage)) {
                pages->setCurrentItem(item);
                tool->slotActivate(false);
                tool->slotExpandGui(false);
                break;
            }
        }
        return;
    }
    if (!aToolActivate && isOverrideManipulatorOurs())
        KxGsEditor::getInstance()->restoreOverrideManipulator();
}

void OvMeasurementToolPlugin::slotDeviceSetModified(int aFlags)
{
    if (!(aFlags & (OvDeviceSetManager::FlagCameraChanged | OvDeviceSetManager::FlagObjectiveChanged)) || !tool)
        return;
    const bool wasBlocked = tool->blockSignals(true);
    if (OvDeviceSetManager::instance()->getActiveCamera()) {
        tool->setEnabled(true, false);
        tool->slotActivate(isCurrentCalibration() ? activationWanted : false);
    } else {
        const KxMediaInfo& media = KxKernelData::getInstance()->getMediaInfo();
        if (media.getParameter(KxMediaInfo::MetaImageSource).toInt() == KxMediaInfo::SourceLiveCamera) {
            tool->setEnabled(false, true);
            tool->slotActivate(activationWanted);
        }
    }
    tool->blockSignals(wasBlocked);
}

void OvMeasurementToolPlugin::slotCameraStatePermanentlyChanged(int aState)
{
    if (!(aState & OvCamera::StateDisconnected) || !tool)
        return;
    const bool wanted = activationWanted;
    tool->slotActivate(false);
    tool->setEnabled(false, false);
    activationWanted = wanted;
}

void OvMeasurementToolPlugin::slotCameraStateChanged(int aState)
{
    if ((aState & OvCamera::StateLive) && !isCameraCalibrated() && tool)
        tool->slotActivate(false);
}

void OvMeasurementToolPlugin::slotEditorScaleChanged()
{
    KxView* view = KxKernelData::getInstance()->getCurrentView();
    if (!view || !tool)
        return;
    const bool blocked = view->isScaleBlockingTool();
    if (blocked && tool->isEnabled()) {
        tool->setEnabled(false, false);
        disabledByScale = true;
    } else if (!blocked && disabledByScale) {
        tool->setEnabled(true, false);
        disabledByScale = false;
    }
}

void OvMeasurementToolPlugin::slotMediaLoaded()
{
    if (!tool)
        return;
    const bool wasBlocked = tool->blockSignals(true);
    KxKernelData* kernel = KxKernelData::getInstance();
    const KxMediaInfo& media = kernel->getMediaInfo();
    const int source = media.getParameter(KxMediaInfo::MetaImageSource).toInt();

    bool unusable;
    if (media.isVideoFile())
        unusable = true;
    else if (source == KxMediaInfo::SourceThumbnail || source == KxMediaInfo::SourceComposite)
        unusable = true;
    else if (source == KxMediaInfo::SourceLiveCamera)
        unusable = false;
    else
        unusable = !media.isCalibrated();

    if (unusable) {
        if (!disabledByScale)
            tool->setEnabled(false, true);
    } else {
        if (!disabledByScale) {
            tool->setEnabled(true, false);
            tool->slotActivate(activationWanted);
        }
        if (source == KxMediaInfo::SourceLiveCamera) {
            // A live picture's values follow the objective: refresh every label.
            const QList<KxGsObject*> objects = KxGsEditor::getInstance()->getAllChildGsObjects();
            for (KxGsObject* object : objects) {
                KxGsManipulator* manipulator = object->getManipulator();
                if (!manipulator)
                    continue;
                const int index = manipulator->getObjectIdx(object);
                const bool found = kernel->getObject(manipulator->getObjectType(), index) != nullptr;
                manipulator->updateDisplayValue(object, manipulator->getValueNameToDisplay(object), found, true);
            }
        }
    }
    tool->blockSignals(wasBlocked);
}
