#include "OvImageSequence.h"

#include "OvTiffReader.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>

namespace {

QString tr(const char* aText)
{
    return QCoreApplication::translate("OvImageSequence", aText);
}

// Pictures from Qt's readers in one of the formats OvDisplayRange works on.
QImage normalized(const QImage& anImage)
{
    switch (anImage.format()) {
    case QImage::Format_Invalid:
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_RGBA64:
        return anImage;
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64_Premultiplied:
        return anImage.convertToFormat(QImage::Format_RGBA64);
    default:
        return anImage.convertToFormat(anImage.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    }
}

// "ImageJ=...\nimages=24\nchannels=2\nslices=3\nframes=4\n..." as words.
QString describeImageJ(const QString& aDescription)
{
    if (!aDescription.startsWith(QLatin1String("ImageJ=")))
        return QString();
    const auto number = [&](const char* aKey) {
        const QRegularExpression pattern(QStringLiteral("^%1=(\\d+)$").arg(QLatin1String(aKey)),
                                         QRegularExpression::MultilineOption);
        return pattern.match(aDescription).captured(1).toInt();
    };
    const int channels = number("channels");
    const int slices = number("slices");
    const int frames = number("frames");
    QStringList parts;
    if (channels > 1)
        parts << QCoreApplication::translate("OvImageSequence", "%1 channels").arg(channels);
    if (slices > 1)
        parts << QCoreApplication::translate("OvImageSequence", "%1 slices").arg(slices);
    if (frames > 1)
        parts << QCoreApplication::translate("OvImageSequence", "%1 frames").arg(frames);
    if (parts.isEmpty())
        return QString();
    const QString list = parts.join(QStringLiteral(", "));
    return aDescription.contains(QLatin1String("hyperstack=true"))
        ? QCoreApplication::translate("OvImageSequence", "ImageJ hyperstack: %1").arg(list)
        : QCoreApplication::translate("OvImageSequence", "ImageJ stack: %1").arg(list);
}

} // namespace

int OvImageSequence::imageCountOf(const QString& aFile)
{
    if (OvTiffReader::looksLikeTiff(aFile)) {
        OvTiffReader tiff(aFile);
        return tiff.open(nullptr) ? tiff.pageCount() : 0;
    }
    QImageReader reader(aFile);
    if (!reader.canRead())
        return 0;
    // Formats that cannot count their images hold one.
    return qMax(1, reader.imageCount());
}

QImage OvImageSequence::read(const Frame& aFrame, QString* anError)
{
    if (OvTiffReader::looksLikeTiff(aFrame.file)) {
        OvTiffReader tiff(aFrame.file);
        if (!tiff.open(anError))
            return QImage();
        return tiff.readPage(aFrame.page, anError);
    }
    QImageReader reader(aFrame.file);
    reader.setAutoTransform(true);
    if (aFrame.page > 0 && !reader.jumpToImage(aFrame.page)) {
        if (anError)
            *anError = tr("%1 has no page %2").arg(aFrame.file).arg(aFrame.page + 1);
        return QImage();
    }
    QImage image = reader.read();
    if (image.isNull() && anError) {
        *anError = QFileInfo::exists(aFrame.file) ? tr("Cannot open %1: %2").arg(aFrame.file, reader.errorString())
                                                  : tr("Cannot open %1: the file does not exist").arg(aFrame.file);
    }
    return normalized(image);
}

bool OvImageSequence::open(const QStringList& aFiles, QString* anError)
{
    if (aFiles.isEmpty()) {
        if (anError)
            *anError = tr("No picture to open");
        return false;
    }
    QList<Frame> found;
    QSize first;
    OvFileCalibration calibrationFound;
    QString stackFound;
    std::shared_ptr<OvTiffReader> kept;
    const auto add = [&](const QImage& anImage, const Frame& aFrame) {
        if (anImage.isNull())
            return false;
        if (first.isEmpty()) {
            first = anImage.size();
        } else if (anImage.size() != first) {
            if (anError)
                *anError = tr("Frame %1 (%2) has %3 x %4 pixels; the first frame has %5 x %6")
                               .arg(found.size() + 1).arg(QFileInfo(aFrame.file).fileName())
                               .arg(anImage.width()).arg(anImage.height()).arg(first.width()).arg(first.height());
            return false;
        }
        found.append(aFrame);
        return true;
    };
    for (const QString& file : aFiles) {
        // A single multi-page TIFF is a sequence of its own; in a list of
        // files every file is one frame.
        int pages = 1;
        if (OvTiffReader::looksLikeTiff(file)) {
            auto reader = std::make_shared<OvTiffReader>(file);
            if (!reader->open(anError))
                return false;
            if (aFiles.size() == 1) {
                pages = reader->pageCount();
                kept = reader;
            }
            if (found.isEmpty()) {
                calibrationFound = reader->calibration();
                stackFound = describeImageJ(reader->description());
            }
            // One reader for all pages: libtiff walks to each page from the last.
            for (int page = 0; page < pages; ++page) {
                if (!add(reader->readPage(page, anError), Frame{ file, page }))
                    return false;
            }
            continue;
        }
        if (aFiles.size() == 1)
            pages = qMax(1, imageCountOf(file));
        for (int page = 0; page < pages; ++page) {
            const Frame frame{ file, page };
            const QImage image = read(frame, anError);
            if (found.isEmpty() && !image.isNull())
                calibrationFound = OvFileCalibration::fromPictureText(image.text(QStringLiteral("UmPerPixel")),
                                                                      image.text(QStringLiteral("UmPerPixelY")));
            if (!add(image, frame))
                return false;
        }
    }
    frames = found;
    size = first;
    fileCalibration = calibrationFound;
    tiff = kept;
    stackText = stackFound;
    return true;
}

QImage OvImageSequence::frame(int aFrame) const
{
    if (aFrame < 0 || aFrame >= frames.size())
        return QImage();
    if (tiff)
        return tiff->readPage(frames.at(aFrame).page, nullptr);
    return read(frames.at(aFrame), nullptr);
}
