#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxGsObject.h"
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

namespace {

using Panel = OvGuiMeasurementTool;
const QColor kStd(0, 177, 253);
const QColor kRed(255, 0, 0);
const QColor kGreen(0, 128, 0);
// Artwork of the distance button per variant (freehandType).
const QStringList kLines = { "measure", "freeform_line", "multiple_distance_line", "paralell_distance_line",
                             "circle_distance_line" };
enum Trigger { Reset, ProfileSwitch, Deselect };

// A measurement item, enough to be the editor's current or selected object.
class TestGsObject : public KxGsObject
{
public:
    explicit TestGsObject(QGraphicsItem* aParent) : KxGsObject(nullptr, aParent) {}
    int type() const override { return 66653; }
    QRectF boundingRect() const override { return QRectF(0, 0, 10, 10); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}
};

// The panel's four signals in the order they come, as "name=value".
struct SignalLog : QObject
{
    explicit SignalLog(Panel* aPanel)
    {
        connect(aPanel, &Panel::signalColorChanged, this, [this](QColor aColor) { add("color", aColor.name()); });
        connect(aPanel, &Panel::signalFontValueChanged, this, [this](int aSize) { add("font", aSize); });
        connect(aPanel, &Panel::signalWidthChanged, this, [this](int aWidth) { add("width", aWidth); });
        connect(aPanel, &Panel::signalUnitTypeChanged, this, [this](int aUnit) { add("unit", aUnit); });
    }
    void add(const char* aName, const QVariant& aValue) { entries << aName + ("=" + aValue.toString()); }
    QStringList entries;
};

// Settings of the panel's group; the interface scale lives outside it.
QVariant stored(const QString& aKey) { return KxAppSettings::value("Measurement/" + aKey); }
void store(const QVariantMap& aValues)
{
    for (auto it = aValues.cbegin(); it != aValues.cend(); ++it)
        KxAppSettings::setValue((it.key() == "ScalingFactor" ? "" : "Measurement/") + it.key(), it.value());
}

// Whether the icon, in that mode and state, shows the host's artwork aName-aVariant.svg (which must exist).
bool showsArtwork(const QIcon& anIcon, const QString& aName, const char* aVariant = "normal", int aSide = 24,
                  QIcon::Mode aMode = QIcon::Normal, QIcon::State aState = QIcon::Off)
{
    const QPixmap artwork(QString(":/tessilarresources/%1-%2.svg").arg(aName, aVariant));
    const QImage expected = artwork.scaled(aSide, aSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).toImage();
    const QImage shown = anIcon.pixmap(aSide, aSide, aMode, aState).toImage();
    return !artwork.isNull()
           && shown.convertToFormat(QImage::Format_ARGB32) == expected.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

class tst_MeasurementTool : public QObject
{
    Q_OBJECT

    QGraphicsScene scene;
    KxGsEditor* editor = KxGsEditor::getInstance();
    QList<TestGsObject*> objects;
    QTemporaryDir settingsDir;
    int settingsCount = 0;

    void select(int aCount)
    {
        editor->setCurrentObject(nullptr, false);
        for (int i = 0; i < aCount; ++i)
            editor->setCurrentObject(objects.at(i), i > 0);
    }

private slots:
    void initTestCase()
    {
        scene.addItem(editor);
        objects << new TestGsObject(editor) << new TestGsObject(editor);
    }
    // Every test starts from empty settings.
    void init() { KxAppSettings::setFileName(settingsDir.filePath(QString("settings%1.ini").arg(++settingsCount))); }
    void cleanup()
    {
        editor->setCurrentObject(nullptr, false);
        KxAppSettings::setProfile(QString());
        KxAppSettings::setFileName(QString());
    }

    // The panel starts from the stored settings, at the stored interface scale.
    void startState_data()
    {
        // Artwork on the radius, angle and distance buttons, which tells their mode.
        addColumns<QVariantMap, int, int, QColor, QStringList, double>(
            { "settings", "width", "fontSize", "color", "modes", "scale" });

        const QStringList defaultModes = { "radius", "angle", "measure" };
        QTest::newRow("nothing stored") << QVariantMap() << 2 << 16 << kStd << defaultModes << 1.0;
        QTest::newRow("stored choices, 125 %")
            << QVariantMap{ { "LineWidth", 7 }, { "FontSize", 30 }, { "Color", kRed }, { "RadiusType", 1 },
                            { "AngleType", 1 }, { "FHandType", 3 }, { "ScalingFactor", 125 } }
            << 7 << 30 << kRed << QStringList{ "diameter", "out-angle", kLines[3] } << 1.25;
        QTest::newRow("garbage numbers fall back")
            << QVariantMap{ { "LineWidth", "wide" }, { "FontSize", "12abc" }, { "RadiusType", "x" },
                            { "FHandType", "?" }, { "ScalingFactor", "big" } }
            << 2 << 16 << kStd << defaultModes << 1.0;
        QTest::newRow("colour as text, unknown variant falls back, 200 %")
            << QVariantMap{ { "Color", "#008000" }, { "FHandType", 9 }, { "ScalingFactor", 200 } } << 2 << 16 << kGreen
            << defaultModes << 2.0;
        // An unconvertible colour is invalid, which the dialog holds as opaque black.
        QTest::newRow("out of range clamped by the widgets, garbage colour, negative scale")
            << QVariantMap{ { "LineWidth", 99 }, { "FontSize", 2 }, { "Color", "?" }, { "ScalingFactor", -50 } }
            << 20 << 8 << QColor(Qt::black) << defaultModes << 1.0;
    }
    void startState()
    {
        QFETCH(QVariantMap, settings);
        QFETCH(int, width);
        QFETCH(int, fontSize);
        QFETCH(QColor, color);
        QFETCH(QStringList, modes);
        QFETCH(double, scale);

        store(settings);
        Panel panel;
        QCOMPARE(panel.theSBWidth->value(), width);
        QCOMPARE(panel.theSBFontSize->value(), fontSize);
        QCOMPARE(panel.getColor(), color);
        QVERIFY(panel.theColorButton->styleSheet().contains(QString("{background: %1; ").arg(color.name())));
        QCOMPARE(panel.radiusMode, modes[0] == "radius");
        QCOMPARE(panel.innerAngleMode, modes[1] == "angle");
        QCOMPARE(panel.freehandType, kLines.indexOf(modes[2]));
        // Reading writes nothing.
        for (const char* key : { "LineWidth", "FontSize", "Color", "RadiusType", "AngleType", "FHandType" })
            QCOMPARE(stored(key).isValid(), settings.contains(key));

        QCOMPARE(panel.theDistanceButton->styleSheet(), OvCommonStyle::generalStyleSheet(scale));
        QCOMPARE(panel.maximumWidth(), int(152 * scale));
        QCOMPARE(panel.theDistanceButton->maximumSize(), QSize(int(34 * scale), int(24 * scale)));
        const int side = qRound(24 * scale);
        QCOMPARE(panel.theDistanceButton->iconSize(), QSize(side, side));
        QVERIFY(showsArtwork(panel.theRadiusButton->icon(), modes[0], "normal", side));
        const QIcon distance = panel.theDistanceButton->icon();
        QVERIFY(showsArtwork(distance, modes[2], "normal", side));
        QVERIFY(showsArtwork(distance, modes[2], "active", side, QIcon::Normal, QIcon::On));
        QVERIFY(showsArtwork(distance, modes[2], "hover", side, QIcon::Active, QIcon::Off));
        QVERIFY(showsArtwork(distance, modes[2], "deactive", side, QIcon::Disabled, QIcon::On));
        QMenu* menu = panel.theRadiusButton->menu();
        QCOMPARE(menu->styleSheet(), QString("QMenu::item {padding: 0px %1px 0px %1px;}").arg(12 * scale));
        QCOMPARE(menu->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, menu), int(24 * scale));
        QVERIFY(showsArtwork(menu->actions().at(0)->icon(), "diameter", "hover", side, QIcon::Normal));
        QVERIFY(showsArtwork(menu->actions().at(0)->icon(), "diameter", "active", side, QIcon::Active));
        QCOMPARE(panel.theRadiusButton->style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal), 0);
    }

    // User changes of width, font size and colour are announced, and remembered only while nothing is selected.
    void styleGestures_data()
    {
        addColumns<QString, QString, int, QString, QVariant>({ "widget", "typed", "selected", "key", "value" });

        // Clicks at x 68 of 136: 1 + round(19 / 2) = 11 and 8 + round(64 / 2) = 40.
        QTest::newRow("width slider, nothing selected") << "theSLWidth" << "" << 0 << "LineWidth" << QVariant(11);
        QTest::newRow("font slider, one selected") << "theSLFontSize" << "" << 1 << "FontSize" << QVariant(40);
        // Typed values count once they are committed: no intermediate "1" on the way to 12.
        QTest::newRow("width typed, two digits") << "theSBWidth" << "12" << 0 << "LineWidth" << QVariant(12);
        QTest::newRow("font typed, two selected") << "theSBFontSize" << "30" << 2 << "FontSize" << QVariant(30);
        QTest::newRow("width past its range clamps to 20") << "theSBWidth" << "30" << 0 << "LineWidth" << QVariant(20);
        QTest::newRow("colour, nothing selected") << "theColorButton" << "" << 0 << "Color" << QVariant(kGreen);
        QTest::newRow("colour, two selected") << "theColorButton" << "" << 2 << "Color" << QVariant(kGreen);
    }
    void styleGestures()
    {
        QFETCH(QString, widget);
        QFETCH(QString, typed);
        QFETCH(int, selected);
        QFETCH(QString, key);
        QFETCH(QVariant, value);

        Panel panel;
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        select(selected);
        SignalLog log(&panel);
        if (QSlider* slider = panel.findChild<QSlider*>(widget)) {
            slider->setValue(slider->minimum());
            log.entries.clear();
            QTest::mouseClick(slider, Qt::LeftButton, Qt::NoModifier, QPoint(68, 7));
        } else if (QSpinBox* spin = panel.findChild<QSpinBox*>(widget)) {
            spin->setFocus();
            spin->selectAll();
            QTest::keyClicks(spin, typed);
            QTest::keyClick(spin, Qt::Key_Return);
        } else {
            // Runs inside the dialog's own event loop, once it is open: the colour applies live.
            QColorDialog* dialog = panel.getColorDialog();
            QStringList whileOpen;
            QTimer::singleShot(0, dialog, [&] {
                dialog->setCurrentColor(kGreen);
                if (dialog->isVisible())
                    whileOpen = log.entries;
                dialog->accept();
            });
            QTest::mouseClick(panel.theColorButton, Qt::LeftButton);
            QCOMPARE(whileOpen, QStringList{ "color=#008000" });
            QVERIFY(panel.theColorButton->styleSheet().contains("background: #008000;"));
        }

        const bool isColor = key == "Color", isWidth = key == "LineWidth";
        const QString signal = isColor ? "color=#008000" : QString(isWidth ? "width=%1" : "font=%1").arg(value.toInt());
        QCOMPARE(log.entries, QStringList{ signal });
        const int shown = isWidth ? panel.getLineWidth() : panel.getFontSize();
        QCOMPARE(isColor ? QVariant(panel.getColor()) : QVariant(shown), value);
        if (!isColor)
            QCOMPARE((isWidth ? panel.theSBWidth : panel.theSBFontSize)->value(), value.toInt());
        QCOMPARE(stored(key), selected == 0 ? value : QVariant());
    }

    // Variant choices show on the button, check it, and are stored (whatever is selected) for the next start.
    void menus_data()
    {
        addColumns<QString, int, bool, QString, QList<bool>>({ "key", "choice", "checkedBefore", "icon", "toggles" });

        const QList<bool> on = { true };
        QTest::newRow("diameter") << "RadiusType" << 0 << false << "diameter" << on;
        QTest::newRow("radius while checked: no toggle") << "RadiusType" << 1 << true << "radius" << QList<bool>();
        QTest::newRow("outer angle") << "AngleType" << 1 << false << "out-angle" << on;
        for (int i = 1; i < 5; ++i)
            QTest::newRow(qPrintable(kLines[i])) << "FHandType" << i << false << kLines[i] << on;
        QTest::newRow("current variant re-checks the button") << "FHandType" << 0 << true << "measure"
                                                              << QList<bool>{ false, true };
    }
    void menus()
    {
        QFETCH(QString, key);
        QFETCH(int, choice);
        QFETCH(bool, checkedBefore);
        QFETCH(QString, icon);
        QFETCH(QList<bool>, toggles);

        // The radius menu lists diameter first; stored 1 means diameter or outer angle.
        const int storedType = key == "RadiusType" ? 1 - choice : choice;
        const auto button = [&](Panel& aPanel) {
            return key == "RadiusType" ? aPanel.theRadiusButton
                                       : key == "AngleType" ? aPanel.theAngleButton : aPanel.theDistanceButton;
        };
        const auto checkModes = [&](Panel& aPanel) {
            QCOMPARE(aPanel.radiusMode, key != "RadiusType" || storedType == 0);
            QCOMPARE(aPanel.innerAngleMode, key != "AngleType" || storedType == 0);
            QCOMPARE(aPanel.freehandType, key == "FHandType" ? storedType : 0);
            QVERIFY(showsArtwork(button(aPanel)->icon(), icon));
        };
        QList<bool> seen;
        {
            Panel panel;
            select(2);
            QToolButton* b = button(panel);
            b->setChecked(checkedBefore);
            connect(b, &QToolButton::toggled, this, [&seen](bool anOn) { seen << anOn; });
            SignalLog log(&panel);
            b->menu()->actions().at(choice)->trigger();
            QCOMPARE(seen, toggles);
            QVERIFY(b->isChecked());
            QCOMPARE(log.entries, QStringList());
            QCOMPARE(stored(key).toInt(), storedType);
            checkModes(panel);
        }
        Panel restarted;
        checkModes(restarted);
        QVERIFY(!button(restarted)->isChecked());
    }

    // Menu entries with unknown data check their button but keep the mode; a variant is taken as it comes.
    void unknownMenuData()
    {
        Panel panel;
        panel.theRadiusButton->menu()->actions().at(0)->trigger();
        for (QToolButton* button : { panel.theRadiusButton, panel.theDistanceButton }) {
            button->setChecked(false);
            button->menu()->addAction(QString())->setData(42);
            button->menu()->actions().last()->trigger();
            QVERIFY(button->isChecked());
        }
        QVERIFY(!panel.radiusMode);
        QCOMPARE(stored("RadiusType").toInt(), 1);
        QCOMPARE(panel.freehandType, 42);
        QCOMPARE(stored("FHandType").toInt(), 42);
        QVERIFY(showsArtwork(panel.theDistanceButton->icon(), "measure"));

        QVERIFY(QMetaObject::invokeMethod(&panel, "slotAngleTriggered", Q_ARG(QAction*, nullptr)));
        QVERIFY(!stored("AngleType").isValid());
    }

    // Remembered values come back on reset ("Res_" ones, announced, written), profile switch and deselection.
    void defaultsComeBack_data()
    {
        addColumns<int, QVariantMap, int, QColor, QStringList>(
            { "trigger", "settings", "width", "color", "signalsSeen" });

        const QStringList defaults = { "color=#00b1fd", "font=16", "width=2", "unit=2" };
        QTest::newRow("reset without reset values") << int(Reset) << QVariantMap() << 2 << kStd << defaults;
        QTest::newRow("reset to stored reset values")
            << int(Reset) << QVariantMap{ { "Res_LineWidth", 5 }, { "Res_FontSize", 20 }, { "Res_Color", kGreen } } << 5
            << kGreen << QStringList{ "color=#008000", "font=20", "width=5", "unit=2" };
        QTest::newRow("reset with garbage reset values")
            << int(Reset) << QVariantMap{ { "Res_LineWidth", "x" }, { "Res_FontSize", "" } } << 2 << kStd << defaults;
        QTest::newRow("profile switch") << int(ProfileSwitch)
                                        << QVariantMap{ { "LineWidth", 11 }, { "Color", kGreen }, { "AngleType", 1 } }
                                        << 11 << kGreen << QStringList();
        QTest::newRow("no current object") << int(Deselect) << QVariantMap() << 9 << kRed << QStringList();
    }
    void defaultsComeBack()
    {
        QFETCH(int, trigger);
        QFETCH(QVariantMap, settings);
        QFETCH(int, width);
        QFETCH(QColor, color);
        QFETCH(QStringList, signalsSeen);

        store(QVariantMap{ { "LineWidth", 9 }, { "FontSize", 30 }, { "Color", kRed } });
        KxAppSettings::setProfile(trigger == ProfileSwitch ? "Lab" : "");
        store(settings);
        KxAppSettings::setProfile(QString());
        Panel panel;
        const QList<int> units = { 2, 3, 4 };
        panel.setUnitsToUse(units, true);
        panel.setLineWidth(12);
        panel.theDistanceButton->setChecked(true);
        SignalLog log(&panel);

        if (trigger == Reset) {
            QVERIFY(QMetaObject::invokeMethod(&panel, "slotResetSettings"));
        } else if (trigger == ProfileSwitch) {
            KxAppSettings::setProfile("Lab");
            QVERIFY(!panel.innerAngleMode);
        } else {
            // Another object first: the draw button stays, the units wait for its manipulator.
            editor->setCurrentObject(objects.at(0), false);
            QVERIFY(panel.theDistanceButton->isChecked());
            QCOMPARE(panel.getCurrentUnit(), Panel::kNoUnit);
            panel.setUnitsToUse(units, true);
            editor->setCurrentObject(nullptr, false);
            QVERIFY(!panel.theDistanceButton->isChecked());
            QCOMPARE(panel.getUnitsToUse(), QList<int>());
        }
        QCOMPARE(log.entries, signalsSeen);
        QCOMPARE(panel.theSBWidth->value(), width);
        QCOMPARE(panel.getColor(), color);
        // What is shown is what the settings hold; the reset values themselves are never written.
        QCOMPARE(stored("LineWidth").toInt(), width);
        QCOMPARE(stored("Color").value<QColor>(), color);
        QCOMPARE(stored("Res_LineWidth"), settings.value("Res_LineWidth"));
    }

    // The panel shows the colour of a measurement changed in the kernel, at the current frame.
    void kernelColor_data()
    {
        addColumns<int, int, qint64, QColor>({ "type", "vectorSize", "frame", "expected" });

        for (const int type : { 66651, 66653, 66655, 66656, 66658, 66659 })
            QTest::newRow(qPrintable(QString("type %1").arg(type))) << type << 9 << qint64(0) << kRed;
        QTest::newRow("free line is not followed") << 66755 << 9 << qint64(0) << kStd;
        QTest::newRow("no data") << 66653 << 0 << qint64(0) << kStd;
        QTest::newRow("too short to hold a colour") << 66653 << 1 << qint64(0) << kStd;
        QTest::newRow("after the key frame") << 66656 << 9 << qint64(12) << kGreen;
    }
    void kernelColor()
    {
        QFETCH(int, type);
        QFETCH(int, vectorSize);
        QFETCH(qint64, frame);
        QFETCH(QColor, expected);

        // Red, and green from frame 10 on.
        KxParamKeyframeVector values(vectorSize);
        const QVector<ParamDescr::KeyframeType> types(vectorSize, ParamDescr::KeyframeAnimated);
        KxKernelObjectData data(values, types, true);
        for (const qint64 keyFrame : { 0, 10 }) {
            values.setFrameNumber(keyFrame);
            if (vectorSize > 1)
                values[1].setValue(keyFrame ? kGreen : kRed);
            data.update(values);
        }
        KxKernelData::getInstance()->setCurrentFrame(frame);
        Panel panel;
        emit KxSignalCenter::getInstance()->signalObjectChanged(type, 1, vectorSize ? &data : nullptr);
        KxKernelData::getInstance()->setCurrentFrame(0);
        QCOMPARE(panel.getColor(), expected);
        QVERIFY(!stored("Color").isValid());
    }
};

QTEST_MAIN(tst_MeasurementTool)
#include "tst_measurementtool.moc"
