// What a new user meets in the viewer, through the real window with the real
// plug-in: the picture fitted on open, the zoom that blocks measuring, the
// discard question, one undo step per panel edit, selecting several
// measurements, cancelling with Escape, the magnifier at the view's edges,
// labels clear of their handles, and the window's small conveniences.
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxLocalMagnifier.h"
#include "OvGestureReplayer.h"
#include "OvGestureScript.h"
#include "OvGsObject.h"
#include "OvToolBase.h"
#include "OvUndoGrouper.h"
#include "OvViewerMainWindow.h"

#include <QAbstractSpinBox>
#include <QColorDialog>
#include <QDockWidget>
#include <QGraphicsView>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

namespace {

const int kDistanceType = 66653;

int storedDistances()
{
    return KxKernelData::getInstance()->getObjectsOfType(kDistanceType).size();
}

// Parameter aParam (1 colour, 5 vector, 6 width) of stored distance anIdx.
QVariant stored(int anIdx, int aParam)
{
    const KxKernelObjectData* data = KxKernelData::getInstance()->getObject(kDistanceType, anIdx);
    return data ? data->getDefaultKeyframes()[aParam].getValue() : QVariant(-1);
}

int storedWidth(int anIdx)
{
    return stored(anIdx, 6).toInt();
}

} // namespace

class tst_FirstSession : public QObject
{
    Q_OBJECT

private:
    OvViewerMainWindow* window = nullptr;
    QTemporaryDir dir;

    KxGsEditor* editor() const { return window->getEditor(); }
    QGraphicsView* view() const { return window->getView(); }
    QUndoStack* stack() const { return window->undoStack(); }

    bool run(const QString& aScript)
    {
        OvGestureScript script;
        if (!script.parse(aScript)) {
            qWarning("%s", qPrintable(script.errorText()));
            return false;
        }
        OvGestureReplayer replayer(window);
        if (!replayer.run(script)) {
            qWarning("%s", qPrintable(replayer.errorText()));
            return false;
        }
        return true;
    }

    // A fresh sample picture with no measurements, no tool and zoom 1.
    void freshStart(bool anActualPixels = true)
    {
        QString error;
        QVERIFY2(window->openImage(OvViewerMainWindow::sampleImagePath(), &error), qPrintable(error));
        QVERIFY(run(QStringLiteral("tool none")));
        if (anActualPixels)
            window->slotZoomActual();
        QCOMPARE(stack()->count(), 0);
    }

    QPoint toViewport(const QPointF& aPicturePoint) const
    {
        return view()->mapFromScene(editor()->mapToScene(aPicturePoint));
    }

    void mouse(QEvent::Type aType, const QPoint& aViewportPos, Qt::MouseButton aButton, Qt::MouseButtons aButtons,
               Qt::KeyboardModifiers aModifiers = Qt::NoModifier)
    {
        QWidget* viewport = view()->viewport();
        QMouseEvent event(aType, QPointF(aViewportPos), QPointF(viewport->mapToGlobal(aViewportPos)), aButton,
                          aButtons, aModifiers);
        QApplication::sendEvent(viewport, &event);
    }

    void click(const QPointF& aPicturePoint, Qt::KeyboardModifiers aModifiers = Qt::NoModifier)
    {
        const QPoint at = toViewport(aPicturePoint);
        mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, aModifiers);
        mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, aModifiers);
        mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, aModifiers);
    }

    void drag(const QPointF& aFrom, const QPointF& aTo, Qt::KeyboardModifiers aModifiers = Qt::NoModifier)
    {
        mouse(QEvent::MouseButtonPress, toViewport(aFrom), Qt::LeftButton, Qt::LeftButton, aModifiers);
        for (int step = 1; step <= 4; ++step) {
            const QPointF at = aFrom + (aTo - aFrom) * (step / 4.0);
            mouse(QEvent::MouseMove, toViewport(at), Qt::NoButton, Qt::LeftButton, aModifiers);
        }
        mouse(QEvent::MouseButtonRelease, toViewport(aTo), Qt::LeftButton, Qt::NoButton, aModifiers);
    }

    void key(int aKey, Qt::KeyboardModifiers aModifiers = Qt::NoModifier)
    {
        QTest::keyClick(view(), Qt::Key(aKey), aModifiers);
    }

    OvGsObject* distance(int anIdx) const
    {
        KxGsManipulator* manipulator = KxKernelData::getInstance()->getManipulator(kDistanceType);
        return manipulator ? qobject_cast<OvGsObject*>(manipulator->getGsObject(anIdx)) : nullptr;
    }

    // Drags a panel slider's handle by aSteps handle widths in several moves.
    void dragSlider(QSlider* aSlider, int aPixels)
    {
        QStyleOptionSlider option;
        option.initFrom(aSlider);
        option.orientation = aSlider->orientation();
        option.minimum = aSlider->minimum();
        option.maximum = aSlider->maximum();
        option.sliderPosition = aSlider->sliderPosition();
        option.sliderValue = aSlider->value();
        option.subControls = QStyle::SC_SliderHandle;
        const QPoint handle = aSlider->style()
                                  ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, aSlider)
                                  .center();
        auto send = [&](QEvent::Type aType, const QPoint& aPos, Qt::MouseButton aButton, Qt::MouseButtons aButtons) {
            QMouseEvent event(aType, QPointF(aPos), QPointF(aSlider->mapToGlobal(aPos)), aButton, aButtons,
                              Qt::NoModifier);
            QApplication::sendEvent(aSlider, &event);
        };
        send(QEvent::MouseButtonPress, handle, Qt::LeftButton, Qt::LeftButton);
        for (int step = 1; step <= 6; ++step)
            send(QEvent::MouseMove, handle + QPoint(aPixels * step / 6, 0), Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, handle + QPoint(aPixels, 0), Qt::LeftButton, Qt::NoButton);
    }

    QImage calibratedPicture(int aWidth, int aHeight) const
    {
        QImage image(aWidth, aHeight, QImage::Format_RGB32);
        image.fill(QColor(90, 90, 110));
        image.setText(QStringLiteral("UmPerPixel"), QStringLiteral("0.5"));
        return image;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        // Panel defaults and the layout written by an earlier run must not leak in.
        const QString settings = qEnvironmentVariable("OV_SETTINGS_FILE");
        if (!settings.isEmpty())
            QFile::remove(settings);
        window = new OvViewerMainWindow;
        window->setInteractive(false);
        window->loadPlugins();
        QVERIFY(window->measurementTool());
        // Opened before the window has its real size, as main() does.
        QString error;
        QVERIFY2(window->openImage(OvViewerMainWindow::sampleImagePath(), &error), qPrintable(error));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
    }

    void cleanupTestCase()
    {
        window->setScripted(true);
        delete window;
    }

    // --- fit on open and the zoom that blocks measuring ---

    void pictureIsFittedOnceTheWindowHasItsSize()
    {
        const QSize port = view()->viewport()->size();
        const double fit = std::min(port.width() / 1280.0, port.height() / 960.0);
        QVERIFY2(qAbs(editor()->getZoom() - fit) < 1e-9,
                 qPrintable(QStringLiteral("zoom %1, fit %2").arg(editor()->getZoom()).arg(fit)));
        // A 1280 x 960 picture in a window of a normal size is not a stamp.
        QVERIFY(editor()->getZoom() > 0.3);
        const QRect shown = view()->mapFromScene(editor()->sceneBoundingRect()).boundingRect();
        QVERIFY(view()->viewport()->rect().adjusted(-1, -1, 1, 1).contains(shown));
        QVERIFY(qAbs(shown.center().x() - port.width() / 2) <= 2);
        QVERIFY(qAbs(shown.center().y() - port.height() / 2) <= 2);
        QVERIFY(window->zoomLabel()->text().contains(QString::number(qRound(fit * 100))));
    }

    void fittedPictureFollowsTheWindowUntilZoomed()
    {
        freshStart(false);
        const QSize before = window->size();
        window->resize(before - QSize(200, 150));
        QApplication::processEvents();
        const QSize port = view()->viewport()->size();
        QCOMPARE(editor()->getZoom(), std::min(port.width() / 1280.0, port.height() / 960.0));
        window->slotZoomIn();
        const double zoomed = editor()->getZoom();
        window->resize(before);
        QApplication::processEvents();
        QCOMPARE(editor()->getZoom(), zoomed);
        // Opening again fits again.
        freshStart(false);
        QVERIFY(window->isFitMode());
        QCOMPARE(editor()->getZoom(), std::min(view()->viewport()->width() / 1280.0,
                                               view()->viewport()->height() / 960.0));
    }

    void zoomBelowOneSixteenthBlocksTheTool_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("just below 1/16") << 1.0 / 16.0 * 0.999 << false;
        QTest::newRow("exactly 1/16") << 1.0 / 16.0 << true;
        QTest::newRow("fitted") << 0.5 << true;
    }
    void zoomBelowOneSixteenthBlocksTheTool()
    {
        QFETCH(double, zoom);
        QFETCH(bool, enabled);
        freshStart();
        editor()->setZoom(zoom);
        QCOMPARE(window->measurementTool()->isEnabled(), enabled);
        const bool drawn = run(QStringLiteral("tool distance\npress 100 100\nmove 600 100\nrelease 600 100"));
        QCOMPARE(drawn, enabled);
        QCOMPARE(storedDistances(), enabled ? 1 : 0);
        editor()->setZoom(1.0);
        QVERIFY(window->measurementTool()->isEnabled());
    }

    void hugePictureOpensBlockedUntilZoomedIn()
    {
        const QString file = dir.filePath(QStringLiteral("wide.png"));
        QVERIFY(calibratedPicture(24000, 100).save(file));
        QString error;
        QVERIFY2(window->openImage(file, &error), qPrintable(error));
        QVERIFY(editor()->getZoom() < 1.0 / 16.0);
        // Loading the media enables the tool; the zoom check must win.
        QVERIFY(!window->measurementTool()->isEnabled());
        QVERIFY(!run(QStringLiteral("tool distance")));
        window->slotZoomActual();
        QVERIFY(window->measurementTool()->isEnabled());
        QVERIFY(run(QStringLiteral("tool distance\npress 10 10\nmove 90 10\nrelease 90 10\ntool none")));
        QCOMPARE(storedDistances(), 1);
    }

    // --- the discard question ---

    void discardQuestion_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<bool>("modified");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("questions");
        QTest::addColumn<bool>("discarded");
        const int discard = QMessageBox::Discard;
        const int cancel = QMessageBox::Cancel;
        QTest::newRow("open sample, discard") << "sample" << true << discard << 1 << true;
        QTest::newRow("open sample, cancel") << "sample" << true << cancel << 1 << false;
        QTest::newRow("open sample, nothing drawn") << "sample" << false << cancel << 0 << true;
        QTest::newRow("close, cancel") << "close" << true << cancel << 1 << false;
        QTest::newRow("close, discard") << "close" << true << discard << 1 << true;
        QTest::newRow("close after undoing everything") << "undone" << true << cancel << 0 << true;
        QTest::newRow("scripted run never asks") << "scripted" << true << cancel << 0 << true;
    }
    void discardQuestion()
    {
        QFETCH(QString, action);
        QFETCH(bool, modified);
        QFETCH(int, answer);
        QFETCH(int, questions);
        QFETCH(bool, discarded);
        freshStart();
        QVERIFY(!window->isWindowModified());
        QVERIFY(window->windowTitle().contains(QStringLiteral("[*]")));
        if (modified)
            QVERIFY(run(QStringLiteral("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\ntool none")));
        QCOMPARE(window->isWindowModified(), modified);

        int asked = 0;
        QString text;
        window->setQuestionHook([&](const QString& aText) {
            ++asked;
            text = aText;
            return QMessageBox::StandardButton(answer);
        });
        if (action == QLatin1String("sample")) {
            QVERIFY(QMetaObject::invokeMethod(window, "slotOpenSample"));
        } else {
            if (action == QLatin1String("undone"))
                stack()->undo();
            window->setScripted(action == QLatin1String("scripted"));
            window->close();
            QCOMPARE(window->isVisible(), !discarded);
            window->setScripted(false);
            window->show();
            QVERIFY(QTest::qWaitForWindowExposed(window));
        }
        window->setQuestionHook(nullptr);
        QCOMPARE(asked, questions);
        if (asked)
            QVERIFY2(text.contains(QStringLiteral("discards")), qPrintable(text));
        const bool kept = modified && !discarded;
        if (action == QLatin1String("sample"))
            QCOMPARE(storedDistances(), kept ? 1 : 0);
        if (kept) {
            QCOMPARE(stack()->count(), 1);
            QVERIFY(window->isWindowModified());
        }
    }

    // --- one undo step per panel edit ---

    void sliderDragIsOneUndoStep_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<int>("selected");
        QTest::newRow("width slider, one line") << "theSLWidth" << 1;
        QTest::newRow("font slider, one line") << "theSLFontSize" << 1;
        QTest::newRow("width slider, three lines") << "theSLWidth" << 3;
        QTest::newRow("width spin box typed, one line") << "theSBWidth" << 1;
    }
    void sliderDragIsOneUndoStep()
    {
        QFETCH(QString, control);
        QFETCH(int, selected);
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\n"
                                   "press 100 100\nmove 300 100\nrelease 300 100\n"
                                   "press 100 200\nmove 300 200\nrelease 300 200\n"
                                   "press 100 300\nmove 300 300\nrelease 300 300\n")));
        QCOMPARE(stack()->count(), 3);
        if (selected == 3)
            editor()->selectAll();
        QCOMPARE(editor()->getSelectedObjects().size(), selected);
        const QList<int> widths = { storedWidth(1), storedWidth(2), storedWidth(3) };

        if (control.startsWith(QLatin1String("theSL"))) {
            auto* slider = window->findChild<QSlider*>(control);
            QVERIFY(slider);
            const int before = slider->value();
            dragSlider(slider, slider->width() / 3);
            QVERIFY(slider->value() > before + 2); // several values passed on the way
        } else {
            auto* box = window->findChild<QSpinBox*>(control);
            QVERIFY(box);
            box->setFocus();
            QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(box, QStringLiteral("12"));
            QTest::keyClick(box, Qt::Key_Return);
            QCOMPARE(box->value(), 12);
        }
        QVERIFY(!window->undoGrouper()->isOpen());
        QCOMPARE(stack()->count(), 4);
        if (control == QLatin1String("theSLWidth") || control == QLatin1String("theSBWidth")) {
            QVERIFY(storedWidth(3) != widths.at(2));
            QCOMPARE(storedWidth(1) != widths.at(0), selected == 3);
        }
        QVERIFY2(stack()->text(3).startsWith(selected == 3 ? QStringLiteral("Objects") : QStringLiteral("Change")),
                 qPrintable(stack()->text(3)));
        stack()->undo();
        QCOMPARE((QList<int>{ storedWidth(1), storedWidth(2), storedWidth(3) }), widths);
        QCOMPARE(stack()->index(), 3);
    }

    void colourPickIsOneUndoStep()
    {
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n")));
        QColorDialog* dialog = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets())
            dialog = dialog ? dialog : qobject_cast<QColorDialog*>(widget);
        QVERIFY(dialog);
        dialog->show();
        for (const QColor& colour : { QColor(Qt::red), QColor(Qt::green), QColor(Qt::yellow) })
            dialog->setCurrentColor(colour);
        dialog->hide();
        QCOMPARE(stack()->count(), 2);
        QCOMPARE(stored(1, 1).value<QColor>(), QColor(Qt::yellow));
        stack()->undo();
        QVERIFY(stored(1, 1).value<QColor>() != QColor(Qt::yellow));
    }

    void pressWithoutChangeOrDefaultsEditLeavesNoStep()
    {
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n")));
        auto* slider = window->findChild<QSlider*>(QStringLiteral("theSLWidth"));
        dragSlider(slider, 0);
        QCOMPARE(stack()->count(), 1);
        QCOMPARE(stack()->index(), 1);
        QVERIFY(run(QStringLiteral("undo\nselect none\n")));
        QVERIFY(stack()->canRedo());
        // Nothing selected: the drag changes the defaults, pushes nothing.
        dragSlider(slider, 30);
        QVERIFY(stack()->canRedo());
        QCOMPARE(stack()->count(), 1);
    }

    // --- selecting several measurements ---

    void multiSelection()
    {
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\n"
                                   "press 100 100\nmove 300 100\nrelease 300 100\n"
                                   "press 100 200\nmove 300 200\nrelease 300 200\n"
                                   "press 500 400\nmove 700 400\nrelease 700 400\n"
                                   "tool none\nselect none\n")));
        QVERIFY(!window->deleteAction()->isEnabled());
        QVERIFY(editor()->getSelectedObjects().isEmpty());

        click(QPointF(200, 100));
        QCOMPARE(editor()->getSelectedObjects().size(), 1);
        QVERIFY(window->deleteAction()->isEnabled());
        click(QPointF(200, 200), Qt::ControlModifier);
        click(QPointF(600, 400), Qt::ControlModifier);
        QCOMPARE(editor()->getSelectedObjects().size(), 3);
        // Ctrl+click on a selected one takes it out, nothing moves.
        click(QPointF(200, 200), Qt::ControlModifier);
        QCOMPARE(editor()->getSelectedObjects().size(), 2);
        QVERIFY(!editor()->getSelectedObjects().contains(distance(2)));
        QVERIFY(editor()->getCurrentObject());
        QCOMPARE(stack()->count(), 3);

        // Escape with no gesture under way clears the selection.
        key(Qt::Key_Escape);
        QVERIFY(editor()->getSelectedObjects().isEmpty());
        QVERIFY(!window->deleteAction()->isEnabled());

        // A band over empty picture area picks what lies inside it.
        drag(QPointF(50, 50), QPointF(350, 250));
        QCOMPARE(editor()->getSelectedObjects().size(), 2);
        QVERIFY(!editor()->getSelectionBand());
        // Ctrl+band adds; even with a drawing tool chosen.
        QVERIFY(run(QStringLiteral("tool distance")));
        KxGsManipulator* tool = editor()->getOverrideManipulator();
        QVERIFY(tool);
        drag(QPointF(450, 350), QPointF(750, 450), Qt::ControlModifier);
        QCOMPARE(editor()->getSelectedObjects().size(), 3);
        QCOMPARE(storedDistances(), 3);
        QCOMPARE(editor()->getOverrideManipulator(), tool);

        // One style change of three: one undo step.
        QVERIFY(run(QStringLiteral("width 9")));
        // Escape deselects; the drawing tool stays chosen.
        const QList<KxGsObject*> three = editor()->getSelectedObjects();
        key(Qt::Key_Escape);
        QVERIFY(editor()->getSelectedObjects().isEmpty());
        QCOMPARE(editor()->getOverrideManipulator(), tool);
        for (KxGsObject* obj : three)
            editor()->setCurrentObject(obj, true);
        QCOMPARE(stack()->count(), 4);
        QCOMPARE((QList<int>{ storedWidth(1), storedWidth(2), storedWidth(3) }), (QList<int>{ 9, 9, 9 }));
        stack()->undo();
        QVERIFY(storedWidth(1) != 9 && storedWidth(2) != 9 && storedWidth(3) != 9);

        // Ctrl+A and Delete: one step for all.
        QVERIFY(run(QStringLiteral("tool none\nselect none")));
        key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(editor()->getSelectedObjects().size(), 3);
        editor()->deleteSelected();
        QCOMPARE(storedDistances(), 0);
        stack()->undo();
        QCOMPARE(storedDistances(), 3);

        // Without a tool a plain band replaces the selection.
        editor()->selectAll();
        drag(QPointF(450, 350), QPointF(750, 450));
        QCOMPARE(editor()->getSelectedObjects(), (QList<KxGsObject*>{ distance(3) }));
        // A click on empty area is a band of nothing: the selection clears.
        click(QPointF(900, 800));
        QVERIFY(editor()->getSelectedObjects().isEmpty());
    }

    // --- Escape cancels the measurement in progress ---

    void escapeCancelsTheMeasurementInProgress_data()
    {
        QTest::addColumn<bool>("buttonHeld");
        QTest::newRow("between the clicks") << false;
        QTest::newRow("while dragging") << true;
    }
    void escapeCancelsTheMeasurementInProgress()
    {
        QFETCH(bool, buttonHeld);
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\n")));
        const int items = editor()->getAllChildGsObjects().size();
        if (buttonHeld) {
            mouse(QEvent::MouseButtonPress, toViewport(QPointF(100, 400)), Qt::LeftButton, Qt::LeftButton);
            mouse(QEvent::MouseMove, toViewport(QPointF(250, 420)), Qt::NoButton, Qt::LeftButton);
        } else {
            click(QPointF(100, 400));
            mouse(QEvent::MouseMove, toViewport(QPointF(250, 420)), Qt::NoButton, Qt::NoButton);
        }
        QCOMPARE(editor()->getAllChildGsObjects().size(), items + 1);
        QVERIFY(editor()->isGestureUnderWay());

        key(Qt::Key_Escape);
        if (buttonHeld)
            mouse(QEvent::MouseButtonRelease, toViewport(QPointF(260, 430)), Qt::LeftButton, Qt::NoButton);
        QApplication::processEvents();
        QCOMPARE(editor()->getAllChildGsObjects().size(), items);
        QCOMPARE(storedDistances(), 1);
        QCOMPARE(stack()->count(), 1);
        // The stored line stays; the tool is still there for the next one.
        QVERIFY(distance(1));
        QVERIFY(editor()->getOverrideManipulator());
        QVERIFY(!editor()->isGestureUnderWay());
        QVERIFY(run(QStringLiteral("press 100 500\nmove 300 500\nrelease 300 500\n")));
        QCOMPARE(storedDistances(), 2);
        QVERIFY(distance(2));
    }

    // --- the magnifier at the view's edges ---

    void magnifierStaysInsideTheView_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<int>("signX");
        QTest::addColumn<int>("signY");
        QTest::newRow("middle") << "middle" << 1 << 1;
        QTest::newRow("right edge") << "right" << -1 << 1;
        QTest::newRow("bottom edge") << "bottom" << 1 << -1;
        QTest::newRow("bottom-right corner") << "corner" << -1 << -1;
        QTest::newRow("top-left corner") << "topleft" << 1 << 1;
    }
    void magnifierStaysInsideTheView()
    {
        QFETCH(QString, where);
        QFETCH(int, signX);
        QFETCH(int, signY);
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance")));
        const QRect port = view()->viewport()->rect();
        QPoint at = port.center();
        if (where == QLatin1String("right") || where == QLatin1String("corner"))
            at.setX(port.right() - 4);
        if (where == QLatin1String("bottom") || where == QLatin1String("corner"))
            at.setY(port.bottom() - 4);
        if (where == QLatin1String("topleft"))
            at = QPoint(4, 4);
        mouse(QEvent::MouseMove, at - QPoint(1, 1), Qt::NoButton, Qt::NoButton);
        mouse(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
        KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
        QVERIFY(lens);
        QVERIFY(lens->isVisible());
        const QPoint hotspot = lens->getPlacedHotspot();
        QCOMPARE(hotspot.x() > 0 ? 1 : -1, signX);
        QCOMPARE(hotspot.y() > 0 ? 1 : -1, signY);
        const QRectF onScreen = lens->lensRect().translated(view()->mapFromScene(lens->scenePos()));
        QVERIFY2(QRectF(port).contains(onScreen),
                 qPrintable(QStringLiteral("lens %1,%2 %3x%4 outside the view")
                                .arg(onScreen.x()).arg(onScreen.y()).arg(onScreen.width()).arg(onScreen.height())));
        // The cursor itself stays uncovered.
        QVERIFY(!onScreen.contains(QPointF(at)));
    }

    // --- a new label clear of its line and handles ---

    void newLabelClearsItsLineAndHandles_data()
    {
        QTest::addColumn<QPointF>("from");
        QTest::addColumn<QPointF>("to");
        QTest::addColumn<double>("zoom");
        QTest::newRow("horizontal to the right") << QPointF(300, 300) << QPointF(420, 300) << 1.0;
        QTest::newRow("short horizontal") << QPointF(300, 300) << QPointF(330, 300) << 1.0;
        QTest::newRow("horizontal to the left") << QPointF(420, 300) << QPointF(300, 300) << 1.0;
        QTest::newRow("up") << QPointF(300, 400) << QPointF(300, 250) << 1.0;
        QTest::newRow("diagonal") << QPointF(300, 300) << QPointF(450, 200) << 1.0;
        QTest::newRow("at the top edge") << QPointF(300, 2) << QPointF(500, 2) << 1.0;
        QTest::newRow("horizontal at zoom 2") << QPointF(300, 300) << QPointF(360, 300) << 2.0;
    }
    void newLabelClearsItsLineAndHandles()
    {
        QFETCH(QPointF, from);
        QFETCH(QPointF, to);
        QFETCH(double, zoom);
        freshStart();
        editor()->setZoom(zoom);
        QVERIFY(run(QStringLiteral("tool distance\npress %1 %2\nmove %3 %4\nrelease %3 %4\n")
                        .arg(from.x()).arg(from.y()).arg(to.x()).arg(to.y())));
        OvGsObject* line = distance(1);
        QVERIFY(line);
        QVERIFY(line->isLabelVisible());
        const QRectF label = line->mapRectToParent(line->getLabelRect());
        QVERIFY(editor()->getEditorArea().contains(label));
        // End handles are 11 screen pixels wide; keep clear of them and of the line.
        const double half = 5.5 / zoom;
        for (const QPointF& end : { from, to })
            QVERIFY2(!label.intersects(QRectF(end - QPointF(half, half), QSizeF(2 * half, 2 * half))),
                     qPrintable(QStringLiteral("label over the handle at %1,%2").arg(end.x()).arg(end.y())));
        for (int i = 0; i <= 100; ++i)
            QVERIFY(!label.contains(from + (to - from) * (i / 100.0)));

        // So the end handle can be grabbed: dragging it reshapes the line.
        const QPointF moved = to + QPointF(0, 40);
        drag(to, moved);
        QCOMPARE(QPointF(stored(1, 5).toPoint()), moved - from);
    }

    void rebuiltItemLabelIsPlacedClear()
    {
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\npress 300 300\nmove 420 300\nrelease 420 300\n"
                                   "delete\nundo\ntool none")));
        OvGsObject* line = distance(1);
        QVERIFY(line);
        // Nobody has placed the label of an item rebuilt from the store.
        line->setDisplayValue(QStringLiteral("60.000 um"));
        line->setLabelVisible(true);
        line->ensureLabelVisible();
        QVERIFY(!line->isRectOnShape(line->getLabelRect()));
        const QRectF label = line->mapRectToParent(line->getLabelRect());
        QVERIFY(!label.contains(QPointF(300, 300)));
        // Placed once, it stays where it is.
        QVERIFY(!line->isLabelPlacedByHost());
    }

    // --- window conveniences ---

    void smallThings()
    {
        freshStart();
        QVERIFY(run(QStringLiteral("tool distance\npress 100 100\nmove 300 100\nrelease 300 100\nundo")));
        QCOMPARE(stack()->index(), 0);
        window->activateWindow();
        QApplication::setActiveWindow(window);
        if (QTest::qWaitForWindowActive(window))
            QTest::keyClick(window, Qt::Key_Y, Qt::ControlModifier);
        else
            stack()->redo();
        QCOMPARE(stack()->index(), 1);
        QAction* redo = nullptr;
        for (QAction* action : window->findChildren<QAction*>()) {
            if (action->shortcuts().contains(QKeySequence(QStringLiteral("Ctrl+Y"))))
                redo = action;
        }
        QVERIFY(redo);
        QVERIFY(redo->shortcuts().contains(QKeySequence(QKeySequence::Redo)));

        window->slotZoomActual();
        QCOMPARE(window->zoomLabel()->text(), QStringLiteral("Zoom 100 %"));

        const QString csv = dir.filePath(QStringLiteral("values.csv"));
        QString error;
        QVERIFY2(window->exportValues(csv, &error), qPrintable(error));
        QVERIFY(window->statusBar()->currentMessage().contains(QFileInfo(csv).absoluteFilePath()));

        const QString png = dir.filePath(QStringLiteral("measured.png"));
        QVERIFY2(window->saveScreenshot(png, true, &error), qPrintable(error));
        QVERIFY(window->statusBar()->currentMessage().contains(QFileInfo(png).absoluteFilePath()));
        const QImage picture(png);
        QCOMPARE(picture.size(), QSize(1280, 960));
        // The line is in the picture, in the tool's colour (blue channel high).
        bool lineFound = false;
        for (int y = 97; y <= 103; ++y) {
            const QColor pixel = picture.pixelColor(200, y);
            lineFound = lineFound || (pixel.blue() > 200 && pixel.red() < 60);
        }
        QVERIFY(lineFound);
    }

    void windowFitsTheScreenAndRemembersItsLayout()
    {
        const QRect screen = window->screen()->availableGeometry();
        QVERIFY(window->frameGeometry().height() <= screen.height());
        QVERIFY(window->frameGeometry().width() <= screen.width());
        QDockWidget* history = window->historyDock();
        QAction* toggle = history->toggleViewAction();
        QVERIFY(window->menuBar()->findChildren<QMenu*>().size() >= 3);
        bool inViewMenu = false;
        for (QMenu* menu : window->menuBar()->findChildren<QMenu*>())
            inViewMenu = inViewMenu || menu->actions().contains(toggle);
        QVERIFY(inViewMenu);
        toggle->trigger();
        QVERIFY(history->isHidden());
        window->saveLayout();
        toggle->trigger();
        QVERIFY(!history->isHidden());
        const QSize size = window->size();
        window->resize(size - QSize(100, 80));
        window->restoreLayout();
        QApplication::processEvents();
        QVERIFY(history->isHidden());
        QCOMPARE(window->size(), size);
        toggle->trigger();
        QVERIFY(!history->isHidden());
    }
};

QTEST_MAIN(tst_FirstSession)
#include "tst_firstsession.moc"
