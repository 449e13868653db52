#pragma once

#include <QImage>
#include <QList>
#include <QString>

// Writes test pictures as TIFF through libtiff, one page per image:
// Format_Grayscale8 and Format_Grayscale16 as greyscale, Format_RGB32 as
// 8-bit RGB, Format_RGBA64 as 16-bit RGB.
class TiffWriterHelper
{
public:
    struct Tags
    {
        QString description; // ImageJ or OME-XML text, on the first page
        double xResolution = 0.0; // pixels per unit; 0 writes no resolution tags
        double yResolution = 0.0;
        int resolutionUnit = 1; // 1 none, 2 inch, 3 centimetre
    };

    static bool write(const QString& aPath, const QList<QImage>& aPages, const Tags& aTags);
    static bool write(const QString& aPath, const QList<QImage>& aPages) { return write(aPath, aPages, Tags{}); }
    // An ImageJ stack as ImageJ writes large ones: one directory (big-endian
    // when asked), the 16-bit greyscale images one after the other behind it.
    // aKeepBytes cuts the file short (all of it when negative).
    static bool writeContiguousImageJ(const QString& aPath, const QList<QImage>& aPages, bool aBigEndian,
                                      qint64 aKeepBytes = -1);
    // A 16-bit picture of aSize: aField everywhere, aDisc inside a centred disc of aRadius.
    static QImage disc(const QSize& aSize, int aRadius, quint16 aField, quint16 aDisc);
    // A 16-bit (or 8-bit) picture filled with aValue.
    static QImage filled(const QSize& aSize, int aValue, QImage::Format aFormat = QImage::Format_Grayscale16);
};
