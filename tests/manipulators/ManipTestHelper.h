#pragma once

#include "KxGsEditor.h"
#include "KxKernelData.h"
#include "KxKernelObjectData.h"
#include "KxKernelObjectDataDescr.h"
#include "OvGsCircle.h"
#include "OvGsDistance.h"
#include "OvGsManipDistance.h"
#include "OvGuiMeasurementTool.h"
#include "OvToolBase.h"

#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

class OvGuiMainWindowBase;
class QGraphicsView;

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

    ManipTestHelper();
    ~ManipTestHelper();

    // Chooses the distance button's variant and checks the button.
    void activate(int aFreehandType = 0)
    {
        panel->freehandType = aFreehandType;
        panel->theDistanceButton->setChecked(true);
    }
    // The panel's line width, font size, colour and unit.
    QVariantList panelStyle() const
    {
        return { panel->getLineWidth(), panel->getFontSize(), panel->getColor(), panel->getCurrentUnit() };
    }
    // Runs a gesture script: "p" press, "P" right press, "m" move with the left
    // button held, "h" move without buttons, "r" release; each followed by x,y,
    // steps separated by spaces.
    void play(const QString& aScript);
    // A circle item of another kind on the editor, not stored.
    OvGsCircle* addCircle(const QPointF& aCentre, double aRadius);

    KxKernelObjectData* stored(int anIdx) const { return kernel->getObject(kDistanceType, anIdx); }
    QList<int> storedIndices() const { return kernel->getObjectsOfType(kDistanceType).keys(); }
    // A parameter of the default key frames of a stored line.
    QVariant storedParam(int anIdx, const QString& aName) const;
    QPoint storedLen(int anIdx) const { return storedParam(anIdx, "len").toPoint(); }
    QPoint storedPos(int anIdx) const { return storedParam(anIdx, "pos").toPoint(); }
    OvGsDistance* item(int anIdx) const { return static_cast<OvGsDistance*>(manip->getGsObject(anIdx)); }
    // Line anIdx in the kernel and on the editor, for whole-state comparisons:
    // "stored 100,100 by 60,80; item 100,100 by 60,80".
    QString lineState(int anIdx) const;
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
    int circleCount = 0;
};
