#include "GsTestHelper.h"

#include "KxView.h"

#include <cmath>

class tst_Editor : public QObject
{
    Q_OBJECT

private slots:
    void dragStoredItemWritesPositionUndoably_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPoint>("origin");
        QTest::addColumn<QPoint>("drag");
        QTest::addColumn<QPointF>("expectedPos");

        QTest::newRow("zoom 1") << 1.0 << QPoint() << QPoint(20, 10) << QPointF(70, 60);
        QTest::newRow("zoom 2 halves the move") << 2.0 << QPoint() << QPoint(20, 10) << QPointF(60, 55);
        QTest::newRow("origin added when stored") << 1.0 << QPoint(100, -40) << QPoint(-30, 5) << QPointF(20, 55);
        QTest::newRow("click without move writes nothing") << 1.0 << QPoint() << QPoint() << QPointF(50, 50);
    }

    void dragStoredItemWritesPositionUndoably()
    {
        QFETCH(double, zoom);
        QFETCH(QPoint, origin);
        QFETCH(QPoint, drag);
        QFETCH(QPointF, expectedPos);

        GsFixture f;
        f.editor->getView()->setOrigin(origin);
        f.editor->setZoom(zoom);
        TestGsItem* box = f.manip->addStored(QPointF(50, 50), QSizeF(40, 30));
        f.editor->setOverrideManipulator(f.manip);
        f.manip->log.clear();

        // Below the label, which sits at the box's corner.
        const QPoint start = f.toViewport(QPointF(80, 76));
        bool grabbed = false;
        f.drag(start, start + drag, [&]() { grabbed = f.editor->getMouseGrabberObject() == box; });
        QVERIFY(grabbed && !f.editor->getMouseGrabberObject());
        // The whole gesture went to the item, none of it to the manipulator,
        // and a move is no change of shape.
        QVERIFY(f.manip->gestures().isEmpty());
        QCOMPARE(box->calls.filter("press").size(), 1);
        QVERIFY(f.manip->log.filter("changedShape").isEmpty());
        QCOMPARE(f.currentChanges, QList<const KxGsObject*>({box}));
        QCOMPARE(box->pos(), expectedPos);
        QCOMPARE(storedBoxValue(3).toPoint(), expectedPos.toPoint() + origin);
        QCOMPARE(f.stack.count(), drag.isNull() ? 1 : 2);
        if (drag.isNull())
            return;
        f.stack.undo();
        QCOMPARE(storedBoxValue(3).toPoint(), QPoint(50, 50) + origin);
        QCOMPARE(box->pos(), QPointF(50, 50));
        f.stack.redo();
        QCOMPARE(box->pos(), expectedPos);
    }

    void pressOnEmptyPictureGoesToManipulator_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPointF>("editorPos");
        QTest::addColumn<bool>("unstoredUnder");

        QTest::newRow("zoom 2") << 2.0 << QPointF(120, 80) << false;
        QTest::newRow("zoom 0.5") << 0.5 << QPointF(150, 100) << false;
        QTest::newRow("an unstored item does not steal the press") << 1.0 << QPointF(60, 60) << true;
    }

    void pressOnEmptyPictureGoesToManipulator()
    {
        QFETCH(double, zoom);
        QFETCH(QPointF, editorPos);
        QFETCH(bool, unstoredUnder);

        GsFixture f;
        f.editor->setZoom(zoom);
        TestGsItem* box = f.manip->addStored(QPointF(10, 10), QSizeF(20, 20));
        TestGsItem* gesture = unstoredUnder ? f.manip->addUnstored(editorPos - QPointF(10, 10), QSizeF(40, 30)) : box;
        f.editor->setOverrideManipulator(f.manip);
        f.manip->log.clear();

        const QPoint at = f.toViewport(editorPos);
        f.drag(at, at + QPoint(4, 6));
        const QPointF end = editorPos + QPointF(4, 6) / zoom;
        const QString endText = QStringLiteral("%1,%2").arg(qRound(end.x())).arg(qRound(end.y()));
        const QStringList gestures = f.manip->gestures();
        QCOMPARE(gestures.value(0), QStringLiteral("press %1,%2").arg(editorPos.x()).arg(editorPos.y()));
        QVERIFY(gestures.contains("move " + endText) && gestures.last() == "release " + endText);
        // An unstored item under the press is not offered it, and a stored
        // item away from it is not asked at all (presses cost the same
        // however many measurements are stored).
        QCOMPARE(box->calls.filter("press").size(), 0);
        QCOMPARE(gesture->calls.filter("press").size(), 0);
        QVERIFY(!f.editor->getCurrentObject());
    }

    void selectionAndCurrentObject()
    {
        GsFixture f;
        TestGsItem* a = f.manip->addStored(QPointF(10, 10), QSizeF(20, 20));
        TestGsItem* b = f.manip->addStored(QPointF(100, 10), QSizeF(20, 20));
        TestGsItem* c = f.manip->addStored(QPointF(100, 100), QSizeF(20, 20));

        f.click(QPointF(15, 15));
        f.click(QPointF(105, 15), Qt::ControlModifier);
        QCOMPARE(f.editor->getSelectedObjects(), QList<KxGsObject*>({a, b}));
        QVERIFY(a->isSelected() && !a->isCurrent() && b->isCurrent() && !c->isSelected());
        f.click(QPointF(105, 105));
        QCOMPARE(f.editor->getSelectedObjects(), QList<KxGsObject*>({c}));
        // Without an override manipulator a press on the bare picture clears.
        f.click(QPointF(150, 60));
        QVERIFY(f.editor->getSelectedObjects().isEmpty() && !c->isSelected() && !c->isCurrent());
        // Setting the current object again announces nothing.
        f.editor->setCurrentObject(a, false);
        f.editor->setCurrentObject(a, false);
        f.editor->setCurrentObject(nullptr, false);
        f.editor->setCurrentObject(nullptr, false);
        QCOMPARE(f.currentChanges, QList<const KxGsObject*>({a, b, c, nullptr, a, nullptr}));

        // An item deleted while current leaves no dangling current object.
        TestGsItem* gesture = f.manip->addUnstored(QPointF(90, 90), QSizeF(5, 5));
        f.editor->setCurrentObject(gesture, false);
        delete gesture;
        QVERIFY(!f.editor->getCurrentObject() && f.editor->getSelectedObjects().isEmpty());
    }

    void hiddenItemLetsPressThrough()
    {
        GsFixture f;
        TestGsItem* below = f.manip->addStored(QPointF(40, 40), QSizeF(60, 60));
        TestGsItem* above = f.manip->addStored(QPointF(50, 50), QSizeF(20, 20));
        above->setAlwaysHidden(true);
        f.click(QPointF(60, 60));
        QVERIFY(f.editor->getCurrentObject() == below);
        // The current object is offered the press first, whatever lies above.
        above->setAlwaysHidden(false);
        f.click(QPointF(60, 60));
        QVERIFY(f.editor->getCurrentObject() == below);
        // Otherwise the topmost item wins.
        below->setZValue(1.0);
        f.editor->setCurrentObject(nullptr, false);
        f.click(QPointF(60, 60));
        QVERIFY(f.editor->getCurrentObject() == below);
    }

    void trashPressRemovesItemDuringItsOwnPress()
    {
        GsFixture f;
        TestGsItem* box = f.manip->addStored(QPointF(50, 50), QSizeF(40, 30));
        f.editor->setOverrideManipulator(f.manip);
        f.editor->setCurrentObject(box, false);
        box->setTrashPos(QPointF(50, 0));
        QVERIFY(box->getTrashButton()->isVisible());
        QPointer<TestGsItem> guard(box);
        f.manip->log.clear();

        const QPoint trash = f.toViewport(QPointF(105, 55));
        f.drag(trash, trash + QPoint(5, 5));
        // The rest of the gesture belonged to the removed item: nobody gets it.
        QVERIFY(f.manip->gestures().isEmpty());
        QVERIFY(!storedBox());
        QVERIFY(!f.manip->item(1) && !f.editor->getCurrentObject() && f.editor->getAllChildGsObjects().isEmpty());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(guard.isNull());
        f.stack.undo();
        QCOMPARE(f.manip->item(1)->pos(), QPointF(50, 50));
        QCOMPARE(f.editor->getAllChildGsObjects().size(), 1);

        // Removed twice in a row: one step. Not stored: gone at once, nothing to undo.
        TestGsItem* again = f.manip->item(1);
        f.manip->removeGsObject(again);
        f.manip->removeGsObject(again);
        guard = f.manip->addUnstored(QPointF(150, 100), QSizeF(10, 12));
        f.editor->setCurrentObject(guard, false);
        f.manip->contextRemoveGsObject(guard);
        QVERIFY(!f.editor->getCurrentObject());
        QVERIFY(f.stack.count() == 2 && f.stack.index() == 2);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(guard.isNull() && f.editor->getAllChildGsObjects().isEmpty());
    }

    void deleteKeyRemovesSelected_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("undoText");

        QTest::newRow("delete, two selected") << int(Qt::Key_Delete) << 2 << "Delete measurements";
        QTest::newRow("backspace, three selected") << int(Qt::Key_Backspace) << 3 << "Delete measurements";
        QTest::newRow("delete, one selected") << int(Qt::Key_Delete) << 1 << "Delete Box 1";
        QTest::newRow("delete, none selected") << int(Qt::Key_Delete) << 0 << "Add Box 4";
    }

    void deleteKeyRemovesSelected()
    {
        QFETCH(int, key);
        QFETCH(int, selected);
        QFETCH(QString, undoText);

        GsFixture f;
        auto storedCount = []() { return KxKernelData::getInstance()->getObjectsOfType(kBoxType).size(); };
        QList<TestGsItem*> boxes;
        for (int i = 0; i < 4; ++i)
            boxes << f.manip->addStored(QPointF(10 + 40 * i, 20), QSizeF(20, 20 + i));
        // An unstored item in the selection is never deleted by the key.
        TestGsItem* gesture = f.manip->addUnstored(QPointF(10, 100), QSizeF(10, 10));
        f.editor->setCurrentObject(gesture, false);
        for (int i = 0; i < selected; ++i)
            f.editor->setCurrentObject(boxes[i], true);

        f.editor->setFocus();
        QTest::keyClick(f.view, Qt::Key(key));
        QCOMPARE(f.stack.text(f.stack.count() - 1), undoText);
        QCOMPARE(storedCount(), 4 - selected);
        QCOMPARE(f.editor->getAllChildGsObjects().size(), 5 - selected);
        QVERIFY(f.editor->isGsObjectFound(gesture));
        if (selected == 0)
            return;
        f.stack.undo();
        QCOMPARE(f.editor->getAllChildGsObjects().size(), 5);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(f.manip->item(i + 1)->pos(), QPointF(10 + 40 * i, 20));
            QCOMPARE(f.manip->item(i + 1)->getSize(), QSizeF(20, 20 + i));
        }
        f.stack.redo();
        QCOMPARE(storedCount(), 4 - selected);
    }

    void zoomScalesPictureAndView()
    {
        GsFixture f;
        QSignalSpy scale(f.editor, SIGNAL(scaleChanged()));
        // Nonsense zooms are ignored.
        for (double bad : {0.0, -2.0, std::nan(""), HUGE_VAL})
            f.editor->setZoom(bad);
        QCOMPARE(scale.count(), 0);
        f.editor->setZoom(2.5);
        QCOMPARE(scale.count(), 1);
        QCOMPARE(KxKernelData::getInstance()->getCurrentView()->getZoom(), 2.5);
        // The picture scales on the view: its far corner lands at zoom times its size.
        QCOMPARE(f.view->transform().map(f.editor->mapToScene(QPointF(200, 150))), QPointF(500, 375));
    }

    void labelsLeftOutWhileTooManyInView_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<double>("zoom");
        QTest::addColumn<bool>("shown");

        // The 400 x 300 view has room for 200 labels (its area / 2,500, at
        // least 200); the items lie 8 x 14 picture pixels apart.
        QTest::newRow("200 in view") << 200 << 1.0 << true;
        QTest::newRow("250 in view") << 250 << 1.0 << false;
        QTest::newRow("250 stored, 78 in view at zoom 4") << 250 << 4.0 << true;
        QTest::newRow("600 stored, 78 in view at zoom 4") << 600 << 4.0 << true;
    }

    void labelsLeftOutWhileTooManyInView()
    {
        QFETCH(int, count);
        QFETCH(double, zoom);
        QFETCH(bool, shown);

        GsFixture f;
        f.editor->setImage(GsFixture::makeImage(400, 300));
        QList<TestGsItem*> items;
        for (int i = 0; i < count; ++i)
            items << f.manip->addStored(QPointF((i % 25) * 8, (i / 25) * 14), QSizeF(4, 4));
        f.editor->setZoom(zoom);
        QCoreApplication::processEvents();
        QCOMPARE(f.editor->areLabelsShown(), shown);
        // A picture rendered for saving shows every label.
        f.editor->beginPictureRender();
        QVERIFY(f.editor->areLabelsShown());
        f.editor->endPictureRender();
        QCOMPARE(f.editor->areLabelsShown(), shown);
        // Back to few stored: shown again, once the removals are counted.
        while (items.size() > 150)
            items.takeLast()->discard();
        QCoreApplication::processEvents();
        QVERIFY(f.editor->areLabelsShown());
    }

    void overrideManipulatorActivation()
    {
        GsFixture f;
        TestManipulator* a = f.manip;
        TestManipulator* b = f.addManipulator(kOtherBoxType);
        f.editor->setOverrideManipulator(a);
        f.editor->setOverrideManipulator(b);
        f.editor->setOverrideManipulator(b);
        QCOMPARE(a->log, QStringList({"activate", "deactivate"}));
        QCOMPARE(b->log, QStringList({"activate"}));

        b->slotToolActivated(true);
        a->slotToolActivated(false);
        QVERIFY(f.editor->getOverrideManipulator() == b);
        b->slotToolActivated(false);
        QVERIFY(!f.editor->getOverrideManipulator());
        QCOMPARE(b->log, QStringList({"activate", "deactivate"}));
        f.editor->setOverrideManipulator(a);
        delete a;
        QVERIFY(!f.editor->getOverrideManipulator());
    }
};

QTEST_MAIN(tst_Editor)
#include "tst_editor.moc"
