#pragma once

#include "KxHostGlobal.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

class QSettings;

// The application settings, an INI file. Its path: setFileName(), else the
// environment variable OV_SETTINGS_FILE, else the user's standard location
// (organization "OvMeasure", application "ovviewer").
// Profiles are separate files beside the main one: profile "Lab" of
// "ovviewer.ini" is "ovviewer.Lab.ini"; the empty profile is the main file.
// Keys live in a group stack (beginGroup/endGroup), which a file or profile
// switch resets. Values come back as QSettings holds them: callers convert
// with fallbacks, so a garbled file never breaks them.
class KX_HOST_EXPORT KxAppSettings : public QObject
{
    Q_OBJECT

public:
    static KxAppSettings* getInstance();
    ~KxAppSettings() override;

    // Switches to another file (written back first); an empty path returns to
    // the default location. Emits nothing.
    static void setFileName(const QString& aPath);
    static QString fileName();

    static QVariant value(const QString& aName, const QVariant& aDefault = QVariant());
    // Writes, then emits signalValueSet with the full key (current group included).
    static void setValue(const QString& aName, const QVariant& aValue);
    // Writes all pairs, then emits signalValuesModified once with the full
    // keys. Extra names or values beyond the shorter list are ignored.
    static void setValues(const QStringList& aNames, const QList<QVariant>& aValues);
    static bool contains(const QString& aName);
    static void remove(const QString& aName);
    static void sync();

    static void beginGroup(const QString& aGroup);
    // Ignored when no group is open.
    static void endGroup();
    static QString group();

    // Emits signalProfileAboutToChange, switches to the profile's file, emits
    // signalProfileChanged. Characters other than letters, digits, '-' and
    // '_' in the name are replaced by '_'. Same profile: nothing happens.
    static void setProfile(const QString& aProfile);
    static QString profile();

signals:
    void signalValueSet(const QString& aKey, const QVariant& aValue);
    void signalValuesModified(const QStringList& aKeys, const QList<QVariant>& aValues);
    void signalProfileAboutToChange();
    void signalProfileChanged();

private:
    KxAppSettings();
    QString profileFilePath() const;
    void reopen();
    QString fullKey(const QString& aName) const;

    QSettings* settings = nullptr;
    QString basePath;
    QString currentProfile;
    int groupDepth = 0;
};
