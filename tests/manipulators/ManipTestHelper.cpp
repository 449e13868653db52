#include "ManipTestHelper.h"

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "KxMediaInfo.h"
#include "OvGsCircle.h"
#include "OvGsDistance.h"
#include "OvGsManipDistance.h"
#include "OvGuiMainWindowBase.h"
#include "OvGuiMeasurementTool.h"
#include "OvToolBase.h"

#include <QApplication>
#include <QGraphicsView>
#include <QImage>
#include <QMouseEvent>
#include <QTest>
#include <QToolButton>
#include <QUndoStack>

ManipTestHelper::ManipTestHelper(double anUmPerPixel)
{
    kernel = KxKernelData::getInstance();
    window = new OvGuiMainWindowBase();
    window->resize(1000, 800);
    QImage picture(640, 480, QImage::Format_RGB32);
    picture.fill(Qt::darkGray);
    window->setImage(picture);
    window->slotZoomActual();
    editor = window->getEditor();
    view = window->getView();
    view->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    stack = window->getUndoStack();
    window->show();

    KxMediaInfo media;
    media.setUmPerPixel(anUmPerPixel);
    media.setFileName(QStringLiteral("picture.png"));
    kernel->loadMedia(media, picture.size());
    stack->clear();

    tool = new OvToolBase(window, QStringLiteral("tool-measure"), QStringLiteral("Measurement"),
                          QStringLiteral("Measurement"), false);
    panel = new OvGuiMeasurementTool();
    tool->setGuiWidget(panel);
    manip = new OvGsManipDistance(tool, panel, stack);
}

ManipTestHelper::~ManipTestHelper()
{
    editor->restoreOverrideManipulator();
    editor->setCurrentObject(nullptr, false);
    stack->clear();
    delete manip;
    for (KxGsObject* obj : editor->getAllChildGsObjects())
        delete obj;
    kernel->removeAllObjects();
    // The tool entry goes before the window: the window's own clean-up of its
    // entries must not run on a window that is half destroyed.
    delete tool;
    delete window;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ManipTestHelper::activate(int aFreehandType)
{
    panel->freehandType = aFreehandType;
    panel->theDistanceButton->setChecked(true);
}

QPoint ManipTestHelper::viewportPoint(const QPointF& aPicturePoint) const
{
    return view->mapFromScene(editor->mapToScene(aPicturePoint));
}

void ManipTestHelper::sendMouse(int aType, const QPointF& aPoint, Qt::MouseButton aButton,
                                Qt::MouseButtons aButtons)
{
    const QPoint local = viewportPoint(aPoint);
    QWidget* viewport = view->viewport();
    QMouseEvent event(static_cast<QEvent::Type>(aType), local, viewport->mapToGlobal(local), aButton, aButtons,
                      Qt::NoModifier);
    QApplication::sendEvent(viewport, &event);
}

void ManipTestHelper::press(const QPointF& aPoint, Qt::MouseButton aButton)
{
    QTest::mousePress(view->viewport(), aButton, Qt::NoModifier, viewportPoint(aPoint));
}

void ManipTestHelper::move(const QPointF& aPoint, Qt::MouseButtons aHeld)
{
    sendMouse(QEvent::MouseMove, aPoint, Qt::NoButton, aHeld);
}

void ManipTestHelper::hover(const QPointF& aPoint)
{
    sendMouse(QEvent::MouseMove, aPoint, Qt::NoButton, Qt::NoButton);
}

void ManipTestHelper::release(const QPointF& aPoint, Qt::MouseButton aButton)
{
    QTest::mouseRelease(view->viewport(), aButton, Qt::NoModifier, viewportPoint(aPoint));
}

void ManipTestHelper::drag(const QPointF& aFrom, const QPointF& aTo)
{
    press(aFrom);
    move(aTo);
    release(aTo);
}

void ManipTestHelper::clickClick(const QPointF& aFrom, const QPointF& aTo)
{
    press(aFrom);
    release(aFrom);
    hover(aTo);
    press(aTo);
    release(aTo);
}

OvGsCircle* ManipTestHelper::addCircle(const QPointF& aCentre, double aRadius)
{
    // Two rim points on a diameter make a circle around their midpoint.
    auto* circle = new OvGsCircle(manip, editor, QStringLiteral("circle%1").arg(++circleCount), true);
    circle->setNode(0, aCentre - QPointF(aRadius, 0.0));
    circle->setNode(1, aCentre + QPointF(aRadius, 0.0));
    circle->setNode(2, aCentre + QPointF(aRadius, 0.0));
    return circle;
}

KxKernelObjectData* ManipTestHelper::stored(int anIdx) const
{
    return kernel->getObject(kDistanceType, anIdx);
}

QList<int> ManipTestHelper::storedIndices() const
{
    return kernel->getObjectsOfType(kDistanceType).keys();
}

QVariant ManipTestHelper::storedParam(int anIdx, const QString& aName) const
{
    const KxKernelObjectData* data = stored(anIdx);
    if (!data)
        return QVariant();
    return kernel->getDataDescriptor(kDistanceType)->getValue(data->getDefaultKeyframes(), aName);
}

QPoint ManipTestHelper::storedLen(int anIdx) const
{
    return storedParam(anIdx, QStringLiteral("len")).toPoint();
}

QPoint ManipTestHelper::storedPos(int anIdx) const
{
    return storedParam(anIdx, QStringLiteral("pos")).toPoint();
}

OvGsDistance* ManipTestHelper::item(int anIdx) const
{
    return static_cast<OvGsDistance*>(manip->getGsObject(anIdx));
}

QList<OvGsDistance*> ManipTestHelper::distanceItems() const
{
    QList<OvGsDistance*> items;
    for (KxGsObject* obj : editor->getAllChildGsObjects()) {
        if (obj->type() == kDistanceType)
            items.append(static_cast<OvGsDistance*>(obj));
    }
    return items;
}
