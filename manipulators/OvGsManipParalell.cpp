#include "OvGsManipParalell.h"

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvGsParalellDistance.h"
#include "OvGuiMeasurementTool.h"

#include <cmath>

namespace {

const int kParalellType = 66659;
const int kParallelVariant = 3;
const QPointF kClickVector(15.0, -15.0);

// Marks the label text for translation in this class's context.
const char* const kBaseText = QT_TRANSLATE_NOOP("OvGsManipParalell", "base");

} // namespace

int OvGsManipParalell::theCount = 0;

OvGsManipParalell::OvGsManipParalell(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipRelative(aToolBase, aPanel, anUndoStack,
                        relativeKind("OvGsManipParalell", kParalellType, QT_TRANSLATE_NOOP("OvGsManipParalell", "P_DST"),
                                     QT_TRANSLATE_NOOP("OvGsManipParalell", "Length"), QMetaType::QPoint, kParallelVariant),
                        "Paralell_Line_%1", theCount,
                        QStringLiteral(":/tessilarresources/active-parallel-off.png"),
                        QStringLiteral(":/tessilarresources/active-parallel-on.png"))
{
    Q_UNUSED(kBaseText);
    initFrame();
    initRelative();
}

OvGsManipParalell::~OvGsManipParalell() = default;

QPointF OvGsManipParalell::findEndPoint(const QPointF& aPoint) const
{
    return aPoint + (baseEnd - baseStart);
}

int OvGsManipParalell::findDistance(const OvGsParalellDistance* aLine, const KxGsObject* aBase) const
{
    if (!aLine || !aBase)
        return 0;
    const OvGsDistance* base = nullptr;
    if (aBase->type() == getConnectedObjectType() || aBase->type() == kParalellType)
        base = static_cast<const OvGsDistance*>(aBase);
    if (!base)
        return 0;
    const float px = float(aLine->pos().x());
    const float py = float(aLine->pos().y());
    const float bx = float(base->pos().x());
    const float by = float(base->pos().y());
    const float dx = float(base->vector.x());
    const float dy = float(base->vector.y());
    const float q = dx * dx + dy * dy;
    float fx = bx;
    float fy = by;
    if (q > 0.0f) {
        const float t = -((by - py) * dy + (bx - px) * dx) / q;
        fx = bx + t * dx;
        fy = by + t * dy;
    }
    const float distance = std::sqrt((px - fx) * (px - fx) + (py - fy) * (py - fy));
    return std::isfinite(distance) && distance < 1.0e9f ? int(distance) : 0;
}

int OvGsManipParalell::findDistance(KxGsObject* anObj, QString&) const
{
    if (!anObj || anObj->type() != kParalellType)
        return 0;
    const auto* line = static_cast<const OvGsParalellDistance*>(anObj);
    if (line->isBase)
        return 0;
    return findDistance(line, findBase(line->baseName));
}

int OvGsManipParalell::findDistance(KxGsObject* anObj) const
{
    QString scratch;
    return findDistance(anObj, scratch);
}

OvGsRelativeDistance* OvGsManipParalell::newLine(const QString& aTypeName, const QString& aLineName)
{
    return new OvGsParalellDistance(this, editor, aTypeName, aLineName);
}

QVariant OvGsManipParalell::storedGeometry(const OvGsRelativeDistance* aLine) const
{
    if (aLine->isBase)
        return QPoint(0, 0);
    return QPoint(findDistance(const_cast<OvGsRelativeDistance*>(aLine)), 0);
}

void OvGsManipParalell::applyLineGeometry(OvGsRelativeDistance* aLine, const QVariant& aGeometry)
{
    if (!aLine->isBase && takeBase(findBase(aLine->baseName))) {
        aLine->setVector(baseEnd - baseStart);
        return;
    }
    if (!aLine->vector.isNull())
        return;
    const int distance = aGeometry.toPoint().x();
    aLine->setVector(distance >= 1 ? QPointF(distance, 0.0) : kClickVector);
}

bool OvGsManipParalell::storesVector(const OvGsRelativeDistance*) const
{
    return false;
}

void OvGsManipParalell::showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName)
{
    if (aValueName.isEmpty() && aLine->getDisplayValue().isEmpty())
        return;
    int distance = 0;
    if (!aLine->isBase) {
        if (const KxGsObject* base = findBase(aLine->baseName)) {
            distance = findDistance(static_cast<OvGsParalellDistance*>(aLine), base);
        } else {
            // No base on the picture: the stored distance, when stored.
            const int idx = anIdx >= 0 ? anIdx : getObjectIdx(aLine);
            if (const KxKernelObjectData* data = idx >= 0 ? kernelData->getObject(kParalellType, idx) : nullptr)
                distance = getDescriptor()->getValue(data->getDefaultKeyframes(), QStringLiteral("len")).toPoint().x();
        }
    }
    if (distance == 0) {
        aLine->setDisplayValue(baseText());
        return;
    }
    const double um = kernelData->getMediaInfo().calculateUmForPixels(distance, 0.0);
    if (!(um > 0.0)) {
        aLine->setDisplayValue(QString());
        return;
    }
    OvGuiMeasurementTool* panel = getPanel();
    OvGuiMeasurementTool::UnitType unit = OvGuiMeasurementTool::UnitAuto;
    QString unitName;
    panel->convertFromUm(um, false, unit, unitName, getUnitsToUse());
    if (!getUnitsToUse().contains(unit))
        unit = OvGuiMeasurementTool::UnitAuto;
    aLine->setDisplayValue(panel->convertFromUmAndFormat(um, false, unit, getUnitsToUse()));
}

void OvGsManipParalell::lineLeaving(OvGsRelativeDistance* aLine, const KxKernelObjectData* aData)
{
    if (!aData)
        return;
    Departed memory;
    memory.lineName = aLine->lineName;
    memory.baseName = aLine->baseName;
    memory.isBase = aLine->isBase;
    memory.vector = aLine->vector;
    departed.insert(aData->getSerial(), memory);
}

void OvGsManipParalell::lineRestored(OvGsRelativeDistance* aLine, const KxKernelObjectData* aData)
{
    const auto it = departed.constFind(aData->getSerial());
    if (it == departed.cend())
        return;
    aLine->lineName = it->lineName;
    aLine->baseName = it->baseName;
    aLine->isBase = it->isBase;
    aLine->setVector(it->vector);
    if (it->isBase) {
        aLine->setUseActiveButton(true);
        const KxGsEditor* current = KxGsEditor::existingInstance();
        const bool toolActive = current && current->getOverrideManipulator() == this;
        aLine->allowActiveVisible(toolActive, offPixmap(), onPixmap());
    }
    departed.erase(it);
}
