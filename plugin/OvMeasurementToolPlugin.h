#pragma once

#include "KxPluginInterface.h"

#include <QWidget>

class KxGsManipulator;
class OvGuiMeasurementTool;
class OvToolBase;
class QMainWindow;

// The plug-in object the host loads: adds the "Measurement" tool (tool entry,
// panel and the measurement manipulators) to the host's main window, then
// follows host-wide notifications to enable, disable, activate and deactivate
// the tool entry. It owns no measurement data and never deletes what it
// created: everything lives as long as the host process.
class OvMeasurementToolPlugin : public QWidget, public KxPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "OvMeasurementToolPlugin")
    Q_INTERFACES(KxPluginInterface)

public:
    OvMeasurementToolPlugin();
    ~OvMeasurementToolPlugin() override;

    QStringList featureList() const override;
    // Only "Measurement" (exact case) is offered; anything else creates nothing.
    bool addFeatures(const QString& aFeatureName, QMainWindow* aMainWindow,
                     QUndoStack* anUndoStack) override;
    int getOrderID() override;

    // True when the current objective of the device set is calibrated.
    static bool isCameraCalibrated();
    // True when there is something to measure with: a calibrated objective or
    // calibrated media.
    static bool isCurrentCalibration();

    static constexpr int kManipulatorCount = 7;

private Q_SLOTS:
    void slotToolActivated(bool aToolActivate);
    void slotEditorScaleChanged();
    void slotMediaLoaded();
    void slotCameraStatePermanentlyChanged(int aState);
    void slotCameraStateChanged(int aState);
    void slotDeviceSetModified(int aFlags);
    // Installed on the panel only. Consumes its enabled-change events; a
    // panel that becomes disabled hands the editor back to its default
    // manipulator when one of ours is active.
    bool eventFilter(QObject* anObj, QEvent* anEvent) override;

private:
    bool isOverrideManipulatorOurs() const;

    QMainWindow* mainWindow;
    OvToolBase* tool;
    OvGuiMeasurementTool* panel;
    bool activationWanted;
    KxGsManipulator* manipulators[kManipulatorCount];
    bool disabledByScale;
};
