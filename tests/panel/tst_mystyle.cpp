#include "myStyle.h"
#include "PanelTestHelper.h"

#include <QApplication>
#include <QtTest>

class tst_MyStyle : public QObject
{
    Q_OBJECT
private slots:
    void metrics_data()
    {
        addColumns<double, int, int>({ "scale", "metric", "expected" });

        // -1: the application style's own value.
        QTest::newRow("horizontal shift") << 1.0 << int(QStyle::PM_ButtonShiftHorizontal) << 0;
        QTest::newRow("vertical shift") << 2.0 << int(QStyle::PM_ButtonShiftVertical) << 0;
        QTest::newRow("small icon 1.15 truncates") << 1.15 << int(QStyle::PM_SmallIconSize) << 27;
        QTest::newRow("slider thickness proxied") << 2.0 << int(QStyle::PM_SliderThickness) << -1;
    }
    void metrics()
    {
        QFETCH(double, scale);
        QFETCH(int, metric);
        QFETCH(int, expected);

        myStyle style;
        style.scale = scale;
        const auto pm = QStyle::PixelMetric(metric);
        QCOMPARE(style.pixelMetric(pm), expected < 0 ? QApplication::style()->pixelMetric(pm) : expected);
    }
};

QTEST_MAIN(tst_MyStyle)
#include "tst_mystyle.moc"
