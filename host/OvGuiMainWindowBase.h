#pragma once

#include "KxHostGlobal.h"
#include "OvToolBase.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>

class KxGsEditor;
class QDockWidget;
class QGraphicsScene;
class QGraphicsView;
class QListWidget;
class QStackedWidget;
class QUndoStack;
class QVBoxLayout;

// The host main window: a graphics view showing the editor in the centre, a
// tool dock holding the tool entries and a configuration panel with a page
// list on the left and the pages on the right. Zoom: Ctrl+wheel over the
// picture, zoom in/out/fit/actual; pan by dragging with the middle button or
// with the left button while Space is held.
class KX_HOST_EXPORT OvGuiMainWindowBase : public QMainWindow
{
    Q_OBJECT

public:
    explicit OvGuiMainWindowBase(QWidget* aParent = nullptr);
    ~OvGuiMainWindowBase() override;

    // The configuration panel (a window of its own, hidden until shown). It
    // opens centred on this window and wholly on its screen, and closes with
    // its Close button.
    virtual QWidget* getConfigurationPanel();
    // Its page list; each item's whatsThis() is the page name.
    virtual QListWidget* getConfigurationList();

    // Adds a page; the list shows aTitle (aPageName when empty). The panel
    // takes ownership of aPage. Returns the page's row.
    int addConfigurationPage(const QString& aPageName, QWidget* aPage, const QString& aTitle = QString());
    // The page named aPageName, null when absent.
    QWidget* getConfigurationPage(const QString& aPageName) const;

    // Called by OvToolBase's constructor; the dock keeps entries in order.
    void addToolEntry(OvToolBase* aTool);
    QList<OvToolBase*> getToolEntries() const;
    QDockWidget* getToolDock() const;

    KxGsEditor* getEditor() const;
    QGraphicsView* getView() const;
    QGraphicsScene* getScene() const;
    QUndoStack* getUndoStack() const;

    // Shows anImage in the editor and fits it into the view. The picture
    // stays fitted (also when the view gets its real size or is resized)
    // until the user zooms.
    void setImage(const QImage& anImage);
    // True while the picture follows the view's size (after setImage or
    // slotZoomFit, until the next zoom).
    bool isFitMode() const;

    // Zooms by aFactor keeping the picture point under aViewportPos still.
    void zoomAt(double aFactor, const QPoint& aViewportPos);
    bool isPanning() const;

    static constexpr double kZoomStep = 1.25;
    static constexpr double kMinZoom = 1.0 / 64.0;
    static constexpr double kMaxZoom = 64.0;

public slots:
    void slotZoomIn();
    void slotZoomOut();
    // Fits the whole picture into the view and keeps it fitted while the
    // view changes size, until the next zoom.
    void slotZoomFit();
    // One screen pixel per picture pixel.
    void slotZoomActual();

protected:
    bool eventFilter(QObject* anObj, QEvent* anEvent) override;

private slots:
    void slotEditorScaleChanged();

private:
    void updateSceneRect();
    void fitToView();
    // Centres the configuration panel on this window, inside the screen's
    // available area (shrunk to fit when it is larger).
    void placeConfigurationPanel();

    QGraphicsScene* scene;
    QGraphicsView* view;
    KxGsEditor* editor;
    QUndoStack* undoStack;
    QDockWidget* toolDock;
    QVBoxLayout* toolLayout;
    QList<QPointer<OvToolBase>> tools;
    QWidget* configurationPanel;
    QListWidget* configurationList;
    QStackedWidget* configurationPages;
    // After a zoom at the cursor: the scene point at the viewport's top-left
    // corner that keeps the point under the cursor; the scene rectangle
    // includes the viewport from there. Any other zoom clears it.
    QPointF wantedOrigin;
    bool hasWantedOrigin = false;
    bool zoomingAtCursor = false;
    QPoint panLastPos;
    bool panning = false;
    bool spaceHeld = false;
    bool fitMode = false;
};
