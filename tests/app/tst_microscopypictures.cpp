// Microscope pictures in the viewer: TIFF pages and ImageJ stacks as frames,
// the calibration each kind of file metadata carries, the display range and
// its Brightness/Contrast dialog, damaged files, and the ways a calibration
// is replaced. Every picture is written by the test (libtiff or Qt).
#include "AppWindowHelper.h"
#include "TiffWriterHelper.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "OvBrightnessContrastDialog.h"
#include "OvCalibrationLineManipulator.h"
#include "OvDisplayRange.h"
#include "OvFrameBar.h"
#include "OvLineCalibrationDialog.h"
#include "OvMeasurementExporter.h"
#include "OvResultsDock.h"
#include "OvResultsModel.h"
#include "OvToolBase.h"
#include "OvViewerMainWindow.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGraphicsView>
#include <QCryptographicHash>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

namespace {

const int kDistanceType = 66653;
const QSize kSize(400, 300);

QByteArray fileHash(const QString& aPath)
{
    QFile file(aPath);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1);
}

quint16 value16(const QImage& anImage, int anX, int aY)
{
    return reinterpret_cast<const quint16*>(anImage.constScanLine(aY))[anX];
}

QString omeXml(const QString& aPixelsAttributes)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                          "<OME xmlns=\"http://www.openmicroscopy.org/Schemas/OME/2016-06\"><Image ID=\"Image:0\">"
                          "<Pixels ID=\"Pixels:0\" DimensionOrder=\"XYZCT\" Type=\"uint16\" SizeX=\"400\" "
                          "SizeY=\"300\" SizeZ=\"1\" SizeC=\"1\" SizeT=\"1\" %1><TiffData/></Pixels></Image></OME>")
        .arg(aPixelsAttributes);
}

} // namespace

using Tags = TiffWriterHelper::Tags;
Q_DECLARE_METATYPE(TiffWriterHelper::Tags)

class tst_MicroscopyPictures : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    AppWindowHelper app;
    OvViewerMainWindow* window = nullptr;

    QString path(const char* aName) const { return dir.filePath(QString::fromLatin1(aName)); }

    void open(const QString& aPath)
    {
        QString error;
        QVERIFY2(window->openImage(aPath, &error), qPrintable(error));
        window->slotZoomActual();
    }

    // The value of the first results row in micrometres (the table uses the
    // panel's automatic unit).
    double firstValue()
    {
        QCoreApplication::processEvents();
        OvResultsModel* model = window->resultsDock()->model();
        if (model->rowCount() == 0)
            return -1.0;
        const QHash<QString, double> umPer = { { QStringLiteral("nm"), 1e-3 }, { QStringLiteral("\u03bcm"), 1.0 },
                                               { QStringLiteral("mm"), 1e3 }, { QStringLiteral("cm"), 1e4 },
                                               { QStringLiteral("m"), 1e6 } };
        const QString unit = model->index(0, OvResultsModel::UnitColumn).data().toString();
        return model->index(0, OvResultsModel::ValueColumn).data(Qt::EditRole).toDouble() * umPer.value(unit, -1.0);
    }

    void dragOnView(const QPointF& aFrom, const QPointF& aTo)
    {
        QGraphicsView* view = window->getView();
        const auto at = [&](const QPointF& aPoint) {
            return view->mapFromScene(window->getEditor()->mapToScene(aPoint));
        };
        QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, at(aFrom));
        QMouseEvent move(QEvent::MouseMove, at(aTo), view->viewport()->mapToGlobal(at(aTo)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &move);
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, at(aTo));
    }

    QList<QToolButton*> noticeButtons() const
    {
        return window->measurementTool()->getNoticeWidget()->findChildren<QToolButton*>();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(app.start().isEmpty());
        window = app.window();
    }

    void cleanupTestCase() { app.stop(); }

    void init()
    {
        window->lineCalibrationAnswer = nullptr;
        window->getEditor()->restoreOverrideManipulator();
        app.openSample();
    }

    void framesOfStacks_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("pages");
        QTest::addColumn<QString>("said");
        // Each page is filled with 1000 * (page + 1) (16-bit) or 40 * (page + 1) (8-bit).
        QTest::newRow("multi-page 8-bit") << QString() << int(QImage::Format_Grayscale8) << 3 << QString();
        QTest::newRow("multi-page 16-bit") << QString() << int(QImage::Format_Grayscale16) << 4 << QString();
        QTest::newRow("ImageJ hyperstack") << QStringLiteral("ImageJ=1.53t\nimages=6\nchannels=2\nframes=3\n"
                                                             "hyperstack=true\nmode=grayscale\nloop=false\n")
                                           << int(QImage::Format_Grayscale16) << 6
                                           << QStringLiteral("ImageJ hyperstack: 2 channels, 3 frames");
        QTest::newRow("ImageJ stack") << QStringLiteral("ImageJ=1.53t\nimages=5\nslices=5\nloop=false\n")
                                      << int(QImage::Format_Grayscale16) << 5
                                      << QStringLiteral("ImageJ stack: 5 slices");
    }

    void framesOfStacks()
    {
        QFETCH(QString, description);
        QFETCH(int, format);
        QFETCH(int, pages);
        QFETCH(QString, said);
        const bool wide = format == QImage::Format_Grayscale16;
        QList<QImage> images;
        for (int page = 0; page < pages; ++page)
            images << TiffWriterHelper::filled(kSize, (page + 1) * (wide ? 1000 : 40), QImage::Format(format));
        Tags tags;
        tags.description = description;
        QVERIFY(TiffWriterHelper::write(path("stack.tif"), images, tags));
        open(path("stack.tif"));
        QCOMPARE(window->frameCount(), pages);
        QVERIFY(window->getFrameBar()->isVisibleTo(window));
        QVERIFY2(window->statusBar()->currentMessage().contains(said), qPrintable(window->statusBar()->currentMessage()));
        for (int frame = pages - 1; frame >= 0; --frame) {
            QVERIFY(window->showFrame(frame));
            const QImage raw = window->currentFrameImage();
            QCOMPARE(raw.size(), kSize);
            QCOMPARE(wide ? int(value16(raw, 7, 9)) : qGray(raw.pixel(7, 9)), (frame + 1) * (wide ? 1000 : 40));
        }
    }

    void imageJStackBehindOneDirectory_data()
    {
        QTest::addColumn<bool>("bigEndian");
        QTest::newRow("little-endian") << false;
        QTest::newRow("big-endian") << true;
    }

    void imageJStackBehindOneDirectory()
    {
        QFETCH(bool, bigEndian);
        QList<QImage> pages;
        for (int page = 0; page < 3; ++page)
            pages << TiffWriterHelper::disc(kSize, 20 + 30 * page, quint16(100 + page), quint16(40000 + page));
        QVERIFY(TiffWriterHelper::writeContiguousImageJ(path("contiguous.tif"), pages, bigEndian));
        open(path("contiguous.tif"));
        QCOMPARE(window->frameCount(), 3);
        for (int frame = 2; frame >= 0; --frame) {
            QVERIFY(window->showFrame(frame));
            QCOMPARE(window->currentFrameImage(), pages.at(frame));
        }
        // Cut inside the last image: refused whole.
        const qint64 size = QFileInfo(path("contiguous.tif")).size();
        QVERIFY(TiffWriterHelper::writeContiguousImageJ(path("cut.tif"), pages, bigEndian, size - 100));
        QString error;
        QVERIFY(!window->openImage(path("cut.tif"), &error));
        QVERIFY2(error.contains(QLatin1String("cut short")), qPrintable(error));
        QCOMPARE(window->frameCount(), 3);
    }

    void calibrationFromTheFile_data()
    {
        QTest::addColumn<Tags>("tags");
        QTest::addColumn<double>("umX");
        QTest::addColumn<double>("umY");
        QTest::addColumn<QString>("source");
        const auto tags = [](const QString& aDescription, double anX, double aY, int aUnit) {
            Tags result;
            result.description = aDescription;
            result.xResolution = anX;
            result.yResolution = aY;
            result.resolutionUnit = aUnit;
            return result;
        };
        // ImageJ: the resolution tags hold pixels per unit of the description.
        QTest::newRow("ImageJ micron") << tags("ImageJ=1.53t\nunit=micron\n", 2.0, 2.0, 1) << 0.5 << 0.5
                                       << "ImageJ description";
        QTest::newRow("ImageJ escaped um") << tags("ImageJ=1.53t\nunit=\\u00B5m\n", 2.0, 2.0, 1) << 0.5 << 0.5
                                           << "ImageJ description";
        QTest::newRow("ImageJ nm, non-square") << tags("ImageJ=1.53t\nunit=nm\n", 0.002, 0.001, 1) << 0.5 << 1.0
                                               << "ImageJ description";
        QTest::newRow("ImageJ pixel") << tags("ImageJ=1.53t\nunit=pixel\n", 1.0, 1.0, 1) << 0.0 << 0.0 << "";
        QTest::newRow("OME um (default unit)") << tags(omeXml("PhysicalSizeX=\"0.5\" PhysicalSizeY=\"0.5\""), 0, 0, 1)
                                               << 0.5 << 0.5 << "OME-XML";
        QTest::newRow("OME nm") << tags(omeXml("PhysicalSizeX=\"500\" PhysicalSizeXUnit=\"nm\" PhysicalSizeY=\"500\" "
                                               "PhysicalSizeYUnit=\"nm\""), 0, 0, 1)
                                << 0.5 << 0.5 << "OME-XML";
        QTest::newRow("OME mm, non-square")
            << tags(omeXml("PhysicalSizeX=\"0.0005\" PhysicalSizeXUnit=\"mm\" PhysicalSizeY=\"0.75\" "
                           "PhysicalSizeYUnit=\"\u00B5m\""), 0, 0, 1)
            << 0.5 << 0.75 << "OME-XML";
        // OME-XML wins over resolution tags in the same file.
        QTest::newRow("OME over tags") << tags(omeXml("PhysicalSizeX=\"0.5\""), 300.0, 300.0, 2) << 0.5 << 0.5
                                       << "OME-XML";
        QTest::newRow("pixels per cm") << tags(QString(), 20000.0, 20000.0, 3) << 0.5 << 0.5 << "resolution tags";
        QTest::newRow("pixels per inch") << tags(QString(), 50800.0, 50800.0, 2) << 0.5 << 0.5 << "resolution tags";
        QTest::newRow("per cm, non-square") << tags(QString(), 20000.0, 10000.0, 3) << 0.5 << 1.0
                                            << "resolution tags";
        // Screen defaults say nothing about the sample.
        QTest::newRow("72 dpi") << tags(QString(), 72.0, 72.0, 2) << 0.0 << 0.0 << "";
        QTest::newRow("no unit") << tags(QString(), 2.0, 2.0, 1) << 0.0 << 0.0 << "";
    }

    void calibrationFromTheFile()
    {
        QFETCH(Tags, tags);
        QFETCH(double, umX);
        QFETCH(double, umY);
        QFETCH(QString, source);
        QImage picture = TiffWriterHelper::disc(kSize, 60, 300, 3000);
        QVERIFY(TiffWriterHelper::write(path("calibrated.tif"), { picture }, tags));
        open(path("calibrated.tif"));
        QVERIFY(qAbs(window->calibration() - umX) < 1e-7);
        QVERIFY(qAbs(window->calibrationY() - umY) < 1e-7);
        const QString label = window->statusBar()->findChildren<QLabel*>().last()->text();
        QCOMPARE(window->measurementTool()->isEnabled(), umX > 0.0);
        if (umX <= 0.0) {
            QCOMPARE(label, QStringLiteral("uncalibrated"));
            return;
        }
        QVERIFY2(label.contains(source) && window->calibrationSource().contains(source), qPrintable(label));
        // A 200-pixel line along x, nothing typed.
        app.play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        // The resolution tags are single-precision numbers.
        QVERIFY2(qAbs(firstValue() - 200 * umX) < 1e-5, qPrintable(QString::number(firstValue())));
    }

    void twelveBitDiscIsVisibleAfterOpening()
    {
        // Values 200 to 3800 of 65535: black on a plain 16-bit display.
        QVERIFY(TiffWriterHelper::write(path("disc.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }));
        open(path("disc.tif"));
        const QImage shown = window->getEditor()->getImage();
        const int field = qGray(shown.pixel(10, 10));
        const int disc = qGray(shown.pixel(kSize.width() / 2, kSize.height() / 2));
        QVERIFY2(field < 30 && disc > 220, qPrintable(QStringLiteral("field %1 disc %2").arg(field).arg(disc)));
        QCOMPARE(window->displayRange(), OvDisplayRange(200, 3800));
        // The stored values are untouched.
        QCOMPARE(value16(window->currentFrameImage(), 10, 10), quint16(200));
        QCOMPARE(value16(window->currentFrameImage(), 200, 150), quint16(3800));
    }

    void brightnessContrastChangesOnlyTheDisplay()
    {
        const QString file = path("dim-stack.tif");
        Tags tags;
        tags.description = QStringLiteral("ImageJ=1.53t\nimages=2\nframes=2\nunit=micron\n");
        tags.xResolution = 2.0;
        QVERIFY(TiffWriterHelper::write(file, { TiffWriterHelper::disc(kSize, 80, 200, 3800),
                                               TiffWriterHelper::disc(kSize, 40, 200, 3800) }, tags));
        const QByteArray before = fileHash(file);
        open(file);
        app.play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        const QString csvBefore = path("before.csv");
        QVERIFY(OvMeasurementExporter::writeCsv(csvBefore, nullptr));
        const int steps = window->undoStack()->count();
        const QImage shownBefore = window->getEditor()->getImage();

        OvBrightnessContrastDialog* dialog = window->brightnessContrastDialog();
        window->slotBrightnessContrast();
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->range(), OvDisplayRange(200, 3800));
        // Typed into the spin boxes: 0 to 7650 shows the field at 200 / 30 and
        // the disc at 3800 / 30.
        dialog->maximumBox()->setValue(7650);
        QCOMPARE(window->displayRange(), OvDisplayRange(200, 7650));
        dialog->minimumBox()->setValue(0);
        QCOMPARE(window->displayRange(), OvDisplayRange(0, 7650));
        QCOMPARE(qGray(window->getEditor()->getImage().pixel(10, 10)), 7);
        QCOMPARE(qGray(window->getEditor()->getImage().pixel(200, 150)), 127);
        // The next frame is shown through the same range.
        QVERIFY(window->showFrame(1));
        QCOMPARE(window->displayRange(), OvDisplayRange(0, 7650));
        QCOMPARE(qGray(window->getEditor()->getImage().pixel(10, 10)), 7);
        QCOMPARE(qGray(window->getEditor()->getImage().pixel(200, 150)), 127);
        QCOMPARE(value16(window->currentFrameImage(), 200, 150), quint16(3800));

        // Nothing stored, measured or written changed.
        const QString csvAfter = path("after.csv");
        QVERIFY(OvMeasurementExporter::writeCsv(csvAfter, nullptr));
        QVERIFY(window->showFrame(0));
        QVERIFY(OvMeasurementExporter::writeCsv(csvAfter, nullptr));
        QCOMPARE(fileHash(csvAfter), fileHash(csvBefore));
        QCOMPARE(window->undoStack()->count(), steps);
        QCOMPARE(fileHash(file), before);

        dialog->resetButton()->click();
        QCOMPARE(window->displayRange(), OvDisplayRange(0, 65535));
        dialog->autoButton()->click();
        QCOMPARE(window->displayRange(), OvDisplayRange(200, 3800));
        QCOMPARE(window->getEditor()->getImage(), shownBefore);
        dialog->close();
    }

    void badTiffsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QVERIFY(TiffWriterHelper::write(path("good.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800),
                                                            TiffWriterHelper::disc(kSize, 40, 200, 3800) }));
        QFile good(path("good.tif"));
        QVERIFY(good.open(QIODevice::ReadOnly));
        const QByteArray whole = good.readAll();
        QTest::newRow("cut in the first page") << whole.left(whole.size() / 4) << "damaged or cut short";
        QTest::newRow("cut in the second page") << whole.left(whole.size() * 3 / 4) << "damaged or cut short";
        QTest::newRow("garbage after the header") << QByteArray("II*\0", 4) + QByteArray(500, '\x7f')
                                                  << "damaged or cut short";
        QTest::newRow("header only") << QByteArray("MM\0*", 4) << "damaged or cut short";
        QTest::newRow("text named .tif") << QByteArray("not a picture") << "Cannot open";
        QTest::newRow("empty") << QByteArray() << "Cannot open";
    }

    void badTiffsAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        QFile bad(path("bad.tif"));
        QVERIFY(bad.open(QIODevice::WriteOnly | QIODevice::Truncate));
        bad.write(content);
        bad.close();
        app.play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QString error;
        QVERIFY(!window->openImage(path("bad.tif"), &error));
        QVERIFY2(error.contains(message) && error.contains(QLatin1String("bad.tif")), qPrintable(error));
        // The sample and its measurement stay.
        QCOMPARE(window->getEditor()->getImage().size(), QSize(1280, 960));
        QCOMPARE(KxKernelData::getInstance()->getObjectsOfType(kDistanceType).size(), 1);
        QCOMPARE(window->calibration(), 0.5);
    }

    void uncalibratedToolEntryOffersCalibration()
    {
        OvToolBase* tool = window->measurementTool();
        QVERIFY(tool->getNoticeWidget()->isHidden());
        QVERIFY(TiffWriterHelper::write(path("plain.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }));
        open(path("plain.tif"));
        QVERIFY(!tool->isEnabled());
        QVERIFY(tool->getNoticeWidget()->isVisible() && tool->getNoticeWidget()->isEnabled());
        QVERIFY(tool->getNotice().contains(QLatin1String("needs a calibration")));
        const QList<QToolButton*> buttons = noticeButtons();
        QCOMPARE(buttons.size(), 2);
        // Typed: one click opens the page to type it on.
        window->getConfigurationPanel()->hide();
        QTest::mouseClick(buttons.at(0), Qt::LeftButton);
        QVERIFY(window->getConfigurationPanel()->isVisible());
        QCOMPARE(window->getConfigurationList()->currentItem()->whatsThis(), QStringLiteral("Device Configuration"));
        window->getConfigurationPanel()->hide();
        // From a line: one click starts the line.
        window->lineCalibrationAnswer = [](OvLineCalibrationDialog& aDialog) {
            aDialog.setTrueLength(100.0, OvLineCalibrationDialog::Micrometre);
            return true;
        };
        QTest::mouseClick(noticeButtons().at(1), Qt::LeftButton);
        QCOMPARE(window->getEditor()->getOverrideManipulator(), window->calibrationLineTool());
        dragOnView(QPointF(100, 150), QPointF(220, 310)); // 200 px
        QCOMPARE(window->calibration(), 0.5);
        QVERIFY(tool->isEnabled() && tool->getNoticeWidget()->isHidden());
        window->undoStack()->undo();
        QVERIFY(!tool->isEnabled() && tool->getNoticeWidget()->isVisible());
    }

    void typedCalibrationReplacesTheFilesAsOneStep()
    {
        Tags tags;
        tags.description = omeXml("PhysicalSizeX=\"0.5\" PhysicalSizeY=\"0.75\"");
        QVERIFY(TiffWriterHelper::write(path("ome.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }, tags));
        open(path("ome.tif"));
        QCOMPARE(window->calibrationSource(), QStringLiteral("from the file's OME-XML metadata"));
        window->requestCalibration(0.25);
        QCOMPARE(window->undoStack()->count(), 1);
        QCOMPARE(window->calibration(), 0.25);
        QCOMPARE(window->calibrationY(), 0.25);
        QCOMPARE(window->calibrationSource(), QString());
        window->undoStack()->undo();
        QCOMPARE(window->calibration(), 0.5);
        QCOMPARE(window->calibrationY(), 0.75);
        QCOMPARE(window->calibrationSource(), QStringLiteral("from the file's OME-XML metadata"));
        window->undoStack()->redo();
        QCOMPARE(window->calibration(), 0.25);
    }

    void savedPictureReopensCalibrated_data()
    {
        QTest::addColumn<double>("umX");
        QTest::addColumn<double>("umY");
        QTest::newRow("square") << 0.5 << 0.5;
        QTest::newRow("non-square") << 0.5 << 0.75;
    }

    void savedPictureReopensCalibrated()
    {
        QFETCH(double, umX);
        QFETCH(double, umY);
        Tags tags;
        tags.description = omeXml(QStringLiteral("PhysicalSizeX=\"%1\" PhysicalSizeY=\"%2\"").arg(umX).arg(umY));
        QVERIFY(TiffWriterHelper::write(path("ome.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }, tags));
        open(path("ome.tif"));
        app.play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QString error;
        QVERIFY2(window->saveScreenshot(path("measured.png"), true, &error), qPrintable(error));
        open(path("measured.png"));
        QCOMPARE(window->calibration(), umX);
        QCOMPARE(window->calibrationY(), umY);
        QVERIFY(window->calibrationSource().contains(QLatin1String("UmPerPixel")));
    }

    void calibrationFromALineInEveryUnit_data()
    {
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("length");
        QTest::addColumn<double>("umPerPixel");
        // A line of 200 pixels.
        QTest::newRow("nm") << int(OvLineCalibrationDialog::Nanometre) << 100000.0 << 0.5;
        QTest::newRow("um") << int(OvLineCalibrationDialog::Micrometre) << 100.0 << 0.5;
        QTest::newRow("mm") << int(OvLineCalibrationDialog::Millimetre) << 0.1 << 0.5;
        QTest::newRow("cm") << int(OvLineCalibrationDialog::Centimetre) << 2.0 << 100.0;
        QTest::newRow("m") << int(OvLineCalibrationDialog::Metre) << 0.001 << 5.0;
        QTest::newRow("mil") << int(OvLineCalibrationDialog::Mil) << 10.0 << 1.27;
        QTest::newRow("inch") << int(OvLineCalibrationDialog::Inch) << 0.5 << 63.5;
    }

    void calibrationFromALineInEveryUnit()
    {
        QFETCH(int, unit);
        QFETCH(double, length);
        QFETCH(double, umPerPixel);
        OvLineCalibrationDialog probe(200.0);
        // A unit the dialog offers without a row here fails.
        QCOMPARE(probe.findChild<QComboBox*>(QStringLiteral("theCBUnit"))->count(), 7);
        QVERIFY(TiffWriterHelper::write(path("plain.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }));
        open(path("plain.tif"));
        window->lineCalibrationAnswer = [&](OvLineCalibrationDialog& aDialog) {
            aDialog.findChild<QComboBox*>(QStringLiteral("theCBUnit"))->setCurrentIndex(unit);
            aDialog.findChild<QDoubleSpinBox*>(QStringLiteral("theSBLength"))->setValue(length);
            return true;
        };
        window->slotCalibrateFromLine();
        dragOnView(QPointF(100, 150), QPointF(220, 310)); // 200 px
        QVERIFY2(qAbs(window->calibration() - umPerPixel) < 1e-9 * umPerPixel,
                 qPrintable(QString::number(window->calibration(), 'g', 17)));
        QCOMPARE(window->calibrationSource(), QStringLiteral("from a line"));
        // The 200-pixel line now reads the length typed, in micrometres.
        app.play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QVERIFY(qAbs(firstValue() - 200.0 * umPerPixel) < 1e-6 * umPerPixel);
    }

    void measurementFileAppliesItsCalibration()
    {
        Tags tags;
        tags.description = QStringLiteral("ImageJ=1.53t\nunit=micron\n");
        tags.xResolution = 2.0;
        QVERIFY(TiffWriterHelper::write(path("half.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }, tags));
        tags.xResolution = 4.0;
        QVERIFY(TiffWriterHelper::write(path("quarter.tif"), { TiffWriterHelper::disc(kSize, 80, 200, 3800) }, tags));
        open(path("half.tif"));
        app.play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QCOMPARE(firstValue(), 100.0);
        QString error;
        QVERIFY2(window->saveMeasurements(path("half.measurements.json"), &error), qPrintable(error));

        open(path("quarter.tif"));
        QCOMPARE(window->calibration(), 0.25);
        QVERIFY2(window->loadMeasurements(path("half.measurements.json"), &error), qPrintable(error));
        QCOMPARE(window->calibration(), 0.5);
        QCOMPARE(window->calibrationSource(), QStringLiteral("from the measurement file"));
        QCOMPARE(firstValue(), 100.0);
    }

    void playingStopsOnTheLastFrame()
    {
        QList<QImage> pages;
        for (int page = 0; page < 4; ++page)
            pages << TiffWriterHelper::filled(kSize, 1000 * (page + 1));
        QVERIFY(TiffWriterHelper::write(path("movie.tif"), pages));
        open(path("movie.tif"));
        OvFrameBar* bar = window->getFrameBar();
        bar->setInterval(1);
        bar->slotTogglePlay();
        QVERIFY(bar->isPlaying());
        QTRY_VERIFY(!bar->isPlaying());
        QCOMPARE(bar->currentFrame(), 3);
        QCOMPARE(KxKernelData::getInstance()->getCurrentFrame(), 3);
        QCOMPARE(value16(window->currentFrameImage(), 0, 0), quint16(4000));
        bar->setInterval(500);
    }
};

QTEST_MAIN(tst_MicroscopyPictures)
#include "tst_microscopypictures.moc"
