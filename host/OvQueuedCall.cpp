#include "OvQueuedCall.h"

#include <QMetaObject>
#include <QObject>

#include <utility>

OvQueuedCall::OvQueuedCall(QObject* aContext, std::function<void()> aFunction)
    : context(aContext)
    , function(std::move(aFunction))
{
}

void OvQueuedCall::request()
{
    if (pending)
        return;
    pending = true;
    QMetaObject::invokeMethod(
        context,
        [this]() {
            pending = false;
            function();
        },
        Qt::QueuedConnection);
}

bool OvQueuedCall::isPending() const
{
    return pending;
}
