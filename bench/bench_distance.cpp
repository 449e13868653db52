// Distance manipulator throughput: drawing N lines, undoing and redoing all of
// them, and re-applying a frame to every item. Prints figures only.

#include "BenchHelper.h"
#include "OvGsManipDistance.h"

#include <QApplication>
#include <QTextStream>

namespace {

void run(int aCount, QTextStream& anOut)
{
    BenchHelper bench;
    auto* manip = bench.make<OvGsManipDistance>();
    bench.choose(&OvGuiMeasurementTool::theDistanceButton);
    const BenchHelper::Cycle cycle = bench.timeCycle(manip, aCount, [manip](int i) {
        const QPointF start(10 + (i * 7) % 1900, 10 + (i * 13) % 1900);
        BenchHelper::drag(manip, start, start + QPointF(40, 25));
    });

    const double perItem = 1000.0 / aCount;
    anOut << QString::asprintf("%6d  create %9.2f ms (%7.2f us/line)  undo all %9.2f ms (%7.2f us/line)  "
                               "redo all %9.2f ms (%7.2f us/line)  frame %8.2f ms (%6.2f us/line)\n",
                               aCount, cycle.create, cycle.create * perItem, cycle.undoAll, cycle.undoAll * perItem,
                               cycle.redoAll, cycle.redoAll * perItem, cycle.frame, cycle.frame * perItem);
    anOut.flush();
}

} // namespace

int main(int argc, char** argv)
{
    BenchHelper::useOffscreen();
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << "Distance lines: draw, undo all, redo all, re-apply one frame to every item\n";
    for (int count : BenchHelper::counts(argc, argv, { 100, 1000, 5000 }))
        run(count, out);
    return 0;
}
