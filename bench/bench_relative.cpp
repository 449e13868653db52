// Multiple and parallel distances: a base with N measured lines, then moving
// the base (one change per line), removing it (one removal per line before
// the base's own), undoing and redoing that removal. Prints figures only; the
// per-line times at the larger N over those at the smaller one show whether a
// step grows faster than the number of lines.

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxMediaInfo.h"
#include "OvGsManipMultiply.h"
#include "OvGsManipParalell.h"
#include "OvGsRelativeDistance.h"
#include "OvGuiMainWindowBase.h"
#include "OvGuiMeasurementTool.h"
#include "OvToolBase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsSceneMouseEvent>
#include <QImage>
#include <QTextStream>
#include <QToolButton>
#include <QUndoStack>

namespace {

void send(KxGsManipulator* aManip, QEvent::Type aType, const QPointF& aPos)
{
    QGraphicsSceneMouseEvent event(aType);
    event.setPos(aPos);
    event.setScenePos(aPos);
    event.setButton(aType == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
    event.setButtons(aType == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
    if (aType == QEvent::GraphicsSceneMousePress)
        aManip->mousePressEvent(&event);
    else if (aType == QEvent::GraphicsSceneMouseMove)
        aManip->mouseMoveEvent(&event);
    else
        aManip->mouseReleaseEvent(&event);
}

double elapsedMs(const QElapsedTimer& aTimer)
{
    return aTimer.nsecsElapsed() / 1e6;
}

struct Figures
{
    double draw = 0.0;
    double move = 0.0;
    double remove = 0.0;
    double undo = 0.0;
    double redo = 0.0;
    int commands = 0;
};

Figures run(bool aParallel, int aCount)
{
    KxKernelData* kernel = KxKernelData::getInstance();
    auto* window = new OvGuiMainWindowBase();
    QImage picture(2000, 2000, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    window->setImage(picture);
    // Buttons keep their size on screen: the view must be shown for their hit
    // areas to have their real size.
    window->slotZoomActual();
    window->show();
    KxMediaInfo media;
    media.setUmPerPixel(0.5);
    kernel->loadMedia(media, picture.size());
    auto* tool = new OvToolBase(window, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                                QStringLiteral("Measurement"), false);
    auto* panel = new OvGuiMeasurementTool();
    tool->setGuiWidget(panel);
    QUndoStack* stack = window->getUndoStack();
    stack->clear();
    OvGsManipRelative* manip = aParallel ? static_cast<OvGsManipRelative*>(new OvGsManipParalell(tool, panel, stack))
                                         : new OvGsManipMultiply(tool, panel, stack);
    panel->freehandType = aParallel ? 3 : 2;
    panel->theDistanceButton->setChecked(true);

    Figures figures;
    QElapsedTimer timer;
    timer.start();
    send(manip, QEvent::GraphicsSceneMousePress, QPointF(100, 1000));
    send(manip, QEvent::GraphicsSceneMouseMove, QPointF(900, 1000));
    send(manip, QEvent::GraphicsSceneMouseRelease, QPointF(900, 1000));
    for (int i = 0; i < aCount; ++i) {
        const QPointF at(50 + (i * 7) % 1900, 50 + (i * 13) % 900);
        send(manip, QEvent::GraphicsSceneMousePress, at);
        send(manip, QEvent::GraphicsSceneMouseRelease, at);
    }
    figures.draw = elapsedMs(timer);
    // As between a user's gestures, the scene indexes the new items first.
    QCoreApplication::processEvents();
    auto* base = static_cast<OvGsRelativeDistance*>(manip->getGsObject(1));

    timer.restart();
    base->setPos(base->pos() + QPointF(0, 40));
    manip->gsObjectChangedShape(base);
    figures.move = elapsedMs(timer);
    QCoreApplication::processEvents();

    const int before = stack->count();
    timer.restart();
    manip->removeGsObject(base);
    figures.remove = elapsedMs(timer);
    const int steps = stack->count() - before;
    figures.commands = steps;

    timer.restart();
    for (int i = 0; i < steps; ++i)
        stack->undo();
    figures.undo = elapsedMs(timer);
    QCoreApplication::processEvents();
    timer.restart();
    for (int i = 0; i < steps; ++i)
        stack->redo();
    figures.redo = elapsedMs(timer);

    panel->theDistanceButton->setChecked(false);
    window->getEditor()->setCurrentObject(nullptr, false);
    stack->clear();
    delete manip;
    kernel->removeAllObjects();
    delete tool;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return figures;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream out(stdout);
    QList<int> counts{ 100, 1000 };
    if (argc > 1)
        counts = { QString::fromLocal8Bit(argv[1]).toInt() };
    out << "A base with N lines: draw them, move the base, remove it, undo and redo the removal (ms, us per line)\n";
    for (bool parallel : { false, true }) {
        QList<QPair<int, Figures>> results;
        for (int count : counts) {
            if (count <= 0)
                continue;
            const Figures f = run(parallel, count);
            results.append(qMakePair(count, f));
            const double perLine = 1000.0 / count;
            out << QString::asprintf("%-8s %5d  draw %8.2f (%6.1f)  move %7.2f (%6.1f)  remove %7.2f (%6.1f)  "
                                     "undo %7.2f (%6.1f)  redo %7.2f (%6.1f)  removal commands %d\n",
                                     parallel ? "parallel" : "multiple", count, f.draw, f.draw * perLine, f.move,
                                     f.move * perLine, f.remove, f.remove * perLine, f.undo, f.undo * perLine,
                                     f.redo, f.redo * perLine, f.commands);
            out.flush();
        }
        if (results.size() == 2) {
            const double scale = double(results[0].first) / results[1].first;
            const Figures& a = results[0].second;
            const Figures& b = results[1].second;
            const auto ratio = [scale](double aSmall, double aLarge) { return aSmall > 0 ? aLarge * scale / aSmall : 0; };
            out << QString::asprintf("%-8s per-line time at %d over %d: draw %.2f  move %.2f  remove %.2f  "
                                     "undo %.2f  redo %.2f\n",
                                     parallel ? "parallel" : "multiple", results[1].first, results[0].first,
                                     ratio(a.draw, b.draw), ratio(a.move, b.move), ratio(a.remove, b.remove),
                                     ratio(a.undo, b.undo), ratio(a.redo, b.redo));
        }
    }
    return 0;
}
