#include "TiffWriterHelper.h"

#include <QFile>
#include <QVector>

#include <tiffio.h>

bool TiffWriterHelper::write(const QString& aPath, const QList<QImage>& aPages, const Tags& aTags)
{
    TIFF* tiff = TIFFOpen(QFile::encodeName(aPath).constData(), "w");
    if (!tiff)
        return false;
    bool ok = true;
    for (int page = 0; page < aPages.size() && ok; ++page) {
        const QImage& image = aPages.at(page);
        const bool grey = image.format() == QImage::Format_Grayscale8 || image.format() == QImage::Format_Grayscale16;
        const bool wide = image.format() == QImage::Format_Grayscale16 || image.format() == QImage::Format_RGBA64;
        const int samples = grey ? 1 : 3;
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, uint32_t(image.width()));
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, uint32_t(image.height()));
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, uint16_t(wide ? 16 : 8));
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, uint16_t(samples));
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, grey ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
        TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, uint32_t(16));
        if (aPages.size() > 1) {
            TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
            TIFFSetField(tiff, TIFFTAG_PAGENUMBER, uint16_t(page), uint16_t(aPages.size()));
        }
        if (page == 0 && !aTags.description.isEmpty())
            TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, aTags.description.toUtf8().constData());
        if (aTags.xResolution > 0.0) {
            TIFFSetField(tiff, TIFFTAG_XRESOLUTION, float(aTags.xResolution));
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION,
                         float(aTags.yResolution > 0.0 ? aTags.yResolution : aTags.xResolution));
            TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, uint16_t(aTags.resolutionUnit));
        }
        const int bytesPerSample = wide ? 2 : 1;
        QVector<uchar> row(image.width() * samples * bytesPerSample);
        for (int y = 0; y < image.height() && ok; ++y) {
            if (grey) {
                memcpy(row.data(), image.constScanLine(y), size_t(row.size()));
            } else if (wide) {
                const auto* source = reinterpret_cast<const quint16*>(image.constScanLine(y));
                auto* target = reinterpret_cast<quint16*>(row.data());
                for (int x = 0; x < image.width(); ++x)
                    for (int c = 0; c < 3; ++c)
                        target[x * 3 + c] = source[x * 4 + c];
            } else {
                const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
                memcpy(row.data(), rgb.constScanLine(y), size_t(row.size()));
            }
            ok = TIFFWriteScanline(tiff, row.data(), uint32_t(y), 0) >= 0;
        }
        ok = ok && TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    return ok;
}

QImage TiffWriterHelper::disc(const QSize& aSize, int aRadius, quint16 aField, quint16 aDisc)
{
    QImage image(aSize, QImage::Format_Grayscale16);
    const QPoint centre(aSize.width() / 2, aSize.height() / 2);
    for (int y = 0; y < aSize.height(); ++y) {
        auto* line = reinterpret_cast<quint16*>(image.scanLine(y));
        for (int x = 0; x < aSize.width(); ++x) {
            const int dx = x - centre.x();
            const int dy = y - centre.y();
            line[x] = dx * dx + dy * dy <= aRadius * aRadius ? aDisc : aField;
        }
    }
    return image;
}

QImage TiffWriterHelper::filled(const QSize& aSize, int aValue, QImage::Format aFormat)
{
    QImage image(aSize, aFormat);
    for (int y = 0; y < aSize.height(); ++y) {
        if (aFormat == QImage::Format_Grayscale16) {
            auto* line = reinterpret_cast<quint16*>(image.scanLine(y));
            for (int x = 0; x < aSize.width(); ++x)
                line[x] = quint16(aValue);
        } else {
            image.fill(QColor(aValue, aValue, aValue));
        }
    }
    return image;
}

bool TiffWriterHelper::writeContiguousImageJ(const QString& aPath, const QList<QImage>& aPages, bool aBigEndian,
                                             qint64 aKeepBytes)
{
    QByteArray out;
    const auto put16 = [&](quint32 aValue) {
        const char low = char(aValue & 0xFF);
        const char high = char((aValue >> 8) & 0xFF);
        out.append(aBigEndian ? high : low);
        out.append(aBigEndian ? low : high);
    };
    const auto put32 = [&](quint32 aValue) {
        if (aBigEndian) {
            put16(aValue >> 16);
            put16(aValue & 0xFFFF);
        } else {
            put16(aValue & 0xFFFF);
            put16(aValue >> 16);
        }
    };
    const QImage& first = aPages.first();
    const QByteArray description = QStringLiteral("ImageJ=1.53t\nimages=%1\nslices=%1\nunit=micron\n")
                                       .arg(aPages.size()).toLatin1() + '\0';
    const quint32 entries = 11;
    const quint32 descriptionAt = 8 + 2 + entries * 12 + 4;
    const quint32 dataAt = (descriptionAt + quint32(description.size()) + 1) & ~1u;
    const quint32 imageBytes = quint32(first.width() * first.height() * 2);
    out.append(aBigEndian ? QByteArray("MM\0*", 4) : QByteArray("II*\0", 4));
    put32(8);
    put16(entries);
    const auto entry = [&](quint32 aTag, quint32 aType, quint32 aCount, quint32 aValue) {
        put16(aTag);
        put16(aType);
        put32(aCount);
        if (aType == 3 && aCount == 1) {
            put16(aValue);
            put16(0);
        } else {
            put32(aValue);
        }
    };
    entry(256, 4, 1, quint32(first.width()));
    entry(257, 4, 1, quint32(first.height()));
    entry(258, 3, 1, 16);
    entry(259, 3, 1, 1);
    entry(262, 3, 1, 1);
    entry(270, 2, quint32(description.size()), descriptionAt);
    entry(273, 4, 1, dataAt);
    entry(277, 3, 1, 1);
    entry(278, 4, 1, quint32(first.height()));
    entry(279, 4, 1, imageBytes);
    entry(296, 3, 1, 1);
    put32(0);
    out.append(description);
    while (quint32(out.size()) < dataAt)
        out.append('\0');
    for (const QImage& page : aPages) {
        for (int y = 0; y < page.height(); ++y) {
            const auto* line = reinterpret_cast<const quint16*>(page.constScanLine(y));
            for (int x = 0; x < page.width(); ++x)
                put16(line[x]);
        }
    }
    QFile file(aPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(aKeepBytes >= 0 ? out.left(int(aKeepBytes)) : out) >= 0;
}
