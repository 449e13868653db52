// KxGsObjectMap: the index of an item must agree with a walk of the map in
// index order after every kind of write.

#include "KxGsObjectMap.h"

#include <QtTest>

namespace {

// Distinct addresses stand in for items; the map never dereferences them.
KxGsObject* item(int aNumber)
{
    return reinterpret_cast<KxGsObject*>(quintptr(0x1000 + 16 * aNumber));
}

int walkKey(const KxGsObjectMap& aMap, const KxGsObject* anObj)
{
    for (auto it = aMap.cbegin(); it != aMap.cend(); ++it) {
        if (it.value() == anObj)
            return it.key();
    }
    return -1;
}

} // namespace

class tst_GsObjectMap : public QObject
{
    Q_OBJECT

private slots:
    void keyAgreesWithAWalk_data()
    {
        QTest::addColumn<QString>("script");
        // "i idx n": insert item n at idx; "r idx": remove; "t idx": take; "c": clear.
        QTest::newRow("inserted") << "i 3 1;i 1 2;i 7 3";
        QTest::newRow("replaced under its index") << "i 3 1;i 3 2";
        QTest::newRow("one item under two indices answers to the lowest") << "i 5 1;i 2 1;i 9 1";
        QTest::newRow("lowest of two removed") << "i 5 1;i 2 1;r 2";
        QTest::newRow("taken") << "i 4 1;i 6 2;t 4";
        QTest::newRow("removed twice") << "i 4 1;r 4;r 4";
        QTest::newRow("cleared, then inserted") << "i 4 1;i 5 2;c;i 8 2";
    }

    void keyAgreesWithAWalk()
    {
        QFETCH(QString, script);
        KxGsObjectMap map;
        QMap<int, KxGsObject*> plain;
        for (const QString& step : script.split(QLatin1Char(';'))) {
            const QStringList parts = step.split(QLatin1Char(' '));
            const int idx = parts.value(1).toInt();
            if (parts[0] == "i") {
                map.insert(idx, item(parts[2].toInt()));
                plain.insert(idx, item(parts[2].toInt()));
            } else if (parts[0] == "r") {
                QCOMPARE(map.remove(idx), plain.remove(idx));
            } else if (parts[0] == "t") {
                QCOMPARE(map.take(idx), plain.take(idx));
            } else {
                map.clear();
                plain.clear();
            }
            const KxGsObjectMap::Map& asMap = map;
            QCOMPARE(asMap, plain);
            for (int n = 1; n <= 3; ++n) {
                QCOMPARE(map.key(item(n), -1), walkKey(map, item(n)));
                QCOMPARE(map.key(item(n), -1), plain.key(item(n), -1));
            }
        }
        QCOMPARE(map.key(nullptr, -7), -7);
    }
};

QTEST_MAIN(tst_GsObjectMap)
#include "tst_gsobjectmap.moc"
