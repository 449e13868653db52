// Free forms and free lines of 50 and 500 nodes: the mouse move that adds a node
// while drawing (the free line also re-measures its label on every move), and
// re-applying one frame to every stored shape. Prints figures and ratios only.

#include "BenchHelper.h"
#include "OvGsManipFreeForm.h"
#include "OvGsManipFreeLine.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QtMath>

namespace {

const int kShapes = 100;
const auto send = &BenchHelper::send;
const auto elapsedMs = &BenchHelper::elapsedMs;

// Node i of an outline of aNodes nodes around aCentre: every node a pixel of its own.
QPointF outlinePoint(const QPointF& aCentre, int i, int aNodes)
{
    const double angle = 2.0 * M_PI * i / aNodes;
    return aCentre + QPointF(qRound(400.0 * qCos(angle)), qRound(400.0 * qSin(angle)));
}

struct Figures
{
    double moveUs = 0.0;  // one move that adds a node, averaged over drawing whole shapes
    double frameUs = 0.0; // re-applying one frame, per shape (best of five)
};

Figures measure(OvGsManipFreeForm* aManip, int aNodes)
{
    Figures figures;
    QElapsedTimer timer;
    double moves = 0.0;
    for (int s = 0; s < kShapes; ++s) {
        const QPointF centre(1000 + s % 10, 1000 + s / 10);
        send(aManip, QEvent::GraphicsSceneMousePress, outlinePoint(centre, 0, aNodes));
        timer.start();
        for (int i = 1; i < aNodes; ++i)
            send(aManip, QEvent::GraphicsSceneMouseMove, outlinePoint(centre, i, aNodes));
        moves += elapsedMs(timer);
        send(aManip, QEvent::GraphicsSceneMouseRelease, outlinePoint(centre, aNodes - 1, aNodes));
    }
    figures.moveUs = moves * 1000.0 / (kShapes * (aNodes - 1));

    // The best of a few runs: the machine is shared.
    double best = -1.0;
    for (int run = 0; run < 5; ++run) {
        timer.restart();
        aManip->recreateGraphicsObjects(QPoint(), 1, true);
        const double ms = elapsedMs(timer);
        best = best < 0.0 ? ms : qMin(best, ms);
    }
    figures.frameUs = best * 1000.0 / kShapes;
    return figures;
}

// Draws kShapes shapes of aNodes nodes with a fresh manipulator of each kind.
void run(int aNodes, QTextStream& anOut, Figures (&aFigures)[2])
{
    BenchHelper bench;
    auto* form = bench.make<OvGsManipFreeForm>();
    auto* line = bench.make<OvGsManipFreeLine>();

    bench.choose(&OvGuiMeasurementTool::theFreeFormButton);
    aFigures[0] = measure(form, aNodes);
    bench.panel->freehandType = 1;
    bench.choose(&OvGuiMeasurementTool::theDistanceButton);
    aFigures[1] = measure(line, aNodes);

    const char* names[] = { "free form", "free line" };
    for (int k = 0; k < 2; ++k)
        anOut << QString::asprintf("%-9s %4d nodes  move while drawing %8.2f us  frame re-apply %9.2f us/shape\n",
                                   names[k], aNodes, aFigures[k].moveUs, aFigures[k].frameUs);
    anOut.flush();
}

} // namespace

int main(int argc, char** argv)
{
    BenchHelper::useOffscreen();
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << "Free forms and free lines, " << kShapes << " shapes each: one node-adding mouse move while drawing, "
        << "re-applying one frame to every shape\n";
    Figures small[2];
    Figures large[2];
    run(50, out, small);
    run(500, out, large);
    const char* names[] = { "free form", "free line" };
    for (int k = 0; k < 2; ++k)
        out << QString::asprintf("%-9s 500 / 50 nodes: move x%.1f, frame re-apply x%.1f\n", names[k],
                                 large[k].moveUs / small[k].moveUs, large[k].frameUs / small[k].frameUs);
    return 0;
}
