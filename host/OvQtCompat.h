#pragma once
// The few calls whose spelling differs between Qt 5 and Qt 6, kept in one place
// so the rest of the code reads the same against either.

#include <QLibraryInfo>
#include <QMouseEvent>
#include <QVariant>
#include <QtGlobal>

#include <cmath>

namespace OvQtCompat {

// The event's position in the receiving widget's (or item's) coordinates.
inline QPointF localPos(const QMouseEvent* anEvent)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return anEvent->position();
#else
    return anEvent->localPos();
#endif
}

// Converts the value in place to the QMetaType id's type; false when it cannot.
inline bool convert(QVariant& aValue, int aTypeId)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return aValue.convert(QMetaType(aTypeId));
#else
    return aValue.convert(aTypeId);
#endif
}

// Where Qt's own translations (qtbase_de.qm, ...) are installed.
inline QString translationsPath()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
}

// Qt 5's qRound: halves round up (-16.5 gives -16), where Qt 6's rounds them
// away from zero. Stored pixel coordinates must not depend on the Qt a build
// uses, so geometry rounds through this.
inline int round(double aValue)
{
    return int(std::floor(aValue + 0.5));
}

} // namespace OvQtCompat
