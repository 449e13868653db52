#pragma once

#include <QWidget>

class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QLabel;
class QPushButton;

// The "Device Configuration" page: the calibration of the shown image in
// micrometres per pixel. 0 means uncalibrated (nothing can be measured).
class OvCalibrationPage : public QWidget
{
    Q_OBJECT

public:
    explicit OvCalibrationPage(QWidget* aParent = nullptr);

    // Shows a calibration without emitting signalCalibrationRequested.
    void showCalibration(double anUmPerPixel, const QString& aSource);
    // Re-reads the named calibrations into the list.
    void reloadNamed();

Q_SIGNALS:
    void signalCalibrationRequested(double anUmPerPixel);

private Q_SLOTS:
    void slotApply();
    void slotUseNamed();
    void slotSaveNamed();

private:
    QDoubleSpinBox* theSBUmPerPixel;
    QLabel* theTLSource;
    QPushButton* theApplyButton;
    QComboBox* theCBNamed;
    QPushButton* theUseNamedButton;
    QLineEdit* theLENewName;
    QPushButton* theSaveNamedButton;
};
