#include "OvPanelMenuTexts.h"

#include <QAction>
#include <QMenu>
#include <QToolButton>
#include <QWidget>

namespace {

struct Entry
{
    const char* button;
    int data;
    const char* text;
    const char* toolTip;
};

// The data values are the panel's variant codes.
const Entry kEntries[] = {
    { "theDistanceButton", 0, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Distance"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Distance: a straight line between two points") },
    { "theDistanceButton", 1, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Free line"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Free line: the length of a line drawn by hand") },
    { "theDistanceButton", 2, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Multiple distances"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts",
                        "Multiple distances: perpendicular distances from points to a base line") },
    { "theDistanceButton", 3, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Parallel distances"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts",
                        "Parallel distances: lines parallel to a base line, labelled with their distance from it") },
    { "theDistanceButton", 4, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Circle-to-circle distance"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Circle-to-circle distance: a line between the centres of two circles") },
    { "theRadiusButton", 6, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Diameter"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Circle through three rim points, labelled with its diameter") },
    { "theRadiusButton", 5, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Radius"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Circle through three rim points, labelled with its radius") },
    { "theAngleButton", 7, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Inner angle"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Inner angle: the angle between two lines, below 180\u00B0") },
    { "theAngleButton", 8, QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Outer angle"),
      QT_TRANSLATE_NOOP("OvPanelMenuTexts", "Outer angle: 360\u00B0 minus the inner angle") },
};

} // namespace

int OvPanelMenuTexts::apply(QWidget* aRoot)
{
    if (!aRoot)
        return 0;
    int labelled = 0;
    for (const Entry& entry : kEntries) {
        const auto* button = aRoot->findChild<QToolButton*>(QString::fromLatin1(entry.button));
        QMenu* menu = button ? button->menu() : nullptr;
        if (!menu)
            continue;
        menu->setToolTipsVisible(true);
        for (QAction* action : menu->actions()) {
            bool ok = false;
            if (action->data().toInt(&ok) != entry.data || !ok)
                continue;
            action->setText(tr(entry.text));
            action->setToolTip(tr(entry.toolTip));
            action->setStatusTip(tr(entry.toolTip));
            ++labelled;
        }
    }
    return labelled;
}
