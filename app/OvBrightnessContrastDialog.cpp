#include "OvBrightnessContrastDialog.h"

#include "OvHistogramWidget.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

OvBrightnessContrastDialog::OvBrightnessContrastDialog(QWidget* aParent)
    : QDialog(aParent)
    , theHistogram(new OvHistogramWidget(this))
    , theSBMinimum(new QSpinBox(this))
    , theSBMaximum(new QSpinBox(this))
    , theSLMinimum(new QSlider(Qt::Horizontal, this))
    , theSLMaximum(new QSlider(Qt::Horizontal, this))
    , theTLValues(new QLabel(this))
    , theAutoButton(new QPushButton(tr("&Auto"), this))
    , theResetButton(new QPushButton(tr("&Reset"), this))
{
    setObjectName(QStringLiteral("OvBrightnessContrastDialog"));
    setWindowTitle(tr("Brightness/Contrast"));
    theSBMinimum->setObjectName(QStringLiteral("theSBMinimum"));
    theSBMaximum->setObjectName(QStringLiteral("theSBMaximum"));
    theSLMinimum->setObjectName(QStringLiteral("theSLMinimum"));
    theSLMaximum->setObjectName(QStringLiteral("theSLMaximum"));
    theTLValues->setObjectName(QStringLiteral("theTLValues"));
    theAutoButton->setObjectName(QStringLiteral("theAutoButton"));
    theResetButton->setObjectName(QStringLiteral("theResetButton"));
    // Typed values count once complete (Return, Tab or the arrows), so a
    // half-typed maximum never pushes the minimum away; Return never
    // presses a button.
    theSBMinimum->setKeyboardTracking(false);
    theSBMaximum->setKeyboardTracking(false);
    theAutoButton->setAutoDefault(false);
    theResetButton->setAutoDefault(false);
    theAutoButton->setToolTip(tr("Spread the picture's values over black to white, a few saturated at each end"));
    theResetButton->setToolTip(tr("Show the whole range the picture's samples can hold"));

    auto* minimumRow = new QHBoxLayout;
    minimumRow->addWidget(theSLMinimum, 1);
    minimumRow->addWidget(theSBMinimum);
    auto* maximumRow = new QHBoxLayout;
    maximumRow->addWidget(theSLMaximum, 1);
    maximumRow->addWidget(theSBMaximum);
    auto* form = new QFormLayout;
    form->addRow(tr("Minimum"), minimumRow);
    form->addRow(tr("Maximum"), maximumRow);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->addButton(theAutoButton, QDialogButtonBox::ActionRole);
    buttons->addButton(theResetButton, QDialogButtonBox::ResetRole);
    auto* note = new QLabel(tr("Changes only how the picture is shown, on every frame; its values, the files and "
                               "the measurements stay as they are."),
                            this);
    note->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(theHistogram, 1);
    layout->addWidget(theTLValues);
    layout->addLayout(form);
    layout->addWidget(note);
    layout->addWidget(buttons);

    buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(theSBMinimum, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int aValue) { changed(aValue, qMax(aValue + 1, theSBMaximum->value())); });
    connect(theSBMaximum, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int aValue) { changed(qMin(aValue - 1, theSBMinimum->value()), aValue); });
    connect(theSLMinimum, &QSlider::valueChanged, this,
            [this](int aValue) { changed(aValue, qMax(aValue + 1, theSBMaximum->value())); });
    connect(theSLMaximum, &QSlider::valueChanged, this,
            [this](int aValue) { changed(qMin(aValue - 1, theSBMinimum->value()), aValue); });
    connect(theAutoButton, &QPushButton::clicked, this, [this] {
        const OvDisplayRange range = OvDisplayRange::automatic(counts);
        changed(range.minimum(), range.maximum());
    });
    connect(theResetButton, &QPushButton::clicked, this, [this] { changed(0, topValue); });
}

void OvBrightnessContrastDialog::setPicture(const QImage& aPicture, const OvDisplayRange& aRange)
{
    counts = OvDisplayRange::valueCounts(aPicture);
    topValue = OvDisplayRange::maximumValueOf(aPicture);
    // The histogram and sliders span the values the picture holds, so a
    // 12-bit picture in 16-bit samples is not squeezed into a corner.
    int lowest = 0;
    while (lowest < counts.size() - 1 && counts.at(lowest) == 0)
        ++lowest;
    int highest = counts.size() - 1;
    while (highest > lowest && counts.at(highest) == 0)
        --highest;
    if (highest <= lowest) {
        lowest = 0;
        highest = topValue;
    }
    theHistogram->setCounts(counts, lowest, highest);
    theTLValues->setText(tr("Values %1 to %2 of 0 to %3").arg(lowest).arg(highest).arg(topValue));
    for (QSlider* slider : { theSLMinimum, theSLMaximum }) {
        const QSignalBlocker blocker(slider);
        slider->setRange(lowest, highest);
    }
    for (QSpinBox* box : { theSBMinimum, theSBMaximum }) {
        const QSignalBlocker blocker(box);
        box->setRange(0, topValue);
    }
    setRange(aRange);
}

void OvBrightnessContrastDialog::setRange(const OvDisplayRange& aRange)
{
    const QSignalBlocker blockers[] = { QSignalBlocker(theSBMinimum), QSignalBlocker(theSBMaximum),
                                        QSignalBlocker(theSLMinimum), QSignalBlocker(theSLMaximum) };
    theSBMinimum->setValue(aRange.minimum());
    theSBMaximum->setValue(aRange.maximum());
    theSLMinimum->setValue(aRange.minimum());
    theSLMaximum->setValue(aRange.maximum());
    theHistogram->setDisplayRange(aRange.minimum(), aRange.maximum());
}

OvDisplayRange OvBrightnessContrastDialog::range() const
{
    return OvDisplayRange(theSBMinimum->value(), theSBMaximum->value());
}

void OvBrightnessContrastDialog::changed(int aMinimum, int aMaximum)
{
    const OvDisplayRange range(qBound(0, aMinimum, topValue - 1), qBound(1, aMaximum, topValue));
    setRange(range);
    Q_EMIT signalRangeChanged(range.minimum(), range.maximum());
}
