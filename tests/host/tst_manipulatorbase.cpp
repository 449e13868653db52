#include "GsTestHelper.h"

#include "KxLocalMagnifier.h"

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
        TestGsItem* box = stored ? f.manip->addStored(QPointF(20, 30), QSizeF(10, 12))
                                 : f.manip->addUnstored(QPointF(20, 30), QSizeF(10, 12));
        const KxKernelObjectData::State before = stored ? storedBox()->getState() : KxKernelObjectData::State();
        QSignalSpy index(&f.stack, &QUndoStack::indexChanged);
        const bool expected = checkId >= 0;
        QCOMPARE(param.userType() == QMetaType::QString ? f.manip->setGsObjectParamValue(box, param.toString(), value)
                                                  : f.manip->setGsObjectParamValue(box, param.toUInt(), value),
                 expected);
        QCOMPARE(index.count(), expected ? 1 : 0);
        QCOMPARE(f.stack.count(), (stored ? 1 : 0) + index.count());
        if (!expected)
            return;
        QCOMPARE(storedBoxValue(checkId), value);
        // Only that parameter changed.
        KxKernelObjectData::State after = storedBox()->getState();
        after.defaults[checkId] = before.defaults[checkId];
        QVERIFY(after == before);
        f.stack.undo();
        QVERIFY(storedBox()->getState() == before);
        f.stack.redo();
        QCOMPARE(storedBoxValue(checkId), value);
    }

    void animatedObjectWrittenAtCurrentFrame()
    {
        GsFixture f;
        TestGsItem* box = f.manip->addStored(QPointF(20, 30), QSizeF(10, 12));
        f.manip->changeAnimationGsObject(box, true, false, false);
        QVERIFY(storedBox()->animated);
        KxKernelData::getInstance()->setCurrentFrame(10);
        QVERIFY(f.manip->setGsObjectParamValue(box, QStringLiteral("size"), QVariant(QSizeF(4, 5))));
        QCOMPARE(storedBoxValue(5, 5).toSizeF(), QSizeF(10, 12));
        QCOMPARE(storedBoxValue(5, 20).toSizeF(), QSizeF(4, 5));
        // Style parameters are constant: the same on every frame.
        QVERIFY(f.manip->setGsObjectParamValue(box, QStringLiteral("w"), QVariant(9)));
        QCOMPARE(storedBoxValue(6, 0).toInt(), 9);
        f.stack.undo();
        f.stack.undo();
        QCOMPARE(storedBoxValue(5, 10).toSizeF(), QSizeF(10, 12));
        QCOMPARE(storedBoxValue(6, 10).toInt(), 2);
    }

    void destroyedManipulatorTakesItsItems()
    {
        GsFixture f;
        TestManipulator* other = f.addManipulator(kOtherBoxType);
        f.manip->addStored(QPointF(20, 30), QSizeF(10, 12));
        f.manip->addUnstored(QPointF(60, 30), QSizeF(10, 12));
        TestGsItem* kept = other->addUnstored(QPointF(90, 30), QSizeF(10, 12));
        f.editor->setOverrideManipulator(f.manip);
        delete f.manip;
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
        f.editor->setOverrideManipulator(f.manip);
        const QPointF source(60.0, 40.0);
        f.manip->makeMagnifier(source, QSize(100, 100), scale, round, QPoint(70, 70));
        KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
        QVERIFY(lens && lens->isVisible());
        // It is not a measurement item and no child of the editor.
        QVERIFY(!qobject_cast<KxGsObject*>(lens) && !lens->parentItem());

        // The lens sits beside the cursor (at the source point), its centre the
        // hotspot away, and shows picture pixel p at source + d / (scale x zoom).
        const QImage shot = f.view->viewport()->grab().toImage();
        const QPoint centre = f.toViewport(source) + QPoint(70, 70);
        const QPointF picture = source + QPointF(offset) / (scale * zoom);
        const QRgb expected = f.editor->getImage().pixel(int(picture.x()), int(picture.y()));
        QCOMPARE(QColor(shot.pixel(centre + offset)), QColor(expected));
        QCOMPARE(QColor(lens->renderLens().pixel(QPoint(50, 50) + offset)), QColor(expected));

        // A press where the lens is drawn (over the picture) reaches the editor underneath.
        f.manip->log.clear();
        const QPoint onLens = centre - QPoint(30, 30);
        QTest::mouseClick(f.view->viewport(), Qt::LeftButton, Qt::NoModifier, onLens);
        const QPoint under = f.editor->mapFromScene(f.view->mapToScene(onLens)).toPoint();
        QCOMPARE(f.manip->gestures().value(0), QStringLiteral("press %1,%2").arg(under.x()).arg(under.y()));

        // Moved off the picture, the lens shows its edge and follows the cursor; too small a lens is raised.
        QPointF pos(-15, 400);
        KxGsManipulator::updateLocalMagnifier(pos, QPointF(5, 6), QSize(2, 3));
        QCOMPARE(pos, QPointF(0, 150));
        QVERIFY(lens->getSourcePos() == pos && lens->pos() == QPointF(5, 6) && lens->getLensSize() == QSize(16, 16));
        // The lens keeps its size on screen whatever the zoom (a frame added).
        f.editor->setZoom(3.0);
        KxGsManipulator::updateLocalMagnifier(pos, QPointF(5, 6), QSize(60, 60));
        QVERIFY(qAbs(lens->deviceTransform(f.view->viewportTransform()).mapRect(lens->boundingRect()).width() - 64) <= 2);

        KxGsManipulator::showLocalMagnifier(false);
        QVERIFY(!lens->isVisible());
        f.manip->dropMagnifier();
        QVERIFY(!KxGsManipulator::isLocalMagnifier());
        // Without a magnifier showing and moving it do nothing.
        KxGsManipulator::showLocalMagnifier(true);
        QPointF nowhere(1, 1);
        KxGsManipulator::updateLocalMagnifier(nowhere, QPointF(), QSize(-1, -1));
    }
};

QTEST_MAIN(tst_ManipulatorBase)
#include "tst_manipulatorbase.moc"
