#pragma once

#include <QString>
#include <QStringList>

// The language of the user interface: the viewer's and plug-in's own texts
// (embedded, ":/i18n/ovmeasure_<code>.qm") and Qt's (standard buttons and
// dialogs, from Qt's translations folder when installed). English is the
// source language and needs no translation.
class OvLanguage
{
public:
    // Installs the translations for aLanguage ("de", "de_AT") or, when empty,
    // for the system's preferred languages, and replaces any installed by an
    // earlier call. Returns the language code that was found ("de"), "en"
    // for English, or an empty string when there is no translation for it (the
    // texts then stay English). Call before any window or plug-in is built.
    static QString install(const QString& aLanguage);

    // The codes there is a translation for, "en" included, sorted.
    static QStringList available();
};
