// The display range and the calibration read from file metadata, as values:
// worked examples that a wrong saturation, mapping or unit factor would fail.
#include "OvDisplayRange.h"
#include "OvFileCalibration.h"

#include <QtTest>

// (value, count) pairs of a histogram.
using Counts = QVector<QPair<int, int>>;

class tst_DisplayRange : public QObject
{
    Q_OBJECT

private slots:
    void automaticSaturatesATenthOfAPercentAtEachEnd_data()
    {
        QTest::addColumn<Counts>("counts"); // (value, count), 1000 samples in all
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::newRow("one outlier each end is saturated")
            << Counts{ { 0, 1 }, { 100, 500 }, { 200, 498 }, { 60000, 1 } } << 100 << 200;
        QTest::newRow("two at the top are more than 0.1 %")
            << Counts{ { 100, 500 }, { 200, 498 }, { 60000, 2 } } << 100 << 60000;
        QTest::newRow("12-bit disc on a dark field")
            << Counts{ { 200, 900 }, { 3800, 100 } } << 200 << 3800;
        QTest::newRow("a single value shows the full range")
            << Counts{ { 1234, 1000 } } << 0 << 65535;
    }

    void automaticSaturatesATenthOfAPercentAtEachEnd()
    {
        QFETCH(Counts, counts);
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        QVector<quint32> histogram(65536, 0);
        for (const auto& entry : counts)
            histogram[entry.first] = quint32(entry.second);
        QCOMPARE(OvDisplayRange::automatic(histogram), OvDisplayRange(minimum, maximum));
    }

    void applyMapsTheRangeOntoBlackToWhite_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("shown");
        // Range 1000 to 2020 (16-bit) or 50 to 152 (8-bit): 4 values or 0.4 per step of 1/255.
        QTest::newRow("16-bit below") << int(QImage::Format_Grayscale16) << 10 << 0;
        QTest::newRow("16-bit at minimum") << int(QImage::Format_Grayscale16) << 1000 << 0;
        QTest::newRow("16-bit middle") << int(QImage::Format_Grayscale16) << 1510 << 128;
        QTest::newRow("16-bit at maximum") << int(QImage::Format_Grayscale16) << 2020 << 255;
        QTest::newRow("16-bit above") << int(QImage::Format_Grayscale16) << 65535 << 255;
        QTest::newRow("8-bit middle") << int(QImage::Format_Grayscale8) << 101 << 128;
        QTest::newRow("RGB middle") << int(QImage::Format_RGB32) << 101 << 128;
        QTest::newRow("16-bit RGB middle") << int(QImage::Format_RGBA64) << 1510 << 128;
    }

    void applyMapsTheRangeOntoBlackToWhite()
    {
        QFETCH(int, format);
        QFETCH(int, value);
        QFETCH(int, shown);
        QImage picture(3, 2, QImage::Format(format));
        if (format == QImage::Format_Grayscale16 || format == QImage::Format_RGBA64) {
            const int channels = format == QImage::Format_Grayscale16 ? 1 : 4;
            for (int y = 0; y < picture.height(); ++y) {
                auto* line = reinterpret_cast<quint16*>(picture.scanLine(y));
                for (int i = 0; i < picture.width() * channels; ++i)
                    line[i] = (channels == 4 && i % 4 == 3) ? 0xFFFF : quint16(value);
            }
        } else {
            picture.fill(QColor(value, value, value));
        }
        const bool wide = OvDisplayRange::maximumValueOf(picture) == 65535;
        const QImage before = picture.copy();
        const QImage result = (wide ? OvDisplayRange(1000, 2020) : OvDisplayRange(50, 152)).apply(picture);
        QCOMPARE(qGray(result.pixel(2, 1)), shown);
        QCOMPARE(picture, before);
    }

    void eightBitAtFullRangeIsShownAsItIs()
    {
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(QColor(10, 120, 250));
        QCOMPARE(OvDisplayRange(0, 255).apply(picture).constBits(), picture.constBits());
    }

    void lengthUnits_data()
    {
        QTest::addColumn<QString>("unit");
        QTest::addColumn<double>("um");
        QTest::newRow("ImageJ micron") << "micron" << 1.0;
        QTest::newRow("micro sign") << QString::fromUtf8("\u00B5m") << 1.0;
        QTest::newRow("Greek mu") << QString::fromUtf8("\u03BCm") << 1.0;
        QTest::newRow("um") << "um" << 1.0;
        QTest::newRow("nm") << "nm" << 0.001;
        QTest::newRow("Angstrom") << QString::fromUtf8("\u00C5") << 0.0001;
        QTest::newRow("mm") << "mm" << 1000.0;
        QTest::newRow("cm") << "cm" << 10000.0;
        QTest::newRow("m") << "m" << 1e6;
        QTest::newRow("inch") << "inch" << 25400.0;
        QTest::newRow("in") << "in" << 25400.0;
        QTest::newRow("mil") << "mil" << 25.4;
        QTest::newRow("pixel") << "pixel" << 0.0;
        QTest::newRow("nonsense") << "parsec-ish" << 0.0;
    }

    void lengthUnits()
    {
        QFETCH(QString, unit);
        QFETCH(double, um);
        QCOMPARE(OvFileCalibration::umPerUnit(unit), um);
    }

    void badMetadataGivesNoCalibration_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<double>("xResolution");
        QTest::addColumn<int>("unit");
        QTest::newRow("ImageJ without unit") << "ImageJ=1.53t\nimages=1\n" << 2.0 << 1;
        QTest::newRow("ImageJ zero resolution") << "ImageJ=1.53t\nunit=micron\n" << 0.0 << 1;
        QTest::newRow("OME broken XML") << "<OME><Pixels PhysicalSizeX=\"0.5" << 0.0 << 1;
        QTest::newRow("OME negative size") << "<OME><Pixels PhysicalSizeX=\"-0.5\"/></OME>" << 0.0 << 1;
        QTest::newRow("OME unknown unit") << "<OME><Pixels PhysicalSizeX=\"0.5\" PhysicalSizeXUnit=\"furlong\"/></OME>"
                                          << 0.0 << 1;
        QTest::newRow("96 dpi") << "" << 96.0 << 2;
        QTest::newRow("72 dpi in cm") << "" << 72.0 / 2.54 << 3;
        QTest::newRow("unknown resolution unit") << "" << 5000.0 << 7;
    }

    void badMetadataGivesNoCalibration()
    {
        QFETCH(QString, description);
        QFETCH(double, xResolution);
        QFETCH(int, unit);
        const OvFileCalibration calibration = OvFileCalibration::fromTiff(description, xResolution, xResolution, unit);
        QVERIFY(!calibration.isValid());
        QCOMPARE(calibration.source(), OvFileCalibration::NoSource);
    }
};

QTEST_MAIN(tst_DisplayRange)
#include "tst_displayrange.moc"
