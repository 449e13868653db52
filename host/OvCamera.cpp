#include "OvCamera.h"

OvCamera::OvCamera(const QString& aName, const QList<QSize>& aResolutions, QObject* aParent)
    : QObject(aParent)
    , name(aName)
    , resolutions(aResolutions)
{
    if (resolutions.isEmpty())
        resolutions.append(QSize(640, 480));
}

OvCamera::OvCamera(const QString& aName, const QSize& aResolution, QObject* aParent)
    : OvCamera(aName, QList<QSize>{aResolution}, aParent)
{
}

QString OvCamera::getName() const
{
    return name;
}

QList<QSize> OvCamera::getResolutions() const
{
    return resolutions;
}

QSize OvCamera::getResolution() const
{
    return resolutions.at(resolutionIndex);
}

int OvCamera::getResolutionIndex() const
{
    return resolutionIndex;
}

bool OvCamera::setResolutionIndex(int anIndex)
{
    if (anIndex < 0 || anIndex >= resolutions.size())
        return false;
    resolutionIndex = anIndex;
    return true;
}

int OvCamera::getState() const
{
    return state;
}

void OvCamera::setState(int aState)
{
    state = aState;
}
