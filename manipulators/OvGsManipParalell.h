#pragma once

#include "OvGsManipRelative.h"

#include <QHash>

class OvGsParalellDistance;

// Parallel distances (kernel type 66659, geometry "len": (d, 0) with d the
// line's distance to its base in whole pixels, (0, 0) for a base): copies of a
// base's direction and length placed where the mouse is let go, labelled with
// their distance from the base line (in the unit the panel picks on its own);
// "base" for a base and for a line closer than one pixel to its base line.
//
// The store keeps neither a line's direction nor its base, so a line rebuilt
// from it is restored by this rule: a line (or base) brought back by undo or
// redo comes back as it left, with its line name, role, base name, direction
// and length, and when its base is on the picture it is placed on that base
// again; a line whose base is gone keeps its stored start and its direction,
// and its label shows its stored distance. A line never seen before (no
// memory of it) runs from its start along x for its stored distance, or
// (15, -15) when that is below one pixel. An existing item never takes the
// stored (d, 0) as its vector.
class OvGsManipParalell : public OvGsManipRelative
{
    Q_OBJECT

public:
    OvGsManipParalell(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipParalell() override;

    // aPoint plus the base's vector.
    QPointF findEndPoint(const QPointF& aPoint) const override;

    // Pixels from the line's start to the infinite line through the base,
    // truncated; to the base's start for a base of zero length; 0 for null.
    int findDistance(const OvGsParalellDistance* aLine, const KxGsObject* aBase) const;
    // The distance of a parallel line to the base it names; 0 for anything
    // else and when the base is not found. aName is not written.
    int findDistance(KxGsObject* anObj, QString& aName) const;
    int findDistance(KxGsObject* anObj) const;

    // Numbers the line names "Paralell_Line_%1" for the life of the process.
    static int theCount;

protected:
    OvGsRelativeDistance* newLine(const QString& aTypeName, const QString& aLineName) override;
    QVariant storedGeometry(const OvGsRelativeDistance* aLine) const override;
    void applyLineGeometry(OvGsRelativeDistance* aLine, const QVariant& aGeometry) override;
    bool storesVector(const OvGsRelativeDistance* aLine) const override;
    void showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName) override;
    void lineLeaving(OvGsRelativeDistance* aLine, const KxKernelObjectData* aData) override;
    void lineRestored(OvGsRelativeDistance* aLine, const KxKernelObjectData* aData) override;

private:
    // What an item held when its object left the store, by the object's serial
    // (undo and redo put the same object back).
    struct Departed
    {
        QString lineName;
        QString baseName;
        bool isBase = false;
        QPointF vector;
    };
    QHash<quint64, Departed> departed;
};
