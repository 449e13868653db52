#include "ManipTestHelper.h"

#include "CmdCreateObject.h"
#include "CmdRemoveObject.h"
#include "KxAppSettings.h"
#include "KxLocalMagnifier.h"
#include "OvDeviceSetManager.h"

#include <memory>

namespace {

const QString kLabelsVisible = QStringLiteral("MeasurementLabelsVisible");
const QString kMagnifierScale = QStringLiteral("MagnifierScale");
const QString kMagnifierSize = QStringLiteral("MagnifierSize");
const QString kUm = QString::fromUtf8(" \u03bcm");
const OvGsManipFrame::Measure kDegrees{ true, 42.0, false, 9 };

} // namespace

// Settings as stored (invalid: not set) and the magnifier they give.
struct Lens { QVariant scale, size; double usedScale; QSize usedSize; QPoint hotspot; };
Q_DECLARE_METATYPE(Lens)

// Another kind on the same frame: circles whose values are in degrees, an
// unconditional radius button, one squared unit, no tool-entry connections.
class ProbeManip : public OvGsManipFrame
{
    Q_OBJECT

public:
    ProbeManip(OvToolBase* aTool, OvGuiMeasurementTool* aPanel, QUndoStack* aStack)
        : OvGsManipFrame(aTool, aPanel, aStack, probeKind())
    {
        initFrame();
    }

    static Kind probeKind()
    {
        Kind kind;
        kind.context = "ProbeManip";
        kind.objectType = ManipTestHelper::kCircleType;
        kind.typeName = "Probe";
        kind.valueNames = { "Radius", "Diameter" };
        kind.geometryKey = "nodes";
        kind.geometryType = QMetaType::QPolygonF;
        kind.drawButton = RadiusButton;
        kind.units = { 9 };
        kind.squaredUnits = true;
        kind.removalSignal = SIGNAL(signalObjectBeforeRemove(const int, const int));
        kind.removalSlot = SLOT(slotObjectBeforeRemoveInKernel(const int, const int));
        kind.followsMediaAndTool = false;
        return kind;
    }

    int rebuilt = 0;

protected:
    KxGsObject* getInProgressItem() const override { return nullptr; }
    void forgetInProgressItem() override {}
    void objectCreatedInKernel(int aType, int anIdx, const KxKernelObjectData*) override
    {
        if (aType == getObjectType())
            gsObjectMap.insert(anIdx, new OvGsCircle(this, editor, QString(), true));
    }
    void objectChangedInKernel(int, int, const KxKernelObjectData*) override {}
    void recreateGraphicsObjects(QPoint, qint64, bool) override { ++rebuilt; }
    // Always 42 degrees.
    Measure measureItem(const QString&, const KxGsObject*) const override { return kDegrees; }
    Measure measureKeyframes(const QString&, const KxParamKeyframeVector&) const override { return kDegrees; }
};

class tst_ManipFrame : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;

    // Two stored lines: 1 from (100, 100) by (60, 80), 2 from (300, 100) by (0, 50).
    void drawTwoLines()
    {
        h->activate();
        h->play("p100,100 m160,180 r160,180 p300,100 m300,150 r300,150");
        QCOMPARE(h->storedIndices(), (QList<int>{1, 2}));
    }

    // What line anIdx shows of the style stored under aKey: colour, width, font
    // size, or the unit (3 when its value reads in mm, else 0).
    QVariant shown(int anIdx, const QString& aKey) const
    {
        OvGsDistance* line = h->item(anIdx);
        const int unit = line->getDisplayValue().endsWith(QLatin1String(" mm")) ? 3 : 0;
        return aKey == QLatin1String("color") ? QVariant(line->getColor())
             : aKey == QLatin1String("w")     ? QVariant(line->penWidth)
             : aKey == QLatin1String("fs")    ? QVariant(line->getLabelFontPixSize()) : QVariant(unit);
    }

private slots:
    void init() { h.reset(new ManipTestHelper()); }

    void cleanup()
    {
        h.reset();
        for (const QString& key : { kLabelsVisible, kMagnifierScale, kMagnifierSize })
            KxAppSettings::remove(key);
    }

    void activation_data()
    {
        QTest::addColumn<int>("freehandType");
        QTest::addColumn<bool>("owns");
        QTest::newRow("distance") << 0 << true;
        QTest::newRow("free line") << 1 << false;
        QTest::newRow("circle distance") << 4 << true;
        QTest::newRow("unknown variant") << 40 << false;
    }

    void activation()
    {
        QFETCH(int, freehandType);
        QFETCH(bool, owns);
        h->activate(freehandType);
        QCOMPARE(h->editor->getOverrideManipulator() == h->manip, owns);
        QCOMPARE(KxGsManipulator::isLocalMagnifier(), owns);
        if (owns) {
            QCOMPARE(h->panel->getUnitsToUse(), h->manip->getUnitsToUse());
            QVERIFY(!h->panel->isSquaredUnits());
            QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitAuto));
            QCOMPARE(h->editor->cursor().shape(), Qt::CrossCursor);
        }

        // Made the override manipulator by other means, it checks its button only
        // while the variant is its own.
        h->editor->restoreOverrideManipulator();
        h->panel->theDistanceButton->blockSignals(true);
        h->panel->theDistanceButton->setChecked(false);
        h->panel->theDistanceButton->blockSignals(false);
        h->editor->setOverrideManipulator(h->manip);
        QCOMPARE(h->panel->theDistanceButton->isChecked(), owns);
        h->editor->restoreOverrideManipulator();
        QVERIFY(!h->panel->theDistanceButton->isChecked());
        QVERIFY(!KxGsManipulator::isLocalMagnifier());
    }

    void styleChange_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("selection");
        // The step pushed: none, "plain" (a single change), or a macro's text.
        QTest::addColumn<QString>("command");

        // Selection: d = a stored distance line, c = a circle (another kind).
        const struct { const char* key; QVariant value; const char* text; } changes[] = {
            { "color", QColor(Qt::magenta), "Objects color change" },
            { "w", 9, "Objects width change" },
            { "fs", 28, "Objects font size change" },
            { "ut", int(OvGuiMeasurementTool::UnitMm), "Objects unit type change" },
        };
        for (const auto& change : changes) {
            const QString text = QString::fromLatin1(change.text);
            auto row = [&](const char* aName) {
                const QString name = change.key + QString::fromLatin1(aName);
                return &(QTest::newRow(qPrintable(name)) << change.key << change.value);
            };
            *row(" one line") << "d" << "plain";
            *row(" two lines") << "dd" << text;
            *row(" line and circle") << "dc" << text;
            *row(" one circle") << "c" << "";
            *row(" two circles") << "cc" << text;
            *row(" nothing") << "" << "";
        }
    }

    void styleChange()
    {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(QString, selection);
        QFETCH(QString, command);

        drawTwoLines();
        OvGsCircle* circles[] = { h->addCircle(QPointF(500, 300), 30), h->addCircle(QPointF(500, 400), 30) };
        const auto circleStyle = [&circles]() {
            return QVariantList{ circles[0]->getColor(), circles[1]->penWidth, circles[1]->getLabelFontPixSize() };
        };
        const QVariantList circlesBefore = circleStyle();
        h->editor->setCurrentObject(nullptr, false);
        int lines = 0;
        int circleCount = 0;
        for (const QChar kind : selection)
            h->editor->setCurrentObject(kind == QLatin1Char('d') ? static_cast<KxGsObject*>(h->item(++lines))
                                                                : circles[circleCount++], true);
        QCOMPARE(h->editor->getSelectedObjects().size(), selection.size());
        const QVariant before = h->storedParam(1, key);
        // As if the user had moved the unit slider on a panel offering the units.
        h->panel->setUnitsToUse(h->manip->getUnitsToUse(), false);
        h->panel->setCurrentUnit(OvGuiMeasurementTool::UnitMm);
        const int count = h->stack->count();

        if (key == QLatin1String("color"))
            emit h->panel->signalColorChanged(value.value<QColor>());
        else if (key == QLatin1String("w"))
            emit h->panel->signalWidthChanged(value.toInt());
        else if (key == QLatin1String("fs"))
            emit h->panel->signalFontValueChanged(value.toInt());
        else
            emit h->panel->signalUnitTypeChanged(value.toInt());

        QCOMPARE(h->stack->count(), count + (command.isEmpty() ? 0 : 1));
        const QString text = h->stack->text(count);
        QVERIFY2(command == QLatin1String("plain") ? !text.isEmpty() && !text.startsWith(QLatin1String("Objects"))
                                                   : text == command, qPrintable(text));
        for (int idx = 1; idx <= 2; ++idx) {
            QCOMPARE(h->storedParam(idx, key), idx <= lines ? value : before);
            QCOMPARE(shown(idx, key), idx <= lines ? value : before);
        }
        QCOMPARE(circleStyle(), circlesBefore);

        // One undo step takes every line back.
        if (!command.isEmpty()) {
            h->stack->undo();
            QCOMPARE(h->stack->index(), count);
            QCOMPARE(h->storedParam(1, key), before);
            QCOMPARE(h->storedParam(2, key), before);
        }
    }

    void panelFollowsCurrentObject()
    {
        h->activate();
        h->panel->setLineWidth(5);
        h->panel->setFontSize(20);
        h->panel->setColor(QColor(Qt::red));
        h->play("p100,100 r100,100");
        h->panel->setCurrentUnit(OvGuiMeasurementTool::UnitMm);
        h->play("h200,100 p200,100 r200,100 p100,300 m100,400 r100,400");
        QCOMPARE(h->storedParam(1, "ut").toInt(), int(OvGuiMeasurementTool::UnitMm));

        // Line 2 is current; showing line 1 brings its style and unit back.
        h->panel->setLineWidth(1);
        h->panel->setFontSize(40);
        h->panel->setColor(QColor(Qt::blue));
        h->editor->setCurrentObject(h->item(1), false);
        QCOMPARE(h->panelStyle(), (QVariantList{ 5, 20, QColor(Qt::red), int(OvGuiMeasurementTool::UnitMm) }));

        // An item that is not stored lends its style but not a unit.
        auto* loose = new OvGsDistance(h->manip, h->editor, QString(), QStringLiteral("loose"));
        loose->setPenStyle(Qt::SolidLine, 11);
        loose->setLabelFontPixSize(33);
        loose->setColor(QColor(Qt::green));
        h->editor->setCurrentObject(loose, false);
        QCOMPARE(h->panelStyle().mid(0, 3), (QVariantList{ 11, 33, QColor(Qt::green) }));
    }

    void labelsVisibleSetting_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("prefix");
        QTest::newRow("0 hides") << QVariant(0) << "";
        QTest::newRow("1 shows") << QVariant(1) << "Distance";
        QTest::newRow("-1 hides") << QVariant(-1) << "";
        QTest::newRow("text false hides") << QVariant(QStringLiteral("false")) << "";
        QTest::newRow("garbage shows") << QVariant(QStringLiteral("abc")) << "Distance";
    }

    void labelsVisibleSetting()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, prefix);
        drawTwoLines();
        KxAppSettings::setValues(QStringList{kLabelsVisible}, QList<QVariant>{value});
        QCOMPARE(h->item(1)->getName(), prefix + QLatin1Char('1'));
        QCOMPARE(h->item(2)->getName(), prefix + QLatin1Char('2'));
        QCOMPARE(h->item(1)->getDisplayValue(), "50.000" + kUm);
        h->play("p100,400 m150,400 r150,400");
        QCOMPARE(h->item(3)->getName(), prefix + QLatin1Char('3'));

        // Back to shown; another key alone renames nothing.
        KxAppSettings::setValues(QStringList{kLabelsVisible}, QList<QVariant>{1});
        QCOMPARE(h->item(2)->getName(), QStringLiteral("Distance2"));
        h->item(2)->setName(QStringLiteral("renamed"));
        KxAppSettings::setValues(QStringList{QStringLiteral("SomethingElse")}, QList<QVariant>{0});
        QCOMPARE(h->item(2)->getName(), QStringLiteral("renamed"));
    }

    void magnifierHotspot_data()
    {
        QTest::addColumn<Lens>("lens");
        const QSize size(180, 180);
        QTest::newRow("defaults") << Lens{{}, {}, 2.0, size, {110, 110}};
        QTest::newRow("scale 1.25 rounds the margin") << Lens{1.25, {}, 1.25, size, {103, 103}};
        QTest::newRow("odd size halves toward zero") << Lens{3.0, QSize(201, 99), 3.0, {201, 99}, {130, 79}};
        QTest::newRow("garbage scale") << Lens{QStringLiteral("big"), {}, 2.0, size, {110, 110}};
        QTest::newRow("garbage size") << Lens{4.0, QStringLiteral("wide"), 4.0, size, {130, 130}};
        QTest::newRow("negative scale") << Lens{-1.0, {}, 2.0, size, {110, 110}};
    }

    void magnifierHotspot()
    {
        QFETCH(Lens, lens);
        // Changed while the tool is inactive, the settings reach the next magnifier.
        if (lens.scale.isValid())
            KxAppSettings::setValue(kMagnifierScale, lens.scale);
        if (lens.size.isValid())
            KxAppSettings::setValue(kMagnifierSize, lens.size);

        h->activate();
        KxLocalMagnifier* magnifier = KxGsManipulator::localMagnifier();
        QVERIFY(magnifier);
        QCOMPARE(magnifier->getHotspot(), lens.hotspot);
        QCOMPARE(magnifier->getScale(), lens.usedScale);
        QCOMPARE(magnifier->getLensSize(), lens.usedSize);
        QVERIFY(magnifier->isRound());
        QVERIFY(magnifier->hasCrossHair());
    }

    void deviceSetFlags_data()
    {
        QTest::addColumn<int>("flags");
        QTest::addColumn<bool>("recomputed");
        // What the flags do to the tool entry is checked with the whole plug-in; here, the labels.
        QTest::newRow("0x200 recomputes labels") << 0x200 << true;
        QTest::newRow("0x400 recomputes labels") << 0x400 << true;
        QTest::newRow("0x100 is a camera change") << 0x100 << false;
        QTest::newRow("0x300 is a camera change only") << 0x300 << false;
        QTest::newRow("0x800 ignored") << 0x800 << false;
    }

    void deviceSetFlags()
    {
        QFETCH(int, flags);
        QFETCH(bool, recomputed);
        drawTwoLines();
        h->kernel->getMediaInfo().setUmPerPixel(1.0);
        emit OvDeviceSetManager::instance()->signalDeviceSetModified(flags);
        QCOMPARE(h->item(1)->getDisplayValue(), (recomputed ? "100.00" : "50.000") + kUm);
        QCOMPARE(h->item(2)->getDisplayValue(), (recomputed ? "50.000" : "25.000") + kUm);
    }

    void calculatedValuesWithForeignName()
    {
        drawTwoLines();
        const QStringList names{ QStringLiteral("Length"), QStringLiteral("Area"), QStringLiteral("Length") };
        QStringList units{ QStringLiteral("stale") };
        const QList<QVariant> values = h->manip->getCalculatedValues(names, h->stored(2), units);
        QCOMPARE(values, (QList<QVariant>{ 25.0, QVariant(), 25.0 }));
        QCOMPARE(units, (QStringList{ QString::fromUtf8("\u03bcm"), QString(), QString::fromUtf8("\u03bcm") }));

        QCOMPARE(h->manip->getCalculatedValues(names, nullptr, units), (QList<QVariant>{ {}, {}, {} }));
        QCOMPARE(units, (QStringList{ QString(), QString(), QString() }));
        QVERIFY(h->manip->getCalculatedValues(QStringList(), h->stored(1), units).isEmpty());
        QVERIFY(units.isEmpty());
    }

    void secondRegistrationIsInert()
    {
        OvGsManipDistance second(h->tool, h->panel, h->stack);
        QVERIFY(!second.isRegistered());
        QVERIFY(second.getUnitsToUse().isEmpty());
        QVERIFY(second.getAnimatedValueNames().isEmpty());
        QCOMPARE(h->kernel->getManipulator(ManipTestHelper::kDistanceType), static_cast<KxGsManipulator*>(h->manip));
        // Its settings handlers work all the same.
        KxAppSettings::setValue(kMagnifierScale, 4.0);
        QCOMPARE(second.getMagnifierScale(), 4.0);

        // Nothing else reaches it: the button activates the first one only, and
        // a width change gives one step.
        drawTwoLines();
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(h->manip));
        QVERIFY(!second.getInProgressDistance());
        h->editor->setCurrentObject(h->item(1), false);
        h->editor->setCurrentObject(h->item(2), true);
        emit h->panel->signalWidthChanged(4);
        QCOMPARE(h->stack->count(), 3);
    }

    void anotherKindOnTheFrame()
    {
        ProbeManip probe(h->tool, h->panel, h->stack);
        QVERIFY(probe.isRegistered());
        QCOMPARE(probe.getAnimatedValueNames(), (QStringList{ QStringLiteral("Radius"), QStringLiteral("Diameter") }));
        const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(ManipTestHelper::kCircleType);
        QCOMPARE(descr->getParamId(QStringLiteral("nodes")), 5);

        // Its button is its own under every distance variant; its units are squared.
        h->panel->freehandType = 2;
        h->panel->theRadiusButton->setChecked(true);
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(&probe));
        QCOMPARE(h->panel->getUnitsToUse(), QList<int>{9});
        QVERIFY(h->panel->isSquaredUnits());
        // Not connected to the tool entry's activation.
        h->tool->slotActivate(true);
        h->tool->slotActivate(false);
        QCOMPARE(h->editor->getOverrideManipulator(), static_cast<KxGsManipulator*>(&probe));

        // Its stored object: degrees whatever the stored unit, geometry rescaled by the default rule.
        KxParamKeyframeVector keyframes = descr->createKeyframeVector();
        keyframes[3].setValue(QPoint(11, 21));
        descr->setValue(keyframes, QStringLiteral("nodes"), QPolygonF(QVector<QPointF>{ {-3, 0}, {3.5, 1} }));
        descr->setValue(keyframes, QStringLiteral("ut"), int(OvGuiMeasurementTool::UnitMm));
        h->stack->push(new CmdCreateObject(ManipTestHelper::kCircleType, 1, new KxKernelObjectData(
                                               keyframes, descr->getKeyframeTypes(), false)));
        QString unit;
        const KxKernelObjectData* data = h->kernel->getObject(ManipTestHelper::kCircleType, 1);
        QCOMPARE(probe.getCalculatedValue(QStringLiteral("Diameter"), data, unit), QVariant(42.0));
        QCOMPARE(unit, h->panel->getUnitNameFromType(OvGuiMeasurementTool::UnitDeg));
        QCOMPARE(probe.getCalculatedValueAsString(QStringLiteral("Radius"), probe.getGsObject(1)),
                 QStringLiteral("42.000 ") + unit);
        // The distance manipulator leaves items of other kinds alone.
        QCOMPARE(h->manip->getGsObjectFlags(probe.getGsObject(1)), 0);

        h->kernel->setCurrentImageSize(QSize(100, 100));
        h->kernel->changeCameraResolution(QSize(200, 100));
        const KxParamKeyframeVector scaled = data->getDefaultKeyframes();
        QCOMPARE(scaled[3].getValue().toPoint(), QPoint(22, 42));
        QCOMPARE(descr->getValue(scaled, QStringLiteral("nodes")).value<QPolygonF>(),
                 QPolygonF(QVector<QPointF>{ {-6, 0}, {7, 2} }));
        QCOMPARE(probe.rebuilt, 1);

        // Removal reaches it before the object goes (the camera change
        // started the history afresh, so a removal command does it).
        h->stack->push(new CmdRemoveObject(ManipTestHelper::kCircleType, 1));
        QVERIFY(!probe.getGsObject(1));
    }
};

QTEST_MAIN(tst_ManipFrame)
#include "tst_manipframe.moc"
