#include "OvPluginHost.h"

#include "KxPluginInterface.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QPluginLoader>

#include <algorithm>

QStringList OvPluginHost::pluginDirectories()
{
    // Run from the build tree, the viewer (or a test) takes the plug-ins built
    // with it; installed, the package's plug-in folder, found from the
    // executable so the package works wherever it is installed.
    const QString appDir = QCoreApplication::applicationDirPath();
    QStringList candidates;
    if (QFileInfo(appDir).canonicalFilePath() == QFileInfo(QStringLiteral(OV_BUILD_BIN_DIR)).canonicalFilePath())
        candidates << QStringLiteral(OV_BUILD_PLUGIN_DIR);
    candidates << appDir + QStringLiteral("/" OV_INSTALL_PLUGIN_DIR_FROM_BIN);
    QStringList dirs;
    for (const QString& dir : qAsConst(candidates)) {
        const QString canonical = QFileInfo(dir).canonicalFilePath();
        if (!canonical.isEmpty() && QFileInfo(canonical).isDir() && !dirs.contains(canonical))
            dirs << canonical;
    }
    return dirs;
}

KxPluginInterface* OvPluginHost::loadFile(const QString& aFileName, QObject** anInstance, QString* anError)
{
    if (anInstance)
        *anInstance = nullptr;
    QPluginLoader loader(aFileName);
    QObject* instance = loader.instance();
    if (!instance) {
        if (anError)
            *anError = QObject::tr("Plug-in %1 could not be loaded: %2").arg(aFileName, loader.errorString());
        return nullptr;
    }
    KxPluginInterface* plugin = qobject_cast<KxPluginInterface*>(instance);
    if (!plugin) {
        if (anError)
            *anError = QObject::tr("Plug-in %1 does not implement the interface %2")
                           .arg(aFileName, QStringLiteral(KxPluginInterface_iid));
        loader.unload();
        return nullptr;
    }
    if (anInstance)
        *anInstance = instance;
    return plugin;
}

QList<OvPluginHost::Plugin> OvPluginHost::loadAll(QStringList* aMessages)
{
    QList<Plugin> plugins;
    QStringList seen;
    for (const QString& dirName : pluginDirectories()) {
        const QDir dir(dirName);
        for (const QFileInfo& info : dir.entryInfoList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name)) {
            if (!QLibrary::isLibrary(info.fileName()) || seen.contains(info.fileName()))
                continue;
            seen << info.fileName();
            Plugin entry;
            entry.fileName = info.absoluteFilePath();
            QString error;
            entry.plugin = loadFile(entry.fileName, &entry.instance, &error);
            if (entry.plugin)
                plugins << entry;
            else if (aMessages)
                *aMessages << error;
        }
    }
    std::stable_sort(plugins.begin(), plugins.end(), [](const Plugin& a, const Plugin& b) {
        return a.plugin->getOrderID() < b.plugin->getOrderID();
    });
    if (plugins.isEmpty() && aMessages)
        *aMessages << QObject::tr("No measurement plug-in found in %1")
                          .arg(pluginDirectories().isEmpty() ? QObject::tr("any plug-in folder")
                                                             : pluginDirectories().join(QStringLiteral(", ")));
    return plugins;
}

QStringList OvPluginHost::addAllFeatures(const QList<Plugin>& aPlugins, QMainWindow* aWindow,
                                         QUndoStack* anUndoStack, QStringList* aMessages)
{
    QStringList added;
    for (const Plugin& entry : aPlugins) {
        for (const QString& feature : entry.plugin->featureList()) {
            if (entry.plugin->addFeatures(feature, aWindow, anUndoStack))
                added << feature;
            else if (aMessages)
                *aMessages << QObject::tr("Plug-in %1 refused its feature %2").arg(entry.fileName, feature);
        }
    }
    return added;
}
