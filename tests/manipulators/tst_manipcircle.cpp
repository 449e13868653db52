#include "ManipTestHelper.h"
#include "OvDeviceSetManager.h"
#include "OvGsManipCircle.h"

#include <QPolygonF>

#include <memory>

// With the panel in radius mode or not, after `script`: how many circles are stored,
// the last one's stored centre and nodes, and the circle still being drawn, if any
// (its node count, centre and radius).
struct Gesture { bool radius; QString script; int stored; QPoint centre; QPolygonF nodes;
                 int drawingNodes; QPointF drawnPos; double drawnRadius; };
Q_DECLARE_METATYPE(Gesture)

namespace {

const int kCircleType = ManipTestHelper::kCircleType;
// Three presses with the mouse moved between them: centre (140, 101), radius about 40.01.
const QString kThreeClicks = "p100,100 r100,100 h130,140 p130,140 r130,140 h180,100 p180,100 r180,100";
const QPolygonF kThreeClickNodes(QVector<QPointF>{ { -40, -1 }, { -10, 39 }, { 40, -1 } });

} // namespace

class tst_ManipCircle : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;
    OvGsManipCircle* circles = nullptr;

    QList<int> storedIndices() const { return h->kernel->getObjectsOfType(kCircleType).keys(); }
    QVariant storedParam(int anIdx, const QString& aName) const
    {
        const KxKernelObjectData* data = h->kernel->getObject(kCircleType, anIdx);
        return data ? h->kernel->getDataDescriptor(kCircleType)->getValue(data->getDefaultKeyframes(), aName)
                    : QVariant();
    }
    OvGsCircle* item(int anIdx) const { return static_cast<OvGsCircle*>(circles->getGsObject(anIdx)); }
    // Circle anIdx in the kernel and on the editor, for whole-state comparisons.
    QString circleState(int anIdx) const
    {
        const auto xy = [](const QPointF& aPoint) { return QStringLiteral("%1,%2").arg(aPoint.x()).arg(aPoint.y()); };
        const auto list = [&xy](const QVector<QPointF>& aNodes) {
            QStringList texts;
            for (const QPointF& node : aNodes)
                texts << xy(node);
            return texts.join(QLatin1Char(' '));
        };
        const OvGsCircle* circle = item(anIdx);
        return QStringLiteral("stored %1 [%2] %3; item %4 [%5] r%6 %7")
            .arg(xy(storedParam(anIdx, "pos").toPoint()), list(storedParam(anIdx, "nodes").value<QPolygonF>()),
                 storedParam(anIdx, "valueName").toString(), circle ? xy(circle->pos()) : QStringLiteral("-"),
                 circle ? list(circle->nodes) : QString(), circle ? QString::number(circle->radius, 'f', 2) : QString(),
                 circle ? circle->getName() : QString());
    }
    QList<OvGsCircle*> circleItems() const
    {
        QList<OvGsCircle*> items;
        for (KxGsObject* obj : h->editor->getAllChildGsObjects())
            if (obj->type() == kCircleType)
                items.append(static_cast<OvGsCircle*>(obj));
        return items;
    }

private slots:
    void init()
    {
        h.reset(new ManipTestHelper());
        circles = new OvGsManipCircle(h->tool, h->panel, h->stack);
        h->panel->radiusMode = true;
        h->panel->theRadiusButton->setChecked(true);
    }

    void cleanup()
    {
        h->editor->restoreOverrideManipulator();
        h->editor->setCurrentObject(nullptr, false);
        h->stack->clear();
        delete circles;
        h.reset();
    }

    void gestures_data()
    {
        QTest::addColumn<Gesture>("gesture");
        QTest::newRow("three clicks") << Gesture{true, kThreeClicks, 1, {140, 101}, kThreeClickNodes, 0, {}, 0};
        QTest::newRow("third node on the second: circle on the diameter")
            << Gesture{true, "p100,100 r100,100 h130,140 p130,140 r130,140", 0, {}, {}, 3, {115, 120}, 25.0};
        QTest::newRow("drag after the second press finishes at its release")
            << Gesture{true, "p100,100 r100,100 h130,140 p130,140 m180,100 r180,100", 1, {140, 101},
                       kThreeClickNodes, 0, {}, 0};
        QTest::newRow("release within 10 of the second press keeps drawing")
            << Gesture{true, "p100,100 r100,100 h130,140 p130,140 m139,149 r139,149", 0, {}, {}, 3, {}, -1};
        QTest::newRow("dragged diameter: the release adds the third node")
            << Gesture{true, "p100,100 m130,140 r130,140", 0, {}, {}, 3, {115, 120}, 25.0};
        QTest::newRow("drag under 10 in x and y adds no node")
            << Gesture{true, "p100,100 m109,109 r109,109", 0, {}, {}, 2, {100, 100}, 0.0};
        // A horizontal diameter: moving the third node off it gives no new centre, so
        // the circle stays on the diameter and only the node moves.
        QTest::newRow("horizontal diameter, third node moved off it")
            << Gesture{true, "p100,100 m160,100 r160,100 h130,150 p130,150 r130,150", 1, {130, 100},
                       QPolygonF(QVector<QPointF>{ { -30, 0 }, { 30, 0 }, { 0, 50 } }), 0, {}, 0};
        QTest::newRow("diameter mode") << Gesture{false, kThreeClicks, 1, {140, 101}, kThreeClickNodes, 0, {}, 0};
        QTest::newRow("right button starts nothing") << Gesture{true, "P100,100 h150,100", 0, {}, {}, 0, {}, 0};
    }

    void gestures()
    {
        QFETCH(Gesture, gesture);
        h->panel->radiusMode = gesture.radius;
        h->play(gesture.script);
        QCOMPARE(storedIndices().size(), gesture.stored);
        if (gesture.stored > 0) {
            QCOMPARE(storedParam(1, "pos").toPoint(), gesture.centre);
            QCOMPARE(storedParam(1, "nodes").value<QPolygonF>(), gesture.nodes);
            QCOMPARE(storedParam(1, "valueName").toString(), gesture.radius ? "Radius" : "Diameter");
            QCOMPARE(item(1)->getDisplayValue().left(1), gesture.radius ? "R" : "D");
            QCOMPARE(item(1)->penStyle, Qt::SolidLine);
        }
        OvGsCircle* drawn = circles->getInProgressCircle();
        QCOMPARE(drawn ? drawn->nodes.size() : 0, gesture.drawingNodes);
        if (drawn) {
            if (gesture.drawnRadius >= 0) {
                QCOMPARE(drawn->pos(), gesture.drawnPos);
                QCOMPARE(drawn->radius, gesture.drawnRadius);
            }
            QCOMPARE(drawn->penStyle, Qt::DashLine);
            QCOMPARE(h->editor->getCurrentObject(), drawn);
            QVERIFY(circles->getObjectIdx(drawn) < 0);
        }
        QCOMPARE(circleItems().size(), gesture.stored + (drawn ? 1 : 0));
    }

    void undoRedoCreation_data()
    {
        QTest::addColumn<bool>("radiusMode");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("state");
        QTest::newRow("three clicks") << true << kThreeClicks
                                      << "stored 140,101 [-40,-1 -10,39 40,-1] Radius; "
                                         "item 140,101 [-40,-1 -10,39 40,-1] r40.01 Circle1";
        QTest::newRow("diameter comes back as diameter") << false << kThreeClicks
                                      << "stored 140,101 [-40,-1 -10,39 40,-1] Diameter; "
                                         "item 140,101 [-40,-1 -10,39 40,-1] r40.01 Circle1";
        // No fit finds this circle again from its nodes: it comes back as stored.
        QTest::newRow("horizontal diameter") << true << "p100,100 m160,100 r160,100 h130,150 p130,150 r130,150"
                                             << "stored 130,100 [-30,0 30,0 0,50] Radius; "
                                                "item 130,100 [-30,0 30,0 0,50] r30.00 Circle1";
    }

    void undoRedoCreation()
    {
        QFETCH(bool, radiusMode);
        QFETCH(QString, script);
        QFETCH(QString, state);
        h->panel->radiusMode = radiusMode;
        h->panel->setColor(QColor(Qt::red));
        h->panel->setLineWidth(4);
        h->play(script);
        QCOMPARE(h->stack->count(), 1);
        QCOMPARE(h->stack->undoText(), QStringLiteral("Add Circle 1"));
        QCOMPARE(circleState(1), state);
        OvGsCircle* drawn = item(1);
        const QVariantList style{ drawn->getColor(), drawn->penWidth, drawn->getLabelFontPixSize(), drawn->radiusMode };
        QCOMPARE(style, (QVariantList{ QColor(Qt::red), 4, 16, radiusMode }));
        QCOMPARE(storedParam(1, "w").toInt(), 4);

        QSignalSpy indexSpy(h->stack, &QUndoStack::indexChanged);
        h->stack->undo();
        QVERIFY(storedIndices().isEmpty());
        QVERIFY(circleItems().isEmpty());
        h->stack->redo();
        QCOMPARE(indexSpy.count(), 2);
        QCOMPARE(circleState(1), state);
        OvGsCircle* rebuilt = item(1);
        QVERIFY(rebuilt != drawn);
        QCOMPARE((QVariantList{ rebuilt->getColor(), rebuilt->penWidth, rebuilt->getLabelFontPixSize(),
                                rebuilt->radiusMode }), style);
        QCOMPARE(circleItems(), QList<OvGsCircle*>{rebuilt});
    }

    void undoRedoReshape()
    {
        h->play(kThreeClicks);
        item(1)->setLabelPos(QPointF(0, 200));
        const QString before = circleState(1);
        // Node 2 at (180, 100) dragged down by 10 through the editor.
        h->play("p180,100 m180,110 r180,110");
        QCOMPARE(h->stack->count(), 2);
        const QString after = circleState(1);
        QVERIFY(after != before);
        QCOMPARE(item(1)->pos() + item(1)->nodes.at(2), QPointF(180, 110));
        QCOMPARE(after.section(';', 0, 0).section(' ', 1, 1), after.section(';', 1, 1).section(' ', 2, 2));
        h->stack->undo();
        QCOMPARE(circleState(1), before);
        h->stack->redo();
        QCOMPARE(circleState(1), after);
    }

    void resolutionChangeHalves()
    {
        h->play(kThreeClicks);
        h->kernel->setCurrentImageSize(QSize(1280, 960));
        h->kernel->changeCameraResolution(QSize(640, 480));
        QCOMPARE(circleState(1), QStringLiteral("stored 70,51 [-20,-0.5 -5,19.5 20,-0.5] Radius; "
                                                "item 70,51 [-20,-0.5 -5,19.5 20,-0.5] r20.01 Circle1"));
        // Not a user's change, and the history held the old resolution's
        // geometry: it starts afresh.
        QCOMPARE(h->stack->count(), 0);
    }

    void values_data()
    {
        QTest::addColumn<double>("umPerPixel");
        QTest::addColumn<int>("panelUnit");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("itemText");
        QTest::addColumn<QString>("storedText");
        // A circle of radius 25 (the diameter-rule circle on (100,100)-(130,140)), stored in auto.
        QTest::newRow("radius, auto") << 0.5 << 0 << "Radius" << "12.500 \u03bcm" << "12.500 \u03bcm";
        QTest::newRow("diameter in mm") << 0.5 << 3 << "Diameter" << "25.00\u221910 \u0304\u00b3 mm"
                                        << "25.000 \u03bcm";
        QTest::newRow("uncalibrated") << 0.0 << 0 << "Radius" << "" << "";
        QTest::newRow("not a value name") << 0.5 << 0 << "Area" << "" << "";
    }

    void values()
    {
        QFETCH(double, umPerPixel);
        QFETCH(int, panelUnit);
        QFETCH(QString, name);
        QFETCH(QString, itemText);
        QFETCH(QString, storedText);
        h->kernel->setMediaCalibration(umPerPixel);
        h->play("p100,100 m130,140 r130,140 p130,140 r130,140");
        QCOMPARE(item(1)->radius, 25.0);
        h->panel->setCurrentUnit(panelUnit);
        QCOMPARE(circles->getCalculatedValueAsString(name, item(1)), itemText);
        QCOMPARE(circles->getCalculatedValueAsString(name, h->kernel->getObject(kCircleType, 1)), storedText);
        QStringList units;
        const QList<QVariant> values
            = circles->getCalculatedValues({ name, "Radius" }, h->kernel->getObject(kCircleType, 1), units);
        QCOMPARE(values.size(), 2);
        QCOMPARE(units.size(), 2);
        QCOMPARE(values.first().isValid(), !storedText.isEmpty());
    }

    void circleDistanceBetweenRealCircles()
    {
        h->play(kThreeClicks);                                              // centre (140, 101), radius 40
        h->play("p400,200 m500,200 r500,200 h450,260 p450,260 r450,260");   // centre (450, 200), radius 50
        QCOMPARE(storedIndices(), (QList<int>{1, 2}));
        item(1)->setLabelPos(QPointF(0, 200));
        item(2)->setLabelPos(QPointF(0, 200));
        h->activate(4);
        QVERIFY(!h->panel->theRadiusButton->isChecked());
        // Presses on the circles pick them instead of moving them.
        h->play("p145,105 r145,105 h455,195 p455,195 r455,195");
        QCOMPARE(h->storedIndices(), QList<int>{1});
        QCOMPARE(h->storedPos(1), QPoint(140, 101));
        QCOMPARE(h->storedLen(1), QPoint(310, 99));
        QCOMPARE(circleState(1).section(';', 0, 0), QStringLiteral("stored 140,101 [-40,-1 -10,39 40,-1] Radius"));
        QCOMPARE(h->stack->count(), 3);
        // Without the circle-distance variant a press on a circle's rim is the
        // circle's again (inside it, a drawing tool starts a new measurement).
        h->activate(0);
        h->play("p168,129 m178,139 r178,139");
        QCOMPARE(storedParam(1, "pos").toPoint(), QPoint(150, 111));
        QCOMPARE(h->storedIndices(), QList<int>{1});
    }

    void unitChangeKeepsEachCirclesValueName()
    {
        h->panel->radiusMode = false;
        h->play(kThreeClicks);
        h->panel->setCurrentUnit(3);
        Q_EMIT h->panel->signalUnitTypeChanged(3);
        QCOMPARE(storedParam(1, "ut").toInt(), 3);
        QCOMPARE(item(1)->getDisplayValue(), QString::fromUtf8("D40.01\u221910 \u0304\u00b3 mm"));
        // A label refresh keeps showing the diameter.
        h->kernel->setMediaCalibration(1.0);
        Q_EMIT OvDeviceSetManager::instance()->signalDeviceSetModified(OvDeviceSetManager::FlagCalibrationChanged);
        QCOMPARE(item(1)->getDisplayValue(), QString::fromUtf8("D80.02\u221910 \u0304\u00b3 mm"));
    }
};

QTEST_MAIN(tst_ManipCircle)
#include "tst_manipcircle.moc"
