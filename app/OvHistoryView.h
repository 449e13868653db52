#pragma once

#include "OvQueuedCall.h"

#include <QAbstractListModel>
#include <QListView>
#include <QPointer>
#include <QString>

class QUndoStack;

// The undo history as a list: the empty state (its label) and one row per
// command; the row of the stack's index is the current one, and choosing a
// row jumps there. Unlike QUndoView it follows the stack row by row instead
// of rebuilding and re-measuring every row on each step, so a step costs the
// same however long the history is (removing a base with thousands of lines
// pushes thousands of steps at once).
class OvHistoryView : public QListView
{
    Q_OBJECT

public:
    explicit OvHistoryView(QUndoStack* aStack, QWidget* aParent = nullptr);

    void setEmptyLabel(const QString& aLabel);
    QString emptyLabel() const;
    QUndoStack* stack() const;

private Q_SLOTS:
    void slotStackIndexChanged();
    void slotCurrentRowChosen(const QModelIndex& aCurrent);
    void syncCurrentRow();

private:
    class Model;
    Model* historyModel;
    QPointer<QUndoStack> undoStack;
    // Moves the current row once per burst of steps.
    OvQueuedCall sync;
    bool syncing = false;
};
