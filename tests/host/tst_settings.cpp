#include "KxAppSettings.h"
#include "OvQtCompat.h"

#include <QColor>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using S = KxAppSettings;

class tst_Settings : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    int fileCount = 0;

private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        // ctest gives every test a settings file of its own through the environment.
        const QString fromEnv = qEnvironmentVariable("OV_SETTINGS_FILE");
        S::setFileName(QString());
        QVERIFY(fromEnv.isEmpty() || S::fileName() == fromEnv);
    }

    void init()
    {
        S::setProfile(QString());
        S::setFileName(dir.filePath(QStringLiteral("case%1.ini").arg(++fileCount)));
    }

    void cleanup()
    {
        while (!S::group().isEmpty())
            S::endGroup();
    }

    void valueRoundTripAndFallback_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("string with separators") << QVariant(QStringLiteral("a/b = c; d"));
        QTest::newRow("size") << QVariant(QSize(180, 120));
        QTest::newRow("colour") << QVariant(QColor(10, 20, 30));
    }

    void valueRoundTripAndFallback()
    {
        QFETCH(QVariant, value);

        QVERIFY(S::value("Key", "fallback") == "fallback" && !S::value("Key").isValid());
        S::setValue("Key", value);
        // Through the file, as the next start of the application sees it.
        S::sync();
        const QString path = S::fileName();
        S::setFileName(dir.filePath(QStringLiteral("elsewhere.ini")));
        S::setFileName(path);
        QVariant read = S::value("Key");
        QVERIFY(OvQtCompat::convert(read, value.userType()));
        QCOMPARE(read, value);
        S::remove("Key");
        QCOMPARE(S::value("Key", 3).toInt(), 3);
    }

    void groupsAndFullKeys()
    {
        QSignalSpy single(S::getInstance(), &S::signalValueSet);
        QSignalSpy many(S::getInstance(), &S::signalValuesModified);
        S::setValue("ScalingFactor", 1.5);
        S::beginGroup("Measurement");
        S::setValue("LineWidth", 3);
        QVERIFY(!S::value("ScalingFactor").isValid());
        S::beginGroup("Inner");
        S::setValue("Deep", "x");
        S::endGroup();
        // Several values at once: one signal; a name without a value is dropped.
        S::setValues({"A", "B", "Unpaired"}, {QVariant(1), QVariant("two")});
        S::endGroup();
        S::endGroup();
        S::endGroup(); // One too many is ignored.

        QStringList keys;
        for (const QList<QVariant>& args : single)
            keys << args.at(0).toString();
        QCOMPARE(keys, QStringList({"ScalingFactor", "Measurement/LineWidth", "Measurement/Inner/Deep"}));
        QCOMPARE(single.at(1).at(1).toInt(), 3);
        QCOMPARE(many.count(), 1);
        QCOMPARE(many.at(0).at(0).toStringList(), QStringList({"Measurement/A", "Measurement/B"}));
        QCOMPARE(many.at(0).at(1).value<QList<QVariant>>(), QList<QVariant>({QVariant(1), QVariant("two")}));
        QVERIFY(S::value("Measurement/B") == "two" && !S::contains("Measurement/Unpaired"));
    }

    void garbageInFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("expected");

        // The callers' pattern: read with a default, convert, fall back to 99.
        QTest::newRow("letters for a number") << QByteArray("[Measurement]\nLineWidth=abc\n")
                                              << "Measurement/LineWidth" << 99;
        QTest::newRow("truncated variant") << QByteArray("[Measurement]\nColor=@Variant(\\0\\0\\0\\x43\\x1)\n")
                                           << "Measurement/Color" << 99;
        QTest::newRow("good value after junk") << QByteArray("junk without equals\n[Measurement\nFontSize=12\n")
                                               << "Measurement/FontSize" << 12;
        QTest::newRow("binary junk") << QByteArray("\x01\xff\xfe=\x00\x13\n[\n=\n", 12) << "Measurement/LineWidth"
                                     << 99;
    }

    void garbageInFile()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, key);
        QFETCH(int, expected);

        QFile file(dir.filePath(QStringLiteral("raw%1.ini").arg(++fileCount)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        S::setFileName(file.fileName());
        bool ok = false;
        const int asInt = S::value(key, 99).toInt(&ok);
        QCOMPARE(ok ? asInt : 99, expected);
        // Writing on top of a garbled file works.
        S::setValue(key, 5);
        QCOMPARE(S::value(key).toInt(), 5);
    }

    void profileSwitch()
    {
        S::setValue("LineWidth", 1);
        S::beginGroup("Open");
        QStringList order;
        QObject scope;
        connect(S::getInstance(), &S::signalProfileAboutToChange, &scope,
                [&order]() { order << "about:" + S::value("LineWidth").toString(); });
        connect(S::getInstance(), &S::signalProfileChanged, &scope,
                [&order]() { order << "changed:" + S::value("LineWidth", -1).toString(); });

        S::setProfile("Lab");
        // The switch resets the group stack.
        QVERIFY(S::group().isEmpty() && S::fileName().endsWith(QStringLiteral(".Lab.ini")));
        S::setValue("LineWidth", 4);
        S::setProfile("Lab");
        S::setProfile(QString());
        S::setProfile("Lab");
        // Each profile keeps its values; the old one is still readable while
        // "about to change"; the same profile twice switches once.
        QCOMPARE(order, QStringList({"about:", "changed:-1", "about:4", "changed:1", "about:1", "changed:4"}));

        // A name that could leave the folder is made harmless.
        S::setProfile("../x y");
        QCOMPARE(S::profile(), QStringLiteral("___x_y"));
        QVERIFY(S::fileName().startsWith(dir.path()));
        S::setValue("K", 1);
        S::sync();
        QVERIFY(QFile::exists(S::fileName()));
    }
};

QTEST_MAIN(tst_Settings)
#include "tst_settings.moc"
