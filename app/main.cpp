#include "KxAppSettings.h"
#include "KxGsManipulator.h"
#include "KxSignalCenter.h"
#include "OvGestureReplayer.h"
#include "OvGestureScript.h"
#include "OvLanguage.h"
#include "OvMeasurementExporter.h"
#include "OvViewerMainWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTextStream>

#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

enum ExitCode { ExitOk = 0, ExitScriptFailed = 1, ExitBadInput = 2 };

const char* const kMeasurementsSuffix = ".measurements.json";

bool hasArgument(int argc, char* argv[], const char* anOption)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], anOption) == 0)
            return true;
    }
    return false;
}

// NAME.measurements.json, opened from a file manager, belongs to the picture
// NAME.png (or .jpg, .jpeg, .tif, .tiff, .bmp) beside it; empty when there is none.
QString pictureBeside(const QString& aMeasurementsFile)
{
    const QString base = aMeasurementsFile.left(aMeasurementsFile.size() - int(qstrlen(kMeasurementsSuffix)));
    for (const char* extension : { ".png", ".jpg", ".jpeg", ".tif", ".tiff", ".bmp" }) {
        for (const QString& candidate : { base + QLatin1String(extension), base + QString::fromLatin1(extension).toUpper() }) {
            if (QFileInfo(candidate).isFile())
                return candidate;
        }
    }
    return QString();
}

int complain(const QString& aMessage, int aCode)
{
    QTextStream(stderr) << "ovviewer: " << aMessage << '\n';
    return aCode;
}

} // namespace

int main(int argc, char* argv[])
{
    // A batch run needs no screen: without a display it renders offscreen.
    const bool batch = hasArgument(argc, argv, "--quit");
    if (batch && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("ovviewer"));
    QApplication::setOrganizationName(QStringLiteral("OvMeasure"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows a microscope picture and measures on it."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("image"),
                                 QStringLiteral("PNG, JPEG, TIFF or BMP picture (default: the bundled sample), or"
                                                " NAME.measurements.json to open with its picture NAME.png."));
    const QCommandLineOption calibration(QStringLiteral("calibration"),
                                         QStringLiteral("Calibration in micrometres per pixel."),
                                         QStringLiteral("UM_PER_PX"));
    const QCommandLineOption script(QStringLiteral("script"), QStringLiteral("Replay a gesture script."),
                                    QStringLiteral("FILE"));
    const QCommandLineOption exportCsv(QStringLiteral("export"),
                                       QStringLiteral("Write every measurement value as CSV (after the script)."),
                                       QStringLiteral("FILE.csv"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Save a screenshot of the window (after the script)."),
                                        QStringLiteral("FILE.png"));
    const QCommandLineOption quit(QStringLiteral("quit"), QStringLiteral("Exit after the script and outputs."));
    const QCommandLineOption demo(QStringLiteral("demo"),
                                  QStringLiteral("Measure on the bundled sample with the built-in demo script."));
    const QCommandLineOption scaling(QStringLiteral("scaling"),
                                     QStringLiteral("Interface scale of the tool panels in percent (remembered)."),
                                     QStringLiteral("PERCENT"));
    const QCommandLineOption load(QStringLiteral("load"),
                                  QStringLiteral("Open saved measurements for the picture (before the script)."),
                                  QStringLiteral("FILE.json"));
    const QCommandLineOption save(QStringLiteral("save"),
                                  QStringLiteral("Save the measurements (after the script)."),
                                  QStringLiteral("FILE.json"));
    const QCommandLineOption language(QStringLiteral("language"),
                                      QStringLiteral("Language of the texts, e.g. de or en (default: the system's)."),
                                      QStringLiteral("CODE"));
    parser.addOptions({ calibration, script, exportCsv, screenshot, quit, demo, scaling, load, save, language });
    parser.process(app);

    // Before any window or plug-in text exists. An unknown language is no
    // reason to stop: the texts stay English.
    if (OvLanguage::install(parser.value(language)).isEmpty())
        complain(QStringLiteral("no translation for '%1' (there are: %2); the texts stay English")
                     .arg(parser.value(language), OvLanguage::available().join(QStringLiteral(", "))),
                 ExitOk);

    if (parser.isSet(scaling)) {
        bool ok = false;
        const int percent = parser.value(scaling).toInt(&ok);
        if (!ok || percent < 50 || percent > 400)
            return complain(QStringLiteral("--scaling needs a whole percentage from 50 to 400, got '%1'")
                                .arg(parser.value(scaling)),
                            ExitBadInput);
        // Panels read the factor when they are built, so it is set before the plug-ins load.
        KxAppSettings::setValue(QStringLiteral("ScalingFactor"), percent);
    }

    OvViewerMainWindow window;
    window.setInteractive(!batch);
    // Scripted runs are repeatable: no questions, no remembered layout.
    window.setScripted(batch || parser.isSet(script) || parser.isSet(demo));
    // An offscreen screen is small and not real: screenshots get the window's
    // own size.
    if (QGuiApplication::platformName() == QLatin1String("offscreen"))
        window.resize(1400, 900);
    window.loadPlugins();
    if (!window.isScripted())
        window.restoreLayout();

    // Several pictures open as the frames of one time series.
    QStringList images = parser.positionalArguments();
    // A saved measurements file among them opens with its picture.
    QString measurementsFile = parser.value(load);
    for (int i = images.size() - 1; i >= 0; --i) {
        if (!images.at(i).endsWith(QLatin1String(kMeasurementsSuffix), Qt::CaseInsensitive))
            continue;
        measurementsFile = images.takeAt(i);
        const QString picture = pictureBeside(measurementsFile);
        if (picture.isEmpty()) {
            window.reportError(QStringLiteral("no picture of the same name beside %1").arg(measurementsFile));
            if (batch)
                return ExitBadInput;
            measurementsFile.clear();
        } else if (images.isEmpty()) {
            images << picture;
        }
    }
    if (images.isEmpty() || parser.isSet(demo))
        images = QStringList{ OvViewerMainWindow::sampleImagePath() };
    QString error;
    // Measurements given to open need no offer of the saved ones.
    window.setInteractive(!batch && measurementsFile.isEmpty());
    const bool opened = window.openImages(images, &error);
    window.setInteractive(!batch);
    if (!opened) {
        window.reportError(error);
        if (batch)
            return ExitBadInput;
        QString sampleError;
        window.openImage(OvViewerMainWindow::sampleImagePath(), &sampleError);
    }

    if (parser.isSet(calibration)) {
        bool ok = false;
        const double value = parser.value(calibration).toDouble(&ok);
        if (!ok || !std::isfinite(value) || value <= 0.0) {
            window.reportError(QStringLiteral("--calibration needs a number above 0, got '%1'")
                                   .arg(parser.value(calibration)));
            if (batch)
                return ExitBadInput;
        } else {
            window.setCalibration(value, QStringLiteral("from --calibration"));
        }
    }

    if (!measurementsFile.isEmpty() && !window.loadMeasurements(measurementsFile, &error)) {
        window.reportError(error);
        if (batch)
            return ExitBadInput;
    }

    window.show();
    QApplication::processEvents();

    int code = ExitOk;
    OvGestureScript gestures;
    bool haveScript = false;
    if (parser.isSet(demo)) {
        haveScript = gestures.load(QStringLiteral(":/viewer/demo.ovs")) || gestures.hasError();
    } else if (parser.isSet(script)) {
        gestures.load(parser.value(script));
        haveScript = true;
    }
    if (haveScript) {
        // Replayed gestures work on whole picture pixels: one screen pixel each.
        window.slotZoomActual();
        QApplication::processEvents();
        OvGestureReplayer replayer(&window);
        if (!replayer.run(gestures)) {
            window.reportError(QStringLiteral("script stopped: %1").arg(replayer.errorText()));
            code = ExitScriptFailed;
        }
        window.slotZoomFit();
        QApplication::processEvents();
    }

    if (parser.isSet(save) && !window.saveMeasurements(parser.value(save), &error)) {
        window.reportError(error);
        code = code == ExitOk ? ExitBadInput : code;
    }
    if (parser.isSet(exportCsv) && !window.exportValues(parser.value(exportCsv), &error)) {
        window.reportError(error);
        code = code == ExitOk ? ExitBadInput : code;
    }
    // The picture, not where the replay left the mouse.
    KxGsManipulator::showLocalMagnifier(false);
    if (parser.isSet(screenshot) && !window.grab().save(parser.value(screenshot))) {
        window.reportError(QStringLiteral("cannot write %1").arg(parser.value(screenshot)));
        code = code == ExitOk ? ExitBadInput : code;
    }
    if (!batch)
        code = app.exec();
    Q_EMIT KxSignalCenter::getInstance()->signalAppAboutToClose();
    return code;
}
