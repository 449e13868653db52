#pragma once

#include "OvGestureScript.h"

#include <QString>

class OvViewerMainWindow;
class QAbstractButton;
class QWidget;

// Replays a gesture script on the viewer as a user would: mouse events go to
// the view's viewport at the on-screen position of the image pixel, tools are
// chosen by clicking the panel's buttons and menu entries (found by object
// name), styles are set on the panel's widgets and the colour dialog.
class OvGestureReplayer
{
public:
    explicit OvGestureReplayer(OvViewerMainWindow* aWindow);

    // Runs the script's commands; stops at the first command that cannot be
    // carried out, or at the script's bad line. False with "line N: reason".
    bool run(const OvGestureScript& aScript);
    QString errorText() const { return error; }

private:
    bool execute(const OvScriptCommand& aCommand);
    bool executeStyle(const OvScriptCommand& aCommand);
    bool executeOther(const OvScriptCommand& aCommand);
    bool selectTool(const QString& aName);
    bool selectUnit(const QString& aName);
    bool setColor(const QColor& aColor);
    bool setSpinBox(const char* anObjectName, int aValue);
    bool sendMouse(const OvScriptCommand& aCommand);
    bool fail(const QString& aReason);
    QWidget* panelWidget(const char* anObjectName) const;

    OvViewerMainWindow* window;
    Qt::MouseButtons heldButtons = Qt::NoButton;
    QString error;
};
