#pragma once

#include "OvGuiMainWindowBase.h"
#include "OvPluginHost.h"

#include <QMessageBox>
#include <QStringList>

#include <functional>

class OvCalibrationPage;
class OvToolBase;
class OvUndoGrouper;
class QAction;
class QDockWidget;
class QLabel;
class QUndoView;

// The viewer's main window: opens pictures, holds the calibration page
// ("Device Configuration"), the undo history and the tools the plug-ins add.
class OvViewerMainWindow : public OvGuiMainWindowBase
{
    Q_OBJECT

public:
    explicit OvViewerMainWindow(QWidget* aParent = nullptr);
    ~OvViewerMainWindow() override;

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
    // A scripted run (--script, --quit, --demo) never asks before discarding
    // and neither restores nor saves the window layout.
    void setScripted(bool aScripted) { scripted = aScripted; }
    bool isScripted() const { return scripted; }

    // The measurements differ from the opened picture's (the undo stack is
    // not at its clean index).
    bool isModified() const;
    // Asks "Discard / Cancel" before measurements would be lost; true when
    // they may go (nothing modified, a scripted run, or Discard chosen).
    bool maybeDiscard(const QString& anAction);
    // Answers the discard question instead of a dialog (tests). The hook gets
    // the question's text and returns QMessageBox::Discard or ::Cancel.
    using QuestionHook = std::function<QMessageBox::StandardButton(const QString&)>;
    void setQuestionHook(const QuestionHook& aHook) { questionHook = aHook; }

    // Window size, position and dock layout of the last interactive session.
    void restoreLayout();
    void saveLayout() const;

    // The picture with its measurements at one picture pixel per image pixel
    // (labels and buttons at their screen size), without the window around it.
    QImage renderPicture() const;
    // Writes the window (aPictureOnly false) or renderPicture() as PNG and
    // says where in the status bar; false with a message.
    bool saveScreenshot(const QString& aFileName, bool aPictureOnly, QString* anError);
    // Writes the CSV and says where in the status bar.
    bool exportValues(const QString& aFileName, QString* anError);

    OvUndoGrouper* undoGrouper() const { return grouper; }
    QAction* deleteAction() const { return deleteSelectedAction; }
    QDockWidget* historyDock() const { return historyDockWidget; }
    QLabel* zoomLabel() const { return zoomStatus; }

protected:
    void closeEvent(QCloseEvent* anEvent) override;

private Q_SLOTS:
    void slotOpen();
    void slotOpenSample();
    void slotExportValues();
    void slotSaveScreenshot();
    void slotSavePicture();

private:
    void createMenus();
    void updateTitle();
    void updateZoomLabel();
    void updateDeleteAction();
    // The tool re-checks whether the zoom allows measuring: loading media
    // enables it whatever the zoom.
    void recheckZoomBlock();

    OvCalibrationPage* calibrationPage;
    QUndoView* historyView;
    QLabel* calibrationLabel;
    QLabel* zoomStatus;
    QDockWidget* historyDockWidget;
    OvUndoGrouper* grouper;
    QAction* deleteSelectedAction = nullptr;
    QList<OvPluginHost::Plugin> plugins;
    QString currentFile;
    QuestionHook questionHook;
    bool interactive = false;
    bool scripted = false;
};
