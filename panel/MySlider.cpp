#include "MySlider.h"

#include "OvQtCompat.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>
#include <QWheelEvent>

#include <cmath>

MySlider::MySlider(QWidget* aParent)
    : QSlider(aParent)
{
}

MySlider::MySlider(Qt::Orientation anOrientation, QWidget* aParent)
    : QSlider(anOrientation, aParent)
{
}

void MySlider::wheelEvent(QWheelEvent* anEvent)
{
    anEvent->ignore();
}

void MySlider::mousePressEvent(QMouseEvent* anEvent)
{
    if (anEvent->button() != Qt::LeftButton) {
        QSlider::mousePressEvent(anEvent);
        return;
    }
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    const QPoint clickPos = OvQtCompat::localPos(anEvent).toPoint();
    const int width = geometry().width();
    const int height = geometry().height();
    const bool horizontal = orientation() == Qt::Horizontal;
    if (handle.contains(clickPos) || (horizontal ? width : height) <= 0) {
        QSlider::mousePressEvent(anEvent);
        return;
    }

    // 64 bits so that extreme ranges cannot overflow; the result is clamped by the range.
    const qint64 span = qint64(maximum()) - qint64(minimum());
    const qint64 product = horizontal ? span * clickPos.x() : span * (height - clickPos.y());
    const qint64 r = std::llround(float(product) / float(horizontal ? width : height));
    const qint64 target = invertedAppearance() ? qint64(maximum()) - r : qint64(minimum()) + r;
    setValue(int(qBound(qint64(minimum()), target, qint64(maximum()))));
    anEvent->accept();
}
