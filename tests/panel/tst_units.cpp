#include "OvGuiMeasurementTool.h"
#include "PanelTestHelper.h"

#include <QTranslator>
#include <QtTest>

#include <memory>

using Unit = OvGuiMeasurementTool::UnitType;

namespace {

const QList<int> kAllUnits = { 0, 1, 2, 5, 3, 4, 6, 7, 8 };

QString u8(const char* aText)
{
    return QString::fromUtf8(aText);
}

// Renames the millimetre and the degree, as a loaded translation would.
class GermanUnits : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* aContext, const char* aSource, const char*, int) const override
    {
        if (qstrcmp(aContext, "OvGuiMeasurementTool") != 0)
            return QString();
        if (qstrcmp(aSource, "mm") == 0)
            return QStringLiteral("Millimeter");
        if (qstrcmp(aSource, "deg") == 0)
            return QStringLiteral("Grad");
        return QString();
    }
};

} // namespace

class tst_Units : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void formattedText_data();
    void formattedText();
    void factors_data();
    void factors();
    void convertUnit_data();
    void convertUnit();
    void chosenUnit_data();
    void chosenUnit();
    void names_data();
    void names();
    void translatedNames();
    void selectorOffers_data();
    void selectorOffers();
    void setCurrentUnit_data();
    void setCurrentUnit();
    void sliderClickEmitsUnit();
    void sliderPositionWithoutUnit();

private:
    std::unique_ptr<SettingsSandbox> sandbox;
    std::unique_ptr<OvGuiMeasurementTool> panel;
};

void tst_Units::initTestCase()
{
    sandbox.reset(new SettingsSandbox);
    panel.reset(new OvGuiMeasurementTool);
}

void tst_Units::init()
{
    panel->setUnitsToUse(QList<int>(), false);
}

void tst_Units::cleanupTestCase()
{
    panel.reset();
    sandbox.reset();
}

void tst_Units::formattedText_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("squared");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QList<int>>("allowed");
    QTest::addColumn<QString>("expected");

    const QList<int> any = kAllUnits;
    const QList<int> autoSet = { 1, 2, 3, 4, 8 };
    QTest::newRow("1234.5 um") << 1234.5 << false << 2 << any << u8("1234.5 \u03BCm");
    QTest::newRow("1234.5 mm") << 1234.5 << false << 3 << any << u8("1.235 mm");
    QTest::newRow("1234.5 cm") << 1234.5 << false << 4 << any << u8("0.1235 cm");
    QTest::newRow("1234.5 mil") << 1234.5 << false << 5 << any << u8("48.602 mil");
    QTest::newRow("1234.5 inch") << 1234.5 << false << 6 << any << u8("0.0486 inch");
    QTest::newRow("1234.5 ft") << 1234.5 << false << 7 << any << u8("0.0041 ft");
    QTest::newRow("1234.5 m") << 1234.5 << false << 8 << any << u8("0.0012 m");
    QTest::newRow("1234.5 nm") << 1234.5 << false << 1 << any << u8("1.2345\u221910\u2076 nm");
    QTest::newRow("1234.5 auto -> mm") << 1234.5 << false << 0 << autoSet << u8("1.235 mm");
    QTest::newRow("0.5 auto -> nm, um formatter") << 0.5 << false << 0 << autoSet << u8("500.00 nm");
    QTest::newRow("0.5 auto without nm") << 0.5 << false << 0 << QList<int>{ 2, 3 } << u8("0.5000 \u03BCm");
    QTest::newRow("25000 auto -> cm") << 25000.0 << false << 0 << autoSet << u8("2.500 cm");
    QTest::newRow("25000 auto without cm, no m") << 25000.0 << false << 0 << QList<int>{ 2, 3, 8 } << u8("25.000 mm");
    QTest::newRow("3000000 auto -> m") << 3000000.0 << false << 0 << autoSet << u8("3.000 m");
    QTest::newRow("999.9 auto stays um") << 999.9 << false << 0 << QList<int>{ 2, 3 } << u8("999.90 \u03BCm");
    QTest::newRow("1000 auto -> mm") << 1000.0 << false << 0 << QList<int>{ 2, 3 } << u8("1.000 mm");
    QTest::newRow("50 mm") << 50.0 << false << 3 << any << u8("50.00\u221910 \u0304\u00B3 mm");
    QTest::newRow("5 mm") << 5.0 << false << 3 << any << u8("5.000\u221910 \u0304\u00B3 mm");
    QTest::newRow("0.5 mm") << 0.5 << false << 3 << any << u8("500\u221910 \u0304\u2076 mm");
    QTest::newRow("0.0005 mm") << 0.0005 << false << 3 << any << u8("0 mm");
    QTest::newRow("150000000 mm") << 150000000.0 << false << 3 << any << u8("150.00\u221910\u00B3 mm");
    QTest::newRow("0.5 mil") << 0.5 << false << 5 << any << u8("19.7\u221910 \u0304\u00B3 mil");
    QTest::newRow("0.3 nm") << 0.3 << false << 1 << any << u8("300 nm");
    QTest::newRow("20000 nm") << 20000.0 << false << 1 << any << u8("20.000\u221910\u2076 nm");
    QTest::newRow("250000 squared mm") << 250000.0 << true << 3 << any << u8("0.2500 mm\u00B2");
    QTest::newRow("250000 squared auto, side below 1000")
        << 250000.0 << true << 0 << QList<int>{ 2, 3, 4 } << u8("250.00\u221910\u00B3 \u03BCm\u00B2");
    QTest::newRow("123456789 um") << 123456789.0 << false << 2 << any << u8("123.457\u221910\u2076 \u03BCm");
    QTest::newRow("0 um") << 0.0 << false << 2 << any << u8("0 \u03BCm");
    QTest::newRow("no unit: unconverted, trailing space") << 1234.5 << false << 1000 << any << u8("1234.5 ");
    QTest::newRow("no unit squared: not rooted") << 2500.0 << true << 1000 << any << u8("2500.0 ");
    QTest::newRow("degrees pass unchanged") << 45.0 << false << 9 << any << u8("45.000 deg(\u00B0)");
    QTest::newRow("unknown code: identity, no name") << 12.5 << false << 42 << any << u8("12.500 ");
    QTest::newRow("auto with empty list and no units in use -> um") << 0.5 << false << 0 << QList<int>()
                                                                     << u8("0.5000 \u03BCm");
    QTest::newRow("negative area gives 0") << -4.0 << true << 2 << any << u8("0 \u03BCm\u00B2");
}

void tst_Units::formattedText()
{
    QFETCH(double, value);
    QFETCH(bool, squared);
    QFETCH(int, unit);
    QFETCH(QList<int>, allowed);
    QFETCH(QString, expected);

    QCOMPARE(panel->convertFromUmAndFormat(value, squared, Unit(unit), allowed), expected);
    // A fixed unit does not depend on the list offered.
    if (unit != OvGuiMeasurementTool::UnitAuto)
        QCOMPARE(panel->convertFromUmAndFormat(value, squared, Unit(unit), QList<int>()), expected);
}

void tst_Units::factors_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("micrometres");
    QTest::addColumn<double>("inUnit");

    QTest::newRow("auto") << 0 << 7.5 << 7.5;
    QTest::newRow("nm") << 1 << 2.5 << 2500.0;
    QTest::newRow("um") << 2 << 7.5 << 7.5;
    QTest::newRow("mm") << 3 << 2500.0 << 2.5;
    QTest::newRow("cm") << 4 << 25000.0 << 2.5;
    // The inch-based factors are rounded constants, so 25.4 um is not quite 1 mil.
    QTest::newRow("mil, rounded factor") << 5 << 25.4 << 0.999999778;
    QTest::newRow("inch, rounded factor") << 6 << 25400.0 << 0.999999778;
    QTest::newRow("ft") << 7 << 304800.0 << 1.0;
    QTest::newRow("m") << 8 << 2500000.0 << 2.5;
    QTest::newRow("deg") << 9 << 90.0 << 90.0;
    QTest::newRow("no unit") << 1000 << 3.0 << 3.0;
    QTest::newRow("negative code") << -1 << 3.0 << 3.0;
    QTest::newRow("code 10") << 10 << 3.0 << 3.0;
}

void tst_Units::factors()
{
    QFETCH(int, unit);
    QFETCH(double, micrometres);
    QFETCH(double, inUnit);

    QVERIFY(qAbs(panel->convertFromUm(Unit(unit), micrometres) - inUnit) <= 1e-12 * qMax(1.0, qAbs(inUnit)));
    // The way back uses the exact factors (25.4, 25400.0), not the inverse of the way out.
    const double back = panel->convertToUm(Unit(unit), inUnit);
    const double expectedBack = (unit == 5 || unit == 6) ? inUnit * (unit == 5 ? 25.4 : 25400.0) : micrometres;
    QVERIFY2(qAbs(back - expectedBack) <= 1e-9 * qMax(1.0, qAbs(expectedBack)), qPrintable(QString::number(back, 'g', 17)));
}

void tst_Units::convertUnit_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("expected");

    QTest::newRow("mm -> um") << 3 << 2 << 1.5 << 1500.0;
    QTest::newRow("inch -> mm") << 6 << 3 << 1.0 << 25.4;
    QTest::newRow("ft -> m") << 7 << 8 << 1.0 << 0.3048;
    QTest::newRow("mil -> inch") << 5 << 6 << 1000.0 << 0.999999778;
    QTest::newRow("nm -> cm") << 1 << 4 << 5e6 << 0.5;
    // Same unit: untouched, not a round trip through the rounded mil factor.
    QTest::newRow("mil -> mil exact") << 5 << 5 << 3.0 << 3.0;
    QTest::newRow("auto -> mm treats value as um") << 0 << 3 << 1000.0 << 1.0;
    QTest::newRow("deg -> nm is identity then nm") << 9 << 1 << 5.0 << 5000.0;
    QTest::newRow("no unit -> mm") << 1000 << 3 << 1000.0 << 1.0;
}

void tst_Units::convertUnit()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(double, value);
    QFETCH(double, expected);

    const double result = panel->convertUnit(Unit(from), Unit(to), value);
    if (from == to)
        QCOMPARE(result, expected);
    else
        QVERIFY2(qAbs(result - expected) <= 1e-12 * qMax(1.0, qAbs(expected)), qPrintable(QString::number(result, 'g', 17)));
}

void tst_Units::chosenUnit_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("squared");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QList<int>>("allowed");
    QTest::addColumn<QList<int>>("inUse");
    QTest::addColumn<double>("expectedValue");
    QTest::addColumn<int>("expectedUnit");
    QTest::addColumn<QString>("expectedName");

    QTest::newRow("auto below 1 -> nm") << 0.25 << false << 0 << kAllUnits << QList<int>() << 250.0 << 1 << "nm";
    QTest::newRow("auto falls back to units in use") << 0.25 << false << 0 << QList<int>() << QList<int>{ 1, 2 } << 250.0
                                                     << 1 << "nm";
    QTest::newRow("auto, empty lists -> um") << 0.25 << false << 0 << QList<int>() << QList<int>() << 0.25 << 2
                                             << u8("\u03BCm");
    QTest::newRow("auto without mm stays um") << 5000.0 << false << 0 << QList<int>{ 2, 4, 8 } << QList<int>() << 5000.0
                                              << 2 << u8("\u03BCm");
    QTest::newRow("auto m needs cm") << 3e6 << false << 0 << QList<int>{ 3, 8 } << QList<int>() << 3000.0 << 3 << "mm";
    QTest::newRow("auto never picks mil, inch, ft") << 1e7 << false << 0 << QList<int>{ 2, 5, 6, 7 } << QList<int>()
                                                    << 1e7 << 2 << u8("\u03BCm");
    QTest::newRow("auto squared -> mm2") << 4e6 << true << 0 << kAllUnits << QList<int>() << 4.0 << 3 << u8("mm\u00B2");
    QTest::newRow("fixed cm squared") << 1e8 << true << 4 << kAllUnits << QList<int>() << 1.0 << 4 << u8("cm\u00B2");
    QTest::newRow("no unit keeps out-parameters") << 7.0 << true << 1000 << kAllUnits << QList<int>() << 7.0 << 1000
                                                  << "untouched";
}

void tst_Units::chosenUnit()
{
    QFETCH(double, value);
    QFETCH(bool, squared);
    QFETCH(int, unit);
    QFETCH(QList<int>, allowed);
    QFETCH(QList<int>, inUse);
    QFETCH(double, expectedValue);
    QFETCH(int, expectedUnit);
    QFETCH(QString, expectedName);

    panel->setUnitsToUse(inUse, false);
    Unit used = Unit(unit);
    QString name = QStringLiteral("untouched");
    const double result = panel->convertFromUm(value, squared, used, name, allowed);
    QVERIFY(qAbs(result - expectedValue) <= 1e-9 * qMax(1.0, expectedValue));
    QCOMPARE(int(used), expectedUnit);
    QCOMPARE(name, expectedName);
}

void tst_Units::names_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("name");

    const char* const names[] = { "auto", "nm", "\u03BCm", "mm", "cm", "mil", "inch", "ft", "m", "deg(\u00B0)" };
    for (int unit = 0; unit < 10; ++unit)
        QTest::newRow(names[unit]) << unit << u8(names[unit]);
}

void tst_Units::names()
{
    QFETCH(int, unit);
    QFETCH(QString, name);
    QCOMPARE(panel->getUnitNameFromType(unit), name);
    QCOMPARE(panel->getUnitTypeFromName(name), unit);

    QCOMPARE(panel->getUnitNameFromType(1000), QString());
    QCOMPARE(panel->getUnitNameFromType(-1), QString());
    // The micro sign U+00B5 is not the Greek mu of the unit name.
    QCOMPARE(panel->getUnitTypeFromName(u8("\u00B5m")), -1);
    QCOMPARE(panel->getUnitTypeFromName(QStringLiteral("MM")), -1);
    QCOMPARE(panel->getUnitTypeFromName(QString()), -1);
}

void tst_Units::translatedNames()
{
    GermanUnits translator;
    QCoreApplication::installTranslator(&translator);
    OvGuiMeasurementTool translated;
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(translated.getUnitNameFromType(3), QStringLiteral("Millimeter"));
    QCOMPARE(translated.getUnitTypeFromName(QStringLiteral("Millimeter")), 3);
    QCOMPARE(translated.getUnitTypeFromName(QStringLiteral("mm")), -1);
    QCOMPARE(translated.getUnitNameFromType(9), u8("Grad(\u00B0)"));
    QCOMPARE(translated.getUnitNameFromType(2), u8("\u03BCm"));
    QCOMPARE(translated.convertFromUmAndFormat(1234.5, false, OvGuiMeasurementTool::UnitMm, kAllUnits),
             QStringLiteral("1.235 Millimeter"));
}

void tst_Units::selectorOffers_data()
{
    QTest::addColumn<QList<int>>("units");
    QTest::addColumn<bool>("squared");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("current");

    QTest::newRow("none") << QList<int>() << false << false << QString() << 1000;
    QTest::newRow("one") << QList<int>{ 9 } << false << false << u8("deg(\u00B0)") << 9;
    QTest::newRow("one squared") << QList<int>{ 3 } << true << false << u8("mm\u00B2") << 3;
    QTest::newRow("one squared auto has no square") << QList<int>{ 0 } << true << false << QStringLiteral("auto") << 0;
    QTest::newRow("many: label cleared for the caller") << kAllUnits << false << true << QString() << 0;
    QTest::newRow("two") << QList<int>{ 3, 4 } << true << true << QString() << 3;
}

void tst_Units::selectorOffers()
{
    QFETCH(QList<int>, units);
    QFETCH(bool, squared);
    QFETCH(bool, enabled);
    QFETCH(QString, label);
    QFETCH(int, current);

    QSignalSpy spy(panel.get(), &OvGuiMeasurementTool::signalUnitTypeChanged);
    panel->theSLUnitType->setValue(0);
    panel->theTLUnit->setText(QStringLiteral("stale"));
    panel->setUnitsToUse(units, squared);
    QCOMPARE(panel->theSLUnitType->isEnabled(), enabled);
    QCOMPARE(panel->theTLUnit->text(), label);
    QCOMPARE(panel->getCurrentUnit(), current);
    QCOMPARE(panel->getUnitsToUse(), units);
    QCOMPARE(panel->isSquaredUnits(), squared);
    if (!units.isEmpty())
        QCOMPARE(panel->theSLUnitType->maximum(), units.size() - 1);
    QCOMPARE(spy.count(), 0);
}

void tst_Units::setCurrentUnit_data()
{
    QTest::addColumn<QList<int>>("units");
    QTest::addColumn<bool>("squared");
    QTest::addColumn<QVariant>("request");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("label");

    QTest::newRow("mm") << kAllUnits << false << QVariant(3) << 4 << "mm";
    QTest::newRow("mm squared") << kAllUnits << true << QVariant(3) << 4 << u8("mm\u00B2");
    QTest::newRow("auto squared has no square") << kAllUnits << true << QVariant(0) << 0 << "auto";
    QTest::newRow("by name") << kAllUnits << false << QVariant(QStringLiteral("cm")) << 5 << "cm";
    QTest::newRow("first occurrence of a repeated unit") << QList<int>{ 2, 3, 2 } << false << QVariant(2) << 0
                                                         << u8("\u03BCm");
    QTest::newRow("negative ignored") << kAllUnits << false << QVariant(-1) << 2 << "before";
    QTest::newRow("not offered ignored") << kAllUnits << false << QVariant(9) << 2 << "before";
    QTest::newRow("no unit ignored") << kAllUnits << false << QVariant(1000) << 2 << "before";
    QTest::newRow("unknown name ignored") << kAllUnits << false << QVariant(QStringLiteral("parsec")) << 2 << "before";
}

void tst_Units::setCurrentUnit()
{
    QFETCH(QList<int>, units);
    QFETCH(bool, squared);
    QFETCH(QVariant, request);
    QFETCH(int, position);
    QFETCH(QString, label);

    panel->setUnitsToUse(units, squared);
    panel->theSLUnitType->setValue(2);
    panel->theTLUnit->setText(QStringLiteral("before"));
    QSignalSpy spy(panel.get(), &OvGuiMeasurementTool::signalUnitTypeChanged);
    if (request.userType() == QMetaType::QString)
        panel->setCurrentUnit(request.toString());
    else
        panel->setCurrentUnit(request.toInt());
    QCOMPARE(panel->theSLUnitType->value(), position);
    QCOMPARE(panel->theTLUnit->text(), label);
    QCOMPARE(spy.count(), 0);
}

void tst_Units::sliderClickEmitsUnit()
{
    panel->setUnitsToUse(kAllUnits, true);
    panel->setCurrentUnit(0);
    panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
    QCOMPARE(panel->theSLUnitType->width(), 136);

    QSignalSpy spy(panel.get(), &OvGuiMeasurementTool::signalUnitTypeChanged);
    // Position round(8 * 68 / 136) = 4 of 0, 1, 2, 5, 3, ...: millimetres.
    QTest::mouseClick(panel->theSLUnitType, Qt::LeftButton, Qt::NoModifier, QPoint(68, 7));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), 3);
    QCOMPARE(panel->getCurrentUnit(), 3);
    QCOMPARE(panel->theTLUnit->text(), u8("mm\u00B2"));
    panel->hide();
}

void tst_Units::sliderPositionWithoutUnit()
{
    panel->setUnitsToUse(QList<int>{ 2, 3 }, false);
    panel->setCurrentUnit(3);
    QSignalSpy spy(panel.get(), &OvGuiMeasurementTool::signalUnitTypeChanged);
    for (const int position : { 2, 7, -1 })
        QVERIFY(QMetaObject::invokeMethod(panel.get(), "slotUnitChanged", Q_ARG(int, position)));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(panel->theTLUnit->text(), QStringLiteral("mm"));
    QVERIFY(QMetaObject::invokeMethod(panel.get(), "slotUnitChanged", Q_ARG(int, 0)));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), 2);
}

QTEST_MAIN(tst_Units)
#include "tst_units.moc"
