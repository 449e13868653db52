#include "CmdCreateObject.h"

#include "KxKernelData.h"
#include "KxKernelObjectData.h"

CmdCreateObject::CmdCreateObject(int aType, int anIdx, KxKernelObjectData* aData, QUndoCommand* aParent)
    : QUndoCommand(aParent)
    , type(aType)
    , idx(anIdx)
    , data(aData)
    , serial(aData ? aData->getSerial() : 0)
{
    setText(tr("Add %1").arg(KxKernelData::getInstance()->getObjectDescription(aType, anIdx)));
}

CmdCreateObject::~CmdCreateObject()
{
    if (owned)
        delete data;
}

void CmdCreateObject::redo()
{
    const KxReplayScope replay(redoneOnce);
    redoneOnce = true;
    if (!owned)
        return;
    if (KxKernelData::getInstance()->insertObject(type, idx, data))
        owned = false;
    else
        setObsolete(true);
}

void CmdCreateObject::undo()
{
    const KxReplayScope replay(true);
    KxKernelData* store = KxKernelData::getInstance();
    // Only our own object: the place may hold another one by now.
    const KxKernelObjectData* stored = store->getObject(type, idx);
    if (owned || !stored || stored != data || stored->getSerial() != serial)
        return;
    if (store->takeObject(type, idx) == data)
        owned = true;
}
