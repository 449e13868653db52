#pragma once

#include "OvDisplayRange.h"
#include "OvGuiMainWindowBase.h"
#include "OvImageSequence.h"
#include "OvPluginHost.h"

#include <QMessageBox>
#include <QStringList>

#include <functional>

class OvBrightnessContrastDialog;
class OvCalibrationLineManipulator;
class OvCalibrationPage;
class OvLineCalibrationDialog;
class OvFrameBar;
class OvHistoryView;
class QActionGroup;
class QToolBar;
class OvResultsDock;
class OvToolBase;
class OvUndoGrouper;
class QAction;
class QDockWidget;
class QLabel;

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
    // file (TIFF resolution tags, ImageJ or OME-XML description, "UmPerPixel"
    // text) is used, else the picture is uncalibrated. The display range
    // starts automatic. False with a message when the file is missing,
    // unreadable, damaged or cut short; the current picture then stays.
    bool openImage(const QString& aFileName, QString* anError);
    // Opens several pictures (or one multi-page TIFF) as the frames of one
    // video; a single one-page picture as openImage(). All frames must have
    // the same size. The store goes to frame 0.
    bool openImages(const QStringList& aFileNames, QString* anError);
    // 1 for a single picture.
    int frameCount() const;
    // Shows frame aFrame (from 0) and moves the store to it; false when out
    // of range or unreadable (the current frame then stays).
    bool showFrame(int aFrame);
    OvFrameBar* getFrameBar() const { return frameBar; }

    // The frame shown, with its stored values (the editor shows it through
    // the display range).
    QImage currentFrameImage() const { return rawFrame; }
    // What the screen spreads from black to white; it holds for every frame
    // of the picture and changes nothing stored.
    OvDisplayRange displayRange() const { return range; }
    void setDisplayRange(const OvDisplayRange& aRange);
    // The Brightness/Contrast dialog, created on first use.
    OvBrightnessContrastDialog* brightnessContrastDialog();
    // The tool entry's calibrate buttons (typed, from a line).
    QAction* calibrateAction() const { return calibrateTypedAction; }
    QAction* calibrateFromLineAction() const { return calibrateLineAction; }

    // Calibrates the current picture (micrometres per pixel; 0 or less:
    // uncalibrated) and lets every tool know. aSource says where the
    // calibration came from (status bar); empty means typed.
    void setCalibration(double anUmPerPixel, const QString& aSource = QString());
    void setCalibration(double anUmPerPixelX, double anUmPerPixelY, const QString& aSource);
    // Micrometres per pixel along x (and y), 0 when uncalibrated.
    double calibration() const;
    double calibrationY() const;
    QString calibrationSource() const { return calibrationFrom; }
    // As setCalibration (square pixels), as one undo step ("Calibrate ...");
    // nothing for the calibration already in use.
    void requestCalibration(double anUmPerPixel, const QString& aSource = QString());
    // Calibrates from a line of aPixels that is aLength in aUnit (an
    // OvLineCalibrationDialog unit) long, as one undo step, and keeps the
    // result under aName when one is given. False with a message for lengths
    // that give no calibration.
    bool calibrateFromLine(double aPixels, double aLength, int aUnit, const QString& aName, QString* anError);

    // The measurements of the picture as a file (see OvMeasurementFile).
    bool saveMeasurements(const QString& aFileName, QString* anError);
    // A warning (another picture size) goes to the status bar and standard error.
    bool loadMeasurements(const QString& aFileName, QString* anError);
    // Where Save Measurements proposes to write: the file they were last
    // saved to or opened from, else NAME.measurements.json beside the picture
    // NAME.png, else (the bundled sample) in lastFolder().
    QString measurementsSuggestion() const;
    // The folder a file dialog starts in: the last one a file was opened
    // from or saved to (setting "LastFolder"), else the documents folder,
    // else the home folder.
    static QString lastFolder();
    // Remembers aFile's folder as lastFolder().
    static void rememberFolder(const QString& aFile);
    OvResultsDock* resultsDock() const { return results; }
    OvCalibrationLineManipulator* calibrationLineTool() const { return calibrationLine; }
    // Answers the calibration-from-line dialog instead of showing it (tests):
    // fills it in and returns whether it was accepted.
    std::function<bool(OvLineCalibrationDialog&)> lineCalibrationAnswer;

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
    // Asks "Save / Discard / Cancel" before measurements would be lost; true
    // when they may go (nothing modified, a scripted run, Discard chosen, or
    // Save chosen and the measurements saved).
    bool maybeDiscard(const QString& anAction);
    // Answers the discard question instead of a dialog (tests). The hook gets
    // the question's text and returns QMessageBox::Save, ::Discard or ::Cancel.
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

public Q_SLOTS:
    // Calibrates from the selected distance line, or lets the user drag one.
    void slotCalibrateFromLine();
    // Opens the "Device Configuration" page to type a calibration.
    void slotCalibrate();
    void slotBrightnessContrast();

private Q_SLOTS:
    void slotOpen();
    void slotOpenSample();
    void slotExportValues();
    void slotSaveScreenshot();
    void slotSaveMeasurements();
    void slotOpenMeasurements();
    void askLineCalibration(double aPixels);
    void slotShowMeasurement(int aType, int anIndex);
    void slotSavePicture();

private:
    void createMenus();
    // Moves the results under the picture when the window is tall enough.
    void placeResultsDock();
    // Asks whether to open the measurements saved beside the picture, when
    // there are some and the window is used interactively.
    void offerSavedMeasurements();
    // The discard question's Save: false when nothing was saved (cancelled or failed).
    bool saveBeforeDiscard();
    void updateTitle();
    // The picture's name and where its calibration came from.
    QString calibrationPageSource() const;
    // The tool entry says what it needs while the picture is uncalibrated.
    void updateCalibrationNotice();
    // Shows aFrame's stored values through the display range.
    void showRaw(const QImage& aFrame);
    void updateZoomLabel();
    void updateDeleteAction();
    // The tool re-checks whether the zoom allows measuring: loading media
    // enables it whatever the zoom.
    void recheckZoomBlock();

    OvCalibrationPage* calibrationPage;
    OvHistoryView* historyView;
    OvResultsDock* results;
    OvFrameBar* frameBar;
    OvCalibrationLineManipulator* calibrationLine;
    QToolBar* frameToolBar = nullptr;
    QActionGroup* frameActions = nullptr;
    OvImageSequence sequence;
    QLabel* calibrationLabel;
    QImage rawFrame;
    OvDisplayRange range;
    QString calibrationFrom;
    OvBrightnessContrastDialog* contrastDialog = nullptr;
    QAction* calibrateTypedAction = nullptr;
    QAction* calibrateLineAction = nullptr;
    QLabel* zoomStatus;
    QDockWidget* historyDockWidget;
    OvUndoGrouper* grouper;
    QAction* deleteSelectedAction = nullptr;
    QList<OvPluginHost::Plugin> plugins;
    QString currentFile;
    // The file the measurements were last saved to or opened from.
    QString measurementsFile;
    QuestionHook questionHook;
    bool interactive = false;
    bool scripted = false;
};
