#include "OvCommonStyle.h"
#include "PanelTestHelper.h"

#include <QLabel>
#include <QRegularExpression>
#include <QtTest>

class tst_CommonStyle : public QObject
{
    Q_OBJECT
private slots:
    void sheetPlaceholders_data()
    {
        // Font size, menu font size, profile item indent and check box side.
        addColumns<double, QString, QString, QStringList>({ "scale", "imageSuffix", "checkSuffix", "sizes" });

        QTest::newRow("1.0") << 1.0 << "" << "-150" << QStringList{ "12", "15", "20", "22" };
        QTest::newRow("1.25: -300 boxes") << 1.25 << "-125" << "-300" << QStringList{ "15", "18.75", "25", "27.5" };
        QTest::newRow("1.5: -200 boxes") << 1.5 << "-150" << "-200" << QStringList{ "18", "22.5", "30", "33" };
        QTest::newRow("2.0") << 2.0 << "-200" << "-250" << QStringList{ "24", "30", "40", "44" };
    }
    void sheetPlaceholders()
    {
        QFETCH(double, scale);
        QFETCH(QString, imageSuffix);
        QFETCH(QString, checkSuffix);
        QFETCH(QStringList, sizes);

        const QString sheet = OvCommonStyle::generalStyleSheet(scale);
        QVERIFY2(!sheet.contains(QRegularExpression("%\\d")), "a placeholder was left unfilled");
        QVERIFY(sheet.count(QString("font-size: %1px,0.2em").arg(sizes[1])) >= 2);
        QStringList parts = { QString("font-family: Segoe UI; font-size: %1px,0.2em; }").arg(sizes[0]),
                              QString("QMenu[profile=\"true\"]::item { padding: 2px 20px 2px %1px; }").arg(sizes[2]),
                              QString("width: %1px; height: %1px;").arg(sizes[3]),
                              QString(":/tessilarresources/checkboxstandard-off%1.png").arg(checkSuffix),
                              QString(":/tessilarresources/checkboxstandard-on%1.png").arg(checkSuffix) };
        for (const char* image : { "progresbar", "slider", "drop-down-normal", "drop-down-hover", "radio-on",
                                   "radio-off", "drop-down", "drop-up-normal", "drop-up-hover", "check-normal" })
            parts << QString(":/tessilarresources/%1%2.png)").arg(image, imageSuffix);
        for (const QString& part : parts)
            QVERIFY2(sheet.contains(part), qPrintable(part));
    }

    // A parse error makes Qt drop the whole sheet; the colours reaching the widgets prove it parsed.
    void sheetIsAppliedByQt()
    {
        QWidget panel;
        panel.setStyleSheet(OvCommonStyle::generalStyleSheet(1.5));
        QLabel plain(&panel);
        QLabel gray(&panel);
        gray.setProperty("grayText", true);
        plain.ensurePolished();
        gray.ensurePolished();
        QCOMPARE(plain.palette().color(QPalette::WindowText), QColor(229, 229, 229));
        QCOMPARE(gray.palette().color(QPalette::WindowText), QColor(49, 49, 49));
    }

    // Maximum sizes are multiplied and truncated, minimum sizes rounded, each on its own; the top widget is
    // left alone, plain QObject children are skipped, and only a recursive call reaches grandchildren.
    void resizeLimits_data()
    {
        addColumns<double, bool, QSize, QSize, QSize, QSize>(
            { "scale", "recursive", "minimum", "maximum", "expectedMinimum", "expectedMaximum" });

        const int unbounded = QWIDGETSIZE_MAX;
        QTest::newRow("1.5 truncates maximum, rounds minimum")
            << 1.5 << true << QSize(15, 10) << QSize(136, 31) << QSize(23, 15) << QSize(204, 46);
        // A fixed size can end with the minimum a pixel above the maximum.
        QTest::newRow("1.25 fixed tool button, not recursive")
            << 1.25 << false << QSize(34, 24) << QSize(34, 24) << QSize(43, 30) << QSize(42, 30);
        QTest::newRow("one unbounded dimension stays")
            << 2.0 << true << QSize(10, 0) << QSize(152, unbounded) << QSize(20, 0) << QSize(304, unbounded);
        QTest::newRow("growth past the limit is capped")
            << 4.0 << false << QSize(0, 0) << QSize(unbounded - 1, 10) << QSize(0, 0) << QSize(unbounded, 40);
        QTest::newRow("negative scale gives zero")
            << -1.0 << true << QSize(24, 24) << QSize(34, 24) << QSize(0, 0) << QSize(0, 0);
    }
    void resizeLimits()
    {
        QFETCH(double, scale);
        QFETCH(bool, recursive);
        QFETCH(QSize, minimum);
        QFETCH(QSize, maximum);
        QFETCH(QSize, expectedMinimum);
        QFETCH(QSize, expectedMaximum);

        QWidget top;
        top.setFixedSize(152, 258);
        QWidget* child = new QWidget(&top);
        new QObject(child);
        QWidget* grandChild = new QWidget(child);
        for (QWidget* widget : { child, grandChild }) {
            widget->setMinimumSize(minimum);
            widget->setMaximumSize(maximum);
        }
        OvCommonStyle::resizeHelper(&top, scale, recursive, false);
        QCOMPARE(top.maximumSize(), QSize(152, 258));
        QCOMPARE(child->minimumSize(), expectedMinimum);
        QCOMPARE(child->maximumSize(), expectedMaximum);
        QCOMPARE(grandChild->minimumSize(), recursive ? expectedMinimum : minimum);
        QCOMPARE(grandChild->maximumSize(), recursive ? expectedMaximum : maximum);
        OvCommonStyle::resizeHelper(nullptr, scale, recursive, false);
        OvCommonStyle::resizeWidget(nullptr, scale);
    }
};

QTEST_MAIN(tst_CommonStyle)
#include "tst_commonstyle.moc"
