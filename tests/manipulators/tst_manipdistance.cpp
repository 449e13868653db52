#include "ManipTestHelper.h"
#include "OvDeviceSetManager.h"

#include "CmdChangeObject.h"
#include "KxView.h"

#include <memory>

// With the distance button's `variant`, after `script`: how many lines are stored, the
// last one's start and "len", and the vector of the line still being drawn, if any.
struct Gesture { int variant; QString script; int stored; QPoint pos, len; bool drawing; QPointF drawn; };
Q_DECLARE_METATYPE(Gesture)

// At `umPerPixel` with `panelUnit` on the panel: the line's length measured on
// the item (value and unit), and as text for the item and for the stored data.
struct Value { double umPerPixel; int panelUnit; QVariant item; QString unit, itemText, storedText; };
Q_DECLARE_METATYPE(Value)

class tst_ManipDistance : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;

    // The whole state of line 1, drawn from (100, 100) by (60, 80) in red with
    // width 4 and font size 20 while the view's origin is (7, -3): stored (with
    // the origin), and on the editor (without).
    void checkLine(const QString& aLineName)
    {
        QCOMPARE(h->storedIndices(), QList<int>{1});
        QCOMPARE(h->lineState(1), QStringLiteral("stored 107,97 by 60,80; item 100,100 by 60,80"));
        OvGsDistance* line = h->item(1);
        QCOMPARE(h->distanceItems(), QList<OvGsDistance*>{line});
        const QList<QPair<const char*, QVariant>> params{{"visible", true}, {"color", QColor(Qt::red)},
            {"valueName", QStringLiteral("Length")}, {"alwaysHidden", false}, {"w", 4}, {"fs", 20}, {"ut", 0}};
        for (const auto& param : params)
            QVERIFY2(h->storedParam(1, param.first) == param.second, param.first);
        QCOMPARE((QVariantList{ line->getColor(), line->penWidth, int(line->penStyle), line->getLabelFontPixSize(),
                                line->getName(), line->isVisible(), line->hidden }),
                 (QVariantList{ QColor(Qt::red), 4, int(Qt::SolidLine), 20, "Distance1", true, false }));
        QCOMPARE(line->manipulator, static_cast<KxGsManipulator*>(h->manip));
        QCOMPARE(line->lineName, aLineName);
    }

private slots:
    void init()
    {
        h.reset(new ManipTestHelper());
        h->activate();
    }

    void cleanup() { h.reset(); }

    void gestures_data()
    {
        QTest::addColumn<Gesture>("gesture");
        QTest::newRow("click then click 60 px away")
            << Gesture{0, "p100,100 r105,103 h160,100 p160,100 r160,100", 1, {100, 100}, {60, 0}, false, {}};
        QTest::newRow("drag 11 down stores at release")
            << Gesture{0, "p100,100 m100,111 r100,111", 1, {100, 100}, {0, 11}, false, {}};
        QTest::newRow("drag 10 down keeps drawing")
            << Gesture{0, "p100,100 m100,110 r100,110", 0, {}, {}, true, {0, 10}};
        QTest::newRow("release at exactly 10 across keeps drawing")
            << Gesture{0, "p100,100 m110,104 r110,104", 0, {}, {}, true, {10, 4}};
        QTest::newRow("press at exactly 10 after it is ignored")
            << Gesture{0, "p100,100 m110,104 r110,104 p110,110 r110,110", 0, {}, {}, true, {10, 10}};
        QTest::newRow("press just beyond 10 px finishes")
            << Gesture{0, "p100,100 r100,100 h108,89 p108,89 r108,89", 1, {100, 100}, {8, -11}, false, {}};
        QTest::newRow("drag up-left stores negative vector")
            << Gesture{0, "p200,150 m170,110 r170,110", 1, {200, 150}, {-30, -40}, false, {}};
        QTest::newRow("right button starts nothing") << Gesture{0, "P100,100 h150,100", 0, {}, {}, false, {}};
        QTest::newRow("move outside the picture is ignored")
            << Gesture{0, "p600,100 m620,110 m700,100", 0, {}, {}, true, {20, 10}};
        // Circle distance between circles A at (100, 100), radius 40 (pick square
        // 80..120), B at (300, 220), radius 20, and for "overlap" C at (112, 112), radius 40.
        QTest::newRow("circles: A to B snaps centre to centre")
            << Gesture{4, "p105,95 r105,95 h305,215 p305,215 r305,215", 1, {100, 100}, {200, 120}, false, {}};
        QTest::newRow("circles: A to A discards")
            << Gesture{4, "p100,100 r100,100 h115,85 p115,85 r115,85", 0, {}, {}, false, {}};
        QTest::newRow("circles: A to nothing discards")
            << Gesture{4, "p100,100 r100,100 h200,200 p200,200 r200,200", 0, {}, {}, false, {}};
        QTest::newRow("circles: start on nothing starts nothing")
            << Gesture{4, "p200,200 r200,200 h250,250", 0, {}, {}, false, {}};
        QTest::newRow("circles: just outside the pick square")
            << Gesture{4, "p121,100 r121,100 h300,220", 0, {}, {}, false, {}};
        QTest::newRow("circles: a drag does not finish")
            << Gesture{4, "p100,100 m300,220 r300,220", 0, {}, {}, true, {200, 120}};
        QTest::newRow("circles: overlap picks the nearest centre")
            << Gesture{4, "p111,111 r111,111 h300,220 p300,220 r300,220", 1, {112, 112}, {188, 108}, false, {}};
    }

    void gestures()
    {
        QFETCH(Gesture, gesture);
        if (gesture.variant == 4) {
            h->addCircle(QPointF(100, 100), 40);
            h->addCircle(QPointF(300, 220), 20);
            if (QByteArray(QTest::currentDataTag()).contains("overlap"))
                h->addCircle(QPointF(112, 112), 40);
        }
        h->activate(gesture.variant);
        h->play(gesture.script);
        QCOMPARE(h->storedIndices().size(), gesture.stored);
        if (gesture.stored > 0) {
            const int last = h->storedIndices().last();
            QCOMPARE(h->storedPos(last), gesture.pos);
            QCOMPARE(h->storedLen(last), gesture.len);
            QCOMPARE(h->item(last)->vector, QPointF(gesture.len));
        }
        OvGsDistance* line = h->manip->getInProgressDistance();
        QCOMPARE(line != nullptr, gesture.drawing);
        if (line) {
            QCOMPARE(line->vector, gesture.drawn);
            QCOMPARE(line->penStyle, Qt::DashLine);
            QVERIFY(h->manip->getObjectIdx(line) < 0);
            QCOMPARE(h->editor->getCurrentObject(), line);
        }
        // Every distance item on the editor is either stored or the one under way.
        QCOMPARE(h->distanceItems().size(), gesture.stored + (gesture.drawing ? 1 : 0));
    }

    void createUndoRedo()
    {
        h->panel->setLineWidth(4);
        h->panel->setFontSize(20);
        h->panel->setColor(QColor(Qt::red));
        h->kernel->getCurrentView()->setOrigin(QPoint(7, -3));
        const int count = OvGsManipDistance::theCount;
        h->play("p100,100 m160,180 r160,180");
        QCOMPARE(h->stack->count(), 1);
        QVERIFY(!h->manip->getInProgressDistance());
        QCOMPARE(h->editor->getCurrentObject(), h->item(1));
        QVERIFY(h->item(1)->isTrashAllowed());
        // 100 px at 0.5 um/px.
        QCOMPARE(h->item(1)->getDisplayValue(), QString::fromUtf8("50.000 \u03bcm"));
        checkLine(QStringLiteral("Distance_Line_%1").arg(count));
        // Stored as parameters 5 to 10: the label place and the line name
        // after the shared ones; only "len" follows the frames.
        const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(ManipTestHelper::kDistanceType);
        const char* names[] = { "len", "w", "fs", "ut", "lp", "line" };
        for (int id = 5; id <= 10; ++id)
            QVERIFY2(descr->getParamId(names[id - 5]) == id && descr->getParamDescr(id).keyframeType
                         == (id == 5 ? ParamDescr::KeyframeAnimated : ParamDescr::KeyframeConstant), names[id - 5]);
        QCOMPARE(h->storedParam(1, "lp").toPointF(), h->item(1)->getLabelPos());

        QSignalSpy indexSpy(h->stack, &QUndoStack::indexChanged);
        h->stack->undo();
        QVERIFY(h->storedIndices().isEmpty() && h->distanceItems().isEmpty());
        h->stack->redo();
        QCOMPARE(indexSpy.count(), 2);
        // Rebuilt from the kernel: a new item with the stored line name and
        // label place, not current.
        checkLine(QStringLiteral("Distance_Line_%1").arg(count));
        QCOMPARE(h->item(1)->getLabelPos(), h->storedParam(1, "lp").toPointF());
        QVERIFY(h->editor->getCurrentObject() != h->item(1));
        h->stack->undo();
        QVERIFY(h->storedIndices().isEmpty() && h->distanceItems().isEmpty());
        h->kernel->getCurrentView()->setOrigin(QPoint());
    }

    void indexAfterDeletion()
    {
        h->play("p10,10 m40,10 r40,10 p10,50 m40,50 r40,50");
        h->manip->removeGsObject(h->item(1));
        QCOMPARE(h->storedIndices(), QList<int>{2});
        h->play("p10,90 m40,90 r40,90");
        QCOMPARE(h->storedIndices(), (QList<int>{2, 3}));
        QCOMPARE(h->item(3)->getName(), QStringLiteral("Distance3"));
        // Undoing the deletion brings index 1 back beside the others.
        h->stack->undo();
        h->stack->undo();
        QCOMPARE(h->storedIndices(), (QList<int>{1, 2}));
        QCOMPARE(h->item(1)->getName(), QStringLiteral("Distance1"));
    }

    void undoRedoReshape_data()
    {
        QTest::addColumn<QString>("drag");
        QTest::addColumn<QString>("after");
        // The line runs from (100, 100) to (100, 180), clear of its label.
        QTest::newRow("end handle") << "p100,180 m120,190 r120,190"
                                    << "stored 100,100 by 20,90; item 100,100 by 20,90; 46.098 \u03bcm";
        QTest::newRow("start handle") << "p100,100 m103,98 r103,98"
                                      << "stored 103,98 by -3,82; item 103,98 by -3,82; 41.027 \u03bcm";
    }

    void undoRedoReshape()
    {
        QFETCH(QString, drag);
        QFETCH(QString, after);
        h->play("p100,100 m100,180 r100,180");
        OvGsDistance* line = h->item(1);
        const auto state = [&]() { return h->lineState(1) + QStringLiteral("; ") + line->getDisplayValue(); };
        const QString before = QString::fromUtf8("stored 100,100 by 0,80; item 100,100 by 0,80; 40.000 \u03bcm");
        QCOMPARE(state(), before);
        h->play(drag);
        QCOMPARE(h->stack->count(), 2);
        QCOMPARE(state(), after);
        h->stack->undo();
        QCOMPARE(state(), before);
        h->stack->redo();
        QCOMPARE(state(), after);
        QCOMPARE(h->item(1), line);
    }

    void resolutionChange_data()
    {
        QTest::addColumn<QSize>("oldSize");
        QTest::addColumn<QSize>("newSize");
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("steps");
        // Stored line: start (101, 51), vector (61, -33).
        QTest::newRow("halving rounds half up") << QSize(1280, 960) << QSize(640, 480)
                                                << "stored 51,26 by 31,-16; item 51,26 by 31,-16" << 0;
        QTest::newRow("width ratio only") << QSize(1000, 1000) << QSize(500, 900)
                                          << "stored 51,26 by 31,-16; item 51,26 by 31,-16" << 0;
        QTest::newRow("old width 0 is ignored") << QSize(0, 0) << QSize(640, 480)
                                                << "stored 101,51 by 61,-33; item 101,51 by 61,-33" << 1;
    }

    void resolutionChange()
    {
        QFETCH(QSize, oldSize);
        QFETCH(QSize, newSize);
        QFETCH(QString, line);
        h->play("p101,51 m162,18 r162,18");
        h->kernel->setCurrentImageSize(oldSize);
        h->kernel->changeCameraResolution(newSize);
        QCOMPARE(h->lineState(1), line);
        // Not a user's change; a real one starts the history afresh, as its
        // steps hold the old resolution's geometry.
        QFETCH(int, steps);
        QCOMPARE(h->stack->count(), steps);
    }

    void values_data()
    {
        QTest::addColumn<Value>("value");
        // A 60 x 80 line: 100 px. Stored unit: automatic (the unit at finalisation).
        const QString um = QString::fromUtf8("50.000 \u03bcm");
        QTest::newRow("0.5 um auto") << Value{0.5, 0, 50.0, QString::fromUtf8("\u03bcm"), um, um};
        const QString mm = QString::fromUtf8("50.00\u221910 \u0304\u00b3 mm");
        QTest::newRow("0.5 um in mm") << Value{0.5, 3, 0.05, "mm", mm, um};
        QTest::newRow("20 um auto picks mm") << Value{20.0, 0, 2.0, "mm", "2.000 mm", "2.000 mm"};
        QTest::newRow("uncalibrated") << Value{0.0, 0, {}, "", "", ""};
    }

    void values()
    {
        QFETCH(Value, value);
        h->kernel->setMediaCalibration(value.umPerPixel);
        h->play("p100,100 m160,180 r160,180");
        OvGsDistance* line = h->item(1);
        const KxKernelObjectData* data = h->stored(1);
        h->panel->setCurrentUnit(value.panelUnit);

        QString unit = QStringLiteral("stale");
        const QVariant measured = h->manip->getCalculatedValue(QStringLiteral("Length"), line, unit);
        QCOMPARE(measured.isValid(), value.item.isValid());
        QVERIFY(!measured.isValid() || qFuzzyCompare(measured.toDouble(), value.item.toDouble()));
        QCOMPARE(unit, value.unit);
        QCOMPARE(h->manip->getCalculatedValueAsString(QStringLiteral("Length"), line), value.itemText);
        QCOMPARE(h->manip->getCalculatedValueAsString(QStringLiteral("Length"), data), value.storedText);
        // Names are case-sensitive.
        QVERIFY(!h->manip->getCalculatedValue(QStringLiteral("length"), line, unit).isValid());
        QVERIFY(unit.isEmpty());
    }

    // A label refresh used to show every line in the panel's unit instead of its own.
    void labelsKeepTheirOwnUnitWhenRefreshed()
    {
        h->play("p100,100 m160,180 r160,180 p300,100 m360,180 r360,180");
        h->panel->setCurrentUnit(3);
        Q_EMIT h->panel->signalUnitTypeChanged(3); // the user picks mm with line 2 selected
        QCOMPARE(h->storedParam(2, "ut").toInt(), 3);
        Q_EMIT OvDeviceSetManager::instance()->signalDeviceSetModified(OvDeviceSetManager::FlagCalibrationChanged);
        QCOMPARE(h->item(1)->getDisplayValue(), QString::fromUtf8("50.000 \u03bcm"));
        QCOMPARE(h->item(2)->getDisplayValue(), QString::fromUtf8("50.00\u221910 \u0304\u00b3 mm"));
    }

    void kernelChangeUpdatesItemAndPanel()
    {
        h->play("p100,100 m160,100 r160,100");
        OvGsDistance* line = h->item(1);
        const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(ManipTestHelper::kDistanceType);
        KxParamKeyframeVector values = descr->createKeyframeVector();
        values[1].setValue(QColor(Qt::yellow));
        values[3].setValue(QPoint(20, 30));
        values[4].setValue(true);
        descr->setValue(values, QStringLiteral("len"), QPoint(0, 40));
        descr->setValue(values, QStringLiteral("w"), 7);
        descr->setValue(values, QStringLiteral("fs"), 30);
        descr->setValue(values, QStringLiteral("ut"), int(OvGuiMeasurementTool::UnitNm));
        h->stack->push(new CmdChangeObject(ManipTestHelper::kDistanceType, 1, values, false));

        QCOMPARE(h->lineState(1), QStringLiteral("stored 20,30 by 0,40; item 20,30 by 0,40"));
        // Width and font size are not taken back from the kernel.
        QCOMPARE(line->getColor(), QColor(Qt::yellow));
        QCOMPARE(line->penWidth, 2);
        QVERIFY(line->hidden);
        // The line is current, so the panel shows its new style and unit.
        QCOMPARE(h->panelStyle(), (QVariantList{ 7, 30, QColor(Qt::yellow), int(OvGuiMeasurementTool::UnitNm) }));

        h->stack->undo();
        QCOMPARE(h->lineState(1), QStringLiteral("stored 100,100 by 60,0; item 100,100 by 60,0"));
        QVERIFY(!line->hidden);
        QCOMPARE(h->panel->getLineWidth(), 2);
    }

    void frameRecreation_data()
    {
        QTest::addColumn<bool>("video");
        QTest::addColumn<bool>("force");
        QTest::addColumn<QString>("atFrame10");
        // Stored with a key frame at frame 10; the item's vector set to 1,1 by hand.
        QTest::newRow("animated line follows the frames") << true << false << "item 40,50 by 5,5";
        QTest::newRow("still line stays") << false << false << "item 100,100 by 1,1";
        QTest::newRow("still line re-applied when forced") << false << true << "item 100,100 by 60,0";
    }

    void frameRecreation()
    {
        QFETCH(bool, video);
        QFETCH(bool, force);
        QFETCH(QString, atFrame10);
        h->kernel->getMediaInfo().setVideoFile(video);
        h->play("p100,100 m160,100 r160,100");
        OvGsDistance* line = h->item(1);
        KxKernelObjectData* data = h->stored(1);
        QCOMPARE(data->animated, video);

        // A key frame at frame 10 written directly, as a loaded project would.
        const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(ManipTestHelper::kDistanceType);
        KxParamKeyframeVector values = descr->createKeyframeVector();
        values[3].setValue(QPoint(40, 50));
        descr->setValue(values, QStringLiteral("len"), QPoint(5, 5));
        values.setFrameNumber(10);
        data->update(values);

        KxGsManipulator::theCurrentViewAnimated = force;
        line->setVector(QPointF(1, 1));
        h->kernel->setCurrentFrame(10);
        QCOMPARE(h->lineState(1), QStringLiteral("stored 100,100 by 60,0; ") + atFrame10);
        h->kernel->setCurrentFrame(5);
        QCOMPARE(line->pos(), QPointF(100, 100));
        KxGsManipulator::theCurrentViewAnimated = false;
        h->kernel->getMediaInfo().setVideoFile(false);
    }

    void deactivateWhileDrawingDiscardsLine()
    {
        h->play("p100,100 r100,100 h150,120");
        QPointer<OvGsDistance> line = h->manip->getInProgressDistance();
        QVERIFY(line);
        QVERIFY(KxGsManipulator::isLocalMagnifier());

        h->panel->theDistanceButton->setChecked(false);
        QVERIFY(!h->manip->getInProgressDistance());
        QVERIFY(!h->editor->getCurrentObject());
        QCOMPARE(h->distanceItems().size(), 0);
        QVERIFY(!KxGsManipulator::isLocalMagnifier());
        QVERIFY(h->storedIndices().isEmpty());
        QCOMPARE(h->stack->count(), 0);
        QCOMPARE(h->panel->getCurrentUnit(), OvGuiMeasurementTool::kNoUnit);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!line);
    }
};

QTEST_MAIN(tst_ManipDistance)
#include "tst_manipdistance.moc"
