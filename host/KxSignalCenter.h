#pragma once

#include "KxHostGlobal.h"
#include "KxKernelObjectData.h"
#include "KxMediaInfo.h"

#include <QObject>
#include <QSize>
#include <QString>

// The host's signal hub and kernel notifier. Every kernel notification is
// emitted synchronously from the call that causes it (commands, media
// loading, frame changes), so receivers see the store in its new state.
class KX_HOST_EXPORT KxSignalCenter : public QObject
{
    Q_OBJECT

public:
    static KxSignalCenter* getInstance();

signals:
    // After an object (type, index) was put into the store; the pointer is
    // the stored object, valid until it is removed.
    void signalObjectCreated(const int aType, const int anIdx, const KxKernelObjectData* aData);
    // After an object's data changed.
    void signalObjectChanged(const int aType, const int anIdx, const KxKernelObjectData* aData);
    // While the object is still in the store, just before it is taken out.
    void signalObjectBeforeRemove(const int aType, const int anIdx);
    // After the object was taken out of the store.
    void signalObjectRemoved(const int aType, const int anIdx);
    // The host asks to show the named value on the object's label.
    void signalObjectShowValue(const int aType, const int anIdx, const QString& aValueName);
    // The camera switched resolution (old, new); positions in pixels scale with it.
    void signalCurrentResChangedByCamera(QSize anOld, QSize aNew);
    // New media is about to be shown; a receiver may set the flag to true to
    // report that it had unsaved work (informational, loading goes on).
    void signalNewMediaReady(const KxMediaInfo& anInfo, bool& aFlag);
    void signalAppAboutToClose();
    // The new media is in place (media info, image size, frame 0).
    void signalMediaLoaded();
    // The current video frame changed (also for a still picture: frame 0).
    void signalFrameReady(qint64 aFrame);

private:
    KxSignalCenter();
};
