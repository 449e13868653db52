#include "KxAppSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

namespace {
const char kEnvSettingsFile[] = "OV_SETTINGS_FILE";
const char kOrganization[] = "OvMeasure";
const char kApplication[] = "ovviewer";

QString defaultPath()
{
    const QString fromEnv = qEnvironmentVariable(kEnvSettingsFile);
    if (!fromEnv.isEmpty())
        return fromEnv;
    QString dir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    if (dir.isEmpty())
        dir = QDir::homePath();
    return dir + QLatin1Char('/') + QLatin1String(kOrganization) + QLatin1Char('/')
        + QLatin1String(kApplication) + QLatin1String(".ini");
}
}

KxAppSettings::KxAppSettings()
    : basePath(defaultPath())
{
    reopen();
}

KxAppSettings::~KxAppSettings()
{
    delete settings;
}

KxAppSettings* KxAppSettings::getInstance()
{
    static KxAppSettings* theInstance = new KxAppSettings();
    return theInstance;
}

QString KxAppSettings::profileFilePath() const
{
    if (currentProfile.isEmpty())
        return basePath;
    const QFileInfo info(basePath);
    const QString suffix = info.suffix().isEmpty() ? QStringLiteral("ini") : info.suffix();
    return info.path() + QLatin1Char('/') + info.completeBaseName() + QLatin1Char('.') + currentProfile
        + QLatin1Char('.') + suffix;
}

void KxAppSettings::reopen()
{
    if (settings) {
        settings->sync();
        delete settings;
    }
    settings = new QSettings(profileFilePath(), QSettings::IniFormat);
    groupDepth = 0;
}

QString KxAppSettings::fullKey(const QString& aName) const
{
    const QString prefix = settings->group();
    return prefix.isEmpty() ? aName : prefix + QLatin1Char('/') + aName;
}

void KxAppSettings::setFileName(const QString& aPath)
{
    KxAppSettings* self = getInstance();
    self->basePath = aPath.isEmpty() ? defaultPath() : aPath;
    self->reopen();
}

QString KxAppSettings::fileName()
{
    return getInstance()->settings->fileName();
}

QVariant KxAppSettings::value(const QString& aName, const QVariant& aDefault)
{
    return getInstance()->settings->value(aName, aDefault);
}

void KxAppSettings::setValue(const QString& aName, const QVariant& aValue)
{
    KxAppSettings* self = getInstance();
    self->settings->setValue(aName, aValue);
    emit self->signalValueSet(self->fullKey(aName), aValue);
}

void KxAppSettings::setValues(const QStringList& aNames, const QList<QVariant>& aValues)
{
    KxAppSettings* self = getInstance();
    const int count = qMin(aNames.size(), aValues.size());
    QStringList keys;
    QList<QVariant> values;
    for (int i = 0; i < count; ++i) {
        self->settings->setValue(aNames.at(i), aValues.at(i));
        keys.append(self->fullKey(aNames.at(i)));
        values.append(aValues.at(i));
    }
    emit self->signalValuesModified(keys, values);
}

bool KxAppSettings::contains(const QString& aName)
{
    return getInstance()->settings->contains(aName);
}

void KxAppSettings::remove(const QString& aName)
{
    getInstance()->settings->remove(aName);
}

void KxAppSettings::sync()
{
    getInstance()->settings->sync();
}

void KxAppSettings::beginGroup(const QString& aGroup)
{
    KxAppSettings* self = getInstance();
    self->settings->beginGroup(aGroup);
    ++self->groupDepth;
}

void KxAppSettings::endGroup()
{
    KxAppSettings* self = getInstance();
    if (self->groupDepth == 0)
        return;
    self->settings->endGroup();
    --self->groupDepth;
}

QString KxAppSettings::group()
{
    return getInstance()->settings->group();
}

void KxAppSettings::setProfile(const QString& aProfile)
{
    KxAppSettings* self = getInstance();
    QString name = aProfile;
    name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9_-]")), QStringLiteral("_"));
    if (name == self->currentProfile)
        return;
    emit self->signalProfileAboutToChange();
    self->currentProfile = name;
    self->reopen();
    emit self->signalProfileChanged();
}

QString KxAppSettings::profile()
{
    return getInstance()->currentProfile;
}
