#pragma once

#include "KxHostGlobal.h"
#include "KxKernelObjectData.h"
#include "KxMediaInfo.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QSize>
#include <QString>

class KxGsManipulator;
class KxKernelObjectDataDescr;
class KxSignalCenter;
class KxView;

// The calibration in effect: the width of the current image in micrometres
// (0 when uncalibrated) and its unit text.
struct KX_HOST_EXPORT KxCalibData
{
    double value = 0.0;
    QString text;
};

// The kernel object store: object types with their manipulator and parameter
// descriptor, the stored objects by (type, index), the current media, frame,
// image size and view. Every change is reported synchronously through the
// KxSignalCenter (getNotifier()). Objects are changed by the undo commands
// (CmdCreateObject, CmdChangeObject, CmdRemoveObject), which use
// insertObject/takeObject/notifyObjectChanged.
class KX_HOST_EXPORT KxKernelData : public QObject
{
    Q_OBJECT

public:
    static KxKernelData* getInstance();
    ~KxKernelData() override;

    // False for a null manipulator or a type already registered. When the
    // manipulator is destroyed, its type and descriptor are unregistered
    // (stored objects stay).
    bool registerObjectType(KxGsManipulator* aManipulator, int aType);
    KxGsManipulator* getManipulator(int aType) const;
    QList<int> getObjectTypes() const;
    // False when the type is not registered, already has a descriptor, or the
    // descriptor is null or of another type. On success the store owns it; on
    // failure the caller keeps it.
    bool registerDataDescriptor(KxKernelObjectDataDescr* aDescr, int aType);
    KxKernelObjectDataDescr* getDataDescriptor(int aType) const;
    // Drops the type's manipulator and descriptor (stored objects stay).
    void unregisterObjectType(int aType);

    // Null when absent.
    KxKernelObjectData* getObject(int aType, int anIdx) const;
    QMap<int, KxKernelObjectData*> getObjectsOfType(int aType) const;
    // The largest stored index of the type plus 1 (1 when none).
    int nextFreeIndex(int aType) const;
    // "<type name> <index>", the type name from the registered manipulator
    // ("object" without one); used for undo texts.
    QString getObjectDescription(int aType, int anIdx) const;

    // Puts aData into the store (which owns it from then on) and emits
    // signalObjectCreated. False, nothing stored and nothing emitted, when
    // aData is null or the place is taken; the caller then keeps aData.
    bool insertObject(int aType, int anIdx, KxKernelObjectData* aData);
    // Emits signalObjectBeforeRemove, takes the object out and emits
    // signalObjectRemoved; the caller owns the result. Null (nothing
    // emitted) when absent.
    KxKernelObjectData* takeObject(int aType, int anIdx);
    // Emits signalObjectChanged for a stored object; false when absent.
    bool notifyObjectChanged(int aType, int anIdx);
    // Emits signalObjectShowValue for a stored object; false when absent.
    bool showObjectValue(int aType, int anIdx, const QString& aValueName);
    // Removes and deletes every object, each reported as by takeObject.
    void removeAllObjects();

    // False while the store replays undo history (a command's undo() or any
    // redo() after the first) or clears itself: receivers of its notifications
    // must not push commands then, since the undo stack is in the middle of a
    // step and the history already holds what follows.
    bool commandsAllowed() const;
    // Brackets a replay; nests. Used by the undo commands.
    void beginReplay();
    void endReplay();

    // Camera active: the objective's calibration, aSourceName = the objective
    // name; else the media's, aSourceName = the media file name. Text "µm".
    KxCalibData getCurrentCalibData(QString& aSourceName) const;
    QSize getCurrentImageSize() const;
    void setCurrentImageSize(const QSize& aSize);

    qint64 getCurrentFrame() const;
    // Stores the frame and emits signalFrameReady(aFrame).
    void setCurrentFrame(qint64 aFrame);

    KxMediaInfo& getMediaInfo();
    const KxMediaInfo& getMediaInfo() const;
    // Removes every object, stores the media info and image size, goes to
    // frame 0, then emits signalNewMediaReady and signalMediaLoaded. The
    // registry survives. The host should clear its undo stack as well;
    // commands left on it do nothing for objects that are gone.
    void loadMedia(const KxMediaInfo& anInfo, const QSize& anImageSize);
    // Sets the media's calibration (both axes).
    void setMediaCalibration(double anUmPerPixel);

    // Not owned; the owner sets it back to null before deleting it.
    KxView* getCurrentView() const;
    void setCurrentView(KxView* aView);

    // Stores the new size, brings a live picture's calibration in step with
    // the active camera (switch the camera's resolution first) and emits
    // signalCurrentResChangedByCamera(old, new); nothing when the size does
    // not change.
    void changeCameraResolution(const QSize& aSize);

    KxSignalCenter* getNotifier() const;

private:
    KxKernelData();
    void followDeviceSet(int aFlags);

    struct TypeEntry
    {
        KxGsManipulator* manipulator = nullptr;
        KxKernelObjectDataDescr* descriptor = nullptr;
    };

    QMap<int, TypeEntry> types;
    QMap<int, QMap<int, KxKernelObjectData*>> objects;
    KxMediaInfo mediaInfo;
    QSize imageSize;
    qint64 currentFrame = 0;
    KxView* currentView = nullptr;
    int replayDepth = 0;
};

// Marks the store as replaying history for its lifetime when anActive is set.
class KX_HOST_EXPORT KxReplayScope
{
public:
    explicit KxReplayScope(bool anActive)
        : active(anActive)
    {
        if (active)
            KxKernelData::getInstance()->beginReplay();
    }
    ~KxReplayScope()
    {
        if (active)
            KxKernelData::getInstance()->endReplay();
    }
    KxReplayScope(const KxReplayScope&) = delete;
    KxReplayScope& operator=(const KxReplayScope&) = delete;

private:
    bool active;
};
