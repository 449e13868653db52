#include "CmdRemoveObject.h"

#include "KxKernelData.h"
#include "KxKernelObjectData.h"

CmdRemoveObject::CmdRemoveObject(int aType, int anIdx, QUndoCommand* aParent)
    : QUndoCommand(aParent)
    , type(aType)
    , idx(anIdx)
{
    setText(tr("Delete %1").arg(KxKernelData::getInstance()->getObjectDescription(aType, anIdx)));
}

CmdRemoveObject::~CmdRemoveObject()
{
    if (owned)
        delete data;
}

void CmdRemoveObject::redo()
{
    const KxReplayScope replay(redoneOnce);
    redoneOnce = true;
    KxKernelData* store = KxKernelData::getInstance();
    KxKernelObjectData* stored = store->getObject(type, idx);
    // The first redo takes whatever is stored; later ones only the same object.
    if (owned || !stored || (data && (stored != data || stored->getSerial() != serial))) {
        if (!data)
            setObsolete(true);
        return;
    }
    data = store->takeObject(type, idx);
    owned = data != nullptr;
    if (data)
        serial = data->getSerial();
}

void CmdRemoveObject::undo()
{
    const KxReplayScope replay(true);
    if (owned && KxKernelData::getInstance()->insertObject(type, idx, data))
        owned = false;
}
