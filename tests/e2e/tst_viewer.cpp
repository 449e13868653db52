// The viewer end to end: ovviewer is started as a user would start it, loads
// the plug-in through QPluginLoader, replays a gesture script through real
// mouse events and exports the stored values as CSV.
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

namespace {

const QString kViewer = QStringLiteral(OV_BINARY_DIR "/bin/ovviewer");
const QString kMicro = QStringLiteral("\u03BCm");

struct Run
{
    int exitCode = -1;
    QString errors;
    QList<QStringList> rows; // CSV rows without the header
    QString header;
};

QList<QStringList> parseCsv(const QString& aText, QString* aHeader)
{
    QList<QStringList> rows;
    QStringList lines = aText.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (!lines.isEmpty() && aHeader)
        *aHeader = lines.takeFirst();
    for (const QString& line : lines)
        rows << line.split(QLatin1Char(','));
    return rows;
}

} // namespace

class tst_Viewer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir dir;

    Run runViewer(const QString& aScript, const QStringList& anExtraArgs = {})
    {
        Run run;
        const QString scriptFile = dir.filePath(QStringLiteral("script.ovs"));
        const QString csvFile = dir.filePath(QStringLiteral("values.csv"));
        QFile::remove(csvFile);
        QFile script(scriptFile);
        if (!script.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return run;
        script.write(aScript.toUtf8());
        script.close();

        QProcess viewer;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("OV_SETTINGS_FILE"), dir.filePath(QStringLiteral("settings.ini")));
        viewer.setProcessEnvironment(env);
        viewer.start(kViewer, QStringList{ QStringLiteral("--script"), scriptFile, QStringLiteral("--export"),
                                           csvFile, QStringLiteral("--quit") } + anExtraArgs);
        if (!viewer.waitForFinished(120000)) {
            viewer.kill();
            run.errors = QStringLiteral("viewer did not finish");
            return run;
        }
        run.exitCode = viewer.exitCode();
        run.errors = QString::fromUtf8(viewer.readAllStandardError());
        QFile csv(csvFile);
        if (csv.open(QIODevice::ReadOnly))
            run.rows = parseCsv(QString::fromUtf8(csv.readAll()), &run.header);
        return run;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void drawsAndExportsDistances()
    {
        // The sample is calibrated at 0.5 um per pixel.
        const Run run = runViewer(QStringLiteral(
            "tool distance\n"
            "press 100 100\nmove 100 111\nrelease 100 111\n"      // drag: stored at once
            "press 200 200\nrelease 205 203\n"                    // a click: still drawing
            "move 260 200\nclick 260 200\n"));                    // second click stores it
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.header, QStringLiteral("type,index,value_name,value,unit,text,type_name,frame"));
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
        const Run run = runViewer(QStringLiteral("tool distance\n"
                                                 "press 100 100\nmove 150 100\nrelease 150 100\n"
                                                 "press 100 300\nmove 100 380\nrelease 100 380\n")
                                  + tail);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QCOMPARE(run.rows.size(), rows);
    }

    void unitAndCalibrationChangeTheValues()
    {
        const Run run = runViewer(QStringLiteral("tool distance\n"
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
        const Run run = runViewer(QStringLiteral("tool distance\npress 10 10\nstretch 5\nrelease 50 50\n"));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("line 3: unknown command 'stretch'")), qPrintable(run.errors));
    }

    void unknownToolIsRefused()
    {
        const Run run = runViewer(QStringLiteral("# nothing before\ntool ruler\n"));
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("line 2: unknown tool 'ruler'")), qPrintable(run.errors));
    }

    void uncalibratedPictureCannotBeMeasured()
    {
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::gray);
        const QString file = dir.filePath(QStringLiteral("plain.png"));
        QVERIFY(image.save(file));
        const Run run = runViewer(QStringLiteral("tool distance\n"), { file });
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.errors.contains(QStringLiteral("line 1: the Measurement tool is disabled")),
                 qPrintable(run.errors));
    }

    void calibratingInTheScriptEnablesMeasuring()
    {
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(Qt::darkGray);
        const QString file = dir.filePath(QStringLiteral("plain.bmp"));
        QVERIFY(image.save(file));
        const Run run = runViewer(QStringLiteral("calibrate 0.1\ntool distance\n"
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
        const QString file = dir.filePath(name);
        if (!content.isEmpty()) {
            QFile out(file);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(content);
        }
        const Run run = runViewer(QString(), { file });
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.errors.contains(message), qPrintable(run.errors));
    }

    void screenshotIsWritten()
    {
        const QString png = dir.filePath(QStringLiteral("shot.png"));
        const Run run = runViewer(QStringLiteral("tool distance\nclick 300 300\nmove 400 350\nclick 400 350\n"),
                                  { QStringLiteral("--screenshot"), png });
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
        QImage shot(png);
        QVERIFY(!shot.isNull());
        QVERIFY(shot.width() > 600);
    }
};

QTEST_GUILESS_MAIN(tst_Viewer)
#include "tst_viewer.moc"
