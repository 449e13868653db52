#pragma once

#include "OvGsManipRelative.h"


class OvGsParalellDistance;

// Parallel distances (kernel type 66659, geometry "len": (d, 0) with d the
// line's distance to its base in whole pixels, (0, 0) for a base): copies of a
// base's direction and length placed where the mouse is let go, labelled with
// their distance from the base line, always in the unit chosen automatically
// (label and results alike); "base" for a base and for a line closer than one
// pixel to its base line.
//
// The line's own direction and length, role and names are stored after the
// shared parameters (see OvGsManipRelative). An object stored without its
// vector (older files) runs from its start along x for its stored distance,
// or (15, -15) for a base or below one pixel.
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
    void showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName) override;
    // Always in the automatic unit.
    Measure measureItem(const QString& aName, const KxGsObject* anItem) const override;
    Measure measureKeyframes(const QString& aName, const KxParamKeyframeVector& aKeyframes) const override;
};
