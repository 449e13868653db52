#pragma once

#include "ModelActionHelper.h"

#include <QVector>

#include <functional>

// Delta debugging: the shortest sub-list of a failing action list that
// still fails, found by dropping ever smaller chunks of it.
class ModelShrinkHelper
{
public:
    using Fails = std::function<bool(const QVector<ModelActionHelper>&)>;

    // aFailing must fail. Stops after aMaxRuns trial runs with the shortest
    // list found so far.
    static QVector<ModelActionHelper> shrink(const QVector<ModelActionHelper>& aFailing, const Fails& aFails,
                                             int aMaxRuns);
};
