#pragma once

#include <QString>
#include <QUndoCommand>

class OvViewerMainWindow;

// A change of the picture's calibration as one undo step: every label
// follows the calibration both ways, and undo brings back the calibration
// replaced (a file's x and y sizes included) with where it came from.
class OvCalibrateCommand : public QUndoCommand
{
public:
    struct State
    {
        double umPerPixelX = 0.0;
        double umPerPixelY = 0.0;
        QString source;
    };

    OvCalibrateCommand(OvViewerMainWindow* aWindow, const State& anOld, const State& aNew);

    void undo() override;
    void redo() override;

private:
    OvViewerMainWindow* window;
    State oldState;
    State newState;
};
