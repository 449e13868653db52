#include "OvCommonStyle.h"

#include <QLabel>
#include <QRegularExpression>
#include <QtTest>

class tst_CommonStyle : public QObject
{
    Q_OBJECT
private slots:
    void sheetPlaceholders_data();
    void sheetPlaceholders();
    void sheetIsAppliedByQt();
    void resizeLimits_data();
    void resizeLimits();
    void resizeRecursion();
};

void tst_CommonStyle::sheetPlaceholders_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("fontSize");
    QTest::addColumn<QString>("imageSuffix");
    QTest::addColumn<QString>("menuFontSize");
    QTest::addColumn<QString>("profileIndent");
    QTest::addColumn<QString>("checkSide");
    QTest::addColumn<QString>("checkSuffix");

    QTest::newRow("1.0") << 1.0 << "12" << "" << "15" << "20" << "22" << "-150";
    QTest::newRow("1.25 gets -300 check boxes") << 1.25 << "15" << "-125" << "18.75" << "25" << "27.5" << "-300";
    QTest::newRow("1.5 gets -200 check boxes") << 1.5 << "18" << "-150" << "22.5" << "30" << "33" << "-200";
    QTest::newRow("1.75") << 1.75 << "21" << "-175" << "26.25" << "35" << "38.5" << "-300";
    QTest::newRow("2.0") << 2.0 << "24" << "-200" << "30" << "40" << "44" << "-250";
    QTest::newRow("0.8 below 1.25") << 0.8 << "9.6" << "" << "12" << "16" << "17.6" << "-150";
}

void tst_CommonStyle::sheetPlaceholders()
{
    QFETCH(double, scale);
    QFETCH(QString, fontSize);
    QFETCH(QString, imageSuffix);
    QFETCH(QString, menuFontSize);
    QFETCH(QString, profileIndent);
    QFETCH(QString, checkSide);
    QFETCH(QString, checkSuffix);

    const QString sheet = OvCommonStyle::generalStyleSheet(scale);
    QVERIFY2(!sheet.contains(QRegularExpression("%\\d")), "a placeholder was left unfilled");

    QVERIFY(sheet.contains(QString("font-family: Segoe UI; font-size: %1px,0.2em; }").arg(fontSize)));
    QCOMPARE(sheet.count(QString("font-size: %1px,0.2em").arg(menuFontSize)) >= 2, true);
    QVERIFY(sheet.contains(QString("QMenu[profile=\"true\"]::item { padding: 2px 20px 2px %1px; }").arg(profileIndent)));
    QVERIFY(sheet.contains(QString("width: %1px; height: %1px;").arg(checkSide)));
    QVERIFY(sheet.contains(QString(":/tessilarresources/checkboxstandard-off%1.png").arg(checkSuffix)));
    QVERIFY(sheet.contains(QString(":/tessilarresources/checkboxstandard-on%1.png").arg(checkSuffix)));

    const QStringList images = { "progresbar", "slider", "drop-down-normal", "drop-down-hover", "radio-on",
                                 "radio-off", "drop-down", "drop-up-normal", "drop-up-hover", "check-normal" };
    for (const QString& image : images) {
        const QString path = QString(":/tessilarresources/%1%2.png)").arg(image, imageSuffix);
        QVERIFY2(sheet.contains(path), qPrintable(path));
    }
}

// A parse error makes Qt drop the whole sheet; the colours reaching the widgets prove it parsed.
void tst_CommonStyle::sheetIsAppliedByQt()
{
    QWidget panel;
    panel.setStyleSheet(OvCommonStyle::generalStyleSheet(1.5));
    QLabel plain(QStringLiteral("plain"), &panel);
    QLabel gray(QStringLiteral("gray"), &panel);
    gray.setProperty("grayText", true);
    panel.ensurePolished();
    plain.ensurePolished();
    gray.ensurePolished();
    QCOMPARE(plain.palette().color(QPalette::WindowText), QColor(229, 229, 229));
    QCOMPARE(gray.palette().color(QPalette::WindowText), QColor(49, 49, 49));
    QCOMPARE(plain.font().pixelSize(), 18);
}

void tst_CommonStyle::resizeLimits_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QSize>("expectedMinimum");
    QTest::addColumn<QSize>("expectedMaximum");

    const int unbounded = QWIDGETSIZE_MAX;
    QTest::newRow("1.0 leaves sizes") << 1.0 << QSize(24, 24) << QSize(34, 24) << QSize(24, 24) << QSize(34, 24);
    QTest::newRow("1.5 truncates maximum, rounds minimum")
        << 1.5 << QSize(15, 10) << QSize(136, 31) << QSize(23, 15) << QSize(204, 46);
    // Each limit follows its own rule, so a fixed size can end with the minimum a pixel above the maximum.
    QTest::newRow("1.5 fixed height") << 1.5 << QSize(15, 15) << QSize(136, 15) << QSize(23, 23) << QSize(204, 22);
    QTest::newRow("1.25 fixed tool button") << 1.25 << QSize(34, 24) << QSize(34, 24) << QSize(43, 30) << QSize(42, 30);
    QTest::newRow("unbounded maximum stays")
        << 2.0 << QSize(10, 0) << QSize(unbounded, unbounded) << QSize(20, 0) << QSize(unbounded, unbounded);
    QTest::newRow("one unbounded dimension") << 2.0 << QSize(0, 0) << QSize(152, unbounded) << QSize(0, 0)
                                             << QSize(304, unbounded);
    QTest::newRow("growth past the limit is capped")
        << 4.0 << QSize(0, 0) << QSize(unbounded - 1, 10) << QSize(0, 0) << QSize(unbounded, 40);
    QTest::newRow("zero scale") << 0.0 << QSize(24, 24) << QSize(34, 24) << QSize(0, 0) << QSize(0, 0);
    QTest::newRow("negative scale gives zero") << -1.0 << QSize(24, 24) << QSize(34, 24) << QSize(0, 0) << QSize(0, 0);
}

void tst_CommonStyle::resizeLimits()
{
    QFETCH(double, scale);
    QFETCH(QSize, minimum);
    QFETCH(QSize, maximum);
    QFETCH(QSize, expectedMinimum);
    QFETCH(QSize, expectedMaximum);

    QWidget parent;
    QWidget* child = new QWidget(&parent);
    child->setMinimumSize(minimum);
    child->setMaximumSize(maximum);
    OvCommonStyle::resizeHelper(&parent, scale, true, false);
    QCOMPARE(child->minimumSize(), expectedMinimum);
    QCOMPARE(child->maximumSize(), expectedMaximum);
}

void tst_CommonStyle::resizeRecursion()
{
    for (const bool recursive : { false, true }) {
        QWidget top;
        top.setFixedSize(152, 258);
        QWidget* child = new QWidget(&top);
        child->setFixedSize(100, 20);
        QObject* plainObject = new QObject(child);
        Q_UNUSED(plainObject);
        QWidget* grandChild = new QWidget(child);
        grandChild->setFixedSize(50, 10);

        OvCommonStyle::resizeHelper(&top, 2.0, recursive, false);
        QCOMPARE(top.minimumSize(), QSize(152, 258));
        QCOMPARE(top.maximumSize(), QSize(152, 258));
        QCOMPARE(child->maximumSize(), QSize(200, 40));
        QCOMPARE(grandChild->maximumSize(), recursive ? QSize(100, 20) : QSize(50, 10));
        QCOMPARE(grandChild->minimumSize(), recursive ? QSize(100, 20) : QSize(50, 10));

        OvCommonStyle::resizeWidget(&top, 0.5);
        QCOMPARE(top.maximumSize(), QSize(76, 129));
    }
    OvCommonStyle::resizeHelper(nullptr, 2.0, true, false);
    OvCommonStyle::resizeWidget(nullptr, 2.0);
}

QTEST_MAIN(tst_CommonStyle)
#include "tst_commonstyle.moc"
