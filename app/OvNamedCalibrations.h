#pragma once

#include <QMap>
#include <QString>

// Calibrations kept under a name (an objective, a camera adapter), in the
// settings key "NamedCalibrations" as "name" -> micrometres per pixel.
// Entries that are not a number above 0, and nameless ones, are ignored.
class OvNamedCalibrations
{
public:
    static QMap<QString, double> all();
    // Adds or replaces; false (nothing stored) for a blank name or a value
    // that is not above 0. The name is stored trimmed.
    static bool store(const QString& aName, double anUmPerPixel);
    static void remove(const QString& aName);
};
