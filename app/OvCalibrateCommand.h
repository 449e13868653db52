#pragma once

#include <QUndoCommand>

class OvViewerMainWindow;

// A change of the picture's calibration as one undo step: every label
// follows the calibration both ways.
class OvCalibrateCommand : public QUndoCommand
{
public:
    OvCalibrateCommand(OvViewerMainWindow* aWindow, double anOldUmPerPixel, double aNewUmPerPixel);

    void undo() override;
    void redo() override;

private:
    OvViewerMainWindow* window;
    double oldUmPerPixel;
    double newUmPerPixel;
};
