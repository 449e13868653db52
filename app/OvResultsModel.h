#pragma once

#include "OvMeasurementExporter.h"

#include <QAbstractTableModel>
#include <QVector>

// Every value of every stored measurement, one row per measurement and value
// name, as the export writes them, plus the type name and the frame. Follows
// the store: creations, changes, removals (undo and redo included), frames,
// new media and calibration changes. Bursts of notifications (removing
// every object, a history jump) are folded into one refresh once control
// returns to the event loop.
class OvResultsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TypeColumn, IndexColumn, ValueNameColumn, ValueColumn, UnitColumn, TextColumn, FrameColumn,
                  ColumnCount };

    explicit OvResultsModel(QObject* aParent = nullptr);

    int rowCount(const QModelIndex& aParent = QModelIndex()) const override;
    int columnCount(const QModelIndex& aParent = QModelIndex()) const override;
    // Display: the value rounded for reading; EditRole: the full-precision
    // value; TypeRole/IndexRole on any column: the measurement's type and index.
    QVariant data(const QModelIndex& anIndex, int aRole = Qt::DisplayRole) const override;
    QVariant headerData(int aSection, Qt::Orientation anOrientation, int aRole = Qt::DisplayRole) const override;

    static const int TypeRole = Qt::UserRole + 1;
    static const int IndexRole = Qt::UserRole + 2;

    // Header and the given rows (every row when empty) as tab-separated
    // text with full-precision numbers, one line per row.
    QString toTsv(const QList<int>& aRows = {}) const;
    // The first row of a measurement, -1 when it has none.
    int rowOf(int aType, int anIndex) const;

public Q_SLOTS:
    // Re-reads the store now.
    void refresh();

private Q_SLOTS:
    void slotStoreChanged();

private:
    QVector<OvMeasurementExporter::Row> rows;
    bool refreshPending = false;
};
