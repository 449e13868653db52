#include "OvLineCalibrationDialog.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxGsObject.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>

namespace {

struct UnitInfo
{
    const char* name;
    double um;
};

const UnitInfo kUnits[] = { { "nm", 0.001 }, { "\u00B5m", 1.0 }, { "mm", 1000.0 }, { "cm", 10000.0 },
                            { "m", 1e6 }, { "mil", 25.4 }, { "inch", 25400.0 } };
const int kUnitCount = int(sizeof(kUnits) / sizeof(kUnits[0]));

} // namespace

OvLineCalibrationDialog::OvLineCalibrationDialog(double aLinePixels, QWidget* aParent)
    : QDialog(aParent)
    , theSBPixels(new QDoubleSpinBox(this))
    , theSBLength(new QDoubleSpinBox(this))
    , theCBUnit(new QComboBox(this))
    , theTLResult(new QLabel(this))
    , theLEName(new QLineEdit(this))
{
    setObjectName(QStringLiteral("OvLineCalibrationDialog"));
    setWindowTitle(tr("Calibrate from Line"));
    theSBPixels->setObjectName(QStringLiteral("theSBPixels"));
    theSBPixels->setRange(0.0, 1e6);
    theSBPixels->setDecimals(2);
    theSBPixels->setSuffix(tr(" px"));
    theSBPixels->setValue(aLinePixels);
    theSBLength->setObjectName(QStringLiteral("theSBLength"));
    theSBLength->setRange(0.0, 1e9);
    theSBLength->setDecimals(4);
    theSBLength->setValue(100.0);
    theCBUnit->setObjectName(QStringLiteral("theCBUnit"));
    for (const UnitInfo& unit : kUnits)
        theCBUnit->addItem(QString::fromUtf8(unit.name));
    theCBUnit->setCurrentIndex(Micrometre);
    theTLResult->setObjectName(QStringLiteral("theTLResult"));
    theLEName->setObjectName(QStringLiteral("theLEName"));
    theLEName->setPlaceholderText(tr("optional, e.g. 20x objective"));

    auto* hint = new QLabel(aLinePixels > 0.0
                                ? tr("The line is %1 pixels long. Enter its true length, e.g. the length of "
                                     "the scale bar it covers.").arg(aLinePixels, 0, 'f', 2)
                                : tr("Select a distance line drawn over a scale bar or a stage micrometer first, "
                                     "or enter the length in pixels of something you know."),
                            this);
    hint->setWordWrap(true);
    auto* lengthRow = new QHBoxLayout;
    lengthRow->addWidget(theSBLength, 1);
    lengthRow->addWidget(theCBUnit);
    auto* form = new QFormLayout;
    form->addRow(tr("Line length"), theSBPixels);
    form->addRow(tr("True length"), lengthRow);
    form->addRow(tr("Pixel size"), theTLResult);
    form->addRow(tr("Keep as"), theLEName);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    okButton = buttons->button(QDialogButtonBox::Ok);
    okButton->setText(tr("Calibrate"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addLayout(form);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(theSBPixels, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this] { updateResult(); });
    connect(theSBLength, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this] { updateResult(); });
    connect(theCBUnit, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { updateResult(); });
    updateResult();
}

double OvLineCalibrationDialog::umPerPixel(double aPixels, double aLength, int aUnit)
{
    if (aUnit < 0 || aUnit >= kUnitCount || !std::isfinite(aPixels) || !std::isfinite(aLength) || aPixels <= 0.0
        || aLength <= 0.0)
        return 0.0;
    return aLength * kUnits[aUnit].um / aPixels;
}

double OvLineCalibrationDialog::selectedLinePixels(const KxGsEditor* anEditor)
{
    KxGsObject* item = anEditor ? anEditor->getCurrentObject() : nullptr;
    KxGsManipulator* manipulator = item ? item->getManipulator() : nullptr;
    if (!manipulator)
        return 0.0;
    const int idx = manipulator->getObjectIdx(item);
    const KxKernelData* kernel = KxKernelData::getInstance();
    const KxKernelObjectData* data = kernel->getObject(manipulator->getObjectType(), idx);
    const KxKernelObjectDataDescr* descr = kernel->getDataDescriptor(manipulator->getObjectType());
    if (!data || !descr)
        return 0.0;
    const QVariant len = descr->getValue(data->getKeyframesAt(kernel->getCurrentFrame()), QStringLiteral("len"));
    if (!len.canConvert<QPointF>())
        return 0.0;
    const QPointF vector = len.toPointF();
    return std::hypot(vector.x(), vector.y());
}

void OvLineCalibrationDialog::setTrueLength(double aLength, int aUnit)
{
    theSBLength->setValue(aLength);
    theCBUnit->setCurrentIndex(aUnit);
}

double OvLineCalibrationDialog::result() const
{
    return umPerPixel(theSBPixels->value(), theSBLength->value(), theCBUnit->currentIndex());
}

double OvLineCalibrationDialog::linePixels() const
{
    return theSBPixels->value();
}

double OvLineCalibrationDialog::trueLength() const
{
    return theSBLength->value();
}

int OvLineCalibrationDialog::unit() const
{
    return theCBUnit->currentIndex();
}

QString OvLineCalibrationDialog::calibrationName() const
{
    return theLEName->text().trimmed();
}

void OvLineCalibrationDialog::updateResult()
{
    const double um = result();
    theTLResult->setText(um > 0.0 ? tr("%1 \u00B5m per pixel").arg(um, 0, 'g', 8) : tr("enter both lengths"));
    okButton->setEnabled(um > 0.0);
}
