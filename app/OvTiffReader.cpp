#include "OvTiffReader.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QVector>

#include <tiffio.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

// What the current directory says about its page's layout.
struct PageLayout
{
    uint32_t width = 0;
    uint32_t height = 0;
    uint16_t bits = 1;
    uint16_t samples = 1;
    uint16_t planar = PLANARCONFIG_CONTIG;
    uint16_t compression = COMPRESSION_NONE;
    uint16_t format = SAMPLEFORMAT_UINT;
    // Files that leave it out are grey, or RGB with three samples or more.
    uint16_t photometric = PHOTOMETRIC_MINISBLACK;
};

PageLayout readPageLayout(TIFF* aHandle)
{
    PageLayout layout;
    TIFFGetField(aHandle, TIFFTAG_IMAGEWIDTH, &layout.width);
    TIFFGetField(aHandle, TIFFTAG_IMAGELENGTH, &layout.height);
    TIFFGetFieldDefaulted(aHandle, TIFFTAG_BITSPERSAMPLE, &layout.bits);
    TIFFGetFieldDefaulted(aHandle, TIFFTAG_SAMPLESPERPIXEL, &layout.samples);
    TIFFGetFieldDefaulted(aHandle, TIFFTAG_PLANARCONFIG, &layout.planar);
    TIFFGetFieldDefaulted(aHandle, TIFFTAG_COMPRESSION, &layout.compression);
    TIFFGetFieldDefaulted(aHandle, TIFFTAG_SAMPLEFORMAT, &layout.format);
    if (!TIFFGetField(aHandle, TIFFTAG_PHOTOMETRIC, &layout.photometric))
        layout.photometric = layout.samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
    return layout;
}

QString tr(const char* aText)
{
    return QCoreApplication::translate("OvTiffReader", aText);
}

// libtiff reports per file through these; the reader keeps the last error
// so its own message can quote it instead of libtiff printing to stderr.
int keepError(TIFF*, void* aUserData, const char* aModule, const char* aFormat, va_list anArgs)
{
    char text[512];
    std::vsnprintf(text, sizeof(text), aFormat, anArgs);
    auto* message = static_cast<QString*>(aUserData);
    *message = aModule ? QStringLiteral("%1: %2").arg(QString::fromLocal8Bit(aModule), QString::fromLocal8Bit(text))
                       : QString::fromLocal8Bit(text);
    return 1;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

// The largest page read: 1 GiB of decoded samples.
const quint64 kMaxPageBytes = quint64(1) << 30;

} // namespace

OvTiffReader::OvTiffReader(const QString& aFile)
    : file(aFile)
{
}

OvTiffReader::~OvTiffReader()
{
    if (handle)
        TIFFClose(handle);
}

bool OvTiffReader::looksLikeTiff(const QString& aFile)
{
    QFile in(aFile);
    if (!in.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = in.read(4);
    return head == QByteArray("II*\0", 4) || head == QByteArray("MM\0*", 4) || head == QByteArray("II+\0", 4)
        || head == QByteArray("MM\0+", 4);
}

QString OvTiffReader::damaged() const
{
    return libraryMessage.isEmpty() ? tr("the TIFF is damaged or cut short")
                                    : tr("the TIFF is damaged or cut short (%1)").arg(libraryMessage);
}

QString OvTiffReader::fail(QString* anError, const QString& aReason) const
{
    if (anError)
        *anError = tr("Cannot open %1: %2").arg(QFileInfo(file).fileName(), aReason);
    return QString();
}

bool OvTiffReader::open(QString* anError)
{
    if (!QFileInfo::exists(file)) {
        fail(anError, tr("the file does not exist"));
        return false;
    }
    if (!looksLikeTiff(file)) {
        fail(anError, tr("it is not a TIFF picture"));
        return false;
    }
    TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, keepError, &libraryMessage);
    TIFFOpenOptionsSetWarningHandlerExtR(options, ignoreWarning, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, tmsize_t(kMaxPageBytes));
    handle = TIFFOpenExt(QFile::encodeName(file).constData(), "r", options);
    TIFFOpenOptionsFree(options);
    if (!handle) {
        fail(anError, damaged());
        return false;
    }
    // Counting walks every page's directory, so a chain cut short shows here.
    const tdir_t count = TIFFNumberOfDirectories(handle);
    if (!libraryMessage.isEmpty()) {
        fail(anError, damaged());
        return false;
    }
    // Reduced-resolution copies (thumbnails, previews) are no frames.
    for (tdir_t directory = 0; directory < count; ++directory) {
        if (!TIFFSetDirectory(handle, directory)) {
            fail(anError, damaged());
            return false;
        }
        uint32_t kind = 0;
        TIFFGetField(handle, TIFFTAG_SUBFILETYPE, &kind);
        if (!(kind & FILETYPE_REDUCEDIMAGE))
            directories.append(directory);
    }
    if (directories.isEmpty() || !TIFFSetDirectory(handle, directories.first())) {
        fail(anError, tr("the TIFF has no readable page"));
        return false;
    }
    pages = directories.size();

    char* text = nullptr;
    if (TIFFGetField(handle, TIFFTAG_IMAGEDESCRIPTION, &text) && text)
        firstDescription = QString::fromUtf8(text);
    float xResolution = 0.0f;
    float yResolution = 0.0f;
    uint16_t unit = RESUNIT_INCH;
    TIFFGetField(handle, TIFFTAG_XRESOLUTION, &xResolution);
    TIFFGetField(handle, TIFFTAG_YRESOLUTION, &yResolution);
    TIFFGetFieldDefaulted(handle, TIFFTAG_RESOLUTIONUNIT, &unit);
    firstCalibration = OvFileCalibration::fromTiff(firstDescription, xResolution, yResolution, unit);
    return findContiguousImages(anError);
}

bool OvTiffReader::findContiguousImages(QString* anError)
{
    static const QRegularExpression kImages(QStringLiteral("^images=(\\d+)$"), QRegularExpression::MultilineOption);
    const int images = firstDescription.startsWith(QLatin1String("ImageJ="))
        ? kImages.match(firstDescription).captured(1).toInt()
        : 0;
    if (images <= 1 || pages != 1)
        return true;
    // ImageJ writes the images of a large stack one after the other behind
    // the first page's data, which has the only directory: uncompressed,
    // in strips that follow each other.
    const PageLayout layout = readPageLayout(handle);
    const uint16_t compression = layout.compression;
    const uint16_t bits = layout.bits;
    const uint16_t samples = layout.samples;
    const uint16_t planar = layout.planar;
    const uint32_t width = layout.width;
    const uint32_t height = layout.height;
    uint64_t* offsets = nullptr;
    uint64_t* byteCounts = nullptr;
    const int strips = int(TIFFNumberOfStrips(handle));
    if (compression != COMPRESSION_NONE || TIFFIsTiled(handle) || planar != PLANARCONFIG_CONTIG
        || (bits != 8 && bits != 16) || (samples != 1 && samples != 3) || strips < 1
        || !TIFFGetField(handle, TIFFTAG_STRIPOFFSETS, &offsets)
        || !TIFFGetField(handle, TIFFTAG_STRIPBYTECOUNTS, &byteCounts))
        return true;
    const quint64 imageBytes = quint64(width) * height * samples * (bits / 8);
    quint64 stored = 0;
    for (int strip = 0; strip < strips; ++strip) {
        if (offsets[strip] != offsets[0] + stored)
            return true;
        stored += byteCounts[strip];
    }
    if (stored < imageBytes)
        return true;
    const quint64 needed = offsets[0] + quint64(images) * imageBytes;
    if (quint64(QFileInfo(file).size()) < needed) {
        fail(anError, tr("the ImageJ stack holds %1 images, but the file ends before the last (cut short)")
                          .arg(images));
        return false;
    }
    contiguousOffset = offsets[0];
    contiguousBytes = imageBytes;
    pages = images;
    return true;
}

QImage OvTiffReader::readContiguous(int aPage, QString* anError)
{
    // Page 0's directory describes every image.
    TIFFSetDirectory(handle, directories.first());
    const PageLayout layout = readPageLayout(handle);
    const uint16_t bits = layout.bits;
    const uint16_t samples = layout.samples;
    const uint16_t photometric = layout.photometric;
    const uint32_t width = layout.width;
    const uint32_t height = layout.height;
    QFile in(file);
    QByteArray data;
    if (in.open(QIODevice::ReadOnly) && in.seek(qint64(contiguousOffset + quint64(aPage) * contiguousBytes)))
        data = in.read(qint64(contiguousBytes));
    if (quint64(data.size()) != contiguousBytes) {
        fail(anError, tr("page %1: %2").arg(aPage + 1).arg(tr("the TIFF is damaged or cut short")));
        return QImage();
    }
    const bool bigEndian = TIFFIsBigEndian(handle);
    const bool invert = photometric == PHOTOMETRIC_MINISWHITE;
    const int w = int(width);
    const auto* bytes = reinterpret_cast<const uchar*>(data.constData());
    const auto sample16 = [&](quint64 anIndex) {
        const uchar first = bytes[anIndex * 2];
        const uchar second = bytes[anIndex * 2 + 1];
        return bigEndian ? quint16((first << 8) | second) : quint16(first | (second << 8));
    };
    if (samples == 1) {
        QImage image(w, int(height), bits == 16 ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8);
        for (int y = 0; y < int(height); ++y) {
            for (int x = 0; x < w; ++x) {
                const quint64 index = quint64(y) * w + x;
                if (bits == 16) {
                    const quint16 value = sample16(index);
                    reinterpret_cast<quint16*>(image.scanLine(y))[x] = invert ? quint16(0xFFFF - value) : value;
                } else {
                    image.scanLine(y)[x] = invert ? uchar(255 - bytes[index]) : bytes[index];
                }
            }
        }
        return image;
    }
    QImage image(w, int(height), bits == 16 ? QImage::Format_RGBA64 : QImage::Format_RGB32);
    for (int y = 0; y < int(height); ++y) {
        for (int x = 0; x < w; ++x) {
            const quint64 index = (quint64(y) * w + x) * 3;
            if (bits == 16) {
                auto* pixel = reinterpret_cast<quint16*>(image.scanLine(y)) + x * 4;
                for (int c = 0; c < 3; ++c)
                    pixel[c] = sample16(index + c);
                pixel[3] = 0xFFFF;
            } else {
                reinterpret_cast<QRgb*>(image.scanLine(y))[x] = qRgb(bytes[index], bytes[index + 1], bytes[index + 2]);
            }
        }
    }
    return image;
}

QImage OvTiffReader::readPage(int aPage, QString* anError)
{
    const auto failed = [&](const QString& aReason) {
        fail(anError, aPage > 0 ? tr("page %1: %2").arg(aPage + 1).arg(aReason) : aReason);
        return QImage();
    };
    if (!handle || aPage < 0 || aPage >= pages)
        return failed(tr("there is no such page"));
    if (aPage > 0 && contiguousBytes > 0)
        return readContiguous(aPage, anError);
    libraryMessage.clear();
    if (!TIFFSetDirectory(handle, directories.at(aPage)))
        return failed(damaged());

    const PageLayout layout = readPageLayout(handle);
    const uint32_t width = layout.width;
    const uint32_t height = layout.height;
    const uint16_t bits = layout.bits;
    const uint16_t samples = layout.samples;
    const uint16_t photometric = layout.photometric;
    const uint16_t planar = layout.planar;
    const uint16_t format = layout.format;
    if (width == 0 || height == 0 || width > 100000 || height > 100000)
        return failed(tr("the page has no valid size (%1 x %2)").arg(width).arg(height));
    if (quint64(width) * height * 8 > kMaxPageBytes)
        return failed(tr("the page of %1 x %2 pixels is too large").arg(width).arg(height));
    if (format == SAMPLEFORMAT_IEEEFP)
        return failed(tr("floating-point samples are not supported (8- and 16-bit pictures are)"));

    const bool grey = photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE;
    // 16-bit samples, and 8-bit greyscale, are read as stored; everything
    // else 8-bit (palette, YCbCr, bilevel, planar RGB) through libtiff's
    // RGBA conversion.
    if (bits == 16 && (grey || (photometric == PHOTOMETRIC_RGB && samples >= 3)) && planar == PLANARCONFIG_CONTIG) {
        const int channels = grey ? 1 : 4;
        QImage image(int(width), int(height), grey ? QImage::Format_Grayscale16 : QImage::Format_RGBA64);
        const bool isSigned = format == SAMPLEFORMAT_INT;
        const bool invert = photometric == PHOTOMETRIC_MINISWHITE;
        const auto storeRow = [&](const quint16* aSource, int aRow, int aFirstColumn, int aCount) {
            auto* target = reinterpret_cast<quint16*>(image.scanLine(aRow)) + aFirstColumn * channels;
            for (int x = 0; x < aCount; ++x) {
                for (int c = 0; c < channels; ++c) {
                    quint16 value = 0xFFFF;
                    if (c < 3 && (grey || c < samples)) {
                        value = aSource[x * samples + c];
                        if (isSigned)
                            value = quint16(value ^ 0x8000);
                        if (invert)
                            value = quint16(0xFFFF - value);
                    } else if (c == 3 && samples >= 4) {
                        value = aSource[x * samples + 3];
                    }
                    target[x * channels + c] = value;
                }
            }
        };
        if (TIFFIsTiled(handle)) {
            uint32_t tileWidth = 0;
            uint32_t tileHeight = 0;
            TIFFGetField(handle, TIFFTAG_TILEWIDTH, &tileWidth);
            TIFFGetField(handle, TIFFTAG_TILELENGTH, &tileHeight);
            if (tileWidth == 0 || tileHeight == 0)
                return failed(tr("the TIFF's tiles have no size"));
            QVector<quint16> tile(int(TIFFTileSize(handle) / 2 + 1));
            for (uint32_t ty = 0; ty < height; ty += tileHeight) {
                for (uint32_t tx = 0; tx < width; tx += tileWidth) {
                    if (TIFFReadTile(handle, tile.data(), tx, ty, 0, 0) < 0)
                        return failed(damaged());
                    const int columns = int(qMin(tileWidth, width - tx));
                    for (uint32_t y = 0; y < tileHeight && ty + y < height; ++y)
                        storeRow(tile.constData() + y * tileWidth * samples, int(ty + y), int(tx), columns);
                }
            }
        } else {
            QVector<quint16> row(int(TIFFScanlineSize(handle) / 2 + 1));
            for (uint32_t y = 0; y < height; ++y) {
                if (TIFFReadScanline(handle, row.data(), y, 0) < 0)
                    return failed(damaged());
                storeRow(row.constData(), int(y), 0, int(width));
            }
        }
        return image;
    }
    if (bits == 8 && grey && samples == 1 && !TIFFIsTiled(handle)) {
        QImage image(int(width), int(height), QImage::Format_Grayscale8);
        for (uint32_t y = 0; y < height; ++y) {
            uchar* line = image.scanLine(int(y));
            if (TIFFReadScanline(handle, line, y, 0) < 0)
                return failed(damaged());
            if (photometric == PHOTOMETRIC_MINISWHITE) {
                for (uint32_t x = 0; x < width; ++x)
                    line[x] = uchar(255 - line[x]);
            }
        }
        return image;
    }
    if (bits > 8)
        return failed(tr("%1-bit samples are not supported (8- and 16-bit pictures are)").arg(bits));
    char reason[1024] = "";
    if (!TIFFRGBAImageOK(handle, reason))
        return failed(tr("this kind of TIFF is not supported (%1)").arg(QString::fromLocal8Bit(reason)));
    QVector<uint32_t> rgba(int(width * height));
    if (!TIFFReadRGBAImageOriented(handle, width, height, rgba.data(), ORIENTATION_TOPLEFT, 0))
        return failed(damaged());
    const bool alpha = samples == 4 || samples == 2;
    QImage image(int(width), int(height), alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (uint32_t y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(int(y)));
        for (uint32_t x = 0; x < width; ++x) {
            const uint32_t pixel = rgba.at(int(y * width + x));
            line[x] = qRgba(int(TIFFGetR(pixel)), int(TIFFGetG(pixel)), int(TIFFGetB(pixel)),
                            alpha ? int(TIFFGetA(pixel)) : 255);
        }
    }
    return image;
}
