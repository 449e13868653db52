#include "OvViewerMainWindow.h"

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxMediaInfo.h"
#include "KxSignalCenter.h"
#include "OvCalibrationPage.h"
#include "OvDeviceSetManager.h"
#include "OvMeasurementExporter.h"
#include "OvToolBase.h"

#include <QAction>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTextStream>
#include <QUndoStack>
#include <QUndoView>

#include <cmath>

// The viewer's resources live in a static library; register them explicitly.
static void initViewerResources()
{
    Q_INIT_RESOURCE(viewer);
}

namespace {
const char kDeviceConfiguration[] = "Device Configuration";
const char kCalibrationKey[] = "UmPerPixel";
}

OvViewerMainWindow::OvViewerMainWindow(QWidget* aParent)
    : OvGuiMainWindowBase(aParent)
    , calibrationPage(new OvCalibrationPage)
    , historyView(new QUndoView(getUndoStack()))
    , calibrationLabel(new QLabel(this))
{
    initViewerResources();
    setObjectName(QStringLiteral("OvViewerMainWindow"));
    addConfigurationPage(QString::fromLatin1(kDeviceConfiguration), calibrationPage, tr("Device Configuration"));
    connect(calibrationPage, &OvCalibrationPage::signalCalibrationRequested, this,
            &OvViewerMainWindow::setCalibration);

    historyView->setObjectName(QStringLiteral("historyView"));
    historyView->setEmptyLabel(tr("<picture opened>"));
    auto* historyDock = new QDockWidget(tr("History"), this);
    historyDock->setObjectName(QStringLiteral("historyDock"));
    historyDock->setWidget(historyView);
    addDockWidget(Qt::RightDockWidgetArea, historyDock);
    resizeDocks({ getToolDock(), historyDock }, { 640, 240 }, Qt::Vertical);

    statusBar()->addPermanentWidget(calibrationLabel);
    createMenus();
    resize(1400, 1000);
    updateTitle();
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
    file->addAction(tr("Open &Sample"), this, [this] {
        QString error;
        if (!openImage(sampleImagePath(), &error))
            reportError(error);
    });
    file->addAction(tr("&Export Values..."), this, &OvViewerMainWindow::slotExportValues);
    file->addAction(tr("Save Screens&hot..."), this, &OvViewerMainWindow::slotSaveScreenshot);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = getUndoStack()->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = getUndoStack()->createRedoAction(this, tr("&Redo"));
    redo->setShortcut(QKeySequence::Redo);
    edit->addAction(undo);
    edit->addAction(redo);
    edit->addSeparator();
    edit->addAction(tr("&Delete Selected"), this, [this] { getEditor()->deleteSelected(); });
    edit->addAction(tr("&Calibration..."), this, [this] {
        getConfigurationPanel()->show();
        getConfigurationList()->setCurrentRow(0);
    });

    QMenu* viewMenu = menuBar()->addMenu(tr("&View"));
    viewMenu->addAction(tr("Zoom &In"), this, &OvGuiMainWindowBase::slotZoomIn)->setShortcut(QKeySequence::ZoomIn);
    viewMenu->addAction(tr("Zoom &Out"), this, &OvGuiMainWindowBase::slotZoomOut)->setShortcut(QKeySequence::ZoomOut);
    viewMenu->addAction(tr("&Fit"), this, &OvGuiMainWindowBase::slotZoomFit)->setShortcut(tr("Ctrl+0"));
    viewMenu->addAction(tr("&Actual Pixels"), this, &OvGuiMainWindowBase::slotZoomActual)->setShortcut(tr("Ctrl+1"));
}

QStringList OvViewerMainWindow::loadPlugins()
{
    QStringList messages;
    OvPluginHost host;
    plugins = host.loadAll(&messages);
    OvPluginHost::addAllFeatures(plugins, this, getUndoStack(), &messages);
    // The measurement panel is what people come for: show it open.
    if (OvToolBase* tool = measurementTool()) {
        tool->slotExpandGui(true);
        const int width = qMax(tool->sizeHint().width(), tool->minimumSizeHint().width()) + 24;
        getToolDock()->setMinimumWidth(width);
        resizeDocks({ getToolDock() }, { width }, Qt::Horizontal);
    }
    for (const QString& message : messages)
        reportError(message);
    return messages;
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
    QImageReader reader(aFileName);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull()) {
        if (anError) {
            *anError = QFileInfo::exists(aFileName)
                           ? tr("Cannot open %1: %2").arg(aFileName, reader.errorString())
                           : tr("Cannot open %1: the file does not exist").arg(aFileName);
        }
        return false;
    }

    bool ok = false;
    double umPerPixel = image.text(QString::fromLatin1(kCalibrationKey)).toDouble(&ok);
    if (!ok || !std::isfinite(umPerPixel) || umPerPixel <= 0.0)
        umPerPixel = 0.0;

    KxMediaInfo media;
    media.setFileName(aFileName);
    media.setParameter(KxMediaInfo::MetaImageSource, int(KxMediaInfo::SourceFile));
    media.setUmPerPixel(umPerPixel);

    getUndoStack()->clear();
    getEditor()->setCurrentObject(nullptr, false);
    setImage(image);
    currentFile = aFileName;
    KxKernelData::getInstance()->loadMedia(media, image.size());
    calibrationPage->showCalibration(umPerPixel, QFileInfo(aFileName).fileName());
    updateTitle();
    statusBar()->showMessage(tr("Opened %1 (%2 x %3 pixels)").arg(QFileInfo(aFileName).fileName())
                                 .arg(image.width()).arg(image.height()), 5000);
    return true;
}

double OvViewerMainWindow::calibration() const
{
    return KxKernelData::getInstance()->getMediaInfo().getUmPerPixelX();
}

void OvViewerMainWindow::setCalibration(double anUmPerPixel)
{
    if (!std::isfinite(anUmPerPixel) || anUmPerPixel < 0.0)
        anUmPerPixel = 0.0;
    KxKernelData::getInstance()->setMediaCalibration(anUmPerPixel);
    calibrationPage->showCalibration(anUmPerPixel, QFileInfo(currentFile).fileName());
    // Labels follow the new calibration, and the tools re-check whether the
    // picture can now be measured.
    Q_EMIT OvDeviceSetManager::instance()->signalDeviceSetModified(OvDeviceSetManager::FlagCalibrationChanged);
    Q_EMIT KxSignalCenter::getInstance()->signalMediaLoaded();
    updateTitle();
}

void OvViewerMainWindow::updateTitle()
{
    const QString name = currentFile.isEmpty() ? tr("no picture") : QFileInfo(currentFile).fileName();
    setWindowTitle(tr("%1 - Ov Viewer").arg(name));
    const double um = calibration();
    calibrationLabel->setText(um > 0.0 ? tr("%1 \u00B5m/px").arg(um) : tr("uncalibrated"));
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
    const QString file = QFileDialog::getOpenFileName(this, tr("Open Picture"), QString(),
                                                      tr("Pictures (*.png *.jpg *.jpeg *.tif *.tiff *.bmp)"));
    if (file.isEmpty())
        return;
    QString error;
    if (!openImage(file, &error))
        reportError(error);
}

void OvViewerMainWindow::slotExportValues()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Export Values"), QStringLiteral("values.csv"),
                                                      tr("CSV (*.csv)"));
    if (file.isEmpty())
        return;
    QString error;
    if (!OvMeasurementExporter::writeCsv(file, &error))
        reportError(error);
}

void OvViewerMainWindow::slotSaveScreenshot()
{
    const QString file = QFileDialog::getSaveFileName(this, tr("Save Screenshot"), QStringLiteral("screenshot.png"),
                                                      tr("PNG (*.png)"));
    if (!file.isEmpty() && !grab().save(file))
        reportError(tr("Cannot write %1").arg(file));
}
