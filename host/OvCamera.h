#pragma once

#include "KxHostGlobal.h"

#include <QList>
#include <QObject>
#include <QSize>
#include <QString>

// A simulated camera: a name, the resolutions it offers (the first is the
// full sensor) and the current one, and a state word.
class KX_HOST_EXPORT OvCamera : public QObject
{
    Q_OBJECT

public:
    // Bits of the state word.
    enum StateBits
    {
        StateLive = 1,        // the live picture is started
        StateDisconnected = 2 // the camera is gone for good
    };

    // An empty resolution list gives a single 640 x 480 resolution.
    OvCamera(const QString& aName, const QList<QSize>& aResolutions, QObject* aParent = nullptr);
    OvCamera(const QString& aName, const QSize& aResolution, QObject* aParent = nullptr);

    QString getName() const;
    QList<QSize> getResolutions() const;
    QSize getResolution() const;
    int getResolutionIndex() const;
    // False (nothing changed) for an index out of range.
    bool setResolutionIndex(int anIndex);

    int getState() const;
    void setState(int aState);

private:
    QString name;
    QList<QSize> resolutions;
    int resolutionIndex = 0;
    int state = 0;
};
