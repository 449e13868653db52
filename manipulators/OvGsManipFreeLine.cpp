#include "OvGsManipFreeLine.h"

namespace {

const int kFreeLineType = 66755;
const int kFreeLineVariant = 1;

OvGsManipFrame::Kind freeLineKind()
{
    OvGsManipFrame::Kind kind = OvGsManipFrame::standardKind(
        "OvGsManipFreeLine", kFreeLineType, QT_TRANSLATE_NOOP("OvGsManipFreeLine", "LEN"),
        { QT_TRANSLATE_NOOP("OvGsManipFreeLine", "Length") }, "nodes", QMetaType::QPolygonF,
        OvGsManipFrame::DistanceButton);
    kind.freehandTypes = 1u << kFreeLineVariant;
    kind.removalSignal = SIGNAL(signalObjectBeforeRemove(const int, const int));
    kind.removalSlot = SLOT(slotObjectBeforeRemoveInKernel(const int, const int));
    return kind;
}

} // namespace

OvGsManipFreeLine::OvGsManipFreeLine(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipFreeForm(aToolBase, aPanel, anUndoStack, freeLineKind(), false)
{
    initFrame();
}

OvGsManipFreeLine::~OvGsManipFreeLine() = default;
