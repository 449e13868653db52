#pragma once

#include "OvScriptCommand.h"

#include <QStringList>
#include <QVector>

// A gesture script: one command a line, '#' starts a comment, coordinates in
// image pixels. Parsing stops at the first bad line; the commands before it
// stay available so a replay can run up to that line and then report it.
class OvGestureScript
{
public:
    // Parses aText; false when a line is bad (see errorLine()/errorText()).
    bool parse(const QString& aText);
    // Reads and parses a UTF-8 file; a missing or unreadable file is an error
    // at line 0.
    bool load(const QString& aFileName);

    const QVector<OvScriptCommand>& commands() const { return theCommands; }
    bool hasError() const { return errorAt > 0 || !error.isEmpty(); }
    int errorLine() const { return errorAt; }
    // "line N: reason", or the reason alone for file errors.
    QString errorText() const;

    // The tool names the script knows, in the order the panel offers them.
    static QStringList toolNames();
    // Canonical spelling of a unit name ("um" and the micro sign become the
    // panel's "μm"); empty when the name is unknown.
    static QString canonicalUnitName(const QString& aName);

private:
    bool parseLine(const QString& aLine, int aLineNumber);
    bool fail(int aLineNumber, const QString& aReason);

    QVector<OvScriptCommand> theCommands;
    int errorAt = 0;
    QString error;
};
