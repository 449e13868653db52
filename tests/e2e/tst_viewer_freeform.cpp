// Free forms and free lines end to end: ovviewer replays both gestures of each
// through real mouse events on the bundled sample (0.5 um per pixel), changes
// units, undoes and redoes, and exports the values as CSV.
#include "ViewerRunHelper.h"

#include <QtTest>

namespace {

const QString kMicro = QStringLiteral("\u03BCm");
const QString kSquared = QStringLiteral("\u00B2");

// A 100 x 100 square with its top-left corner at (x, y), drawn by a drag.
QString dragSquare(int x, int y)
{
    return QStringLiteral("press %1 %2\nmove %3 %2\nmove %3 %4\nmove %1 %4\nrelease %1 %4\n")
        .arg(x).arg(y).arg(x + 100).arg(y + 100);
}

// The same square drawn by click, moves, click.
QString clickSquare(int x, int y)
{
    return QStringLiteral("click %1 %2\nmove %3 %2\nmove %3 %4\nmove %1 %4\nclick %1 %4\n")
        .arg(x).arg(y).arg(x + 100).arg(y + 100);
}

} // namespace

class tst_ViewerFreeForm : public QObject
{
    Q_OBJECT

    ViewerRunHelper viewer;

    // Runs the viewer on the sample with aScript; the CSV rows without the
    // header, none when the header is not the export's.
    QList<QStringList> run(const QString& aScript, int& anExitCode, QString& anErrors)
    {
        const ViewerRunHelper::Run result = viewer.run(aScript);
        anExitCode = result.exitCode;
        anErrors = result.errors;
        return result.header == ViewerRunHelper::kHeader ? result.rows : QList<QStringList>();
    }

private slots:
    void initTestCase() { QVERIFY(viewer.isValid()); }

    void bothGesturesBothKindsWithUnits()
    {
        int code = -1;
        QString errors;
        const QList<QStringList> rows = run(QStringLiteral("tool free-form\n") + dragSquare(100, 100)
                                                + clickSquare(300, 100) + QStringLiteral("unit mm\n")
                                                + QStringLiteral("tool free-line\n") + dragSquare(500, 100)
                                                + clickSquare(700, 100)
                                                + QStringLiteral("unit nm\nundo\nredo\nselect none\n"),
                                            code, errors);
        QVERIFY2(code == 0, qPrintable(errors));
        // type, index, value name, value, unit, text.
        const QList<QStringList> expected{
            { "66655", "1", "Area", "2500", kMicro + kSquared, "2500.0 " + kMicro + kSquared },
            { "66655", "1", "Length", "200", kMicro, "200.00 " + kMicro },
            { "66655", "2", "Area", "0.0025", "mm" + kSquared,
              QStringLiteral("2.500\u2219" "10 \u0304\u00B3 mm\u00B2") },
            { "66655", "2", "Length", "0.2", "mm", "0.2000 mm" },
            { "66755", "1", "Length", "150", kMicro, "150.00 " + kMicro },
            { "66755", "2", "Length", "150000", "nm", QStringLiteral("150.00\u2219" "10\u00B3 nm") },
        };
        QCOMPARE(rows.size(), expected.size());
        for (int i = 0; i < rows.size(); ++i) {
            const QStringList& row = rows.at(i);
            const QStringList& want = expected.at(i);
            QCOMPARE(row.size(), 8);
            QCOMPARE(row.mid(0, 3), want.mid(0, 3));
            QVERIFY2(qFuzzyCompare(row.at(3).toDouble(), want.at(3).toDouble()), qPrintable(row.join(',')));
            QCOMPARE(row.mid(4, 2), want.mid(4));
        }
    }

    void undoneAndShortShapes_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("values");
        // A shape of two nodes is stored but has no values.
        QTest::newRow("free form of two nodes")
            << "tool free-form\npress 100 100\nmove 160 100\nrelease 160 100\n" << QStringList{ "", "" };
        QTest::newRow("free line undone") << "tool free-line\n" + dragSquare(100, 100) + "undo\n" << QStringList{};
        QTest::newRow("free form deleted, then back")
            << "tool free-form\n" + dragSquare(100, 100) + "delete\nundo\n" << QStringList{ "2500", "200" };
    }

    void undoneAndShortShapes()
    {
        QFETCH(QString, script);
        QFETCH(QStringList, values);
        int code = -1;
        QString errors;
        const QList<QStringList> rows = run(script, code, errors);
        QVERIFY2(code == 0, qPrintable(errors));
        QStringList got;
        for (const QStringList& row : rows)
            got << row.value(3);
        QCOMPARE(got, values);
    }
};

QTEST_GUILESS_MAIN(tst_ViewerFreeForm)
#include "tst_viewer_freeform.moc"
