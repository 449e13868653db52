// Throughput of the value label texts: every displayed measurement goes through
// convertFromUmAndFormat, once per label update. Reports figures only.
#include "KxAppSettings.h"
#include "OvGuiMeasurementTool.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

// Values from 1 nm to 10 m, so that every formatting band is visited.
QVector<double> sampleValues()
{
    QVector<double> values;
    for (double v = 0.001; v < 1e7; v *= 1.37)
        values << v;
    return values;
}

} // namespace

class bench_Format : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void format_data();
    void format();

private:
    QTemporaryDir settingsDir;
    OvGuiMeasurementTool* panel = nullptr;
};

void bench_Format::initTestCase()
{
    KxAppSettings::setFileName(settingsDir.filePath(QStringLiteral("bench.ini")));
    panel = new OvGuiMeasurementTool;
}

void bench_Format::cleanupTestCase()
{
    delete panel;
    panel = nullptr;
}

void bench_Format::format_data()
{
    QTest::addColumn<bool>("squared");
    QTest::addColumn<QList<int>>("units");

    // Row names say how many texts one iteration makes.
    const struct { const char* name; bool squared; QList<int> units; } rows[] = {
        { "lengths, fixed units", false, { 1, 2, 3, 4, 5, 6, 7, 8 } },
        { "lengths, auto", false, { 0 } },
        { "areas, mixed", true, { 0, 2, 3, 4 } },
    };
    for (const auto& row : rows) {
        const QByteArray name = QByteArray(row.name) + " (" + QByteArray::number(row.units.size() * int(sampleValues().size()))
                                + " texts)";
        QTest::newRow(name.constData()) << row.squared << row.units;
    }
}

void bench_Format::format()
{
    QFETCH(bool, squared);
    QFETCH(QList<int>, units);

    const QList<int> allowed = { 0, 1, 2, 5, 3, 4, 6, 7, 8 };
    const QVector<double> values = sampleValues();

    int characters = 0;
    QBENCHMARK {
        for (const int unit : units) {
            for (const double value : values)
                characters += panel->convertFromUmAndFormat(value, squared,
                                                            OvGuiMeasurementTool::UnitType(unit), allowed).size();
        }
    }
    QVERIFY(characters > 0);
}

QTEST_MAIN(bench_Format)
#include "bench_format.moc"
