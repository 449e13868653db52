// Measurements that come back from the store (undo, redo, history jumps,
// per-frame re-creation) are labelled exactly as when they were drawn.
#include "ManipTestHelper.h"

#include "KxMediaInfo.h"

#include <QGraphicsPixmapItem>
#include <QGraphicsView>

#include <memory>

// How a kind is drawn: the distance button's variant and the gesture.
struct Drawing { int variant; QString script; };
Q_DECLARE_METATYPE(Drawing)

class tst_RebuiltLabels : public QObject
{
    Q_OBJECT

    std::unique_ptr<ManipTestHelper> h;

    void addColumns()
    {
        QTest::addColumn<Drawing>("drawing");
        QTest::addColumn<QString>("steps");
    }

    // Every sequence for every kind that exists.
    void addRows()
    {
        const QList<QPair<const char*, Drawing>> kinds{
            { "distance", { 0, "p100,100 m160,180 r160,180" } },
            // Circles at (100, 100) and (300, 220), see init().
            { "circle distance", { 4, "p100,100 r100,100 h300,220 p300,220 r300,220" } },
        };
        const QList<QPair<const char*, const char*>> sequences{
            // Each step with the number of lines stored after it.
            { "undo redo", "undo:0 redo:1" },
            { "delete undo", "delete:0 undo:1" },
            { "trash undo redo undo", "trash:0 undo:1 redo:0 undo:1" },
            { "history jumps", "history0:0 history1:1 history0:0 history1:1" },
            { "frames", "frame5:1 frame0:1 frame5:1" },
        };
        for (const auto& kind : kinds)
            for (const auto& sequence : sequences)
                QTest::addRow("%s: %s", kind.first, sequence.first) << kind.second << QString(sequence.second);
    }

    void clickAt(const QPointF& aScenePos)
    {
        const QPoint at = h->view->mapFromScene(aScenePos);
        QTest::mouseClick(h->view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    }

    void run(const QString& aStep)
    {
        if (aStep == "delete" || aStep == "trash") {
            // The user picks the line first: a click on its middle.
            const QPointF middle = h->item(1)->pos() + h->item(1)->vector / 2;
            h->play(QStringLiteral("p%1,%2 r%1,%2").arg(middle.x()).arg(middle.y()));
            QCOMPARE(h->editor->getCurrentObject(), h->item(1));
        }
        if (aStep == "undo") {
            h->stack->undo();
        } else if (aStep == "redo") {
            h->stack->redo();
        } else if (aStep == "delete") {
            h->editor->setFocus();
            QTest::keyClick(h->view->viewport(), Qt::Key_Delete);
        } else if (aStep == "trash") {
            clickAt(h->item(1)->getTrashButton()->sceneBoundingRect().center());
        } else if (aStep.startsWith("history")) {
            // The history dock jumps straight to an index.
            h->stack->setIndex(aStep.mid(7).toInt() ? h->stack->count() : 0);
        } else if (aStep.startsWith("frame")) {
            h->kernel->setCurrentFrame(aStep.mid(5).toInt());
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // aStep ("undo:1") has left its number of stored lines, each with an
    // item whose label shows aText, inside the picture.
    void checkLabels(const QString& aText, const QString& aStep)
    {
        const QList<int> stored = h->storedIndices();
        QCOMPARE(stored.size(), aStep.section(':', 1).toInt());
        QCOMPARE(h->distanceItems().size(), stored.size());
        for (int idx : stored) {
            OvGsDistance* line = h->item(idx);
            QVERIFY2(line, qPrintable(aStep));
            QVERIFY2(line->isLabelVisible() && line->getLabelRect().isValid(), qPrintable(aStep));
            QCOMPARE(line->getLabelText(), aText);
            const QRectF label = line->mapRectToParent(line->getLabelRect());
            QVERIFY2(h->editor->getEditorArea().contains(label), qPrintable(aStep));
        }
    }

private slots:
    void init()
    {
        h.reset(new ManipTestHelper());
        h->addCircle(QPointF(100, 100), 40);
        h->addCircle(QPointF(300, 220), 20);
    }

    void cleanup() { h.reset(); }

    void labelShownAfterEveryStep_data()
    {
        addColumns();
        addRows();
    }

    void labelShownAfterEveryStep()
    {
        QFETCH(Drawing, drawing);
        QFETCH(QString, steps);
        if (steps.startsWith("frame")) {
            // A video: new measurements are animated and follow the frames.
            h->kernel->getMediaInfo().setVideoFile(true);
        }
        h->activate(drawing.variant);
        h->play(drawing.script);
        QCOMPARE(h->storedIndices(), QList<int>{ 1 });
        const QString fresh = h->item(1)->getLabelText();
        QVERIFY2(fresh.startsWith("Distance1: ") && fresh.endsWith(QString::fromUtf8("\u03bcm")), qPrintable(fresh));
        h->editor->setCurrentObject(nullptr, false);
        for (const QString& step : steps.split(' ')) {
            run(step.section(':', 0, 0));
            checkLabels(fresh, step);
        }
    }

    // A line stored in micrometres keeps them on its label and in its values
    // when the panel's unit changes while it is not selected, also once it is
    // rebuilt from the store.
    void storedUnitSurvivesRebuild_data()
    {
        addColumns();
        addRows();
    }

    void storedUnitSurvivesRebuild()
    {
        QFETCH(Drawing, drawing);
        QFETCH(QString, steps);
        h->panel->setCurrentUnit(2);
        h->activate(drawing.variant);
        h->play(drawing.script);
        const QString fresh = h->item(1)->getLabelText();
        h->editor->setCurrentObject(nullptr, false);
        h->panel->setCurrentUnit(1);
        emit h->panel->signalUnitTypeChanged(1);
        for (const QString& step : steps.split(' ')) {
            run(step.section(':', 0, 0));
            checkLabels(fresh, step);
        }
        if (const KxKernelObjectData* data = h->stored(1)) {
            QStringList units;
            const QList<QVariant> values = h->manip->getCalculatedValues({ "Length" }, data, units);
            QCOMPARE(units, QStringList{ QString::fromUtf8("\u03bcm") });
            QVERIFY(values.value(0).toDouble() > 1.0);
        }
    }
};

QTEST_MAIN(tst_RebuiltLabels)
#include "tst_rebuiltlabels.moc"
