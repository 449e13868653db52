#include "KxAppSettings.h"

#include <QColor>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class tst_Settings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }

    void init()
    {
        KxAppSettings::setProfile(QString());
        KxAppSettings::setFileName(dir.filePath(QStringLiteral("case%1.ini").arg(++fileCount)));
    }

    void cleanup()
    {
        while (!KxAppSettings::group().isEmpty())
            KxAppSettings::endGroup();
    }

    void fileFromEnvironment()
    {
        const QString fromEnv = qEnvironmentVariable("OV_SETTINGS_FILE");
        if (fromEnv.isEmpty())
            QSKIP("run through ctest, which gives every test a settings file");
        KxAppSettings::setFileName(QString());
        QCOMPARE(KxAppSettings::fileName(), fromEnv);
    }

    void valueRoundTripAndFallback_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("int") << QVariant(7);
        QTest::newRow("string with separators") << QVariant(QStringLiteral("a/b = c; d"));
        QTest::newRow("size") << QVariant(QSize(180, 120));
        QTest::newRow("colour") << QVariant(QColor(10, 20, 30));
    }

    void valueRoundTripAndFallback()
    {
        QFETCH(QVariant, value);

        QCOMPARE(KxAppSettings::value(QStringLiteral("Key"), QStringLiteral("fallback")).toString(),
                 QStringLiteral("fallback"));
        QVERIFY(!KxAppSettings::value(QStringLiteral("Key")).isValid());
        KxAppSettings::setValue(QStringLiteral("Key"), value);
        QVERIFY(KxAppSettings::contains(QStringLiteral("Key")));

        // Through the file, as the next start of the application sees it.
        KxAppSettings::sync();
        const QString path = KxAppSettings::fileName();
        KxAppSettings::setFileName(dir.filePath(QStringLiteral("elsewhere.ini")));
        KxAppSettings::setFileName(path);
        QVariant read = KxAppSettings::value(QStringLiteral("Key"));
        QVERIFY(read.convert(value.userType()));
        QCOMPARE(read, value);

        KxAppSettings::remove(QStringLiteral("Key"));
        QCOMPARE(KxAppSettings::value(QStringLiteral("Key"), 3).toInt(), 3);
    }

    void groupsAndFullKeys()
    {
        QSignalSpy spy(KxAppSettings::getInstance(), &KxAppSettings::signalValueSet);
        KxAppSettings::setValue(QStringLiteral("ScalingFactor"), 1.5);
        KxAppSettings::beginGroup(QStringLiteral("Measurement"));
        KxAppSettings::setValue(QStringLiteral("LineWidth"), 3);
        QCOMPARE(KxAppSettings::value(QStringLiteral("LineWidth")).toInt(), 3);
        QVERIFY(!KxAppSettings::value(QStringLiteral("ScalingFactor")).isValid());
        KxAppSettings::beginGroup(QStringLiteral("Inner"));
        KxAppSettings::setValue(QStringLiteral("Deep"), QStringLiteral("x"));
        QCOMPARE(KxAppSettings::group(), QStringLiteral("Measurement/Inner"));
        KxAppSettings::endGroup();
        KxAppSettings::endGroup();
        // One too many is ignored.
        KxAppSettings::endGroup();

        QCOMPARE(KxAppSettings::value(QStringLiteral("Measurement/LineWidth")).toInt(), 3);
        QCOMPARE(KxAppSettings::value(QStringLiteral("Measurement/Inner/Deep")).toString(), QStringLiteral("x"));
        QStringList keys;
        for (const QList<QVariant>& args : spy)
            keys << args.at(0).toString();
        QCOMPARE(keys, QStringList({"ScalingFactor", "Measurement/LineWidth", "Measurement/Inner/Deep"}));
        QCOMPARE(spy.at(1).at(1).toInt(), 3);
    }

    void setValuesEmitsOnce()
    {
        QSignalSpy many(KxAppSettings::getInstance(), &KxAppSettings::signalValuesModified);
        QSignalSpy single(KxAppSettings::getInstance(), &KxAppSettings::signalValueSet);
        KxAppSettings::beginGroup(QStringLiteral("Measurement"));
        KxAppSettings::setValues({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("Unpaired")},
                                 {QVariant(1), QVariant(QStringLiteral("two"))});
        KxAppSettings::endGroup();

        QCOMPARE(single.count(), 0);
        QCOMPARE(many.count(), 1);
        QCOMPARE(many.at(0).at(0).toStringList(), QStringList({"Measurement/A", "Measurement/B"}));
        const auto values = many.at(0).at(1).value<QList<QVariant>>();
        QCOMPARE(values, QList<QVariant>({QVariant(1), QVariant(QStringLiteral("two"))}));
        QCOMPARE(KxAppSettings::value(QStringLiteral("Measurement/B")).toString(), QStringLiteral("two"));
        QVERIFY(!KxAppSettings::contains(QStringLiteral("Measurement/Unpaired")));
    }

    void garbageInFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("expected");

        // The callers' pattern: read with a default, convert, fall back to 99.
        QTest::newRow("letters for a number") << QByteArray("[Measurement]\nLineWidth=abc\n") << "Measurement/LineWidth"
                                              << 99;
        QTest::newRow("truncated variant") << QByteArray("[Measurement]\nColor=@Variant(\\0\\0\\0\\x43\\x1)\n")
                                           << "Measurement/Color" << 99;
        QTest::newRow("unterminated group still read") << QByteArray("[Measurement\nFontSize=12\n")
                                                       << "Measurement/FontSize" << 12;
        QTest::newRow("binary junk") << QByteArray("\x01\xff\xfe=\x00\x13\n[\n=\n", 12) << "Measurement/LineWidth"
                                     << 99;
        QTest::newRow("good value after junk") << QByteArray("junk line without equals\n[Measurement]\nFontSize=14\n")
                                               << "Measurement/FontSize" << 14;
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
        KxAppSettings::setFileName(file.fileName());
        bool ok = false;
        const int asInt = KxAppSettings::value(key, 99).toInt(&ok);
        QCOMPARE(ok ? asInt : 99, expected);
        // Writing on top of a garbled file works.
        KxAppSettings::setValue(key, 5);
        QCOMPARE(KxAppSettings::value(key).toInt(), 5);
    }

    void profileSwitch()
    {
        KxAppSettings::setValue(QStringLiteral("LineWidth"), 1);
        KxAppSettings::beginGroup(QStringLiteral("Open"));

        QStringList order;
        QObject scope;
        connect(KxAppSettings::getInstance(), &KxAppSettings::signalProfileAboutToChange, &scope, [&order]() {
            order << QStringLiteral("about:") + KxAppSettings::value(QStringLiteral("LineWidth")).toString();
        });
        connect(KxAppSettings::getInstance(), &KxAppSettings::signalProfileChanged, &scope, [&order]() {
            order << QStringLiteral("changed:") + KxAppSettings::value(QStringLiteral("LineWidth"), -1).toString();
        });

        KxAppSettings::setProfile(QStringLiteral("Lab"));
        QCOMPARE(KxAppSettings::profile(), QStringLiteral("Lab"));
        // The switch resets the group stack.
        QVERIFY(KxAppSettings::group().isEmpty());
        QVERIFY(KxAppSettings::fileName().endsWith(QStringLiteral(".Lab.ini")));
        KxAppSettings::setValue(QStringLiteral("LineWidth"), 4);
        KxAppSettings::setProfile(QStringLiteral("Lab"));
        KxAppSettings::setProfile(QString());
        QCOMPARE(KxAppSettings::value(QStringLiteral("LineWidth")).toInt(), 1);
        KxAppSettings::setProfile(QStringLiteral("Lab"));
        QCOMPARE(KxAppSettings::value(QStringLiteral("LineWidth")).toInt(), 4);

        // The old profile is still readable while "about to change"; the same
        // profile twice switches once.
        QCOMPARE(order, QStringList({"about:", "changed:-1", "about:4", "changed:1", "about:1", "changed:4"}));
    }

    void profileNameSanitized()
    {
        KxAppSettings::setProfile(QStringLiteral("../x y"));
        QCOMPARE(KxAppSettings::profile(), QStringLiteral("___x_y"));
        QVERIFY(KxAppSettings::fileName().startsWith(dir.path()));
        KxAppSettings::setValue(QStringLiteral("K"), 1);
        KxAppSettings::sync();
        QVERIFY(QFile::exists(KxAppSettings::fileName()));
    }


private:
    QTemporaryDir dir;
    int fileCount = 0;
};


QTEST_MAIN(tst_Settings)
#include "tst_settings.moc"
