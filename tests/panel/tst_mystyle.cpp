#include "myStyle.h"

#include <QApplication>
#include <QMenu>
#include <QtTest>

class tst_MyStyle : public QObject
{
    Q_OBJECT
private slots:
    void metrics_data();
    void metrics();
    void menuIconsFollowScale();
};

void tst_MyStyle::metrics_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("metric");
    QTest::addColumn<int>("expected");

    // -1: the application style's own value.
    QTest::newRow("horizontal shift") << 1.0 << int(QStyle::PM_ButtonShiftHorizontal) << 0;
    QTest::newRow("vertical shift") << 2.0 << int(QStyle::PM_ButtonShiftVertical) << 0;
    QTest::newRow("small icon 1.0") << 1.0 << int(QStyle::PM_SmallIconSize) << 24;
    QTest::newRow("small icon 1.25") << 1.25 << int(QStyle::PM_SmallIconSize) << 30;
    QTest::newRow("small icon 1.5") << 1.5 << int(QStyle::PM_SmallIconSize) << 36;
    QTest::newRow("small icon 1.1 truncates") << 1.1 << int(QStyle::PM_SmallIconSize) << 26;
    QTest::newRow("small icon 1.3 truncates") << 1.3 << int(QStyle::PM_SmallIconSize) << 31;
    QTest::newRow("slider thickness proxied") << 2.0 << int(QStyle::PM_SliderThickness) << -1;
    QTest::newRow("large icon proxied") << 2.0 << int(QStyle::PM_LargeIconSize) << -1;
}

void tst_MyStyle::metrics()
{
    QFETCH(double, scale);
    QFETCH(int, metric);
    QFETCH(int, expected);

    myStyle style;
    style.scale = scale;
    const auto pm = QStyle::PixelMetric(metric);
    if (expected < 0)
        expected = QApplication::style()->pixelMetric(pm);
    QCOMPARE(style.pixelMetric(pm), expected);
}

void tst_MyStyle::menuIconsFollowScale()
{
    myStyle style;
    style.scale = 1.5;
    QMenu menu;
    menu.setStyle(&style);
    QAction* action = menu.addAction(QString());
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::red);
    action->setIcon(QIcon(pixmap));
    QCOMPARE(menu.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &menu), 36);
    // A menu item is at least as tall as the scaled icon it shows.
    QVERIFY(menu.actionGeometry(action).height() >= 36);
}

QTEST_MAIN(tst_MyStyle)
#include "tst_mystyle.moc"
