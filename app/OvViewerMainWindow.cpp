#include "OvViewerMainWindow.h"

#include "KxGsEditor.h"
#include "KxGsObject.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxMediaInfo.h"
#include "KxSignalCenter.h"
#include "OvBrightnessContrastDialog.h"
#include "OvCalibrateCommand.h"
#include "OvCalibrationLineManipulator.h"
#include "OvCalibrationPage.h"
#include "OvFrameBar.h"
#include "OvHistoryView.h"
#include "OvLineCalibrationDialog.h"
#include "OvMeasurementFile.h"
#include "OvNamedCalibrations.h"
#include "OvPanelMenuTexts.h"
#include "OvResultsDock.h"
#include "OvResultsModel.h"
#include "OvDeviceSetManager.h"
#include "OvMeasurementExporter.h"
#include "OvToolBase.h"
#include "OvUndoGrouper.h"
#include "KxAppSettings.h"
#include "KxGsManipulator.h"
#include "KxLocalMagnifier.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QColorDialog>
#include <QCloseEvent>
#include <QDockWidget>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QFileDialog>
#include <QDir>
#include <QStandardPaths>
#include <QFileInfo>
#include <QGraphicsView>
#include <QImageReader>
#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTextStream>
#include <QToolBar>
#include <QUndoStack>

#include <cmath>

// The viewer's resources live in a static library; register them explicitly.
static void initViewerResources()
{
    Q_INIT_RESOURCE(viewer);
}

namespace {
const char kDeviceConfiguration[] = "Device Configuration";
const char kCalibrationKey[] = "UmPerPixel";
const char kCalibrationKeyY[] = "UmPerPixelY";
const char kKeyGeometry[] = "ViewerGeometry";
const char kKeyWindowState[] = "ViewerWindowState";
const char kKeyLastFolder[] = "LastFolder";
// Preferred window size; a smaller screen gets 92 % of its free area.
const QSize kPreferredSize(1400, 900);
// The lowest window that has the results under the picture.
const int kResultsBelowMinHeight = 700;
}

OvViewerMainWindow::OvViewerMainWindow(QWidget* aParent)
    : OvGuiMainWindowBase(aParent)
    , calibrationPage(new OvCalibrationPage)
    , historyView(new OvHistoryView(getUndoStack()))
    , results(new OvResultsDock(this))
    , frameBar(new OvFrameBar(this))
    , calibrationLine(new OvCalibrationLineManipulator(this))
    , calibrationLabel(new QLabel(this))
    , zoomStatus(new QLabel(this))
    , historyDockWidget(new QDockWidget(tr("History"), this))
    , grouper(new OvUndoGrouper(getUndoStack(), this))
{
    initViewerResources();
    setObjectName(QStringLiteral("OvViewerMainWindow"));
    addConfigurationPage(QString::fromLatin1(kDeviceConfiguration), calibrationPage, tr("Device Configuration"));
    connect(calibrationPage, &OvCalibrationPage::signalCalibrationRequested, this,
            [this](double anUmPerPixel) { requestCalibration(anUmPerPixel); });

    historyView->setObjectName(QStringLiteral("historyView"));
    historyView->setEmptyLabel(tr("<picture opened>"));
    QDockWidget* historyDock = historyDockWidget;
    historyDock->setObjectName(QStringLiteral("historyDock"));
    historyDock->setWidget(historyView);
    addDockWidget(Qt::RightDockWidgetArea, historyDock);
    resizeDocks({ getToolDock(), historyDock }, { 640, 240 }, Qt::Vertical);
    // A tab beside the history; a window tall enough has it under the picture
    // (placeResultsDock). Dragged elsewhere, it stays there (the layout is
    // remembered).
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    tabifyDockWidget(historyDock, results);
    historyDock->raise();
    connect(results, &OvResultsDock::signalMeasurementActivated, this, &OvViewerMainWindow::slotShowMeasurement);
    connect(calibrationLine, &OvCalibrationLineManipulator::signalLineDrawn, this,
            &OvViewerMainWindow::askLineCalibration);
    connect(calibrationLine, &OvCalibrationLineManipulator::signalCancelled, this,
            [this] { statusBar()->clearMessage(); });

    auto* frames = new QToolBar(tr("Frames"), this);
    frames->setObjectName(QStringLiteral("framesToolBar"));
    frames->setMovable(false);
    frames->addWidget(frameBar);
    addToolBar(Qt::BottomToolBarArea, frames);
    connect(frameBar, &OvFrameBar::signalFrameRequested, this, [this](int aFrame) { showFrame(aFrame); });
    frameToolBar = frames;
    frames->hide();

    zoomStatus->setObjectName(QStringLiteral("zoomLabel"));
    statusBar()->addPermanentWidget(zoomStatus);
    statusBar()->addPermanentWidget(calibrationLabel);
    createMenus();
    // Not taller (or wider) than the screen: the status bar must stay on it.
    QSize size = kPreferredSize;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        const QSize available = screen->availableGeometry().size();
        size = size.boundedTo(QSize(available.width() * 92 / 100, available.height() * 92 / 100));
    }
    resize(size);

    connect(getUndoStack(), &QUndoStack::cleanChanged, this, [this](bool aClean) { setWindowModified(!aClean); });
    connect(getUndoStack(), &QUndoStack::indexChanged, this, &OvViewerMainWindow::updateDeleteAction);
    connect(getEditor(), &KxGsEditor::signalSelectionChanged, this, &OvViewerMainWindow::updateDeleteAction);
    connect(getEditor(), &KxGsEditor::scaleChanged, this, &OvViewerMainWindow::updateZoomLabel);
    updateDeleteAction();
    updateZoomLabel();
    updateTitle();
}

OvViewerMainWindow::~OvViewerMainWindow()
{
    // The base's children (undo stack, scene) still talk while they go.
    getUndoStack()->disconnect(this);
    getEditor()->disconnect(this);
}

QString OvViewerMainWindow::sampleImagePath()
{
    return QStringLiteral(":/viewer/sample-micrograph.png");
}

void OvViewerMainWindow::createMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* open = file->addAction(tr("&Open..."), this, &OvViewerMainWindow::slotOpen);
    open->setShortcut(QKeySequence::Open);
    file->addAction(tr("Open &Sample"), this, &OvViewerMainWindow::slotOpenSample);
    file->addSeparator();
    file->addAction(tr("Open &Measurements..."), this, &OvViewerMainWindow::slotOpenMeasurements);
    QAction* save = file->addAction(tr("Sa&ve Measurements..."), this, &OvViewerMainWindow::slotSaveMeasurements);
    save->setShortcut(QKeySequence::Save);
    file->addAction(tr("&Export Results..."), this, &OvViewerMainWindow::slotExportValues);
    file->addAction(tr("Save Screens&hot of the Window..."), this, &OvViewerMainWindow::slotSaveScreenshot);
    file->addAction(tr("Save &Picture with Measurements..."), this, &OvViewerMainWindow::slotSavePicture);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = getUndoStack()->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = getUndoStack()->createRedoAction(this, tr("&Redo"));
    // Ctrl+Y as well, whatever the platform's own redo key is.
    QList<QKeySequence> redoKeys = QKeySequence::keyBindings(QKeySequence::Redo);
    if (!redoKeys.contains(QKeySequence(tr("Ctrl+Y"))))
        redoKeys << QKeySequence(tr("Ctrl+Y"));
    redo->setShortcuts(redoKeys);
    edit->addAction(undo);
    edit->addAction(redo);
    edit->addSeparator();
    QAction* selectAll = edit->addAction(tr("Select &All"), this, [this] { getEditor()->selectAll(); });
    selectAll->setShortcut(QKeySequence::SelectAll);
    // Escape is this action's shortcut, so the key never reaches the editor:
    // a calibration line being dragged is cancelled here, tool and all.
    QAction* cancel = edit->addAction(tr("Cancel Drawing / Deselect"), this, [this] {
        if (getEditor()->getOverrideManipulator() == calibrationLine)
            calibrationLine->cancel();
        else
            getEditor()->cancelOrDeselect();
    });
    cancel->setShortcut(QKeySequence(Qt::Key_Escape));
    deleteSelectedAction = edit->addAction(tr("&Delete Selected"), this, [this] { getEditor()->deleteSelected(); });
    deleteSelectedAction->setShortcut(QKeySequence::Delete);
    edit->addSeparator();
    edit->addAction(tr("&Calibration..."), this, &OvViewerMainWindow::slotCalibrate);
    edit->addAction(tr("Calibrate from &Line..."), this, &OvViewerMainWindow::slotCalibrateFromLine);
    // The same two ways, offered by the tool entry of an uncalibrated picture.
    calibrateTypedAction = new QAction(tr("Calibrate..."), this);
    calibrateTypedAction->setObjectName(QStringLiteral("calibrateAction"));
    calibrateTypedAction->setIconText(tr("Calibrate\u2026"));
    calibrateTypedAction->setToolTip(tr("Type the size of one pixel"));
    connect(calibrateTypedAction, &QAction::triggered, this, &OvViewerMainWindow::slotCalibrate);
    calibrateLineAction = new QAction(tr("From a Line..."), this);
    calibrateLineAction->setObjectName(QStringLiteral("calibrateFromLineAction"));
    calibrateLineAction->setIconText(tr("From a Line\u2026"));
    calibrateLineAction->setToolTip(tr("Drag a line over the scale bar and type its true length"));
    connect(calibrateLineAction, &QAction::triggered, this, &OvViewerMainWindow::slotCalibrateFromLine);

    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    viewMenu->addAction(tr("Zoom &In"), this, &OvGuiMainWindowBase::slotZoomIn)->setShortcut(QKeySequence::ZoomIn);
    viewMenu->addAction(tr("Zoom &Out"), this, &OvGuiMainWindowBase::slotZoomOut)->setShortcut(QKeySequence::ZoomOut);
    viewMenu->addAction(tr("&Fit"), this, &OvGuiMainWindowBase::slotZoomFit)->setShortcut(tr("Ctrl+0"));
    viewMenu->addAction(tr("&Actual Pixels"), this, &OvGuiMainWindowBase::slotZoomActual)->setShortcut(tr("Ctrl+1"));
    viewMenu->addSeparator();
    viewMenu->addAction(tr("&Brightness/Contrast..."), this, &OvViewerMainWindow::slotBrightnessContrast)
        ->setShortcut(tr("Ctrl+Shift+C"));
    viewMenu->addSeparator();
    QAction* tools = getToolDock()->toggleViewAction();
    tools->setText(tr("&Tools"));
    viewMenu->addAction(tools);
    QAction* history = historyDockWidget->toggleViewAction();
    history->setText(tr("&History"));
    viewMenu->addAction(history);
    viewMenu->addAction(results->toggleViewAction());
    viewMenu->addSeparator();
    frameActions = new QActionGroup(this);
    frameActions->setExclusive(false);
    QAction* previous = viewMenu->addAction(tr("&Previous Frame"), frameBar, &OvFrameBar::slotPrevious);
    previous->setShortcut(QKeySequence(Qt::Key_PageUp));
    QAction* next = viewMenu->addAction(tr("&Next Frame"), frameBar, &OvFrameBar::slotNext);
    next->setShortcut(QKeySequence(Qt::Key_PageDown));
    QAction* play = viewMenu->addAction(tr("P&lay / Pause"), frameBar, &OvFrameBar::slotTogglePlay);
    play->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Space));
    for (QAction* action : { previous, next, play })
        frameActions->addAction(action);
    frameActions->setEnabled(false);
}

QStringList OvViewerMainWindow::loadPlugins()
{
    QStringList messages;
    OvPluginHost host;
    plugins = host.loadAll(&messages);
    OvPluginHost::addAllFeatures(plugins, this, getUndoStack(), &messages);
    // The measurement panel is what people come for: show it open, its
    // drop-down entries named.
    OvPanelMenuTexts::apply(getToolDock());
    if (OvToolBase* tool = measurementTool()) {
        tool->slotExpandGui(true);
        const int width = qMax(tool->sizeHint().width(), tool->minimumSizeHint().width()) + 24;
        getToolDock()->setMinimumWidth(width);
        resizeDocks({ getToolDock() }, { width }, Qt::Horizontal);
    }
    placeResultsDock();
    for (const QString& message : messages)
        reportError(message);
    updateCalibrationNotice();
    grouper->watch(getToolDock());
    grouper->setWanted([this] { return !getEditor()->getSelectedObjects().isEmpty(); });
    // The panel's colour dialog follows the choice live: one pick, one step.
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<QColorDialog*>(widget))
            grouper->watchDialog(widget);
    }
    return messages;
}

void OvViewerMainWindow::placeResultsDock()
{
    // Under the picture a table of seven columns has room, and the tool
    // column keeps the window's full height; on a low window the picture
    // needs the height more, and the results stay a tab beside the history.
    if (height() < kResultsBelowMinHeight || dockWidgetArea(results) == Qt::BottomDockWidgetArea)
        return;
    addDockWidget(Qt::BottomDockWidgetArea, results);
    results->show();
    // A few rows; the picture keeps most of the height.
    resizeDocks({ results }, { qBound(100, height() / 6, 180) }, Qt::Vertical);
}

OvToolBase* OvViewerMainWindow::measurementTool() const
{
    for (OvToolBase* tool : getToolEntries()) {
        if (tool->getName() == QLatin1String("Measurement"))
            return tool;
    }
    return nullptr;
}

bool OvViewerMainWindow::openImage(const QString& aFileName, QString* anError)
{
    return openImages({ aFileName }, anError);
}

bool OvViewerMainWindow::openImages(const QStringList& aFileNames, QString* anError)
{
    OvImageSequence opened;
    if (!opened.open(aFileNames, anError))
        return false;
    const QImage image = opened.frame(0);
    sequence = opened;
    const OvFileCalibration fileCalibration = sequence.calibration();
    const double umPerPixel = fileCalibration.umPerPixelX();

    const QString fileName = sequence.firstFile();
    KxMediaInfo media;
    media.setFileName(fileName);
    media.setParameter(KxMediaInfo::MetaImageSource, int(KxMediaInfo::SourceFile));
    media.setUmPerPixel(umPerPixel, fileCalibration.umPerPixelY());
    // A series of pictures is not a video file (those cannot be measured):
    // it is a picture with frames, on which the host animates every
    // measurement.
    media.setFrameCount(sequence.frameCount());

    grouper->end();
    getEditor()->cancelOrDeselect();
    getUndoStack()->clear();
    getEditor()->setCurrentObject(nullptr, false);
    // Each picture starts at its own automatic range, which then holds for
    // all of its frames.
    range = OvDisplayRange::automatic(image);
    rawFrame = image;
    setImage(range.apply(image));
    if (contrastDialog)
        contrastDialog->setPicture(rawFrame, range);
    currentFile = fileName;
    calibrationFrom = fileCalibration.isValid() ? tr("from the file's %1").arg(fileCalibration.sourceText())
                                                : QString();
    measurementsFile.clear();
    KxKernelData::getInstance()->loadMedia(media, image.size());
    frameBar->setFrameCount(sequence.frameCount());
    frameToolBar->setVisible(sequence.frameCount() > 1);
    frameActions->setEnabled(sequence.frameCount() > 1);
    calibrationPage->showCalibration(umPerPixel, calibrationPageSource());
    recheckZoomBlock();
    updateTitle();
    const QString name = QFileInfo(fileName).fileName();
    QString message = sequence.frameCount() > 1
        ? tr("Opened %1 frames from %2 (%3 x %4 pixels)").arg(sequence.frameCount())
              .arg(name).arg(image.width()).arg(image.height())
        : tr("Opened %1 (%2 x %3 pixels)").arg(name).arg(image.width()).arg(image.height());
    if (!sequence.stackDescription().isEmpty())
        message += tr("; %1").arg(sequence.stackDescription());
    message += fileCalibration.isValid() ? tr("; calibrated from its %1").arg(fileCalibration.sourceText())
                                        : tr("; uncalibrated");
    statusBar()->showMessage(message, 10000);
    offerSavedMeasurements();
    return true;
}

void OvViewerMainWindow::offerSavedMeasurements()
{
    const QString saved = OvMeasurementFile::defaultPathFor(currentFile);
    if (!interactive || saved.isEmpty() || !QFileInfo::exists(saved))
        return;
    const auto answer = QMessageBox::question(this, tr("Ov Viewer"),
                                              tr("Measurements were saved with this picture (%1). Open them?")
                                                  .arg(QFileInfo(saved).fileName()),
                                              QMessageBox::Open | QMessageBox::Ignore, QMessageBox::Open);
    QString error;
    if (answer == QMessageBox::Open && !loadMeasurements(saved, &error))
        reportError(error);
}

int OvViewerMainWindow::frameCount() const
{
    return qMax(1, sequence.frameCount());
}

bool OvViewerMainWindow::showFrame(int aFrame)
{
    if (aFrame < 0 || aFrame >= frameCount())
        return false;
    if (sequence.frameCount() > 1) {
        const QImage image = sequence.frame(aFrame);
        if (image.isNull()) {
            reportError(tr("Cannot read frame %1 of %2").arg(aFrame + 1).arg(QFileInfo(currentFile).fileName()));
            return false;
        }
        showRaw(image);
        frameBar->showFrame(aFrame);
    }
    KxKernelData::getInstance()->setCurrentFrame(aFrame);
    return true;
}

void OvViewerMainWindow::showRaw(const QImage& aFrame)
{
    rawFrame = aFrame;
    getEditor()->setImage(range.apply(aFrame));
    if (contrastDialog)
        contrastDialog->setPicture(rawFrame, range);
}

void OvViewerMainWindow::setDisplayRange(const OvDisplayRange& aRange)
{
    if (aRange == range)
        return;
    range = aRange;
    getEditor()->setImage(range.apply(rawFrame));
    if (contrastDialog)
        contrastDialog->setRange(range);
}

OvBrightnessContrastDialog* OvViewerMainWindow::brightnessContrastDialog()
{
    if (!contrastDialog) {
        contrastDialog = new OvBrightnessContrastDialog(this);
        connect(contrastDialog, &OvBrightnessContrastDialog::signalRangeChanged, this,
                [this](int aMinimum, int aMaximum) { setDisplayRange(OvDisplayRange(aMinimum, aMaximum)); });
        contrastDialog->setPicture(rawFrame, range);
    }
    return contrastDialog;
}

void OvViewerMainWindow::slotBrightnessContrast()
{
    OvBrightnessContrastDialog* dialog = brightnessContrastDialog();
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

double OvViewerMainWindow::calibration() const
{
    return KxKernelData::getInstance()->getMediaInfo().getUmPerPixelX();
}

double OvViewerMainWindow::calibrationY() const
{
    return KxKernelData::getInstance()->getMediaInfo().getUmPerPixelY();
}

void OvViewerMainWindow::setCalibration(double anUmPerPixel, const QString& aSource)
{
    setCalibration(anUmPerPixel, anUmPerPixel, aSource);
}

void OvViewerMainWindow::setCalibration(double anUmPerPixelX, double anUmPerPixelY, const QString& aSource)
{
    KxKernelData::getInstance()->getMediaInfo().setUmPerPixel(anUmPerPixelX, anUmPerPixelY);
    const double anUmPerPixel = calibration();
    calibrationFrom = anUmPerPixel > 0.0 ? aSource : QString();
    calibrationPage->showCalibration(anUmPerPixel, calibrationPageSource());
    // Labels follow the new calibration, and the tools re-check whether the
    // picture can now be measured.
    Q_EMIT OvDeviceSetManager::instance()->signalDeviceSetModified(OvDeviceSetManager::FlagCalibrationChanged);
    Q_EMIT KxSignalCenter::getInstance()->signalMediaLoaded();
    recheckZoomBlock();
    updateTitle();
}

QString OvViewerMainWindow::calibrationPageSource() const
{
    const QString name = QFileInfo(currentFile).fileName();
    return calibrationFrom.isEmpty() ? name : tr("%1 (%2)").arg(name, calibrationFrom);
}

void OvViewerMainWindow::recheckZoomBlock()
{
    Q_EMIT getEditor()->scaleChanged();
}

void OvViewerMainWindow::updateZoomLabel()
{
    const double percent = getEditor()->getZoom() * 100.0;
    zoomStatus->setText(tr("Zoom %1 %").arg(percent, 0, 'f', percent < 10.0 ? 1 : 0));
}

void OvViewerMainWindow::updateDeleteAction()
{
    if (deleteSelectedAction)
        deleteSelectedAction->setEnabled(!getEditor()->getSelectedObjects().isEmpty());
}

bool OvViewerMainWindow::isModified() const
{
    return !getUndoStack()->isClean();
}

bool OvViewerMainWindow::maybeDiscard(const QString& anAction)
{
    grouper->end();
    if (scripted || !isModified())
        return true;
    const QString question = tr("The measurements on %1 have changed. %2 discards them.")
                                 .arg(currentFile.isEmpty() ? tr("this picture") : QFileInfo(currentFile).fileName(),
                                      anAction);
    QMessageBox::StandardButton answer = QMessageBox::Cancel;
    if (questionHook) {
        answer = questionHook(question);
    } else {
        QMessageBox box(QMessageBox::Warning, tr("Ov Viewer"), question,
                        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
        box.setDefaultButton(QMessageBox::Save);
        answer = static_cast<QMessageBox::StandardButton>(box.exec());
    }
    if (answer == QMessageBox::Save)
        return saveBeforeDiscard();
    return answer == QMessageBox::Discard;
}

bool OvViewerMainWindow::saveBeforeDiscard()
{
    // Where these measurements were last saved or opened, else beside the picture.
    QString file = measurementsFile.isEmpty() ? OvMeasurementFile::defaultPathFor(currentFile) : measurementsFile;
    if (file.isEmpty())
        file = QFileDialog::getSaveFileName(this, tr("Save Measurements"), measurementsSuggestion(),
                                            tr("Measurements (*.json)"));
    if (file.isEmpty())
        return false;
    rememberFolder(file);
    QString error;
    if (!saveMeasurements(file, &error)) {
        reportError(error);
        return false;
    }
    return true;
}

void OvViewerMainWindow::closeEvent(QCloseEvent* anEvent)
{
    if (!maybeDiscard(tr("Quitting"))) {
        anEvent->ignore();
        return;
    }
    if (!scripted)
        saveLayout();
    // Discarded: the measurements go without another question.
    getUndoStack()->setClean();
    anEvent->accept();
}

void OvViewerMainWindow::restoreLayout()
{
    const QByteArray geometry = KxAppSettings::value(QString::fromLatin1(kKeyGeometry)).toByteArray();
    const QByteArray state = KxAppSettings::value(QString::fromLatin1(kKeyWindowState)).toByteArray();
    if (!geometry.isEmpty())
        restoreGeometry(geometry);
    if (!state.isEmpty())
        restoreState(state);
}

void OvViewerMainWindow::saveLayout() const
{
    KxAppSettings::setValue(QString::fromLatin1(kKeyGeometry), saveGeometry());
    KxAppSettings::setValue(QString::fromLatin1(kKeyWindowState), saveState());
    KxAppSettings::sync();
}

QImage OvViewerMainWindow::renderPicture() const
{
    KxGsEditor* editor = getEditor();
    const QSize size = editor->getImage().size();
    if (size.isEmpty() || !editor->scene())
        return QImage();
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::black);
    // The lens and a selection band are tools, not part of the picture.
    KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
    const bool lensShown = lens && lens->isVisible();
    if (lensShown)
        lens->hide();
    QGraphicsItem* band = editor->getSelectionBand();
    if (band)
        band->hide();
    // Labels and buttons as large on the picture as they are on the screen.
    editor->beginPictureRender();
    {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing, true);
        editor->scene()->render(&painter, QRectF(QPointF(0.0, 0.0), QSizeF(size)), editor->sceneBoundingRect(),
                                Qt::IgnoreAspectRatio);
    }
    editor->endPictureRender();
    if (band)
        band->show();
    if (lensShown)
        lens->show();
    return picture;
}

bool OvViewerMainWindow::saveScreenshot(const QString& aFileName, bool aPictureOnly, QString* anError)
{
    QImage shot = aPictureOnly ? renderPicture() : grab().toImage();
    // The picture keeps its pixels, so it keeps its calibration too and
    // reopens calibrated.
    if (aPictureOnly && calibration() > 0.0) {
        shot.setText(QString::fromLatin1(kCalibrationKey), QString::number(calibration(), 'g', 17));
        if (calibrationY() != calibration())
            shot.setText(QString::fromLatin1(kCalibrationKeyY), QString::number(calibrationY(), 'g', 17));
    }
    if (shot.isNull() || !shot.save(aFileName, "PNG")) {
        if (anError)
            *anError = tr("Cannot write %1").arg(aFileName);
        return false;
    }
    statusBar()->showMessage(tr("Saved %1").arg(QDir::toNativeSeparators(QFileInfo(aFileName).absoluteFilePath())),
                             10000);
    return true;
}

bool OvViewerMainWindow::exportValues(const QString& aFileName, QString* anError)
{
    // The Results table's rows when there is one: the file then holds
    // exactly what the table shows, and the values are not computed twice.
    const bool written = results ? OvMeasurementExporter::writeCsv(aFileName, results->model()->currentRows(), anError)
                                 : OvMeasurementExporter::writeCsv(aFileName, anError);
    if (!written)
        return false;
    statusBar()->showMessage(
        tr("Values written to %1").arg(QDir::toNativeSeparators(QFileInfo(aFileName).absoluteFilePath())), 10000);
    return true;
}

void OvViewerMainWindow::updateTitle()
{
    const QString name = currentFile.isEmpty() ? tr("no picture") : QFileInfo(currentFile).fileName();
    setWindowTitle(tr("%1[*] - Ov Viewer").arg(name));
    const double um = calibration();
    const double umY = calibrationY();
    QString text = tr("uncalibrated");
    if (um > 0.0) {
        text = um == umY ? tr("%1 \u00B5m/px").arg(um) : tr("%1 \u00D7 %2 \u00B5m/px").arg(um).arg(umY);
        text += tr(" (%1)").arg(calibrationFrom.isEmpty() ? tr("typed") : calibrationFrom);
    }
    calibrationLabel->setText(text);
    updateCalibrationNotice();
}

void OvViewerMainWindow::updateCalibrationNotice()
{
    OvToolBase* tool = measurementTool();
    if (!tool)
        return;
    if (currentFile.isEmpty() || calibration() > 0.0)
        tool->setNotice(QString(), {});
    else
        tool->setNotice(tr("Measuring needs a calibration: this picture does not say how large its pixels are."),
                        { calibrateTypedAction, calibrateLineAction });
}

void OvViewerMainWindow::reportError(const QString& aMessage)
{
    QTextStream(stderr) << "ovviewer: " << aMessage << '\n';
    statusBar()->showMessage(aMessage, 10000);
    if (interactive && isVisible())
        QMessageBox::warning(this, tr("Ov Viewer"), aMessage);
}

void OvViewerMainWindow::slotOpen()
{
    if (!maybeDiscard(tr("Opening another picture")))
        return;
    // Several pictures open as the frames of one time series, in name order.
    QStringList files = QFileDialog::getOpenFileNames(this, tr("Open Pictures"), lastFolder(),
                                                      tr("Pictures (*.png *.jpg *.jpeg *.tif *.tiff *.bmp)"));
    if (files.isEmpty())
        return;
    rememberFolder(files.first());
    files.sort();
    QString error;
    if (!openImages(files, &error))
        reportError(error);
}

void OvViewerMainWindow::slotOpenSample()
{
    if (!maybeDiscard(tr("Opening the sample")))
        return;
    QString error;
    if (!openImage(sampleImagePath(), &error))
        reportError(error);
}

void OvViewerMainWindow::slotExportValues()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Export Values"),
                                                      QDir(lastFolder()).filePath(QStringLiteral("values.csv")),
                                                      tr("CSV (*.csv)"));
    if (file.isEmpty())
        return;
    rememberFolder(file);
    QString error;
    if (!exportValues(file, &error))
        reportError(error);
}

void OvViewerMainWindow::slotSaveScreenshot()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Save Screenshot of the Window"),
                                                      QDir(lastFolder()).filePath(QStringLiteral("screenshot.png")), tr("PNG (*.png)"));
    rememberFolder(file);
    QString error;
    if (!file.isEmpty() && !saveScreenshot(file, false, &error))
        reportError(error);
}

void OvViewerMainWindow::slotSavePicture()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Save Picture with Measurements"),
                                                      QDir(lastFolder()).filePath(QStringLiteral("measured.png")), tr("PNG (*.png)"));
    rememberFolder(file);
    QString error;
    if (!file.isEmpty() && !saveScreenshot(file, true, &error))
        reportError(error);
}

void OvViewerMainWindow::requestCalibration(double anUmPerPixel, const QString& aSource)
{
    if (!std::isfinite(anUmPerPixel) || anUmPerPixel < 0.0)
        anUmPerPixel = 0.0;
    const OvCalibrateCommand::State old{ calibration(), calibrationY(), calibrationFrom };
    if (anUmPerPixel == old.umPerPixelX && anUmPerPixel == old.umPerPixelY)
        return;
    getUndoStack()->push(new OvCalibrateCommand(this, old, { anUmPerPixel, anUmPerPixel, aSource }));
}

void OvViewerMainWindow::slotCalibrate()
{
    getConfigurationPanel()->show();
    getConfigurationPanel()->raise();
    getConfigurationList()->setCurrentRow(0);
    if (auto* box = calibrationPage->findChild<QAbstractSpinBox*>()) {
        box->setFocus();
        box->selectAll();
    }
}

bool OvViewerMainWindow::calibrateFromLine(double aPixels, double aLength, int aUnit, const QString& aName,
                                           QString* anError)
{
    const double um = OvLineCalibrationDialog::umPerPixel(aPixels, aLength, aUnit);
    if (um <= 0.0) {
        if (anError)
            *anError = tr("A calibration needs a line and a true length above 0");
        return false;
    }
    requestCalibration(um, tr("from a line"));
    if (!aName.trimmed().isEmpty()) {
        OvNamedCalibrations::store(aName, um);
        calibrationPage->reloadNamed();
    }
    statusBar()->showMessage(tr("Calibrated: %1 \u00B5m per pixel").arg(um, 0, 'g', 8), 5000);
    return true;
}

bool OvViewerMainWindow::saveMeasurements(const QString& aFileName, QString* anError)
{
    if (!OvMeasurementFile::save(aFileName, anError))
        return false;
    measurementsFile = aFileName;
    getUndoStack()->setClean();
    statusBar()->showMessage(tr("Measurements saved to %1").arg(aFileName), 5000);
    return true;
}

bool OvViewerMainWindow::loadMeasurements(const QString& aFileName, QString* anError)
{
    QString warning;
    if (!OvMeasurementFile::load(aFileName, this, anError, &warning))
        return false;
    measurementsFile = aFileName;
    getEditor()->setCurrentObject(nullptr, false);
    if (!warning.isEmpty())
        reportError(warning);
    else
        statusBar()->showMessage(tr("Measurements opened from %1").arg(aFileName), 5000);
    return true;
}

QString OvViewerMainWindow::measurementsSuggestion() const
{
    if (!measurementsFile.isEmpty())
        return measurementsFile;
    const QString beside = OvMeasurementFile::defaultPathFor(currentFile);
    if (!beside.isEmpty())
        return beside;
    // A picture without a folder of its own (the bundled sample): its name
    // in the folder last used.
    QString name = QFileInfo(currentFile).completeBaseName();
    if (name.isEmpty())
        name = QStringLiteral("measurements");
    return QDir(lastFolder()).filePath(name + QStringLiteral(".measurements.json"));
}

QString OvViewerMainWindow::lastFolder()
{
    const QString remembered = KxAppSettings::value(QString::fromLatin1(kKeyLastFolder)).toString();
    if (!remembered.isEmpty() && QFileInfo(remembered).isDir())
        return remembered;
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty() && QFileInfo(documents).isDir())
        return documents;
    return QDir::homePath();
}

void OvViewerMainWindow::rememberFolder(const QString& aFile)
{
    if (aFile.isEmpty() || aFile.startsWith(QLatin1Char(':')))
        return;
    KxAppSettings::setValue(QString::fromLatin1(kKeyLastFolder), QFileInfo(aFile).absolutePath());
}

void OvViewerMainWindow::slotSaveMeasurements()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Save Measurements"), measurementsSuggestion(),
                                                      tr("Measurements (*.json)"));
    if (file.isEmpty())
        return;
    rememberFolder(file);
    QString error;
    if (!saveMeasurements(file, &error))
        reportError(error);
}

void OvViewerMainWindow::slotOpenMeasurements()
{
    if (!maybeDiscard(tr("Opening other measurements")))
        return;
    QString start = OvMeasurementFile::defaultPathFor(currentFile);
    if (start.isEmpty() || !QFileInfo::exists(start))
        start = lastFolder();
    const QString file = QFileDialog::getOpenFileName(this, tr("Open Measurements"), start,
                                                      tr("Measurements (*.json)"));
    if (file.isEmpty())
        return;
    rememberFolder(file);
    QString error;
    if (!loadMeasurements(file, &error))
        reportError(error);
}

void OvViewerMainWindow::slotCalibrateFromLine()
{
    // A distance line already drawn over the scale bar is taken as it is;
    // otherwise the user drags one, which works on an uncalibrated picture too.
    const double pixels = OvLineCalibrationDialog::selectedLinePixels(getEditor());
    if (pixels > 0.0) {
        askLineCalibration(pixels);
        return;
    }
    statusBar()->showMessage(tr("Drag a line over the scale bar or stage micrometer to calibrate from "
                                "(Esc cancels)"));
    getEditor()->setOverrideManipulator(calibrationLine);
}

void OvViewerMainWindow::askLineCalibration(double aPixels)
{
    statusBar()->clearMessage();
    OvLineCalibrationDialog dialog(aPixels, this);
    const bool accepted = lineCalibrationAnswer ? lineCalibrationAnswer(dialog) : dialog.exec() == QDialog::Accepted;
    QString error;
    if (accepted
        && !calibrateFromLine(dialog.linePixels(), dialog.trueLength(), dialog.unit(), dialog.calibrationName(),
                              &error))
        reportError(error);
}

void OvViewerMainWindow::slotShowMeasurement(int aType, int anIndex)
{
    KxGsManipulator* manipulator = KxKernelData::getInstance()->getManipulator(aType);
    KxGsObject* item = manipulator ? manipulator->getGsObject(anIndex) : nullptr;
    if (!item)
        return;
    getEditor()->setCurrentObject(item, false);
    getView()->ensureVisible(item);
}
