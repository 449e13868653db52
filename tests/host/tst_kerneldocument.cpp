// The store written as a document and read back: exact round trips, and
// every bad file refused with a message before the store is touched.
#include "GsTestHelper.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "KxKernelDocument.h"
#include "KxKernelObjectDataDescr.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPolygonF>

namespace {

// Two boxes: 1 plain, 2 animated with key frames at frames 3 and 7 (one of
// them only moving it), and a third with values of every written type.
void fillStore(QUndoStack& aStack)
{
    aStack.push(new CmdCreateObject(kBoxType, 1, newBoxData(kBoxType)));
    aStack.push(new CmdCreateObject(kBoxType, 2, newBoxData(kBoxType, true, QPoint(-5, 7), QSizeF(0.25, 1e-9))));
    aStack.push(new CmdChangeObject(kBoxType, 2, keyframes(3, { { 3, QPoint(40, 41) }, { 5, QSizeF(8, 9) } }), false));
    aStack.push(new CmdChangeObject(kBoxType, 2, keyframes(7, { { 3, QPoint(70, 71) } }), false));
    KxKernelObjectData* odd = newBoxData(kBoxType);
    KxParamKeyframeVector values = odd->getDefaultKeyframes();
    values[1].setValue(QColor(1, 2, 3, 4));
    values[2].setValue(QString::fromUtf8("Fläche, \"quoted\"\n"));
    values[4].clear();
    odd->update(values);
    aStack.push(new CmdCreateObject(kBoxType, 9, odd));
}

QMap<int, KxKernelObjectData::State> storedStates()
{
    QMap<int, KxKernelObjectData::State> states;
    const QMap<int, KxKernelObjectData*> boxes = KxKernelData::getInstance()->getObjectsOfType(kBoxType);
    for (auto it = boxes.cbegin(); it != boxes.cend(); ++it)
        states.insert(it.key(), it.value()->getState());
    return states;
}

QByteArray edited(const QByteArray& aJson, const std::function<void(QJsonObject&)>& anEdit)
{
    QJsonObject root = QJsonDocument::fromJson(aJson).object();
    anEdit(root);
    return QJsonDocument(root).toJson();
}

} // namespace

class tst_KernelDocument : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        KxKernelData::getInstance()->removeAllObjects();
    }

    void roundTripRebuildsEveryObject()
    {
        GsFixture f;
        KxKernelData* kernel = KxKernelData::getInstance();
        kernel->setMediaCalibration(0.125);
        kernel->setCurrentImageSize(QSize(200, 150));
        fillStore(f.stack);
        const QMap<int, KxKernelObjectData::State> before = storedStates();
        const QByteArray json = KxKernelDocument::fromStore().toJson();

        kernel->removeAllObjects();
        QVERIFY(!f.manip->item(2));
        KxKernelDocument document;
        QString error;
        QVERIFY2(document.fromJson(json, &error), qPrintable(error));
        QCOMPARE(document.umPerPixel, 0.125);
        QCOMPARE(document.imageSize, QSize(200, 150));
        QCOMPARE(document.objects.size(), 3);
        document.applyToStore();

        QCOMPARE(storedStates().keys(), before.keys());
        for (int idx : before.keys())
            QVERIFY2(storedStates().value(idx) == before.value(idx), qPrintable(QString::number(idx)));
        // Each object came back through the store's notifications.
        QVERIFY(f.manip->item(1) && f.manip->item(2) && f.manip->item(9));
        QCOMPARE(f.manip->item(2)->pos(), QPointF(-5, 7));
        kernel->setCurrentFrame(5);
        QCOMPARE(storedBoxValue(3, 5, 2), QVariant(QPoint(40, 41)));
        QCOMPARE(storedBoxValue(3, 8, 2), QVariant(QPoint(70, 71)));
        kernel->setCurrentFrame(0);
        // Written again, the document is the same text.
        QCOMPARE(KxKernelDocument::fromStore().toJson(), json);
    }

    // Calibrations and positions are doubles: every bit comes back.
    void doublesComeBackExactly_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("0.1") << 0.1;
        QTest::newRow("a third") << 1.0 / 3.0;
        QTest::newRow("0.1 + 0.2") << 0.1 + 0.2;
        QTest::newRow("tiny") << 1e-300;
        QTest::newRow("smallest subnormal") << 5e-324;
        QTest::newRow("17 digits") << 123456789.12345679;
        QTest::newRow("huge") << 1.7976931348623157e308;
    }

    void doublesComeBackExactly()
    {
        QFETCH(double, value);
        GsFixture f;
        KxKernelData::getInstance()->setMediaCalibration(value);
        KxKernelDocument document;
        QString error;
        QVERIFY2(document.fromJson(KxKernelDocument::fromStore().toJson(), &error), qPrintable(error));
        QCOMPARE(QByteArray::number(document.umPerPixel, 'g', 17), QByteArray::number(value, 'g', 17));
        QVERIFY(document.umPerPixel == value);
    }

    // A file written before a type gained parameters has fewer values: it
    // opens, the missing parameters unset, the others as written.
    void shorterVectorsOpenWithMissingValuesUnset()
    {
        GsFixture f;
        f.stack.push(new CmdCreateObject(kBoxType, 4, newBoxData(kBoxType, false, QPoint(12, 13))));
        QJsonObject root = QJsonDocument::fromJson(KxKernelDocument::fromStore().toJson()).object();
        QJsonArray objects = root["objects"].toArray();
        QJsonObject box = objects[0].toObject();
        QJsonArray values = box["defaults"].toArray();
        const int count = values.size();
        values.removeLast();
        box["defaults"] = values;
        objects[0] = box;
        root["objects"] = objects;

        KxKernelData::getInstance()->removeAllObjects();
        KxKernelDocument document;
        QString error;
        QVERIFY2(document.fromJson(QJsonDocument(root).toJson(), &error), qPrintable(error));
        document.applyToStore();
        const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(kBoxType, 4);
        QVERIFY(data);
        const KxParamKeyframeVector stored = data->getDefaultKeyframes();
        QCOMPARE(stored.size(), count);
        QCOMPARE(stored[3].getValue(), QVariant(QPoint(12, 13)));
        QVERIFY(!stored[count - 1].getValue().isValid());
    }

    void badFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("message");

        GsFixture f;
        fillStore(f.stack);
        const QByteArray good = KxKernelDocument::fromStore().toJson();
        KxKernelData::getInstance()->removeAllObjects();

        QTest::newRow("empty") << QByteArray() << "not a measurement file";
        QTest::newRow("truncated") << good.left(good.size() / 2) << "not a measurement file (";
        QTest::newRow("a comma missing") << QByteArray("{\"format\": \"ovmeasurements\" \"version\": 1}")
                                         << "not a measurement file (Missing a comma or '}' after an object member at byte 28)";
        QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n", 8) << "not a measurement file (";
        QTest::newRow("a JSON array") << QByteArray("[1, 2]") << "not a measurement file";
        QTest::newRow("nested a million deep") << QByteArray(1000000, '[') << "not a measurement file (";
        QTest::newRow("not UTF-8") << QByteArray(good).replace("\"ovmeasurements\"", "\"ov\xff\xfe\"")
                                   << "not a measurement file (";
        QTest::newRow("text after the document") << good + "x" << "not a measurement file (";
        QTest::newRow("a number too large") << QByteArray(good).replace("\"version\": 1", "\"version\": 1e999")
                                            << "not a measurement file (";
        QTest::newRow("other format") << edited(good, [](QJsonObject& r) { r["format"] = "csv"; })
                                      << "not a measurement file";
        QTest::newRow("newer version") << edited(good, [](QJsonObject& r) { r["version"] = 2; })
                                       << "newer version (format 2; this viewer reads 1)";
        QTest::newRow("version missing") << edited(good, [](QJsonObject& r) { r.remove("version"); })
                                         << "no valid version";
        QTest::newRow("negative width") << edited(good, [](QJsonObject& r) { r["width"] = -1; })
                                        << "picture size or calibration";
        QTest::newRow("calibration text") << edited(good, [](QJsonObject& r) { r["umPerPixel"] = "0.5"; })
                                          << "picture size or calibration";
        QTest::newRow("no objects") << edited(good, [](QJsonObject& r) { r.remove("objects"); })
                                    << "no list of measurements";
        const auto object = [&](const std::function<void(QJsonObject&)>& anEdit) {
            return edited(good, [&](QJsonObject& r) {
                QJsonArray objects = r["objects"].toArray();
                QJsonObject first = objects.at(0).toObject();
                anEdit(first);
                objects[0] = first;
                r["objects"] = objects;
            });
        };
        QTest::newRow("unknown type") << object([](QJsonObject& o) { o["type"] = 12345; })
                                      << "measurement 1 is of type 12345, which no loaded tool knows";
        QTest::newRow("index 0") << object([](QJsonObject& o) { o["index"] = 0; }) << "no valid type and index";
        QTest::newRow("repeated index") << object([](QJsonObject& o) { o["index"] = 2; })
                                        << "measurement 2 repeats type 70001 index 2";
        QTest::newRow("a value too many") << object([](QJsonObject& o) {
            QJsonArray values = o["defaults"].toArray();
            values.append(QJsonValue::Null);
            o["defaults"] = values;
        }) << "measurement 1 has invalid values";
        QTest::newRow("no values") << object([](QJsonObject& o) { o["defaults"] = QJsonArray(); })
                                   << "measurement 1 has invalid values";
        QTest::newRow("a point as text") << object([](QJsonObject& o) {
            QJsonArray values = o["defaults"].toArray();
            values[3] = QJsonObject{ { "t", "QPoint" }, { "v", "10,20" } };
            o["defaults"] = values;
        }) << "measurement 1 has invalid values";
        QTest::newRow("unknown value type") << object([](QJsonObject& o) {
            QJsonArray values = o["defaults"].toArray();
            values[0] = QJsonObject{ { "t", "QImage" }, { "v", "" } };
            o["defaults"] = values;
        }) << "measurement 1 has invalid values";
        QTest::newRow("negative frame") << object([](QJsonObject& o) {
            o["frames"] = QJsonArray{ QJsonObject{ { "frame", -3 }, { "values", o["defaults"] } } };
        }) << "measurement 1 has an invalid frame";
    }

    void badFilesAreRefused()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, message);
        GsFixture f;
        f.stack.push(new CmdCreateObject(kBoxType, 4, newBoxData(kBoxType)));
        const QMap<int, KxKernelObjectData::State> before = storedStates();

        KxKernelDocument document;
        document.picture = QStringLiteral("kept.png");
        QString error;
        QVERIFY(!document.fromJson(json, &error));
        QVERIFY2(error.contains(message), qPrintable(error));
        QCOMPARE(document.picture, QStringLiteral("kept.png"));
        QVERIFY(storedStates() == before);
    }
};

QTEST_MAIN(tst_KernelDocument)
#include "tst_kerneldocument.moc"
