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
    const int distance = aGeometry.toPoint().x();
    aLine->setVector(!aLine->isBase && distance >= 1 ? QPointF(distance, 0.0) : kClickVector);
}

void OvGsManipParalell::showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName)
{
    if (aValueName.isEmpty() && aLine->getDisplayValue().isEmpty())
        return;
    // A stored line shows what the store says (the Results row); a line being
    // drawn or placed its distance from its base now.
    const int idx = anIdx >= 0 ? anIdx : -1;
    const KxKernelObjectData* data = idx >= 0 ? kernelData->getObject(kParalellType, idx) : nullptr;
    int distance = 0;
    if (data)
        distance = getDescriptor()->getValue(data->getKeyframesAt(kernelData->getCurrentFrame()),
                                             QStringLiteral("len")).toPoint().x();
    else if (!aLine->isBase)
        distance = findDistance(static_cast<OvGsParalellDistance*>(aLine), findBase(aLine->baseName));
    if (aLine->isBase || distance == 0) {
        aLine->setDisplayValue(baseText());
        return;
    }
    aLine->setDisplayValue(data ? getCalculatedValueAsString(valueNames.value(0), data)
                                : getCalculatedValueAsString(valueNames.value(0), aLine));
}

OvGsManipFrame::Measure OvGsManipParalell::measureItem(const QString&, const KxGsObject* anItem) const
{
    const auto* line = static_cast<const OvGsParalellDistance*>(anItem);
    Measure measure = lengthFromPixels(line->isBase ? 0 : findDistance(line, findBase(line->baseName)));
    measure.unit = OvGuiMeasurementTool::UnitAuto;
    return measure;
}

OvGsManipFrame::Measure OvGsManipParalell::measureKeyframes(const QString& aName,
                                                            const KxParamKeyframeVector& aKeyframes) const
{
    Measure measure = OvGsManipRelative::measureKeyframes(aName, aKeyframes);
    measure.unit = OvGuiMeasurementTool::UnitAuto;
    return measure;
}
