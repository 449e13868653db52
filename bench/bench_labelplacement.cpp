// Cost of keeping a label clear of its line while a distance is drawn: the
// end of an unfinished line sweeps round its start, so the label keeps being
// run over and re-placed. Compared with the same sweep with the label hidden
// (no placement). Prints figures and the ratio only.

#include "BenchHelper.h"
#include "OvGsDistance.h"
#include "OvGsManipDistance.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QtMath>

namespace {

const auto send = &BenchHelper::send;

// Microseconds per move of a sweep of aMoves moves at radius aRadius.
double sweep(OvGsManipDistance* aManip, int aMoves, double aRadius, bool aLabel)
{
    const QPointF start(1000, 1000);
    send(aManip, QEvent::GraphicsSceneMousePress, start);
    aManip->getInProgressDistance()->setLabelVisible(aLabel);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < aMoves; ++i) {
        const double angle = 2.0 * M_PI * i / 90.0;
        send(aManip, QEvent::GraphicsSceneMouseMove, start + aRadius * QPointF(qCos(angle), qSin(angle)));
    }
    const double perMove = timer.nsecsElapsed() / 1e3 / aMoves;
    send(aManip, QEvent::GraphicsSceneMouseRelease, start + QPointF(aRadius, 0));
    return perMove;
}

} // namespace

int main(int argc, char** argv)
{
    BenchHelper::useOffscreen();
    QApplication app(argc, argv);
    QTextStream out(stdout);

    BenchHelper bench(BenchHelper::View::ActualPixels);
    auto* manip = bench.make<OvGsManipDistance>();
    bench.choose(&OvGuiMeasurementTool::theDistanceButton);

    const int moves = argc > 1 ? qMax(1, QString::fromLocal8Bit(argv[1]).toInt()) : 3600;
    out << "Label placement while drawing: " << moves << " moves sweeping the line round its start\n";
    for (double radius : { 30.0, 120.0, 400.0 }) {
        const double hidden = sweep(manip, moves, radius, false);
        const double placed = sweep(manip, moves, radius, true);
        out << QString::asprintf("radius %5.0f px  hidden label %7.2f us/move  placed label %7.2f us/move  "
                                 "ratio %5.2f\n",
                                 radius, hidden, placed, hidden > 0.0 ? placed / hidden : 0.0);
        out.flush();
    }

    return 0;
}
