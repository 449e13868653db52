#include "GsTestHelper.h"

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxLocalMagnifier.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const int kBoxType = 71001;
const int kOtherType = 71002;

const KxKernelObjectData* object(int anIdx = 1)
{
    return KxKernelData::getInstance()->getObject(kBoxType, anIdx);
}

QVariant storedValue(int anId, qint64 aFrame = 0)
{
    return object() ? object()->getKeyframesAt(aFrame)[anId].getValue() : QVariant();
}

} // namespace

class tst_ManipulatorBase : public QObject
{
    Q_OBJECT

private slots:
    void setParamValue_data()
    {
        // The parameter by name (a string) or by id (a number).
        QTest::addColumn<QVariant>("param");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("stored");
        QTest::addColumn<int>("checkId");

        QTest::newRow("colour by id") << QVariant(1) << QVariant(QColor(Qt::red)) << true << 1;
        QTest::newRow("width by name") << QVariant("w") << QVariant(7) << true << 6;
        QTest::newRow("size by name") << QVariant("size") << QVariant(QSizeF(3, 4)) << true << 5;
        QTest::newRow("unknown name") << QVariant("nope") << QVariant(1) << true << -1;
        QTest::newRow("name case differs") << QVariant("W") << QVariant(1) << true << -1;
        QTest::newRow("id out of range") << QVariant(99) << QVariant(1) << true << -1;
        QTest::newRow("item not stored") << QVariant("w") << QVariant(5) << false << -1;
    }

    void setParamValue()
    {
        QFETCH(QVariant, param);
        QFETCH(QVariant, value);
        QFETCH(bool, stored);
        QFETCH(int, checkId);

        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        TestGsItem* box = stored ? manip->addStored(QPointF(20, 30), QSizeF(10, 12))
                                 : manip->addUnstored(QPointF(20, 30), QSizeF(10, 12));
        QVERIFY(box);
        const KxKernelObjectData::State before = stored ? object()->getState() : KxKernelObjectData::State();
        const int count = f.stack.count();
        QSignalSpy index(&f.stack, &QUndoStack::indexChanged);

        const bool expected = checkId >= 0;
        QCOMPARE(param.type() == QVariant::String ? manip->setGsObjectParamValue(box, param.toString(), value)
                                                  : manip->setGsObjectParamValue(box, param.toUInt(), value),
                 expected);
        QCOMPARE(f.stack.count(), count + (expected ? 1 : 0));
        QCOMPARE(index.count(), expected ? 1 : 0);
        if (!expected)
            return;
        QCOMPARE(storedValue(checkId), value);
        // Only that parameter changed.
        KxKernelObjectData::State after = object()->getState();
        after.defaults[checkId] = before.defaults[checkId];
        QVERIFY(after == before);
        f.stack.undo();
        QVERIFY(object()->getState() == before);
        f.stack.redo();
        QCOMPARE(storedValue(checkId), value);
    }

    void animatedObjectWrittenAtCurrentFrame_data()
    {
        QTest::addColumn<bool>("animated");
        QTest::addColumn<QSizeF>("at5");
        QTest::addColumn<QSizeF>("at10");
        QTest::addColumn<QSizeF>("at20");

        QTest::newRow("animated: from frame 10 on") << true << QSizeF(10, 12) << QSizeF(4, 5) << QSizeF(4, 5);
        QTest::newRow("still: every frame") << false << QSizeF(4, 5) << QSizeF(4, 5) << QSizeF(4, 5);
    }

    void animatedObjectWrittenAtCurrentFrame()
    {
        QFETCH(bool, animated);
        QFETCH(QSizeF, at5);
        QFETCH(QSizeF, at10);
        QFETCH(QSizeF, at20);

        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        TestGsItem* box = manip->addStored(QPointF(20, 30), QSizeF(10, 12));
        manip->changeAnimationGsObject(box, animated, false, false);
        QCOMPARE(object()->animated, animated);
        KxKernelData::getInstance()->setCurrentFrame(10);

        QVERIFY(manip->setGsObjectParamValue(box, QStringLiteral("size"), QVariant(QSizeF(4, 5))));
        QCOMPARE(storedValue(5, 5).toSizeF(), at5);
        QCOMPARE(storedValue(5, 10).toSizeF(), at10);
        QCOMPARE(storedValue(5, 20).toSizeF(), at20);
        // Style parameters are constant: the same on every frame either way.
        QVERIFY(manip->setGsObjectParamValue(box, QStringLiteral("w"), QVariant(9)));
        QCOMPARE(storedValue(6, 0).toInt(), 9);
        QCOMPARE(storedValue(6, 30).toInt(), 9);

        f.stack.undo();
        f.stack.undo();
        QCOMPARE(storedValue(5, 10).toSizeF(), QSizeF(10, 12));
        QCOMPARE(storedValue(6, 10).toInt(), 2);
    }

    void removeStoredAndUnstored()
    {
        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        TestGsItem* box = manip->addStored(QPointF(20, 30), QSizeF(10, 12));
        TestGsItem* loose = manip->addUnstored(QPointF(60, 30), QSizeF(10, 12));
        QPointer<TestGsItem> looseGuard(loose);
        const int count = f.stack.count();

        // Not stored: gone at once, nothing to undo.
        f.editor->setCurrentObject(loose, false);
        manip->contextRemoveGsObject(loose);
        QVERIFY(!f.editor->getCurrentObject());
        QVERIFY(!f.editor->isGsObjectFound(loose));
        QCOMPARE(f.stack.count(), count);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(looseGuard.isNull());

        // Stored: an undoable removal; the item goes with the kernel object.
        f.editor->setCurrentObject(box, false);
        manip->removeGsObject(box);
        QCOMPARE(f.stack.count(), count + 1);
        QVERIFY(!object());
        QVERIFY(!manip->getGsObject(1));
        QVERIFY(!f.editor->getCurrentObject());
        QVERIFY(f.editor->getAllChildGsObjects().isEmpty());
        f.stack.undo();
        QVERIFY(object());
        QVERIFY(manip->item(1));
        QCOMPARE(manip->item(1)->getSize(), QSizeF(10, 12));
        // Removing twice in a row is harmless.
        TestGsItem* again = manip->item(1);
        manip->removeGsObject(again);
        manip->removeGsObject(again);
        QCOMPARE(f.stack.count(), count + 1);
    }

    void displayValue_data()
    {
        QTest::addColumn<QString>("valueName");
        QTest::addColumn<bool>("store");
        QTest::addColumn<QString>("expectedValue");
        QTest::addColumn<QString>("expectedName");
        QTest::addColumn<QString>("expectedLabel");

        QTest::newRow("area, stored") << "Area" << true << "120 px2" << "Area" << "Box 1: 120 px2";
        QTest::newRow("width, stored") << "Width" << true << "10 px" << "Width" << "Box 1: 10 px";
        QTest::newRow("width, not stored") << "Width" << false << "10 px" << "Area" << "Box 1: 10 px";
        QTest::newRow("unknown value") << "Volume" << true << "" << "Volume" << "Box 1";
    }

    void displayValue()
    {
        QFETCH(QString, valueName);
        QFETCH(bool, store);
        QFETCH(QString, expectedValue);
        QFETCH(QString, expectedName);
        QFETCH(QString, expectedLabel);

        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        TestGsItem* box = manip->addStored(QPointF(20, 30), QSizeF(10, 12));
        QCOMPARE(manip->getValueNameToDisplay(box), QStringLiteral("Area"));
        manip->updateDisplayValue(box, valueName, store, true);
        QCOMPARE(box->getDisplayValue(), expectedValue);
        QCOMPARE(manip->getValueNameToDisplay(box), expectedName);
        QCOMPARE(box->getLabelText(), expectedLabel);
        manip->updateDisplayValue(nullptr, valueName, store, true);
    }

    void kernelValueText()
    {
        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        manip->addStored(QPointF(20, 30), QSizeF(2.5, 4));
        const KxKernelObjectData* data = object();
        QCOMPARE(manip->getCalculatedValueAsString("Area", data), QStringLiteral("10 px2"));
        QCOMPARE(manip->getCalculatedValueAsString("Width", data), QStringLiteral("2.5 px"));
        QCOMPARE(manip->getCalculatedValueAsString("Depth", data), QString());
        QCOMPARE(manip->getCalculatedValueAsString("Area", static_cast<const KxKernelObjectData*>(nullptr)), QString());
    }

    void frameReadyReachesDerivedSlot()
    {
        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        KxKernelData::getInstance()->setCurrentFrame(7);
        KxKernelData::getInstance()->setCurrentFrame(9);
        QCOMPARE(manip->frames, QList<qint64>({7, 9}));
    }

    void destroyedManipulatorTakesItsItems()
    {
        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        TestManipulator* other = f.addManipulator(kOtherType);
        manip->addStored(QPointF(20, 30), QSizeF(10, 12));
        manip->addUnstored(QPointF(60, 30), QSizeF(10, 12));
        TestGsItem* kept = other->addUnstored(QPointF(90, 30), QSizeF(10, 12));
        f.editor->setOverrideManipulator(manip);
        delete manip;
        QVERIFY(!f.editor->getOverrideManipulator());
        QCOMPARE(f.editor->getAllChildGsObjects(), QList<KxGsObject*>({kept}));
        // Presses on the picture after that reach nobody and break nothing.
        f.click(QPointF(25, 35));
    }

    void magnifierShowsEnlargedPicture_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<double>("scale");
        QTest::addColumn<bool>("round");
        QTest::addColumn<QPoint>("offset");

        QTest::newRow("zoom 1, x4, square") << 1.0 << 4.0 << false << QPoint(10, 6);
        QTest::newRow("zoom 1, x2, round") << 1.0 << 2.0 << true << QPoint(-14, 9);
        QTest::newRow("zoom 2, x2, square") << 2.0 << 2.0 << false << QPoint(18, -10);
        QTest::newRow("zoom 0.5, x8, round") << 0.5 << 8.0 << true << QPoint(-6, -20);
    }

    void magnifierShowsEnlargedPicture()
    {
        QFETCH(double, zoom);
        QFETCH(double, scale);
        QFETCH(bool, round);
        QFETCH(QPoint, offset);

        GsFixture f;
        f.editor->setZoom(zoom);
        TestManipulator* manip = f.addManipulator(kBoxType);
        const QPointF source(60.0, 40.0);
        manip->makeMagnifier(source, QSize(100, 100), scale, round, QPoint(70, 70));
        KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
        QVERIFY(lens);
        QVERIFY(KxGsManipulator::isLocalMagnifier());
        QVERIFY(lens->isVisible());
        QCOMPARE(lens->getSourcePos(), source);
        // The lens sits beside the cursor (at the source point), its centre the
        // hotspot away, and shows picture pixel p at source + d / (scale x zoom).
        const QImage shot = f.view->viewport()->grab().toImage();
        const QPoint centre = f.toViewport(source) + QPoint(70, 70);
        const QPointF picture = source + QPointF(offset) / (scale * zoom);
        const QRgb expected = f.editor->getImage().pixel(int(picture.x()), int(picture.y()));
        QCOMPARE(QColor(shot.pixel(centre + offset)), QColor(expected));
        // Without enlargement the same screen offset would show another pixel.
        const QPointF plain = source + QPointF(offset) / zoom;
        QVERIFY(f.editor->getImage().pixel(int(plain.x()), int(plain.y())) != expected);

        const QImage lensImage = lens->renderLens();
        QCOMPARE(lensImage.size(), QSize(100, 100));
        QCOMPARE(QColor(lensImage.pixel(QPoint(50, 50) + offset)), QColor(expected));

        KxGsManipulator::showLocalMagnifier(false);
        QVERIFY(!lens->isVisible());
        KxGsManipulator::showLocalMagnifier(true);
        QVERIFY(lens->isVisible());
        manip->dropMagnifier();
        QVERIFY(!KxGsManipulator::isLocalMagnifier());
        QVERIFY(!KxGsManipulator::localMagnifier());
        KxGsManipulator::showLocalMagnifier(true);
        QPointF nowhere(1, 1);
        KxGsManipulator::updateLocalMagnifier(nowhere, QPointF(), QSize(-1, -1));
    }

    void magnifierClampsAndFollows_data()
    {
        QTest::addColumn<QPointF>("requested");
        QTest::addColumn<QPointF>("expected");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("expectedSize");

        QTest::newRow("inside") << QPointF(30, 40) << QPointF(30, 40) << QSize(-1, -1) << QSize(120, 80);
        QTest::newRow("left of picture") << QPointF(-15, 40) << QPointF(0, 40) << QSize(-1, -1) << QSize(120, 80);
        QTest::newRow("below right") << QPointF(250, 400) << QPointF(200, 150) << QSize(60, 60) << QSize(60, 60);
        QTest::newRow("tiny lens raised") << QPointF(10, 10) << QPointF(10, 10) << QSize(2, 3) << QSize(16, 16);
    }

    void magnifierClampsAndFollows()
    {
        QFETCH(QPointF, requested);
        QFETCH(QPointF, expected);
        QFETCH(QSize, size);
        QFETCH(QSize, expectedSize);

        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        manip->makeMagnifier(QPointF(100, 75), QSize(120, 80), 2.0, true, QPoint(80, 60));
        QPointF pos = requested;
        const QPointF scenePos = f.editor->mapToScene(requested);
        KxGsManipulator::updateLocalMagnifier(pos, scenePos, size);
        QCOMPARE(pos, expected);
        KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
        QCOMPARE(lens->getSourcePos(), expected);
        QCOMPARE(lens->pos(), scenePos);
        QCOMPARE(lens->getLensSize(), expectedSize);
    }

    void magnifierStaysConstantOnScreen()
    {
        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        manip->makeMagnifier(QPointF(50, 50), QSize(90, 70), 2.0, false, QPoint(60, 50));
        KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
        const QRect atOne = f.view->mapFromScene(lens->sceneBoundingRect()).boundingRect();
        f.editor->setZoom(3.0);
        QPointF pos(50, 50);
        KxGsManipulator::updateLocalMagnifier(pos, f.editor->mapToScene(pos), QSize(-1, -1));
        const QRect atThree = f.view->mapFromScene(lens->sceneBoundingRect()).boundingRect();
        QCOMPARE(atThree.size(), atOne.size());
        QVERIFY(qAbs(atOne.width() - 94) <= 2);
        // It is not a measurement item and no child of the editor.
        QVERIFY(!qobject_cast<KxGsObject*>(lens));
        QVERIFY(lens->parentItem() == nullptr);
    }

    void magnifierTakesNoMouse()
    {
        GsFixture f;
        TestManipulator* manip = f.addManipulator(kBoxType);
        f.editor->setOverrideManipulator(manip);
        manip->makeMagnifier(QPointF(20, 20), QSize(100, 100), 2.0, false, QPoint(60, 60));
        manip->log.clear();
        // A press where the lens is drawn reaches the editor underneath.
        const QPoint onLens = f.toViewport(QPointF(20, 20)) + QPoint(60, 60);
        QTest::mouseClick(f.view->viewport(), Qt::LeftButton, Qt::NoModifier, onLens);
        const QPointF expected = f.editor->mapFromScene(f.view->mapToScene(onLens));
        QCOMPARE(manip->log.filter(QRegularExpression("^press")),
                 QStringList({QStringLiteral("press %1,%2").arg(qRound(expected.x())).arg(qRound(expected.y()))}));
    }

};


QTEST_MAIN(tst_ManipulatorBase)
#include "tst_manipulatorbase.moc"
