#pragma once

#include <QWidget>

class QLabel;
class QSlider;
class QTimer;
class QToolButton;

// The frame controls of an image sequence: previous, play/pause, next, a
// slider and "Frame n / N". Frames are numbered from 0 inside and shown from 1.
class OvFrameBar : public QWidget
{
    Q_OBJECT

public:
    explicit OvFrameBar(QWidget* aParent = nullptr);

    // aCount frames; stops playing.
    void setFrameCount(int aCount);
    int frameCount() const { return count; }
    // Shows aFrame (clamped) without emitting anything.
    void showFrame(int aFrame);
    int currentFrame() const;
    bool isPlaying() const;
    // Milliseconds between frames while playing.
    void setInterval(int aMilliseconds);

public Q_SLOTS:
    void slotPrevious();
    void slotNext();
    // Plays from the current frame and stops at the last one.
    void slotTogglePlay();

Q_SIGNALS:
    void signalFrameRequested(int aFrame);

private:
    void request(int aFrame);
    void updateLabel();

    QToolButton* previousButton;
    QToolButton* playButton;
    QToolButton* nextButton;
    QSlider* slider;
    QLabel* label;
    QTimer* timer;
    int count = 0;
};
