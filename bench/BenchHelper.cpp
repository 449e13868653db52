#include "BenchHelper.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxMediaInfo.h"
#include "OvGuiMainWindowBase.h"
#include "OvToolBase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGraphicsSceneMouseEvent>
#include <QImage>
#include <QToolButton>
#include <QUndoStack>

BenchHelper::BenchHelper(View aView)
{
    window = new OvGuiMainWindowBase();
    QImage picture(2000, 2000, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    window->setImage(picture);
    if (aView != View::Hidden)
        window->slotZoomActual();
    if (aView == View::Shown)
        window->show();
    KxMediaInfo media;
    media.setUmPerPixel(0.5);
    KxKernelData::getInstance()->loadMedia(media, picture.size());
    tool = new OvToolBase(window, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                          QStringLiteral("Measurement"), false);
    panel = new OvGuiMeasurementTool();
    tool->setGuiWidget(panel);
    stack = window->getUndoStack();
    stack->clear();
}

BenchHelper::~BenchHelper()
{
    if (mButton)
        (panel->*mButton)->setChecked(false);
    window->getEditor()->setCurrentObject(nullptr, false);
    stack->clear();
    qDeleteAll(mManipulators);
    KxKernelData::getInstance()->removeAllObjects();
    delete tool;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void BenchHelper::choose(QToolButton* OvGuiMeasurementTool::*aButton)
{
    mButton = aButton;
    (panel->*aButton)->setChecked(true);
}

BenchHelper::Cycle BenchHelper::timeCycle(KxGsManipulator* aManipulator, int aCount,
                                          const std::function<void(int)>& aDraw)
{
    Cycle cycle;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < aCount; ++i)
        aDraw(i);
    cycle.create = elapsedMs(timer);
    cycle.stored = KxKernelData::getInstance()->getObjectsOfType(aManipulator->getObjectType()).size();

    timer.restart();
    while (stack->canUndo())
        stack->undo();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    cycle.undoAll = elapsedMs(timer);

    timer.restart();
    while (stack->canRedo())
        stack->redo();
    cycle.redoAll = elapsedMs(timer);

    timer.restart();
    aManipulator->recreateGraphicsObjects(QPoint(), 1, true);
    cycle.frame = elapsedMs(timer);
    return cycle;
}

void BenchHelper::send(KxGsManipulator* aManipulator, QEvent::Type aType, const QPointF& aPos)
{
    QGraphicsSceneMouseEvent event(aType);
    event.setPos(aPos);
    event.setScenePos(aPos);
    event.setButton(aType == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
    event.setButtons(aType == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
    if (aType == QEvent::GraphicsSceneMousePress)
        aManipulator->mousePressEvent(&event);
    else if (aType == QEvent::GraphicsSceneMouseMove)
        aManipulator->mouseMoveEvent(&event);
    else
        aManipulator->mouseReleaseEvent(&event);
}

void BenchHelper::drag(KxGsManipulator* aManipulator, const QPointF& aFrom, const QPointF& aTo)
{
    send(aManipulator, QEvent::GraphicsSceneMousePress, aFrom);
    send(aManipulator, QEvent::GraphicsSceneMouseMove, aTo);
    send(aManipulator, QEvent::GraphicsSceneMouseRelease, aTo);
}

double BenchHelper::elapsedMs(const QElapsedTimer& aTimer)
{
    return aTimer.nsecsElapsed() / 1e6;
}

void BenchHelper::useOffscreen()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

QList<int> BenchHelper::counts(int argc, char** argv, const QList<int>& aDefaults)
{
    const QList<int> asked = argc > 1 ? QList<int>{ QString::fromLocal8Bit(argv[1]).toInt() } : aDefaults;
    QList<int> counts;
    for (int count : asked) {
        if (count > 0)
            counts << count;
    }
    return counts;
}
