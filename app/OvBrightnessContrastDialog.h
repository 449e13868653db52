#pragma once

#include "OvDisplayRange.h"

#include <QDialog>
#include <QImage>

class OvHistogramWidget;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

// View > Brightness/Contrast: the display range of the picture (minimum and
// maximum, as spin boxes and sliders), Auto and Reset, over the picture's
// histogram. Not modal; every change is announced at once and changes only
// what is shown.
class OvBrightnessContrastDialog : public QDialog
{
    Q_OBJECT

public:
    explicit OvBrightnessContrastDialog(QWidget* aParent = nullptr);

    // The picture (its stored values) whose histogram is shown and on which
    // Auto works, and the range in use; emits nothing.
    void setPicture(const QImage& aPicture, const OvDisplayRange& aRange);
    // Shows aRange without emitting anything.
    void setRange(const OvDisplayRange& aRange);
    OvDisplayRange range() const;

    QSpinBox* minimumBox() const { return theSBMinimum; }
    QSpinBox* maximumBox() const { return theSBMaximum; }
    QPushButton* autoButton() const { return theAutoButton; }
    QPushButton* resetButton() const { return theResetButton; }
    OvHistogramWidget* histogram() const { return theHistogram; }

Q_SIGNALS:
    void signalRangeChanged(int aMinimum, int aMaximum);

private:
    // A spin box or slider moved: keep the two apart and announce the range.
    void changed(int aMinimum, int aMaximum);

    OvHistogramWidget* theHistogram;
    QSpinBox* theSBMinimum;
    QSpinBox* theSBMaximum;
    QSlider* theSLMinimum;
    QSlider* theSLMaximum;
    QLabel* theTLValues;
    QPushButton* theAutoButton;
    QPushButton* theResetButton;
    QVector<quint32> counts;
    int topValue = 255;
};
