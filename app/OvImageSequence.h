#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

// The pictures of a time series shown as the frames of one video: several
// picture files in the given order, or the pages of a multi-page TIFF.
// Frames are read when shown, so long series cost no memory up front.
class OvImageSequence
{
public:
    // Reads the first frame of each file and checks every frame has the
    // first frame's size. False with a message (and the sequence unchanged)
    // for no file, an unreadable file, or frames of another size.
    bool open(const QStringList& aFiles, QString* anError);

    int frameCount() const { return frames.size(); }
    QSize frameSize() const { return size; }
    // The first file, which names the sequence.
    QString firstFile() const { return frames.isEmpty() ? QString() : frames.first().file; }
    // Frame aFrame, a null image when out of range or no longer readable.
    QImage frame(int aFrame) const;

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
    QSize size;
};
