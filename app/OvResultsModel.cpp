#include "OvResultsModel.h"

#include "KxKernelData.h"
#include "KxSignalCenter.h"
#include "OvDeviceSetManager.h"

#include <QMetaObject>

OvResultsModel::OvResultsModel(QObject* aParent)
    : QAbstractTableModel(aParent)
{
    KxSignalCenter* notifier = KxSignalCenter::getInstance();
    connect(notifier, &KxSignalCenter::signalObjectCreated, this, &OvResultsModel::slotStoreChanged);
    connect(notifier, &KxSignalCenter::signalObjectChanged, this, &OvResultsModel::slotStoreChanged);
    connect(notifier, &KxSignalCenter::signalObjectRemoved, this, &OvResultsModel::slotStoreChanged);
    connect(notifier, &KxSignalCenter::signalFrameReady, this, &OvResultsModel::slotStoreChanged);
    connect(notifier, &KxSignalCenter::signalMediaLoaded, this, &OvResultsModel::slotStoreChanged);
    connect(OvDeviceSetManager::instance(), &OvDeviceSetManager::signalDeviceSetModified, this,
            &OvResultsModel::slotStoreChanged);
    refresh();
}

int OvResultsModel::rowCount(const QModelIndex& aParent) const
{
    return aParent.isValid() ? 0 : rows.size();
}

int OvResultsModel::columnCount(const QModelIndex& aParent) const
{
    return aParent.isValid() ? 0 : ColumnCount;
}

QVariant OvResultsModel::data(const QModelIndex& anIndex, int aRole) const
{
    if (!anIndex.isValid() || anIndex.row() >= rows.size())
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

int OvResultsModel::rowOf(int aType, int anIndex) const
{
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).type == aType && rows.at(row).index == anIndex)
            return row;
    }
    return -1;
}

void OvResultsModel::refresh()
{
    refreshPending = false;
    beginResetModel();
    rows = OvMeasurementExporter::collect();
    endResetModel();
}

void OvResultsModel::slotStoreChanged()
{
    if (refreshPending)
        return;
    refreshPending = true;
    QMetaObject::invokeMethod(this, &OvResultsModel::refresh, Qt::QueuedConnection);
}
