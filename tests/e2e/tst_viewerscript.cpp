// Every refusal the viewer promises for gesture scripts, through the real
// executable: the replay stops at the first command that cannot be carried
// out with "line N: reason" on standard error and exit code 1; what ran
// before it stays (and is exported). Scripted runs never ask questions, so
// they finish even with unsaved measurements.
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kViewer = QStringLiteral(OV_BINARY_DIR "/bin/ovviewer");

struct Outcome
{
    int exitCode = -1;
    QString errors;
    int rows = -1; // CSV rows without the header, -1 without a CSV
    QString header;
};

} // namespace

class tst_ViewerScript : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir dir;

    Outcome runViewer(const QString& aScript, const QStringList& anExtraArgs = {}, bool aWriteScript = true)
    {
        Outcome outcome;
        const QString scriptFile = dir.filePath(QStringLiteral("refusal.ovs"));
        const QString csvFile = dir.filePath(QStringLiteral("refusal.csv"));
        QFile::remove(csvFile);
        QFile::remove(scriptFile);
        if (aWriteScript) {
            QFile script(scriptFile);
            if (!script.open(QIODevice::WriteOnly))
                return outcome;
            script.write(aScript.toUtf8());
        }
        QProcess viewer;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("OV_SETTINGS_FILE"), dir.filePath(QStringLiteral("settings.ini")));
        viewer.setProcessEnvironment(env);
        viewer.start(kViewer, QStringList{ QStringLiteral("--script"), scriptFile, QStringLiteral("--export"), csvFile,
                                           QStringLiteral("--quit") }
                                  + anExtraArgs);
        if (!viewer.waitForFinished(120000)) {
            viewer.kill();
            outcome.errors = QStringLiteral("viewer did not finish");
            return outcome;
        }
        outcome.exitCode = viewer.exitCode();
        outcome.errors = QString::fromUtf8(viewer.readAllStandardError());
        QFile csv(csvFile);
        if (csv.open(QIODevice::ReadOnly)) {
            QStringList lines = QString::fromUtf8(csv.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
            outcome.header = lines.isEmpty() ? QString() : lines.takeFirst();
            outcome.rows = lines.size();
        }
        return outcome;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void refusals_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("rows");
        const QString line = QStringLiteral("tool distance\npress 100 100\nmove 200 100\nrelease 200 100\n");
        QTest::newRow("undo with nothing to undo") << "undo\n" << "line 1: nothing to undo" << 0;
        QTest::newRow("undo once too often") << line + "undo\nundo\n" << "line 6: nothing to undo" << 0;
        QTest::newRow("redo with nothing to redo") << line + "redo\n" << "line 5: nothing to redo" << 1;
        QTest::newRow("unknown tool") << "# ruler\n\ntool ruler\n" << "line 3: unknown tool 'ruler'" << 0;
        QTest::newRow("unit before any tool") << "unit mm\n" << "line 1: no unit can be chosen now" << 0;
        QTest::newRow("unit the tool does not offer") << line + "unit deg\n"
                                                      << "line 5: unit 'deg(\u00B0)' is not offered" << 1;
        QTest::newRow("bad line after work") << line + "width 30\n" << "line 5: width must be 1 to 20, got 30" << 1;
        QTest::newRow("bad line stops before later work")
            << line + "frobnicate\n" + line << "line 5: unknown command 'frobnicate'" << 1;
    }
    void refusals()
    {
        QFETCH(QString, script);
        QFETCH(QString, message);
        QFETCH(int, rows);
        const Outcome outcome = runViewer(script);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.errors.contains(message), qPrintable(outcome.errors));
        // The values of what ran before the refusal are still exported.
        QCOMPARE(outcome.rows, rows);
        QCOMPARE(outcome.header, QStringLiteral("type,index,value_name,value,unit,text,type_name,frame"));
    }

    void missingScriptIsRefused()
    {
        const Outcome outcome = runViewer(QString(), {}, false);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.errors.contains(QStringLiteral("cannot read script")), qPrintable(outcome.errors));
    }

    void unsavedMeasurementsDoNotStopAScriptedRun()
    {
        // Modified measurements and --quit: no question, a clean exit.
        const Outcome outcome = runViewer(QStringLiteral("tool distance\npress 100 100\nmove 200 100\n"
                                                         "release 200 100\n"));
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.rows, 1);
    }

    void pictureProblemsExitWithTwo_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing picture") << QStringList{ dir.filePath(QStringLiteral("none.png")) }
                                         << "the file does not exist";
        QImage(40, 30, QImage::Format_RGB32).save(dir.filePath(QStringLiteral("small.png")));
        QImage(50, 30, QImage::Format_RGB32).save(dir.filePath(QStringLiteral("wide.png")));
        QTest::newRow("series of two sizes") << QStringList{ dir.filePath(QStringLiteral("small.png")),
                                                             dir.filePath(QStringLiteral("wide.png")) }
                                             << "has 50 x 30 pixels; the first frame has 40 x 30";
        QTest::newRow("calibration zero") << QStringList{ QStringLiteral("--calibration"), QStringLiteral("0") }
                                          << "--calibration needs a number above 0, got '0'";
        QTest::newRow("scaling below 50") << QStringList{ QStringLiteral("--scaling"), QStringLiteral("49") }
                                          << "--scaling needs a whole percentage from 50 to 400, got '49'";
        QTest::newRow("scaling above 400") << QStringList{ QStringLiteral("--scaling"), QStringLiteral("401") }
                                           << "--scaling needs a whole percentage from 50 to 400, got '401'";
    }
    void pictureProblemsExitWithTwo()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        const Outcome outcome = runViewer(QStringLiteral("# nothing\n"), arguments);
        QCOMPARE(outcome.exitCode, 2);
        QVERIFY2(outcome.errors.contains(message), qPrintable(outcome.errors));
    }

    void scalingBoundsAreAccepted_data()
    {
        QTest::addColumn<QString>("percent");
        QTest::newRow("50") << "50";
        QTest::newRow("400") << "400";
    }
    void scalingBoundsAreAccepted()
    {
        QFETCH(QString, percent);
        const Outcome outcome = runViewer(QStringLiteral("# nothing\n"), { QStringLiteral("--scaling"), percent });
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    }
};

QTEST_GUILESS_MAIN(tst_ViewerScript)
#include "tst_viewerscript.moc"
