#include "ManipTestHelper.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "KxView.h"
#include "OvGsCircle.h"
#include "OvGsDistance.h"
#include "OvGsManipDistance.h"
#include "OvGuiMeasurementTool.h"

#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

#include <cmath>
#include <memory>

namespace {

// Runs a gesture script: "p" press, "P" right press, "m" move with the left
// button held, "h" move without buttons, "r" release; each followed by x,y in
// picture pixels, steps separated by spaces.
void play(ManipTestHelper& aHelper, const QString& aScript)
{
    for (const QString& step : aScript.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList xy = step.mid(1).split(QLatin1Char(','));
        const QPointF point(xy.value(0).toDouble(), xy.value(1).toDouble());
        switch (step.at(0).toLatin1()) {
        case 'p': aHelper.press(point); break;
        case 'P': aHelper.press(point, Qt::RightButton); break;
        case 'm': aHelper.move(point); break;
        case 'h': aHelper.hover(point); break;
        case 'r': aHelper.release(point); break;
        default: QFAIL("bad gesture step");
        }
    }
}

} // namespace

class tst_ManipDistance : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void gestureRules_data();
    void gestureRules();
    void finalisedLineState();
    void storedPositionCarriesViewOrigin();
    void indexAfterDeletion();
    void undoRedoCreation();
    void undoRedoReshape_data();
    void undoRedoReshape();
    void circleDistance_data();
    void circleDistance();
    void resolutionChange_data();
    void resolutionChange();
    void values_data();
    void values();
    void kernelChangeUpdatesItemAndPanel();
    void frameRecreation_data();
    void frameRecreation();
    void deactivateWhileDrawingDiscardsLine();

private:
    std::unique_ptr<ManipTestHelper> h;
};

void tst_ManipDistance::init()
{
    h.reset(new ManipTestHelper());
    h->activate();
}

void tst_ManipDistance::cleanup()
{
    h.reset();
}

void tst_ManipDistance::gestureRules_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("storedCount");
    QTest::addColumn<QPoint>("len");
    QTest::addColumn<bool>("drawing");
    QTest::addColumn<QPointF>("drawnVector");

    QTest::newRow("short click stays in progress")
        << "p100,100 r105,103" << 0 << QPoint() << true << QPointF(5, 3);
    QTest::newRow("click then click 60 px away")
        << "p100,100 r105,103 h160,100 p160,100 r160,100" << 1 << QPoint(60, 0) << false << QPointF();
    QTest::newRow("drag 11 down stores at release")
        << "p100,100 m100,111 r100,111" << 1 << QPoint(0, 11) << false << QPointF();
    QTest::newRow("drag 10 down keeps drawing")
        << "p100,100 m100,110 r100,110" << 0 << QPoint() << true << QPointF(0, 10);
    QTest::newRow("release at exactly 10 across keeps drawing")
        << "p100,100 m110,104 r110,104" << 0 << QPoint() << true << QPointF(10, 4);
    QTest::newRow("press at exactly 10 after it is ignored")
        << "p100,100 m110,104 r110,104 p110,110 r110,110" << 0 << QPoint() << true << QPointF(10, 10);
    QTest::newRow("second press within 10 px ignored")
        << "p100,100 r100,100 h108,95 p108,95 r108,95" << 0 << QPoint() << true << QPointF(8, -5);
    QTest::newRow("press just beyond 10 px finishes")
        << "p100,100 r100,100 h108,89 p108,89 r108,89" << 1 << QPoint(8, -11) << false << QPointF();
    QTest::newRow("drag up-left stores negative vector")
        << "p200,150 m170,110 r170,110" << 1 << QPoint(-30, -40) << false << QPointF();
    QTest::newRow("right button starts nothing")
        << "P100,100 h150,100" << 0 << QPoint() << false << QPointF();
    QTest::newRow("two lines one after another")
        << "p10,10 m40,10 r40,10 p50,50 m50,90 r50,90" << 2 << QPoint(0, 40) << false << QPointF();
    QTest::newRow("move outside the picture is ignored")
        << "p600,100 m620,110 m700,100" << 0 << QPoint() << true << QPointF(20, 10);
}

void tst_ManipDistance::gestureRules()
{
    QFETCH(QString, script);
    QFETCH(int, storedCount);
    QFETCH(QPoint, len);
    QFETCH(bool, drawing);
    QFETCH(QPointF, drawnVector);

    play(*h, script);

    QCOMPARE(h->storedIndices().size(), storedCount);
    if (storedCount > 0)
        QCOMPARE(h->storedLen(h->storedIndices().last()), len);
    OvGsDistance* line = h->manip->getInProgressDistance();
    QCOMPARE(line != nullptr, drawing);
    if (line) {
        QCOMPARE(line->vector, drawnVector);
        QCOMPARE(line->penStyle, Qt::DashLine);
        QVERIFY(h->manip->getObjectIdx(line) < 0);
        QCOMPARE(h->editor->getCurrentObject(), line);
    }
    // Every distance item on the editor is either stored or the one under way.
    QCOMPARE(h->distanceItems().size(), storedCount + (drawing ? 1 : 0));
}

void tst_ManipDistance::finalisedLineState()
{
    h->panel->setLineWidth(4);
    h->panel->setFontSize(20);
    h->panel->setColor(QColor(255, 0, 0));
    play(*h, "p100,100 m160,180 r160,180");

    QCOMPARE(h->storedIndices(), QList<int>{1});
    OvGsDistance* line = h->item(1);
    QVERIFY(line);
    QCOMPARE(line->getName(), QStringLiteral("Distance1"));
    QCOMPARE(line->penStyle, Qt::SolidLine);
    QCOMPARE(line->penWidth, 4);
    QVERIFY(line->isTrashAllowed());
    QCOMPARE(h->editor->getCurrentObject(), line);
    QVERIFY(!h->manip->getInProgressDistance());

    QCOMPARE(h->storedParam(1, "visible").toBool(), true);
    QCOMPARE(h->storedParam(1, "color").value<QColor>(), QColor(255, 0, 0));
    QCOMPARE(h->storedParam(1, "valueName").toString(), QStringLiteral("Length"));
    QCOMPARE(h->storedPos(1), QPoint(100, 100));
    QCOMPARE(h->storedParam(1, "alwaysHidden").toBool(), false);
    QCOMPARE(h->storedLen(1), QPoint(60, 80));
    QCOMPARE(h->storedParam(1, "w").toInt(), 4);
    QCOMPARE(h->storedParam(1, "fs").toInt(), 20);
    QCOMPARE(h->storedParam(1, "ut").toInt(), h->panel->getCurrentUnit());
    QCOMPARE(h->stack->count(), 1);
    // 100 px at 0.5 um/px.
    QCOMPARE(line->getDisplayValue(), QString::fromUtf8("50.000 \u03bcm"));
}

void tst_ManipDistance::storedPositionCarriesViewOrigin()
{
    h->kernel->getCurrentView()->setOrigin(QPoint(7, -3));
    play(*h, "p100,100 m130,100 r130,100");
    QCOMPARE(h->storedPos(1), QPoint(107, 97));
    QCOMPARE(h->item(1)->pos(), QPointF(100, 100));

    // Rebuilt from the kernel (redo), the item is back at the picture position.
    h->stack->undo();
    h->stack->redo();
    QCOMPARE(h->item(1)->pos(), QPointF(100, 100));
    h->kernel->getCurrentView()->setOrigin(QPoint());
}

void tst_ManipDistance::indexAfterDeletion()
{
    play(*h, "p10,10 m40,10 r40,10 p10,50 m40,50 r40,50");
    QCOMPARE(h->storedIndices(), (QList<int>{1, 2}));

    h->manip->removeGsObject(h->item(1));
    QCOMPARE(h->storedIndices(), QList<int>{2});

    play(*h, "p10,90 m40,90 r40,90");
    QCOMPARE(h->storedIndices(), (QList<int>{2, 3}));
    QCOMPARE(h->item(3)->getName(), QStringLiteral("Distance3"));

    // Undoing the deletion brings index 1 back beside the others.
    h->stack->undo();
    h->stack->undo();
    QCOMPARE(h->storedIndices(), (QList<int>{1, 2}));
    QCOMPARE(h->item(1)->getName(), QStringLiteral("Distance1"));
}

void tst_ManipDistance::undoRedoCreation()
{
    h->panel->setLineWidth(3);
    h->panel->setFontSize(12);
    h->panel->setColor(QColor(10, 200, 30));
    const int count = OvGsManipDistance::theCount;
    play(*h, "p100,100 m150,70 r150,70");
    QCOMPARE(h->item(1)->lineName, QStringLiteral("Distance_Line_%1").arg(count));
    QSignalSpy indexSpy(h->stack, &QUndoStack::indexChanged);

    h->stack->undo();
    QCOMPARE(indexSpy.count(), 1);
    QVERIFY(h->storedIndices().isEmpty());
    QVERIFY(!h->item(1));
    QCOMPARE(h->distanceItems().size(), 0);

    h->stack->redo();
    QCOMPARE(indexSpy.count(), 2);
    QCOMPARE(h->storedIndices(), QList<int>{1});
    OvGsDistance* line = h->item(1);
    QVERIFY(line);
    QCOMPARE(h->distanceItems().size(), 1);
    QCOMPARE(line->pos(), QPointF(100, 100));
    QCOMPARE(line->vector, QPointF(50, -30));
    QCOMPARE(line->getColor(), QColor(10, 200, 30));
    QCOMPARE(line->penWidth, 3);
    QCOMPARE(line->penStyle, Qt::SolidLine);
    QCOMPARE(line->getLabelFontPixSize(), 12);
    QCOMPARE(line->getName(), QStringLiteral("Distance1"));
    QVERIFY(line->isVisible());
    QVERIFY(!line->hidden);
    QCOMPARE(line->manipulator, static_cast<KxGsManipulator*>(h->manip));
    // A rebuilt item is a new line with the next number.
    QCOMPARE(line->lineName, QStringLiteral("Distance_Line_%1").arg(count + 1));
    // Rebuilt lines do not become current.
    QVERIFY(h->editor->getCurrentObject() != line);

    h->stack->undo();
    QVERIFY(h->storedIndices().isEmpty());
    QCOMPARE(h->distanceItems().size(), 0);
}

void tst_ManipDistance::undoRedoReshape_data()
{
    QTest::addColumn<QPointF>("grab");
    QTest::addColumn<QPointF>("drop");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QPoint>("len");

    // The line runs from (100, 100) to (100, 180), clear of its label.
    QTest::newRow("end handle") << QPointF(100, 180) << QPointF(120, 190) << QPoint(100, 100) << QPoint(20, 90);
    QTest::newRow("start handle") << QPointF(100, 100) << QPointF(103, 98) << QPoint(103, 98) << QPoint(-3, 82);
}

void tst_ManipDistance::undoRedoReshape()
{
    QFETCH(QPointF, grab);
    QFETCH(QPointF, drop);
    QFETCH(QPoint, pos);
    QFETCH(QPoint, len);

    play(*h, "p100,100 m100,180 r100,180");
    OvGsDistance* line = h->item(1);
    QCOMPARE(h->editor->getCurrentObject(), line);
    const int before = h->stack->count();

    h->drag(grab, drop);
    QCOMPARE(h->stack->count(), before + 1);
    QCOMPARE(h->storedPos(1), pos);
    QCOMPARE(h->storedLen(1), len);
    QCOMPARE(h->storedIndices(), QList<int>{1});
    QCOMPARE(line->getDisplayValue(),
             h->panel->convertFromUmAndFormat(0.5 * std::hypot(len.x(), len.y()), false,
                                              OvGuiMeasurementTool::UnitAuto, h->manip->getUnitsToUse()));

    h->stack->undo();
    QCOMPARE(h->storedPos(1), QPoint(100, 100));
    QCOMPARE(h->storedLen(1), QPoint(0, 80));
    QCOMPARE(line->pos(), QPointF(100, 100));
    QCOMPARE(line->vector, QPointF(0, 80));
    QCOMPARE(line->getDisplayValue(), QString::fromUtf8("40.000 \u03bcm"));

    h->stack->redo();
    QCOMPARE(line->pos(), QPointF(pos));
    QCOMPARE(line->vector, QPointF(len));
    QCOMPARE(h->item(1), line);
}

void tst_ManipDistance::circleDistance_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("storedCount");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QPoint>("len");

    // Circle A at (100, 100), radius 40 (pick square 80..120); B at (300, 220), radius 20 (290..310);
    // C at (112, 112), radius 40, overlapping A.
    QTest::newRow("A to B snaps centre to centre")
        << "p105,95 r105,95 h305,215 p305,215 r305,215" << 1 << QPoint(100, 100) << QPoint(200, 120);
    QTest::newRow("B to A")
        << "p292,228 r292,228 h90,110 p90,110 r90,110" << 1 << QPoint(300, 220) << QPoint(-200, -120);
    QTest::newRow("A to A discards")
        << "p100,100 r100,100 h115,85 p115,85 r115,85" << 0 << QPoint() << QPoint();
    QTest::newRow("A to nothing discards")
        << "p100,100 r100,100 h200,200 p200,200 r200,200" << 0 << QPoint() << QPoint();
    QTest::newRow("start on nothing starts nothing")
        << "p200,200 r200,200 h250,250" << 0 << QPoint() << QPoint();
    QTest::newRow("just outside the pick square")
        << "p121,100 r121,100 h300,220" << 0 << QPoint() << QPoint();
    QTest::newRow("drag does not finish a circle distance")
        << "p100,100 m300,220 r300,220" << 0 << QPoint() << QPoint();
    QTest::newRow("overlap picks the nearest centre")
        << "p111,111 r111,111 h300,220 p300,220 r300,220" << 1 << QPoint(112, 112) << QPoint(188, 108);
}

void tst_ManipDistance::circleDistance()
{
    QFETCH(QString, script);
    QFETCH(int, storedCount);
    QFETCH(QPoint, pos);
    QFETCH(QPoint, len);

    h->addCircle(QPointF(100, 100), 40);
    h->addCircle(QPointF(300, 220), 20);
    if (QByteArray(QTest::currentDataTag()).startsWith("overlap"))
        h->addCircle(QPointF(112, 112), 40);
    h->activate(4);

    play(*h, script);
    QCOMPARE(h->storedIndices().size(), storedCount);
    if (storedCount) {
        QCOMPARE(h->storedPos(1), pos);
        QCOMPARE(h->storedLen(1), len);
        QCOMPARE(h->item(1)->vector, QPointF(len));
    }
    const bool drawing = QByteArray(QTest::currentDataTag()).startsWith("drag");
    QCOMPARE(h->manip->getInProgressDistance() != nullptr, drawing);
    QCOMPARE(h->distanceItems().size(), storedCount + (drawing ? 1 : 0));
}

void tst_ManipDistance::resolutionChange_data()
{
    QTest::addColumn<QSize>("oldSize");
    QTest::addColumn<QSize>("newSize");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QPoint>("len");

    // Stored line: start (101, 51), vector (61, -33).
    QTest::newRow("halving rounds half up") << QSize(1280, 960) << QSize(640, 480) << QPoint(51, 26) << QPoint(31, -16);
    QTest::newRow("doubling") << QSize(640, 480) << QSize(1280, 960) << QPoint(202, 102) << QPoint(122, -66);
    QTest::newRow("width ratio only") << QSize(1000, 1000) << QSize(500, 900) << QPoint(51, 26) << QPoint(31, -16);
    QTest::newRow("old width 0 is ignored") << QSize(0, 0) << QSize(640, 480) << QPoint(101, 51) << QPoint(61, -33);
}

void tst_ManipDistance::resolutionChange()
{
    QFETCH(QSize, oldSize);
    QFETCH(QSize, newSize);
    QFETCH(QPoint, pos);
    QFETCH(QPoint, len);

    play(*h, "p101,51 m162,18 r162,18");
    QCOMPARE(h->storedLen(1), QPoint(61, -33));
    const int commands = h->stack->count();

    h->kernel->setCurrentImageSize(oldSize);
    h->kernel->changeCameraResolution(newSize);

    QCOMPARE(h->storedPos(1), pos);
    QCOMPARE(h->storedLen(1), len);
    QCOMPARE(h->item(1)->pos(), QPointF(pos));
    QCOMPARE(h->item(1)->vector, QPointF(len));
    QCOMPARE(h->stack->count(), commands);
}

void tst_ManipDistance::values_data()
{
    QTest::addColumn<double>("umPerPixel");
    QTest::addColumn<int>("panelUnit");
    QTest::addColumn<QVariant>("itemValue");
    QTest::addColumn<QString>("itemUnit");
    QTest::addColumn<QString>("itemText");
    QTest::addColumn<QString>("storedText");

    // A 60 x 80 line: 100 px. Stored unit: automatic (the unit at finalisation).
    QTest::newRow("0.5 um auto") << 0.5 << 0 << QVariant(50.0) << "\u03bcm" << "50.000 \u03bcm" << "50.000 \u03bcm";
    QTest::newRow("0.5 um in mm") << 0.5 << 3 << QVariant(0.05) << "mm" << "50.00\u221910 \u0304\u00b3 mm"
                                  << "50.000 \u03bcm";
    QTest::newRow("0.5 um in nm") << 0.5 << 1 << QVariant(50000.0) << "nm" << "50.000\u221910\u00b3 nm"
                                  << "50.000 \u03bcm";
    QTest::newRow("20 um auto picks mm") << 20.0 << 0 << QVariant(2.0) << "mm" << "2.000 mm" << "2.000 mm";
    QTest::newRow("uncalibrated") << 0.0 << 0 << QVariant() << "" << "" << "";
}

void tst_ManipDistance::values()
{
    QFETCH(double, umPerPixel);
    QFETCH(int, panelUnit);
    QFETCH(QVariant, itemValue);
    QFETCH(QString, itemUnit);
    QFETCH(QString, itemText);
    QFETCH(QString, storedText);

    h->kernel->setMediaCalibration(umPerPixel);
    play(*h, "p100,100 m160,180 r160,180");
    OvGsDistance* line = h->item(1);
    const KxKernelObjectData* data = h->stored(1);
    h->panel->setCurrentUnit(panelUnit);

    QString unit = QStringLiteral("stale");
    const QVariant value = h->manip->getCalculatedValue(QStringLiteral("Length"), line, unit);
    QCOMPARE(value.isValid(), itemValue.isValid());
    if (itemValue.isValid())
        QVERIFY(qFuzzyCompare(value.toDouble(), itemValue.toDouble()));
    QCOMPARE(unit, itemUnit);
    QCOMPARE(h->manip->getCalculatedValueAsString(QStringLiteral("Length"), line), itemText);
    QCOMPARE(h->manip->getCalculatedValueAsString(QStringLiteral("Length"), data), storedText);

    // Names are case-sensitive and other kinds' names are not measured.
    QVERIFY(!h->manip->getCalculatedValue(QStringLiteral("length"), line, unit).isValid());
    QVERIFY(unit.isEmpty());
    QVERIFY(h->manip->getCalculatedValueAsString(QStringLiteral("Area"), data).isEmpty());
}

void tst_ManipDistance::kernelChangeUpdatesItemAndPanel()
{
    play(*h, "p100,100 m160,100 r160,100");
    OvGsDistance* line = h->item(1);
    QCOMPARE(h->editor->getCurrentObject(), line);

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

    QCOMPARE(line->pos(), QPointF(20, 30));
    QCOMPARE(line->vector, QPointF(0, 40));
    QCOMPARE(line->getColor(), QColor(Qt::yellow));
    QVERIFY(line->hidden);
    QCOMPARE(h->panel->getColor(), QColor(Qt::yellow));
    QCOMPARE(h->panel->getLineWidth(), 7);
    QCOMPARE(h->panel->getFontSize(), 30);
    QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitNm));

    h->stack->undo();
    QCOMPARE(line->pos(), QPointF(100, 100));
    QCOMPARE(line->vector, QPointF(60, 0));
    QVERIFY(!line->hidden);
    QCOMPARE(h->panel->getLineWidth(), 2);
}

void tst_ManipDistance::frameRecreation_data()
{
    QTest::addColumn<bool>("video");
    QTest::addColumn<bool>("force");
    QTest::addColumn<QPoint>("posAtFrame10");
    QTest::addColumn<QPoint>("posAtFrame5");

    QTest::newRow("animated line follows the frames") << true << false << QPoint(40, 50) << QPoint(100, 100);
    QTest::newRow("still line stays") << false << false << QPoint(100, 100) << QPoint(100, 100);
    QTest::newRow("still line re-applied when forced") << false << true << QPoint(100, 100) << QPoint(100, 100);
}

void tst_ManipDistance::frameRecreation()
{
    QFETCH(bool, video);
    QFETCH(bool, force);
    QFETCH(QPoint, posAtFrame10);
    QFETCH(QPoint, posAtFrame5);

    h->kernel->getMediaInfo().setVideoFile(video);
    play(*h, "p100,100 m160,100 r160,100");
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
    QCOMPARE(line->pos(), QPointF(posAtFrame10));
    QCOMPARE(line->vector, video ? QPointF(5, 5) : force ? QPointF(60, 0) : QPointF(1, 1));
    h->kernel->setCurrentFrame(5);
    QCOMPARE(line->pos(), QPointF(posAtFrame5));
    KxGsManipulator::theCurrentViewAnimated = false;
    h->kernel->getMediaInfo().setVideoFile(false);
}

void tst_ManipDistance::deactivateWhileDrawingDiscardsLine()
{
    play(*h, "p100,100 r100,100 h150,120");
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

QTEST_MAIN(tst_ManipDistance)
#include "tst_manipdistance.moc"
