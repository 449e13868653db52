#pragma once

#include "KxGsManipulator.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QList>
#include <QPair>
#include <QPoint>
#include <QPointF>
#include <QUndoStack>
#include <QVariant>

class KxGsEditor;
class KxGsObject;

// Stands in for a measurement manipulator: stores the items it is given as if
// they were in the kernel (so the editor routes presses to them) and records
// what the items and the editor report back.
class ShapeTestManipulator : public KxGsManipulator
{
    Q_OBJECT

public:
    explicit ShapeTestManipulator(QUndoStack* anUndoStack);

    int getObjectType() const override;
    void gsObjectChangedShape(KxGsObject* anObj) override;
    using KxGsManipulator::setGsObjectParamValue;
    bool setGsObjectParamValue(KxGsObject* anObj, unsigned int anId, const QVariant& aValue) override;

    void store(int anIdx, KxGsObject* anObj);
    void forgetAll();

    QList<KxGsObject*> changedShapes;
    QList<QPair<unsigned int, QVariant>> paramWrites;
};

// A shown view on a scene holding an editor with a 400 x 300 picture, the
// editor's item coordinates mapped 1:1 (times the zoom) onto the viewport.
class ShapeScene
{
public:
    ShapeScene();
    ~ShapeScene();

    void setZoom(double aZoom);
    // A point of anItem (item coordinates) in viewport pixels.
    QPoint toViewport(const QGraphicsItem* anItem, const QPointF& aPoint) const;

    // Real mouse events on the viewport, through view, scene and editor.
    void press(const QPoint& aPos);
    void move(const QPoint& aPos);
    void release(const QPoint& aPos);
    // Press at aFrom, move through aPath (offsets from aFrom in viewport pixels),
    // release at the last point.
    void drag(const QPoint& aFrom, const QList<QPoint>& aPath);

    QUndoStack undoStack;
    QGraphicsScene scene;
    QGraphicsView view;
    KxGsEditor* editor;
    ShapeTestManipulator* manipulator;
};
