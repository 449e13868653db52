#include "OvGuiMeasurementTool.h"
#include "PanelTestHelper.h"

#include <QTranslator>
#include <QtTest>

using Unit = OvGuiMeasurementTool::UnitType;

namespace {

const QList<int> kAllUnits = { 0, 1, 2, 5, 3, 4, 6, 7, 8 };

// Renames the millimetre and the degree, as a loaded translation would.
struct GermanUnits : QTranslator
{
    QString translate(const char* aContext, const char* aSource, const char*, int) const override
    {
        if (qstrcmp(aContext, "OvGuiMeasurementTool") != 0)
            return QString();
        return qstrcmp(aSource, "mm") == 0 ? "Millimeter" : qstrcmp(aSource, "deg") == 0 ? "Grad" : QString();
    }
};

} // namespace

class tst_Units : public QObject
{
    Q_OBJECT

    OvGuiMeasurementTool panel;

private slots:
    void init() { panel.setUnitsToUse(QList<int>(), false); }

    void formattedText_data()
    {
        addColumns<double, bool, int, QList<int>, QString>({ "value", "squared", "unit", "allowed", "expected" });

        // A fixed unit ignores the list, which an empty one proves.
        const QList<int> any;
        const QList<int> autoSet = { 1, 2, 3, 4, 8 };
        QTest::newRow("1234.5 um") << 1234.5 << false << 2 << any << "1234.5 \u03BCm";
        QTest::newRow("1234.5 mm") << 1234.5 << false << 3 << any << "1.235 mm";
        QTest::newRow("1234.5 cm") << 1234.5 << false << 4 << any << "0.1235 cm";
        QTest::newRow("1234.5 mil") << 1234.5 << false << 5 << any << "48.602 mil";
        QTest::newRow("1234.5 inch") << 1234.5 << false << 6 << any << "0.0486 inch";
        QTest::newRow("1234.5 ft") << 1234.5 << false << 7 << any << "0.0041 ft";
        QTest::newRow("1234.5 m") << 1234.5 << false << 8 << any << "0.0012 m";
        QTest::newRow("1234.5 nm") << 1234.5 << false << 1 << any << "1.2345\u221910\u2076 nm";
        QTest::newRow("1234.5 auto -> mm") << 1234.5 << false << 0 << autoSet << "1.235 mm";
        QTest::newRow("0.5 auto -> nm, um formatter") << 0.5 << false << 0 << autoSet << "500.00 nm";
        QTest::newRow("0.5 auto without nm") << 0.5 << false << 0 << QList<int>{ 2, 3 } << "0.5000 \u03BCm";
        QTest::newRow("25000 auto -> cm") << 25000.0 << false << 0 << autoSet << "2.500 cm";
        QTest::newRow("25000 auto without cm, no m") << 25000.0 << false << 0 << QList<int>{ 2, 3, 8 } << "25.000 mm";
        QTest::newRow("3000000 auto -> m") << 3000000.0 << false << 0 << autoSet << "3.000 m";
        QTest::newRow("999.9 auto stays um") << 999.9 << false << 0 << QList<int>{ 2, 3 } << "999.90 \u03BCm";
        QTest::newRow("1000 auto -> mm") << 1000.0 << false << 0 << QList<int>{ 2, 3 } << "1.000 mm";
        QTest::newRow("50 mm") << 50.0 << false << 3 << any << "50.00\u221910 \u0304\u00B3 mm";
        QTest::newRow("5 mm") << 5.0 << false << 3 << any << "5.000\u221910 \u0304\u00B3 mm";
        QTest::newRow("0.5 mm") << 0.5 << false << 3 << any << "500\u221910 \u0304\u2076 mm";
        QTest::newRow("0.0005 mm") << 0.0005 << false << 3 << any << "0 mm";
        QTest::newRow("150000000 mm") << 150000000.0 << false << 3 << any << "150.00\u221910\u00B3 mm";
        QTest::newRow("0.5 mil") << 0.5 << false << 5 << any << "19.7\u221910 \u0304\u00B3 mil";
        QTest::newRow("0.3 nm") << 0.3 << false << 1 << any << "300 nm";
        QTest::newRow("20000 nm") << 20000.0 << false << 1 << any << "20.000\u221910\u2076 nm";
        QTest::newRow("250000 squared mm") << 250000.0 << true << 3 << any << "0.2500 mm\u00B2";
        QTest::newRow("250000 squared auto, side below 1000")
            << 250000.0 << true << 0 << QList<int>{ 2, 3, 4 } << "250.00\u221910\u00B3 \u03BCm\u00B2";
        QTest::newRow("123456789 um") << 123456789.0 << false << 2 << any << "123.457\u221910\u2076 \u03BCm";
        QTest::newRow("0 um") << 0.0 << false << 2 << any << "0 \u03BCm";

        QTest::newRow("auto without mm stays um") << 5000.0 << false << 0 << QList<int>{ 2, 4, 8 } << "5000.0 \u03BCm";
        QTest::newRow("auto m needs cm") << 3e6 << false << 0 << QList<int>{ 3, 8 } << "3000.0 mm";
        QTest::newRow("auto without m stays cm") << 3e6 << false << 0 << QList<int>{ 3, 4 } << "300.00 cm";
        QTest::newRow("auto never picks mil, inch, ft") << 1e7 << false << 0 << QList<int>{ 2, 5, 6, 7 }
                                                        << "10.000\u221910\u2076 \u03BCm";
        QTest::newRow("no unit: unconverted, trailing space") << 1234.5 << false << 1000 << any << "1234.5 ";
        QTest::newRow("no unit squared: not rooted") << 2500.0 << true << 1000 << any << "2500.0 ";
        QTest::newRow("degrees pass unchanged") << 45.0 << false << 9 << any << "45.000 deg(\u00B0)";
        QTest::newRow("unknown code: identity, no name") << 12.5 << false << 42 << any << "12.500 ";
        QTest::newRow("negative area gives 0") << -4.0 << true << 2 << any << "0 \u03BCm\u00B2";
    }
    void formattedText()
    {
        QFETCH(double, value);
        QFETCH(bool, squared);
        QFETCH(int, unit);
        QFETCH(QList<int>, allowed);
        QFETCH(QString, expected);

        QCOMPARE(panel.convertFromUmAndFormat(value, squared, Unit(unit), allowed), expected);
        // The unit's name goes back to the caller; "no unit" leaves it alone.
        Unit used = Unit(unit);
        QString name = "untouched";
        panel.convertFromUm(value, squared, used, name, allowed);
        QCOMPARE(name, unit >= 1000 ? QString("untouched") : expected.section(' ', -1));
        // Without a list of its own the automatic choice takes the units in use.
        panel.setUnitsToUse(allowed, false);
        QCOMPARE(panel.convertFromUmAndFormat(value, squared, Unit(unit), QList<int>()), expected);
    }

    void convertUnit_data()
    {
        addColumns<int, int, double, double>({ "from", "to", "value", "expected" });

        // The inch-based factors out of micrometres are rounded constants, the ones back are exact.
        QTest::newRow("um -> mil, rounded factor") << 2 << 5 << 25.4 << 0.999999778;
        QTest::newRow("um -> inch, rounded factor") << 2 << 6 << 25400.0 << 0.999999778;
        QTest::newRow("mil -> um") << 5 << 2 << 1.0 << 25.4;
        QTest::newRow("inch -> mm") << 6 << 3 << 1.0 << 25.4;
        QTest::newRow("um -> ft") << 2 << 7 << 304800.0 << 1.0;
        QTest::newRow("ft -> m") << 7 << 8 << 1.0 << 0.3048;
        QTest::newRow("m -> cm") << 8 << 4 << 2.5 << 250.0;
        QTest::newRow("cm -> nm") << 4 << 1 << 0.5 << 5e6;
        QTest::newRow("nm -> um") << 1 << 2 << 2500.0 << 2.5;
        // Same unit: untouched, not a round trip through the rounded mil factor.
        QTest::newRow("mil -> mil exact") << 5 << 5 << 3.0 << 3.0;
        QTest::newRow("deg -> nm is identity then nm") << 9 << 1 << 5.0 << 5000.0;
        QTest::newRow("mm -> no unit") << 3 << 1000 << 1.5 << 1500.0;
        QTest::newRow("negative code -> mm") << -1 << 3 << 3000.0 << 3.0;
    }
    void convertUnit()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(double, value);
        QFETCH(double, expected);

        const double result = panel.convertUnit(Unit(from), Unit(to), value);
        QVERIFY2(qAbs(result - expected) <= 1e-12 * qMax(1.0, qAbs(expected)),
                 qPrintable(QString::number(result, 'g', 17)));
    }

    // Every unit's name leads back to it; look-alikes lead nowhere.
    void names()
    {
        for (int unit = 0; unit < 10; ++unit)
            QCOMPARE(panel.getUnitTypeFromName(panel.getUnitNameFromType(unit)), unit);
        // The micro sign U+00B5 is not the Greek mu of the unit name.
        for (const char* name : { "\u00B5m", "MM", "" })
            QCOMPARE(panel.getUnitTypeFromName(name), -1);
        QCOMPARE(panel.getUnitNameFromType(1000), QString());
    }

    // Names are looked up by their translated text.
    void translatedNames()
    {
        GermanUnits translator;
        QCoreApplication::installTranslator(&translator);
        OvGuiMeasurementTool translated;
        QCoreApplication::removeTranslator(&translator);

        QCOMPARE(translated.getUnitTypeFromName("Millimeter"), 3);
        QCOMPARE(translated.getUnitTypeFromName("mm"), -1);
        QCOMPARE(translated.getUnitNameFromType(9), QString("Grad(\u00B0)"));
        QCOMPARE(translated.convertFromUmAndFormat(1234.5, false, OvGuiMeasurementTool::UnitMm, kAllUnits),
                 QString("1.235 Millimeter"));
    }

    // Offering units, then asking for one: the slider moves and the label follows, silently.
    void unitSelector_data()
    {
        addColumns<QList<int>, bool, QVariant, bool, int, QString>(
            { "units", "squared", "request", "enabled", "position", "label" });

        const QVariant offerOnly;
        QTest::newRow("none offered") << QList<int>() << false << offerOnly << false << 0 << QString();
        QTest::newRow("one offered squared") << QList<int>{ 3 } << true << offerOnly << false << 0 << "mm\u00B2";
        QTest::newRow("two: no label yet") << QList<int>{ 3, 4 } << true << offerOnly << true << 0 << QString();
        QTest::newRow("mm squared") << kAllUnits << true << QVariant(3) << true << 4 << "mm\u00B2";
        QTest::newRow("auto squared has no square") << kAllUnits << true << QVariant(0) << true << 0 << "auto";
        QTest::newRow("by name") << kAllUnits << false << QVariant("cm") << true << 5 << "cm";
        QTest::newRow("first of repeated") << QList<int>{ 2, 3, 2 } << false << QVariant(2) << true << 0 << "\u03BCm";
        QTest::newRow("not offered ignored") << kAllUnits << false << QVariant(9) << true << 2 << "before";
        QTest::newRow("unknown name ignored") << kAllUnits << false << QVariant("parsec") << true << 2 << "before";
        QTest::newRow("micro sign is not mu") << kAllUnits << false << QVariant("\u00B5m") << true << 2 << "before";
    }
    void unitSelector()
    {
        QFETCH(QList<int>, units);
        QFETCH(bool, squared);
        QFETCH(QVariant, request);
        QFETCH(bool, enabled);
        QFETCH(int, position);
        QFETCH(QString, label);

        if (request.isValid()) {
            panel.setUnitsToUse(units, squared);
            panel.theSLUnitType->setValue(2);
        }
        panel.theTLUnit->setText("before");
        QSignalSpy spy(&panel, &OvGuiMeasurementTool::signalUnitTypeChanged);
        if (!request.isValid())
            panel.setUnitsToUse(units, squared);
        else if (request.userType() == QMetaType::QString)
            panel.setCurrentUnit(request.toString());
        else
            panel.setCurrentUnit(request.toInt());
        QCOMPARE(panel.theSLUnitType->isEnabled(), enabled);
        QCOMPARE(panel.theTLUnit->text(), label);
        QCOMPARE(panel.getCurrentUnit(), units.isEmpty() ? 1000 : units.at(position));
        if (!units.isEmpty()) {
            QCOMPARE(panel.theSLUnitType->value(), position);
            QCOMPARE(panel.theSLUnitType->maximum(), units.size() - 1);
        }
        QCOMPARE(spy.count(), 0);
    }

    void sliderClickEmitsUnit()
    {
        panel.setUnitsToUse(kAllUnits, true);
        panel.setCurrentUnit(0);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QSignalSpy spy(&panel, &OvGuiMeasurementTool::signalUnitTypeChanged);
        // Position round(8 * 68 / 136) = 4 of 0, 1, 2, 5, 3, ...: millimetres.
        QTest::mouseClick(panel.theSLUnitType, Qt::LeftButton, Qt::NoModifier, QPoint(68, 7));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toInt(), 3);
        QCOMPARE(panel.theTLUnit->text(), QString("mm\u00B2"));
        // Positions without a unit are ignored.
        for (const int position : { 9, 42, -1 })
            QVERIFY(QMetaObject::invokeMethod(&panel, "slotUnitChanged", Q_ARG(int, position)));
        QCOMPARE(spy.count(), 1);
    }
};

QTEST_MAIN(tst_Units)
#include "tst_units.moc"
