// Circles and angles next to distances: drawing N of each, undoing and redoing all
// of them, and re-applying a frame to every item. Prints figures and ratios only.

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxMediaInfo.h"
#include "OvGsManipAngle.h"
#include "OvGsManipCircle.h"
#include "OvGsManipDistance.h"
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

#include <functional>

namespace {

struct Figures
{
    double create = 0.0;
    double undoAll = 0.0;
    double redoAll = 0.0;
    double frame = 0.0;
    int stored = 0;
};

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

// Press, drag to aTo, release.
void drag(KxGsManipulator* aManip, const QPointF& aFrom, const QPointF& aTo)
{
    send(aManip, QEvent::GraphicsSceneMousePress, aFrom);
    send(aManip, QEvent::GraphicsSceneMouseMove, aTo);
    send(aManip, QEvent::GraphicsSceneMouseRelease, aTo);
}

double elapsedMs(const QElapsedTimer& aTimer)
{
    return aTimer.nsecsElapsed() / 1e6;
}

// One kind alone on a fresh window: aDraw(i) draws item i with aManip.
Figures run(int aCount, const std::function<KxGsManipulator*(OvToolBase*, OvGuiMeasurementTool*, QUndoStack*)>& aMake,
            QToolButton* OvGuiMeasurementTool::*aButton, const std::function<void(KxGsManipulator*, int)>& aDraw)
{
    KxKernelData* kernel = KxKernelData::getInstance();
    auto* window = new OvGuiMainWindowBase();
    QImage picture(2000, 2000, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    window->setImage(picture);
    KxMediaInfo media;
    media.setUmPerPixel(0.5);
    kernel->loadMedia(media, picture.size());
    auto* tool = new OvToolBase(window, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                                QStringLiteral("Measurement"), false);
    auto* panel = new OvGuiMeasurementTool();
    tool->setGuiWidget(panel);
    QUndoStack* stack = window->getUndoStack();
    stack->clear();
    KxGsManipulator* manip = aMake(tool, panel, stack);
    (panel->*aButton)->setChecked(true);

    Figures figures;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < aCount; ++i)
        aDraw(manip, i);
    figures.create = elapsedMs(timer);
    figures.stored = kernel->getObjectsOfType(manip->getObjectType()).size();

    timer.restart();
    while (stack->canUndo())
        stack->undo();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    figures.undoAll = elapsedMs(timer);

    timer.restart();
    while (stack->canRedo())
        stack->redo();
    figures.redoAll = elapsedMs(timer);

    timer.restart();
    manip->recreateGraphicsObjects(QPoint(), 1, true);
    figures.frame = elapsedMs(timer);

    (panel->*aButton)->setChecked(false);
    window->getEditor()->setCurrentObject(nullptr, false);
    stack->clear();
    delete manip;
    kernel->removeAllObjects();
    delete tool;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return figures;
}

QPointF spot(int anIndex)
{
    return QPointF(60 + (anIndex * 7) % 1800, 60 + (anIndex * 13) % 1800);
}

void print(QTextStream& anOut, const char* aKind, int aCount, const Figures& aFigures, const Figures& aDistance)
{
    const double perItem = 1000.0 / aCount;
    const auto ratio = [](double aValue, double aBase) { return aBase > 0.0 ? aValue / aBase : 0.0; };
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
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << "Circles and angles next to distances: draw N, undo all, redo all, re-apply one frame to every item\n"
        << "(x: time relative to the same number of distance lines)\n";
    QList<int> counts{ 100, 1000, 3000 };
    if (argc > 1)
        counts = { QString::fromLocal8Bit(argv[1]).toInt() };
    for (int count : counts) {
        if (count <= 0)
            continue;
        const Figures distance = run(
            count, [](OvToolBase* t, OvGuiMeasurementTool* p, QUndoStack* s) { return new OvGsManipDistance(t, p, s); },
            &OvGuiMeasurementTool::theDistanceButton,
            [](KxGsManipulator* m, int i) { drag(m, spot(i), spot(i) + QPointF(40, 25)); });
        const Figures circle = run(
            count, [](OvToolBase* t, OvGuiMeasurementTool* p, QUndoStack* s) { return new OvGsManipCircle(t, p, s); },
            &OvGuiMeasurementTool::theRadiusButton, [](KxGsManipulator* m, int i) {
                // A dragged diameter, then the third node moved off it and a click.
                drag(m, spot(i), spot(i) + QPointF(40, 30));
                send(m, QEvent::GraphicsSceneMouseMove, spot(i) + QPointF(10, 50));
                send(m, QEvent::GraphicsSceneMousePress, spot(i) + QPointF(10, 50));
                send(m, QEvent::GraphicsSceneMouseRelease, spot(i) + QPointF(10, 50));
            });
        const Figures angle = run(
            count, [](OvToolBase* t, OvGuiMeasurementTool* p, QUndoStack* s) { return new OvGsManipAngle(t, p, s); },
            &OvGuiMeasurementTool::theAngleButton, [](KxGsManipulator* m, int i) {
                drag(m, spot(i), spot(i) + QPointF(50, 0));
                drag(m, spot(i) + QPointF(0, 10), spot(i) + QPointF(30, -40));
            });
        print(out, "distance", count, distance, distance);
        print(out, "circle", count, circle, distance);
        print(out, "angle", count, angle, distance);
    }
    return 0;
}
