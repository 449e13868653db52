// The CSV exporter at its edges: numbers with many digits are written so that
// they read back as exactly the same double, never in exponent notation;
// invalid values stay empty; fields with commas and quotes are quoted.
#include "OvMeasurementExporter.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>

class tst_Exporter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbersKeepEveryDigit_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("one third") << 1.0 / 3.0 << "0.3333333333333333";
        QTest::newRow("0.1 + 0.2") << 0.1 + 0.2 << "0.30000000000000004";
        QTest::newRow("two thirds of a metre in um") << 2.0e6 / 3.0 << "666666.6666666666";
        QTest::newRow("pi") << M_PI << "3.141592653589793";
        QTest::newRow("17 significant digits") << 123456.78901234567 << "123456.78901234567";
        QTest::newRow("5 um in metres") << 5e-6 << "0.000005";
        QTest::newRow("tiny area") << 1.2345678901234568e-10 << "0.00000000012345678901234568";
        QTest::newRow("negative") << -2.5e-7 << "-0.00000025";
        QTest::newRow("large") << 1e21 << "1000000000000000000000";
        QTest::newRow("whole") << 30.0 << "30";
        QTest::newRow("zero") << 0.0 << "0";
        QTest::newRow("smallest normal") << std::numeric_limits<double>::min()
                                         << QStringLiteral("0.") + QString(307, QLatin1Char('0'))
                                                + QStringLiteral("22250738585072014");
    }
    void numbersKeepEveryDigit()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(OvMeasurementExporter::formatNumber(value), text);
        bool ok = false;
        // Exact, not fuzzy: the text is the same double.
        QVERIFY(OvMeasurementExporter::formatNumber(value).toDouble(&ok) == value);
        QVERIFY(ok);
    }

    void rowsAsCsv_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("typeName");
        QTest::addColumn<QString>("line");
        const QString micro = QStringLiteral("\u03BCm");
        QTest::newRow("plain") << QVariant(5.5) << "Distance"
                               << "66653,1,Length,5.5," + micro + ",5.500 " + micro + ",Distance,0";
        QTest::newRow("uncalibrated: empty value") << QVariant() << "Distance"
                                                   << "66653,1,Length,," + micro + ",5.500 " + micro + ",Distance,0";
        QTest::newRow("not a number") << QVariant(QStringLiteral("n/a")) << "Distance"
                                      << "66653,1,Length,," + micro + ",5.500 " + micro + ",Distance,0";
        QTest::newRow("infinite") << QVariant(std::numeric_limits<double>::infinity()) << "Distance"
                                  << "66653,1,Length,," + micro + ",5.500 " + micro + ",Distance,0";
        QTest::newRow("type name with comma and quote") << QVariant(1.0) << "Free \"line\", open"
                                                        << "66653,1,Length,1," + micro + ",5.500 " + micro
                                                               + ",\"Free \"\"line\"\", open\",0";
    }
    void rowsAsCsv()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, typeName);
        QFETCH(QString, line);
        OvMeasurementExporter::Row row;
        row.type = 66653;
        row.index = 1;
        row.valueName = QStringLiteral("Length");
        row.value = value;
        row.unit = QStringLiteral("\u03BCm");
        row.text = QStringLiteral("5.500 \u03BCm");
        row.typeName = typeName;
        const QStringList lines = OvMeasurementExporter::toCsv({ row }).split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 3); // header, row, empty after the last newline
        QCOMPARE(lines.at(0), QStringLiteral("type,index,value_name,value,unit,text,type_name,frame"));
        QCOMPARE(lines.at(1), line);
        QVERIFY(lines.at(2).isEmpty());
    }

    void unwritableFileIsReported()
    {
        QTemporaryDir dir;
        QString error;
        const QString file = dir.filePath(QStringLiteral("missing-folder/values.csv"));
        QVERIFY(!OvMeasurementExporter::writeCsv(file, &error));
        QVERIFY2(error.startsWith(QStringLiteral("cannot write ") + file), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(tst_Exporter)
#include "tst_exporter.moc"
