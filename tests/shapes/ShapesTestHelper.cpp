#include "ShapesTestHelper.h"

#include "KxGsObject.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QTest>

ShapeScene::ShapeScene()
    : editor(new KxGsEditor())
{
    QImage picture(400, 300, QImage::Format_RGB32);
    picture.fill(Qt::darkGray);
    editor->setImage(picture);
    scene.addItem(editor);
    view.setScene(&scene);
    view.resize(900, 700);
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        qWarning("view not exposed");
    // After the editor is set up: a manipulator takes the editor there is.
    manipulator = new ShapeTestManipulator(&undoStack);
}

ShapeScene::~ShapeScene()
{
    delete manipulator;
    scene.removeItem(editor);
    delete editor;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QPoint ShapeScene::toViewport(const QGraphicsItem* anItem, const QPointF& aPoint) const
{
    return view.mapFromScene(anItem->mapToScene(aPoint));
}

void ShapeScene::send(QEvent::Type aType, const QPoint& aPos, Qt::MouseButton aButton, Qt::MouseButtons aHeld)
{
    QMouseEvent event(aType, aPos, view.viewport()->mapToGlobal(aPos), aButton, aHeld, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &event);
}

void ShapeScene::press(const QPoint& aFrom)
{
    send(QEvent::MouseButtonPress, aFrom, Qt::LeftButton, Qt::LeftButton);
}

void ShapeScene::finishDrag(const QPoint& aFrom, const QList<QPoint>& aPath)
{
    QPoint last = aFrom;
    for (const QPoint& step : aPath)
        send(QEvent::MouseMove, last = aFrom + step, Qt::NoButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, last, Qt::LeftButton, Qt::NoButton);
}

void ShapeScene::compareReports(KxGsObject* anObj, const QString& anOutcome) const
{
    using Writes = QList<QPair<unsigned int, QVariant>>;
    QVERIFY(!anObj->isMoving() && !anObj->isReshaping());
    const bool reshaped = anOutcome == QLatin1String("reshaped");
    QCOMPARE(manipulator->changedShapes, reshaped ? QList<KxGsObject*>{anObj} : QList<KxGsObject*>());
    const bool moved = anOutcome == QLatin1String("moved");
    QCOMPARE(manipulator->paramWrites, moved ? Writes{qMakePair(3u, QVariant(anObj->pos().toPoint()))} : Writes());
}

QImage paintedImage(QGraphicsItem& anItem, const QSize& aSize, const QPoint& anOrigin)
{
    QImage image(aSize, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(anOrigin);
    QStyleOptionGraphicsItem option;
    anItem.paint(&painter, &option, nullptr);
    painter.end();
    return image;
}

void addZoomRows()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("used");

    QTest::newRow("zoom 2 halves") << 2.0 << 2.0;
    QTest::newRow("zoom 0.25 quadruples") << 0.25 << 0.25;
    QTest::newRow("zero zoom is ignored") << 0.0 << 1.0;
    QTest::newRow("infinite zoom is ignored") << qInf() << 1.0;
    QTest::newRow("NaN zoom is ignored") << qQNaN() << 1.0;
}
