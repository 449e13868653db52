#include "ViewerRunHelper.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

const QString ViewerRunHelper::kHeader = QStringLiteral("type,index,value_name,value,unit,text,type_name,frame");

ViewerRunHelper::Run ViewerRunHelper::run(const QString& aScript, const QStringList& anExtraArgs) const
{
    return start(&aScript, anExtraArgs);
}

ViewerRunHelper::Run ViewerRunHelper::runWithoutScript(const QStringList& anExtraArgs) const
{
    return start(nullptr, anExtraArgs);
}

ViewerRunHelper::Run ViewerRunHelper::start(const QString* aScript, const QStringList& anExtraArgs) const
{
    Run run;
    const QString scriptFile = filePath(QStringLiteral("script.ovs"));
    const QString csvFile = filePath(QStringLiteral("values.csv"));
    const QString settingsFile = filePath(QStringLiteral("settings.ini"));
    QFile::remove(csvFile);
    QFile::remove(scriptFile);
    if (aScript) {
        QFile script(scriptFile);
        if (!script.open(QIODevice::WriteOnly)) {
            run.errors = QStringLiteral("cannot write the script");
            return run;
        }
        script.write(aScript->toUtf8());
    }
    if (mSettings) {
        QFile settings(settingsFile);
        if (!settings.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            run.errors = QStringLiteral("cannot write the settings");
            return run;
        }
        settings.write(*mSettings);
    }

    QProcess viewer;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("OV_SETTINGS_FILE"), settingsFile);
    viewer.setProcessEnvironment(env);
    viewer.start(QStringLiteral(OV_BINARY_DIR "/bin/ovviewer"),
                 QStringList{ QStringLiteral("--script"), scriptFile, QStringLiteral("--export"), csvFile,
                              QStringLiteral("--quit") }
                     + anExtraArgs);
    if (!viewer.waitForFinished(120000)) {
        viewer.kill();
        viewer.waitForFinished();
        run.errors = QStringLiteral("viewer did not finish");
        return run;
    }
    run.exitCode = viewer.exitCode();
    run.errors = QString::fromUtf8(viewer.readAllStandardError());
    QFile csv(csvFile);
    if (csv.open(QIODevice::ReadOnly)) {
        run.exported = true;
        QStringList lines = QString::fromUtf8(csv.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        if (!lines.isEmpty())
            run.header = lines.takeFirst();
        for (const QString& line : lines)
            run.rows << line.split(QLatin1Char(','));
    }
    return run;
}
