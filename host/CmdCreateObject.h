#pragma once

#include "KxHostGlobal.h"

#include <QCoreApplication>
#include <QUndoCommand>

class KxKernelObjectData;

// Stores a new kernel object. redo() puts it into the store (which then owns
// it) and the store emits signalObjectCreated; undo() takes it out again
// (signalObjectBeforeRemove, then signalObjectRemoved) and the command owns
// it. Pushed while the place is taken (or with null data), the command is
// obsolete: the stack drops it, and it deletes the object it still owns.
class KX_HOST_EXPORT CmdCreateObject : public QUndoCommand
{
    Q_DECLARE_TR_FUNCTIONS(CmdCreateObject)

public:
    CmdCreateObject(int aType, int anIdx, KxKernelObjectData* aData, QUndoCommand* aParent = nullptr);
    ~CmdCreateObject() override;

    void redo() override;
    void undo() override;

    int getType() const { return type; }
    int getIdx() const { return idx; }

private:
    int type;
    int idx;
    KxKernelObjectData* data;
    // Tells our object from a later one at the same address.
    quint64 serial = 0;
    bool owned = true;
    // The first redo runs inside push(); later ones and every undo replay history.
    bool redoneOnce = false;
};
