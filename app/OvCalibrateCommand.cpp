#include "OvCalibrateCommand.h"

#include "OvViewerMainWindow.h"

#include <QCoreApplication>

OvCalibrateCommand::OvCalibrateCommand(OvViewerMainWindow* aWindow, const State& anOld, const State& aNew)
    : window(aWindow)
    , oldState(anOld)
    , newState(aNew)
{
    setText(QCoreApplication::translate("OvCalibrateCommand", "Calibrate %1 \u00B5m/px").arg(aNew.umPerPixelX));
}

void OvCalibrateCommand::undo()
{
    window->setCalibration(oldState.umPerPixelX, oldState.umPerPixelY, oldState.source);
}

void OvCalibrateCommand::redo()
{
    window->setCalibration(newState.umPerPixelX, newState.umPerPixelY, newState.source);
}
