// The viewer end to end: ovviewer is started as a user would start it, loads
// the plug-in through QPluginLoader, replays a gesture script through real
// mouse events and exports the stored values as CSV.
#include "ViewerRunHelper.h"

#include <QtTest>

namespace {

const QString kMicro = QStringLiteral("\u03BCm");
using Run = ViewerRunHelper::Run;

} // namespace

class tst_Viewer : public QObject
{
    Q_OBJECT

private:
    ViewerRunHelper viewer;

private Q_SLOTS:
    void initTestCase() { QVERIFY(viewer.isValid()); }

    void drawsAndExportsDistances()
    {
        // The sample is calibrated at 0.5 um per pixel.
        const Run run = viewer.run(QStringLiteral(
            "tool distance\n"
            "press 100 100\nmove 100 111\nrelease 100 111\n"      // drag: stored at once
            "press 200 200\nrelease 205 203\n"                    // a click: still drawing
            "move 260 200\nclick 260 200\n"));                    // second click stores it
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.header, ViewerRunHelper::kHeader);
        QCOMPARE(run.rows.size(), 2);
        QCOMPARE(run.rows.at(0), (QStringList{ "66653", "1", "Length", "5.5", kMicro, "5.500 " + kMicro, "Distance", "0" }));
        QCOMPARE(run.rows.at(1), (QStringList{ "66653", "2", "Length", "30", kMicro, "30.000 " + kMicro, "Distance", "0" }));
    }

    void undoAndRedoReachTheStore_data()
    {
        QTest::addColumn<QString>("tail");
        QTest::addColumn<int>("rows");
        QTest::newRow("undo") << "undo\n" << 1;
        QTest::newRow("undo twice") << "undo\nundo\n" << 0;
        QTest::newRow("undo redo") << "undo\nredo\n" << 2;
        QTest::newRow("delete selected") << "delete\n" << 1;
        QTest::newRow("delete then undo") << "delete\nundo\n" << 2;
    }
    void undoAndRedoReachTheStore()
    {
        QFETCH(QString, tail);
        QFETCH(int, rows);
        const Run run = viewer.run(QStringLiteral("tool distance\n"
                                                 "press 100 100\nmove 150 100\nrelease 150 100\n"
                                                 "press 100 300\nmove 100 380\nrelease 100 380\n")
                                  + tail);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.rows.size(), rows);
    }

    void unitAndCalibrationChangeTheValues()
    {
        const Run run = viewer.run(QStringLiteral("tool distance\n"
                                                 "press 100 100\nmove 100 111\nrelease 100 111\n"
                                                 "unit mm\n"),
                                  { QStringLiteral("--calibration"), QStringLiteral("2") });
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.rows.size(), 1);
        QCOMPARE(run.rows.first().at(4), QStringLiteral("mm"));
        QCOMPARE(run.rows.first().at(3).toDouble(), 0.022);
        QCOMPARE(run.rows.first().at(5), QStringLiteral("22.00\u2219" "10 \u0304\u00B3 mm"));
    }

    void badLineStopsWithItsNumber()
    {
        const Run run = viewer.run(QStringLiteral("tool distance\npress 10 10\nstretch 5\nrelease 50 50\n"));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("line 3: unknown command 'stretch'")), qPrintable(run.errors));
    }

    void unknownToolIsRefused()
    {
        const Run run = viewer.run(QStringLiteral("# nothing before\ntool ruler\n"));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("line 2: unknown tool 'ruler'")), qPrintable(run.errors));
    }

    void uncalibratedPictureCannotBeMeasured()
    {
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::gray);
        const QString file = viewer.filePath(QStringLiteral("plain.png"));
        QVERIFY(image.save(file));
        const Run run = viewer.run(QStringLiteral("tool distance\n"), { file });
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("line 1: the Measurement tool is disabled")),
                 qPrintable(run.errors));
    }

    void calibratingInTheScriptEnablesMeasuring()
    {
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(Qt::darkGray);
        const QString file = viewer.filePath(QStringLiteral("plain.bmp"));
        QVERIFY(image.save(file));
        const Run run = viewer.run(QStringLiteral("calibrate 0.1\ntool distance\n"
                                                 "press 10 10\nmove 10 110\nrelease 10 110\n"),
                                  { file });
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.rows.size(), 1);
        QCOMPARE(run.rows.first().at(3).toDouble(), 10.0);
    }

    void missingOrBrokenPictureIsReported_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing") << "absent.png" << QByteArray() << "the file does not exist";
        QTest::newRow("not a picture") << "broken.png" << QByteArray("garbage, not a PNG") << "Cannot open";
    }
    void missingOrBrokenPictureIsReported()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        const QString file = viewer.filePath(name);
        if (!content.isEmpty()) {
            QFile out(file);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(content);
        }
        const Run run = viewer.run(QString(), { file });
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains(message), qPrintable(run.errors));
    }

    void screenshotIsWritten()
    {
        const QString png = viewer.filePath(QStringLiteral("shot.png"));
        const Run run = viewer.run(QStringLiteral("tool distance\nclick 300 300\nmove 400 350\nclick 400 350\n"),
                                  { QStringLiteral("--screenshot"), png });
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QImage shot(png);
        QVERIFY(!shot.isNull());
        QVERIFY(shot.width() > 600);
    }
};

QTEST_GUILESS_MAIN(tst_Viewer)
#include "tst_viewer.moc"
