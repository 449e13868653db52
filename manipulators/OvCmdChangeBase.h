#pragma once

#include "CmdChangeObject.h"

#include <QPointF>
#include <QPointer>

class KxGsManipulator;

// The change of a base line of the multiple- or parallel-distance kinds. The
// store keeps a base without its direction and length, so this command also
// holds the base's vector before and after the change and gives it back to
// the base's item before the store reports the change: the lines placed on
// the base then follow its whole shape through undo and redo, not only its
// start point.
class OvCmdChangeBase : public CmdChangeObject
{
public:
    OvCmdChangeBase(KxGsManipulator* aManipulator, int aType, int anIdx, const KxParamKeyframeVector& aValues,
                    const QPointF& aVectorBefore, const QPointF& aVectorAfter);

    void redo() override;
    void undo() override;

private:
    // Sets the vector of the base item stored under the index, when that item
    // still is a base.
    void applyVector(const QPointF& aVector);

    QPointer<KxGsManipulator> manipulator;
    QPointF vectorBefore;
    QPointF vectorAfter;
};
