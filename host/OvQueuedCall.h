#pragma once

#include "KxHostGlobal.h"

#include <functional>

class QObject;

// Runs a function once when control returns to the event loop, however often
// it was asked for before then: a burst of changes (a file opened, a removal
// with its dependants, a window settling into its size) costs one run. The
// run is dropped when the context object goes first.
class KX_HOST_EXPORT OvQueuedCall
{
public:
    OvQueuedCall(QObject* aContext, std::function<void()> aFunction);

    void request();
    bool isPending() const;

private:
    QObject* context;
    std::function<void()> function;
    bool pending = false;
};
