#pragma once

#include <QtPlugin>
#include <QStringList>

class QMainWindow;
class QUndoStack;

// The interface every feature plug-in of the host implements. The host loads
// the library with QPluginLoader, casts the instance by the identifier below,
// asks featureList() and getOrderID() and then calls addFeatures() once per
// feature it wants.
class KxPluginInterface
{
public:
    virtual ~KxPluginInterface() = default;

    // The features this plug-in can add, by their internal names.
    virtual QStringList featureList() const = 0;

    // Adds the feature to the main window; false (and nothing created) for a
    // name the plug-in does not offer.
    virtual bool addFeatures(const QString& aFeatureName, QMainWindow* aMainWindow,
                             QUndoStack* anUndoStack) = 0;

    // Plug-ins are set up in ascending order of this number.
    virtual int getOrderID() = 0;
};

#define KxPluginInterface_iid "com.Vellmora.plugin.ManipulatorPluginInterface/1.0"
Q_DECLARE_INTERFACE(KxPluginInterface, KxPluginInterface_iid)
