#include "OvGsManipMultiply.h"

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "OvGsMultiplyDistance.h"

namespace {

const int kMultiplyType = 66658;
const int kMultipleVariant = 2;

// Marks the label text for translation in this class's context.
const char* const kBaseText = QT_TRANSLATE_NOOP("OvGsManipMultiply", "base");

} // namespace

int OvGsManipMultiply::theCount = 0;

OvGsManipMultiply::OvGsManipMultiply(OvToolBase* aToolBase, OvGuiMeasurementTool* aPanel, QUndoStack* anUndoStack)
    : OvGsManipRelative(aToolBase, aPanel, anUndoStack,
                        relativeKind("OvGsManipMultiply", kMultiplyType, QT_TRANSLATE_NOOP("OvGsManipMultiply", "M_DST"),
                                     QT_TRANSLATE_NOOP("OvGsManipMultiply", "Length"), QMetaType::QPointF, kMultipleVariant),
                        "Multiply_Line_%1", theCount,
                        QStringLiteral(":/tessilarresources/active-multi-off.png"),
                        QStringLiteral(":/tessilarresources/active-multi-on.png"))
{
    Q_UNUSED(kBaseText);
    initFrame();
    initRelative();
}

OvGsManipMultiply::~OvGsManipMultiply() = default;

QPointF OvGsManipMultiply::findEndPoint(const QPointF& aPoint) const
{
    const QPointF d = baseEnd - baseStart;
    const float q = float(d.x() * d.x() + d.y() * d.y());
    if (q > 0.0f) {
        const float t = float(-((baseStart.x() - aPoint.x()) * d.x() + (baseStart.y() - aPoint.y()) * d.y()) / q);
        return baseStart + double(t) * d;
    }
    return aPoint + QPointF(15.0, -15.0);
}

OvGsRelativeDistance* OvGsManipMultiply::newLine(const QString& aTypeName, const QString& aLineName)
{
    return new OvGsMultiplyDistance(this, editor, aTypeName, aLineName);
}

QVariant OvGsManipMultiply::storedGeometry(const OvGsRelativeDistance* aLine) const
{
    return aLine->isBase ? QPointF(0.0, 0.0) : aLine->vector;
}

void OvGsManipMultiply::applyLineGeometry(OvGsRelativeDistance* aLine, const QVariant& aGeometry)
{
    // A base stored without its vector gets a short stub that can be seen,
    // selected and reshaped.
    aLine->setVector(aLine->isBase ? QPointF(15.0, -15.0) : aGeometry.toPointF());
}

void OvGsManipMultiply::showLineValue(OvGsRelativeDistance* aLine, int anIdx, const QString& aValueName)
{
    const KxKernelObjectData* data = anIdx >= 0 ? kernelData->getObject(kMultiplyType, anIdx) : nullptr;
    aLine->setDisplayValue(data ? getCalculatedValueAsString(aValueName, data)
                                : getCalculatedValueAsString(aValueName, aLine));
    if (aLine->isBase)
        aLine->setDisplayValue(baseText());
}
