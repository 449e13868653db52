#pragma once

#include "KxHostGlobal.h"
#include "KxKernelObjectData.h"
#include "KxParamKeyframeVector.h"

#include <QCoreApplication>
#include <QUndoCommand>
#include <QVector>

#include <functional>

// Changes a stored object: redo() snapshots the object's whole state, applies
// update(aValues) (only key frames holding a value are written) and emits
// signalObjectChanged; undo() restores the snapshot exactly and emits
// signalObjectChanged. A change of a missing object is obsolete (dropped by
// the stack). With aMergeable, consecutive mergeable changes of the same
// object merge into one undo step that restores the state before the first.
class KX_HOST_EXPORT CmdChangeObject : public QUndoCommand
{
    Q_DECLARE_TR_FUNCTIONS(CmdChangeObject)

public:
    CmdChangeObject(int aType, int anIdx, const KxParamKeyframeVector& aValues, bool aMergeable,
                    QUndoCommand* aParent = nullptr);

    void redo() override;
    void undo() override;
    // -1 when not mergeable, else one id shared by all mergeable changes.
    int id() const override;
    bool mergeWith(const QUndoCommand* anOther) override;

    int getType() const { return type; }
    int getIdx() const { return idx; }
    // Called after every redo and undo that changed the object, once the
    // change was announced: for whoever must follow this change in
    // particular (not every change of the object).
    void setAfterApplied(std::function<void()> aCallback) { afterApplied = std::move(aCallback); }

private:
    // The stored object this command acts on, or null when it is gone.
    KxKernelObjectData* target() const;

    int type;
    int idx;
    // More than one after merging, applied in order.
    QVector<KxParamKeyframeVector> values;
    bool mergeable;
    KxKernelObjectData::State before;
    quint64 serial = 0;
    bool done = false;
    // The first redo runs inside push(); later ones and every undo replay history.
    bool redoneOnce = false;
    std::function<void()> afterApplied;
};
