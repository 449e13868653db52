#include "OvCalibrateCommand.h"

#include "OvViewerMainWindow.h"

#include <QCoreApplication>

OvCalibrateCommand::OvCalibrateCommand(OvViewerMainWindow* aWindow, double anOldUmPerPixel, double aNewUmPerPixel)
    : window(aWindow)
    , oldUmPerPixel(anOldUmPerPixel)
    , newUmPerPixel(aNewUmPerPixel)
{
    setText(QCoreApplication::translate("OvCalibrateCommand", "Calibrate %1 \u00B5m/px").arg(aNewUmPerPixel));
}

void OvCalibrateCommand::undo()
{
    window->setCalibration(oldUmPerPixel);
}

void OvCalibrateCommand::redo()
{
    window->setCalibration(newUmPerPixel);
}
