#include "OvMeasurementExporter.h"

#include "KxGsManipulator.h"
#include "KxKernelData.h"

#include <QSaveFile>
#include <QTextStream>

#include <QLocale>

#include <algorithm>
#include <cmath>

QVector<OvMeasurementExporter::Row> OvMeasurementExporter::collect()
{
    QVector<Row> rows;
    KxKernelData* kernel = KxKernelData::getInstance();
    QList<int> types = kernel->getObjectTypes();
    std::sort(types.begin(), types.end());
    for (int type : types) {
        KxGsManipulator* manipulator = kernel->getManipulator(type);
        if (!manipulator)
            continue;
        const QStringList names = manipulator->getAnimatedValueNames();
        const QMap<int, KxKernelObjectData*> objects = kernel->getObjectsOfType(type);
        rows.reserve(rows.size() + objects.size() * names.size());
        for (auto it = objects.constBegin(); it != objects.constEnd(); ++it)
            appendRows(rows, type, it.key(), it.value(), manipulator, names);
    }
    return rows;
}

QVector<OvMeasurementExporter::Row> OvMeasurementExporter::collectObject(int aType, int anIndex)
{
    QVector<Row> rows;
    KxKernelData* kernel = KxKernelData::getInstance();
    KxGsManipulator* manipulator = kernel->getManipulator(aType);
    const KxKernelObjectData* data = kernel->getObject(aType, anIndex);
    if (manipulator && data)
        appendRows(rows, aType, anIndex, data, manipulator, manipulator->getAnimatedValueNames());
    return rows;
}

void OvMeasurementExporter::appendRows(QVector<Row>& aRows, int aType, int anIndex, const KxKernelObjectData* aData,
                                       KxGsManipulator* aManipulator, const QStringList& aNames)
{
    const qint64 frame = KxKernelData::getInstance()->getCurrentFrame();
    QStringList units;
    const QList<QVariant> values = aManipulator->getCalculatedValues(aNames, aData, units);
    const QString typeName = kindName(aType, aManipulator->getObjectTypeName(anIndex));
    for (int i = 0; i < aNames.size(); ++i) {
        Row row;
        row.type = aType;
        row.index = anIndex;
        row.valueName = aNames.at(i);
        row.value = values.value(i);
        row.unit = units.value(i);
        row.text = aManipulator->getCalculatedValueAsString(aNames.at(i), aData);
        row.typeName = typeName;
        row.frame = frame;
        aRows.append(row);
    }
}

QString OvMeasurementExporter::kindName(int aType, const QString& aFallback)
{
    switch (aType) {
    case 66651:
        return tr("Angle");
    case 66653:
        return tr("Distance");
    case 66655:
        return tr("Free form");
    case 66656:
        return tr("Circle");
    case 66658:
        return tr("Multiple distance");
    case 66659:
        return tr("Parallel distance");
    case 66755:
        return tr("Free line");
    default:
        return aFallback;
    }
}

QString OvMeasurementExporter::quoted(const QString& aField)
{
    if (!aField.contains(QLatin1Char(',')) && !aField.contains(QLatin1Char('"'))
        && !aField.contains(QLatin1Char('\n')) && !aField.contains(QLatin1Char('\r')))
        return aField;
    QString escaped = aField;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString OvMeasurementExporter::toCsv(const QVector<Row>& aRows)
{
    QString csv = QStringLiteral("type,index,value_name,value,unit,text,type_name,frame\n");
    for (const Row& row : aRows) {
        bool numeric = false;
        const double value = row.value.toDouble(&numeric);
        const QString number = row.value.isValid() && numeric ? formatNumber(value) : QString();
        csv += QString::number(row.type) + QLatin1Char(',') + QString::number(row.index) + QLatin1Char(',')
             + quoted(row.valueName) + QLatin1Char(',') + number + QLatin1Char(',') + quoted(row.unit)
             + QLatin1Char(',') + quoted(row.text) + QLatin1Char(',') + quoted(row.typeName) + QLatin1Char(',')
             + QString::number(row.frame) + QLatin1Char('\n');
    }
    return csv;
}

QString OvMeasurementExporter::formatNumber(double aValue)
{
    if (!std::isfinite(aValue))
        return QString();
    // Never exponent notation: spreadsheets and people read plain decimals.
    return QString::number(aValue, 'f', QLocale::FloatingPointShortest);
}

bool OvMeasurementExporter::writeCsv(const QString& aFileName, QString* anError)
{
    return writeCsv(aFileName, collect(), anError);
}

bool OvMeasurementExporter::writeCsv(const QString& aFileName, const QVector<Row>& aRows, QString* anError)
{
    QSaveFile file(aFileName);
    if (!file.open(QIODevice::WriteOnly)) {
        if (anError)
            *anError = QStringLiteral("cannot write %1: %2").arg(aFileName, file.errorString());
        return false;
    }
    file.write(toCsv(aRows).toUtf8());
    if (!file.commit()) {
        if (anError)
            *anError = QStringLiteral("cannot write %1: %2").arg(aFileName, file.errorString());
        return false;
    }
    return true;
}
