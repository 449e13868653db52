#include "OvFrameBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

OvFrameBar::OvFrameBar(QWidget* aParent)
    : QWidget(aParent)
    , previousButton(new QToolButton(this))
    , playButton(new QToolButton(this))
    , nextButton(new QToolButton(this))
    , slider(new QSlider(Qt::Horizontal, this))
    , label(new QLabel(this))
    , timer(new QTimer(this))
{
    setObjectName(QStringLiteral("frameBar"));
    previousButton->setObjectName(QStringLiteral("previousFrameButton"));
    playButton->setObjectName(QStringLiteral("playButton"));
    nextButton->setObjectName(QStringLiteral("nextFrameButton"));
    slider->setObjectName(QStringLiteral("frameSlider"));
    label->setObjectName(QStringLiteral("frameLabel"));
    previousButton->setIcon(style()->standardIcon(QStyle::SP_MediaSkipBackward));
    previousButton->setToolTip(tr("Previous frame (Page Up)"));
    playButton->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    playButton->setToolTip(tr("Play / pause (Ctrl+Space)"));
    nextButton->setIcon(style()->standardIcon(QStyle::SP_MediaSkipForward));
    nextButton->setToolTip(tr("Next frame (Page Down)"));
    slider->setPageStep(1);
    timer->setInterval(500);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    layout->addWidget(previousButton);
    layout->addWidget(playButton);
    layout->addWidget(nextButton);
    layout->addWidget(slider, 1);
    layout->addWidget(label);

    connect(previousButton, &QToolButton::clicked, this, &OvFrameBar::slotPrevious);
    connect(nextButton, &QToolButton::clicked, this, &OvFrameBar::slotNext);
    connect(playButton, &QToolButton::clicked, this, &OvFrameBar::slotTogglePlay);
    connect(slider, &QSlider::valueChanged, this, [this](int aFrame) { request(aFrame); });
    connect(timer, &QTimer::timeout, this, [this] {
        if (currentFrame() + 1 >= count)
            slotTogglePlay();
        else
            slotNext();
    });
    setFrameCount(0);
}

void OvFrameBar::setFrameCount(int aCount)
{
    if (isPlaying())
        slotTogglePlay();
    count = qMax(0, aCount);
    const QSignalBlocker blocker(slider);
    slider->setRange(0, qMax(0, count - 1));
    slider->setValue(0);
    updateLabel();
}

void OvFrameBar::showFrame(int aFrame)
{
    const QSignalBlocker blocker(slider);
    slider->setValue(aFrame);
    updateLabel();
}

int OvFrameBar::currentFrame() const
{
    return slider->value();
}

bool OvFrameBar::isPlaying() const
{
    return timer->isActive();
}

void OvFrameBar::setInterval(int aMilliseconds)
{
    timer->setInterval(qMax(1, aMilliseconds));
}

void OvFrameBar::slotPrevious()
{
    request(currentFrame() - 1);
}

void OvFrameBar::slotNext()
{
    request(currentFrame() + 1);
}

void OvFrameBar::slotTogglePlay()
{
    if (isPlaying()) {
        timer->stop();
    } else if (count > 1) {
        if (currentFrame() + 1 >= count)
            request(0);
        timer->start();
    }
    playButton->setIcon(style()->standardIcon(isPlaying() ? QStyle::SP_MediaPause : QStyle::SP_MediaPlay));
}

void OvFrameBar::request(int aFrame)
{
    if (aFrame < 0 || aFrame >= count)
        return;
    showFrame(aFrame);
    Q_EMIT signalFrameRequested(aFrame);
}

void OvFrameBar::updateLabel()
{
    label->setText(count > 0 ? tr("Frame %1 / %2").arg(slider->value() + 1).arg(count) : QString());
}
