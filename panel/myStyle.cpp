#include "myStyle.h"

myStyle::myStyle()
    : QProxyStyle(nullptr)
{
}

int myStyle::pixelMetric(QStyle::PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case QStyle::PM_ButtonShiftHorizontal:
    case QStyle::PM_ButtonShiftVertical:
        return 0;
    case QStyle::PM_SmallIconSize:
        return int(24.0 * scale);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}
