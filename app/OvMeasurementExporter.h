#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

// Collects the values of every stored measurement from the kernel store, as
// the measuring manipulators compute them, and writes them as CSV.
class OvMeasurementExporter
{
public:
    struct Row
    {
        int type = 0;
        int index = 0;
        QString valueName;
        QVariant value;   // invalid when the value cannot be computed (no calibration)
        QString unit;
        QString text;     // the label text of that value
    };

    // One row per stored measurement and value name, sorted by object type id,
    // then index, then the manipulator's order of value names.
    static QVector<Row> collect();
    // "type,index,value_name,value,unit,text" and one line per row; numbers
    // with full precision, empty when invalid; fields quoted when needed.
    static QString toCsv(const QVector<Row>& aRows);
    // Writes UTF-8; false with a message when the file cannot be written.
    static bool writeCsv(const QString& aFileName, QString* anError);

private:
    static QString quoted(const QString& aField);
};
