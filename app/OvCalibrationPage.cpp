#include "OvCalibrationPage.h"

#include "OvNamedCalibrations.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

OvCalibrationPage::OvCalibrationPage(QWidget* aParent)
    : QWidget(aParent)
    , theSBUmPerPixel(new QDoubleSpinBox(this))
    , theTLSource(new QLabel(this))
    , theApplyButton(new QPushButton(tr("Apply"), this))
    , theCBNamed(new QComboBox(this))
    , theUseNamedButton(new QPushButton(tr("Use"), this))
    , theLENewName(new QLineEdit(this))
    , theSaveNamedButton(new QPushButton(tr("Save"), this))
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

    theCBNamed->setObjectName(QStringLiteral("theCBNamed"));
    theUseNamedButton->setObjectName(QStringLiteral("theUseNamedButton"));
    theLENewName->setObjectName(QStringLiteral("theLENewName"));
    theLENewName->setPlaceholderText(tr("e.g. 20x objective"));
    theSaveNamedButton->setObjectName(QStringLiteral("theSaveNamedButton"));
    auto* named = new QFormLayout;
    auto* useRow = new QHBoxLayout;
    useRow->addWidget(theCBNamed, 1);
    useRow->addWidget(theUseNamedButton);
    auto* saveRow = new QHBoxLayout;
    saveRow->addWidget(theLENewName, 1);
    saveRow->addWidget(theSaveNamedButton);
    named->addRow(tr("Saved"), useRow);
    named->addRow(tr("Save as"), saveRow);
    layout->addSpacing(12);
    layout->addWidget(new QLabel(tr("<b>Named calibrations</b>"), this));
    layout->addLayout(named);
    layout->addStretch(1);

    connect(theApplyButton, &QPushButton::clicked, this, &OvCalibrationPage::slotApply);
    connect(theUseNamedButton, &QPushButton::clicked, this, &OvCalibrationPage::slotUseNamed);
    connect(theSaveNamedButton, &QPushButton::clicked, this, &OvCalibrationPage::slotSaveNamed);
    connect(theLENewName, &QLineEdit::returnPressed, this, &OvCalibrationPage::slotSaveNamed);
    reloadNamed();
}

void OvCalibrationPage::reloadNamed()
{
    const QString current = theCBNamed->currentData().toString();
    theCBNamed->clear();
    const QMap<QString, double> all = OvNamedCalibrations::all();
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        theCBNamed->addItem(tr("%1 (%2 \u00B5m/px)").arg(it.key()).arg(it.value()), it.key());
    theCBNamed->setCurrentIndex(qMax(0, theCBNamed->findData(current)));
    theUseNamedButton->setEnabled(!all.isEmpty());
}

void OvCalibrationPage::slotUseNamed()
{
    const QMap<QString, double> all = OvNamedCalibrations::all();
    const QString name = theCBNamed->currentData().toString();
    if (all.contains(name))
        Q_EMIT signalCalibrationRequested(all.value(name));
}

void OvCalibrationPage::slotSaveNamed()
{
    if (!OvNamedCalibrations::store(theLENewName->text(), theSBUmPerPixel->value()))
        return;
    const QString name = theLENewName->text().trimmed();
    theLENewName->clear();
    reloadNamed();
    theCBNamed->setCurrentIndex(theCBNamed->findData(name));
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
