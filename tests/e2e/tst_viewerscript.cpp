// Every refusal the viewer promises for gesture scripts, through the real
// executable: the replay stops at the first command that cannot be carried
// out with "line N: reason" on standard error and exit code 1; what ran
// before it stays (and is exported). Scripted runs never ask questions, so
// they finish even with unsaved measurements.
#include "ViewerRunHelper.h"

#include <QtTest>

using Outcome = ViewerRunHelper::Run;

class tst_ViewerScript : public QObject
{
    Q_OBJECT

private:
    ViewerRunHelper viewer;

private Q_SLOTS:
    void initTestCase() { QVERIFY(viewer.isValid()); }

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
        const Outcome outcome = viewer.run(script);
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.errors.contains(message), qPrintable(outcome.errors));
        // The values of what ran before the refusal are still exported.
        QVERIFY(outcome.exported);
        QCOMPARE(outcome.rows.size(), rows);
        QCOMPARE(outcome.header, QStringLiteral("type,index,value_name,value,unit,text,type_name,frame"));
    }

    void missingScriptIsRefused()
    {
        const Outcome outcome = viewer.runWithoutScript();
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.errors.contains(QStringLiteral("cannot read script")), qPrintable(outcome.errors));
    }

    void unsavedMeasurementsDoNotStopAScriptedRun()
    {
        // Modified measurements and --quit: no question, a clean exit.
        const Outcome outcome = viewer.run(QStringLiteral("tool distance\npress 100 100\nmove 200 100\n"
                                                         "release 200 100\n"));
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY(outcome.exported);
        QCOMPARE(outcome.rows.size(), 1);
    }

    void pictureProblemsExitWithTwo_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing picture") << QStringList{ viewer.filePath(QStringLiteral("none.png")) }
                                         << "the file does not exist";
        QImage(40, 30, QImage::Format_RGB32).save(viewer.filePath(QStringLiteral("small.png")));
        QImage(50, 30, QImage::Format_RGB32).save(viewer.filePath(QStringLiteral("wide.png")));
        QTest::newRow("series of two sizes") << QStringList{ viewer.filePath(QStringLiteral("small.png")),
                                                             viewer.filePath(QStringLiteral("wide.png")) }
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
        const Outcome outcome = viewer.run(QStringLiteral("# nothing\n"), arguments);
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
        const Outcome outcome = viewer.run(QStringLiteral("# nothing\n"), { QStringLiteral("--scaling"), percent });
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    }
};

QTEST_GUILESS_MAIN(tst_ViewerScript)
#include "tst_viewerscript.moc"
