#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

// Runs the built ovviewer as a user would start it: offscreen, with a settings
// file of its own in a temporary folder, replaying a gesture script and
// exporting the stored values as CSV (--script FILE --export FILE --quit).
class ViewerRunHelper
{
public:
    // The export's header line.
    static const QString kHeader;

    // What one run left behind.
    struct Run
    {
        int exitCode = -1;
        QString errors;            // standard error, or why the viewer could not be run
        bool exported = false;     // the CSV file was written
        QString header;            // its first line
        QList<QStringList> rows;   // the lines after it, split at commas
    };

    bool isValid() const { return mDir.isValid(); }
    // A file in the run's temporary folder (pictures, screenshots, saved files).
    QString filePath(const QString& aName) const { return mDir.filePath(aName); }

    // From the next run on, the settings file is written afresh with
    // aContents before every run; without it, the file is kept from run to run.
    void setSettings(const QByteArray& aContents) { mSettings = aContents; }

    // Runs the viewer with aScript and anExtraArgs after the script options.
    Run run(const QString& aScript, const QStringList& anExtraArgs = {}) const;
    // Runs the viewer with a script file that does not exist.
    Run runWithoutScript(const QStringList& anExtraArgs = {}) const;

private:
    Run start(const QString* aScript, const QStringList& anExtraArgs) const;

    QTemporaryDir mDir;
    std::optional<QByteArray> mSettings;
};
