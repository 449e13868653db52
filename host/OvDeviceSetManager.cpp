#include "OvDeviceSetManager.h"

#include "OvCamera.h"

#include <cmath>

OvDeviceSetManager* OvDeviceSetManager::theInstance = nullptr;

namespace {
const int kAllFlags = OvDeviceSetManager::FlagCameraChanged | OvDeviceSetManager::FlagObjectiveChanged
    | OvDeviceSetManager::FlagCalibrationChanged | OvDeviceSetManager::FlagUnitsChanged;
const int kCalibrationFlags = OvDeviceSetManager::FlagCalibrationChanged | OvDeviceSetManager::FlagUnitsChanged;

double sanitized(double aValue)
{
    return std::isfinite(aValue) ? aValue : 0.0;
}
}

OvDeviceSetManager::OvDeviceSetManager(QObject* aParent, const char* aName)
    : QObject(aParent)
{
    if (aName)
        setObjectName(QString::fromLatin1(aName));
}

OvDeviceSetManager* OvDeviceSetManager::instance()
{
    if (!theInstance) {
        theInstance = new OvDeviceSetManager(nullptr, nullptr);
        theInstance->createDefaultSet();
    }
    return theInstance;
}

void OvDeviceSetManager::createDefaultSet()
{
    objectives.clear();
    objectives.insert(QStringLiteral("Default"), 0.0);
    currentObjective = QStringLiteral("Default");
    activeCamera = nullptr;
    emit signalDeviceSetModified(kAllFlags);
}

void OvDeviceSetManager::addObjective(const QString& aName, double anUmPerPixel)
{
    objectives.insert(aName, sanitized(anUmPerPixel));
    emit signalDeviceSetModified(kCalibrationFlags);
}

QStringList OvDeviceSetManager::getObjectives() const
{
    return objectives.keys();
}

bool OvDeviceSetManager::setCurrentObjective(const QString& aName)
{
    if (!objectives.contains(aName))
        return false;
    if (aName != currentObjective) {
        currentObjective = aName;
        emit signalDeviceSetModified(FlagObjectiveChanged | FlagUnitsChanged);
    }
    return true;
}

QString OvDeviceSetManager::getCurrentObjective() const
{
    return currentObjective;
}

double OvDeviceSetManager::getMeasurementCalibration(const QString& anObjective, int aResolutionIndex) const
{
    const auto it = objectives.constFind(anObjective);
    if (it == objectives.constEnd())
        return 0.0;
    const double base = *it;
    if (!activeCamera || base <= 0.0)
        return base;
    const QList<QSize> resolutions = activeCamera->getResolutions();
    const int index = aResolutionIndex < 0 ? activeCamera->getResolutionIndex() : aResolutionIndex;
    if (index >= resolutions.size())
        return 0.0;
    const int fullWidth = resolutions.first().width();
    const int width = resolutions.at(index).width();
    if (fullWidth <= 0 || width <= 0)
        return 0.0;
    // Fewer pixels across the same field: each one covers more.
    return base * fullWidth / width;
}

bool OvDeviceSetManager::setMeasurementCalibration(const QString& anObjective, double anUmPerPixel)
{
    if (!objectives.contains(anObjective))
        return false;
    objectives.insert(anObjective, sanitized(anUmPerPixel));
    emit signalDeviceSetModified(kCalibrationFlags);
    return true;
}

OvCamera* OvDeviceSetManager::getActiveCamera() const
{
    return activeCamera.data();
}

void OvDeviceSetManager::setActiveCamera(OvCamera* aCamera)
{
    if (activeCamera.data() == aCamera)
        return;
    activeCamera = aCamera;
    emit signalDeviceSetModified(FlagCameraChanged | FlagUnitsChanged);
}

void OvDeviceSetManager::setCameraState(int aState)
{
    if (!activeCamera)
        return;
    activeCamera->setState(aState);
    emit signalCameraStateChanged(aState);
    if (aState & OvCamera::StateDisconnected)
        emit signalCameraStatePermanentlyChanged(aState);
}
