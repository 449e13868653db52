#include "KxKernelData.h"

#include "KxGsManipulator.h"
#include "KxKernelObjectDataDescr.h"
#include "KxSignalCenter.h"
#include "KxView.h"
#include "OvCamera.h"
#include "OvDeviceSetManager.h"

KxKernelData::KxKernelData()
{
    // A live-camera picture is calibrated by the current objective; keep the
    // media calibration in step before anyone else hears of the change.
    connect(OvDeviceSetManager::instance(), &OvDeviceSetManager::signalDeviceSetModified, this,
            &KxKernelData::followDeviceSet);
}

KxKernelData::~KxKernelData()
{
    for (auto& ofType : objects)
        qDeleteAll(ofType);
    for (const TypeEntry& entry : qAsConst(types))
        delete entry.descriptor;
}

KxKernelData* KxKernelData::getInstance()
{
    static KxKernelData* theInstance = new KxKernelData();
    return theInstance;
}

bool KxKernelData::registerObjectType(KxGsManipulator* aManipulator, int aType)
{
    if (!aManipulator || types.contains(aType))
        return false;
    types[aType].manipulator = aManipulator;
    connect(aManipulator, &QObject::destroyed, this, [this, aManipulator, aType]() {
        if (types.value(aType).manipulator == aManipulator)
            unregisterObjectType(aType);
    });
    return true;
}

KxGsManipulator* KxKernelData::getManipulator(int aType) const
{
    return types.value(aType).manipulator;
}

QList<int> KxKernelData::getObjectTypes() const
{
    return types.keys();
}

bool KxKernelData::registerDataDescriptor(KxKernelObjectDataDescr* aDescr, int aType)
{
    auto it = types.find(aType);
    if (!aDescr || it == types.end() || it->descriptor || aDescr->getObjectType() != aType)
        return false;
    it->descriptor = aDescr;
    return true;
}

KxKernelObjectDataDescr* KxKernelData::getDataDescriptor(int aType) const
{
    return types.value(aType).descriptor;
}

void KxKernelData::unregisterObjectType(int aType)
{
    const auto it = types.find(aType);
    if (it == types.end())
        return;
    if (it->manipulator)
        disconnect(it->manipulator, &QObject::destroyed, this, nullptr);
    delete it->descriptor;
    types.erase(it);
}

KxKernelObjectData* KxKernelData::getObject(int aType, int anIdx) const
{
    const auto ofType = objects.constFind(aType);
    if (ofType == objects.constEnd())
        return nullptr;
    return ofType->value(anIdx, nullptr);
}

QMap<int, KxKernelObjectData*> KxKernelData::getObjectsOfType(int aType) const
{
    return objects.value(aType);
}

int KxKernelData::nextFreeIndex(int aType) const
{
    const auto ofType = objects.constFind(aType);
    if (ofType == objects.constEnd() || ofType->isEmpty())
        return 1;
    return qMax(ofType->lastKey() + 1, 1);
}

QString KxKernelData::getObjectDescription(int aType, int anIdx) const
{
    const KxGsManipulator* manipulator = getManipulator(aType);
    QString typeName = manipulator ? manipulator->getObjectTypeName(aType) : QString();
    if (typeName.isEmpty())
        typeName = tr("object");
    return QStringLiteral("%1 %2").arg(typeName).arg(anIdx);
}

bool KxKernelData::insertObject(int aType, int anIdx, KxKernelObjectData* aData)
{
    if (!aData || getObject(aType, anIdx))
        return false;
    objects[aType].insert(anIdx, aData);
    emit getNotifier()->signalObjectCreated(aType, anIdx, aData);
    // Whoever built an item for the object shows its stored value next: an
    // object brought back by undo, redo or loading is labelled as when drawn.
    // A receiver of the creation may have removed it again.
    if (KxKernelObjectData* created = getObject(aType, anIdx)) {
        const KxParamKeyframeVector keyframes = created->getKeyframesAt(currentFrame);
        const QString valueName = keyframes.size() > 2 ? keyframes[2].getValue().toString() : QString();
        emit getNotifier()->signalObjectShowValue(aType, anIdx, valueName);
    }
    return true;
}

KxKernelObjectData* KxKernelData::takeObject(int aType, int anIdx)
{
    if (!getObject(aType, anIdx))
        return nullptr;
    emit getNotifier()->signalObjectBeforeRemove(aType, anIdx);
    // A receiver may have changed the store; take whatever is there now.
    auto ofType = objects.find(aType);
    if (ofType == objects.end())
        return nullptr;
    KxKernelObjectData* data = ofType->take(anIdx);
    if (ofType->isEmpty())
        objects.erase(ofType);
    if (data)
        emit getNotifier()->signalObjectRemoved(aType, anIdx);
    return data;
}

bool KxKernelData::notifyObjectChanged(int aType, int anIdx)
{
    KxKernelObjectData* data = getObject(aType, anIdx);
    if (!data)
        return false;
    emit getNotifier()->signalObjectChanged(aType, anIdx, data);
    return true;
}

bool KxKernelData::showObjectValue(int aType, int anIdx, const QString& aValueName)
{
    if (!getObject(aType, anIdx))
        return false;
    emit getNotifier()->signalObjectShowValue(aType, anIdx, aValueName);
    return true;
}

bool KxKernelData::commandsAllowed() const
{
    return replayDepth == 0;
}

void KxKernelData::beginReplay()
{
    ++replayDepth;
}

void KxKernelData::endReplay()
{
    if (replayDepth > 0)
        --replayDepth;
}

void KxKernelData::removeAllObjects()
{
    beginReplay();
    // One at a time through takeObject, so every receiver hears of every
    // object; the loop re-reads the store since receivers may touch it.
    while (!objects.isEmpty()) {
        const int type = objects.firstKey();
        const QMap<int, KxKernelObjectData*>& ofType = objects.first();
        if (ofType.isEmpty()) {
            objects.remove(type);
            continue;
        }
        delete takeObject(type, ofType.firstKey());
    }
    endReplay();
}

KxCalibData KxKernelData::getCurrentCalibData(QString& aSourceName) const
{
    KxCalibData result;
    result.text = QStringLiteral("\u00B5m");
    const OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    const int width = imageSize.isValid() ? imageSize.width() : 0;
    if (devices->getActiveCamera()) {
        aSourceName = devices->getCurrentObjective();
        const double umPerPixel = devices->getMeasurementCalibration(aSourceName, -1);
        result.value = umPerPixel > 0.0 ? umPerPixel * width : 0.0;
    } else {
        aSourceName = mediaInfo.getFileName();
        result.value = mediaInfo.calculateUmForPixels(width, 0.0);
    }
    return result;
}

QSize KxKernelData::getCurrentImageSize() const
{
    return imageSize;
}

void KxKernelData::setCurrentImageSize(const QSize& aSize)
{
    imageSize = aSize;
}

qint64 KxKernelData::getCurrentFrame() const
{
    return currentFrame;
}

void KxKernelData::setCurrentFrame(qint64 aFrame)
{
    currentFrame = aFrame;
    emit getNotifier()->signalFrameReady(aFrame);
}

KxMediaInfo& KxKernelData::getMediaInfo()
{
    return mediaInfo;
}

const KxMediaInfo& KxKernelData::getMediaInfo() const
{
    return mediaInfo;
}

void KxKernelData::loadMedia(const KxMediaInfo& anInfo, const QSize& anImageSize)
{
    removeAllObjects();
    mediaInfo = anInfo;
    imageSize = anImageSize;
    currentFrame = 0;
    followDeviceSet(OvDeviceSetManager::FlagCalibrationChanged);
    bool unsavedWork = false;
    emit getNotifier()->signalNewMediaReady(mediaInfo, unsavedWork);
    emit getNotifier()->signalMediaLoaded();
}

void KxKernelData::setMediaCalibration(double anUmPerPixel)
{
    mediaInfo.setUmPerPixel(anUmPerPixel);
}

KxView* KxKernelData::getCurrentView() const
{
    return currentView;
}

void KxKernelData::setCurrentView(KxView* aView)
{
    currentView = aView;
}

void KxKernelData::changeCameraResolution(const QSize& aSize)
{
    if (aSize == imageSize)
        return;
    const QSize old = imageSize;
    imageSize = aSize;
    followDeviceSet(OvDeviceSetManager::FlagCameraChanged);
    emit getNotifier()->signalCurrentResChangedByCamera(old, aSize);
}

KxSignalCenter* KxKernelData::getNotifier() const
{
    return KxSignalCenter::getInstance();
}

void KxKernelData::followDeviceSet(int aFlags)
{
    const int relevant = OvDeviceSetManager::FlagCameraChanged | OvDeviceSetManager::FlagObjectiveChanged
        | OvDeviceSetManager::FlagCalibrationChanged;
    if (!(aFlags & relevant))
        return;
    if (mediaInfo.getParameter(KxMediaInfo::MetaImageSource).toInt() != KxMediaInfo::SourceLiveCamera)
        return;
    const OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    const QString objective = devices->getCurrentObjective();
    mediaInfo.setUmPerPixel(devices->getMeasurementCalibration(objective, -1));
    mediaInfo.setParameter(KxMediaInfo::MetaObjectiveName, objective);
}
