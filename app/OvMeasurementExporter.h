#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

class KxGsManipulator;
class KxKernelObjectData;

// Collects the values of every stored measurement from the kernel store, as
// the measuring manipulators compute them, and writes them as CSV.
class OvMeasurementExporter
{
    Q_DECLARE_TR_FUNCTIONS(OvMeasurementExporter)

public:
    struct Row
    {
        int type = 0;
        int index = 0;
        QString valueName;
        QVariant value;   // invalid when the value cannot be computed (no calibration)
        QString unit;
        QString text;     // the label text of that value
        QString typeName; // the measurement's kind as people read it ("Distance")
        qint64 frame = 0; // the frame the values belong to
    };

    // One row per stored measurement and value name at the store's current
    // frame, sorted by object type id, then index, then the manipulator's
    // order of value names.
    static QVector<Row> collect();
    // The rows of one stored measurement, in the order collect() gives them;
    // none when it is not stored or its type has no manipulator.
    static QVector<Row> collectObject(int aType, int anIndex);
    // "type,index,value_name,value,unit,text,type_name,frame" and one line per
    // row; numbers as plain decimals with the fewest digits that read back as
    // exactly the same double, empty when invalid; fields quoted when needed.
    static QString toCsv(const QVector<Row>& aRows);
    // A value as toCsv() writes it.
    static QString formatNumber(double aValue);
    // The kind of a measurement type id as people read it ("Free line",
    // "Multiple distance"): the label names of some kinds are abbreviations.
    // aFallback for a type this viewer does not know.
    static QString kindName(int aType, const QString& aFallback);
    // Writes collect() (or aRows) as UTF-8; false with a message when the
    // file cannot be written.
    static bool writeCsv(const QString& aFileName, QString* anError);
    static bool writeCsv(const QString& aFileName, const QVector<Row>& aRows, QString* anError);

private:
    static void appendRows(QVector<Row>& aRows, int aType, int anIndex, const KxKernelObjectData* aData,
                           KxGsManipulator* aManipulator, const QStringList& aNames);
    static QString quoted(const QString& aField);
};

Q_DECLARE_TYPEINFO(OvMeasurementExporter::Row, Q_MOVABLE_TYPE);
