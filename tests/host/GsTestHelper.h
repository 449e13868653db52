#pragma once

#include "KxGsManipulator.h"
#include "KxParamKeyframeVector.h"
#include "OvGsObject.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QImage>
#include <QPointer>
#include <QRegularExpression>
#include <QSizeF>
#include <QStringList>
#include <QUndoStack>

#include <functional>

class KxGsEditor;
class KxKernelObjectData;
class KxKernelObjectDataDescr;

const int kBoxType = 70001;
const int kOtherBoxType = 70002;

// The box measurement's parameters: the shared five, 5 "size" (QSizeF,
// animated) and 6 "w" (int, constant).
KxKernelObjectDataDescr* newBoxDescriptor(int aType);
// A box's kernel object: visible, green, showing "Area", at aPos, aSize, width 2.
KxKernelObjectData* newBoxData(int aType, bool anAnimated = false, const QPoint& aPos = QPoint(10, 20),
                               const QSizeF& aSize = QSizeF(100, 50));
// Values at aFrame (-1: the defaults) holding only the given parameters.
KxParamKeyframeVector keyframes(qint64 aFrame, const QList<QPair<int, QVariant>>& aValues, int aCount = 7);
// The stored box anIdx of kBoxType, null when there is none.
const KxKernelObjectData* storedBox(int anIdx = 1);
QVariant storedBoxValue(int anId, qint64 aFrame = 0, int anIdx = 1);

// A box measurement: a rectangle from (0, 0) to `size`; a press on it moves
// it as a whole. Records the mouse events it is offered.
class TestGsItem : public OvGsObject
{
    Q_OBJECT

public:
    TestGsItem(KxGsManipulator* aManipulator, QGraphicsItem* aParent, int aType, const QSizeF& aSize);

    int type() const override { return itemType; }
    QRectF boundingRect() const override { return QRectF(QPointF(0, 0), size).adjusted(-2, -2, 2, 2); }
    void paint(QPainter* aPainter, const QStyleOptionGraphicsItem* anOption, QWidget* aWidget) override;
    void adjustScale(double aZoom) override;
    bool isPointOnObject(const QPointF& aPoint, int& aPart, int aTolerance) const override;
    bool isMoving() const override { return moving; }
    void manipMousePressEvent(QMouseEvent* anEvent) override;
    void manipMouseMoveEvent(QMouseEvent* anEvent) override;
    void manipMouseReleaseEvent(QMouseEvent* anEvent) override;

    void setSize(const QSizeF& aSize);
    QSizeF getSize() const { return size; }

    QStringList calls;
    double lastZoom = 0.0;

private:
    int itemType;
    QSizeF size;
    QPointF pressLocal;
    bool moving = false;
};

// A manipulator of box measurements. Items are created from kernel
// notifications; the manipulator logs the editor events it receives.
class TestManipulator : public KxGsManipulator
{
    Q_OBJECT

public:
    TestManipulator(int aType, QUndoStack* anUndoStack);

    int getObjectType() const override { return objectType; }
    QString getObjectTypeName(int) const override { return QStringLiteral("Box"); }
    QVariant getCalculatedValue(const QString& aName, const KxGsObject* anObj, QString& aUnitName) override;
    QList<QVariant> getCalculatedValues(const QStringList& aNames, const KxKernelObjectData* aData,
                                        QStringList& aUnits) override;
    void activate() override;
    void deactivate() override { log << QStringLiteral("deactivate"); }
    void mousePressEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* anEvent) override;
    void hoverEnterEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* anEvent) override;
    void gsObjectChangedShape(KxGsObject*) override { log << QStringLiteral("changedShape"); }

    // Stores a box through an undoable create command; the item appears from
    // the kernel notification.
    TestGsItem* addStored(const QPointF& aPos, const QSizeF& aSize);
    // An item of this manipulator that is not stored (a gesture's item).
    TestGsItem* addUnstored(const QPointF& aPos, const QSizeF& aSize);
    TestGsItem* item(int anIdx) const { return static_cast<TestGsItem*>(gsObjectMap.value(anIdx, nullptr)); }
    // The mouse presses, moves and releases logged, in order.
    QStringList gestures() const { return log.filter(QRegularExpression("^(press|move|release)")); }

    void makeMagnifier(QPointF aPos, QSize aSize, double aScale, bool aRound, QPoint aHotspot)
    {
        createLocalMagnifier(aPos, aSize, aScale, aRound, true, aHotspot);
    }
    void dropMagnifier() { removeLocalMagnifier(); }

    QStringList log;
    QList<qint64> frames;

private slots:
    void slotObjectCreatedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData);
    void slotObjectChangedInKernel(const int aType, const int anIdx, const KxKernelObjectData* aData);
    void slotFrameReadyStopInKernel(qint64 aFrame) { frames << aFrame; }

private:
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

// Every kernel notification as text ("created type:idx"), in arrival order,
// and whether the store held the object as each object signal came
// (created/changed: the very data; before remove: still; removed: no more).
class KernelRecorder
{
public:
    KernelRecorder();

    QStringList log;
    QList<bool> stored;

private:
    QObject context;
};

// A picture in a real view: the editor (the process's one editor) showing a
// 200 x 150 image whose pixel (x, y) has the colour (x, y, 77), in a
// 400 x 300 view without scroll bars, top-left aligned; with a manipulator
// of kBoxType.
class GsFixture
{
public:
    GsFixture();
    ~GsFixture();

    static QImage makeImage(int aWidth = 200, int aHeight = 150);

    // A real mouse move on aWidget carrying the buttons held (QTest's own
    // move does not tell the buttons to widgets).
    static void mouseMove(QWidget* aWidget, const QPoint& aPos, Qt::MouseButtons aButtons = Qt::NoButton);
    // Press, moves through the middle to the end, release: a drag on the
    // viewport; anAfterPress runs between the press and the first move.
    void drag(const QPoint& aFrom, const QPoint& aTo, const std::function<void()>& anAfterPress = {});
    // A left click at an editor-item point.
    void click(const QPointF& anEditorPos, Qt::KeyboardModifiers aModifiers = Qt::NoModifier);

    // Viewport pixel of an editor-item point.
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

// Pixels of anImage within aTolerance of aColor in each channel, counting only
// those at least aMinAlpha opaque.
int countPixelsNear(const QImage& anImage, const QColor& aColor, int aTolerance, int aMinAlpha = 0);
