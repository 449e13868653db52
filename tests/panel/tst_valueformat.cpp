#include "OvValueFormat.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

// Writes the exponent the way the formatter does, so that table rows stay readable.
QString exp10(int anExponent)
{
    QString text = QString(kDotChar) + QStringLiteral("10");
    if (anExponent < 0)
        text += QStringLiteral(" ") + kSupMinusChar;
    const int magnitude = std::abs(anExponent);
    if (magnitude == 3)
        text += kSupThreeChar;
    else if (magnitude == 6)
        text += kSupSixChar;
    return text;
}

enum Formatter { Mm, Mil, Um, Nm };

QString display(Formatter aFormatter, double aValue)
{
    switch (aFormatter) {
    case Mm: return calcDisplayValueMm(aValue);
    case Mil: return calcDisplayValueMil(aValue);
    case Um: return calcDisplayValueUm(aValue);
    case Nm: return calcDisplayValueNm(aValue);
    }
    return QString();
}

} // namespace

class tst_ValueFormat : public QObject
{
    Q_OBJECT
private slots:
    void characters();
    void formatValueTexts_data();
    void formatValueTexts();
    void bands_data();
    void bands();
    void badInput_data();
    void badInput();
};

void tst_ValueFormat::characters()
{
    QCOMPARE(kDotChar.unicode(), ushort(0x2219));
    QCOMPARE(kSupMinusChar.unicode(), ushort(0x0304));
    QCOMPARE(kSupThreeChar.unicode(), ushort(0x00B3));
    QCOMPARE(kSupSixChar.unicode(), ushort(0x2076));
    QCOMPARE(kSupTwoChar.unicode(), ushort(0x00B2));
    QCOMPARE(kSupZeroChar.unicode(), ushort(0x00B0));
    QCOMPARE(kMicromtrChar.unicode(), ushort(0x03BC));
}

void tst_ValueFormat::formatValueTexts_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("divisor");
    QTest::addColumn<int>("exponent");
    QTest::addColumn<QString>("expected");

    QTest::newRow("zero, no exponent") << 0 << 1000 << 0 << "0";
    QTest::newRow("zero keeps exponent") << 0 << 1 << 3 << QString("0" + exp10(3));
    QTest::newRow("divisor 1") << 300 << 1 << 0 << "300";
    QTest::newRow("divisor 10") << 197 << 10 << 0 << "19.7";
    QTest::newRow("divisor 100") << 5000 << 100 << 0 << "50.00";
    QTest::newRow("divisor 1000") << 1235 << 1000 << 0 << "1.235";
    QTest::newRow("divisor 10000") << 486 << 10000 << 0 << "0.0486";
    QTest::newRow("positive exponent 3") << 12345 << 1000 << 3 << QString("12.345" + exp10(3));
    QTest::newRow("positive exponent 6") << 12345 << 10000 << 6 << QString("1.2345" + exp10(6));
    QTest::newRow("negative exponent 3") << 5000 << 1000 << -3
                                         << QString("5.000") + QChar(0x2219) + "10 " + QChar(0x0304) + QChar(0x00B3);
    QTest::newRow("negative exponent 6") << 500 << 1 << -6
                                         << QString("500") + QChar(0x2219) + "10 " + QChar(0x0304) + QChar(0x2076);
    QTest::newRow("exponent without digit") << 7 << 1 << 2 << QString("7") + QChar(0x2219) + "10";
    QTest::newRow("negative exponent without digit") << 7 << 1 << -1 << QString("7") + QChar(0x2219) + "10 " + QChar(0x0304);
    QTest::newRow("negative value") << -1235 << 1000 << 0 << "-1.235";
    QTest::newRow("divisor 0 acts as 1") << 42 << 0 << 0 << "42";
    QTest::newRow("negative divisor acts as 1") << 42 << -10 << 0 << "42";
}

void tst_ValueFormat::formatValueTexts()
{
    QFETCH(int, value);
    QFETCH(int, divisor);
    QFETCH(int, exponent);
    QFETCH(QString, expected);
    QCOMPARE(formatValue(value, divisor, exponent), expected);
}

void tst_ValueFormat::bands_data()
{
    QTest::addColumn<int>("formatter");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");

    // Shared upper bands, the same for every formatter (in-band values are in the unit text tests).
    const struct { Formatter f; const char* name; } all[] = { { Mm, "mm" }, { Mil, "mil" }, { Um, "um" }, { Nm, "nm" } };
    for (const auto& entry : all) {
        const QByteArray n(entry.name);
        QTest::newRow(n + " 10000 enters 10^3 band") << int(entry.f) << 10000.0 << QString("10.000" + exp10(3));
        QTest::newRow(n + " 99999.9 rounds up") << int(entry.f) << 99999.9 << QString("100.000" + exp10(3));
        QTest::newRow(n + " 100000") << int(entry.f) << 100000.0 << QString("100.00" + exp10(3));
        QTest::newRow(n + " 1000000") << int(entry.f) << 1000000.0 << QString("1.0000" + exp10(6));
        QTest::newRow(n + " 10000000") << int(entry.f) << 10000000.0 << QString("10.000" + exp10(6));
        QTest::newRow(n + " 12345400") << int(entry.f) << 12345400.0 << QString("12.345" + exp10(6));
    }

    QTest::newRow("mm below 1e-6 is 0") << int(Mm) << 0.9e-6 << "0";
    QTest::newRow("mm 1e-6") << int(Mm) << 1e-6 << QString("1" + exp10(-6));
    QTest::newRow("mm 0.001") << int(Mm) << 0.001 << QString("1.000" + exp10(-3));
    QTest::newRow("mm 0.01") << int(Mm) << 0.01 << QString("10.00" + exp10(-3));
    QTest::newRow("mm 0.1") << int(Mm) << 0.1 << "0.1000";
    QTest::newRow("mm 1") << int(Mm) << 1.0 << "1.000";
    QTest::newRow("mm 10 keeps three decimals") << int(Mm) << 10.0 << "10.000";
    QTest::newRow("mm 99.9996 rounds to 100") << int(Mm) << 99.9996 << "100.000";
    QTest::newRow("mm 100") << int(Mm) << 100.0 << "100.00";
    QTest::newRow("mm 1000") << int(Mm) << 1000.0 << "1000.0";
    QTest::newRow("mm 9999.9") << int(Mm) << 9999.9 << "9999.9";

    QTest::newRow("mil below 0.0001 is 0") << int(Mil) << 0.00009 << "0";
    QTest::newRow("mil 0.0001") << int(Mil) << 0.0001 << QString("0.1" + exp10(-3));
    QTest::newRow("mil 0.1") << int(Mil) << 0.1 << "0.1000";
    QTest::newRow("mil 100") << int(Mil) << 100.0 << "100.00";
    QTest::newRow("mil 1000") << int(Mil) << 1000.0 << "1000.0";

    QTest::newRow("um 0") << int(Um) << 0.0 << "0";
    QTest::newRow("um 0.00004 rounds to 0") << int(Um) << 0.00004 << "0";
    QTest::newRow("um 1") << int(Um) << 1.0 << "1.000";
    QTest::newRow("um 100") << int(Um) << 100.0 << "100.00";

    QTest::newRow("nm 0.99 is 0") << int(Nm) << 0.99 << "0";
    QTest::newRow("nm 1") << int(Nm) << 1.0 << "1";
    QTest::newRow("nm 9999.4") << int(Nm) << 9999.4 << "9999";
}

void tst_ValueFormat::bands()
{
    QFETCH(int, formatter);
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(display(Formatter(formatter), value), expected);
}

void tst_ValueFormat::badInput_data()
{
    QTest::addColumn<int>("formatter");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    // Saturated at INT_MAX / 1000 in the top band.
    const QString saturated = QString("2147483.647" + exp10(6));
    QTest::newRow("mm NaN") << int(Mm) << nan << "0";
    QTest::newRow("mil NaN") << int(Mil) << nan << "0";
    QTest::newRow("um NaN") << int(Um) << nan << "0";
    QTest::newRow("nm NaN") << int(Nm) << nan << "0";
    QTest::newRow("mm infinity") << int(Mm) << inf << saturated;
    QTest::newRow("um 1e300") << int(Um) << 1e300 << saturated;
    QTest::newRow("mm negative") << int(Mm) << -5.0 << "0";
    QTest::newRow("nm negative") << int(Nm) << -5.0 << "0";
}

void tst_ValueFormat::badInput()
{
    QFETCH(int, formatter);
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(display(Formatter(formatter), value), expected);
}

QTEST_APPLESS_MAIN(tst_ValueFormat)
#include "tst_valueformat.moc"
