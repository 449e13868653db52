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
        for (auto it = objects.constBegin(); it != objects.constEnd(); ++it) {
            QStringList units;
            const QList<QVariant> values = manipulator->getCalculatedValues(names, it.value(), units);
            for (int i = 0; i < names.size(); ++i) {
                Row row;
                row.type = type;
                row.index = it.key();
                row.valueName = names.at(i);
                row.value = values.value(i);
                row.unit = units.value(i);
                row.text = manipulator->getCalculatedValueAsString(names.at(i), it.value());
                row.typeName = kindName(type, manipulator->getObjectTypeName(it.key()));
                row.frame = kernel->getCurrentFrame();
                rows.append(row);
            }
        }
    }
    return rows;
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
    QSaveFile file(aFileName);
    if (!file.open(QIODevice::WriteOnly)) {
        if (anError)
            *anError = QStringLiteral("cannot write %1: %2").arg(aFileName, file.errorString());
        return false;
    }
    file.write(toCsv(collect()).toUtf8());
    if (!file.commit()) {
        if (anError)
            *anError = QStringLiteral("cannot write %1: %2").arg(aFileName, file.errorString());
        return false;
    }
    return true;
}
