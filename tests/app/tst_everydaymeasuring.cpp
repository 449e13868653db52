// Everyday measuring through the real window and the real plug-in: drawing
// inside a stored outline, hit tests at the highest zoom, labels clear of each
// other, the magnifier leaving with the pointer, Ctrl+wheel keeping the point
// under the cursor, the Configuration window, named drop-down entries, the
// Results dock's width and kind names, and where files are proposed.
#include "AppWindowHelper.h"
#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxLocalMagnifier.h"
#include "OvGsObject.h"
#include "OvMeasurementExporter.h"
#include "OvResultsDock.h"
#include "OvResultsModel.h"
#include "OvViewerMainWindow.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QGraphicsPixmapItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

#include <algorithm>

namespace {

const int kFreeFormType = 66655;
const int kCircleType = 66656;
const int kDistanceType = 66653;

QString writePicture(const QString& aPath, const QSize& aSize, double anUmPerPixel)
{
    QImage image(aSize, QImage::Format_RGB32);
    image.fill(QColor(128, 128, 128));
    image.setText(QStringLiteral("UmPerPixel"), QString::number(anUmPerPixel));
    image.save(aPath);
    return aPath;
}

int countOf(int aType)
{
    return KxKernelData::getInstance()->getObjectsOfType(aType).size();
}

OvGsObject* itemOf(int aType, int anIndex)
{
    KxGsManipulator* manipulator = KxKernelData::getInstance()->getManipulator(aType);
    return qobject_cast<OvGsObject*>(manipulator ? manipulator->getGsObject(anIndex) : nullptr);
}

// A label's or a button's rectangle in the editor's (picture) coordinates.
QRectF inPicture(const OvGsObject* anItem, const QRectF& aLocal)
{
    return anItem->mapRectToParent(aLocal);
}

QRectF trashInPicture(const OvGsObject* anItem)
{
    const QGraphicsPixmapItem* trash = anItem->getTrashButton();
    const QRectF local(trash->pos(), trash->boundingRect().size() * anItem->unitsPerPixel());
    return inPicture(anItem, local);
}

} // namespace

class tst_EverydayMeasuring : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    AppWindowHelper app;
    OvViewerMainWindow* window = nullptr;

    QGraphicsView* view() const { return window->getView(); }
    KxGsEditor* editor() const { return window->getEditor(); }

    QPoint at(const QPointF& aPicturePoint) const
    {
        return view()->mapFromScene(editor()->mapToScene(aPicturePoint));
    }
    QPointF pictureAt(const QPoint& aViewportPoint) const
    {
        return editor()->mapFromScene(view()->mapToScene(aViewportPoint));
    }

    void press(const QPointF& aPoint) { QTest::mousePress(view()->viewport(), Qt::LeftButton, {}, at(aPoint)); }
    void release(const QPointF& aPoint)
    {
        QTest::mouseRelease(view()->viewport(), Qt::LeftButton, {}, at(aPoint));
    }
    void moveHeld(const QPointF& aPoint)
    {
        const QPoint pos = at(aPoint);
        QMouseEvent move(QEvent::MouseMove, pos, view()->viewport()->mapToGlobal(pos), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(view()->viewport(), &move);
    }
    void click(const QPointF& aPoint)
    {
        press(aPoint);
        release(aPoint);
    }

    // Zooms to aZoom with aPoint in the middle of the view.
    void zoomOn(double aZoom, const QPointF& aPoint)
    {
        editor()->setZoom(aZoom);
        view()->centerOn(editor()->mapToScene(aPoint));
        QCoreApplication::processEvents();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        // A screen-sized window, as a user on a laptop gets it.
        QVERIFY(app.start(QSize(1400, 900)).isEmpty());
        window = app.window();
    }

    void cleanupTestCase() { app.stop(); }

    void init()
    {
        editor()->restoreOverrideManipulator();
        app.openSample();
        window->undoStack()->clear();
    }

    // --- a new measurement inside a stored outline ---

    void drawingInsideAStoredFreeForm_data()
    {
        QTest::addColumn<QString>("gesture");
        QTest::addColumn<int>("newType");     // what the gesture stores, 0 nothing
        QTest::addColumn<bool>("formCurrent"); // the free form is selected afterwards
        // A nucleus inside its cell: three rim clicks, all inside the outline.
        QTest::newRow("circle inside")
            << "tool circle\nclick 370 400\nmove 400 370\nclick 400 370\nmove 430 400\nclick 430 400\n"
            << kCircleType << false;
        QTest::newRow("distance dragged inside")
            << "tool distance\npress 320 450\nmove 400 450\nmove 480 450\nrelease 480 450\n" << kDistanceType << false;
        // On the outline (within the tolerance) the free form is still hit.
        QTest::newRow("circle tool on the outline") << "tool circle\nclick 300 402\n" << 0 << true;
        QTest::newRow("distance tool 3 px off the outline") << "tool distance\nclick 400 303\n" << 0 << true;
        // No drawing tool: a press inside selects the free form as before.
        QTest::newRow("no tool inside") << "tool none\nclick 400 400\n" << 0 << true;
    }
    void drawingInsideAStoredFreeForm()
    {
        QFETCH(QString, gesture);
        QFETCH(int, newType);
        QFETCH(bool, formCurrent);
        app.play(QStringLiteral("tool free-form\npress 300 300\nmove 500 300\nmove 500 500\nmove 300 500\n"
                                "release 300 500\nselect none\n"));
        QCOMPARE(countOf(kFreeFormType), 1);
        const int circles = countOf(kCircleType);
        const int distances = countOf(kDistanceType);
        app.play(gesture);
        QCOMPARE(countOf(kFreeFormType), 1);
        QCOMPARE(countOf(kCircleType), circles + (newType == kCircleType ? 1 : 0));
        QCOMPARE(countOf(kDistanceType), distances + (newType == kDistanceType ? 1 : 0));
        const KxGsObject* form = itemOf(kFreeFormType, KxKernelData::getInstance()->getObjectsOfType(kFreeFormType)
                                                          .firstKey());
        QCOMPARE(editor()->getCurrentObject() == form, formCurrent);
        if (!formCurrent) {
            // The new measurement lies inside the outline and is current.
            const KxGsObject* current = editor()->getCurrentObject();
            QVERIFY(current);
            QCOMPARE(current->type(), newType);
            QVERIFY(QRectF(300, 300, 200, 200).contains(current->mapRectToParent(current->boundingRect())));
        }
        app.play(QStringLiteral("tool none\n"));
        KxKernelData::getInstance()->removeAllObjects();
    }

    // --- hit tests at every zoom ---

    void lineAtHighZoom_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QString>("tool");
        QTest::newRow("2500 %, no tool") << 25.0 << "none";
        QTest::newRow("highest zoom, no tool") << OvGuiMainWindowBase::kMaxZoom << "none";
        QTest::newRow("highest zoom, distance tool") << OvGuiMainWindowBase::kMaxZoom << "distance";
        QTest::newRow("800 %, no tool") << 8.0 << "none";
    }
    void lineAtHighZoom()
    {
        QFETCH(double, zoom);
        QFETCH(QString, tool);
        QString error;
        QVERIFY2(window->openImage(writePicture(dir.filePath("small.png"), QSize(40, 30), 1.0), &error),
                 qPrintable(error));
        window->slotZoomActual();
        app.play(QStringLiteral("tool distance\npress 8 15\nmove 20 15\nmove 30 15\nrelease 30 15\nselect none\n"
                                "tool %1\n").arg(tool));
        QCOMPARE(countOf(kDistanceType), 1);
        OvGsObject* line = itemOf(kDistanceType, 1);
        QVERIFY(line);
        QVERIFY(!editor()->getCurrentObject());

        // A click on the body, three screen pixels off the line, selects it.
        const double px = 1.0 / zoom;
        zoomOn(zoom, QPointF(20, 15));
        click(QPointF(20, 15 + 3 * px));
        QCOMPARE(editor()->getCurrentObject(), line);
        QVERIFY(!editor()->getSelectionBand());
        QCOMPARE(countOf(kDistanceType), 1);
        // Anywhere on the band the line is drawn as (2 picture pixels wide).
        editor()->setCurrentObject(nullptr, false);
        click(QPointF(20, 15.8));
        QCOMPARE(editor()->getCurrentObject(), line);
        QCOMPARE(countOf(kDistanceType), 1);

        // A press on the visible end handle drags the end.
        zoomOn(zoom, QPointF(30, 15));
        press(QPointF(30 + 3 * px, 15 - 3 * px));
        QVERIFY(!editor()->getSelectionBand());
        moveHeld(QPointF(31, 16));
        moveHeld(QPointF(32, 17));
        release(QPointF(32, 17));
        QCOMPARE(countOf(kDistanceType), 1);
        QCOMPARE(line->pos(), QPointF(8, 15));
        QCOMPARE(line->getManipulator()->getGsObjectParamValue(line, QStringLiteral("len")).toPoint(), QPoint(24, 2));
        app.play(QStringLiteral("tool none\n"));
        KxKernelData::getInstance()->removeAllObjects();
    }

    // --- labels do not hide each other ---

    void labelsStayClearOfEachOther_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("multiple distances on a base")
            << "tool multiple\npress 300 300\nmove 400 300\nmove 500 300\nrelease 500 300\n"
               // Each line ends where the mouse is let go, close to the others.
               "press 330 450\nmove 330 350\nmove 330 250\nrelease 330 250\n"
               "press 360 450\nmove 360 350\nmove 360 250\nrelease 360 250\n"
               "press 390 450\nmove 390 400\nmove 390 330\nrelease 390 330\nselect none\n";
        QTest::newRow("parallel distances close together")
            << "tool parallel\npress 300 300\nmove 400 300\nmove 500 300\nrelease 500 300\n"
               "click 420 330\nclick 420 350\nselect none\n";
        QTest::newRow("short distances side by side")
            << "tool distance\npress 300 300\nmove 320 300\nmove 330 300\nrelease 330 300\n"
               "press 300 310\nmove 320 310\nmove 330 310\nrelease 330 310\n"
               "press 300 320\nmove 320 320\nmove 330 320\nrelease 330 320\nselect none\n";
    }
    void labelsStayClearOfEachOther()
    {
        QFETCH(QString, script);
        app.play(script);
        QList<OvGsObject*> items;
        for (const auto& key : AppWindowHelper::storedKeys())
            items << itemOf(key.first, key.second);
        QVERIFY2(items.size() >= 3, qPrintable(QString::number(items.size())));
        for (int i = 0; i < items.size(); ++i) {
            const QRectF label = inPicture(items.at(i), items.at(i)->getLabelRect());
            for (int j = 0; j < items.size(); ++j) {
                if (i == j)
                    continue;
                const QRectF other = inPicture(items.at(j), items.at(j)->getLabelRect());
                QVERIFY2(!label.intersects(other), qPrintable(QStringLiteral("label of %1 over label of %2")
                                                                  .arg(items.at(i)->getLabelText(),
                                                                       items.at(j)->getLabelText())));
                // A later label keeps off an earlier measurement's trash button.
                if (j < i && items.at(j)->isTrashAllowed()) {
                    QVERIFY2(!label.intersects(trashInPicture(items.at(j))),
                             qPrintable(QStringLiteral("label of %1 over the trash button of %2")
                                            .arg(items.at(i)->getLabelText(), items.at(j)->getLabelText())));
                }
            }
        }
        KxKernelData::getInstance()->removeAllObjects();
    }

    // --- the magnifier leaves with the pointer ---

    void magnifierLeavesWithThePointer()
    {
        QWindow* handle = window->windowHandle();
        QVERIFY(handle);
        const auto inWindow = [&](QWidget* aWidget, const QPoint& aPos) { return aWidget->mapTo(window, aPos); };
        const QPoint inView = inWindow(view()->viewport(), view()->viewport()->rect().center());
        auto* button = window->findChild<QToolButton*>(QStringLiteral("theRadiusButton"));
        QVERIFY(button);
        const QPoint onButton = inWindow(button, button->rect().center());

        // Chosen on the panel: no lens while the pointer is over the panel.
        QTest::mouseMove(handle, onButton);
        QTest::mouseClick(handle, Qt::LeftButton, {}, onButton);
        QCOMPARE(editor()->getOverrideManipulator() != nullptr, true);
        KxLocalMagnifier* lens = KxGsManipulator::localMagnifier();
        QVERIFY(!lens || !lens->isVisible());

        QTest::mouseMove(handle, inView);
        QTest::mouseMove(handle, inView + QPoint(5, 5));
        lens = KxGsManipulator::localMagnifier();
        QVERIFY(lens);
        QVERIFY(lens->isVisible());

        // Out of the view, onto the panel.
        QTest::mouseMove(handle, onButton);
        QVERIFY(!lens->isVisible());
        app.play(QStringLiteral("tool none\n"));
    }

    // --- Ctrl+wheel keeps the point under the cursor ---

    void ctrlWheelKeepsThePointUnderTheCursor_data()
    {
        QTest::addColumn<bool>("fitted");
        QTest::addColumn<QPointF>("where"); // in the picture, as a fraction of its size
        QTest::addColumn<int>("steps");     // wheel notches, negative zooms out
        QTest::newRow("fitted, centre, in") << true << QPointF(0.5, 0.5) << 3;
        QTest::newRow("fitted, top left, in") << true << QPointF(0.1, 0.1) << 4;
        QTest::newRow("fitted, bottom right, in") << true << QPointF(0.9, 0.85) << 5;
        QTest::newRow("actual, right, in") << false << QPointF(0.8, 0.4) << 3;
        QTest::newRow("actual, left, out") << false << QPointF(0.2, 0.6) << -2;
    }
    void ctrlWheelKeepsThePointUnderTheCursor()
    {
        QFETCH(bool, fitted);
        QFETCH(QPointF, where);
        QFETCH(int, steps);
        if (fitted)
            window->slotZoomFit();
        QCoreApplication::processEvents();
        QWidget* port = view()->viewport();
        const QRectF area = editor()->getEditorArea();
        const QPoint cursor = at(QPointF(area.width() * where.x(), area.height() * where.y()));
        QVERIFY(port->rect().contains(cursor));
        for (int i = 0; i < std::abs(steps); ++i) {
            const QPointF picturePoint = pictureAt(cursor);
            QWheelEvent wheel(QPointF(cursor), QPointF(port->mapToGlobal(cursor)), QPoint(),
                              QPoint(0, steps > 0 ? 120 : -120), Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase,
                              false);
            QApplication::sendEvent(port, &wheel);
            QCoreApplication::processEvents();
            const QPoint now = at(picturePoint);
            QVERIFY2(QLineF(now, cursor).length() <= 1.5,
                     qPrintable(QStringLiteral("step %1: the point moved from %2,%3 to %4,%5")
                                    .arg(i + 1).arg(cursor.x()).arg(cursor.y()).arg(now.x()).arg(now.y())));
        }
    }

    // --- the Configuration window ---

    void configurationWindowOpensCentredWithClose()
    {
        QAction* calibration = nullptr;
        for (QAction* action : window->findChildren<QAction*>()) {
            if (action->text() == QLatin1String("&Calibration..."))
                calibration = action;
        }
        QVERIFY(calibration);
        // From wherever the window is, on a screen that has room for both.
        const QSize size = window->size();
        const QRect screen = window->screen()->availableGeometry();
        window->setGeometry(QRect(screen.topLeft() + QPoint(20, 20), screen.size() * 0.8));
        QCoreApplication::processEvents();
        calibration->trigger();
        QWidget* panel = window->getConfigurationPanel();
        QVERIFY(panel->isVisible());
        // (The offscreen test screen is smaller than the panel's minimum size.)
        const bool fits = panel->minimumSizeHint().width() < screen.width()
                          && panel->minimumSizeHint().height() < screen.height();
        QVERIFY2(!fits || screen.contains(panel->geometry()),
                 qPrintable(QStringLiteral("panel %1,%2 %3x%4 off the screen").arg(panel->x()).arg(panel->y())
                                .arg(panel->width()).arg(panel->height())));
        // Centred on the window where the screen lets it; else flush with the
        // screen's edge.
        const QRect shown = panel->geometry();
        const QPoint offset = shown.center() - window->geometry().center();
        if (shown.width() < screen.width()) {
            // Centred, unless that would put it past the screen's edge.
            const int wantedLeft = std::clamp(window->geometry().center().x() - shown.width() / 2, screen.left(),
                                              screen.right() + 1 - shown.width());
            QVERIFY2(qAbs(shown.left() - wantedLeft) <= 20,
                     qPrintable(QStringLiteral("left %1, wanted %2").arg(shown.left()).arg(wantedLeft)));
        } else {
            QCOMPARE(panel->frameGeometry().left(), screen.left());
        }
        QVERIFY2(qAbs(offset.y()) <= 40, qPrintable(QString::number(offset.y())));
        auto* buttons = panel->findChild<QDialogButtonBox*>(QStringLiteral("configurationButtons"));
        QVERIFY(buttons);
        QPushButton* close = buttons->button(QDialogButtonBox::Close);
        QVERIFY(close);
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(!panel->isVisible());
        window->resize(size);
    }

    // --- the drop-down entries are named ---

    void dropDownEntriesAreNamed_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("distance") << "theDistanceButton"
                                  << QStringList{ "Distance", "Free line", "Multiple distances", "Parallel distances",
                                                  "Circle-to-circle distance" };
        QTest::newRow("circle") << "theRadiusButton" << QStringList{ "Diameter", "Radius" };
        QTest::newRow("angle") << "theAngleButton" << QStringList{ "Inner angle", "Outer angle" };
    }
    void dropDownEntriesAreNamed()
    {
        QFETCH(QString, button);
        QFETCH(QStringList, texts);
        auto* toolButton = window->findChild<QToolButton*>(button);
        QVERIFY(toolButton && toolButton->menu());
        QMenu* menu = toolButton->menu();
        QVERIFY(menu->toolTipsVisible());
        QStringList shown;
        for (const QAction* action : menu->actions()) {
            shown << action->text();
            QVERIFY(!action->icon().isNull());
            // A tool tip that says more than the entry's own text.
            QVERIFY2(action->toolTip().size() > action->text().size(), qPrintable(action->toolTip()));
        }
        QCOMPARE(shown, texts);
    }

    // --- the Results dock ---

    void resultsShowEveryColumnAndReadableKinds()
    {
        app.play(QStringLiteral(
            "tool free-line\npress 100 100\nmove 150 100\nmove 200 150\nrelease 200 150\n"
            "tool multiple\npress 300 300\nmove 400 300\nmove 500 300\nrelease 500 300\nclick 400 250\n"
            "select none\ntool parallel\npress 300 600\nmove 400 600\nmove 500 600\nrelease 500 600\nclick 300 650\n"
            "select none\ntool free-form\npress 700 300\nmove 800 300\nmove 800 400\nmove 700 400\nrelease 700 400\n"
            "tool none\n"));
        QSet<QString> kinds;
        for (const OvMeasurementExporter::Row& row : OvMeasurementExporter::collect())
            kinds.insert(row.typeName);
        QCOMPARE(kinds, (QSet<QString>{ "Free line", "Multiple distance", "Parallel distance", "Free form" }));

        OvResultsDock* dock = window->resultsDock();
        dock->show();
        dock->raise();
        QCoreApplication::processEvents();
        QTableView* table = dock->view();
        QAbstractItemModel* model = table->model();
        QSet<QString> shownKinds;
        for (int row = 0; row < model->rowCount(); ++row)
            shownKinds.insert(model->index(row, OvResultsModel::TypeColumn).data().toString());
        QCOMPARE(shownKinds, kinds);
        // Every column whole at the dock's starting width.
        QHeaderView* header = table->horizontalHeader();
        header->setStretchLastSection(false);
        table->resizeColumnsToContents();
        const int needed = header->length();
        QStringList widths;
        for (int column = 0; column < model->columnCount(); ++column)
            widths << QString::number(header->sectionSize(column));
        header->setStretchLastSection(true);
        QVERIFY2(needed <= table->viewport()->width(),
                 qPrintable(QStringLiteral("columns need %1 px (%3), the table shows %2")
                                .arg(needed).arg(table->viewport()->width()).arg(widths.join(' '))));
        KxKernelData::getInstance()->removeAllObjects();
    }

    // --- where files are proposed ---

    void saveProposesThePictureNameAndFoldersAreRemembered()
    {
        KxAppSettings::remove(QStringLiteral("LastFolder"));
        const QString first = OvViewerMainWindow::lastFolder();
        QVERIFY(QFileInfo(first).isDir());
        QCOMPARE(window->measurementsSuggestion(),
                 QDir(first).filePath(QStringLiteral("sample-micrograph.measurements.json")));

        // What the Save dialog proposes and where Open starts, as a user sees them.
        QString proposed;
        QString startedIn;
        QTimer watcher;
        watcher.setInterval(10);
        connect(&watcher, &QTimer::timeout, this, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            startedIn = dialog->directory().absolutePath();
            if (dialog->acceptMode() == QFileDialog::AcceptSave) {
                proposed = dialog->selectedFiles().value(0);
                QMetaObject::invokeMethod(dialog, "accept");
            } else {
                dialog->reject();
            }
        });
        const auto trigger = [&](const QString& aText) {
            for (QAction* action : window->findChildren<QAction*>()) {
                if (action->text() == aText) {
                    watcher.start();
                    action->trigger();
                    watcher.stop();
                    return true;
                }
            }
            return false;
        };

        // Saving into another folder remembers it ...
        QDir(dir.path()).mkpath(QStringLiteral("work"));
        const QString work = QDir(dir.path()).filePath(QStringLiteral("work"));
        OvViewerMainWindow::rememberFolder(QDir(work).filePath(QStringLiteral("x.json")));
        QCOMPARE(OvViewerMainWindow::lastFolder(), work);
        QVERIFY(trigger(QStringLiteral("Sa&ve Measurements...")));
        QCOMPARE(proposed, QDir(work).filePath(QStringLiteral("sample-micrograph.measurements.json")));
        QVERIFY(QFileInfo::exists(proposed));
        QCOMPARE(KxAppSettings::value(QStringLiteral("LastFolder")).toString(), work);

        // ... and Open starts there.
        QVERIFY(trigger(QStringLiteral("&Open...")));
        QCOMPARE(startedIn, work);

        // A picture of its own: beside it, under its name.
        QString error;
        const QString picture = writePicture(dir.filePath("cells.png"), QSize(64, 48), 0.5);
        QVERIFY2(window->openImage(picture, &error), qPrintable(error));
        QCOMPARE(window->measurementsSuggestion(), dir.filePath(QStringLiteral("cells.measurements.json")));
    }
};

QTEST_MAIN(tst_EverydayMeasuring)
#include "tst_everydaymeasuring.moc"
