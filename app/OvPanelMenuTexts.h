#pragma once

#include <QCoreApplication>

class QWidget;

// Names the entries of the Measurement panel's variant drop-downs (distance,
// circle, angle). The plug-in gives those entries icons only; the viewer finds
// the buttons by object name, recognises each entry by its data value and
// gives it a text and a tool tip, so that a newcomer can read the menus.
class OvPanelMenuTexts
{
    Q_DECLARE_TR_FUNCTIONS(OvPanelMenuTexts)

public:
    // Labels every entry found under aRoot; returns how many were labelled
    // (0 when the panel is not there). Entries with unknown data stay as
    // they are.
    static int apply(QWidget* aRoot);
};
