#include "KxMediaInfo.h"

#include <cmath>

namespace {
double sanitizedCalibration(double aValue)
{
    return std::isfinite(aValue) && aValue > 0.0 ? aValue : 0.0;
}
}

QString KxMediaInfo::getFileName() const
{
    return fileName;
}

void KxMediaInfo::setFileName(const QString& aFileName)
{
    fileName = aFileName;
}

void KxMediaInfo::setUmPerPixel(double anUmPerPixel)
{
    setUmPerPixel(anUmPerPixel, anUmPerPixel);
}

void KxMediaInfo::setUmPerPixel(double anUmPerPixelX, double anUmPerPixelY)
{
    umPerPixelX = sanitizedCalibration(anUmPerPixelX);
    umPerPixelY = sanitizedCalibration(anUmPerPixelY);
}

double KxMediaInfo::getUmPerPixelX() const
{
    return umPerPixelX;
}

double KxMediaInfo::getUmPerPixelY() const
{
    return umPerPixelY;
}

bool KxMediaInfo::isCalibrated() const
{
    return umPerPixelX > 0.0 && umPerPixelY > 0.0;
}

double KxMediaInfo::calculateUmForPixels(double aPixels, double anAngle) const
{
    if (!isCalibrated() || !std::isfinite(aPixels) || !std::isfinite(anAngle))
        return 0.0;
    return aPixels * std::hypot(std::cos(anAngle) * umPerPixelX, std::sin(anAngle) * umPerPixelY);
}

bool KxMediaInfo::isVideoFile() const
{
    return video;
}

void KxMediaInfo::setVideoFile(bool aVideo)
{
    video = aVideo;
}

qint64 KxMediaInfo::getFrameCount() const
{
    return frameCount;
}

void KxMediaInfo::setFrameCount(qint64 aCount)
{
    frameCount = qMax<qint64>(aCount, 1);
}

QVariant KxMediaInfo::getParameter(MetadataParamType aParam) const
{
    return parameters.value(int(aParam));
}

void KxMediaInfo::setParameter(MetadataParamType aParam, const QVariant& aValue)
{
    if (aValue.isValid())
        parameters.insert(int(aParam), aValue);
    else
        parameters.remove(int(aParam));
}
