// The viewer's window around the measurements: the results table, calibration
// from a known length, saving and opening measurements, and image sequences,
// each driven through the real window (offscreen) with the real plug-in.
#include "AppWindowHelper.h"
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxGsObject.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "OvCalibrationLineManipulator.h"
#include "OvFrameBar.h"
#include "OvLineCalibrationDialog.h"
#include "OvMeasurementExporter.h"
#include "OvMeasurementFile.h"
#include "OvResultsDock.h"
#include "OvResultsModel.h"
#include "OvViewerMainWindow.h"

#include <QGraphicsView>
#include <QStatusBar>
#include <QHeaderView>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

namespace {

const int kDistanceType = 66653;

// A grey picture of aSize, calibrated when anUmPerPixel is above 0.
QString writePicture(const QString& aPath, const QSize& aSize, double anUmPerPixel = 0.0, int aGrey = 128)
{
    QImage image(aSize, QImage::Format_RGB32);
    image.fill(QColor(aGrey, aGrey, aGrey));
    if (anUmPerPixel > 0.0)
        image.setText(QStringLiteral("UmPerPixel"), QString::number(anUmPerPixel));
    image.save(aPath);
    return aPath;
}

QMap<QPair<int, int>, KxKernelObjectData::State> storeStates()
{
    QMap<QPair<int, int>, KxKernelObjectData::State> states;
    for (const auto& key : AppWindowHelper::storedKeys())
        states.insert(key, KxKernelData::getInstance()->getObject(key.first, key.second)->getState());
    return states;
}

} // namespace

class tst_ResultsFilesFrames : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    AppWindowHelper app;
    OvViewerMainWindow* window = nullptr;

    void play(const QString& aScript) { app.play(aScript); }

    OvResultsModel* results() const { return window->resultsDock()->model(); }

    // The model after the store's notifications have been folded in.
    int resultRows()
    {
        QCoreApplication::processEvents();
        return results()->rowCount();
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

    void resultsFollowTheStore()
    {
        QCOMPARE(resultRows(), 0);
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n"
             "press 100 300\nmove 100 360\nrelease 100 360\n");
        QCOMPARE(resultRows(), 2);
        // The same rows as the export, with the type name and frame beside them.
        const QVector<OvMeasurementExporter::Row> exported = OvMeasurementExporter::collect();
        for (int row = 0; row < 2; ++row) {
            const auto cell = [&](int aColumn) { return results()->index(row, aColumn).data(Qt::EditRole); };
            QCOMPARE(cell(OvResultsModel::TypeColumn).toString(), QStringLiteral("Distance"));
            QCOMPARE(cell(OvResultsModel::IndexColumn).toInt(), exported.at(row).index);
            QCOMPARE(cell(OvResultsModel::ValueColumn), exported.at(row).value);
            QCOMPARE(cell(OvResultsModel::TextColumn).toString(), exported.at(row).text);
            QCOMPARE(cell(OvResultsModel::FrameColumn).toInt(), 0);
        }
        // 200 px at 0.5 um per pixel.
        QCOMPARE(results()->index(0, OvResultsModel::ValueColumn).data(Qt::EditRole).toDouble(), 100.0);

        window->undoStack()->undo();
        QCOMPARE(resultRows(), 1);
        window->undoStack()->redo();
        QCOMPARE(resultRows(), 2);
        window->undoStack()->setIndex(0);
        QCOMPARE(resultRows(), 0);
        window->undoStack()->setIndex(2);
        QCOMPARE(resultRows(), 2);

        // A calibration change reaches the table without any store change.
        window->setCalibration(0.25);
        QCOMPARE(resultRows(), 2);
        QCOMPARE(results()->index(0, OvResultsModel::ValueColumn).data(Qt::EditRole).toDouble(), 50.0);

        // Copying: header and the chosen rows, tab-separated, full precision.
        const QStringList lines = results()->toTsv({ 1 }).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.at(0), QStringLiteral("Type\tIndex\tValue name\tValue\tUnit\tLabel\tFrame"));
        QCOMPARE(lines.at(1).section('\t', 0, 3), QStringLiteral("Distance\t2\tLength\t15"));

        // A click on a row selects that measurement.
        window->getEditor()->setCurrentObject(nullptr, false);
        QTableView* table = window->resultsDock()->view();
        table->resizeColumnsToContents();
        const QRect cell = table->visualRect(results()->index(1, OvResultsModel::TypeColumn));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
        KxGsObject* current = window->getEditor()->getCurrentObject();
        QVERIFY(current);
        QCOMPARE(current->getManipulator()->getObjectIdx(current), 2);
    }

    // Rows drawn one by one into an empty table are shown whole: the columns
    // widen to them (and a wider label after a unit change) once per burst.
    void columnsWidenToRowsAsTheyCome()
    {
        QTableView* table = window->resultsDock()->view();
        const QAbstractItemView* view = table;
        QCOMPARE(resultRows(), 0);
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QCOMPARE(resultRows(), 1);
        QCoreApplication::processEvents();
        const auto fits = [table, view](int aColumn) {
            return table->columnWidth(aColumn) >= view->sizeHintForColumn(aColumn);
        };
        QVERIFY(view->sizeHintForColumn(OvResultsModel::TypeColumn)
                > table->horizontalHeader()->sectionSizeHint(OvResultsModel::TypeColumn));
        for (int column : { OvResultsModel::TypeColumn, OvResultsModel::TextColumn, OvResultsModel::ValueColumn })
            QVERIFY2(fits(column), qPrintable(QString::number(column)));
        play("unit nm\n");
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QVERIFY(fits(OvResultsModel::TextColumn));
    }

    // The export writes the table's rows; changes not yet folded into the
    // table (no event loop since) are in the file all the same.
    void exportRightAfterChangesHoldsThem()
    {
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QCOMPARE(resultRows(), 1);
        const QString csv = dir.filePath(QStringLiteral("right-after.csv"));
        const auto exported = [&] {
            QString error;
            if (!window->exportValues(csv, &error))
                return error;
            QFile file(csv);
            return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        };
        const auto expected = [] { return OvMeasurementExporter::toCsv(OvMeasurementExporter::collect()); };

        window->setCalibration(0.25);
        QCOMPARE(exported(), expected());
        QVERIFY(exported().contains(QStringLiteral(",50,")));
        window->undoStack()->undo();
        QCOMPARE(exported(), expected());
        QCOMPARE(exported().count('\n'), 1);
        window->undoStack()->redo();
        QCOMPARE(exported(), expected());
        QCOMPARE(exported().count('\n'), 2);
        KxKernelData::getInstance()->removeAllObjects();
        QCOMPARE(exported().count('\n'), 1);
        window->setCalibration(0.5);
    }

    void calibrationFromADraggedLine_data()
    {
        QTest::addColumn<double>("trueLength");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("umPerPixel");
        // The line is dragged 200 px long.
        QTest::newRow("100 um") << 100.0 << int(OvLineCalibrationDialog::Micrometre) << 0.5;
        QTest::newRow("0.1 mm") << 0.1 << int(OvLineCalibrationDialog::Millimetre) << 0.5;
        QTest::newRow("1 inch") << 1.0 << int(OvLineCalibrationDialog::Inch) << 127.0;
        QTest::newRow("250 nm") << 250.0 << int(OvLineCalibrationDialog::Nanometre) << 0.00125;
    }

    void calibrationFromADraggedLine()
    {
        QFETCH(double, trueLength);
        QFETCH(int, unit);
        QFETCH(double, umPerPixel);
        QString error;
        QVERIFY(window->openImage(writePicture(dir.filePath("plain.png"), QSize(600, 400)), &error));
        window->slotZoomActual();
        QCOMPARE(window->calibration(), 0.0);
        double offered = 0.0;
        window->lineCalibrationAnswer = [&](OvLineCalibrationDialog& aDialog) {
            offered = aDialog.linePixels();
            aDialog.setTrueLength(trueLength, unit);
            return true;
        };
        window->slotCalibrateFromLine();
        QCOMPARE(window->getEditor()->getOverrideManipulator(), window->calibrationLineTool());
        dragOnView(QPointF(100, 150), QPointF(220, 310));
        QCOMPARE(offered, 200.0);
        QVERIFY(!window->getEditor()->getOverrideManipulator());
        QCOMPARE(window->calibration(), umPerPixel);
        // One undo step that really reverts it.
        QCOMPARE(window->undoStack()->count(), 1);
        window->undoStack()->undo();
        QCOMPARE(window->calibration(), 0.0);
        window->undoStack()->redo();
        QCOMPARE(window->calibration(), umPerPixel);
    }

    void calibrationFromASelectedLineUpdatesLabels()
    {
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        KxGsObject* line = window->getEditor()->getCurrentObject();
        QVERIFY(line);
        const QString before = line->getDisplayValue();
        window->lineCalibrationAnswer = [](OvLineCalibrationDialog& aDialog) {
            aDialog.setTrueLength(50.0, OvLineCalibrationDialog::Micrometre);
            return true;
        };
        window->slotCalibrateFromLine();
        QCOMPARE(window->calibration(), 0.25);
        QCOMPARE(line->getDisplayValue(), QString::fromUtf8("50.000 \u03bcm"));
        window->undoStack()->undo();
        QCOMPARE(line->getDisplayValue(), before);
    }

    void lineCalibrationRefusals_data()
    {
        QTest::addColumn<double>("pixels");
        QTest::addColumn<double>("length");
        QTest::addColumn<int>("unit");
        QTest::newRow("no line") << 0.0 << 100.0 << 1;
        QTest::newRow("no length") << 200.0 << 0.0 << 1;
        QTest::newRow("negative") << 200.0 << -5.0 << 1;
        QTest::newRow("unknown unit") << 200.0 << 100.0 << 42;
        QTest::newRow("infinite") << 200.0 << qInf() << 1;
    }

    void lineCalibrationRefusals()
    {
        QFETCH(double, pixels);
        QFETCH(double, length);
        QFETCH(int, unit);
        QString error;
        QVERIFY(!window->calibrateFromLine(pixels, length, unit, QStringLiteral("Objective"), &error));
        QVERIFY(!error.isEmpty());
        QCOMPARE(window->calibration(), 0.5);
        QCOMPARE(window->undoStack()->count(), 0);
    }

    void escapeCancelsTheCalibrationLine()
    {
        bool asked = false;
        window->lineCalibrationAnswer = [&](OvLineCalibrationDialog&) { return asked = true; };
        window->slotCalibrateFromLine();
        QGraphicsView* view = window->getView();
        QTest::mousePress(view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        QMouseEvent move(QEvent::MouseMove, QPoint(150, 60), view->viewport()->mapToGlobal(QPoint(150, 60)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &move);
        QVERIFY(window->calibrationLineTool()->isDrawing());
        // The key as the window gets it: Escape is also the Edit menu's
        // shortcut, which must not swallow the cancel.
        QTest::keyClick(view->viewport(), Qt::Key_Escape);
        QVERIFY(!window->calibrationLineTool()->isDrawing());
        // Letting go of the mouse afterwards asks nothing either.
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(150, 60));
        QVERIFY(!asked);
        QVERIFY(!window->getEditor()->getOverrideManipulator());
        QCOMPARE(window->calibration(), 0.5);
    }

    void badMeasurementFilesLoseNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("corrupt") << QByteArray("{\"format\": \"ovmeasurements\", \"version\": 1, \"objects\": [")
                                 << "not a measurement file (";
        QTest::newRow("newer") << QByteArray("{\"format\": \"ovmeasurements\", \"version\": 7, \"objects\": []}")
                               << "newer version";
        QTest::newRow("empty") << QByteArray() << "not a measurement file";
        QTest::newRow("missing") << QByteArray("-") << "does not exist";
    }

    void badMeasurementFilesLoseNothing()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        const auto before = storeStates();
        const int steps = window->undoStack()->count();
        QString file = dir.filePath(QStringLiteral("bad-%1.json").arg(QTest::currentDataTag()));
        if (content != "-") {
            QFile out(file);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(content);
        } else {
            file = dir.filePath("nowhere.json");
        }
        QString error;
        QVERIFY(!window->loadMeasurements(file, &error));
        QVERIFY2(error.contains(message) && error.contains(file), qPrintable(error));
        QVERIFY(storeStates() == before);
        QCOMPARE(window->undoStack()->count(), steps);
    }

    void truncatedFileIsRefused()
    {
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        const QString file = dir.filePath("whole.json");
        QString error;
        QVERIFY(window->saveMeasurements(file, &error));
        QFile whole(file);
        QVERIFY(whole.open(QIODevice::ReadOnly));
        const QByteArray content = whole.readAll();
        whole.close();
        const QString cut = dir.filePath("cut.json");
        QFile out(cut);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content.left(content.size() * 2 / 3));
        out.close();
        const auto before = storeStates();
        QVERIFY(!window->loadMeasurements(cut, &error));
        QVERIFY(storeStates() == before);
    }

    void otherPictureSizeLoadsAndSaysSo()
    {
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        const QString file = dir.filePath("sample.json");
        QString error;
        QVERIFY(window->saveMeasurements(file, &error));
        QVERIFY(window->openImage(writePicture(dir.filePath("small.png"), QSize(640, 480), 0.5), &error));
        QVERIFY(window->loadMeasurements(file, &error));
        QCOMPARE(KxKernelData::getInstance()->getObjectsOfType(kDistanceType).size(), 1);
        QVERIFY2(window->statusBar()->currentMessage().contains("1280 x 960"),
                 qPrintable(window->statusBar()->currentMessage()));
    }

    void sequenceFramesKeepTheirOwnGeometry()
    {
        const QString a = writePicture(dir.filePath("s1.png"), QSize(400, 300), 0.5, 90);
        const QString b = writePicture(dir.filePath("s2.png"), QSize(400, 300), 0.0, 140);
        const QString c = writePicture(dir.filePath("s3.png"), QSize(400, 300), 0.0, 190);
        QString error;
        QVERIFY2(window->openImages({ a, b, c }, &error), qPrintable(error));
        window->slotZoomActual();
        QCOMPARE(window->frameCount(), 3);
        QCOMPARE(KxKernelData::getInstance()->getMediaInfo().getFrameCount(), 3);
        QCOMPARE(window->calibration(), 0.5);

        play("tool distance\npress 50 50\nmove 50 150\nrelease 50 150\n");
        const auto line = [] {
            const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(kDistanceType, 1);
            QStringList values;
            for (qint64 frame = 0; frame < 3; ++frame) {
                const KxParamKeyframeVector keys = data->getKeyframesAt(frame);
                values << QStringLiteral("%1,%2 by %3,%4").arg(keys[3].getValue().toPoint().x())
                              .arg(keys[3].getValue().toPoint().y()).arg(keys[5].getValue().toPoint().x())
                              .arg(keys[5].getValue().toPoint().y());
            }
            return values.join(QStringLiteral("; "));
        };
        QVERIFY(KxKernelData::getInstance()->getObject(kDistanceType, 1)->animated);
        // Frame 2: moved as a whole; frame 3: its end dragged.
        play("frame 1\nselect none\npress 50 100\nmove 90 100\nrelease 90 100\n"
             "frame 2\nselect none\npress 90 150\nmove 90 200\nrelease 90 200\n");
        QCOMPARE(line(), QStringLiteral("50,50 by 0,100; 90,50 by 0,100; 90,50 by 0,150"));
        QCOMPARE(window->getEditor()->getImage().pixelColor(5, 5), QColor(190, 190, 190));
        QCOMPARE(window->getFrameBar()->currentFrame(), 2);
        QCOMPARE(resultRows(), 1);
        QCOMPARE(results()->index(0, OvResultsModel::FrameColumn).data().toInt(), 2);
        QCOMPARE(results()->index(0, OvResultsModel::ValueColumn).data(Qt::EditRole).toDouble(), 75.0);

        // The frame bar's buttons walk the frames and the picture follows.
        window->getFrameBar()->slotPrevious();
        QCOMPARE(KxKernelData::getInstance()->getCurrentFrame(), 1);
        QCOMPARE(window->getEditor()->getImage().pixelColor(5, 5), QColor(140, 140, 140));
        window->getFrameBar()->slotPrevious();
        window->getFrameBar()->slotPrevious();
        QCOMPARE(KxKernelData::getInstance()->getCurrentFrame(), 0);
        KxGsObject* item = window->getEditor()->getAllChildGsObjects().value(0);
        QVERIFY(item);
        QCOMPARE(item->pos(), QPointF(50, 50));
        window->getFrameBar()->slotNext();
        QCOMPARE(item->pos(), QPointF(90, 50));
    }

    void badSequencesAreRefused_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("message");
        QTest::newRow("sizes differ") << QStringList{ "a.png", "wide.png" } << "has 500 x 300 pixels";
        QTest::newRow("one missing") << QStringList{ "a.png", "missing.png" } << "does not exist";
        QTest::newRow("not a picture") << QStringList{ "a.png", "text.png" } << "Cannot open";
        QTest::newRow("none") << QStringList{} << "No picture";
    }

    void badSequencesAreRefused()
    {
        QFETCH(QStringList, names);
        QFETCH(QString, message);
        writePicture(dir.filePath("a.png"), QSize(400, 300));
        writePicture(dir.filePath("wide.png"), QSize(500, 300));
        QFile text(dir.filePath("text.png"));
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write("not a picture");
        text.close();
        play("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n");
        QStringList files;
        for (const QString& name : names)
            files << dir.filePath(name);
        QString error;
        QVERIFY(!window->openImages(files, &error));
        QVERIFY2(error.contains(message), qPrintable(error));
        // The picture and its measurement stay.
        QCOMPARE(window->getEditor()->getImage().size(), QSize(1280, 960));
        QCOMPARE(KxKernelData::getInstance()->getObjectsOfType(kDistanceType).size(), 1);
    }
};

QTEST_MAIN(tst_ResultsFilesFrames)
#include "tst_resultsfilesframes.moc"
