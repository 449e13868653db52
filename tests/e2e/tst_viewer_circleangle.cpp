// Circles and angles end to end: ovviewer replays a script that draws them with
// both gesture styles through real mouse events, measures between two circles,
// undoes and redoes, and exports the stored values as CSV.
#include "ViewerRunHelper.h"

#include <QtTest>

namespace {

const QString kMicro = QStringLiteral("\u03BCm");
const QString kDegree = QStringLiteral("deg(\u00B0)");

// On the sample (0.5 um per pixel):
// circle 1, three clicks: centre (340, 301), radius sqrt(1601) pixels;
// circle 2, a dragged diameter then a click: centre (650, 300), radius 50 pixels;
// angle 1, four clicks, and angle 2, two drags on the outer angle: right angles;
// a circle-to-circle line from centre to centre, 310 by -1 pixels.
const QString kDrawing = QStringLiteral(
    "tool circle\n"
    "click 300 300\nmove 330 340\nclick 330 340\nmove 380 300\nclick 380 300\n"
    "tool diameter\n"
    "press 600 300\nmove 650 300\nmove 700 300\nrelease 700 300\nmove 650 360\nclick 650 360\n"
    "tool angle\n"
    "click 200 600\nmove 400 600\nclick 400 600\nclick 200 680\nmove 200 500\nclick 200 500\n"
    "tool outer-angle\n"
    "press 700 600\nmove 900 600\nrelease 900 600\npress 700 680\nmove 700 500\nrelease 700 500\n"
    "tool circle-distance\n"
    "click 345 305\nmove 500 300\nclick 655 305\n");

using Run = ViewerRunHelper::Run;

} // namespace

class tst_ViewerCircleAngle : public QObject
{
    Q_OBJECT

    ViewerRunHelper viewer;

    // type, index, value name, value rounded to 4 decimals, unit, text
    static QStringList summary(const QStringList& aRow)
    {
        // Type name and frame are checked elsewhere.
        QStringList row = aRow.mid(0, 6);
        if (row.size() > 3)
            row[3] = QString::number(row.at(3).toDouble(), 'f', 4);
        return row;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(viewer.isValid()); }

    void drawsUndoesRedoesAndExports_data()
    {
        QTest::addColumn<QString>("tail");
        QTest::addColumn<QStringList>("types");
        const QStringList all{ "66651:1", "66651:2", "66653:1", "66656:1", "66656:2" };
        QTest::newRow("as drawn") << QString() << all;
        QTest::newRow("undo twice, redo twice") << "undo\nundo\nredo\nredo\n" << all;
        QTest::newRow("undo twice") << "undo\nundo\n" << QStringList{ "66651:1", "66656:1", "66656:2" };
    }

    void drawsUndoesRedoesAndExports()
    {
        QFETCH(QString, tail);
        QFETCH(QStringList, types);
        const Run run = viewer.run(kDrawing + tail);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errors));

        QStringList objects;
        for (const QStringList& row : run.rows) {
            const QString object = row.value(0) + QLatin1Char(':') + row.value(1);
            if (!objects.contains(object))
                objects << object;
        }
        QCOMPARE(objects, types);

        const double radius1 = std::sqrt(1601.0) * 0.5;
        QMap<QString, QStringList> expected;
        const auto add = [&expected](const QString& aKey, const QStringList& aRow) { expected.insert(aKey, aRow); };
        for (const QString& index : { QStringLiteral("1"), QStringLiteral("2") }) {
            add("66651:" + index + ":Inner angle",
                { "66651", index, "Inner angle", "90.0000", kDegree, "90 " + kDegree });
            add("66651:" + index + ":Outer angle",
                { "66651", index, "Outer angle", "270.0000", kDegree, "270 " + kDegree });
        }
        add("66653:1:Length", { "66653", "1", "Length", QString::number(std::hypot(310.0, 1.0) * 0.5, 'f', 4), kMicro,
                                "155.00 " + kMicro });
        add("66656:1:Radius", { "66656", "1", "Radius", QString::number(radius1, 'f', 4), kMicro, "20.006 " + kMicro });
        add("66656:1:Diameter",
            { "66656", "1", "Diameter", QString::number(2 * radius1, 'f', 4), kMicro, "40.012 " + kMicro });
        add("66656:2:Radius", { "66656", "2", "Radius", "25.0000", kMicro, "25.000 " + kMicro });
        add("66656:2:Diameter", { "66656", "2", "Diameter", "50.0000", kMicro, "50.000 " + kMicro });

        QCOMPARE(run.rows.size(), 2 * types.size() - (types.contains("66653:1") ? 1 : 0));
        for (const QStringList& row : run.rows) {
            const QString key = row.value(0) + QLatin1Char(':') + row.value(1) + QLatin1Char(':') + row.value(2);
            QVERIFY2(expected.contains(key), qPrintable(key));
            QCOMPARE(summary(row), expected.value(key));
        }
    }

};

QTEST_GUILESS_MAIN(tst_ViewerCircleAngle)
#include "tst_viewer_circleangle.moc"
