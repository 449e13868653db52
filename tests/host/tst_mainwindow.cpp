#include "GsTestHelper.h"

#include "OvGuiMainWindowBase.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QScrollBar>
#include <QStackedWidget>
#include <QWheelEvent>

#include <cmath>
#include <memory>

namespace {

void sendMouse(QWidget* aWidget, QEvent::Type aType, const QPoint& aPos, Qt::MouseButton aButton,
               Qt::MouseButtons aButtons)
{
    QMouseEvent event(aType, QPointF(aPos), QPointF(aWidget->mapToGlobal(aPos)), aButton, aButtons, Qt::NoModifier);
    QApplication::sendEvent(aWidget, &event);
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<OvGuiMainWindowBase> window;
    KxGsEditor* editor = nullptr;
    QGraphicsView* view = nullptr;

private slots:
    void init()
    {
        window.reset(new OvGuiMainWindowBase);
        window->resize(700, 500);
        window->setImage(GsFixture::makeImage(240, 180));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        editor = window->getEditor();
        view = window->getView();
    }

    void cleanup()
    {
        window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void configurationPages()
    {
        QWidget* panel = window->getConfigurationPanel();
        QListWidget* list = window->getConfigurationList();
        QVERIFY(panel->isWindow() && !panel->isVisible() && panel->isAncestorOf(list));
        auto* general = new QLabel(QStringLiteral("general"));
        auto* device = new QLabel(QStringLiteral("device"));
        QCOMPARE(window->addConfigurationPage(QStringLiteral("General"), general), 0);
        QCOMPARE(window->addConfigurationPage(QStringLiteral("Device Configuration"), device, "Geräte"), 1);
        QCOMPARE(window->addConfigurationPage(QStringLiteral("Broken"), nullptr), -1);
        // Shown translated, found by the untranslated name only.
        QVERIFY(list->count() == 2 && list->item(1)->text() == QStringLiteral("Geräte"));
        QCOMPARE(window->getConfigurationPage(QStringLiteral("Device Configuration")), device);
        QVERIFY(!window->getConfigurationPage(QStringLiteral("device configuration")));
        auto* pages = panel->findChild<QStackedWidget*>();
        QCOMPARE(pages->currentWidget(), general);
        list->setCurrentItem(list->item(1));
        QCOMPARE(pages->currentWidget(), device);
    }

    void wheelZoomsAroundCursor_data()
    {
        QTest::addColumn<int>("delta");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<double>("factor");

        QTest::newRow("two steps in") << 240 << int(Qt::ControlModifier) << 1.5625;
        QTest::newRow("one step out") << -120 << int(Qt::ControlModifier) << 0.8;
        QTest::newRow("plain wheel does not zoom") << 120 << int(Qt::NoModifier) << 1.0;
    }

    void wheelZoomsAroundCursor()
    {
        QFETCH(int, delta);
        QFETCH(int, modifiers);
        QFETCH(double, factor);

        // Large enough to scroll both before and after the zoom.
        editor->setZoom(6.0);
        view->centerOn(editor->mapToScene(QPointF(120, 90)));
        const QPoint cursor = view->mapFromScene(editor->mapToScene(QPointF(100, 70)));
        QWheelEvent wheel(cursor, view->viewport()->mapToGlobal(cursor), QPoint(), QPoint(0, delta), Qt::NoButton,
                          Qt::KeyboardModifiers(modifiers), Qt::NoScrollPhase, false);
        QApplication::sendEvent(view->viewport(), &wheel);
        QVERIFY(std::abs(editor->getZoom() - 6.0 * factor) < 1e-9);
        // The picture point under the cursor stays there.
        const QPointF after = editor->mapFromScene(view->mapToScene(cursor));
        if (modifiers != Qt::NoModifier)
            QVERIFY2(QLineF(QPointF(100, 70), after).length() <= 1.0 / editor->getZoom() + 1e-9,
                     qPrintable(QStringLiteral("%1,%2").arg(after.x()).arg(after.y())));
    }

    void zoomFitAndLimits()
    {
        const QSize port = view->viewport()->size();
        window->slotZoomFit();
        QCOMPARE(editor->getZoom(), std::min(port.width() / 240.0, port.height() / 180.0));
        const QRect shown = view->mapFromScene(editor->sceneBoundingRect()).boundingRect();
        QVERIFY(QRect(QPoint(-1, -1), port + QSize(2, 2)).contains(shown));

        window->slotZoomActual();
        window->slotZoomIn();
        QCOMPARE(editor->getZoom(), 1.25);
        for (int i = 0; i < 40; ++i)
            window->slotZoomIn();
        QCOMPARE(editor->getZoom(), OvGuiMainWindowBase::kMaxZoom);
        for (int i = 0; i < 80; ++i)
            window->slotZoomOut();
        QCOMPARE(editor->getZoom(), OvGuiMainWindowBase::kMinZoom);
        window->zoomAt(0.0, QPoint());
        window->zoomAt(std::nan(""), QPoint());
        QCOMPARE(editor->getZoom(), OvGuiMainWindowBase::kMinZoom);
        // The scroll area follows the picture (scene units are picture pixels,
        // the zoom is the view's).
        editor->setZoom(2.0);
        QCOMPARE(window->getScene()->sceneRect(), QRectF(0, 0, 240, 180));
        QCOMPARE(window->getView()->transform().mapRect(window->getScene()->sceneRect()), QRectF(0, 0, 480, 360));
    }

    void panWithoutReachingTheEditor_data()
    {
        QTest::addColumn<bool>("space");
        QTest::newRow("middle button") << false;
        QTest::newRow("space and left button") << true;
    }

    void panWithoutReachingTheEditor()
    {
        QFETCH(bool, space);

        TestManipulator manipulator(kBoxType, window->getUndoStack());
        editor->setOverrideManipulator(&manipulator);
        editor->setZoom(6.0);
        view->centerOn(editor->mapToScene(QPointF(120, 90)));
        const QPoint scrolled(view->horizontalScrollBar()->value(), view->verticalScrollBar()->value());
        manipulator.log.clear();

        const Qt::MouseButton button = space ? Qt::LeftButton : Qt::MiddleButton;
        if (space)
            QTest::keyPress(view, Qt::Key_Space);
        const QPoint start(200, 200);
        sendMouse(view->viewport(), QEvent::MouseButtonPress, start, button, button);
        QVERIFY(window->isPanning());
        sendMouse(view->viewport(), QEvent::MouseMove, start + QPoint(-40, -25), Qt::NoButton, button);
        sendMouse(view->viewport(), QEvent::MouseButtonRelease, start + QPoint(-40, -25), button, Qt::NoButton);
        if (space)
            QTest::keyRelease(view, Qt::Key_Space);
        QVERIFY(!window->isPanning() && manipulator.gestures().isEmpty());
        QCOMPARE(QPoint(view->horizontalScrollBar()->value(), view->verticalScrollBar()->value()),
                 scrolled + QPoint(40, 25));

        // Afterwards a plain left press reaches the manipulator again.
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, start);
        QCOMPARE(manipulator.gestures().filter("press").size(), 1);
        editor->setOverrideManipulator(nullptr);
    }
};

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
