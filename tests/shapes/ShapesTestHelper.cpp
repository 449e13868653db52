#include "ShapesTestHelper.h"

#include "KxGsEditor.h"
#include "KxGsObject.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>

namespace {

const int kTestType = 64999;

} // namespace

ShapeTestManipulator::ShapeTestManipulator(QUndoStack* anUndoStack)
    : KxGsManipulator(nullptr, anUndoStack)
{
}

int ShapeTestManipulator::getObjectType() const
{
    return kTestType;
}

void ShapeTestManipulator::gsObjectChangedShape(KxGsObject* anObj)
{
    changedShapes.append(anObj);
}

bool ShapeTestManipulator::setGsObjectParamValue(KxGsObject* anObj, unsigned int anId, const QVariant& aValue)
{
    if (getObjectIdx(anObj) < 0)
        return false;
    paramWrites.append(qMakePair(anId, aValue));
    return true;
}

void ShapeTestManipulator::store(int anIdx, KxGsObject* anObj)
{
    gsObjectMap.insert(anIdx, anObj);
}

void ShapeTestManipulator::forgetAll()
{
    gsObjectMap.clear();
}

ShapeScene::ShapeScene()
    : editor(new KxGsEditor())
    , manipulator(nullptr)
{
    QImage picture(400, 300, QImage::Format_RGB32);
    picture.fill(Qt::darkGray);
    editor->setImage(picture);
    scene.addItem(editor);
    scene.setSceneRect(QRectF(0.0, 0.0, 1600.0, 1200.0));
    view.setScene(&scene);
    view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view.setFrameShape(QFrame::NoFrame);
    view.resize(900, 700);
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        qWarning("view not exposed");
    manipulator = new ShapeTestManipulator(&undoStack);
}

ShapeScene::~ShapeScene()
{
    manipulator->forgetAll();
    delete manipulator;
    scene.removeItem(editor);
    delete editor;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ShapeScene::setZoom(double aZoom)
{
    editor->setZoom(aZoom);
}

QPoint ShapeScene::toViewport(const QGraphicsItem* anItem, const QPointF& aPoint) const
{
    return view.mapFromScene(anItem->mapToScene(aPoint));
}

void ShapeScene::press(const QPoint& aPos)
{
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, aPos);
}

void ShapeScene::move(const QPoint& aPos)
{
    // QTest's widget mouseMove only moves the cursor; a drag needs the button.
    QMouseEvent event(QEvent::MouseMove, aPos, view.viewport()->mapToGlobal(aPos), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &event);
}

void ShapeScene::release(const QPoint& aPos)
{
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, aPos);
}

void ShapeScene::drag(const QPoint& aFrom, const QList<QPoint>& aPath)
{
    press(aFrom);
    QPoint last = aFrom;
    for (const QPoint& step : aPath) {
        last = aFrom + step;
        move(last);
    }
    release(last);
}
