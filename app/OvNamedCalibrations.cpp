#include "OvNamedCalibrations.h"

#include "KxAppSettings.h"

#include <QVariantMap>

#include <cmath>

namespace {
const char kKey[] = "NamedCalibrations";
}

QMap<QString, double> OvNamedCalibrations::all()
{
    QMap<QString, double> result;
    const QVariantMap stored = KxAppSettings::value(QString::fromLatin1(kKey)).toMap();
    for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
        bool ok = false;
        const double value = it.value().toDouble(&ok);
        if (ok && std::isfinite(value) && value > 0.0 && !it.key().trimmed().isEmpty())
            result.insert(it.key().trimmed(), value);
    }
    return result;
}

bool OvNamedCalibrations::store(const QString& aName, double anUmPerPixel)
{
    const QString name = aName.trimmed();
    if (name.isEmpty() || !std::isfinite(anUmPerPixel) || anUmPerPixel <= 0.0)
        return false;
    QVariantMap stored;
    const QMap<QString, double> current = all();
    for (auto it = current.cbegin(); it != current.cend(); ++it)
        stored.insert(it.key(), it.value());
    stored.insert(name, anUmPerPixel);
    KxAppSettings::setValue(QString::fromLatin1(kKey), stored);
    return true;
}

void OvNamedCalibrations::remove(const QString& aName)
{
    QVariantMap stored;
    const QMap<QString, double> current = all();
    for (auto it = current.cbegin(); it != current.cend(); ++it) {
        if (it.key() != aName.trimmed())
            stored.insert(it.key(), it.value());
    }
    KxAppSettings::setValue(QString::fromLatin1(kKey), stored);
}
