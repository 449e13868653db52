// Opening and stepping through a 16-bit TIFF stack: reading every page once
// on opening, showing frames one after the other (read + display range), and
// the automatic range of one frame. Prints figures only.
#include "OvDisplayRange.h"
#include "OvImageSequence.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QtTest>

#include <tiffio.h>

namespace {

const int kPages = 100;
const int kSide = 1024;

bool writeStack(const QString& aPath)
{
    TIFF* tiff = TIFFOpen(QFile::encodeName(aPath).constData(), "w");
    if (!tiff)
        return false;
    QVector<quint16> row(kSide);
    for (int page = 0; page < kPages; ++page) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, uint32_t(kSide));
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, uint32_t(kSide));
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, uint16_t(16));
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, uint16_t(1));
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, uint32_t(64));
        for (int y = 0; y < kSide; ++y) {
            for (int x = 0; x < kSide; ++x)
                row[x] = quint16(200 + ((x * 7 + y * 3 + page * 11) % 3600));
            TIFFWriteScanline(tiff, row.data(), uint32_t(y), 0);
        }
        TIFFWriteDirectory(tiff);
    }
    TIFFClose(tiff);
    return true;
}

} // namespace

class bench_TiffStack : public QObject
{
    Q_OBJECT

private slots:
    void stack()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("stack.tif"));
        QVERIFY(writeStack(file));
        QElapsedTimer timer;
        timer.start();
        OvImageSequence sequence;
        QString error;
        QVERIFY2(sequence.open({ file }, &error), qPrintable(error));
        const double openMs = timer.nsecsElapsed() / 1e6;

        timer.restart();
        const OvDisplayRange range = OvDisplayRange::automatic(sequence.frame(0));
        const double autoMs = timer.nsecsElapsed() / 1e6;

        timer.restart();
        for (int frame = 0; frame < sequence.frameCount(); ++frame)
            QVERIFY(!range.apply(sequence.frame(frame)).isNull());
        const double perFrameMs = timer.nsecsElapsed() / 1e6 / sequence.frameCount();

        qInfo("%d pages of %d x %d 16-bit: open (every page read once) %.0f ms, %.2f ms per page",
              kPages, kSide, kSide, openMs, openMs / kPages);
        qInfo("automatic range of one frame: %.2f ms", autoMs);
        qInfo("showing frames in order (read + display range): %.2f ms per frame", perFrameMs);
    }
};

QTEST_MAIN(bench_TiffStack)
#include "bench_tiffstack.moc"
