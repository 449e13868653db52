#pragma once

#include "KxHostGlobal.h"

#include <QPoint>

// The editor's current view of the picture: the origin that kernel positions
// carry (stored = item position + origin) and the zoom (screen pixels per
// image pixel).
class KX_HOST_EXPORT KxView
{
public:
    KxView() = default;
    KxView(const QPoint& anOrigin, double aZoom);

    QPoint getOrigin() const { return origin; }
    void setOrigin(const QPoint& anOrigin) { origin = anOrigin; }
    double getZoom() const { return zoom; }
    void setZoom(double aZoom) { zoom = aZoom; }

    // True when the zoom is below 1/16: one screen pixel then covers more than
    // 16 image pixels, too coarse to place measurement points, so measuring
    // tools are blocked. A zoom that is not a positive number blocks as well.
    bool isScaleBlockingTool() const;

    // Read and written directly by the host.
    QPoint origin;
    double zoom = 1.0;
};
