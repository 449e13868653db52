#include "KxMediaInfo.h"
#include "KxView.h"

#include <QtTest>

#include <cmath>

class tst_MediaInfo : public QObject
{
    Q_OBJECT

private slots:
    void umForPixels_data()
    {
        QTest::addColumn<double>("umX");
        QTest::addColumn<double>("umY");
        QTest::addColumn<double>("pixels");
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("expected");
        QTest::addColumn<bool>("calibrated");

        QTest::newRow("100 px along x") << 0.25 << 4.0 << 100.0 << 0.0 << 25.0 << true;
        QTest::newRow("100 px along y uses umY") << 0.25 << 4.0 << 100.0 << M_PI / 2 << 400.0 << true;
        QTest::newRow("45 degrees, 3 and 4 um") << 3.0 << 4.0 << 2.0 << M_PI / 4 << 2.0 * std::sqrt(12.5) << true;
        QTest::newRow("uncalibrated") << 0.0 << 0.0 << 100.0 << 0.0 << 0.0 << false;
        QTest::newRow("negative is uncalibrated") << -1.0 << -1.0 << 100.0 << 0.0 << 0.0 << false;
        QTest::newRow("one axis missing") << 1.0 << 0.0 << 100.0 << 0.0 << 0.0 << false;
        QTest::newRow("not a number") << qQNaN() << qQNaN() << 100.0 << 0.0 << 0.0 << false;
        QTest::newRow("infinite pixels") << 1.0 << 1.0 << qInf() << 0.0 << 0.0 << true;
    }

    void umForPixels()
    {
        QFETCH(double, umX);
        QFETCH(double, umY);
        QFETCH(double, pixels);
        QFETCH(double, angle);
        QFETCH(double, expected);
        QFETCH(bool, calibrated);

        KxMediaInfo info;
        info.setUmPerPixel(umX, umY);
        QCOMPARE(info.isCalibrated(), calibrated);
        QVERIFY(qAbs(info.calculateUmForPixels(pixels, angle) - expected) < 1e-9);
    }

    void scaleBlocking_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<bool>("blocks");

        QTest::newRow("exactly 1/16") << 1.0 / 16.0 << false;
        QTest::newRow("just below 1/16") << 0.0624 << true;
        QTest::newRow("negative") << -1.0 << true;
        QTest::newRow("not a number") << qQNaN() << true;
    }

    void scaleBlocking()
    {
        QFETCH(double, zoom);
        QFETCH(bool, blocks);

        KxView view(QPoint(2, 3), zoom);
        QCOMPARE(view.isScaleBlockingTool(), blocks);
    }
};

QTEST_MAIN(tst_MediaInfo)
#include "tst_mediainfo.moc"
