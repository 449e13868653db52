#pragma once

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QVariant>

class KxGsEditor;
class KxGsObject;
class KxKernelData;
class KxKernelObjectData;
class OvGsCircle;
class OvGsDistance;
class OvGsManipDistance;
class OvGuiMainWindowBase;
class OvGuiMeasurementTool;
class OvToolBase;
class QGraphicsView;
class QUndoStack;

// The real surroundings of a distance manipulator: a main window whose view
// shows the editor with a 640 x 480 picture at zoom 1 (picture pixel = view
// pixel), the tool entry, the panel, the window's undo stack and a
// calibration of 0.5 micrometres per pixel. Gestures go through mouse events
// on the view's viewport; positions are given in picture pixels.
class ManipTestHelper
{
public:
    static const int kDistanceType = 66653;
    static const int kCircleType = 66656;

    explicit ManipTestHelper(double anUmPerPixel = 0.5);
    ~ManipTestHelper();
    ManipTestHelper(const ManipTestHelper&) = delete;
    ManipTestHelper& operator=(const ManipTestHelper&) = delete;

    // Chooses the distance button's variant and checks the button.
    void activate(int aFreehandType = 0);

    QPoint viewportPoint(const QPointF& aPicturePoint) const;
    void press(const QPointF& aPoint, Qt::MouseButton aButton = Qt::LeftButton);
    void move(const QPointF& aPoint, Qt::MouseButtons aHeld = Qt::LeftButton);
    void hover(const QPointF& aPoint);
    void release(const QPointF& aPoint, Qt::MouseButton aButton = Qt::LeftButton);
    // Press, one move, release.
    void drag(const QPointF& aFrom, const QPointF& aTo);
    // Press and release at aFrom, hover to aTo, press and release there.
    void clickClick(const QPointF& aFrom, const QPointF& aTo);

    // A stored circle made through the kernel (centre and radius in pixels).
    OvGsCircle* addCircle(const QPointF& aCentre, double aRadius);

    KxKernelObjectData* stored(int anIdx) const;
    QList<int> storedIndices() const;
    // The stored "len" (default key frames) and position.
    QPoint storedLen(int anIdx) const;
    QPoint storedPos(int anIdx) const;
    QVariant storedParam(int anIdx, const QString& aName) const;
    OvGsDistance* item(int anIdx) const;
    // Distance items on the editor, stored or not.
    QList<OvGsDistance*> distanceItems() const;

    OvGuiMainWindowBase* window;
    KxGsEditor* editor;
    QGraphicsView* view;
    QUndoStack* stack;
    OvToolBase* tool;
    OvGuiMeasurementTool* panel;
    OvGsManipDistance* manip;
    KxKernelData* kernel;

private:
    void sendMouse(int aType, const QPointF& aPoint, Qt::MouseButton aButton, Qt::MouseButtons aButtons);
    int circleCount = 0;
};
