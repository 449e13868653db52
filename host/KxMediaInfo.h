#pragma once

#include "KxHostGlobal.h"

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

// What the host knows about the picture on screen: its file, its
// calibration (micrometres per pixel, x and y may differ), whether it is a
// video, and further metadata parameters. A copyable value.
class KX_HOST_EXPORT KxMediaInfo
{
public:
    enum MetadataParamType
    {
        MetaCameraName = 41,
        MetaObjectiveName = 42,
        // Where the picture comes from, one of ImageSource (int).
        MetaImageSource = 43,
        MetaFrameRate = 44
    };

    // Values of MetaImageSource. Thumbnails and composites are never
    // measured; a live-camera picture always is (its calibration follows the
    // current objective); a file only when it is calibrated. A missing
    // parameter reads as SourceFile.
    enum ImageSource
    {
        SourceFile = 0,
        SourceThumbnail = 33,
        SourceLiveCamera = 51,
        SourceComposite = 100
    };

    KxMediaInfo() = default;

    QString getFileName() const;
    void setFileName(const QString& aFileName);

    // Both axes. Values that are not finite or not positive mean uncalibrated.
    void setUmPerPixel(double anUmPerPixel);
    void setUmPerPixel(double anUmPerPixelX, double anUmPerPixelY);
    double getUmPerPixelX() const;
    double getUmPerPixelY() const;
    // True when both axes have a positive calibration.
    bool isCalibrated() const;

    // Micrometres for a length of aPixels running at anAngle radians from the
    // x axis: aPixels * hypot(cos(a) * umX, sin(a) * umY). 0.0 when uncalibrated.
    double calculateUmForPixels(double aPixels, double anAngle) const;

    bool isVideoFile() const;
    void setVideoFile(bool aVideo);
    qint64 getFrameCount() const;
    void setFrameCount(qint64 aCount);

    // Invalid when the parameter was never set.
    QVariant getParameter(MetadataParamType aParam) const;
    void setParameter(MetadataParamType aParam, const QVariant& aValue);

private:
    QString fileName;
    double umPerPixelX = 0.0;
    double umPerPixelY = 0.0;
    bool video = false;
    qint64 frameCount = 1;
    QMap<int, QVariant> parameters;
};

Q_DECLARE_METATYPE(KxMediaInfo)
