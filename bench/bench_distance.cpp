// Distance manipulator throughput: drawing N lines, undoing and redoing all of
// them, and re-applying a frame to every item. Prints figures only.

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxMediaInfo.h"
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

#include <cstdio>

namespace {

void send(OvGsManipDistance* aManip, QEvent::Type aType, const QPointF& aPos)
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

void run(int aCount, QTextStream& anOut)
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
    auto* manip = new OvGsManipDistance(tool, panel, stack);
    panel->theDistanceButton->setChecked(true);

    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < aCount; ++i) {
        const QPointF start(10 + (i * 7) % 1900, 10 + (i * 13) % 1900);
        send(manip, QEvent::GraphicsSceneMousePress, start);
        send(manip, QEvent::GraphicsSceneMouseMove, start + QPointF(40, 25));
        send(manip, QEvent::GraphicsSceneMouseRelease, start + QPointF(40, 25));
    }
    const double create = elapsedMs(timer);

    timer.restart();
    while (stack->canUndo())
        stack->undo();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const double undoAll = elapsedMs(timer);

    timer.restart();
    while (stack->canRedo())
        stack->redo();
    const double redoAll = elapsedMs(timer);

    timer.restart();
    manip->recreateGraphicsObjects(QPoint(), 1, true);
    const double recreate = elapsedMs(timer);

    const double perItem = 1000.0 / aCount;
    anOut << QString::asprintf("%6d  create %9.2f ms (%7.2f us/line)  undo all %9.2f ms (%7.2f us/line)  "
                               "redo all %9.2f ms (%7.2f us/line)  frame %8.2f ms (%6.2f us/line)\n",
                               aCount, create, create * perItem, undoAll, undoAll * perItem, redoAll,
                               redoAll * perItem, recreate, recreate * perItem);
    anOut.flush();

    panel->theDistanceButton->setChecked(false);
    window->getEditor()->setCurrentObject(nullptr, false);
    stack->clear();
    delete manip;
    kernel->removeAllObjects();
    delete tool;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << "Distance lines: draw, undo all, redo all, re-apply one frame to every item\n";
    QList<int> counts{ 100, 1000, 5000 };
    if (argc > 1)
        counts = { QString::fromLocal8Bit(argv[1]).toInt() };
    for (int count : counts) {
        if (count > 0)
            run(count, out);
    }
    return 0;
}
