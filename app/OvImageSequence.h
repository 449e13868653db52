#pragma once

#include "OvFileCalibration.h"

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>

class OvTiffReader;

// The pictures of a time series shown as the frames of one video: several
// picture files in the given order, or the pages of a multi-page TIFF or an
// ImageJ stack. Frames are read when shown, so long series cost no memory up
// front. TIFFs are read through libtiff (OvTiffReader), other formats through
// Qt's image readers. Frames keep their stored values (16-bit pictures stay
// 16-bit); OvDisplayRange makes them visible.
class OvImageSequence
{
public:
    // Reads every frame once and checks each has the first frame's size.
    // False with a message (and the sequence unchanged) for no file, an
    // unreadable, damaged or cut-short file, or frames of another size.
    bool open(const QStringList& aFiles, QString* anError);

    int frameCount() const { return frames.size(); }
    QSize frameSize() const { return size; }
    // The first file, which names the sequence.
    QString firstFile() const { return frames.isEmpty() ? QString() : frames.first().file; }
    // Frame aFrame, a null image when out of range or no longer readable.
    QImage frame(int aFrame) const;
    // The calibration the first file carries (TIFF tags, ImageJ or OME-XML
    // description, or a "UmPerPixel" text entry); invalid when it has none.
    OvFileCalibration calibration() const { return fileCalibration; }
    // What the first file says of its frames ("ImageJ hyperstack: 2
    // channels, 3 slices, 4 frames"), empty when nothing.
    QString stackDescription() const { return stackText; }

    // The number of images in aFile (pages of a TIFF), 0 when unreadable.
    static int imageCountOf(const QString& aFile);

private:
    struct Frame
    {
        QString file;
        int page = 0;
    };

    static QImage read(const Frame& aFrame, QString* anError);

    QList<Frame> frames;
    // A single TIFF stays open, so showing a frame reads only its page.
    std::shared_ptr<OvTiffReader> tiff;
    QSize size;
    OvFileCalibration fileCalibration;
    QString stackText;
};
