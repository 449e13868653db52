#pragma once

#include <QColor>
#include <QPointF>
#include <QString>

// One parsed line of a gesture script.
struct OvScriptCommand
{
    enum Kind {
        Tool,       // text: tool name
        Press,      // point
        Move,       // point
        Release,    // point
        Click,      // point
        Unit,       // text: unit name as the panel shows it
        Color,      // color
        Width,      // number
        Font,       // number
        SelectNone,
        Delete,
        Undo,
        Redo,
        Frame,      // number
        Calibrate   // number (micrometres per pixel)
    };

    Kind kind = Undo;
    int line = 0;        // 1-based line in the script
    QPointF point;       // image pixels
    QString text;
    QColor color;
    double number = 0.0;
};
