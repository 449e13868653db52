#pragma once

#include <QDialog>

class KxGsEditor;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QPushButton;

// Calibration from a known length: a line drawn over a scale bar or a stage
// micrometer, its true length and unit, and the resulting size of a pixel.
// The result can be kept under a name as well.
class OvLineCalibrationDialog : public QDialog
{
    Q_OBJECT

public:
    // The true-length units offered, in list order.
    enum Unit { Nanometre, Micrometre, Millimetre, Centimetre, Metre, Mil, Inch };

    explicit OvLineCalibrationDialog(double aLinePixels, QWidget* aParent = nullptr);

    // Micrometres per pixel for a line of aPixels that is aLength in aUnit
    // long; 0 when either is not a finite number above 0 or the unit is unknown.
    static double umPerPixel(double aPixels, double aLength, int aUnit);
    // The length in pixels of the editor's current measurement when it is a
    // stored straight line (a "len" parameter), else 0.
    static double selectedLinePixels(const KxGsEditor* anEditor);

    void setTrueLength(double aLength, int aUnit);
    double result() const;
    double linePixels() const;
    double trueLength() const;
    int unit() const;
    // The name typed to keep the calibration under; empty for none.
    QString calibrationName() const;

private:
    void updateResult();

    QDoubleSpinBox* theSBPixels;
    QDoubleSpinBox* theSBLength;
    QComboBox* theCBUnit;
    QLabel* theTLResult;
    QLineEdit* theLEName;
    QPushButton* okButton = nullptr;
};
