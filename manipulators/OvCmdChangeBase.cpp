#include "OvCmdChangeBase.h"

#include "KxGsManipulator.h"
#include "OvGsRelativeDistance.h"

OvCmdChangeBase::OvCmdChangeBase(KxGsManipulator* aManipulator, int aType, int anIdx,
                                 const KxParamKeyframeVector& aValues, const QPointF& aVectorBefore,
                                 const QPointF& aVectorAfter)
    : CmdChangeObject(aType, anIdx, aValues, false)
    , manipulator(aManipulator)
    , vectorBefore(aVectorBefore)
    , vectorAfter(aVectorAfter)
{
}

void OvCmdChangeBase::redo()
{
    applyVector(vectorAfter);
    CmdChangeObject::redo();
}

void OvCmdChangeBase::undo()
{
    applyVector(vectorBefore);
    CmdChangeObject::undo();
}

void OvCmdChangeBase::applyVector(const QPointF& aVector)
{
    KxGsObject* obj = manipulator ? manipulator->getGsObject(getIdx()) : nullptr;
    if (!obj || obj->type() != getType())
        return;
    auto* base = static_cast<OvGsRelativeDistance*>(obj);
    if (base->isBase)
        base->setVector(aVector);
}
