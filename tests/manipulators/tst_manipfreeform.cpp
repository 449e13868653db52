#include "ManipTestHelper.h"

#include "CmdChangeObject.h"
#include "CmdCreateObject.h"
#include "KxMediaInfo.h"
#include "KxView.h"
#include "OvGsFreeForm.h"
#include "OvGsManipFreeForm.h"
#include "OvGsManipFreeLine.h"

#include <QMenu>
#include <memory>

namespace {

const int kFormType = 66655;
const int kLineType = 66755;
const QString kMicro = QString::fromUtf8("\u03bcm");
// The 100 x 100 square at (100, 100), drawn by a drag.
const QString kSquareDrag = QStringLiteral("p100,100 m200,100 m200,200 m100,200 r100,200");

QString xy(const QPointF& aPoint)
{
    return QStringLiteral("%1,%2").arg(aPoint.x()).arg(aPoint.y());
}

QString nodesText(const QPolygonF& aNodes)
{
    QStringList points;
    for (const QPointF& node : aNodes)
        points << xy(node);
    return points.join(QLatin1Char(' '));
}

QPolygonF polygon(const QVector<QPointF>& aPoints)
{
    return QPolygonF(aPoints);
}

} // namespace

// With the free form ("form") or the free line ("line") after `script`: the stored
// shapes' positions and nodes ("100,100: 0,0 100,0 ...", one per shape, ";"-separated),
// and the shape still being drawn in the same form ("" when none).
struct Gesture { QString kind, script, stored, drawing; };
Q_DECLARE_METATYPE(Gesture)

// The square drawn as `kind` at `umPerPixel` with `panelUnit`: value `name` of the
// item (value, unit name and text) and the text of the stored object.
struct Value { QString kind; double umPerPixel; int panelUnit; QString name; QVariant value; QString unit, text; };
Q_DECLARE_METATYPE(Value)

class tst_ManipFreeForm : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;
    OvGsManipFreeForm* form = nullptr;
    OvGsManipFreeLine* line = nullptr;

    OvGsManipFreeForm* manip(const QString& aKind) const
    {
        return aKind == QLatin1String("line") ? line : form;
    }
    int typeOf(const QString& aKind) const { return manip(aKind)->getObjectType(); }
    void activate(const QString& aKind)
    {
        if (aKind == QLatin1String("line"))
            h->activate(1);
        else
            h->panel->theFreeFormButton->setChecked(true);
    }
    const KxKernelObjectDataDescr* descr(int aType) const { return h->kernel->getDataDescriptor(aType); }
    QVariant storedParam(int aType, int anIdx, const QString& aName) const
    {
        const KxKernelObjectData* data = h->kernel->getObject(aType, anIdx);
        return data ? descr(aType)->getValue(data->getDefaultKeyframes(), aName) : QVariant();
    }
    OvGsFreeForm* item(const QString& aKind, int anIdx) const
    {
        return static_cast<OvGsFreeForm*>(manip(aKind)->getGsObject(anIdx));
    }
    // Every stored shape of the kind as "pos: nodes", from the kernel.
    QString storedShapes(const QString& aKind) const
    {
        QStringList shapes;
        const int type = typeOf(aKind);
        for (int idx : h->kernel->getObjectsOfType(type).keys())
            shapes << xy(storedParam(type, idx, "pos").toPoint()) + QStringLiteral(": ")
                          + nodesText(storedParam(type, idx, "nodes").value<QPolygonF>());
        return shapes.join(QStringLiteral("; "));
    }
    // A shape on the editor: type, position, nodes, style, name.
    static QString itemState(const OvGsFreeForm* anItem)
    {
        if (!anItem)
            return QStringLiteral("-");
        return QStringLiteral("%1 at %2: %3; %4 w%5 %6 fs%7 %8")
            .arg(anItem->type())
            .arg(xy(anItem->pos()), nodesText(anItem->nodes), anItem->getColor().name())
            .arg(anItem->penWidth)
            .arg(anItem->penStyle == Qt::SolidLine ? "solid" : "dashed")
            .arg(anItem->getLabelFontPixSize())
            .arg(anItem->getName());
    }
    // Free-form items on the editor, stored or not.
    int shapeItems() const
    {
        int count = 0;
        for (KxGsObject* obj : h->editor->getAllChildGsObjects())
            count += qobject_cast<OvGsFreeForm*>(obj) ? 1 : 0;
        return count;
    }
    void pushNodes(int aType, int anIdx, const QVariant& aNodes)
    {
        KxParamKeyframeVector values = descr(aType)->createKeyframeVector();
        values[0].setValue(true);
        values[1].setValue(QColor(Qt::green));
        values[2].setValue(manip(aType == kLineType ? "line" : "form")->getAnimatedValueNames().value(0));
        values[3].setValue(QPoint(50, 60));
        values[4].setValue(false);
        descr(aType)->setValue(values, QStringLiteral("nodes"), aNodes);
        descr(aType)->setValue(values, QStringLiteral("w"), 3);
        descr(aType)->setValue(values, QStringLiteral("fs"), 18);
        descr(aType)->setValue(values, QStringLiteral("ut"), 0);
        h->stack->push(new CmdCreateObject(aType, anIdx,
                                           new KxKernelObjectData(values, descr(aType)->getKeyframeTypes(), false)));
    }

    static void addKindRows()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("free form") << "form";
        QTest::newRow("free line") << "line";
    }

private slots:
    void init()
    {
        h.reset(new ManipTestHelper());
        // In the plug-in's order: the free line's slots run after the free form's.
        form = new OvGsManipFreeForm(h->tool, h->panel, h->stack);
        line = new OvGsManipFreeLine(h->tool, h->panel, h->stack);
        QVERIFY(form->isRegistered() && line->isRegistered());
    }

    void cleanup()
    {
        h->editor->restoreOverrideManipulator();
        h->editor->setCurrentObject(nullptr, false);
        h->stack->clear();
        delete line;
        delete form;
        h.reset();
    }

    void gestures_data()
    {
        QTest::addColumn<Gesture>("gesture");
        const QString square = QStringLiteral("100,100: 0,0 100,0 100,100 0,100");
        QTest::newRow("form: press, drag, release") << Gesture{"form", kSquareDrag, square, ""};
        QTest::newRow("form: click, move, click")
            << Gesture{"form", "p100,100 r100,100 h200,100 h200,200 h100,200 p100,200 r100,200", square, ""};
        QTest::newRow("form: moves within 10 add nothing") << Gesture{"form", "p100,100 m105,105 m109,100", "", "100,100: "};
        QTest::newRow("form: 9 units then release places one node that grows")
            << Gesture{"form", "p100,100 m109,100 r109,100 h150,100 h150,150", "", "109,100: 0,0 41,0 41,50"};
        QTest::newRow("form: exactly 10 away starts the nodes")
            << Gesture{"form", "p100,100 m106,108", "", "100,100: 0,0 6,8"};
        QTest::newRow("form: a second press while drawing does nothing")
            << Gesture{"form", "p100,100 r100,100 h160,100 h160,160 p160,160", "", "100,100: 0,0 60,0 60,60"};
        QTest::newRow("form: moves within the last node's pixel add nothing")
            << Gesture{"form", "p100,100 m120,100 m120,100 m100,100 m100,100 m101,100", "", "100,100: 0,0 20,0 0,0 1,0"};
        QTest::newRow("form: a drag past the picture's edge stays on it")
            << Gesture{"form", "p600,100 m700,100 m700,520 r700,520", "600,100: 0,0 40,0 40,380", ""};
        QTest::newRow("form: two nodes are stored too") << Gesture{"form", "p100,100 m150,100 r150,100",
                                                                   "100,100: 0,0 50,0", ""};
        QTest::newRow("form: right button starts nothing") << Gesture{"form", "P100,100 h150,100", "", ""};
        QTest::newRow("line: press, drag, release") << Gesture{"line", kSquareDrag, square, ""};
        QTest::newRow("line: click, move, click")
            << Gesture{"line", "p100,100 r100,100 h200,100 h200,200 h100,200 p100,200 r100,200", square, ""};
        QTest::newRow("line: two shapes") << Gesture{"line", "p10,10 m40,10 r40,10 p10,50 m10,90 r10,90",
                                                     "10,10: 0,0 30,0; 10,50: 0,0 0,40", ""};
    }

    void gestures()
    {
        QFETCH(Gesture, gesture);
        activate(gesture.kind);
        h->play(gesture.script);
        QCOMPARE(storedShapes(gesture.kind), gesture.stored);
        OvGsFreeForm* drawn = manip(gesture.kind)->getInProgressShape();
        QCOMPARE(drawn ? xy(drawn->pos()) + QStringLiteral(": ") + nodesText(drawn->nodes) : QString(),
                 gesture.drawing);
        const int stored = gesture.stored.isEmpty() ? 0 : gesture.stored.count(QLatin1Char(';')) + 1;
        QCOMPARE(shapeItems(), stored + (drawn ? 1 : 0));
        if (drawn) {
            // Open and dashed while drawn, and the editor's current object.
            QCOMPARE(drawn->type(), kLineType);
            QCOMPARE(drawn->penStyle, Qt::DashLine);
            QCOMPARE(h->editor->getCurrentObject(), drawn);
            QVERIFY(KxGsManipulator::isLocalMagnifier());
        }
        if (stored > 0) {
            const OvGsFreeForm* last = item(gesture.kind, stored);
            QCOMPARE(last->type(), typeOf(gesture.kind));
            QCOMPARE(last->penStyle, Qt::SolidLine);
            QVERIFY(last->isTrashAllowed());
            QCOMPARE(h->stack->count(), stored);
        }
    }

    void values_data()
    {
        QTest::addColumn<Value>("value");
        const QString um2 = kMicro + QChar(0x00B2);
        QTest::newRow("form area") << Value{"form", 0.5, 0, "Area", 2500.0, um2, "2500.0 " + um2};
        QTest::newRow("form perimeter") << Value{"form", 0.5, 0, "Length", 200.0, kMicro, "200.00 " + kMicro};
        QTest::newRow("form area in mm") << Value{"form", 0.5, 3, "Area", 0.0025, QString::fromUtf8("mm\u00b2"),
                                                  QString::fromUtf8("2.500\u221910 \u0304\u00b3 mm\u00b2")};
        QTest::newRow("line: three sides") << Value{"line", 0.5, 0, "Length", 150.0, kMicro, "150.00 " + kMicro};
        QTest::newRow("line has no area") << Value{"line", 0.5, 0, "Area", {}, "", ""};
        QTest::newRow("form: uncalibrated area is 0")
            << Value{"form", 0.0, 0, "Area", 0.0, QString::fromUtf8("nm\u00b2"), QString::fromUtf8("0 nm\u00b2")};
        QTest::newRow("form: uncalibrated perimeter") << Value{"form", 0.0, 0, "Length", {}, "", ""};
        QTest::newRow("line: uncalibrated") << Value{"line", 0.0, 0, "Length", {}, "", ""};
        QTest::newRow("names are case-sensitive") << Value{"form", 0.5, 0, "area", {}, "", ""};
    }

    void values()
    {
        QFETCH(Value, value);
        activate(value.kind);
        h->kernel->setMediaCalibration(value.umPerPixel);
        h->play(kSquareDrag);
        OvGsManipFreeForm* m = manip(value.kind);
        OvGsFreeForm* shape = item(value.kind, 1);
        const KxKernelObjectData* data = h->kernel->getObject(typeOf(value.kind), 1);
        QVERIFY(shape && data);
        h->panel->setCurrentUnit(value.panelUnit);

        QString unit = QStringLiteral("stale");
        const QVariant measured = m->getCalculatedValue(value.name, shape, unit);
        QCOMPARE(measured.isValid(), value.value.isValid());
        QVERIFY2(!measured.isValid() || qFuzzyCompare(1.0 + measured.toDouble(), 1.0 + value.value.toDouble()),
                 qPrintable(measured.toString()));
        QCOMPARE(unit, value.unit);
        QCOMPARE(m->getCalculatedValueAsString(value.name, shape), value.text);
        // The stored object was made with the automatic unit.
        QString storedUnit;
        const QVariant stored = m->getCalculatedValue(value.name, data, storedUnit);
        QCOMPARE(stored.isValid(), value.value.isValid());
        QCOMPARE(m->getCalculatedValueAsString(value.name, data).isEmpty(), value.text.isEmpty());
        h->kernel->setMediaCalibration(0.5);
    }

    void labelsAsDrawn()
    {
        // A free form being drawn is open, of the free-line type: it shows no value.
        activate("form");
        h->play("p100,100 m200,100 m200,200 m100,200");
        OvGsFreeForm* drawn = form->getInProgressShape();
        QCOMPARE(drawn->getDisplayValue(), QString());
        h->play("r100,200");
        QCOMPARE(item("form", 1)->getDisplayValue(), QString("2500.0 " + kMicro + QChar(0x00B2)));

        // A free line shows its length from the third node on.
        activate("line");
        h->play("p300,100 m400,100");
        QCOMPARE(line->getInProgressShape()->getDisplayValue(), QString());
        h->play("m400,200");
        QCOMPARE(line->getInProgressShape()->getDisplayValue(), QString("100.00 " + kMicro));
        h->play("r400,200");
        QCOMPARE(item("line", 1)->getDisplayValue(), QString("100.00 " + kMicro));
    }

    void fewerThanThreeNodes()
    {
        activate("form");
        h->play("p100,100 m150,100 r150,100");
        const KxKernelObjectData* data = h->kernel->getObject(kFormType, 1);
        QStringList units;
        const QList<QVariant> values = form->getCalculatedValues({ "Area", "Length", "Nothing" }, data, units);
        QCOMPARE(values, (QList<QVariant>{ QVariant(), QVariant(), QVariant() }));
        QCOMPARE(units, (QStringList{ "", "", "" }));
        QCOMPARE(item("form", 1)->getDisplayValue(), QString());
    }

    void squaredUnitsWhileFreeFormIsCurrent()
    {
        activate("form");
        QVERIFY(h->panel->isSquaredUnits());
        h->play("p100,100 m200,100 m200,200");
        QVERIFY(h->panel->isSquaredUnits());
        h->play("r200,200");
        QCOMPARE(h->editor->getCurrentObject(), item("form", 1));
        QVERIFY(h->panel->isSquaredUnits());
        QCOMPARE(h->panel->theTLUnit->text(), QStringLiteral("auto"));
        // The user picks mm for the triangle: its area follows, in mm².
        h->panel->setCurrentUnit(OvGuiMeasurementTool::UnitMm);
        Q_EMIT h->panel->signalUnitTypeChanged(OvGuiMeasurementTool::UnitMm);
        QCOMPARE(storedParam(kFormType, 1, "ut").toInt(), int(OvGuiMeasurementTool::UnitMm));
        QCOMPARE(item("form", 1)->getDisplayValue(), QString::fromUtf8("1.250\u221910 \u0304\u00b3 mm\u00b2"));

        // A free line drawn next: plain units while it is current.
        activate("line");
        QVERIFY(!h->panel->isSquaredUnits());
        h->play("p300,100 m400,100 m400,200");
        QVERIFY(!h->panel->isSquaredUnits());
        // While it is drawn the panel names its unit.
        QCOMPARE(h->panel->theTLUnit->text(), QStringLiteral("auto"));
        h->play("r400,200");
        QVERIFY(!h->panel->isSquaredUnits());

        // Choosing the free form again shows its unit, squared.
        h->editor->setCurrentObject(item("form", 1), false);
        QVERIFY(h->panel->isSquaredUnits());
        QCOMPARE(h->panel->theTLUnit->text(), QString::fromUtf8("mm\u00b2"));

        // Activating the free-form tool while it is current brings its mm² back.
        h->panel->setCurrentUnit(OvGuiMeasurementTool::UnitNm);
        h->panel->theFreeFormButton->setChecked(true);
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(form));
        QVERIFY(h->panel->isSquaredUnits());
        QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitMm));
        QCOMPARE(h->panel->theTLUnit->text(), QString::fromUtf8("mm\u00b2"));
        // With nothing current it starts from the automatic unit.
        h->panel->theFreeFormButton->setChecked(false);
        h->editor->setCurrentObject(nullptr, false);
        h->panel->theFreeFormButton->setChecked(true);
        QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitAuto));
    }

    void buttonsChooseTheTool()
    {
        QMenu* menu = h->panel->theDistanceButton->menu();
        QVERIFY(menu);
        QAction* freeLineEntry = nullptr;
        for (QAction* action : menu->actions())
            if (action->data().toInt() == 1)
                freeLineEntry = action;
        QVERIFY(freeLineEntry);
        freeLineEntry->trigger();
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(line));
        h->panel->theFreeFormButton->click();
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(form));
        QVERIFY(!h->panel->theDistanceButton->isChecked());
        h->panel->theFreeFormButton->click();
        QVERIFY(!h->editor->getOverrideManipulator());
        // Back on the distance button's free-line variant.
        h->panel->theDistanceButton->click();
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(line));
        QVERIFY(!h->panel->theFreeFormButton->isChecked());
    }

    void storedNodesShownRounded_data()
    {
        QTest::addColumn<QVariant>("nodes");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("area");
        QTest::newRow("fractions round half away from zero")
            << QVariant::fromValue(polygon({ { 0, 0 }, { 10.4, 0.6 }, { 20.5, 30.49 }, { -0.5, 12.5 } }))
            << "0,0 10,1 21,30 0,13" << "69.000 " + kMicro + QChar(0x00B2);
        QTest::newRow("whole numbers as a QPolygon")
            << QVariant::fromValue(QPolygon(QVector<QPoint>{ { 0, 0 }, { 20, 0 }, { 20, 10 } }))
            << "0,0 20,0 20,10" << "25.000 " + kMicro + QChar(0x00B2);
        QTest::newRow("not a number is left out, no value")
            << QVariant::fromValue(polygon({ { 0, 0 }, { qQNaN(), 5 }, { 20, 0 }, { 20, 10 } }))
            << "0,0 20,0 20,10" << "";
        QTest::newRow("a huge node is left out, no value")
            << QVariant::fromValue(polygon({ { 0, 0 }, { 1e300, 5 }, { 20, 0 }, { 20, 10 } }))
            << "0,0 20,0 20,10" << "";
        QTest::newRow("not a polygon") << QVariant(QStringLiteral("garbage")) << "" << "";
    }

    void storedNodesShownRounded()
    {
        QFETCH(QVariant, nodes);
        QFETCH(QString, shown);
        QFETCH(QString, area);
        pushNodes(kFormType, 4, nodes);
        OvGsFreeForm* shape = item("form", 4);
        QVERIFY(shape);
        QCOMPARE(shape->type(), kFormType);
        QCOMPARE(shape->pos(), QPointF(50, 60));
        QCOMPARE(nodesText(shape->nodes), shown);
        QCOMPARE(form->getCalculatedValueAsString("Area", h->kernel->getObject(kFormType, 4)), area);
        // The store keeps what it was given until the shape is written back.
        QCOMPARE(storedParam(kFormType, 4, "nodes").userType(), nodes.userType());
        if (nodes.userType() != QMetaType::QPolygonF)
            return;
        form->gsObjectChangedShape(shape);
        QCOMPARE(nodesText(storedParam(kFormType, 4, "nodes").value<QPolygonF>()), shown);
        h->stack->undo();
        QCOMPARE(storedParam(kFormType, 4, "nodes"), nodes);
    }

    void undoRedo_data() { addKindRows(); }

    void undoRedo()
    {
        QFETCH(QString, kind);
        const QString drawn = QStringLiteral("%1 at 100,100: 0,0 100,0 100,100 0,100; #ff0000 w4 solid fs20 %2")
                                  .arg(typeOf(kind)).arg(kind == "form" ? "Free form1" : "LEN1");
        h->panel->setLineWidth(4);
        h->panel->setFontSize(20);
        h->panel->setColor(QColor(Qt::red));
        h->kernel->getCurrentView()->setOrigin(QPoint(7, -3));
        activate(kind);
        h->play(kSquareDrag);
        const int type = typeOf(kind);
        QCOMPARE(itemState(item(kind, 1)), drawn);
        const QPointF labelPos = item(kind, 1)->getLabelPos();
        // The label sits below and right of the nodes.
        QCOMPARE(labelPos, QPointF(100, 100));
        const QVariantList params{ storedParam(type, 1, "pos"), storedParam(type, 1, "valueName"),
                                   storedParam(type, 1, "w"), storedParam(type, 1, "fs"), storedParam(type, 1, "ut") };
        QCOMPARE(params, (QVariantList{ QPoint(107, 97), manip(kind)->getAnimatedValueNames().value(0), 4, 20, 0 }));
        const KxKernelObjectDataDescr* d = descr(type);
        QVERIFY(d->getParamId("nodes") == 5 && d->getParamDescr(5).keyframeType == ParamDescr::KeyframeAnimated);
        QCOMPARE(h->stack->undoText(), QStringLiteral("Add %1 1").arg(kind == "form" ? "Free form" : "LEN"));

        QSignalSpy indexSpy(h->stack, &QUndoStack::indexChanged);
        h->stack->undo();
        QVERIFY(storedShapes(kind).isEmpty());
        QCOMPARE(shapeItems(), 0);
        h->stack->redo();
        QCOMPARE(indexSpy.count(), 2);
        // Rebuilt from the store as it was drawn, not current.
        QCOMPARE(itemState(item(kind, 1)), drawn);
        QCOMPARE(item(kind, 1)->getLabelPos(), labelPos);
        QCOMPARE(shapeItems(), 1);
        QVERIFY(h->editor->getCurrentObject() != item(kind, 1));
        // Deleted and brought back as it was.
        h->editor->setCurrentObject(item(kind, 1), false);
        h->editor->deleteSelected();
        QVERIFY(storedShapes(kind).isEmpty());
        QCOMPARE(h->stack->undoText(), QStringLiteral("Delete %1 1").arg(kind == "form" ? "Free form" : "LEN"));
        h->stack->undo();
        QCOMPARE(itemState(item(kind, 1)), drawn);
        h->kernel->getCurrentView()->setOrigin(QPoint());
    }

    void secondClickOnAnotherLabelFinishes()
    {
        activate("form");
        h->play(kSquareDrag);
        OvGsFreeForm* first = item("form", 1);
        const QPointF labelPos = first->getLabelPos();
        const QPoint onLabel = first->mapToParent(first->getLabelRect().center()).toPoint();
        // Click, move, click, the last click on the first shape's label.
        h->play(QStringLiteral("p%1,%2 r%1,%2 h%3,%2").arg(onLabel.x()).arg(onLabel.y() - 60).arg(onLabel.x() + 60));
        h->play(QStringLiteral("h%1,%2 p%1,%2 r%1,%2").arg(onLabel.x()).arg(onLabel.y()));
        QCOMPARE(h->kernel->getObjectsOfType(kFormType).size(), 2);
        QVERIFY(!form->getInProgressShape());
        QCOMPARE(first->getLabelPos(), labelPos);
    }

    void resolutionChange()
    {
        // Stored at (101, 51) with nodes (0, 0), (61, 0), (61, 33).
        activate("form");
        h->play("p101,51 m162,51 m162,84 r162,84");
        h->kernel->setCurrentImageSize(QSize(1280, 960));
        h->kernel->changeCameraResolution(QSize(640, 480));
        // The position is rounded, the stored nodes are not; the item shows them rounded.
        QCOMPARE(storedShapes("form"), QStringLiteral("51,26: 0,0 30.5,0 30.5,16.5"));
        QCOMPARE(itemState(item("form", 1)).section(';', 0, 0), QStringLiteral("66655 at 51,26: 0,0 31,0 31,17"));
        // The history held the old resolution's geometry: it starts afresh.
        QCOMPARE(h->stack->count(), 0);
    }

    void kernelChangeUpdatesItemAndPanel()
    {
        activate("form");
        h->play(kSquareDrag);
        const KxKernelObjectDataDescr* d = descr(kFormType);
        KxParamKeyframeVector values = d->createKeyframeVector();
        values[1].setValue(QColor(Qt::yellow));
        values[3].setValue(QPoint(20, 30));
        d->setValue(values, QStringLiteral("nodes"), QVariant::fromValue(polygon({ { 0, 0 }, { 10.6, 0 }, { 0, 10 } })));
        d->setValue(values, QStringLiteral("ut"), int(OvGuiMeasurementTool::UnitNm));
        h->stack->push(new CmdChangeObject(kFormType, 1, values, false));
        QCOMPARE(itemState(item("form", 1)), QStringLiteral("66655 at 20,30: 0,0 11,0 0,10; #ffff00 w2 solid fs16 Free form1"));
        QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitNm));
        QCOMPARE(h->panel->theTLUnit->text(), QString::fromUtf8("nm\u00b2"));
        h->stack->undo();
        QCOMPARE(itemState(item("form", 1)).section(';', 0, 0), QStringLiteral("66655 at 100,100: 0,0 100,0 100,100 0,100"));
    }

    void frameRecreation_data()
    {
        QTest::addColumn<bool>("video");
        QTest::addColumn<bool>("force");
        QTest::addColumn<QString>("atFrame10");
        // Stored with a key frame at frame 10; the item's nodes replaced by hand.
        QTest::newRow("animated shape follows the frames") << true << false << "66755 at 40,50: 0,0 5,0 5,5";
        QTest::newRow("still shape stays") << false << false << "66755 at 100,100: 0,0 1,1";
        QTest::newRow("still shape re-applied when forced") << false << true << "66755 at 100,100: 0,0 100,0 100,100 0,100";
    }

    void frameRecreation()
    {
        QFETCH(bool, video);
        QFETCH(bool, force);
        QFETCH(QString, atFrame10);
        h->kernel->getMediaInfo().setVideoFile(video);
        activate("line");
        h->play(kSquareDrag);
        OvGsFreeForm* shape = item("line", 1);
        KxKernelObjectData* data = h->kernel->getObject(kLineType, 1);
        QCOMPARE(data->animated, video);
        const KxKernelObjectDataDescr* d = descr(kLineType);
        KxParamKeyframeVector values = d->createKeyframeVector();
        values[3].setValue(QPoint(40, 50));
        d->setValue(values, QStringLiteral("nodes"), QVariant::fromValue(polygon({ { 0, 0 }, { 5.2, 0 }, { 5, 4.7 } })));
        values.setFrameNumber(10);
        data->update(values);

        KxGsManipulator::theCurrentViewAnimated = force;
        shape->setNodes(polygon({ { 0, 0 }, { 1, 1 } }));
        h->kernel->setCurrentFrame(10);
        QCOMPARE(itemState(shape).section(';', 0, 0), atFrame10);
        KxGsManipulator::theCurrentViewAnimated = false;
        h->kernel->setCurrentFrame(0);
        h->kernel->getMediaInfo().setVideoFile(false);
    }

    void deactivateWhileDrawingDiscardsShape_data() { addKindRows(); }

    void deactivateWhileDrawingDiscardsShape()
    {
        QFETCH(QString, kind);
        activate(kind);
        h->play("p100,100 r100,100 h150,120");
        QPointer<OvGsFreeForm> shape = manip(kind)->getInProgressShape();
        QVERIFY(shape);
        if (kind == QLatin1String("form"))
            h->panel->theFreeFormButton->setChecked(false);
        else
            h->panel->theDistanceButton->setChecked(false);
        QVERIFY(!manip(kind)->getInProgressShape());
        QVERIFY(!h->editor->getCurrentObject());
        QVERIFY(!KxGsManipulator::isLocalMagnifier());
        QCOMPARE(h->stack->count(), 0);
        QCOMPARE(shapeItems(), 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!shape);
    }
};

QTEST_MAIN(tst_ManipFreeForm)
#include "tst_manipfreeform.moc"
