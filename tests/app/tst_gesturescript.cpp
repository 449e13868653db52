// Parsing gesture scripts: every command, comments, and a defined message
// with the line number for every kind of bad line.
#include "OvGestureScript.h"

#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(OvScriptCommand::Kind)

class tst_GestureScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void goodLines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<OvScriptCommand::Kind>("kind");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("number");
        QTest::newRow("press") << "press 100 200" << OvScriptCommand::Press << QPointF(100, 200) << "" << 0.0;
        QTest::newRow("move decimals") << "move 10.5 -3" << OvScriptCommand::Move << QPointF(10.5, -3) << "" << 0.0;
        QTest::newRow("release") << "release 1 2" << OvScriptCommand::Release << QPointF(1, 2) << "" << 0.0;
        QTest::newRow("click, extra blanks") << "  click\t 5   6  " << OvScriptCommand::Click << QPointF(5, 6)
                                             << "" << 0.0;
        QTest::newRow("tool") << "tool circle-distance" << OvScriptCommand::Tool << QPointF() << "circle-distance"
                              << 0.0;
        QTest::newRow("tool none") << "tool none" << OvScriptCommand::Tool << QPointF() << "none" << 0.0;
        QTest::newRow("unit as shown") << "unit mm" << OvScriptCommand::Unit << QPointF() << "mm" << 0.0;
        QTest::newRow("unit um") << "unit um" << OvScriptCommand::Unit << QPointF() << QStringLiteral("\u03BCm")
                                 << 0.0;
        QTest::newRow("unit micro sign") << QStringLiteral("unit \u00B5m") << OvScriptCommand::Unit << QPointF()
                                         << QStringLiteral("\u03BCm") << 0.0;
        QTest::newRow("unit auto") << "unit auto" << OvScriptCommand::Unit << QPointF() << "auto" << 0.0;
        QTest::newRow("width") << "width 7" << OvScriptCommand::Width << QPointF() << "" << 7.0;
        QTest::newRow("font") << "font 72" << OvScriptCommand::Font << QPointF() << "" << 72.0;
        QTest::newRow("frame") << "frame 12" << OvScriptCommand::Frame << QPointF() << "" << 12.0;
        QTest::newRow("calibrate") << "calibrate 0.125" << OvScriptCommand::Calibrate << QPointF() << "" << 0.125;
        QTest::newRow("select none") << "select none" << OvScriptCommand::SelectNone << QPointF() << "" << 0.0;
        QTest::newRow("delete") << "delete" << OvScriptCommand::Delete << QPointF() << "" << 0.0;
        QTest::newRow("undo") << "undo" << OvScriptCommand::Undo << QPointF() << "" << 0.0;
        QTest::newRow("redo, comment") << "redo # again" << OvScriptCommand::Redo << QPointF() << "" << 0.0;
        QTest::newRow("comment glued") << "undo#why" << OvScriptCommand::Undo << QPointF() << "" << 0.0;
        // Every numeric bound, on its good side.
        QTest::newRow("width 1") << "width 1" << OvScriptCommand::Width << QPointF() << "" << 1.0;
        QTest::newRow("width 20") << "width 20" << OvScriptCommand::Width << QPointF() << "" << 20.0;
        QTest::newRow("font 8") << "font 8" << OvScriptCommand::Font << QPointF() << "" << 8.0;
        QTest::newRow("frame 0") << "frame 0" << OvScriptCommand::Frame << QPointF() << "" << 0.0;
        QTest::newRow("largest frame") << "frame 2147483647" << OvScriptCommand::Frame << QPointF() << ""
                                       << 2147483647.0;
        QTest::newRow("tiny calibration") << "calibrate 1e-9" << OvScriptCommand::Calibrate << QPointF() << ""
                                          << 1e-9;
        QTest::newRow("negative and exponent coordinates") << "press -5 1e2" << OvScriptCommand::Press
                                                           << QPointF(-5, 100) << "" << 0.0;
    }
    void goodLines()
    {
        QFETCH(QString, line);
        QFETCH(OvScriptCommand::Kind, kind);
        QFETCH(QPointF, point);
        QFETCH(QString, text);
        QFETCH(double, number);
        OvGestureScript script;
        QVERIFY2(script.parse(line), qPrintable(script.errorText()));
        QCOMPARE(script.commands().size(), 1);
        const OvScriptCommand& command = script.commands().first();
        QCOMPARE(command.kind, kind);
        QCOMPARE(command.line, 1);
        QCOMPARE(command.point, point);
        QCOMPARE(command.text, text);
        QCOMPARE(command.number, number);
    }

    void colourKeepsItsHash()
    {
        OvGestureScript script;
        QVERIFY(script.parse(QStringLiteral("color #FF8800  # orange")));
        QCOMPARE(script.commands().first().color, QColor(255, 136, 0));
    }

    void commentsAndBlankLinesAreSkippedButCounted()
    {
        OvGestureScript script;
        QVERIFY(script.parse(QStringLiteral("# header\n\n   \ntool distance\r\n# note\npress 1 1\n")));
        QCOMPARE(script.commands().size(), 2);
        QCOMPARE(script.commands().at(0).line, 4);
        QCOMPARE(script.commands().at(1).line, 6);
    }

    void badLines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown command") << "jump 1 2" << "unknown command 'jump'";
        QTest::newRow("missing coordinate") << "press 1" << "'press' expects X Y";
        QTest::newRow("text coordinate") << "move a 2" << "'move' needs numeric coordinates, got 'a 2'";
        QTest::newRow("infinite coordinate") << "press inf 2" << "'press' needs numeric coordinates, got 'inf 2'";
        QTest::newRow("unknown tool") << "tool ruler" << "unknown tool 'ruler'";
        QTest::newRow("unknown unit") << "unit furlong" << "unknown unit 'furlong'";
        QTest::newRow("bad colour") << "color red" << "colour must be #RRGGBB, got 'red'";
        QTest::newRow("short colour") << "color #FFF" << "colour must be #RRGGBB, got '#FFF'";
        QTest::newRow("width too large") << "width 30" << "width must be 1 to 20, got 30";
        QTest::newRow("width zero") << "width 0" << "width must be 1 to 20, got 0";
        QTest::newRow("font too small") << "font 7" << "font size must be 8 to 72, got 7";
        QTest::newRow("fractional width") << "width 2.5" << "'width' needs a whole number, got '2.5'";
        QTest::newRow("negative frame") << "frame -1" << "frame must be 0 or more, got -1";
        QTest::newRow("zero calibration") << "calibrate 0" << "calibration must be a number above 0, got '0'";
        QTest::newRow("select all") << "select all" << "'select' supports only 'select none'";
        QTest::newRow("undo with argument") << "undo 2" << "'undo' expects no argument";
        // Every numeric bound, on its bad side, and numbers that are no numbers.
        QTest::newRow("width 21") << "width 21" << "width must be 1 to 20, got 21";
        QTest::newRow("width negative") << "width -1" << "width must be 1 to 20, got -1";
        QTest::newRow("font 73") << "font 73" << "font size must be 8 to 72, got 73";
        QTest::newRow("font beyond int") << "font 2147483648" << "'font' needs a whole number, got '2147483648'";
        QTest::newRow("frame beyond int") << "frame 2147483648" << "'frame' needs a whole number, got '2147483648'";
        QTest::newRow("fractional frame") << "frame 1.5" << "'frame' needs a whole number, got '1.5'";
        QTest::newRow("negative calibration") << "calibrate -0.5" << "calibration must be a number above 0, got '-0.5'";
        QTest::newRow("nan calibration") << "calibrate nan" << "calibration must be a number above 0, got 'nan'";
        QTest::newRow("infinite calibration") << "calibrate inf" << "calibration must be a number above 0, got 'inf'";
        QTest::newRow("nan coordinate") << "move 1 nan" << "'move' needs numeric coordinates, got '1 nan'";
        QTest::newRow("three coordinates") << "click 1 2 3" << "'click' expects X Y";
        QTest::newRow("tool without name") << "tool" << "'tool' expects a tool name";
        QTest::newRow("unit without name") << "unit" << "'unit' expects a unit name";
        QTest::newRow("colour not hex") << "color #GGGGGG" << "colour must be #RRGGBB, got '#GGGGGG'";
        QTest::newRow("select nothing") << "select" << "'select' supports only 'select none'";
    }
    void badLines()
    {
        QFETCH(QString, line);
        QFETCH(QString, reason);
        OvGestureScript script;
        QVERIFY(!script.parse(QStringLiteral("tool distance\npress 1 1\n") + line + QStringLiteral("\nrelease 2 2")));
        QVERIFY(script.hasError());
        QCOMPARE(script.errorLine(), 3);
        QVERIFY2(script.errorText().startsWith(QStringLiteral("line 3: ") + reason), qPrintable(script.errorText()));
        // The lines before the bad one are kept for a partial replay.
        QCOMPARE(script.commands().size(), 2);
    }

    void missingFileIsAnError()
    {
        QTemporaryDir dir;
        OvGestureScript script;
        QVERIFY(!script.load(dir.filePath(QStringLiteral("none.ovs"))));
        QVERIFY(script.hasError());
        QCOMPARE(script.errorLine(), 0);
        QVERIFY(script.errorText().contains(QStringLiteral("cannot read script")));
        QVERIFY(script.commands().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_GestureScript)
#include "tst_gesturescript.moc"
