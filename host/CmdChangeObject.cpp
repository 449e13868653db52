#include "CmdChangeObject.h"

#include "KxKernelData.h"

namespace {
// Shared by every mergeable change; QUndoStack merges only equal ids.
const int kMergeId = 0x4b784368;
}

CmdChangeObject::CmdChangeObject(int aType, int anIdx, const KxParamKeyframeVector& aValues, bool aMergeable,
                                 QUndoCommand* aParent)
    : QUndoCommand(aParent)
    , type(aType)
    , idx(anIdx)
    , values{aValues}
    , mergeable(aMergeable)
{
    setText(tr("Change %1").arg(KxKernelData::getInstance()->getObjectDescription(aType, anIdx)));
}

KxKernelObjectData* CmdChangeObject::target() const
{
    KxKernelObjectData* data = KxKernelData::getInstance()->getObject(type, idx);
    // After the first redo, only the object we changed then.
    if (!data || (serial != 0 && data->getSerial() != serial))
        return nullptr;
    return data;
}

void CmdChangeObject::redo()
{
    const KxReplayScope replay(redoneOnce);
    redoneOnce = true;
    KxKernelObjectData* data = target();
    if (!data) {
        if (serial == 0)
            setObsolete(true);
        return;
    }
    serial = data->getSerial();
    before = data->getState();
    for (KxParamKeyframeVector& change : values)
        data->update(change);
    done = true;
    KxKernelData::getInstance()->notifyObjectChanged(type, idx);
    if (afterApplied)
        afterApplied();
}

void CmdChangeObject::undo()
{
    const KxReplayScope replay(true);
    KxKernelObjectData* data = target();
    if (!done || !data)
        return;
    data->setState(before);
    done = false;
    KxKernelData::getInstance()->notifyObjectChanged(type, idx);
    if (afterApplied)
        afterApplied();
}

int CmdChangeObject::id() const
{
    return mergeable ? kMergeId : -1;
}

bool CmdChangeObject::mergeWith(const QUndoCommand* anOther)
{
    if (anOther->id() != id() || !mergeable)
        return false;
    const auto* other = static_cast<const CmdChangeObject*>(anOther);
    if (other->type != type || other->idx != idx || other->serial != serial || !other->done || !done)
        return false;
    values += other->values;
    return true;
}
