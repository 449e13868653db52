// Circles and angles next to distances: drawing N of each, undoing and redoing all
// of them, and re-applying a frame to every item. Prints figures and ratios only.

#include "BenchHelper.h"
#include "OvGsManipAngle.h"
#include "OvGsManipCircle.h"
#include "OvGsManipDistance.h"

#include <QApplication>
#include <QTextStream>

#include <functional>

namespace {

using Figures = BenchHelper::Cycle;

const auto send = &BenchHelper::send;
const auto drag = &BenchHelper::drag;

// One kind alone on a fresh window: aDraw(m, i) draws item i with m.
template <typename Manipulator>
Figures run(int aCount, QToolButton* OvGuiMeasurementTool::*aButton,
            const std::function<void(KxGsManipulator*, int)>& aDraw)
{
    BenchHelper bench;
    KxGsManipulator* manip = bench.make<Manipulator>();
    bench.choose(aButton);
    return bench.timeCycle(manip, aCount, [&](int i) { aDraw(manip, i); });
}

QPointF spot(int anIndex)
{
    return QPointF(60 + (anIndex * 7) % 1800, 60 + (anIndex * 13) % 1800);
}

void print(QTextStream& anOut, const char* aKind, int aCount, const Figures& aFigures, const Figures& aDistance)
{
    const double perItem = 1000.0 / aCount;
    const auto ratio = &BenchHelper::ratio;
    anOut << QString::asprintf("%6d %-9s (%d stored) create %8.2f ms (%7.2f us, x%4.2f)  undo all %8.2f ms (x%4.2f)  "
                               "redo all %8.2f ms (x%4.2f)  frame %7.2f ms (%6.2f us, x%4.2f)\n",
                               aCount, aKind, aFigures.stored, aFigures.create, aFigures.create * perItem,
                               ratio(aFigures.create, aDistance.create), aFigures.undoAll,
                               ratio(aFigures.undoAll, aDistance.undoAll), aFigures.redoAll,
                               ratio(aFigures.redoAll, aDistance.redoAll), aFigures.frame, aFigures.frame * perItem,
                               ratio(aFigures.frame, aDistance.frame));
    anOut.flush();
}

} // namespace

int main(int argc, char** argv)
{
    BenchHelper::useOffscreen();
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << "Circles and angles next to distances: draw N, undo all, redo all, re-apply one frame to every item\n"
        << "(x: time relative to the same number of distance lines)\n";
    for (int count : BenchHelper::counts(argc, argv, { 100, 1000, 3000 })) {
        const Figures distance = run<OvGsManipDistance>(
            count, &OvGuiMeasurementTool::theDistanceButton,
            [](KxGsManipulator* m, int i) { drag(m, spot(i), spot(i) + QPointF(40, 25)); });
        const Figures circle = run<OvGsManipCircle>(
            count, &OvGuiMeasurementTool::theRadiusButton, [](KxGsManipulator* m, int i) {
                // A dragged diameter, then the third node moved off it and a click.
                drag(m, spot(i), spot(i) + QPointF(40, 30));
                send(m, QEvent::GraphicsSceneMouseMove, spot(i) + QPointF(10, 50));
                send(m, QEvent::GraphicsSceneMousePress, spot(i) + QPointF(10, 50));
                send(m, QEvent::GraphicsSceneMouseRelease, spot(i) + QPointF(10, 50));
            });
        const Figures angle = run<OvGsManipAngle>(
            count, &OvGuiMeasurementTool::theAngleButton, [](KxGsManipulator* m, int i) {
                drag(m, spot(i), spot(i) + QPointF(50, 0));
                drag(m, spot(i) + QPointF(0, 10), spot(i) + QPointF(30, -40));
            });
        print(out, "distance", count, distance, distance);
        print(out, "circle", count, circle, distance);
        print(out, "angle", count, angle, distance);
    }
    return 0;
}
