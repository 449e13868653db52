#pragma once

#include "ui_OvGuiMeasurementToolUi.h"

#include <QColor>
#include <QIcon>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QWidget>

class KxGsObject;
class KxKernelObjectData;
class QAction;
class QColorDialog;
class QMenu;
class myStyle;

// The settings panel of the measurement tool: draw buttons (three with a menu of
// variants), the unit selector, font size, line width and colour. User changes are
// broadcast through the four signals and, while nothing is selected in the editor,
// remembered in the host settings (group "Measurement"). Programmatic updates (the
// setters, updateGuiWithDefaults, setCurrentUnit) emit nothing and write nothing.
// The manipulators read the draw buttons and the mode members directly.
//
// It also owns the measuring units: their codes and names, the conversions between
// micrometres and every unit, and the label texts of measured values.
class OvGuiMeasurementTool : public QWidget, public Ui::OvGuiMeasurementToolUi
{
    Q_OBJECT

public:
    // Stored in kernel objects (parameter "ut"): the numbers never change.
    enum UnitType : int {
        UnitAuto = 0,
        UnitNm = 1,
        UnitUm = 2,
        UnitMm = 3,
        UnitCm = 4,
        UnitMil = 5,
        UnitInch = 6,
        UnitFt = 7,
        UnitM = 8,
        UnitDeg = 9
    };
    Q_ENUM(UnitType)

    // Unit code meaning "no unit": values are passed through and get no unit name.
    static constexpr int kNoUnit = 1000;

    static const QString kKeyMeasurementSection;
    static const QString kKeyDefLineWidth;
    static const QString kKeyDefFontSize;
    static const QString kKeyDefRadiusType;
    static const QString kKeyDefAngleType;
    static const QString kKeyDefFHandType;
    static const QString kKeyDefColor;
    static const QString kKeyResLineWidth;
    static const QString kKeyResFontSize;
    static const QString kKeyResColor;
    // Interface scale in percent, outside the measurement group.
    static const QString kKeyScalingFactor;
    static const QColor kStdColor;
    static const int kDefLineWidth = 2;
    static const int kDefFontSize = 16;

    // Reads the settings and connects to the editor, the kernel notifier and the
    // settings store (creating the editor instance when none exists yet).
    // A "ScalingFactor" that is not a positive integer counts as 100.
    explicit OvGuiMeasurementTool(QWidget* aParent = nullptr);
    ~OvGuiMeasurementTool() override;

    // Units

    // Fills the name -> code map with the ten units; keys are the translated names.
    void initializeUnitMap();
    // First name (in the map's key order) of the code; empty for unknown codes.
    QString getUnitNameFromType(int aUnit) const;
    // Code stored under the (translated) name; -1 when unknown.
    int getUnitTypeFromName(const QString& aName) const;

    // Length conversions; codes other than nm, mm, cm, mil, inch, ft and m pass unchanged.
    double convertFromUm(UnitType aUnit, double aValue) const;
    double convertToUm(UnitType aUnit, double aValue) const;
    // aValue unchanged when both units agree, else through micrometres.
    double convertUnit(UnitType aFrom, UnitType aTo, double aValue) const;

    // Converts a length in µm (an area in µm² when aSquared) into aUnit, choosing a
    // unit for UnitAuto among anAllowedUnits (the units in use when that is empty):
    // nm below 1 µm, from 1000 µm mm, then cm from 10 mm and m from 100 cm, each only
    // while offered. Writes the unit used and its name (with "²" when squared) back.
    // A unit of kNoUnit or above returns aValue and leaves both out-parameters alone.
    double convertFromUm(double aValue, bool aSquared, UnitType& aUnit, QString& aUnitName,
                         const QList<int>& anAllowedUnits) const;
    // The label text: number, one space, unit name. The number's format follows the
    // unit asked for (mm, mil and nm have their own, everything else the µm one), not
    // the unit an automatic choice ended on.
    QString convertFromUmAndFormat(double aValue, bool aSquared, UnitType aUnit,
                                   const QList<int>& anAllowedUnits) const;

    // Offers aUnits on the unit slider (in that order); the slider is enabled only for
    // more than one unit. With exactly one unit it becomes current, otherwise the label
    // is cleared and the caller sets the current unit.
    void setUnitsToUse(const QList<int>& aUnits, bool aSquared);
    QList<int> getUnitsToUse() const;
    bool isSquaredUnits() const;
    // The unit at the slider position; kNoUnit when the position has no unit.
    int getCurrentUnit() const;
    // Moves the slider to the unit and shows its name; ignored for units not offered.
    void setCurrentUnit(int aUnit);
    void setCurrentUnit(const QString& aName);

    // Style values shown on the panel

    int getLineWidth() const;
    int getFontSize() const;
    QColor getColor() const;
    // Clamped by the widgets' ranges (width 1..20, font size 8..72).
    void setLineWidth(int aWidth);
    void setFontSize(int aSize);
    // An invalid colour reaches the dialog as is; the dialog shows it as opaque black.
    void setColor(const QColor& aColor);
    void setColorToolButtonColor();
    // Shows the icon of the current distance variant; other freehandType values keep it.
    void refreshComboboxIcon();
    // Shows the remembered values ("Res_" values when aReset) and mode choices.
    // Values that do not convert to a number fall back to the defaults, and so does
    // a stored distance variant outside 0..4.
    void updateGuiWithDefaults(bool aReset);

    // The dialog whose current colour is the panel's colour.
    QColorDialog* getColorDialog() const;

    // Circles show their radius (true) or diameter (false).
    bool radiusMode = true;
    // Angles are measured inside (true) or outside (false).
    bool innerAngleMode = true;
    // Variant of the distance button: 0 distance, 1 free line, 2 multiple distance,
    // 3 parallel distance, 4 circle distance.
    int freehandType = 0;

signals:
    void signalWidthChanged(int aWidth);
    void signalUnitTypeChanged(int aUnit);
    void signalFontValueChanged(int aSize);
    void signalColorChanged(const QColor& aColor);

private slots:
    void slotLineWidthChanged(int aWidth);
    void slotFontSizeChanged(int aSize);
    void slotColorChanged(const QColor& aColor);
    // Menu choices; a null action is ignored.
    void slotRadiusTriggered(QAction* anAction);
    void slotFreehandTriggered(QAction* anAction);
    void slotAngleTriggered(QAction* anAction);
    // Restores the "Res_" style values, stores them as the user's and broadcasts them
    // (colour, font size, width, unit, in this order).
    void slotResetSettings();
    void slotUnitChanged(int aPosition);
    void slotCurrentObjectChangedInEditor(const KxGsObject* aGsObj);
    // Takes over the colour of a changed measurement (not of free lines).
    void slotObjectChangedInKernel(int aType, int aIdx, const KxKernelObjectData* aData);
    void slotProfileAboutToChange();
    void slotProfileChanged();

private:
    QIcon createIcon(const QString& aName, int aSize) const;
    QIcon createMenuIcon(const QString& aName, int aSize) const;
    QMenu* createMenu(const QList<QPair<QString, int>>& anEntries, int anIconSize);
    myStyle* createStyle();
    bool isNothingSelected() const;
    void writeSetting(const QString& aKey, const QVariant& aValue);
    QString unitLabel(int aUnit) const;

    QIcon lineIcons[5];
    QIcon freeFormIcon;
    QIcon radiusIcon;
    QIcon diameterIcon;
    QIcon angleIcon;
    QIcon outAngleIcon;
    QColorDialog* colorDialog = nullptr;
    QMenu* radiusMenu = nullptr;
    QMenu* angleMenu = nullptr;
    QMenu* freehandMenu = nullptr;
    double scale = 1.0;

    QMap<QString, int> unitMap;
    QList<int> unitsToUse;
    bool squaredUnits = false;
};
