#pragma once

#include <QObject>

// A well-formed Qt plug-in that does not implement the host's interface; the
// host must refuse it with a message.
class OvWrongInterfacePlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "OvWrongInterfacePlugin")

public:
    OvWrongInterfacePlugin() = default;
};
