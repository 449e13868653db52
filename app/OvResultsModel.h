#pragma once

#include "OvMeasurementExporter.h"
#include "OvQueuedCall.h"

#include <QAbstractTableModel>
#include <QVector>

// Every value of every stored measurement, one row per measurement and value
// name, as the export writes them, plus the type name and the frame. Follows
// the store: creations, changes, removals (undo and redo included), frames,
// new media and calibration changes. Changes are applied once control returns
// to the event loop: a few measurements only touch their own rows, a burst
// (loading, removing every object, a history jump) or a frame, media or
// calibration change re-reads the store once. Views are given the rows in
// chunks as they scroll (canFetchMore/fetchMore).
class OvResultsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TypeColumn, IndexColumn, ValueNameColumn, ValueColumn, UnitColumn, TextColumn, FrameColumn,
                  ColumnCount };

    explicit OvResultsModel(QObject* aParent = nullptr);

    // The rows handed to views so far.
    int rowCount(const QModelIndex& aParent = QModelIndex()) const override;
    bool canFetchMore(const QModelIndex& aParent) const override;
    void fetchMore(const QModelIndex& aParent) override;
    int columnCount(const QModelIndex& aParent = QModelIndex()) const override;
    // Display: the value rounded for reading; EditRole: the full-precision
    // value; TypeRole/IndexRole on any column: the measurement's type and index.
    QVariant data(const QModelIndex& anIndex, int aRole = Qt::DisplayRole) const override;
    QVariant headerData(int aSection, Qt::Orientation anOrientation, int aRole = Qt::DisplayRole) const override;

    static const int TypeRole = Qt::UserRole + 1;
    static const int IndexRole = Qt::UserRole + 2;

    // Rows handed to a view at a time.
    static constexpr int kFetchChunk = 2048;

    // Header and the given rows (every row when empty, fetched or not) as tab-separated
    // text with full-precision numbers, one line per row.
    QString toTsv(const QList<int>& aRows = {}) const;
    // Every row, fetched by views or not, with the changes still waiting for
    // the event loop applied first: what the export writes.
    const QVector<OvMeasurementExporter::Row>& currentRows();
    // The first row of a measurement, -1 when it has none.
    int rowOf(int aType, int anIndex) const;

public Q_SLOTS:
    // Re-reads the store now.
    void refresh();

private Q_SLOTS:
    void slotStoreChanged();
    void slotObjectTouched(int aType, int anIndex);
    void applyPending();

private:
    // Re-reads the rows of one measurement in place.
    void updateObject(int aType, int anIndex);
    void schedule();
    // The first row at or after (aType, anIndex).
    int lowerBound(int aType, int anIndex) const;

    QVector<OvMeasurementExporter::Row> rows;
    int fetched = 0;
    bool refreshPending = false;
    // Applies what changed once per burst.
    OvQueuedCall apply;
    QVector<QPair<int, int>> touched;
};
