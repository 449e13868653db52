#pragma once

#include "OvGuiMeasurementTool.h"

#include <QEvent>
#include <QList>
#include <QPointF>

#include <functional>

class KxGsManipulator;
class OvGuiMainWindowBase;
class OvToolBase;
class QElapsedTimer;
class QToolButton;
class QUndoStack;

// What a manipulator needs to draw, without the viewer: a main window showing
// a grey 2000 x 2000 picture calibrated at 0.5 um per pixel, the Measurement
// tool entry with its panel, and the window's undo stack. Manipulators made
// here are deleted with the rest, newest first.
class BenchHelper
{
public:
    enum class View {
        Hidden,       // the window is never shown
        ActualPixels, // zoom 1, window hidden
        Shown,        // zoom 1 and shown: buttons get their real hit areas
    };

    // Draw, undo all, redo all and one frame re-applied, in milliseconds.
    struct Cycle
    {
        double create = 0.0;
        double undoAll = 0.0;
        double redoAll = 0.0;
        double frame = 0.0;
        int stored = 0; // measurements stored after drawing
    };

    explicit BenchHelper(View aView = View::Hidden);
    ~BenchHelper();
    BenchHelper(const BenchHelper&) = delete;
    BenchHelper& operator=(const BenchHelper&) = delete;

    template <typename Manipulator>
    Manipulator* make()
    {
        auto* manipulator = new Manipulator(tool, panel, stack);
        mManipulators.prepend(manipulator);
        return manipulator;
    }
    // Checks a panel button; the last one checked is unchecked on teardown.
    void choose(QToolButton* OvGuiMeasurementTool::*aButton);

    // Draws aCount items with aManipulator (aDraw(i) draws item i), then
    // undoes and redoes all of them and re-applies one frame to every item.
    Cycle timeCycle(KxGsManipulator* aManipulator, int aCount, const std::function<void(int)>& aDraw);

    // One scene mouse event of aType at aPos, the left button as a user holds it.
    static void send(KxGsManipulator* aManipulator, QEvent::Type aType, const QPointF& aPos);
    // Press, drag to aTo, release.
    static void drag(KxGsManipulator* aManipulator, const QPointF& aFrom, const QPointF& aTo);
    static double elapsedMs(const QElapsedTimer& aTimer);
    // aValue over aBase, 0 without a base.
    static double ratio(double aValue, double aBase) { return aBase > 0.0 ? aValue / aBase : 0.0; }

    // Offscreen unless a platform is chosen; call before creating the application.
    static void useOffscreen();
    // The counts to run: aDefaults, or the one given as first argument; none below 1.
    static QList<int> counts(int argc, char** argv, const QList<int>& aDefaults);

    OvGuiMainWindowBase* window = nullptr;
    OvToolBase* tool = nullptr;
    OvGuiMeasurementTool* panel = nullptr;
    QUndoStack* stack = nullptr;

private:
    QList<KxGsManipulator*> mManipulators;
    QToolButton* OvGuiMeasurementTool::*mButton = nullptr;
};
