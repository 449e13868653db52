#pragma once

#include "OvQueuedCall.h"

#include <QDockWidget>

class OvResultsModel;
class QTableView;

// The "Results" dock: the values of every measurement in a table. A click on
// a row asks for that measurement to be selected and shown; Ctrl+C (or the
// context menu) copies the selected rows, or all of them, as tab-separated
// text for a spreadsheet.
class OvResultsDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit OvResultsDock(QWidget* aParent = nullptr);

    OvResultsModel* model() const { return resultsModel; }
    QTableView* view() const { return table; }
    // Puts the selected rows (all rows when none is selected) on the clipboard.
    void copyRows();

Q_SIGNALS:
    void signalMeasurementActivated(int aType, int anIndex);

private:
    // Widens the columns whose rows in view no longer fit, never narrows one
    // (a column the user widened stays so).
    void widenColumns();

    OvResultsModel* resultsModel;
    QTableView* table;
    // Once per burst of new or changed rows.
    OvQueuedCall widen;
};
