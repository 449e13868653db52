#pragma once

#include <QString>

class QWidget;

// The measurement panel's dark style and its scaling with the host's interface scale
// (1.0 for 100 %). Static functions only.
class OvCommonStyle
{
public:
    // The panel's style sheet for a scale factor: font sizes and paddings scale with it,
    // image names get a size suffix from 1.25 upwards ("-125", "-150", ...).
    static QString generalStyleSheet(double scale);

    // Scales the size limits of every child widget of w (and of the whole subtree when
    // recursive): maximum sizes are multiplied and truncated, except dimensions at
    // QWIDGETSIZE_MAX which stay unbounded; minimum sizes are multiplied and rounded.
    // w itself is left alone (use resizeWidget for it). The last flag is unused.
    static void resizeHelper(QWidget* w, double scale, bool recursive, bool);

    // The per-widget step of resizeHelper.
    static void resizeWidget(QWidget* w, double scale);
};
