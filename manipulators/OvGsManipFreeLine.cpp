#include "OvGsManipFreeLine.h"

namespace {

const int kFreeLineType = 66755;
const int kFreeLineVariant = 1;

OvGsManipFrame::Kind freeLineKind()
{
    OvGsManipFrame::Kind kind;
    kind.context = "OvGsManipFreeLine";
    kind.objectType = kFreeLineType;
    kind.typeName = QT_TRANSLATE_NOOP("OvGsManipFreeLine", "LEN");
    kind.valueNames = { QT_TRANSLATE_NOOP("OvGsManipFreeLine", "Length") };
    kind.geometryKey = "nodes";
    kind.geometryType = QMetaType::QPolygonF;
    kind.drawButton = OvGsManipFrame::DistanceButton;
    kind.freehandTypes = 1u << kFreeLineVariant;
    kind.drawButtonSlot = SLOT(slotDrawButtonToggled(bool));
    kind.units = { 0, 1, 2, 5, 3, 4, 6, 7, 8 };
    kind.squaredUnits = false;
    kind.removalSignal = SIGNAL(signalObjectBeforeRemove(const int, const int));
    kind.removalSlot = SLOT(slotObjectBeforeRemoveInKernel(const int, const int));
    kind.followsMediaAndTool = true;
    kind.fontChangeEnsuresLabel = true;
    return kind;
}

} // namespace

OvGsManipFreeLine::OvGsManipFreeLine(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipFreeForm(aToolBase, aPanel, anUndoStack, freeLineKind(), false)
{
    initFrame();
}

OvGsManipFreeLine::~OvGsManipFreeLine() = default;
