#include "KxCVSequence.h"

#include <QtTest>

using Points = QVector<QPoint>;

class tst_CVSequence : public QObject
{
    Q_OBJECT

private slots:
    void areaAndPerimeter_data()
    {
        QTest::addColumn<Points>("points");
        QTest::addColumn<double>("area");
        QTest::addColumn<double>("closed");
        QTest::addColumn<double>("open");

        QTest::newRow("square, anticlockwise") << Points{{0, 0}, {10, 0}, {10, 10}, {0, 10}} << 100.0 << 40.0 << 30.0;
        QTest::newRow("square, clockwise") << Points{{0, 0}, {0, 10}, {10, 10}, {10, 0}} << 100.0 << 40.0 << 30.0;
        QTest::newRow("right triangle 3-4-5") << Points{{0, 0}, {4, 0}, {0, 3}} << 6.0 << 12.0 << 9.0;
        QTest::newRow("concave L") << Points{{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}} << 3.0 << 8.0 << 6.0;
        QTest::newRow("collinear: no area") << Points{{0, 0}, {5, 0}, {10, 0}} << 0.0 << 20.0 << 10.0;
        QTest::newRow("two points") << Points{{0, 0}, {3, 4}} << 0.0 << 10.0 << 5.0;
        QTest::newRow("empty") << Points{} << 0.0 << 0.0 << 0.0;
        QTest::newRow("large coordinates do not overflow")
            << Points{{0, 0}, {100000, 0}, {100000, 100000}, {0, 100000}} << 1e10 << 400000.0 << 300000.0;
    }

    void areaAndPerimeter()
    {
        QFETCH(Points, points);
        QFETCH(double, area);
        QFETCH(double, closed);
        QFETCH(double, open);

        KxCVSequence sequence(points.size(), 8);
        for (int i = 0; i < points.size(); ++i)
            sequence.putPoint(i, points.at(i).x(), points.at(i).y());
        QCOMPARE(sequence.count(), points.size());
        QCOMPARE(sequence.calculateArea(), area);
        QCOMPARE(sequence.calculatePerimeter(true), closed);
        QCOMPARE(sequence.calculatePerimeter(false), open);
    }

    void outOfRangeIgnored()
    {
        KxCVSequence sequence(2, 8);
        sequence.putPoint(-1, 5, 5);
        sequence.putPoint(2, 5, 5);
        sequence.putPoint(1, 3, 4);
        QCOMPARE(sequence.getPoint(0), QPoint(0, 0));
        QCOMPARE(sequence.getPoint(1), QPoint(3, 4));
        QCOMPARE(sequence.getPoint(5), QPoint());
        QCOMPARE(KxCVSequence(-4, 8).count(), 0);
    }
};

QTEST_MAIN(tst_CVSequence)
#include "tst_cvsequence.moc"
