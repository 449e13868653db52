#pragma once

#include "KxGsManipulator.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QPair>
#include <QUndoStack>

// Stands in for a measurement manipulator: stores the item it is given as if
// it were in the kernel (so the editor routes presses to it) and records what
// the item and the editor report back.
class ShapeTestManipulator : public KxGsManipulator
{
    Q_OBJECT

public:
    explicit ShapeTestManipulator(QUndoStack* anUndoStack) : KxGsManipulator(nullptr, anUndoStack) {}

    int getObjectType() const override { return 64999; }
    void gsObjectChangedShape(KxGsObject* anObj) override { changedShapes.append(anObj); }
    using KxGsManipulator::setGsObjectParamValue;
    bool setGsObjectParamValue(KxGsObject*, unsigned int anId, const QVariant& aValue) override
    {
        paramWrites.append(qMakePair(anId, aValue));
        return true;
    }
    void store(KxGsObject* anObj) { gsObjectMap.insert(1, anObj); }

    QList<KxGsObject*> changedShapes;
    QList<QPair<unsigned int, QVariant>> paramWrites;
};

// A shown view on a scene holding an editor with a 400 x 300 picture.
class ShapeScene
{
public:
    ShapeScene();
    ~ShapeScene();

    // A point of anItem (item coordinates) in viewport pixels.
    QPoint toViewport(const QGraphicsItem* anItem, const QPointF& aPoint) const;
    // Real mouse events on the viewport, through view, scene and editor: a press
    // at aFrom, then moves through aPath (offsets from aFrom) and a release at
    // the last point.
    void press(const QPoint& aFrom);
    void finishDrag(const QPoint& aFrom, const QList<QPoint>& aPath);
    // After a gesture on anObj: none is left running, and only a reshape
    // ("reshaped") was reported, only a move ("moved") written back, or neither.
    void compareReports(KxGsObject* anObj, const QString& anOutcome) const;

    QUndoStack undoStack;
    QGraphicsScene scene;
    QGraphicsView view;
    KxGsEditor* editor;
    ShapeTestManipulator* manipulator;

private:
    void send(QEvent::Type aType, const QPoint& aPos, Qt::MouseButton aButton, Qt::MouseButtons aHeld);
};

// anItem painted on a transparent image of aSize with its origin at anOrigin.
QImage paintedImage(QGraphicsItem& anItem, const QSize& aSize, const QPoint& anOrigin);

// Columns "zoom" and "used": the zoom handed to adjustScale() and the one the
// item should end up scaled by (zooms that are not finite and positive change
// nothing, so 1 stays).
void addZoomRows();
