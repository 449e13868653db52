#pragma once

#include <QSlider>

// The panel's slider: a left click away from the handle jumps straight to the clicked
// value instead of stepping by a page, and the mouse wheel is passed on to the parent so
// that scrolling the panel never changes a value by accident.
class MySlider : public QSlider
{
    Q_OBJECT
public:
    explicit MySlider(QWidget* aParent = nullptr);
    explicit MySlider(Qt::Orientation anOrientation, QWidget* aParent = nullptr);

protected:
    // Always ignored, the value stays.
    void wheelEvent(QWheelEvent* anEvent) override;
    // Left click outside the handle: value = minimum + round((maximum - minimum) * x / width)
    // (vertical: measured from the bottom). With inverted appearance the result is mirrored
    // (maximum - r). Clicks on the handle and other buttons behave as in QSlider.
    void mousePressEvent(QMouseEvent* anEvent) override;
};
