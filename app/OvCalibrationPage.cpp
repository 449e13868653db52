#include "OvCalibrationPage.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

OvCalibrationPage::OvCalibrationPage(QWidget* aParent)
    : QWidget(aParent)
    , theSBUmPerPixel(new QDoubleSpinBox(this))
    , theTLSource(new QLabel(this))
    , theApplyButton(new QPushButton(tr("Apply"), this))
{
    setObjectName(QStringLiteral("OvCalibrationPage"));
    theSBUmPerPixel->setObjectName(QStringLiteral("theSBUmPerPixel"));
    theSBUmPerPixel->setDecimals(6);
    theSBUmPerPixel->setRange(0.0, 100000.0);
    theSBUmPerPixel->setSingleStep(0.01);
    theSBUmPerPixel->setSuffix(QStringLiteral(" \u00B5m/px"));
    theSBUmPerPixel->setSpecialValueText(tr("uncalibrated"));
    theApplyButton->setObjectName(QStringLiteral("theApplyButton"));
    theTLSource->setWordWrap(true);

    auto* form = new QFormLayout;
    form->addRow(tr("Calibration"), theSBUmPerPixel);
    form->addRow(tr("Source"), theTLSource);
    auto* layout = new QVBoxLayout(this);
    auto* title = new QLabel(tr("<b>Device Configuration</b>"), this);
    layout->addWidget(title);
    layout->addWidget(new QLabel(tr("Size of one image pixel. Measurements are shown in calibrated units "
                                    "once this is set."), this));
    layout->addLayout(form);
    layout->addWidget(theApplyButton, 0, Qt::AlignRight);
    layout->addStretch(1);

    connect(theApplyButton, &QPushButton::clicked, this, &OvCalibrationPage::slotApply);
}

void OvCalibrationPage::showCalibration(double anUmPerPixel, const QString& aSource)
{
    const QSignalBlocker blocker(theSBUmPerPixel);
    theSBUmPerPixel->setValue(anUmPerPixel > 0.0 ? anUmPerPixel : 0.0);
    theTLSource->setText(aSource);
}

void OvCalibrationPage::slotApply()
{
    Q_EMIT signalCalibrationRequested(theSBUmPerPixel->value());
}
