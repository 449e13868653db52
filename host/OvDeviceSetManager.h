#pragma once

#include "KxHostGlobal.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class OvCamera;

// The device set: objectives with their calibration and the active camera.
// Calibrations are micrometres per pixel at the camera's full resolution
// (index 0); other resolutions scale with their width. Values of 0 or below
// mean uncalibrated.
class KX_HOST_EXPORT OvDeviceSetManager : public QObject
{
    Q_OBJECT

public:
    // Bits of signalDeviceSetModified.
    enum ModifiedFlags
    {
        FlagCameraChanged = 0x80,
        FlagObjectiveChanged = 0x100,
        FlagCalibrationChanged = 0x200,
        // Values shown in calibrated units must be recalculated.
        FlagUnitsChanged = 0x400
    };

    // Does not set theInstance.
    OvDeviceSetManager(QObject* aParent, const char* aName);

    // Null until someone creates the shared manager.
    static OvDeviceSetManager* theInstance;
    // theInstance, created with the default set when null.
    static OvDeviceSetManager* instance();

    // One objective "Default", uncalibrated, current; no camera. Emits all flags.
    void createDefaultSet();

    // Adds or replaces an objective. Emits FlagCalibrationChanged | FlagUnitsChanged.
    void addObjective(const QString& aName, double anUmPerPixel);
    QStringList getObjectives() const;
    // False (nothing emitted) for an unknown objective; else emits
    // FlagObjectiveChanged | FlagUnitsChanged when it changes.
    bool setCurrentObjective(const QString& aName);
    QString getCurrentObjective() const;

    // Micrometres per pixel of the objective at the camera resolution
    // aResolutionIndex (-1 = the current one; without a camera the stored
    // value). 0 for an unknown objective or resolution; 0 or below =
    // uncalibrated.
    double getMeasurementCalibration(const QString& anObjective, int aResolutionIndex) const;
    // False for an unknown objective; else emits FlagCalibrationChanged | FlagUnitsChanged.
    bool setMeasurementCalibration(const QString& anObjective, double anUmPerPixel);

    // Not owned; forgotten when it is destroyed. Emits FlagCameraChanged
    // (| FlagUnitsChanged) when it changes.
    OvCamera* getActiveCamera() const;
    void setActiveCamera(OvCamera* aCamera);
    // Sets the active camera's state (ignored without one) and emits
    // signalCameraStateChanged; with OvCamera::StateDisconnected also
    // signalCameraStatePermanentlyChanged.
    void setCameraState(int aState);

signals:
    void signalDeviceSetModified(int aFlags);
    void signalCameraStatePermanentlyChanged(int aState);
    void signalCameraStateChanged(int aState);

private:
    QMap<QString, double> objectives;
    QString currentObjective;
    QPointer<OvCamera> activeCamera;
};
