// Every kind of measurement, brought back from the store (undo, redo,
// removal undone, history jumps, frames, a saved file), is labelled exactly
// as when it was drawn: through the real window and the real plug-in.
#include "AppWindowHelper.h"
#include "KxAppSettings.h"
#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "OvGsObject.h"
#include "OvMeasurementExporter.h"
#include "OvViewerMainWindow.h"

#include <QGraphicsPixmapItem>
#include <QGraphicsView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

namespace {

// What each stored measurement's label read right after it was drawn.
using Labels = QMap<QPair<int, int>, QString>;

Labels storedLabels()
{
    Labels labels;
    for (const auto& key : AppWindowHelper::storedKeys()) {
        KxGsManipulator* manipulator = KxKernelData::getInstance()->getManipulator(key.first);
        auto* item = dynamic_cast<OvGsObject*>(manipulator ? manipulator->getGsObject(key.second) : nullptr);
        labels.insert(key, item ? item->getLabelText() : QStringLiteral("<no item>"));
    }
    return labels;
}

} // namespace

class tst_LabelsFromStore : public QObject
{
    Q_OBJECT

    QTemporaryDir dir;
    AppWindowHelper app;
    OvViewerMainWindow* window = nullptr;

    void play(const QString& aScript) { app.play(aScript); }

    // The last measurement drawn (highest type, then index) and its item.
    OvGsObject* lastItem() const
    {
        const Labels labels = storedLabels();
        if (labels.isEmpty())
            return nullptr;
        const auto key = labels.lastKey();
        return dynamic_cast<OvGsObject*>(KxKernelData::getInstance()->getManipulator(key.first)
                                             ->getGsObject(key.second));
    }

    void step(const QString& aStep)
    {
        QUndoStack* stack = window->undoStack();
        if (aStep == "undo") {
            stack->undo();
        } else if (aStep == "redo") {
            stack->redo();
        } else if (aStep == "delete") {
            window->getEditor()->setCurrentObject(lastItem(), false);
            window->getEditor()->deleteSelected();
        } else if (aStep == "trash") {
            OvGsObject* item = lastItem();
            QVERIFY(item);
            window->getEditor()->setCurrentObject(item, false);
            QGraphicsView* view = window->getView();
            const QPoint at = view->mapFromScene(item->getTrashButton()->sceneBoundingRect().center());
            QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        } else if (aStep == "start" || aStep == "end") {
            // The history dock jumps straight to an index.
            stack->setIndex(aStep == "start" ? 0 : stack->count());
        } else if (aStep.startsWith("frame")) {
            play(aStep.left(5) + ' ' + aStep.mid(5));
        } else if (aStep == "reload") {
            const QString file = dir.filePath("labels.json");
            QString error;
            QVERIFY2(window->saveMeasurements(file, &error), qPrintable(error));
            QVERIFY2(window->loadMeasurements(file, &error), qPrintable(error));
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Each stored measurement has one item, its label shown, reading what it
    // read when drawn, inside the picture; no other item is left on the editor.
    void checkLabels(const Labels& aDrawn, const QString& aStep)
    {
        const Labels now = storedLabels();
        for (auto it = now.cbegin(); it != now.cend(); ++it) {
            const QString where = QStringLiteral("%1: type %2 index %3").arg(aStep).arg(it.key().first)
                                      .arg(it.key().second);
            QCOMPARE(it.value(), aDrawn.value(it.key()));
            auto* item = dynamic_cast<OvGsObject*>(
                KxKernelData::getInstance()->getManipulator(it.key().first)->getGsObject(it.key().second));
            QVERIFY2(item && item->isLabelVisible() && item->getLabelRect().isValid(), qPrintable(where));
            const QRectF label = item->mapRectToParent(item->getLabelRect());
            QVERIFY2(window->getEditor()->getEditorArea().contains(label), qPrintable(where));
        }
        QCOMPARE(window->getEditor()->getAllChildGsObjects().size(), now.size());
    }

private slots:
    void initTestCase()
    {
        KxAppSettings::setValue(QStringLiteral("DistanceAllowedAsBase"), true);
        QVERIFY(app.start().isEmpty());
        window = app.window();
    }

    void cleanupTestCase() { app.stop(); }

    void init() { app.openSample(); }

    void labelsAsDrawn_data()
    {
        QTest::addColumn<QString>("drawing");
        QTest::addColumn<QString>("steps");
        // How each kind is drawn, by the gesture a user makes, in one unit; then,
        // with nothing selected, another unit chosen on the panel, which must
        // change none of them.
        const QList<QPair<const char*, const char*>> kinds{
            { "distance", "tool distance\nunit um\npress 300 300\nmove 360 380\nrelease 360 380\n"
                          "select none\ntool distance\nunit nm\n" },
            { "circle-distance", "tool circle\nunit um\nclick 300 300\nmove 330 340\nclick 330 340\n"
                                 "move 380 300\nclick 380 300\n"
                                 "press 600 300\nmove 650 300\nmove 700 300\nrelease 700 300\n"
                                 "move 650 360\nclick 650 360\n"
                                 "tool circle-distance\nunit um\nclick 345 305\nmove 500 300\nclick 655 305\n"
                                 "select none\ntool circle\nunit nm\n" },
            { "diameter", "tool diameter\nunit um\nclick 300 300\nmove 330 340\nclick 330 340\n"
                          "move 380 300\nclick 380 300\nselect none\ntool diameter\nunit nm\n" },
            { "angle", "tool angle\nclick 200 600\nmove 400 600\nclick 400 600\nclick 200 680\n"
                       "move 200 500\nclick 200 500\nselect none\n" },
            { "outer angle", "tool outer-angle\npress 700 600\nmove 900 600\nrelease 900 600\n"
                             "press 700 680\nmove 700 500\nrelease 700 500\nselect none\n" },
            { "free form", "tool free-form\npress 100 100\nmove 200 100\nmove 200 200\nmove 100 200\n"
                           "release 100 200\nselect none\n" },
            { "free line", "tool free-line\nunit um\nclick 500 100\nmove 600 100\nmove 600 200\n"
                           "move 500 200\nclick 500 200\nselect none\ntool free-line\nunit nm\n" },
            // Relative lines against a plain distance as base (tst_restoredasdrawn
            // covers bases of their own kind). Placing a line on its base labels
            // it in the panel's unit, so these rows change no unit afterwards.
            { "multiple", "tool distance\nunit um\npress 200 300\nmove 400 300\nmove 600 300\n"
                          "release 600 300\ntool multiple\nclick 400 300\nclick 250 400\n"
                          "click 700 200\nselect none\n" },
            { "parallel", "tool distance\nunit um\npress 200 300\nmove 400 300\nmove 600 300\n"
                          "release 600 300\ntool parallel\nclick 400 300\nclick 300 500\n"
                          "click 400 150\nselect none\n" },
        };
        const QList<QPair<const char*, const char*>> sequences{
            { "undo redo", "undo redo" },
            { "delete undo", "delete undo" },
            { "trash undo redo undo", "trash undo redo undo" },
            { "history jumps", "start end start end" },
            { "frames", "frame5 frame0 frame5 frame0" },
            { "saved and opened", "reload" },
        };
        for (const auto& kind : kinds)
            for (const auto& sequence : sequences)
                QTest::addRow("%s: %s", kind.first, sequence.first) << QString(kind.second) << QString(sequence.second);
    }

    void labelsAsDrawn()
    {
        QFETCH(QString, drawing);
        QFETCH(QString, steps);
        const QString changeUnit = drawing.mid(drawing.lastIndexOf("select none\n"));
        play(drawing.left(drawing.lastIndexOf("select none\n")) + "select none\n");
        const Labels drawn = storedLabels();
        QVERIFY(!drawn.isEmpty());
        for (const QString& label : drawn)
            QVERIFY2(label.contains(QString::fromUtf8("\u03bcm")) || label.contains("deg") || label.endsWith("base"),
                     qPrintable(label));
        const QString exported = OvMeasurementExporter::toCsv(OvMeasurementExporter::collect());
        play(changeUnit + "tool none\n");
        for (const QString& name : steps.split(' ')) {
            step(name);
            checkLabels(drawn, name);
        }
        if (storedLabels().size() == drawn.size())
            QCOMPARE(OvMeasurementExporter::toCsv(OvMeasurementExporter::collect()), exported);
    }
};

QTEST_MAIN(tst_LabelsFromStore)
#include "tst_labelsfromstore.moc"
