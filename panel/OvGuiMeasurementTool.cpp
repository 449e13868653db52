#include "OvGuiMeasurementTool.h"

#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxSignalCenter.h"
#include "OvCommonStyle.h"
#include "OvQtCompat.h"
#include "OvValueFormat.h"
#include "myStyle.h"

#include <QAction>
#include <QColorDialog>
#include <QMenu>
#include <QPixmap>
#include <QSignalBlocker>

#include <cmath>

const QString OvGuiMeasurementTool::kKeyMeasurementSection = QStringLiteral("Measurement");
const QString OvGuiMeasurementTool::kKeyDefLineWidth = QStringLiteral("LineWidth");
const QString OvGuiMeasurementTool::kKeyDefFontSize = QStringLiteral("FontSize");
const QString OvGuiMeasurementTool::kKeyDefRadiusType = QStringLiteral("RadiusType");
const QString OvGuiMeasurementTool::kKeyDefAngleType = QStringLiteral("AngleType");
const QString OvGuiMeasurementTool::kKeyDefFHandType = QStringLiteral("FHandType");
const QString OvGuiMeasurementTool::kKeyDefColor = QStringLiteral("Color");
const QString OvGuiMeasurementTool::kKeyResLineWidth = QStringLiteral("Res_LineWidth");
const QString OvGuiMeasurementTool::kKeyResFontSize = QStringLiteral("Res_FontSize");
const QString OvGuiMeasurementTool::kKeyResColor = QStringLiteral("Res_Color");
const QString OvGuiMeasurementTool::kKeyScalingFactor = QStringLiteral("ScalingFactor");
const QColor OvGuiMeasurementTool::kStdColor = QColor(0, 177, 253, 255);

namespace {

const QString kIconPath = QStringLiteral(":/tessilarresources/%1%2");
const int kDataDiameter = 6;
const int kDataRadius = 5;
const int kDataAngle = 7;
const int kDataOutAngle = 8;
const QList<int> kColorTypes = { 66651, 66653, 66655, 66656, 66658, 66659 };

int readInt(const QString& aKey, int aDefault)
{
    bool ok = false;
    const int value = KxAppSettings::value(aKey, aDefault).toInt(&ok);
    return ok ? value : aDefault;
}

QColor toColor(const QVariant& aValue)
{
    if (aValue.userType() == QMetaType::QColor)
        return aValue.value<QColor>();
    QVariant converted = aValue;
    if (OvQtCompat::convert(converted, QMetaType::QColor))
        return converted.value<QColor>();
    return QColor();
}

QPixmap loadScaled(const QString& aName, const QString& aSuffix, int aSize)
{
    const QPixmap pixmap(kIconPath.arg(aName, aSuffix));
    if (pixmap.isNull())
        return pixmap;
    return pixmap.scaled(aSize, aSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void addPixmap(QIcon& anIcon, const QPixmap& aPixmap, QIcon::Mode aMode, QIcon::State aState)
{
    if (!aPixmap.isNull())
        anIcon.addPixmap(aPixmap, aMode, aState);
}

} // namespace

OvGuiMeasurementTool::OvGuiMeasurementTool(QWidget* aParent)
    : QWidget(aParent)
{
    colorDialog = new QColorDialog(nullptr);
    colorDialog->setOption(QColorDialog::DontUseNativeDialog);
    setupUi(this);
    initializeUnitMap();
    setUnitsToUse(QList<int>(), false);

    theSLWidth->setRange(1, 20);
    theSBWidth->setRange(1, 20);
    theSLFontSize->setRange(8, 72);
    theSBFontSize->setRange(8, 72);

    updateGuiWithDefaults(false);

    connect(KxGsEditor::getInstance(), SIGNAL(signalCurrentObjectChanged(const KxGsObject*)), this,
            SLOT(slotCurrentObjectChangedInEditor(const KxGsObject*)));
    connect(KxSignalCenter::getInstance(), SIGNAL(signalObjectChanged(const int, const int, const KxKernelObjectData*)),
            this, SLOT(slotObjectChangedInKernel(int, int, const KxKernelObjectData*)));
    connect(KxAppSettings::getInstance(), &KxAppSettings::signalProfileAboutToChange, this,
            &OvGuiMeasurementTool::slotProfileAboutToChange);
    connect(KxAppSettings::getInstance(), &KxAppSettings::signalProfileChanged, this,
            &OvGuiMeasurementTool::slotProfileChanged);
    connect(theSLWidth, SIGNAL(valueChanged(int)), this, SLOT(slotLineWidthChanged(int)));
    connect(theSBWidth, SIGNAL(valueChanged(int)), this, SLOT(slotLineWidthChanged(int)));
    connect(theSLUnitType, SIGNAL(valueChanged(int)), this, SLOT(slotUnitChanged(int)));
    connect(theSLFontSize, SIGNAL(valueChanged(int)), this, SLOT(slotFontSizeChanged(int)));
    connect(theSBFontSize, SIGNAL(valueChanged(int)), this, SLOT(slotFontSizeChanged(int)));
    connect(colorDialog, &QColorDialog::currentColorChanged, this, &OvGuiMeasurementTool::slotColorChanged);
    connect(theColorButton, &QToolButton::clicked, colorDialog, &QColorDialog::exec);

    const int scalePercent = readInt(kKeyScalingFactor, 100);
    scale = (scalePercent > 0 ? scalePercent : 100) / 100.0;
    const QString sheet = OvCommonStyle::generalStyleSheet(scale);
    // A plain QWidget paints no style-sheet background unless asked to.
    setAttribute(Qt::WA_StyledBackground, true);
    setStyleSheet(sheet);
    OvCommonStyle::resizeWidget(this, scale);
    OvCommonStyle::resizeHelper(this, scale, true, false);
    for (QFrame* line : { measureline, measureline_3, measureline_4 })
        line->setFixedWidth(int(136 * scale));

    const int iconSide = qRound(24 * scale);
    const char* const lineNames[5] = { "measure", "freeform_line", "multiple_distance_line", "paralell_distance_line",
                                       "circle_distance_line" };
    for (int i = 0; i < 5; ++i)
        lineIcons[i] = createIcon(QLatin1String(lineNames[i]), iconSide);
    freeFormIcon = createIcon(QStringLiteral("freeform"), iconSide);
    radiusIcon = createIcon(QStringLiteral("radius"), iconSide);
    diameterIcon = createIcon(QStringLiteral("diameter"), iconSide);
    angleIcon = createIcon(QStringLiteral("angle"), iconSide);
    outAngleIcon = createIcon(QStringLiteral("out-angle"), iconSide);

    for (QToolButton* button : { theFreeFormButton, theDistanceButton, theRadiusButton, theAngleButton }) {
        button->setIconSize(QSize(iconSide, iconSide));
        button->setStyle(createStyle());
    }
    theDistanceButton->setStyleSheet(sheet);
    refreshComboboxIcon();
    theFreeFormButton->setIcon(freeFormIcon);
    theRadiusButton->setIcon(radiusMode ? radiusIcon : diameterIcon);
    theAngleButton->setIcon(innerAngleMode ? angleIcon : outAngleIcon);

    radiusMenu = createMenu({ { QStringLiteral("diameter"), kDataDiameter }, { QStringLiteral("radius"), kDataRadius } },
                            iconSide);
    angleMenu = createMenu({ { QStringLiteral("angle"), kDataAngle }, { QStringLiteral("out-angle"), kDataOutAngle } },
                           iconSide);
    freehandMenu = createMenu({ { QStringLiteral("measure"), 0 },
                                { QStringLiteral("freeform_line"), 1 },
                                { QStringLiteral("multiple_distance_line"), 2 },
                                { QStringLiteral("paralell_distance_line"), 3 },
                                { QStringLiteral("circle_distance_line"), 4 } },
                              iconSide);
    theRadiusButton->setMenu(radiusMenu);
    theAngleButton->setMenu(angleMenu);
    theDistanceButton->setMenu(freehandMenu);
    connect(radiusMenu, SIGNAL(triggered(QAction*)), this, SLOT(slotRadiusTriggered(QAction*)));
    connect(angleMenu, SIGNAL(triggered(QAction*)), this, SLOT(slotAngleTriggered(QAction*)));
    connect(freehandMenu, SIGNAL(triggered(QAction*)), this, SLOT(slotFreehandTriggered(QAction*)));

    for (QToolButton* button : { theDistanceButton, theFreeFormButton, theRadiusButton, theAngleButton })
        button->setChecked(false);
}

OvGuiMeasurementTool::~OvGuiMeasurementTool()
{
    // The menus use proxy styles owned by this panel, so they go first.
    delete radiusMenu;
    delete angleMenu;
    delete freehandMenu;
    delete colorDialog;
}

myStyle* OvGuiMeasurementTool::createStyle()
{
    myStyle* style = new myStyle();
    style->scale = scale;
    style->setParent(this);
    return style;
}

QIcon OvGuiMeasurementTool::createIcon(const QString& aName, int aSize) const
{
    QIcon icon;
    const QPixmap deactive = loadScaled(aName, QStringLiteral("-deactive.svg"), aSize);
    const QPixmap active = loadScaled(aName, QStringLiteral("-active.svg"), aSize);
    addPixmap(icon, deactive, QIcon::Disabled, QIcon::Off);
    addPixmap(icon, deactive, QIcon::Disabled, QIcon::On);
    addPixmap(icon, loadScaled(aName, QStringLiteral("-normal.svg"), aSize), QIcon::Normal, QIcon::Off);
    addPixmap(icon, active, QIcon::Normal, QIcon::On);
    addPixmap(icon, active, QIcon::Active, QIcon::On);
    addPixmap(icon, loadScaled(aName, QStringLiteral("-hover.svg"), aSize), QIcon::Active, QIcon::Off);
    return icon;
}

QIcon OvGuiMeasurementTool::createMenuIcon(const QString& aName, int aSize) const
{
    QIcon icon;
    addPixmap(icon, loadScaled(aName, QStringLiteral("-active.svg"), aSize), QIcon::Active, QIcon::Off);
    addPixmap(icon, loadScaled(aName, QStringLiteral("-hover.svg"), aSize), QIcon::Normal, QIcon::Off);
    return icon;
}

QMenu* OvGuiMeasurementTool::createMenu(const QList<QPair<QString, int>>& anEntries, int anIconSize)
{
    QMenu* menu = new QMenu(this);
    menu->setStyleSheet(QStringLiteral("QMenu::item {padding: 0px %1px 0px %1px;}").arg(12 * scale));
    menu->setStyle(createStyle());
    for (const auto& entry : anEntries) {
        QAction* action = menu->addAction(createMenuIcon(entry.first, anIconSize), QString());
        action->setData(entry.second);
    }
    return menu;
}

QColorDialog* OvGuiMeasurementTool::getColorDialog() const
{
    return colorDialog;
}

bool OvGuiMeasurementTool::isNothingSelected() const
{
    const KxGsEditor* editor = KxGsEditor::existingInstance();
    return !editor || editor->getSelectedObjects().isEmpty();
}

void OvGuiMeasurementTool::writeSetting(const QString& aKey, const QVariant& aValue)
{
    KxAppSettings::beginGroup(kKeyMeasurementSection);
    KxAppSettings::setValue(aKey, aValue);
    KxAppSettings::endGroup();
}

// Units

void OvGuiMeasurementTool::initializeUnitMap()
{
    unitMap.clear();
    unitMap.insert(tr("auto"), UnitAuto);
    unitMap.insert(tr("nm"), UnitNm);
    unitMap.insert(QString(kMicromtrChar) + QLatin1Char('m'), UnitUm);
    unitMap.insert(tr("mm"), UnitMm);
    unitMap.insert(tr("cm"), UnitCm);
    unitMap.insert(tr("mil"), UnitMil);
    unitMap.insert(tr("inch"), UnitInch);
    unitMap.insert(tr("ft"), UnitFt);
    unitMap.insert(tr("m"), UnitM);
    unitMap.insert(tr("deg") + QLatin1Char('(') + kSupZeroChar + QLatin1Char(')'), UnitDeg);
}

QString OvGuiMeasurementTool::getUnitNameFromType(int aUnit) const
{
    return unitMap.key(aUnit, QString());
}

int OvGuiMeasurementTool::getUnitTypeFromName(const QString& aName) const
{
    return unitMap.value(aName, -1);
}

double OvGuiMeasurementTool::convertFromUm(UnitType aUnit, double aValue) const
{
    switch (aUnit) {
    case UnitNm: return aValue * 1000.0;
    case UnitMm: return aValue * 0.001;
    case UnitCm: return aValue * 0.0001;
    case UnitMil: return aValue * 0.03937007;
    case UnitInch: return aValue * 3.937007e-5;
    case UnitFt: return aValue / 304800.0;
    case UnitM: return aValue * 1e-6;
    default: return aValue;
    }
}

double OvGuiMeasurementTool::convertToUm(UnitType aUnit, double aValue) const
{
    switch (aUnit) {
    case UnitNm: return aValue * 0.001;
    case UnitMm: return aValue * 1000.0;
    case UnitCm: return aValue * 10000.0;
    case UnitMil: return aValue * 25.4;
    case UnitInch: return aValue * 25400.0;
    case UnitFt: return aValue * 304800.0;
    case UnitM: return aValue * 1e6;
    default: return aValue;
    }
}

double OvGuiMeasurementTool::convertUnit(UnitType aFrom, UnitType aTo, double aValue) const
{
    if (aFrom == aTo)
        return aValue;
    return convertFromUm(aTo, convertToUm(aFrom, aValue));
}

double OvGuiMeasurementTool::convertFromUm(double aValue, bool aSquared, UnitType& aUnit, QString& aUnitName,
                                           const QList<int>& anAllowedUnits) const
{
    const QList<int>& allowed = anAllowedUnits.isEmpty() ? unitsToUse : anAllowedUnits;
    if (aUnit >= kNoUnit)
        return aValue;

    double value = aSquared ? std::sqrt(aValue) : aValue;
    if (aUnit != UnitAuto) {
        value = convertFromUm(aUnit, value);
    } else {
        aUnit = UnitUm;
        if (value < 1.0 && allowed.contains(UnitNm)) {
            aUnit = UnitNm;
            value *= 1000.0;
        } else if (value >= 1000.0 && allowed.contains(UnitMm)) {
            aUnit = UnitMm;
            value /= 1000.0;
            if (value >= 10.0 && allowed.contains(UnitCm)) {
                aUnit = UnitCm;
                value /= 10.0;
                if (value >= 100.0 && allowed.contains(UnitM)) {
                    aUnit = UnitM;
                    value /= 100.0;
                }
            }
        }
    }

    aUnitName = getUnitNameFromType(aUnit);
    if (aSquared) {
        value *= value;
        aUnitName += kSupTwoChar;
    }
    return value;
}

QString OvGuiMeasurementTool::convertFromUmAndFormat(double aValue, bool aSquared, UnitType aUnit,
                                                     const QList<int>& anAllowedUnits) const
{
    QString unitName;
    UnitType usedUnit = aUnit;
    const double value = convertFromUm(aValue, aSquared, usedUnit, unitName, anAllowedUnits);

    QString number;
    switch (aUnit) {
    case UnitMm: number = calcDisplayValueMm(value); break;
    case UnitMil: number = calcDisplayValueMil(value); break;
    case UnitNm: number = calcDisplayValueNm(value); break;
    default: number = calcDisplayValueUm(value); break;
    }
    return number + QLatin1Char(' ') + unitName;
}

QString OvGuiMeasurementTool::unitLabel(int aUnit) const
{
    QString label = getUnitNameFromType(aUnit);
    if (squaredUnits && aUnit != UnitAuto)
        label += kSupTwoChar;
    return label;
}

void OvGuiMeasurementTool::setUnitsToUse(const QList<int>& aUnits, bool aSquared)
{
    unitsToUse = aUnits;
    squaredUnits = aSquared;
    theSLUnitType->setEnabled(unitsToUse.size() > 1);
    if (!unitsToUse.isEmpty()) {
        const QSignalBlocker blocker(theSLUnitType);
        theSLUnitType->setRange(0, unitsToUse.size() - 1);
    }
    if (unitsToUse.size() == 1)
        setCurrentUnit(unitsToUse.first());
    else
        theTLUnit->setText(QString());
}

QList<int> OvGuiMeasurementTool::getUnitsToUse() const
{
    return unitsToUse;
}

bool OvGuiMeasurementTool::isSquaredUnits() const
{
    return squaredUnits;
}

int OvGuiMeasurementTool::getCurrentUnit() const
{
    const int position = theSLUnitType->value();
    if (position < 0 || position >= unitsToUse.size())
        return kNoUnit;
    return unitsToUse.at(position);
}

void OvGuiMeasurementTool::setCurrentUnit(int aUnit)
{
    if (aUnit < 0 || !unitsToUse.contains(aUnit))
        return;
    {
        const QSignalBlocker blocker(theSLUnitType);
        theSLUnitType->setValue(unitsToUse.indexOf(aUnit));
    }
    theTLUnit->setText(unitLabel(aUnit));
}

void OvGuiMeasurementTool::setCurrentUnit(const QString& aName)
{
    const int unit = getUnitTypeFromName(aName);
    if (unit >= 0)
        setCurrentUnit(unit);
}

void OvGuiMeasurementTool::slotUnitChanged(int aPosition)
{
    if (aPosition < 0 || aPosition >= unitsToUse.size())
        return;
    const int unit = unitsToUse.at(aPosition);
    theTLUnit->setText(unitLabel(unit));
    emit signalUnitTypeChanged(unit);
}

// Style values

int OvGuiMeasurementTool::getLineWidth() const
{
    return theSLWidth->value();
}

int OvGuiMeasurementTool::getFontSize() const
{
    return theSLFontSize->value();
}

QColor OvGuiMeasurementTool::getColor() const
{
    return colorDialog->currentColor();
}

void OvGuiMeasurementTool::setLineWidth(int aWidth)
{
    const QSignalBlocker sliderBlocker(theSLWidth);
    const QSignalBlocker spinBlocker(theSBWidth);
    theSLWidth->setValue(aWidth);
    theSBWidth->setValue(aWidth);
}

void OvGuiMeasurementTool::setFontSize(int aSize)
{
    const QSignalBlocker sliderBlocker(theSLFontSize);
    const QSignalBlocker spinBlocker(theSBFontSize);
    theSLFontSize->setValue(aSize);
    theSBFontSize->setValue(aSize);
}

void OvGuiMeasurementTool::setColor(const QColor& aColor)
{
    {
        const QSignalBlocker blocker(colorDialog);
        colorDialog->setCurrentColor(aColor);
    }
    setColorToolButtonColor();
}

void OvGuiMeasurementTool::setColorToolButtonColor()
{
    theColorButton->setStyleSheet(
        QStringLiteral("QToolButton{background: %1;       border: 1px; border-color: black; border-style: outset;}")
            .arg(getColor().name()));
}

void OvGuiMeasurementTool::refreshComboboxIcon()
{
    if (freehandType >= 0 && freehandType <= 4)
        theDistanceButton->setIcon(lineIcons[freehandType]);
}

void OvGuiMeasurementTool::updateGuiWithDefaults(bool aReset)
{
    const QSignalBlocker dialogBlocker(colorDialog);
    const QSignalBlocker widthSliderBlocker(theSLWidth);
    const QSignalBlocker widthSpinBlocker(theSBWidth);
    const QSignalBlocker fontSliderBlocker(theSLFontSize);
    const QSignalBlocker fontSpinBlocker(theSBFontSize);
    const QSignalBlocker panelBlocker(this);

    KxAppSettings::beginGroup(kKeyMeasurementSection);
    const QColor color = toColor(KxAppSettings::value(aReset ? kKeyResColor : kKeyDefColor, kStdColor));
    const int width = readInt(aReset ? kKeyResLineWidth : kKeyDefLineWidth, kDefLineWidth);
    const int fontSize = readInt(aReset ? kKeyResFontSize : kKeyDefFontSize, kDefFontSize);
    colorDialog->setCurrentColor(color);
    setLineWidth(width);
    setFontSize(fontSize);

    radiusMode = readInt(kKeyDefRadiusType, 0) == 0;
    theRadiusButton->setIcon(radiusMode ? radiusIcon : diameterIcon);
    innerAngleMode = readInt(kKeyDefAngleType, 0) == 0;
    theAngleButton->setIcon(innerAngleMode ? angleIcon : outAngleIcon);
    freehandType = readInt(kKeyDefFHandType, 0);
    if (freehandType < 0 || freehandType > 4)
        freehandType = 0;
    refreshComboboxIcon();
    setColorToolButtonColor();
    KxAppSettings::endGroup();

    setCurrentUnit(UnitAuto);
    if (unitsToUse.size() > 1)
        setCurrentUnit(unitsToUse.first());
}

void OvGuiMeasurementTool::slotLineWidthChanged(int aWidth)
{
    setLineWidth(aWidth);
    if (isNothingSelected())
        writeSetting(kKeyDefLineWidth, aWidth);
    emit signalWidthChanged(aWidth);
}

void OvGuiMeasurementTool::slotFontSizeChanged(int aSize)
{
    setFontSize(aSize);
    if (isNothingSelected())
        writeSetting(kKeyDefFontSize, aSize);
    emit signalFontValueChanged(aSize);
}

void OvGuiMeasurementTool::slotColorChanged(const QColor& aColor)
{
    setColor(aColor);
    if (isNothingSelected())
        writeSetting(kKeyDefColor, aColor);
    emit signalColorChanged(aColor);
    setColorToolButtonColor();
}

void OvGuiMeasurementTool::slotRadiusTriggered(QAction* anAction)
{
    if (!anAction)
        return;
    const int data = anAction->data().toInt();
    if (data == kDataDiameter) {
        theRadiusButton->setIcon(diameterIcon);
        radiusMode = false;
    } else if (data == kDataRadius) {
        theRadiusButton->setIcon(radiusIcon);
        radiusMode = true;
    }
    theRadiusButton->setChecked(true);
    writeSetting(kKeyDefRadiusType, radiusMode ? 0 : 1);
}

void OvGuiMeasurementTool::slotFreehandTriggered(QAction* anAction)
{
    if (!anAction)
        return;
    freehandType = anAction->data().toInt();
    writeSetting(kKeyDefFHandType, freehandType);
    // Unchecked then checked, so the manipulators re-evaluate the variant even when
    // the button was checked already.
    theDistanceButton->setChecked(false);
    theDistanceButton->setChecked(true);
    refreshComboboxIcon();
}

void OvGuiMeasurementTool::slotAngleTriggered(QAction* anAction)
{
    if (!anAction)
        return;
    const int data = anAction->data().toInt();
    if (data == kDataAngle) {
        theAngleButton->setIcon(angleIcon);
        innerAngleMode = true;
    } else if (data == kDataOutAngle) {
        theAngleButton->setIcon(outAngleIcon);
        innerAngleMode = false;
    }
    theAngleButton->setChecked(true);
    writeSetting(kKeyDefAngleType, innerAngleMode ? 0 : 1);
}

void OvGuiMeasurementTool::slotResetSettings()
{
    updateGuiWithDefaults(true);
    KxAppSettings::beginGroup(kKeyMeasurementSection);
    KxAppSettings::setValue(kKeyDefFontSize, getFontSize());
    KxAppSettings::setValue(kKeyDefLineWidth, getLineWidth());
    KxAppSettings::setValue(kKeyDefColor, getColor());
    KxAppSettings::endGroup();

    emit signalColorChanged(getColor());
    emit signalFontValueChanged(getFontSize());
    emit signalWidthChanged(getLineWidth());
    emit signalUnitTypeChanged(getCurrentUnit());
}

void OvGuiMeasurementTool::slotCurrentObjectChangedInEditor(const KxGsObject* aGsObj)
{
    if (!aGsObj) {
        for (QToolButton* button : { theDistanceButton, theFreeFormButton, theRadiusButton, theAngleButton })
            button->setChecked(false);
        updateGuiWithDefaults(false);
    }
    setUnitsToUse(QList<int>(), false);
}

void OvGuiMeasurementTool::slotObjectChangedInKernel(int aType, int aIdx, const KxKernelObjectData* aData)
{
    Q_UNUSED(aIdx);
    if (!aData || !kColorTypes.contains(aType))
        return;
    const KxParamKeyframeVector keyframes = aData->getKeyframesAt(KxKernelData::getInstance()->getCurrentFrame());
    if (keyframes.size() < 2)
        return;
    setColor(toColor(keyframes[1].getValue()));
}

void OvGuiMeasurementTool::slotProfileAboutToChange()
{
}

void OvGuiMeasurementTool::slotProfileChanged()
{
    updateGuiWithDefaults(false);
}
