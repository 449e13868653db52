#pragma once

#include <QProxyStyle>

// Proxy of the application style for the panel's tool buttons and menus: pressed
// buttons do not shift their contents and menu icons follow the interface scale.
class myStyle : public QProxyStyle
{
    Q_OBJECT
public:
    myStyle();

    // Button shifts give 0, PM_SmallIconSize gives int(24 * scale); everything else is
    // the proxied style's.
    int pixelMetric(QStyle::PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;

    // Interface scale factor (1.0 for 100 %), set by the owner right after construction.
    double scale = 1.0;
};
