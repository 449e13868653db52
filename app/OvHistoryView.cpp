#include "OvHistoryView.h"

#include <QItemSelectionModel>
#include <QMetaObject>
#include <QUndoStack>

// Reads every text from the stack when asked; holds only how many rows the
// view was last told about.
class OvHistoryView::Model : public QAbstractListModel
{
public:
    explicit Model(QUndoStack* aStack, QObject* aParent)
        : QAbstractListModel(aParent)
        , stack(aStack)
        , shownCommands(aStack ? aStack->count() : 0)
    {
    }

    int rowCount(const QModelIndex& aParent = QModelIndex()) const override
    {
        return aParent.isValid() ? 0 : shownCommands + 1;
    }

    QVariant data(const QModelIndex& anIndex, int aRole) const override
    {
        if (aRole != Qt::DisplayRole || !anIndex.isValid() || anIndex.row() > shownCommands || !stack)
            return QVariant();
        return anIndex.row() == 0 ? emptyLabel : stack->text(anIndex.row() - 1);
    }

    // Rows added or dropped at the end as the stack grew or shrank; rows
    // from aFirstChanged on may hold other commands now (a push after undo
    // replaces the commands that could have been redone).
    void follow(int aFirstChanged)
    {
        const int count = stack ? stack->count() : 0;
        if (count > shownCommands) {
            beginInsertRows(QModelIndex(), shownCommands + 1, count);
            shownCommands = count;
            endInsertRows();
        } else if (count < shownCommands) {
            beginRemoveRows(QModelIndex(), count + 1, shownCommands);
            shownCommands = count;
            endRemoveRows();
        }
        const int first = qBound(1, aFirstChanged, shownCommands + 1);
        if (first <= shownCommands)
            emit dataChanged(index(first), index(shownCommands), { Qt::DisplayRole });
    }

    void setEmptyLabel(const QString& aLabel)
    {
        emptyLabel = aLabel;
        emit dataChanged(index(0), index(0), { Qt::DisplayRole });
    }

    QPointer<QUndoStack> stack;
    QString emptyLabel = tr("<empty>");
    int shownCommands = 0;
    // The stack's index when the rows were last followed.
    int lastIndex = 0;
};

OvHistoryView::OvHistoryView(QUndoStack* aStack, QWidget* aParent)
    : QListView(aParent)
    , historyModel(new Model(aStack, this))
    , undoStack(aStack)
    , sync(this, [this]() { syncCurrentRow(); })
{
    // Every row is one line of text: the view need not measure each one.
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setModel(historyModel);
    historyModel->lastIndex = aStack ? aStack->index() : 0;
    if (aStack) {
        connect(aStack, &QUndoStack::indexChanged, this, &OvHistoryView::slotStackIndexChanged);
        connect(aStack, &QUndoStack::cleanChanged, this, &OvHistoryView::slotStackIndexChanged);
    }
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &OvHistoryView::slotCurrentRowChosen);
    syncCurrentRow();
}

void OvHistoryView::setEmptyLabel(const QString& aLabel)
{
    historyModel->setEmptyLabel(aLabel);
}

QString OvHistoryView::emptyLabel() const
{
    return historyModel->emptyLabel;
}

QUndoStack* OvHistoryView::stack() const
{
    return undoStack.data();
}

void OvHistoryView::slotStackIndexChanged()
{
    if (!undoStack)
        return;
    const int index = undoStack->index();
    // A push replaces whatever could have been redone from the old index on.
    historyModel->follow(qMin(historyModel->lastIndex, index) + 1);
    historyModel->lastIndex = index;
    // A burst of steps (a removal with its dependants, a history jump)
    // moves the current row once, when control returns to the event loop.
    sync.request();
}

void OvHistoryView::syncCurrentRow()
{
    if (!undoStack)
        return;
    syncing = true;
    const QModelIndex current = historyModel->index(undoStack->index());
    selectionModel()->setCurrentIndex(current, QItemSelectionModel::ClearAndSelect);
    syncing = false;
}

void OvHistoryView::slotCurrentRowChosen(const QModelIndex& aCurrent)
{
    if (syncing || !undoStack || !aCurrent.isValid())
        return;
    // A row chosen while a burst is still being followed waits for it.
    if (sync.isPending())
        return;
    if (aCurrent.row() != undoStack->index())
        undoStack->setIndex(aCurrent.row());
}
