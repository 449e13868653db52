#include "OvResultsDock.h"

#include "OvResultsModel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>

OvResultsDock::OvResultsDock(QWidget* aParent)
    : QDockWidget(tr("Results"), aParent)
    , resultsModel(new OvResultsModel(this))
    , table(new QTableView(this))
    , widen(this, [this] { widenColumns(); })
{
    setObjectName(QStringLiteral("resultsDock"));
    table->setObjectName(QStringLiteral("resultsView"));
    table->setModel(resultsModel);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setAlternatingRowColors(true);
    table->verticalHeader()->hide();
    // In a narrow dock the label (value and unit as drawn) shows right after
    // the measurement's name; copying keeps the model's column order.
    QHeaderView* header = table->horizontalHeader();
    header->moveSection(header->visualIndex(OvResultsModel::TextColumn), OvResultsModel::ValueNameColumn);
    header->setStretchLastSection(true);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    setWidget(table);

    auto* copy = new QAction(tr("&Copy"), table);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(copy, &QAction::triggered, this, &OvResultsDock::copyRows);
    table->addAction(copy);

    connect(table, &QTableView::clicked, this, [this](const QModelIndex& anIndex) {
        Q_EMIT signalMeasurementActivated(anIndex.data(OvResultsModel::TypeRole).toInt(),
                                          anIndex.data(OvResultsModel::IndexRole).toInt());
    });
    connect(resultsModel, &QAbstractItemModel::modelReset, table, [this] { table->resizeColumnsToContents(); });
    // Rows drawn one by one arrive as inserts and changes, not resets: a
    // table sized while empty would show "Dist..." and "12.5..." for good.
    connect(resultsModel, &QAbstractItemModel::rowsInserted, this, [this] { widen.request(); });
    connect(resultsModel, &QAbstractItemModel::dataChanged, this, [this] { widen.request(); });
    connect(table->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { widen.request(); });
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool aVisible) {
        if (aVisible)
            widen.request();
    });
    // Columns are measured on the rows in view only: Qt's default looks at a
    // thousand rows, which cost every gesture 15 ms with a thousand stored.
    header->setResizeContentsPrecision(0);
}

void OvResultsDock::widenColumns()
{
    // A hidden table has no rows in view: Qt would measure every row. It is
    // measured again when it shows.
    if (!table->isVisible())
        return;
    // The last column stretches; the others are measured on the rows in view
    // (QTableView's own measure; public through its base).
    const QAbstractItemView* view = table;
    for (int column = 0; column + 1 < resultsModel->columnCount(); ++column) {
        const int wanted = std::max(view->sizeHintForColumn(column),
                                    table->horizontalHeader()->sectionSizeHint(column));
        if (table->columnWidth(column) < wanted)
            table->setColumnWidth(column, wanted);
    }
}

void OvResultsDock::copyRows()
{
    QList<int> rows;
    for (const QModelIndex& index : table->selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    QApplication::clipboard()->setText(resultsModel->toTsv(rows));
}
