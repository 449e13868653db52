#pragma once

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxParamKeyframeVector.h"
#include "OvGsObject.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QPointer>
#include <QRegularExpression>
#include <QUndoStack>
#include <QtTest>

#include <functional>

class KxKernelObjectDataDescr;

const int kBoxType = 70001;
const int kOtherBoxType = 70002;

// The shared five parameters, 5 "size" (QSizeF, animated), 6 "w" (int, constant).
KxKernelObjectDataDescr* newBoxDescriptor(int aType);
// A box's kernel object: visible, green, showing "Area", at aPos, aSize, width 2.
KxKernelObjectData* newBoxData(int aType, bool anAnimated = false, const QPoint& aPos = QPoint(10, 20),
                               const QSizeF& aSize = QSizeF(100, 50));
// Values at aFrame (-1: the defaults) holding only the given parameters.
KxParamKeyframeVector keyframes(qint64 aFrame, const QList<QPair<int, QVariant>>& aValues, int aCount = 7);
// Box anIdx of kBoxType in the store (null when none) and a value of it.
inline const KxKernelObjectData* storedBox(int anIdx = 1)
{
    return KxKernelData::getInstance()->getObject(kBoxType, anIdx);
}
QVariant storedBoxValue(int anId, qint64 aFrame = 0, int anIdx = 1);

// A box from (0, 0) to `size` that a press moves as a whole; records the mouse events offered.
class TestGsItem : public OvGsObject
{
    Q_OBJECT

public:
    TestGsItem(KxGsManipulator* aManipulator, QGraphicsItem* aParent, int aType, const QSizeF& aSize);

    int type() const override { return itemType; }
    QRectF boundingRect() const override { return QRectF(QPointF(0, 0), size).adjusted(-2, -2, 2, 2); }
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;
    bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const override;
    bool isMoving() const override { return moving; }
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    void manipMouseMoveEvent(QMouseEvent* anEvent) override;
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;

    void setSize(const QSizeF& aSize)
    {
        prepareGeometryChange();
        size = aSize;
    }
    QSizeF getSize() const { return size; }

    QStringList calls;

private:
    int itemType;
    QSizeF size;
    QPointF pressLocal;
    bool moving = false;
};

// Boxes' manipulator: items come from kernel notifications; logs the editor events it gets.
class TestManipulator : public KxGsManipulator
{
    Q_OBJECT

public:
    TestManipulator(int aType, QUndoStack* anUndoStack);

    int getObjectType() const override { return objectType; }
    QString getObjectTypeName(int) const override { return QStringLiteral("Box"); }
    QVariant getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName) override;
    void activate() override { KxGsManipulator::activate(); log << QStringLiteral("activate"); }
    void deactivate() override { log << QStringLiteral("deactivate"); }
    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override { note("press", anEvent->pos(), anEvent); }
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override { note("release", anEvent->pos(), anEvent); }
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override { note("move", anEvent->pos(), anEvent); }
    void gsObjectChangedShape(KxGsObject*) override { log << QStringLiteral("changedShape"); }

    // Stores a box by an undoable command; its item comes from the notification.
    TestGsItem* addStored(const QPointF& aPos, const QSizeF& aSize);
    // An item that is not stored (as a gesture's item).
    TestGsItem* addUnstored(const QPointF& aPos, const QSizeF& aSize)
    {
        auto* box = new TestGsItem(this, editor, objectType, aSize);
        box->setPos(aPos);
        return box;
    }
    TestGsItem* item(int anIdx) const { return static_cast<TestGsItem*>(gsObjectMap.value(anIdx, nullptr)); }
    // The mouse presses, moves and releases logged, in order.
    QStringList gestures() const { return log.filter(QRegularExpression("^(press|move|release)")); }

    void makeMagnifier(QPointF aPos, QSize aSize, double aScale, bool aRound, QPoint aHotspot)
    {
        createLocalMagnifier(aPos, aSize, aScale, aRound, true, aHotspot);
    }
    void dropMagnifier() { removeLocalMagnifier(); }

    QStringList log;

private slots:
    void slotObjectCreatedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData);
    void slotObjectChangedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData);

private:
    void note(const char* aWhat, const QPointF& aPos, QEvent* anEvent);
    void applyKeyframes(TestGsItem* anItem, const KxKernelObjectData* aData);

    int objectType;
};

// A manipulator that only names its type ("Ruler") and registers nothing.
class BareManipulator : public KxGsManipulator
{
public:
    explicit BareManipulator(int aType) : KxGsManipulator(nullptr, nullptr), objectType(aType) {}
    int getObjectType() const override { return objectType; }
    QString getObjectTypeName(int) const override { return QStringLiteral("Ruler"); }

private:
    int objectType;
};

// Kernel notifications as text ("created type:idx"), and per object signal whether the store
// was right then (created, changed: holds the very data; before remove: still; removed: not).
class KernelRecorder
{
public:
    KernelRecorder();

    QStringList log;
    QList<bool> stored;

private:
    QObject context;
};

// The process's one editor showing a 200 x 150 image, pixel (x, y) coloured (x, y, 77), top-left in a
// 400 x 300 view without scroll bars; with a manipulator of kBoxType.
class GsFixture
{
public:
    GsFixture();
    ~GsFixture();

    static QImage makeImage(int aWidth = 200, int aHeight = 150);

    // A left drag on the viewport through the middle; anAfterPress runs after the press.
    void drag(const QPoint& aFrom, const QPoint& aTo, const std::function<void()>& anAfterPress = {});
    // A left click at an editor-item point, and the viewport pixel of such a point.
    void click(const QPointF& anEditorPos, Qt::KeyboardModifiers aModifiers = Qt::NoModifier);
    QPoint toViewport(const QPointF& anEditorPos) const;

    TestManipulator* addManipulator(int aType);

    QGraphicsScene scene;
    QGraphicsView* view;
    KxGsEditor* editor;
    QUndoStack stack;
    QList<QPointer<KxGsManipulator>> manipulators;
    TestManipulator* manip;
    // Every current object the editor announced.
    QList<const KxGsObject*> currentChanges;
};

// Pixels at least aMinAlpha opaque and within aTolerance of aColor in each channel.
int countPixelsNear(const QImage& anImage, const QColor& aColor, int aTolerance, int aMinAlpha = 0);
