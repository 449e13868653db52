#include "ManipTestHelper.h"

#include "CmdCreateObject.h"
#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxLocalMagnifier.h"
#include "KxMediaInfo.h"
#include "OvCamera.h"
#include "OvDeviceSetManager.h"
#include "OvGsCircle.h"
#include "OvGsDistance.h"
#include "OvGsManipDistance.h"
#include "OvGuiMeasurementTool.h"
#include "OvToolBase.h"

#include <QColorDialog>
#include <QSignalBlocker>
#include <QTest>
#include <QToolButton>
#include <QUndoStack>

#include <memory>

namespace {

const QString kLabelsVisible = QStringLiteral("MeasurementLabelsVisible");
const QString kMagnifierScale = QStringLiteral("MagnifierScale");
const QString kMagnifierSize = QStringLiteral("MagnifierSize");

QString micro(const char* aNumber)
{
    return QString::fromLatin1(aNumber) + QString::fromUtf8(" \u03bcm");
}

} // namespace

// Another kind on the same frame: circles whose "values" are in degrees, an
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
    Measure measureItem(const QString&, const KxGsObject*) const override { return Measure{ true, 42.0, false, 9 }; }
    Measure measureKeyframes(const QString&, const KxParamKeyframeVector&) const override
    {
        return Measure{ true, 42.0, false, 9 };
    }
};

class tst_ManipFrame : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void kindConstants();
    void activation_data();
    void activation();
    void styleChange_data();
    void styleChange();
    void panelFollowsCurrentObject();
    void labelsVisibleSetting_data();
    void labelsVisibleSetting();
    void magnifierHotspot_data();
    void magnifierHotspot();
    void deviceSetFlags_data();
    void deviceSetFlags();
    void calculatedValuesWithForeignName();
    void secondRegistrationIsInert();
    void anotherKindOnTheFrame();

private:
    // Two stored lines: 1 from (100, 100) by (60, 80), 2 from (300, 100) by (0, 50).
    void drawTwoLines();

    std::unique_ptr<ManipTestHelper> h;
};

void tst_ManipFrame::init()
{
    h.reset(new ManipTestHelper());
}

void tst_ManipFrame::cleanup()
{
    h.reset();
    for (const QString& key : { kLabelsVisible, kMagnifierScale, kMagnifierSize })
        KxAppSettings::remove(key);
}

void tst_ManipFrame::drawTwoLines()
{
    h->activate();
    h->drag(QPointF(100, 100), QPointF(160, 180));
    h->drag(QPointF(300, 100), QPointF(300, 150));
    QCOMPARE(h->storedIndices(), (QList<int>{1, 2}));
}

void tst_ManipFrame::kindConstants()
{
    OvGsManipDistance* manip = h->manip;
    QVERIFY(manip->isRegistered());
    QCOMPARE(manip->getObjectType(), 66653);
    QCOMPARE(manip->getObjectTypeNames(), QStringList{QStringLiteral("Distance")});
    QCOMPARE(manip->getObjectTypeName(-5), QStringLiteral("Distance"));
    QCOMPARE(manip->getAnimatedValueNames(), QStringList{QStringLiteral("Length")});
    QCOMPARE(manip->getCursor().shape(), Qt::CrossCursor);
    QCOMPARE(manip->getUnitsToUse(), (QList<int>{0, 1, 2, 5, 3, 4, 6, 7, 8}));
    QCOMPARE(h->kernel->getManipulator(66653), static_cast<KxGsManipulator*>(manip));
    QCOMPARE(manip->getGsObjectFlags(nullptr), 0x69D);
    QCOMPARE(manip->getGsObjectFlags(new OvGsDistance(manip, h->editor, QString(), QStringLiteral("probe"))), 1693);
    QCOMPARE(manip->getGsObjectFlags(h->addCircle(QPointF(50, 50), 10)), 0);

    const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(66653);
    QVERIFY(descr);
    QCOMPARE(descr->getParamCount(), 9);
    const struct { int id; const char* name; QMetaType::Type type; ParamDescr::KeyframeType keyframes; } params[] = {
        { 5, "len", QMetaType::QPoint, ParamDescr::KeyframeAnimated },
        { 6, "w", QMetaType::Int, ParamDescr::KeyframeConstant },
        { 7, "fs", QMetaType::Int, ParamDescr::KeyframeConstant },
        { 8, "ut", QMetaType::Int, ParamDescr::KeyframeConstant },
    };
    for (const auto& param : params) {
        QCOMPARE(descr->getParamId(QString::fromLatin1(param.name)), param.id);
        QCOMPARE(descr->getParamDescr(param.id).type, param.type);
        QCOMPARE(descr->getParamDescr(param.id).keyframeType, param.keyframes);
    }
}

void tst_ManipFrame::activation_data()
{
    QTest::addColumn<int>("freehandType");
    QTest::addColumn<bool>("owns");

    QTest::newRow("distance") << 0 << true;
    QTest::newRow("free line") << 1 << false;
    QTest::newRow("multiple distance") << 2 << false;
    QTest::newRow("parallel distance") << 3 << false;
    QTest::newRow("circle distance") << 4 << true;
    QTest::newRow("unknown variant") << 40 << false;
}

void tst_ManipFrame::activation()
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
        QCOMPARE(KxGsManipulator::localMagnifier()->getHotspot(), QPoint(110, 110));
        QCOMPARE(KxGsManipulator::localMagnifier()->getLensSize(), QSize(180, 180));
    }

    // Made the override manipulator by other means, it checks its button only
    // while the variant is its own.
    h->editor->restoreOverrideManipulator();
    {
        const QSignalBlocker blocker(h->panel->theDistanceButton);
        h->panel->theDistanceButton->setChecked(false);
    }
    h->editor->setOverrideManipulator(h->manip);
    QCOMPARE(h->panel->theDistanceButton->isChecked(), owns);
    h->editor->restoreOverrideManipulator();
    QVERIFY(!h->panel->theDistanceButton->isChecked());
    QVERIFY(!KxGsManipulator::isLocalMagnifier());
}

void tst_ManipFrame::styleChange_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("selection");
    QTest::addColumn<int>("steps");
    QTest::addColumn<QString>("macroText");

    // Selection: d = a stored distance line, c = a circle (another kind).
    const struct { const char* change; const char* text; } changes[] = {
        { "color", "Objects color change" },
        { "width", "Objects width change" },
        { "font", "Objects font size change" },
        { "unit", "Objects unit type change" },
    };
    for (const auto& change : changes) {
        const QString name = QString::fromLatin1(change.change);
        const QString text = QString::fromLatin1(change.text);
        QTest::newRow(qPrintable(name + " one line")) << name << "d" << 1 << QString();
        QTest::newRow(qPrintable(name + " two lines")) << name << "dd" << 1 << text;
        QTest::newRow(qPrintable(name + " line and circle")) << name << "dc" << 1 << text;
        QTest::newRow(qPrintable(name + " one circle")) << name << "c" << 0 << QString();
        QTest::newRow(qPrintable(name + " two circles")) << name << "cc" << 1 << text;
        QTest::newRow(qPrintable(name + " nothing")) << name << "" << 0 << QString();
    }
}

void tst_ManipFrame::styleChange()
{
    QFETCH(QString, change);
    QFETCH(QString, selection);
    QFETCH(int, steps);
    QFETCH(QString, macroText);

    drawTwoLines();
    OvGsCircle* circles[] = { h->addCircle(QPointF(500, 300), 30), h->addCircle(QPointF(500, 400), 30) };
    const QColor circleColor = circles[0]->getColor();
    const int circleWidth = circles[0]->penWidth;
    const int circleFont = circles[0]->getLabelFontPixSize();

    h->editor->setCurrentObject(nullptr, false);
    int lines = 0;
    int circleCount = 0;
    for (const QChar kind : selection) {
        KxGsObject* obj = kind == QLatin1Char('d') ? static_cast<KxGsObject*>(h->item(++lines))
                                                     : circles[circleCount++];
        h->editor->setCurrentObject(obj, true);
    }
    QCOMPARE(h->editor->getSelectedObjects().size(), selection.size());
    const QColor lineColor = h->storedParam(1, "color").value<QColor>();
    // As if the user had moved the unit slider on a panel offering the units.
    h->panel->setUnitsToUse(h->manip->getUnitsToUse(), false);
    h->panel->setCurrentUnit(OvGuiMeasurementTool::UnitMm);
    const int before = h->stack->count();

    if (change == QLatin1String("color"))
        emit h->panel->signalColorChanged(QColor(Qt::magenta));
    else if (change == QLatin1String("width"))
        emit h->panel->signalWidthChanged(9);
    else if (change == QLatin1String("font"))
        emit h->panel->signalFontValueChanged(28);
    else
        emit h->panel->signalUnitTypeChanged(OvGuiMeasurementTool::UnitMm);

    QCOMPARE(h->stack->count(), before + steps);
    if (!macroText.isEmpty())
        QCOMPARE(h->stack->text(h->stack->count() - 1), macroText);
    else if (steps)
        QVERIFY(!h->stack->text(h->stack->count() - 1).startsWith(QLatin1String("Objects")));

    for (int idx = 1; idx <= 2; ++idx) {
        OvGsDistance* line = h->item(idx);
        const bool changed = idx <= lines;
        if (change == QLatin1String("color")) {
            QCOMPARE(h->storedParam(idx, "color").value<QColor>() == QColor(Qt::magenta), changed);
            QCOMPARE(line->getColor() == QColor(Qt::magenta), changed);
        } else if (change == QLatin1String("width")) {
            QCOMPARE(h->storedParam(idx, "w").toInt(), changed ? 9 : 2);
            QCOMPARE(line->penWidth, changed ? 9 : 2);
            QCOMPARE(line->penStyle, Qt::SolidLine);
        } else if (change == QLatin1String("font")) {
            QCOMPARE(h->storedParam(idx, "fs").toInt(), changed ? 28 : 16);
            QCOMPARE(line->getLabelFontPixSize(), changed ? 28 : 16);
        } else {
            QCOMPARE(h->storedParam(idx, "ut").toInt(), changed ? 3 : 0);
            if (changed)
                QCOMPARE(line->getDisplayValue(), idx == 1 ? QString::fromUtf8("50.00\u221910 \u0304\u00b3 mm")
                                                           : QString::fromUtf8("25.00\u221910 \u0304\u00b3 mm"));
        }
    }
    for (OvGsCircle* circle : circles) {
        QCOMPARE(circle->getColor(), circleColor);
        QCOMPARE(circle->penWidth, circleWidth);
        QCOMPARE(circle->getLabelFontPixSize(), circleFont);
    }

    // One undo step takes every line back.
    if (steps) {
        h->stack->undo();
        QCOMPARE(h->stack->count(), before + steps);
        QCOMPARE(h->stack->index(), before);
        for (int idx = 1; idx <= 2; ++idx) {
            QCOMPARE(h->storedParam(idx, "color").value<QColor>(), lineColor);
            QCOMPARE(h->storedParam(idx, "w").toInt(), 2);
            QCOMPARE(h->storedParam(idx, "fs").toInt(), 16);
            QCOMPARE(h->storedParam(idx, "ut").toInt(), 0);
        }
    }
}

void tst_ManipFrame::panelFollowsCurrentObject()
{
    h->activate();
    h->panel->setLineWidth(5);
    h->panel->setFontSize(20);
    h->panel->setColor(QColor(Qt::red));
    h->press(QPointF(100, 100));
    h->release(QPointF(100, 100));
    h->panel->setCurrentUnit(OvGuiMeasurementTool::UnitMm);
    h->hover(QPointF(200, 100));
    h->press(QPointF(200, 100));
    h->release(QPointF(200, 100));
    QCOMPARE(h->storedParam(1, "ut").toInt(), int(OvGuiMeasurementTool::UnitMm));
    h->drag(QPointF(100, 300), QPointF(100, 400));

    // Line 2 is current; showing line 1 brings its style and unit back.
    h->panel->setLineWidth(1);
    h->panel->setFontSize(40);
    h->panel->setColor(QColor(Qt::blue));
    h->editor->setCurrentObject(h->item(1), false);
    QCOMPARE(h->panel->getUnitsToUse(), h->manip->getUnitsToUse());
    QCOMPARE(h->panel->getLineWidth(), 5);
    QCOMPARE(h->panel->getFontSize(), 20);
    QCOMPARE(h->panel->getColor(), QColor(Qt::red));
    QCOMPARE(h->panel->getCurrentUnit(), int(OvGuiMeasurementTool::UnitMm));

    // An item that is not stored lends its style but not a unit.
    auto* loose = new OvGsDistance(h->manip, h->editor, QString(), QStringLiteral("loose"));
    loose->setPenStyle(Qt::SolidLine, 11);
    loose->setLabelFontPixSize(33);
    loose->setColor(QColor(Qt::green));
    h->editor->setCurrentObject(loose, false);
    QCOMPARE(h->panel->getLineWidth(), 11);
    QCOMPARE(h->panel->getFontSize(), 33);
    QCOMPARE(h->panel->getColor(), QColor(Qt::green));
}

void tst_ManipFrame::labelsVisibleSetting_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("prefix");

    QTest::newRow("0 hides") << QVariant(0) << "";
    QTest::newRow("1 shows") << QVariant(1) << "Distance";
    QTest::newRow("5 shows") << QVariant(5) << "Distance";
    QTest::newRow("-1 hides") << QVariant(-1) << "";
    QTest::newRow("text false hides") << QVariant(QStringLiteral("false")) << "";
    QTest::newRow("text true shows") << QVariant(QStringLiteral("true")) << "Distance";
    QTest::newRow("garbage shows") << QVariant(QStringLiteral("abc")) << "Distance";
}

void tst_ManipFrame::labelsVisibleSetting()
{
    QFETCH(QVariant, value);
    QFETCH(QString, prefix);

    drawTwoLines();
    KxAppSettings::setValues(QStringList{kLabelsVisible}, QList<QVariant>{value});
    QCOMPARE(h->item(1)->getName(), prefix + QLatin1Char('1'));
    QCOMPARE(h->item(2)->getName(), prefix + QLatin1Char('2'));
    QCOMPARE(h->item(1)->getDisplayValue(), micro("50.000"));

    h->drag(QPointF(100, 400), QPointF(150, 400));
    QCOMPARE(h->item(3)->getName(), prefix + QLatin1Char('3'));

    // Back to shown; another key alone renames nothing.
    KxAppSettings::setValues(QStringList{kLabelsVisible}, QList<QVariant>{1});
    QCOMPARE(h->item(2)->getName(), QStringLiteral("Distance2"));
    h->item(2)->setName(QStringLiteral("renamed"));
    KxAppSettings::setValues(QStringList{QStringLiteral("SomethingElse")}, QList<QVariant>{0});
    QCOMPARE(h->item(2)->getName(), QStringLiteral("renamed"));
}

void tst_ManipFrame::magnifierHotspot_data()
{
    QTest::addColumn<QVariant>("scale");
    QTest::addColumn<QVariant>("size");
    QTest::addColumn<double>("usedScale");
    QTest::addColumn<QSize>("usedSize");
    QTest::addColumn<QPoint>("hotspot");

    QTest::newRow("defaults") << QVariant() << QVariant() << 2.0 << QSize(180, 180) << QPoint(110, 110);
    QTest::newRow("scale 2.0 size 180") << QVariant(2.0) << QVariant(QSize(180, 180)) << 2.0 << QSize(180, 180)
                                        << QPoint(110, 110);
    QTest::newRow("scale 1.25 rounds the margin") << QVariant(1.25) << QVariant() << 1.25 << QSize(180, 180)
                                                  << QPoint(103, 103);
    QTest::newRow("odd size halves toward zero") << QVariant(3.0) << QVariant(QSize(201, 99)) << 3.0
                                                 << QSize(201, 99) << QPoint(130, 79);
    QTest::newRow("garbage scale") << QVariant(QStringLiteral("big")) << QVariant() << 2.0 << QSize(180, 180)
                                   << QPoint(110, 110);
    QTest::newRow("garbage size") << QVariant(4.0) << QVariant(QStringLiteral("wide")) << 4.0 << QSize(180, 180)
                                  << QPoint(130, 130);
    QTest::newRow("negative scale") << QVariant(-1.0) << QVariant() << 2.0 << QSize(180, 180) << QPoint(110, 110);
}

void tst_ManipFrame::magnifierHotspot()
{
    QFETCH(QVariant, scale);
    QFETCH(QVariant, size);
    QFETCH(double, usedScale);
    QFETCH(QSize, usedSize);
    QFETCH(QPoint, hotspot);

    // Changed while the tool is inactive, the settings reach the next magnifier.
    if (scale.isValid())
        KxAppSettings::setValue(kMagnifierScale, scale);
    if (size.isValid())
        KxAppSettings::setValue(kMagnifierSize, size);
    QCOMPARE(h->manip->getMagnifierScale(), usedScale);
    QCOMPARE(h->manip->getMagnifierSize(), usedSize);
    QCOMPARE(h->manip->getMagnifierHotspot(), hotspot);

    h->activate();
    KxLocalMagnifier* magnifier = KxGsManipulator::localMagnifier();
    QVERIFY(magnifier);
    QCOMPARE(magnifier->getHotspot(), hotspot);
    QCOMPARE(magnifier->getScale(), usedScale);
    QCOMPARE(magnifier->getLensSize(), usedSize);
    QVERIFY(magnifier->isRound());
    QVERIFY(magnifier->hasCrossHair());
}

void tst_ManipFrame::deviceSetFlags_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<bool>("camera");
    QTest::addColumn<int>("source");
    QTest::addColumn<bool>("enabledBefore");
    QTest::addColumn<bool>("enabledAfter");
    QTest::addColumn<bool>("recomputed");

    QTest::newRow("0x100 with camera enables") << 0x100 << true << 0 << false << true << false;
    QTest::newRow("0x80 live picture without camera disables") << 0x80 << false << 51 << true << false << false;
    QTest::newRow("0x100 file without camera leaves it") << 0x100 << false << 0 << true << true << false;
    QTest::newRow("0x100 file without camera stays off") << 0x100 << false << 0 << false << false << false;
    QTest::newRow("0x200 recomputes labels") << 0x200 << true << 0 << true << true << true;
    QTest::newRow("0x400 recomputes labels") << 0x400 << false << 0 << true << true << true;
    QTest::newRow("0x300 is a camera change only") << 0x300 << true << 0 << false << true << false;
    QTest::newRow("0x800 ignored") << 0x800 << true << 0 << false << false << false;
}

void tst_ManipFrame::deviceSetFlags()
{
    QFETCH(int, flags);
    QFETCH(bool, camera);
    QFETCH(int, source);
    QFETCH(bool, enabledBefore);
    QFETCH(bool, enabledAfter);
    QFETCH(bool, recomputed);

    drawTwoLines();
    QCOMPARE(h->item(1)->getDisplayValue(), micro("50.000"));
    OvDeviceSetManager* devices = OvDeviceSetManager::instance();
    OvCamera cam(QStringLiteral("cam"), QSize(1280, 960));
    {
        const QSignalBlocker blocker(devices);
        devices->setActiveCamera(camera ? &cam : nullptr);
    }
    h->kernel->getMediaInfo().setParameter(KxMediaInfo::MetaImageSource, source);
    h->kernel->getMediaInfo().setUmPerPixel(1.0);
    h->tool->setEnabled(enabledBefore, false);

    emit devices->signalDeviceSetModified(flags);

    QCOMPARE(h->tool->isEnabled(), enabledAfter);
    QCOMPARE(h->item(1)->getDisplayValue(), recomputed ? micro("100.00") : micro("50.000"));
    QCOMPARE(h->item(2)->getDisplayValue(), recomputed ? micro("50.000") : micro("25.000"));
    {
        const QSignalBlocker blocker(devices);
        devices->setActiveCamera(nullptr);
    }
    h->kernel->getMediaInfo().setParameter(KxMediaInfo::MetaImageSource, 0);
}

void tst_ManipFrame::calculatedValuesWithForeignName()
{
    drawTwoLines();
    const QStringList names{ QStringLiteral("Length"), QStringLiteral("Area"), QStringLiteral("Length") };
    QStringList units{ QStringLiteral("stale") };
    const QList<QVariant> values = h->manip->getCalculatedValues(names, h->stored(2), units);
    QCOMPARE(values.size(), 3);
    QCOMPARE(units, (QStringList{ QString::fromUtf8("\u03bcm"), QString(), QString::fromUtf8("\u03bcm") }));
    QCOMPARE(values.at(0).toDouble(), 25.0);
    QVERIFY(!values.at(1).isValid());
    QCOMPARE(values.at(2).toDouble(), 25.0);

    const QList<QVariant> none = h->manip->getCalculatedValues(names, nullptr, units);
    QCOMPARE(none.size(), 3);
    for (const QVariant& value : none)
        QVERIFY(!value.isValid());
    QCOMPARE(units, (QStringList{ QString(), QString(), QString() }));
    QVERIFY(h->manip->getCalculatedValues(QStringList(), h->stored(1), units).isEmpty());
    QVERIFY(units.isEmpty());
}

void tst_ManipFrame::secondRegistrationIsInert()
{
    OvGsManipDistance second(h->tool, h->panel, h->stack);
    QVERIFY(!second.isRegistered());
    QVERIFY(second.getUnitsToUse().isEmpty());
    QVERIFY(second.getAnimatedValueNames().isEmpty());
    QCOMPARE(h->kernel->getManipulator(66653), static_cast<KxGsManipulator*>(h->manip));

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
    const int before = h->stack->count();
    emit h->panel->signalWidthChanged(4);
    QCOMPARE(h->stack->count(), before + 1);
}

void tst_ManipFrame::anotherKindOnTheFrame()
{
    ProbeManip probe(h->tool, h->panel, h->stack);
    QVERIFY(probe.isRegistered());
    QCOMPARE(probe.getAnimatedValueNames(), (QStringList{ QStringLiteral("Radius"), QStringLiteral("Diameter") }));
    QCOMPARE(h->kernel->getDataDescriptor(ManipTestHelper::kCircleType)->getParamId(QStringLiteral("nodes")), 5);

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
    const KxKernelObjectDataDescr* descr = h->kernel->getDataDescriptor(ManipTestHelper::kCircleType);
    KxParamKeyframeVector keyframes = descr->createKeyframeVector();
    keyframes[3].setValue(QPoint(11, 21));
    descr->setValue(keyframes, QStringLiteral("nodes"), QPolygonF(QVector<QPointF>{ QPointF(-3, 0), QPointF(3.5, 1) }));
    descr->setValue(keyframes, QStringLiteral("ut"), int(OvGuiMeasurementTool::UnitMm));
    h->stack->push(new CmdCreateObject(ManipTestHelper::kCircleType, 1, new KxKernelObjectData(
                                           keyframes, descr->getKeyframeTypes(), false)));
    QString unit;
    const KxKernelObjectData* data = h->kernel->getObject(ManipTestHelper::kCircleType, 1);
    QCOMPARE(probe.getCalculatedValue(QStringLiteral("Diameter"), data, unit), QVariant(42.0));
    QCOMPARE(unit, h->panel->getUnitNameFromType(OvGuiMeasurementTool::UnitDeg));
    QCOMPARE(probe.getCalculatedValueAsString(QStringLiteral("Radius"), probe.getGsObject(1)),
             QStringLiteral("42.000 ") + unit);

    h->kernel->setCurrentImageSize(QSize(100, 100));
    h->kernel->changeCameraResolution(QSize(200, 100));
    const KxParamKeyframeVector scaled = data->getDefaultKeyframes();
    QCOMPARE(scaled[3].getValue().toPoint(), QPoint(22, 42));
    QCOMPARE(descr->getValue(scaled, QStringLiteral("nodes")).value<QPolygonF>(),
             QPolygonF(QVector<QPointF>{ QPointF(-6, 0), QPointF(7, 2) }));
    QCOMPARE(probe.rebuilt, 1);

    // Removal reaches it before the object goes.
    h->stack->undo();
    QVERIFY(!probe.getGsObject(1));
}

QTEST_MAIN(tst_ManipFrame)
#include "tst_manipframe.moc"
