#include "KxView.h"

KxView::KxView(const QPoint& anOrigin, double aZoom)
    : origin(anOrigin)
    , zoom(aZoom)
{
}

bool KxView::isScaleBlockingTool() const
{
    // Written so that NaN blocks too.
    return !(zoom >= 1.0 / 16.0);
}
