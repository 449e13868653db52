#include "OvValueFormat.h"
#include "PanelTestHelper.h"

#include <QtTest>

#include <limits>

namespace {

// Exponent suffixes in code points, not the formatter's constants: "∙10", a raised minus, the superscript digit.
const QString kE3 = "\u221910\u00B3", kE6 = "\u221910\u2076";
const QString kEm3 = "\u221910 \u0304\u00B3", kEm6 = "\u221910 \u0304\u2076";

enum Formatter { Mm, Mil, Um, Nm };

} // namespace

class tst_ValueFormat : public QObject
{
    Q_OBJECT
private slots:
    // Every divisor and the exponents 3, 6, -3 and -6 appear in the worked unit texts.
    void formatValueTexts_data()
    {
        addColumns<int, int, int, QString>({ "value", "divisor", "exponent", "expected" });

        QTest::newRow("zero keeps exponent") << 0 << 1 << 3 << "0" + kE3;
        QTest::newRow("exponent without digit") << 7 << 1 << 2 << "7\u221910";
        QTest::newRow("negative exponent without digit") << 7 << 1 << -1 << "7\u221910 \u0304";
        QTest::newRow("negative value") << -1235 << 1000 << 0 << "-1.235";
        QTest::newRow("divisor 0 acts as 1") << 42 << 0 << 0 << "42";
    }
    void formatValueTexts()
    {
        QFETCH(int, value);
        QFETCH(int, divisor);
        QFETCH(int, exponent);
        QFETCH(QString, expected);
        QCOMPARE(formatValue(value, divisor, exponent), expected);
    }

    // Band edges: each row sits on a bound, or rounds across one.
    void bands_data()
    {
        addColumns<int, double, QString>({ "formatter", "value", "expected" });

        const auto row = [](const QByteArray& aName, Formatter aFormatter, double aValue, const QString& anExpected) {
            QTest::newRow(aName.constData()) << int(aFormatter) << aValue << anExpected;
        };
        const char* const names[] = { "mm", "mil", "um", "nm" };
        for (const Formatter f : { Mm, Mil, Um, Nm }) {
            const QByteArray n(names[f]);
            row(n + " 10000 enters 10^3 band", f, 10000.0, "10.000" + kE3);
            row(n + " 99999.9 rounds up", f, 99999.9, "100.000" + kE3);
            row(n + " 100000", f, 100000.0, "100.00" + kE3);
            row(n + " 1000000", f, 1000000.0, "1.0000" + kE6);
            row(n + " 10000000", f, 10000000.0, "10.000" + kE6);
            row(n + " 12345400", f, 12345400.0, "12.345" + kE6);
            row(n + " NaN", f, std::numeric_limits<double>::quiet_NaN(), "0");
        }
        // Saturated at INT_MAX / 1000 in the top band.
        row("mm infinity", Mm, std::numeric_limits<double>::infinity(), "2147483.647" + kE6);
        row("um 1e300", Um, 1e300, "2147483.647" + kE6);

        row("mm below 1e-6 is 0", Mm, 0.9e-6, "0");
        row("mm 1e-6", Mm, 1e-6, "1" + kEm6);
        row("mm 0.001", Mm, 0.001, "1.000" + kEm3);
        row("mm 0.01", Mm, 0.01, "10.00" + kEm3);
        row("mm 0.1", Mm, 0.1, "0.1000");
        row("mm 1", Mm, 1.0, "1.000");
        row("mm 10 keeps three decimals", Mm, 10.0, "10.000");
        row("mm 99.9996 rounds to 100", Mm, 99.9996, "100.000");
        row("mm 100", Mm, 100.0, "100.00");
        row("mm 1000", Mm, 1000.0, "1000.0");
        row("mil below 0.0001 is 0", Mil, 0.00009, "0");
        row("mil 0.0001", Mil, 0.0001, "0.1" + kEm3);
        row("mil 0.1", Mil, 0.1, "0.1000");
        row("mil 1000", Mil, 1000.0, "1000.0");
        row("um 1", Um, 1.0, "1.000");
        row("um 100", Um, 100.0, "100.00");
        row("nm 0.99 is 0", Nm, 0.99, "0");
        row("nm 1", Nm, 1.0, "1");
        row("nm 9999.4", Nm, 9999.4, "9999");
    }
    void bands()
    {
        QFETCH(int, formatter);
        QFETCH(double, value);
        QFETCH(QString, expected);
        QString (*const display[])(double) = { calcDisplayValueMm, calcDisplayValueMil, calcDisplayValueUm,
                                               calcDisplayValueNm };
        QCOMPARE(display[formatter](value), expected);
    }
};

QTEST_APPLESS_MAIN(tst_ValueFormat)
#include "tst_valueformat.moc"
