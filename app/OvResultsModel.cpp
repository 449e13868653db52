#include "OvResultsModel.h"

#include "KxKernelData.h"
#include "KxSignalCenter.h"
#include "OvDeviceSetManager.h"

#include <QMetaObject>
#include <QPair>

#include <algorithm>

OvResultsModel::OvResultsModel(QObject* aParent)
    : QAbstractTableModel(aParent)
    , apply(this, [this]() { applyPending(); })
{
    KxSignalCenter* notifier = KxSignalCenter::getInstance();
    connect(notifier, &KxSignalCenter::signalObjectCreated, this,
            [this](int aType, int anIndex, const KxKernelObjectData*) { slotObjectTouched(aType, anIndex); });
    connect(notifier, &KxSignalCenter::signalObjectChanged, this,
            [this](int aType, int anIndex, const KxKernelObjectData*) { slotObjectTouched(aType, anIndex); });
    connect(notifier, &KxSignalCenter::signalObjectRemoved, this, &OvResultsModel::slotObjectTouched);
    connect(notifier, &KxSignalCenter::signalFrameReady, this, &OvResultsModel::slotStoreChanged);
    connect(notifier, &KxSignalCenter::signalMediaLoaded, this, &OvResultsModel::slotStoreChanged);
    connect(OvDeviceSetManager::instance(), &OvDeviceSetManager::signalDeviceSetModified, this,
            &OvResultsModel::slotStoreChanged);
    refresh();
}

int OvResultsModel::rowCount(const QModelIndex& aParent) const
{
    return aParent.isValid() ? 0 : fetched;
}

bool OvResultsModel::canFetchMore(const QModelIndex& aParent) const
{
    return !aParent.isValid() && fetched < rows.size();
}

void OvResultsModel::fetchMore(const QModelIndex& aParent)
{
    if (!canFetchMore(aParent))
        return;
    const int more = qMin(kFetchChunk, rows.size() - fetched);
    beginInsertRows(QModelIndex(), fetched, fetched + more - 1);
    fetched += more;
    endInsertRows();
}

int OvResultsModel::columnCount(const QModelIndex& aParent) const
{
    return aParent.isValid() ? 0 : ColumnCount;
}

QVariant OvResultsModel::data(const QModelIndex& anIndex, int aRole) const
{
    if (!anIndex.isValid() || anIndex.row() >= fetched)
        return QVariant();
    const OvMeasurementExporter::Row& row = rows.at(anIndex.row());
    if (aRole == TypeRole)
        return row.type;
    if (aRole == IndexRole)
        return row.index;
    if (aRole == Qt::TextAlignmentRole) {
        const bool number = anIndex.column() == IndexColumn || anIndex.column() == ValueColumn
                            || anIndex.column() == FrameColumn;
        return int((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    if (aRole != Qt::DisplayRole && aRole != Qt::EditRole)
        return QVariant();
    switch (anIndex.column()) {
    case TypeColumn:
        return row.typeName;
    case IndexColumn:
        return row.index;
    case ValueNameColumn:
        return row.valueName;
    case ValueColumn:
        if (!row.value.isValid())
            return QVariant();
        return aRole == Qt::EditRole ? row.value : QVariant(QString::number(row.value.toDouble(), 'g', 8));
    case UnitColumn:
        return row.unit;
    case TextColumn:
        return row.text;
    case FrameColumn:
        return row.frame;
    default:
        return QVariant();
    }
}

QVariant OvResultsModel::headerData(int aSection, Qt::Orientation anOrientation, int aRole) const
{
    if (anOrientation != Qt::Horizontal || aRole != Qt::DisplayRole)
        return QAbstractTableModel::headerData(aSection, anOrientation, aRole);
    switch (aSection) {
    case TypeColumn: return tr("Type");
    case IndexColumn: return tr("Index");
    case ValueNameColumn: return tr("Value name");
    case ValueColumn: return tr("Value");
    case UnitColumn: return tr("Unit");
    case TextColumn: return tr("Label");
    case FrameColumn: return tr("Frame");
    default: return QVariant();
    }
}

QString OvResultsModel::toTsv(const QList<int>& aRows) const
{
    QList<int> chosen = aRows;
    if (chosen.isEmpty()) {
        for (int row = 0; row < rows.size(); ++row)
            chosen.append(row);
    }
    // Tabs and line breaks inside a field would break the table apart.
    const auto field = [](QString aText) {
        return aText.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    };
    QStringList lines;
    QStringList header;
    for (int column = 0; column < ColumnCount; ++column)
        header << headerData(column, Qt::Horizontal).toString();
    lines << header.join(QLatin1Char('\t'));
    for (int row : chosen) {
        if (row < 0 || row >= rows.size())
            continue;
        const OvMeasurementExporter::Row& r = rows.at(row);
        const QString value = r.value.isValid() ? OvMeasurementExporter::formatNumber(r.value.toDouble()) : QString();
        lines << QStringList{ field(r.typeName), QString::number(r.index), field(r.valueName), value,
                              field(r.unit), field(r.text), QString::number(r.frame) }
                     .join(QLatin1Char('\t'));
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

const QVector<OvMeasurementExporter::Row>& OvResultsModel::currentRows()
{
    applyPending();
    return rows;
}

int OvResultsModel::rowOf(int aType, int anIndex) const
{
    const int row = lowerBound(aType, anIndex);
    return row < rows.size() && rows.at(row).type == aType && rows.at(row).index == anIndex ? row : -1;
}

void OvResultsModel::refresh()
{
    refreshPending = false;
    touched.clear();
    beginResetModel();
    rows = OvMeasurementExporter::collect();
    fetched = qMin(rows.size(), kFetchChunk);
    endResetModel();
}

void OvResultsModel::slotStoreChanged()
{
    refreshPending = true;
    touched.clear();
    schedule();
}

void OvResultsModel::slotObjectTouched(int aType, int anIndex)
{
    if (refreshPending)
        return;
    // A burst costs one re-read rather than one search per measurement.
    if (touched.size() > 64 + rows.size() / 16) {
        slotStoreChanged();
        return;
    }
    touched.append(qMakePair(aType, anIndex));
    schedule();
}

void OvResultsModel::schedule()
{
    apply.request();
}

void OvResultsModel::applyPending()
{
    if (refreshPending) {
        refresh();
        return;
    }
    const QVector<QPair<int, int>> objects = touched;
    touched.clear();
    for (const QPair<int, int>& object : objects)
        updateObject(object.first, object.second);
}

int OvResultsModel::lowerBound(int aType, int anIndex) const
{
    const auto it = std::lower_bound(rows.cbegin(), rows.cend(), qMakePair(aType, anIndex),
                                     [](const OvMeasurementExporter::Row& aRow, const QPair<int, int>& aKey) {
                                         return qMakePair(aRow.type, aRow.index) < aKey;
                                     });
    return int(it - rows.cbegin());
}

void OvResultsModel::updateObject(int aType, int anIndex)
{
    const QVector<OvMeasurementExporter::Row> now = OvMeasurementExporter::collectObject(aType, anIndex);
    const int first = lowerBound(aType, anIndex);
    int old = 0;
    while (first + old < rows.size() && rows.at(first + old).type == aType && rows.at(first + old).index == anIndex)
        ++old;
    // Only rows already handed to views are announced; later ones come with fetchMore.
    const auto announced = [this](int aFrom, int aCount) { return qBound(0, fetched - aFrom, aCount); };
    const int common = qMin(old, now.size());
    for (int i = 0; i < common; ++i)
        rows[first + i] = now.at(i);
    if (announced(first, common) > 0)
        emit dataChanged(index(first, 0), index(first + announced(first, common) - 1, ColumnCount - 1));
    if (old > common) {
        const int from = first + common;
        const int shown = announced(from, old - common);
        if (shown > 0)
            beginRemoveRows(QModelIndex(), from, from + shown - 1);
        rows.remove(from, old - common);
        fetched -= shown;
        if (shown > 0)
            endRemoveRows();
    } else if (now.size() > common) {
        const int from = first + common;
        const int count = now.size() - common;
        // Rows past the fetched ones stay unannounced, except into an empty or fully fetched table.
        const bool shown = from < fetched || fetched == rows.size();
        if (shown)
            beginInsertRows(QModelIndex(), from, from + count - 1);
        rows.insert(from, count, OvMeasurementExporter::Row());
        for (int i = 0; i < count; ++i)
            rows[from + i] = now.at(common + i);
        if (shown) {
            fetched += count;
            endInsertRows();
        }
    }
}
