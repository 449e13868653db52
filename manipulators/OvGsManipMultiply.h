#pragma once

#include "OvGsManipRelative.h"

// Multiple distances (kernel type 66658, geometry "len": a measured line's
// vector, (0, 0) for a base): perpendicular distances from points to the
// infinite line through a base. A measured line runs from where the mouse is
// let go to the foot of the perpendicular, also beyond the base's ends, and
// shows its own length. The line's own vector, role and names are stored after
// the shared parameters (see OvGsManipRelative); a base stored without its
// vector (older files) comes back as a (15, -15) stub.
class OvGsManipMultiply : public OvGsManipRelative
{
    Q_OBJECT

public:
    OvGsManipMultiply(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipMultiply() override;

    // The foot of the perpendicular from aPoint on the base line; aPoint +
    // (15, -15) for a base of zero length.
    QPointF findEndPoint(const QPointF& aPoint) const override;

    // Numbers the line names "Multiply_Line_%1" for the life of the process.
    static int theCount;

protected:
    OvGsRelativeDistance* newLine(const QString& aTypeName, const QString& aLineName) override;
    QVariant storedGeometry(const OvGsRelativeDistance* aLine) const override;
    void applyLineGeometry(OvGsRelativeDistance* aLine, const QVariant& aGeometry) override;
    // The length in the panel's unit (stored unit for a stored line); a base
    // reads "base".
    void showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName) override;
};
