#pragma once

#include "OvGuiMainWindowBase.h"
#include "OvPluginHost.h"

#include <QStringList>

class OvCalibrationPage;
class OvToolBase;
class QLabel;
class QUndoView;

// The viewer's main window: opens pictures, holds the calibration page
// ("Device Configuration"), the undo history and the tools the plug-ins add.
class OvViewerMainWindow : public OvGuiMainWindowBase
{
    Q_OBJECT

public:
    explicit OvViewerMainWindow(QWidget* aParent = nullptr);

    // Loads every plug-in and adds its features. Messages (failures and
    // refusals) are shown in the status bar and returned.
    QStringList loadPlugins();

    // Opens a PNG, JPEG, TIFF or BMP picture. A calibration stored in the
    // file ("UmPerPixel" text) is used, else the picture is uncalibrated.
    // False with a message when the file is missing or unreadable; the
    // current picture then stays.
    bool openImage(const QString& aFileName, QString* anError);

    // Calibrates the current picture (micrometres per pixel; 0 or less:
    // uncalibrated) and lets every tool know.
    void setCalibration(double anUmPerPixel);
    double calibration() const;

    QUndoStack* undoStack() const { return getUndoStack(); }
    // The Measurement tool entry, null when the plug-in did not add it.
    OvToolBase* measurementTool() const;

    // The bundled synthetic micrograph (resource path).
    static QString sampleImagePath();

    // Reports a problem: status bar, standard error, and a dialog when the
    // window is shown interactively.
    void reportError(const QString& aMessage);

    void setInteractive(bool anInteractive) { interactive = anInteractive; }

private Q_SLOTS:
    void slotOpen();
    void slotExportValues();
    void slotSaveScreenshot();

private:
    void createMenus();
    void updateTitle();

    OvCalibrationPage* calibrationPage;
    QUndoView* historyView;
    QLabel* calibrationLabel;
    QList<OvPluginHost::Plugin> plugins;
    QString currentFile;
    bool interactive = false;
};
