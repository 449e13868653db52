#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxSignalCenter.h"
#include "OvCommonStyle.h"
#include "OvGuiMeasurementTool.h"
#include "PanelTestHelper.h"

#include <QColorDialog>
#include <QGraphicsScene>
#include <QMenu>
#include <QStyle>
#include <QTimer>
#include <QtTest>

#include <memory>

namespace {

using Panel = OvGuiMeasurementTool;
const QColor kRed(255, 0, 0);
const QColor kGreen(0, 128, 0);

enum Gesture { SliderClick, SpinTyping, SpinSetValue };

QVariantMap storedSettings(std::initializer_list<std::pair<QString, QVariant>> aPairs)
{
    QVariantMap map;
    for (const auto& pair : aPairs)
        map.insert(pair.first, pair.second);
    return map;
}

void store(const QVariantMap& aSettings)
{
    for (auto it = aSettings.cbegin(); it != aSettings.cend(); ++it) {
        if (it.key() == Panel::kKeyScalingFactor)
            KxAppSettings::setValue(it.key(), it.value());
        else
            SettingsSandbox::setMeasurement(it.key(), it.value());
    }
}

QToolButton* button(Panel& aPanel, const QString& aName)
{
    return aPanel.findChild<QToolButton*>(aName);
}

} // namespace

class tst_MeasurementTool : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void startState_data();
    void startState();
    void styleGestures_data();
    void styleGestures();
    void colorDialogLive_data();
    void colorDialogLive();
    void colorButtonOpensDialog();
    void menus_data();
    void menus();
    void unknownMenuData();
    void choicesSurviveRestart_data();
    void choicesSurviveRestart();
    void reset_data();
    void reset();
    void profileChange();
    void currentObjectChange();
    void kernelColor_data();
    void kernelColor();
    void kernelColorFollowsFrame();
    void scaling_data();
    void scaling();

private:
    void select(int aCount);

    QGraphicsScene scene;
    KxGsEditor* editor = nullptr;
    QList<TestGsObject*> objects;
    std::unique_ptr<SettingsSandbox> sandbox;
};

void tst_MeasurementTool::initTestCase()
{
    editor = KxGsEditor::getInstance();
    scene.addItem(editor);
    for (int i = 0; i < 2; ++i)
        objects << new TestGsObject(66653, editor);
}

void tst_MeasurementTool::init()
{
    sandbox.reset(new SettingsSandbox);
}

void tst_MeasurementTool::cleanup()
{
    editor->setCurrentObject(nullptr, false);
    KxAppSettings::setProfile(QString());
    sandbox.reset();
}

void tst_MeasurementTool::select(int aCount)
{
    editor->setCurrentObject(nullptr, false);
    for (int i = 0; i < aCount; ++i)
        editor->setCurrentObject(objects.at(i), i > 0);
    QCOMPARE(editor->getSelectedObjects().size(), aCount);
}

void tst_MeasurementTool::startState_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("radius");
    QTest::addColumn<bool>("innerAngle");
    QTest::addColumn<int>("freehand");
    QTest::addColumn<QString>("radiusIcon");
    QTest::addColumn<QString>("distanceIcon");

    QTest::newRow("nothing stored") << QVariantMap() << 2 << 16 << QColor(0, 177, 253) << true << true << 0 << "radius"
                                    << "measure";
    QTest::newRow("stored choices")
        << storedSettings({ { "LineWidth", 7 }, { "FontSize", 30 }, { "Color", kRed }, { "RadiusType", 1 },
                            { "AngleType", 1 }, { "FHandType", 3 } })
        << 7 << 30 << kRed << false << false << 3 << "diameter" << "paralell_distance_line";
    QTest::newRow("garbage numbers fall back")
        << storedSettings({ { "LineWidth", "wide" }, { "FontSize", "12abc" }, { "RadiusType", "x" }, { "FHandType", "?" } })
        << 2 << 16 << QColor(0, 177, 253) << true << true << 0 << "radius" << "measure";
    QTest::newRow("out of range clamped by the widgets")
        << storedSettings({ { "LineWidth", 99 }, { "FontSize", 2 } }) << 20 << 8 << QColor(0, 177, 253) << true << true
        << 0 << "radius" << "measure";
    QTest::newRow("colour as text") << storedSettings({ { "Color", "#008000" } }) << 2 << 16 << kGreen << true << true
                                    << 0 << "radius" << "measure";
    // An unconvertible colour is invalid, which the dialog holds as opaque black.
    QTest::newRow("garbage colour") << storedSettings({ { "Color", "no colour" } }) << 2 << 16 << QColor(Qt::black)
                                    << true << true << 0 << "radius" << "measure";
    QTest::newRow("unknown variant falls back to distance")
        << storedSettings({ { "FHandType", 9 } }) << 2 << 16 << QColor(0, 177, 253) << true << true << 0 << "radius"
        << "measure";
}

void tst_MeasurementTool::startState()
{
    QFETCH(QVariantMap, settings);
    QFETCH(int, width);
    QFETCH(int, fontSize);
    QFETCH(QColor, color);
    QFETCH(bool, radius);
    QFETCH(bool, innerAngle);
    QFETCH(int, freehand);
    QFETCH(QString, radiusIcon);
    QFETCH(QString, distanceIcon);

    store(settings);
    const QStringList storedKeys = settings.keys();
    Panel panel;
    QCOMPARE(panel.getLineWidth(), width);
    QCOMPARE(panel.theSBWidth->value(), width);
    QCOMPARE(panel.getFontSize(), fontSize);
    QCOMPARE(panel.theSBFontSize->value(), fontSize);
    QCOMPARE(panel.getColor(), color);
    QCOMPARE(panel.radiusMode, radius);
    QCOMPARE(panel.innerAngleMode, innerAngle);
    QCOMPARE(panel.freehandType, freehand);
    QCOMPARE(panel.theColorButton->styleSheet(),
             QStringLiteral("QToolButton{background: %1;       border: 1px; border-color: black; border-style: outset;}")
                 .arg(color.name()));

    QCOMPARE(panel.theSLWidth->minimum(), 1);
    QCOMPARE(panel.theSLWidth->maximum(), 20);
    QCOMPARE(panel.theSBWidth->maximum(), 20);
    QCOMPARE(panel.theSLFontSize->minimum(), 8);
    QCOMPARE(panel.theSBFontSize->maximum(), 72);
    for (QToolButton* b : { panel.theDistanceButton, panel.theFreeFormButton, panel.theRadiusButton, panel.theAngleButton })
        QVERIFY(!b->isChecked());
    QVERIFY(!panel.theSLUnitType->isEnabled());
    QCOMPARE(panel.getCurrentUnit(), Panel::kNoUnit);

    const QImage expectedRadius = resourceImage(radiusIcon + "-normal.svg", 24);
    QVERIFY2(!expectedRadius.isNull(), "icon artwork missing");
    QCOMPARE(iconImage(panel.theRadiusButton->icon(), 24), expectedRadius);
    QCOMPARE(iconImage(panel.theDistanceButton->icon(), 24), resourceImage(distanceIcon + "-normal.svg", 24));
    QCOMPARE(iconImage(panel.theDistanceButton->icon(), 24, QIcon::Normal, QIcon::On),
             resourceImage(distanceIcon + "-active.svg", 24));
    QCOMPARE(iconImage(panel.theDistanceButton->icon(), 24, QIcon::Active, QIcon::Off),
             resourceImage(distanceIcon + "-hover.svg", 24));
    QCOMPARE(iconImage(panel.theDistanceButton->icon(), 24, QIcon::Disabled, QIcon::On),
             resourceImage(distanceIcon + "-deactive.svg", 24));

    // Reading writes nothing.
    for (const char* key : { "LineWidth", "FontSize", "Color", "RadiusType", "AngleType", "FHandType" })
        QCOMPARE(SettingsSandbox::hasMeasurement(key), storedKeys.contains(QLatin1String(key)));
}

void tst_MeasurementTool::styleGestures_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("gesture");
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("selected");
    QTest::addColumn<int>("expected");

    // 1 + round(19 * 68 / 136) = 11 and 8 + round(64 * 68 / 136) = 40.
    QTest::newRow("width slider, nothing selected") << "theSLWidth" << int(SliderClick) << "" << 0 << 11;
    QTest::newRow("width slider, two selected") << "theSLWidth" << int(SliderClick) << "" << 2 << 11;
    QTest::newRow("font slider, nothing selected") << "theSLFontSize" << int(SliderClick) << "" << 0 << 40;
    QTest::newRow("font slider, one selected") << "theSLFontSize" << int(SliderClick) << "" << 1 << 40;
    // Typed values count once they are committed: no intermediate "1" on the way to 12.
    QTest::newRow("width typed") << "theSBWidth" << int(SpinTyping) << "7" << 0 << 7;
    QTest::newRow("width typed, two digits") << "theSBWidth" << int(SpinTyping) << "12" << 0 << 12;
    QTest::newRow("font typed") << "theSBFontSize" << int(SpinTyping) << "30" << 0 << 30;
    QTest::newRow("font typed, two selected") << "theSBFontSize" << int(SpinTyping) << "30" << 2 << 30;
    QTest::newRow("width 30 clamped to 20") << "theSBWidth" << int(SpinSetValue) << "30" << 0 << 20;
    QTest::newRow("font 100 clamped to 72") << "theSBFontSize" << int(SpinSetValue) << "100" << 0 << 72;
}

void tst_MeasurementTool::styleGestures()
{
    QFETCH(QString, widget);
    QFETCH(int, gesture);
    QFETCH(QString, input);
    QFETCH(int, selected);
    QFETCH(int, expected);

    Panel panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    select(selected);
    PanelSignalLog log(&panel);
    const bool isWidth = widget.contains("Width");

    if (gesture == SliderClick) {
        QSlider* slider = panel.findChild<QSlider*>(widget);
        QCOMPARE(slider->width(), 136);
        slider->setValue(slider->minimum());
        log.entries.clear();
        QTest::mouseClick(slider, Qt::LeftButton, Qt::NoModifier, QPoint(68, 7));
    } else {
        QSpinBox* spin = panel.findChild<QSpinBox*>(widget);
        if (gesture == SpinSetValue) {
            spin->setValue(input.toInt());
        } else {
            spin->setFocus();
            spin->selectAll();
            QTest::keyClicks(spin, input);
            QTest::keyClick(spin, Qt::Key_Return);
        }
    }

    const QString signal = isWidth ? "width" : "font";
    QCOMPARE(log.entries, QStringList{ QString("%1=%2").arg(signal).arg(expected) });
    QCOMPARE(isWidth ? panel.getLineWidth() : panel.getFontSize(), expected);
    QCOMPARE(isWidth ? panel.theSBWidth->value() : panel.theSBFontSize->value(), expected);
    const QString key = isWidth ? "LineWidth" : "FontSize";
    if (selected == 0)
        QCOMPARE(SettingsSandbox::measurement(key).toInt(), expected);
    else
        QVERIFY(!SettingsSandbox::hasMeasurement(key));
}

void tst_MeasurementTool::colorDialogLive_data()
{
    QTest::addColumn<int>("selected");
    QTest::newRow("nothing selected writes") << 0;
    QTest::newRow("selection does not write") << 2;
}

void tst_MeasurementTool::colorDialogLive()
{
    QFETCH(int, selected);
    Panel panel;
    select(selected);
    PanelSignalLog log(&panel);
    panel.getColorDialog()->setCurrentColor(kGreen);
    QCOMPARE(log.entries, QStringList{ "color=#008000" });
    QCOMPARE(panel.getColor(), kGreen);
    QVERIFY(panel.theColorButton->styleSheet().contains("background: #008000;"));
    QCOMPARE(SettingsSandbox::hasMeasurement("Color"), selected == 0);
    if (selected == 0)
        QCOMPARE(SettingsSandbox::measurement("Color").value<QColor>(), kGreen);

    // Programmatic colour: shown, not broadcast, not stored.
    panel.setColor(kRed);
    QCOMPARE(panel.getColor(), kRed);
    QCOMPARE(log.entries.size(), 1);
    QVERIFY(panel.theColorButton->styleSheet().contains("background: #ff0000;"));
    if (selected == 0)
        QCOMPARE(SettingsSandbox::measurement("Color").value<QColor>(), kGreen);
}

void tst_MeasurementTool::colorButtonOpensDialog()
{
    Panel panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QColorDialog* dialog = panel.getColorDialog();
    bool dialogShown = false;
    // Runs inside the dialog's own event loop, once it is open.
    QTimer::singleShot(0, dialog, [dialog, &dialogShown] {
        dialogShown = dialog->isVisible();
        dialog->setCurrentColor(kRed);
        dialog->accept();
    });
    PanelSignalLog log(&panel);
    QTest::mouseClick(panel.theColorButton, Qt::LeftButton);
    QVERIFY(dialogShown);
    QCOMPARE(log.entries, QStringList{ "color=#ff0000" });
    QCOMPARE(SettingsSandbox::measurement("Color").value<QColor>(), kRed);
}

void tst_MeasurementTool::menus_data()
{
    QTest::addColumn<QString>("buttonName");
    QTest::addColumn<int>("actionIndex");
    QTest::addColumn<bool>("checkedBefore");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QList<bool>>("toggles");

    const QList<bool> on = { true };
    QTest::newRow("diameter") << "theRadiusButton" << 0 << false << "RadiusType" << 1 << "diameter" << on;
    QTest::newRow("radius") << "theRadiusButton" << 1 << false << "RadiusType" << 0 << "radius" << on;
    QTest::newRow("radius while checked: no toggle") << "theRadiusButton" << 1 << true << "RadiusType" << 0 << "radius"
                                                     << QList<bool>();
    QTest::newRow("angle") << "theAngleButton" << 0 << false << "AngleType" << 0 << "angle" << on;
    QTest::newRow("outer angle") << "theAngleButton" << 1 << false << "AngleType" << 1 << "out-angle" << on;
    const char* const lines[] = { "measure", "freeform_line", "multiple_distance_line", "paralell_distance_line",
                                  "circle_distance_line" };
    for (int i = 0; i < 5; ++i)
        QTest::newRow(lines[i]) << "theDistanceButton" << i << false << "FHandType" << i << lines[i] << on;
    QTest::newRow("current variant re-checks the button")
        << "theDistanceButton" << 0 << true << "FHandType" << 0 << "measure" << QList<bool>{ false, true };
}

void tst_MeasurementTool::menus()
{
    QFETCH(QString, buttonName);
    QFETCH(int, actionIndex);
    QFETCH(bool, checkedBefore);
    QFETCH(QString, key);
    QFETCH(int, stored);
    QFETCH(QString, icon);
    QFETCH(QList<bool>, toggles);

    Panel panel;
    select(2);
    QToolButton* b = button(panel, buttonName);
    b->setChecked(checkedBefore);
    QSignalSpy toggled(b, &QToolButton::toggled);
    PanelSignalLog log(&panel);

    QVERIFY(b->menu());
    b->menu()->actions().at(actionIndex)->trigger();

    QList<bool> seen;
    for (const QList<QVariant>& args : toggled)
        seen << args.at(0).toBool();
    QCOMPARE(seen, toggles);
    QVERIFY(b->isChecked());
    // Variant choices are stored whatever is selected.
    QCOMPARE(SettingsSandbox::measurement(key).toInt(), stored);
    QCOMPARE(iconImage(b->icon(), 24), resourceImage(icon + "-normal.svg", 24));
    QCOMPARE(log.entries, QStringList());
    if (key == "RadiusType")
        QCOMPARE(panel.radiusMode, stored == 0);
    else if (key == "AngleType")
        QCOMPARE(panel.innerAngleMode, stored == 0);
    else
        QCOMPARE(panel.freehandType, stored);
}

void tst_MeasurementTool::unknownMenuData()
{
    Panel panel;
    panel.theRadiusButton->menu()->actions().at(0)->trigger();
    QVERIFY(!panel.radiusMode);
    QAction* odd = panel.theRadiusButton->menu()->addAction(QString());
    odd->setData(42);
    panel.theRadiusButton->setChecked(false);
    odd->trigger();
    QVERIFY(!panel.radiusMode);
    QVERIFY(panel.theRadiusButton->isChecked());
    QCOMPARE(SettingsSandbox::measurement("RadiusType").toInt(), 1);

    const QImage before = iconImage(panel.theDistanceButton->icon(), 24);
    QAction* oddLine = panel.theDistanceButton->menu()->addAction(QString());
    oddLine->setData(42);
    oddLine->trigger();
    QCOMPARE(panel.freehandType, 42);
    QCOMPARE(SettingsSandbox::measurement("FHandType").toInt(), 42);
    QCOMPARE(iconImage(panel.theDistanceButton->icon(), 24), before);

    QVERIFY(QMetaObject::invokeMethod(&panel, "slotAngleTriggered", Q_ARG(QAction*, nullptr)));
    QVERIFY(!SettingsSandbox::hasMeasurement("AngleType"));
}

void tst_MeasurementTool::choicesSurviveRestart_data()
{
    QTest::addColumn<QString>("buttonName");
    QTest::addColumn<int>("actionIndex");
    QTest::addColumn<QString>("icon");

    QTest::newRow("diameter") << "theRadiusButton" << 0 << "diameter";
    QTest::newRow("outer angle") << "theAngleButton" << 1 << "out-angle";
    QTest::newRow("parallel distances") << "theDistanceButton" << 3 << "paralell_distance_line";
}

void tst_MeasurementTool::choicesSurviveRestart()
{
    QFETCH(QString, buttonName);
    QFETCH(int, actionIndex);
    QFETCH(QString, icon);

    {
        Panel first;
        button(first, buttonName)->menu()->actions().at(actionIndex)->trigger();
    }
    Panel second;
    QCOMPARE(iconImage(button(second, buttonName)->icon(), 24), resourceImage(icon + "-normal.svg", 24));
    QVERIFY(!button(second, buttonName)->isChecked());
    QCOMPARE(second.radiusMode, buttonName != "theRadiusButton");
    QCOMPARE(second.innerAngleMode, buttonName != "theAngleButton");
    QCOMPARE(second.freehandType, buttonName == "theDistanceButton" ? 3 : 0);
}

void tst_MeasurementTool::reset_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<QList<int>>("units");
    QTest::addColumn<QStringList>("signalsSeen");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("fontSize");
    QTest::addColumn<QColor>("color");

    QTest::newRow("no reset values: defaults")
        << QVariantMap() << QList<int>() << QStringList{ "color=#00b1fd", "font=16", "width=2", "unit=1000" } << 2 << 16
        << QColor(0, 177, 253);
    QTest::newRow("stored reset values, units offered")
        << storedSettings({ { "Res_LineWidth", 5 }, { "Res_FontSize", 20 }, { "Res_Color", kGreen } })
        << QList<int>{ 2, 3, 4 } << QStringList{ "color=#008000", "font=20", "width=5", "unit=2" } << 5 << 20 << kGreen;
    QTest::newRow("garbage reset values")
        << storedSettings({ { "Res_LineWidth", "x" }, { "Res_FontSize", "" } }) << QList<int>{ 9 }
        << QStringList{ "color=#00b1fd", "font=16", "width=2", "unit=9" } << 2 << 16 << QColor(0, 177, 253);
}

void tst_MeasurementTool::reset()
{
    QFETCH(QVariantMap, settings);
    QFETCH(QList<int>, units);
    QFETCH(QStringList, signalsSeen);
    QFETCH(int, width);
    QFETCH(int, fontSize);
    QFETCH(QColor, color);

    store(storedSettings({ { "LineWidth", 9 }, { "FontSize", 30 }, { "Color", kRed } }));
    store(settings);
    Panel panel;
    QCOMPARE(panel.getLineWidth(), 9);
    panel.setUnitsToUse(units, false);
    PanelSignalLog log(&panel);

    QVERIFY(QMetaObject::invokeMethod(&panel, "slotResetSettings"));

    QCOMPARE(log.entries, signalsSeen);
    QCOMPARE(panel.getLineWidth(), width);
    QCOMPARE(panel.theSBWidth->value(), width);
    QCOMPARE(panel.getFontSize(), fontSize);
    QCOMPARE(panel.getColor(), color);
    QCOMPARE(SettingsSandbox::measurement("LineWidth").toInt(), width);
    QCOMPARE(SettingsSandbox::measurement("FontSize").toInt(), fontSize);
    QCOMPARE(SettingsSandbox::measurement("Color").value<QColor>(), color);
    QCOMPARE(SettingsSandbox::hasMeasurement("Res_LineWidth"), settings.contains("Res_LineWidth"));
}

void tst_MeasurementTool::profileChange()
{
    KxAppSettings::setProfile("Lab");
    store(storedSettings({ { "LineWidth", 11 }, { "FontSize", 40 }, { "Color", kGreen }, { "AngleType", 1 } }));
    KxAppSettings::setProfile(QString());

    Panel panel;
    QCOMPARE(panel.getLineWidth(), 2);
    PanelSignalLog log(&panel);
    KxAppSettings::setProfile("Lab");
    QCOMPARE(panel.getLineWidth(), 11);
    QCOMPARE(panel.theSBWidth->value(), 11);
    QCOMPARE(panel.getFontSize(), 40);
    QCOMPARE(panel.getColor(), kGreen);
    QVERIFY(!panel.innerAngleMode);
    QCOMPARE(log.entries, QStringList());

    KxAppSettings::setProfile(QString());
    QCOMPARE(panel.getLineWidth(), 2);
    QVERIFY(panel.innerAngleMode);
}

void tst_MeasurementTool::currentObjectChange()
{
    store(storedSettings({ { "LineWidth", 4 } }));
    Panel panel;
    const QList<int> units = { 0, 1, 2 };
    panel.setUnitsToUse(units, true);
    panel.setLineWidth(12);
    panel.theDistanceButton->setChecked(true);
    panel.theAngleButton->setChecked(true);
    PanelSignalLog log(&panel);

    editor->setCurrentObject(objects.at(0), false);
    QVERIFY(panel.theDistanceButton->isChecked());
    QCOMPARE(panel.getLineWidth(), 12);
    QCOMPARE(panel.getUnitsToUse(), QList<int>());
    QCOMPARE(panel.getCurrentUnit(), Panel::kNoUnit);

    panel.setUnitsToUse(units, true);
    editor->setCurrentObject(nullptr, false);
    for (QToolButton* b : { panel.theDistanceButton, panel.theFreeFormButton, panel.theRadiusButton, panel.theAngleButton })
        QVERIFY(!b->isChecked());
    QCOMPARE(panel.getLineWidth(), 4);
    QCOMPARE(panel.getUnitsToUse(), QList<int>());
    QVERIFY(!panel.isSquaredUnits());
    QCOMPARE(log.entries, QStringList());
}

void tst_MeasurementTool::kernelColor_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("withData");
    QTest::addColumn<bool>("taken");

    QTest::newRow("angle") << 66651 << true << true;
    QTest::newRow("distance") << 66653 << true << true;
    QTest::newRow("free form") << 66655 << true << true;
    QTest::newRow("circle") << 66656 << true << true;
    QTest::newRow("multiple distance") << 66658 << true << true;
    QTest::newRow("parallel distance") << 66659 << true << true;
    QTest::newRow("free line is not followed") << 66755 << true << false;
    QTest::newRow("foreign type") << 12345 << true << false;
    QTest::newRow("no data") << 66653 << false << false;
}

void tst_MeasurementTool::kernelColor()
{
    QFETCH(int, type);
    QFETCH(bool, withData);
    QFETCH(bool, taken);

    Panel panel;
    PanelSignalLog log(&panel);
    std::unique_ptr<KxKernelObjectData> data(makeColoredObject(kRed));
    emit KxSignalCenter::getInstance()->signalObjectChanged(type, 1, withData ? data.get() : nullptr);
    QCOMPARE(panel.getColor(), taken ? kRed : QColor(0, 177, 253));
    QCOMPARE(log.entries, QStringList());
    QVERIFY(!SettingsSandbox::hasMeasurement("Color"));
}

void tst_MeasurementTool::kernelColorFollowsFrame()
{
    Panel panel;
    std::unique_ptr<KxKernelObjectData> data(makeColoredObject(kGreen, 10, kRed));
    KxKernelData* kernel = KxKernelData::getInstance();
    kernel->setCurrentFrame(12);
    emit KxSignalCenter::getInstance()->signalObjectChanged(66656, 1, data.get());
    QCOMPARE(panel.getColor(), kRed);
    kernel->setCurrentFrame(3);
    emit KxSignalCenter::getInstance()->signalObjectChanged(66656, 1, data.get());
    QCOMPARE(panel.getColor(), kGreen);
    kernel->setCurrentFrame(0);

    // A vector too short to hold a colour changes nothing.
    KxKernelObjectData tiny(KxParamKeyframeVector(1), QVector<ParamDescr::KeyframeType>(1));
    emit KxSignalCenter::getInstance()->signalObjectChanged(66656, 2, &tiny);
    QCOMPARE(panel.getColor(), kGreen);
}

void tst_MeasurementTool::scaling_data()
{
    QTest::addColumn<QVariant>("factor");
    QTest::addColumn<double>("scale");

    QTest::newRow("100 %") << QVariant(100) << 1.0;
    QTest::newRow("125 %") << QVariant(125) << 1.25;
    QTest::newRow("150 %") << QVariant(150) << 1.5;
    QTest::newRow("200 %") << QVariant(200) << 2.0;
    QTest::newRow("garbage -> 100 %") << QVariant("big") << 1.0;
    QTest::newRow("zero -> 100 %") << QVariant(0) << 1.0;
    QTest::newRow("negative -> 100 %") << QVariant(-50) << 1.0;
}

void tst_MeasurementTool::scaling()
{
    QFETCH(QVariant, factor);
    QFETCH(double, scale);

    KxAppSettings::setValue(Panel::kKeyScalingFactor, factor);
    Panel panel;
    QCOMPARE(panel.styleSheet(), OvCommonStyle::generalStyleSheet(scale));
    QCOMPARE(panel.theDistanceButton->styleSheet(), OvCommonStyle::generalStyleSheet(scale));
    QCOMPARE(panel.maximumWidth(), int(152 * scale));
    QCOMPARE(panel.theDistanceButton->maximumSize(), QSize(int(34 * scale), int(24 * scale)));
    QCOMPARE(panel.theSLWidth->maximumWidth(), int(136 * scale));
    for (QFrame* line : { panel.measureline, panel.measureline_3, panel.measureline_4 }) {
        QCOMPARE(line->minimumWidth(), int(136 * scale));
        QCOMPARE(line->maximumWidth(), int(136 * scale));
    }
    const int side = qRound(24 * scale);
    QCOMPARE(panel.theAngleButton->iconSize(), QSize(side, side));
    QCOMPARE(iconImage(panel.theAngleButton->icon(), side), resourceImage("angle-normal.svg", side));

    QMenu* menu = panel.theRadiusButton->menu();
    QCOMPARE(menu->styleSheet(), QStringLiteral("QMenu::item {padding: 0px %1px 0px %1px;}").arg(12 * scale));
    QCOMPARE(menu->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, menu), int(24 * scale));
    QCOMPARE(menu->actions().size(), 2);
    QCOMPARE(menu->actions().at(0)->text(), QString());
    QCOMPARE(iconImage(menu->actions().at(0)->icon(), side, QIcon::Normal), resourceImage("diameter-hover.svg", side));
    QCOMPARE(iconImage(menu->actions().at(0)->icon(), side, QIcon::Active), resourceImage("diameter-active.svg", side));
    QCOMPARE(panel.theRadiusButton->style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal, nullptr,
                                                         panel.theRadiusButton),
             0);
}

QTEST_MAIN(tst_MeasurementTool)
#include "tst_measurementtool.moc"
