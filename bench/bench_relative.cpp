// Multiple and parallel distances: a base with N measured lines, then moving
// the base (one change per line), removing it (one removal per line before
// the base's own), undoing and redoing that removal. Prints figures only; the
// per-line times at the larger N over those at the smaller one show whether a
// step grows faster than the number of lines.

#include "BenchHelper.h"
#include "OvGsManipMultiply.h"
#include "OvGsManipParalell.h"
#include "OvGsRelativeDistance.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QUndoStack>

namespace {

const auto send = &BenchHelper::send;
const auto elapsedMs = &BenchHelper::elapsedMs;

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
    // Buttons keep their size on screen: the view must be shown for their hit
    // areas to have their real size.
    BenchHelper bench(BenchHelper::View::Shown);
    QUndoStack* stack = bench.stack;
    OvGsManipRelative* manip = aParallel ? static_cast<OvGsManipRelative*>(bench.make<OvGsManipParalell>())
                                         : bench.make<OvGsManipMultiply>();
    bench.panel->freehandType = aParallel ? 3 : 2;
    bench.choose(&OvGuiMeasurementTool::theDistanceButton);

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
    return figures;
}

} // namespace

int main(int argc, char** argv)
{
    BenchHelper::useOffscreen();
    QApplication app(argc, argv);
    QTextStream out(stdout);
    const QList<int> counts = BenchHelper::counts(argc, argv, { 100, 1000 });
    out << "A base with N lines: draw them, move the base, remove it, undo and redo the removal (ms, us per line)\n";
    for (bool parallel : { false, true }) {
        QList<QPair<int, Figures>> results;
        for (int count : counts) {
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
