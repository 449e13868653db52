#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class KxPluginInterface;
class QMainWindow;
class QObject;
class QUndoStack;

// Finds, loads and sets up the feature plug-ins. Plug-ins are looked for only
// in the build tree's plug-in folder and in the install folder, never in the
// working directory, so a stray library cannot be picked up by accident.
class OvPluginHost
{
public:
    struct Plugin
    {
        QString fileName;
        QObject* instance = nullptr;
        KxPluginInterface* plugin = nullptr;
    };

    // Existing plug-in folders: the build tree's when the executable runs from
    // it, then the installed one, found relative to the executable.
    static QStringList pluginDirectories();

    // Loads one library; null with a message when it is not a loadable Qt
    // plug-in or does not implement the host's plug-in interface.
    static KxPluginInterface* loadFile(const QString& aFileName, QObject** anInstance, QString* anError);

    // Loads every library of the plug-in folders (the first copy of a file
    // name wins), sorted by getOrderID(). Problems go to aMessages.
    QList<Plugin> loadAll(QStringList* aMessages);

    // Offers every feature of every plug-in to the main window; returns the
    // names of the features added and reports refusals in aMessages.
    static QStringList addAllFeatures(const QList<Plugin>& aPlugins, QMainWindow* aWindow,
                                      QUndoStack* anUndoStack, QStringList* aMessages);
};
