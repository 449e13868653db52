#include "OvImageSequence.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageReader>

namespace {

QString tr(const char* aText)
{
    return QCoreApplication::translate("OvImageSequence", aText);
}

} // namespace

int OvImageSequence::imageCountOf(const QString& aFile)
{
    QImageReader reader(aFile);
    if (!reader.canRead())
        return 0;
    // Formats that cannot count their images hold one.
    return qMax(1, reader.imageCount());
}

QImage OvImageSequence::read(const Frame& aFrame, QString* anError)
{
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
    return image;
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
    for (const QString& file : aFiles) {
        // A single multi-page TIFF is a sequence of its own; in a list of
        // files every file is one frame.
        const int pages = aFiles.size() == 1 ? imageCountOf(file) : 1;
        for (int page = 0; page < qMax(1, pages); ++page) {
            const Frame frame{ file, page };
            const QImage image = read(frame, anError);
            if (image.isNull())
                return false;
            if (first.isEmpty()) {
                first = image.size();
            } else if (image.size() != first) {
                if (anError)
                    *anError = tr("Frame %1 (%2) has %3 x %4 pixels; the first frame has %5 x %6")
                                   .arg(found.size() + 1).arg(QFileInfo(file).fileName())
                                   .arg(image.width()).arg(image.height()).arg(first.width()).arg(first.height());
                return false;
            }
            found.append(frame);
        }
    }
    frames = found;
    size = first;
    return true;
}

QImage OvImageSequence::frame(int aFrame) const
{
    if (aFrame < 0 || aFrame >= frames.size())
        return QImage();
    return read(frames.at(aFrame), nullptr);
}
