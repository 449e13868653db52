#include "OvGuiMainWindowBase.h"

#include "KxGsEditor.h"
#include "KxSignalCenter.h"
#include "OvToolBase.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QGuiApplication>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>
#include <QStackedWidget>
#include <QUndoStack>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <cmath>

OvGuiMainWindowBase::OvGuiMainWindowBase(QWidget* aParent)
    : QMainWindow(aParent)
    , scene(new QGraphicsScene(this))
    , view(new QGraphicsView(scene, this))
    , editor(KxGsEditor::getInstance())
    , undoStack(new QUndoStack(this))
{
    setObjectName(QStringLiteral("OvGuiMainWindowBase"));
    // The editor may exist already (created on first use); it joins this
    // window's scene.
    if (editor->scene() && editor->scene() != scene)
        editor->scene()->removeItem(editor);
    if (!editor->scene())
        scene->addItem(editor);
    scene->setBackgroundBrush(QColor(64, 64, 64));
    // A camera-resolution change rescales every stored measurement, while the
    // undo history holds geometry in the old resolution's pixels: replaying
    // it would put measurements where they no longer belong. The history
    // starts afresh; the picture stays marked changed when it was.
    connect(KxSignalCenter::getInstance(), &KxSignalCenter::signalCurrentResChangedByCamera, this,
            [this](QSize anOld) {
        // From a width of 0 there is nothing to rescale.
        if (anOld.width() <= 0)
            return;
        const bool wasClean = undoStack->isClean();
        undoStack->clear();
        if (!wasClean)
            undoStack->resetClean();
    });

    view->setObjectName(QStringLiteral("editorView"));
    view->setMouseTracking(true);
    view->setTransformationAnchor(QGraphicsView::NoAnchor);
    // Thousands of items appearing at once (a file opened) would each add a
    // rectangle to the region to repaint; past a few the bounding rectangle
    // is repainted instead.
    view->setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
    view->setResizeAnchor(QGraphicsView::AnchorViewCenter);
    view->setAlignment(Qt::AlignCenter);
    view->viewport()->installEventFilter(this);
    view->installEventFilter(this);
    setCentralWidget(view);

    toolDock = new QDockWidget(tr("Tools"), this);
    toolDock->setObjectName(QStringLiteral("toolDock"));
    toolDock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    auto* scroll = new QScrollArea(toolDock);
    scroll->setWidgetResizable(true);
    auto* toolHolder = new QWidget(scroll);
    toolLayout = new QVBoxLayout(toolHolder);
    toolLayout->setContentsMargins(2, 2, 2, 2);
    toolLayout->setSpacing(2);
    toolLayout->addStretch(1);
    scroll->setWidget(toolHolder);
    toolDock->setWidget(scroll);
    addDockWidget(Qt::RightDockWidgetArea, toolDock);

    configurationPanel = new QWidget(this, Qt::Window);
    configurationPanel->setObjectName(QStringLiteral("configurationPanel"));
    configurationPanel->setWindowTitle(tr("Configuration"));
    auto* panelColumn = new QVBoxLayout(configurationPanel);
    auto* panelLayout = new QHBoxLayout;
    panelColumn->addLayout(panelLayout, 1);
    configurationList = new QListWidget(configurationPanel);
    configurationList->setObjectName(QStringLiteral("configurationList"));
    configurationList->setMaximumWidth(200);
    configurationPages = new QStackedWidget(configurationPanel);
    panelLayout->addWidget(configurationList);
    panelLayout->addWidget(configurationPages, 1);
    auto* closeBox = new QDialogButtonBox(QDialogButtonBox::Close, configurationPanel);
    closeBox->setObjectName(QStringLiteral("configurationButtons"));
    panelColumn->addWidget(closeBox);
    connect(closeBox, &QDialogButtonBox::rejected, configurationPanel, &QWidget::hide);
    connect(configurationList, &QListWidget::currentRowChanged, configurationPages, &QStackedWidget::setCurrentIndex);
    configurationPanel->hide();
    configurationPanel->installEventFilter(this);

    connect(editor, &KxGsEditor::scaleChanged, this, &OvGuiMainWindowBase::slotEditorScaleChanged);
    updateSceneRect();
}

OvGuiMainWindowBase::~OvGuiMainWindowBase()
{
    view->viewport()->removeEventFilter(this);
    view->removeEventFilter(this);
    configurationPanel->removeEventFilter(this);
}

void OvGuiMainWindowBase::placeConfigurationPanel()
{
    const QScreen* screen = windowHandle() ? windowHandle()->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect available = screen->availableGeometry();
    // Room for the window frame, which the panel's own size leaves out.
    const QSize frame(16, 48);
    QSize size = configurationPanel->size().expandedTo(configurationPanel->sizeHint());
    size = size.boundedTo(available.size() - frame);
    configurationPanel->resize(size);
    QRect placed(QPoint(0, 0), size + frame);
    placed.moveCenter(isVisible() ? frameGeometry().center() : available.center());
    placed.moveLeft(std::clamp(placed.left(), available.left(), available.right() + 1 - placed.width()));
    placed.moveTop(std::clamp(placed.top(), available.top(), available.bottom() + 1 - placed.height()));
    configurationPanel->move(placed.topLeft());
}

QWidget* OvGuiMainWindowBase::getConfigurationPanel()
{
    return configurationPanel;
}

QListWidget* OvGuiMainWindowBase::getConfigurationList()
{
    return configurationList;
}

int OvGuiMainWindowBase::addConfigurationPage(const QString& aPageName, QWidget* aPage, const QString& aTitle)
{
    if (!aPage)
        return -1;
    auto* item = new QListWidgetItem(aTitle.isEmpty() ? aPageName : aTitle);
    item->setWhatsThis(aPageName);
    configurationPages->addWidget(aPage);
    configurationList->addItem(item);
    if (configurationList->currentRow() < 0)
        configurationList->setCurrentRow(0);
    return configurationList->count() - 1;
}

QWidget* OvGuiMainWindowBase::getConfigurationPage(const QString& aPageName) const
{
    for (int row = 0; row < configurationList->count(); ++row) {
        if (configurationList->item(row)->whatsThis() == aPageName)
            return configurationPages->widget(row);
    }
    return nullptr;
}

void OvGuiMainWindowBase::addToolEntry(OvToolBase* aTool)
{
    if (!aTool || getToolEntries().contains(aTool))
        return;
    tools.removeAll(QPointer<OvToolBase>());
    tools.append(aTool);
    // Entries stack in order above the closing stretch.
    toolLayout->insertWidget(toolLayout->count() - 1, aTool);
}

QList<OvToolBase*> OvGuiMainWindowBase::getToolEntries() const
{
    QList<OvToolBase*> result;
    for (const QPointer<OvToolBase>& tool : tools) {
        if (tool)
            result.append(tool.data());
    }
    return result;
}

QDockWidget* OvGuiMainWindowBase::getToolDock() const
{
    return toolDock;
}

KxGsEditor* OvGuiMainWindowBase::getEditor() const
{
    return editor;
}

QGraphicsView* OvGuiMainWindowBase::getView() const
{
    return view;
}

QGraphicsScene* OvGuiMainWindowBase::getScene() const
{
    return scene;
}

QUndoStack* OvGuiMainWindowBase::getUndoStack() const
{
    return undoStack;
}

void OvGuiMainWindowBase::setImage(const QImage& anImage)
{
    editor->setImage(anImage);
    slotZoomFit();
}

bool OvGuiMainWindowBase::isFitMode() const
{
    return fitMode;
}

void OvGuiMainWindowBase::zoomAt(double aFactor, const QPoint& aViewportPos)
{
    if (!(aFactor > 0.0) || !std::isfinite(aFactor))
        return;
    fitMode = false;
    const double zoom = std::clamp(editor->getZoom() * aFactor, kMinZoom, kMaxZoom);
    const QPointF picturePoint = editor->mapFromScene(view->mapToScene(aViewportPos));
    zoomingAtCursor = true;
    editor->setZoom(zoom);
    zoomingAtCursor = false;
    // Keep the picture point under the cursor where it was: the view must be
    // able to show the area around it, also beyond the picture's edges. The
    // view shows or hides its scroll bars only later (a queued call), and the
    // smaller or larger viewport then re-anchors the picture: let that
    // happen first, and correct again after the correction's own changes.
    hasWantedOrigin = true;
    for (int pass = 0; pass < 2; ++pass) {
        wantedOrigin = editor->mapToScene(picturePoint) - QPointF(aViewportPos) / editor->getZoom();
        updateSceneRect();
        QCoreApplication::sendPostedEvents(view, QEvent::MetaCall);
        const QPoint moved = view->mapFromScene(editor->mapToScene(picturePoint));
        const QPoint shift = moved - aViewportPos;
        view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->value() + shift.x());
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->value() + shift.y());
    }
}

bool OvGuiMainWindowBase::isPanning() const
{
    return panning;
}

void OvGuiMainWindowBase::slotZoomIn()
{
    zoomAt(kZoomStep, view->viewport()->rect().center());
}

void OvGuiMainWindowBase::slotZoomOut()
{
    zoomAt(1.0 / kZoomStep, view->viewport()->rect().center());
}

void OvGuiMainWindowBase::slotZoomFit()
{
    fitMode = true;
    fitToView();
}

void OvGuiMainWindowBase::fitToView()
{
    const QSize picture = editor->getImage().size();
    const QSize port = view->viewport()->size();
    if (picture.isEmpty() || port.isEmpty())
        return;
    const double zoom = std::min(double(port.width()) / picture.width(), double(port.height()) / picture.height());
    editor->setZoom(std::clamp(zoom, kMinZoom, kMaxZoom));
    view->centerOn(editor);
}

void OvGuiMainWindowBase::slotZoomActual()
{
    zoomAt(1.0 / editor->getZoom(), view->viewport()->rect().center());
}

void OvGuiMainWindowBase::slotEditorScaleChanged()
{
    // Any other zoom (fit, a caller's own) shows the picture as it is.
    if (!zoomingAtCursor)
        hasWantedOrigin = false;
    updateSceneRect();
}

void OvGuiMainWindowBase::updateSceneRect()
{
    // A fixed scene rectangle: items that ignore transformations (labels,
    // the magnifier) must not grow the scrollable area. After a zoom at the
    // cursor it also holds the view's area that keeps the point under the
    // cursor, which may reach beyond the picture's edges.
    QRectF rect = editor->sceneBoundingRect();
    if (hasWantedOrigin)
        rect |= QRectF(wantedOrigin, QSizeF(view->viewport()->size()) / editor->getZoom());
    scene->setSceneRect(rect);
}

bool OvGuiMainWindowBase::eventFilter(QObject* anObj, QEvent* anEvent)
{
    if (anObj == configurationPanel) {
        if (anEvent->type() == QEvent::Show && !static_cast<QShowEvent*>(anEvent)->spontaneous())
            placeConfigurationPanel();
        return QMainWindow::eventFilter(anObj, anEvent);
    }
    if (anObj == view) {
        if (anEvent->type() == QEvent::KeyPress || anEvent->type() == QEvent::KeyRelease) {
            auto* key = static_cast<QKeyEvent*>(anEvent);
            if (key->key() == Qt::Key_Space && !key->isAutoRepeat()) {
                spaceHeld = anEvent->type() == QEvent::KeyPress;
                view->viewport()->setCursor(spaceHeld ? Qt::OpenHandCursor : Qt::ArrowCursor);
                if (!spaceHeld)
                    view->viewport()->unsetCursor();
                return true;
            }
            if (key->key() == Qt::Key_Space)
                return true;
        }
        return QMainWindow::eventFilter(anObj, anEvent);
    }
    if (anObj != view->viewport())
        return QMainWindow::eventFilter(anObj, anEvent);

    switch (anEvent->type()) {
    case QEvent::Resize:
        // A window gets its real size only once it is shown (and again when
        // the user resizes it): a fitted picture follows.
        if (fitMode)
            fitToView();
        else
            updateSceneRect();
        break;
    case QEvent::Wheel: {
        auto* wheel = static_cast<QWheelEvent*>(anEvent);
        if (!(wheel->modifiers() & Qt::ControlModifier))
            break;
        const int delta = wheel->angleDelta().y();
        if (delta != 0)
            zoomAt(std::pow(kZoomStep, delta / 120.0), wheel->position().toPoint());
        return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        auto* mouse = static_cast<QMouseEvent*>(anEvent);
        if (mouse->button() == Qt::MiddleButton || (mouse->button() == Qt::LeftButton && spaceHeld)) {
            panning = true;
            panLastPos = mouse->pos();
            view->viewport()->setCursor(Qt::ClosedHandCursor);
            return true;
        }
        break;
    }
    case QEvent::MouseMove: {
        if (!panning)
            break;
        auto* mouse = static_cast<QMouseEvent*>(anEvent);
        const QPoint delta = mouse->pos() - panLastPos;
        panLastPos = mouse->pos();
        view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->value() - delta.x());
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->value() - delta.y());
        return true;
    }
    case QEvent::MouseButtonRelease: {
        if (!panning)
            break;
        auto* mouse = static_cast<QMouseEvent*>(anEvent);
        if (mouse->buttons() & (Qt::MiddleButton | Qt::LeftButton))
            return true;
        panning = false;
        if (spaceHeld)
            view->viewport()->setCursor(Qt::OpenHandCursor);
        else
            view->viewport()->unsetCursor();
        return true;
    }
    default:
        break;
    }
    return QMainWindow::eventFilter(anObj, anEvent);
}
