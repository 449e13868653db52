// Multiple and parallel distances in the viewer, end to end: ovviewer replays
// a script through real mouse events and exports the stored values as CSV.
#include "ViewerRunHelper.h"

#include <QtTest>

namespace {

// A plain distance from (200, 300) to (600, 300) serves as base (the setting
// is on): three perpendicular measurements at (250, 400), (300, 450) and
// (700, 200), beyond its end, and two parallel ones at (300, 500) and
// (400, 150). Then the distance is dragged 20 pixels down.
const char* const kDrawAndMove = R"(tool distance
press 200 300
move 400 300
move 600 300
release 600 300
tool multiple
# select the distance, then measure against it
click 400 300
click 250 400
click 300 450
click 700 200
tool parallel
click 400 300
click 300 500
click 400 150
press 400 300
move 400 310
move 400 320
release 400 320
)";

// Rows "type,index,value,text" of the export, in export order.
using Rows = QStringList;

} // namespace

class tst_ViewerRelative : public QObject
{
    Q_OBJECT

    ViewerRunHelper viewer;

    // Runs the viewer on its sample (0.5 um per pixel) with aScript; the
    // exported rows without header and unit, or the errors.
    Rows run(const QString& aScript, bool aDistanceAsBase, QString* anErrors = nullptr)
    {
        viewer.setSettings(aDistanceAsBase ? "[General]\nDistanceAllowedAsBase=true\n" : "");
        const ViewerRunHelper::Run result = viewer.run(aScript);
        if (anErrors)
            *anErrors = result.errors;
        if (result.exitCode != 0)
            return { QStringLiteral("exit code %1").arg(result.exitCode) };
        if (!result.exported)
            return { QStringLiteral("no export") };
        if (result.header != ViewerRunHelper::kHeader)
            return { QStringLiteral("bad header") };
        Rows rows;
        for (const QStringList& fields : result.rows)
            rows << QStringList{ fields.value(0), fields.value(1), fields.value(3), fields.value(5) }.join(',');
        return rows;
    }

private slots:
    void initTestCase() { QVERIFY(viewer.isValid()); }

    // After the move every measurement was written against the moved base:
    // 100 - 20, 150 - 20 and 100 + 20 pixels perpendicular, 200 - 20 and
    // 150 + 20 pixels parallel. Removing the base removes all five with it in
    // one step; one undo brings everything back as it was, and one undo of
    // the move puts every line back with its base.
    void baseWithPerpendicularAndParallelMeasurements_data()
    {
        QTest::addColumn<QString>("tail");
        QTest::addColumn<Rows>("rows");
        const Rows moved{ "66653,1,200,200.00 μm", "66658,1,40,40.000 μm", "66658,2,65,65.000 μm",
                          "66658,3,60,60.000 μm", "66659,1,90,90.000 μm", "66659,2,85,85.000 μm" };
        const Rows drawn{ "66653,1,200,200.00 μm", "66658,1,50,50.000 μm", "66658,2,75,75.000 μm",
                          "66658,3,50,50.000 μm", "66659,1,100,100.00 μm", "66659,2,75,75.000 μm" };
        QTest::newRow("moved") << QString() << moved;
        QTest::newRow("removed") << QStringLiteral("delete\n") << Rows();
        QTest::newRow("removed, one undo brings everything back") << QStringLiteral("delete\nundo\n") << moved;
        QTest::newRow("removed, undone and redone") << QStringLiteral("delete\nundo\nredo\n") << Rows();
        QTest::newRow("the move undone") << QStringLiteral("undo\n") << drawn;
        QTest::newRow("the move undone and redone") << QStringLiteral("undo\nredo\n") << moved;
    }

    void baseWithPerpendicularAndParallelMeasurements()
    {
        QFETCH(QString, tail);
        QFETCH(Rows, rows);
        QString errors;
        QCOMPARE(run(QString::fromLatin1(kDrawAndMove) + tail, true, &errors), rows);
    }

    // Without the setting the lines of each kind measure against a base of
    // their own kind; the base's row has no value.
    void ownBasesWithoutTheSetting()
    {
        const Rows rows = run(QStringLiteral("tool multiple\npress 200 300\nmove 400 300\nmove 600 300\n"
                                             "release 600 300\nclick 250 400\n"
                                             "tool parallel\npress 200 700\nmove 400 700\nmove 600 700\n"
                                             "release 600 700\nclick 300 800\n"),
                              false);
        QCOMPARE(rows, (Rows{ "66658,1,,", "66658,2,50,50.000 μm", "66659,1,,", "66659,2,50,50.000 μm" }));
    }
};

QTEST_MAIN(tst_ViewerRelative)
#include "tst_viewer_relative.moc"
