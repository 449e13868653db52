#include "CmdChangeObject.h"
#include "ManipTestHelper.h"
#include "OvGsAngle.h"
#include "OvGsManipAngle.h"
#include "OvGsManipCircle.h"

#include <QPolygonF>

#include <memory>

// With the panel on the inner or outer angle, after `script`: how many angles are
// stored, the last one's stored vertex, nodes and value name, or, while drawing, the
// node count and the node that follows the mouse.
struct Gesture { bool inner; QString script; int stored; QPoint vertex; QPolygonF nodes; QString valueName;
                 int drawingNodes; int activeNode; };
Q_DECLARE_METATYPE(Gesture)

// Stored "nodes" queried on the kernel data under `name`.
struct StoredValue { QPolygonF nodes; QString name; QVariant degrees; };
Q_DECLARE_METATYPE(StoredValue)

namespace {

const int kAngleType = 66651;
// A right angle at (100, 200): first line to the right, second line drawn upwards
// from below the vertex; drawn by four clicks with the mouse moved between them.
const QString kFourClicks = "p100,200 r100,200 h300,200 p300,200 r300,200 p100,280 r100,280 h100,100 p100,100 r100,100";
const QString kTwoDrags = "p100,200 m300,200 r300,200 p100,280 m100,100 r100,100";
const QPolygonF kRightNodes(QVector<QPointF>{ { 50, 0 }, { 200, 0 }, { 0, -25 }, { 0, -100 } });

QPolygonF polygon(const QVector<QPointF>& aPoints)
{
    return QPolygonF(aPoints);
}

} // namespace

class tst_ManipAngle : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;
    OvGsManipAngle* angles = nullptr;

    QList<int> storedIndices() const { return h->kernel->getObjectsOfType(kAngleType).keys(); }
    QVariant storedParam(int anIdx, const QString& aName) const
    {
        const KxKernelObjectData* data = h->kernel->getObject(kAngleType, anIdx);
        return data ? h->kernel->getDataDescriptor(kAngleType)->getValue(data->getDefaultKeyframes(), aName)
                    : QVariant();
    }
    OvGsAngle* item(int anIdx) const { return static_cast<OvGsAngle*>(angles->getGsObject(anIdx)); }
    // Angle anIdx in the kernel and on the editor: vertex, nodes, value name; the
    // item's vertex, nodes, angle and name.
    QString angleState(int anIdx) const
    {
        const auto xy = [](const QPointF& aPoint) {
            return QStringLiteral("%1,%2").arg(qRound(aPoint.x() * 100) / 100.0).arg(qRound(aPoint.y() * 100) / 100.0);
        };
        const auto list = [&xy](const QPolygonF& aNodes) {
            QStringList texts;
            for (const QPointF& node : aNodes)
                texts << xy(node);
            return texts.join(QLatin1Char(' '));
        };
        const OvGsAngle* angle = item(anIdx);
        return QStringLiteral("stored %1 [%2] %3; item %4 [%5] %6 %7")
            .arg(xy(storedParam(anIdx, "pos").toPoint()), list(storedParam(anIdx, "nodes").value<QPolygonF>()),
                 storedParam(anIdx, "valueName").toString(), angle ? xy(angle->pos()) : QStringLiteral("-"),
                 angle ? list(angle->nodes) : QString(), angle ? QString::number(angle->angleValue, 'f', 3) : QString(),
                 angle ? angle->getName() : QString());
    }
    QList<OvGsAngle*> angleItems() const
    {
        QList<OvGsAngle*> items;
        for (KxGsObject* obj : h->editor->getAllChildGsObjects())
            if (obj->type() == kAngleType)
                items.append(static_cast<OvGsAngle*>(obj));
        return items;
    }

private slots:
    void init()
    {
        h.reset(new ManipTestHelper());
        angles = new OvGsManipAngle(h->tool, h->panel, h->stack);
        h->panel->innerAngleMode = true;
        h->panel->theAngleButton->setChecked(true);
    }

    void cleanup()
    {
        h->editor->restoreOverrideManipulator();
        h->editor->setCurrentObject(nullptr, false);
        h->stack->clear();
        delete angles;
        h.reset();
    }

    void gestures_data()
    {
        QTest::addColumn<Gesture>("gesture");
        QTest::newRow("four clicks")
            << Gesture{true, kFourClicks, 1, {100, 200}, kRightNodes, "Inner angle", 0, -1};
        QTest::newRow("two drags") << Gesture{true, kTwoDrags, 1, {100, 200}, kRightNodes, "Inner angle", 0, -1};
        QTest::newRow("outer angle") << Gesture{false, kTwoDrags, 1, {100, 200}, kRightNodes, "Outer angle", 0, -1};
        QTest::newRow("drag under 10: the node keeps following")
            << Gesture{true, "p100,200 m106,207 r106,207", 0, {}, {}, {}, 2, 1};
        QTest::newRow("press under 10 from the first node is ignored")
            << Gesture{true, "p100,200 r100,200 h109,200 p109,200 r109,200", 0, {}, {}, {}, 2, 1};
        QTest::newRow("between the lines") << Gesture{true, "p100,200 m300,200 r300,200", 0, {}, {}, {}, 2, -1};
        QTest::newRow("second line started") << Gesture{true, "p100,200 m300,200 r300,200 p100,280 r100,280",
                                                        0, {}, {}, {}, 4, 3};
        QTest::newRow("right button starts nothing") << Gesture{true, "P100,200 h150,200", 0, {}, {}, {}, 0, -1};
    }

    void gestures()
    {
        QFETCH(Gesture, gesture);
        h->panel->innerAngleMode = gesture.inner;
        h->play(gesture.script);
        QCOMPARE(storedIndices().size(), gesture.stored);
        if (gesture.stored > 0) {
            QCOMPARE(storedParam(1, "pos").toPoint(), gesture.vertex);
            QCOMPARE(storedParam(1, "nodes").value<QPolygonF>(), gesture.nodes);
            QCOMPARE(storedParam(1, "valueName").toString(), gesture.valueName);
            QCOMPARE(item(1)->penStyle, Qt::SolidLine);
            QVERIFY(!item(1)->creating);
            QCOMPARE(item(1)->getDisplayValue(), QString::fromUtf8(gesture.inner ? "90 deg(\u00b0)" : "270 deg(\u00b0)"));
        }
        OvGsAngle* drawn = angles->getInProgressAngle();
        QCOMPARE(drawn ? drawn->nodes.size() : 0, gesture.drawingNodes);
        QCOMPARE(angles->getActiveNode(), gesture.activeNode);
        if (drawn) {
            QVERIFY(drawn->creating);
            QCOMPARE(drawn->penStyle, Qt::DashLine);
            QCOMPARE(h->editor->getCurrentObject(), drawn);
            QVERIFY(angles->getObjectIdx(drawn) < 0);
        }
        QCOMPARE(angleItems().size(), gesture.stored + (drawn ? 1 : 0));
    }

    void undoRedoCreation()
    {
        h->panel->setColor(QColor(Qt::green));
        h->panel->setFontSize(20);
        h->play(kFourClicks);
        const QString state = "stored 100,200 [50,0 200,0 0,-25 0,-100] Inner angle; "
                              "item 100,200 [50,0 200,0 0,-25 0,-100] 90.000 Angle1";
        QCOMPARE(angleState(1), state);
        QCOMPARE(h->stack->undoText(), QStringLiteral("Add Angle 1"));
        OvGsAngle* drawn = item(1);
        const QVariantList style{ drawn->getColor(), drawn->penWidth, drawn->getLabelFontPixSize() };
        QCOMPARE(style, (QVariantList{ QColor(Qt::green), 2, 20 }));

        h->stack->undo();
        QVERIFY(storedIndices().isEmpty());
        QVERIFY(angleItems().isEmpty());
        h->stack->redo();
        QCOMPARE(angleState(1), state);
        OvGsAngle* rebuilt = item(1);
        QVERIFY(rebuilt != drawn);
        QCOMPARE((QVariantList{ rebuilt->getColor(), rebuilt->penWidth, rebuilt->getLabelFontPixSize() }), style);
        QCOMPARE(rebuilt->arcPath.boundingRect(), drawn->arcPath.boundingRect());
        QCOMPARE(angleItems(), QList<OvGsAngle*>{rebuilt});
    }

    // Stored as the outer angle; rebuilt from the store the item shows the outer
    // arc and value again, and the stored data still answers both names.
    void outerAngleStoredAndReloaded()
    {
        h->panel->innerAngleMode = false;
        h->play(kTwoDrags);
        QCOMPARE(storedParam(1, "valueName").toString(), QStringLiteral("Outer angle"));
        QString unit;
        QCOMPARE(qRound(angles->getCalculatedValue("Outer angle", item(1), unit).toDouble()), 270);
        h->stack->undo();
        h->stack->redo();
        OvGsAngle* rebuilt = item(1);
        QVERIFY(!rebuilt->innerAngle);
        QCOMPARE(qRound(rebuilt->angleValue), 270);
        QCOMPARE(qRound(angles->getCalculatedValue("Outer angle", rebuilt, unit).toDouble()), 270);
        QCOMPARE(unit, QString::fromUtf8("deg(\u00b0)"));
        const KxKernelObjectData* data = h->kernel->getObject(kAngleType, 1);
        QCOMPARE(angles->getCalculatedValue("Outer angle", data, unit).toDouble(), 270.0);
        QCOMPARE(angles->getCalculatedValue("Inner angle", data, unit).toDouble(), 90.0);
        QCOMPARE(angles->getCalculatedValueAsString("Outer angle", data), QString::fromUtf8("270 deg(\u00b0)"));
    }

    void storedValues_data()
    {
        QTest::addColumn<StoredValue>("value");
        const QPolygonF right = kRightNodes;
        QTest::newRow("right angle, inner") << StoredValue{right, "Inner angle", 90.0};
        QTest::newRow("right angle, outer") << StoredValue{right, "Outer angle", 270.0};
        // The other sense of the arms: the cross product turns the other way round.
        QTest::newRow("arms swapped") << StoredValue{polygon({{0, -25}, {0, -100}, {50, 0}, {200, 0}}), "Inner angle",
                                                     90.0};
        QTest::newRow("45 degrees") << StoredValue{polygon({{10, 0}, {40, 0}, {10, 10}, {40, 40}}), "Inner angle", 45.0};
        QTest::newRow("parallel") << StoredValue{polygon({{0, 0}, {100, 0}, {0, 50}, {100, 50}}), "Inner angle", 0.0};
        QTest::newRow("three nodes") << StoredValue{polygon({{0, 0}, {100, 0}, {0, 50}}), "Inner angle", {}};
        QTest::newRow("not a value name") << StoredValue{right, "Angle", {}};
    }

    void storedValues()
    {
        QFETCH(StoredValue, value);
        h->play(kTwoDrags);
        const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(kAngleType);
        KxParamKeyframeVector values = descr->createKeyframeVector();
        descr->setValue(values, QStringLiteral("nodes"), value.nodes);
        h->stack->push(new CmdChangeObject(kAngleType, 1, values, false));
        QString unit = QStringLiteral("stale");
        const QVariant degrees = angles->getCalculatedValue(value.name, h->kernel->getObject(kAngleType, 1), unit);
        QCOMPARE(degrees.isValid(), value.degrees.isValid());
        if (degrees.isValid())
            QVERIFY2(qAbs(degrees.toDouble() - value.degrees.toDouble()) < 1e-9, qPrintable(degrees.toString()));
        QCOMPARE(unit, degrees.isValid() ? QString::fromUtf8("deg(\u00b0)") : QString());
    }

    void undoRedoNodeDrag()
    {
        h->play(kTwoDrags);
        item(1)->setLabelPos(QPointF(200, 100));
        const QString before = angleState(1);
        // The outer node of the second arm, (100, 100), dragged along its line to (100, 140).
        h->play("p100,100 m100,120 m100,140 r100,140");
        QCOMPARE(h->stack->count(), 2);
        const QString after = "stored 100,200 [50,0 200,0 0,-15 0,-60] Inner angle; "
                              "item 100,200 [50,0 200,0 0,-15 0,-60] 90.000 Angle1";
        QCOMPARE(angleState(1), after);
        h->stack->undo();
        QCOMPARE(angleState(1), before);
        h->stack->redo();
        QCOMPARE(angleState(1), after);
    }

    void resolutionChange()
    {
        h->play(kTwoDrags);
        h->kernel->setCurrentImageSize(QSize(1280, 960));
        h->kernel->changeCameraResolution(QSize(640, 480));
        QCOMPARE(angleState(1), QStringLiteral("stored 50,100 [25,0 100,0 0,-12.5 0,-50] Inner angle; "
                                               "item 50,100 [25,0 100,0 0,-12.5 0,-50] 90.000 Angle1"));
        // Not a user's change, and the history held the old resolution's
        // geometry: it starts afresh.
        QCOMPARE(h->stack->count(), 0);
    }

    void panelOffersDegreesOnly()
    {
        QCOMPARE(h->panel->getUnitsToUse(), QList<int>{OvGuiMeasurementTool::UnitDeg});
        QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitDeg));
        QCOMPARE(h->panel->theTLUnit->text(), QString::fromUtf8("deg(\u00b0)"));
        QVERIFY(!h->panel->theSLUnitType->isEnabled());
        h->play(kTwoDrags);
        QCOMPARE(storedParam(1, "ut").toInt(), int(OvGuiMeasurementTool::UnitDeg));
    }

    // Checking a draw button makes its manipulator the editor's and unlights the others.
    void oneDrawButtonLitAtATime()
    {
        OvGsManipCircle circles(h->tool, h->panel, h->stack);
        struct Step { QToolButton* button; KxGsManipulator* manip; };
        const Step steps[] = { { h->panel->theRadiusButton, &circles }, { h->panel->theDistanceButton, h->manip },
                               { h->panel->theAngleButton, angles }, { h->panel->theRadiusButton, &circles } };
        for (const Step& step : steps) {
            step.button->click();
            QCOMPARE(h->editor->getOverrideManipulator(), step.manip);
            int count = 0;
            for (QToolButton* button : { h->panel->theDistanceButton, h->panel->theFreeFormButton,
                                         h->panel->theRadiusButton, h->panel->theAngleButton })
                count += button->isChecked() ? 1 : 0;
            QCOMPARE(count, 1);
            QVERIFY(step.button->isChecked());
        }
        h->editor->restoreOverrideManipulator();
    }

    void deactivateWhileDrawingDiscardsAngle()
    {
        h->play("p100,200 m300,200 r300,200 p100,280 r100,280");
        QPointer<OvGsAngle> drawn = angles->getInProgressAngle();
        QVERIFY(drawn);
        h->panel->theAngleButton->setChecked(false);
        QVERIFY(!angles->getInProgressAngle());
        QCOMPARE(angles->getActiveNode(), -1);
        QVERIFY(!h->editor->getCurrentObject());
        QVERIFY(storedIndices().isEmpty());
        QCOMPARE(h->stack->count(), 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!drawn);
        // Drawing again starts afresh.
        h->panel->theAngleButton->setChecked(true);
        h->play(kTwoDrags);
        QCOMPARE(storedIndices(), QList<int>{1});
    }
};

QTEST_MAIN(tst_ManipAngle)
#include "tst_manipangle.moc"
