#pragma once

#include "KxHostGlobal.h"

#include <QCoreApplication>
#include <QUndoCommand>

class KxKernelObjectData;

// Removes a stored object. redo() takes it out of the store
// (signalObjectBeforeRemove, then signalObjectRemoved) and the command owns
// it; undo() puts it back and the store reports it created
// (signalObjectCreated). Removing a missing object is obsolete (dropped).
class KX_HOST_EXPORT CmdRemoveObject : public QUndoCommand
{
    Q_DECLARE_TR_FUNCTIONS(CmdRemoveObject)

public:
    CmdRemoveObject(int aType, int anIdx, QUndoCommand* aParent = nullptr);
    ~CmdRemoveObject() override;

    void redo() override;
    void undo() override;

    int getType() const { return type; }
    int getIdx() const { return idx; }

private:
    int type;
    int idx;
    KxKernelObjectData* data = nullptr;
    // Tells our object from a later one at the same address.
    quint64 serial = 0;
    bool owned = false;
    // The first redo runs inside push(); later ones and every undo replay history.
    bool redoneOnce = false;
};
