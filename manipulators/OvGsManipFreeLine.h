#pragma once

#include "OvGsManipFreeForm.h"

// Free lines drawn by hand (kernel type 66755, geometry "nodes"): the length of the
// open polyline. The free form's gesture, synchronisation and values for open shapes;
// it answers the distance button while the panel's free-hand variant is 1 and offers
// plain (not squared) units. The label shows the length while the line is drawn, once
// it has three nodes.
class OvGsManipFreeLine : public OvGsManipFreeForm
{
    Q_OBJECT

public:
    OvGsManipFreeLine(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack);
    ~OvGsManipFreeLine() override;
};
