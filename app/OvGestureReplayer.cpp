#include "OvGestureReplayer.h"

#include "KxGsEditor.h"
#include "KxGsManipulator.h"
#include "KxKernelData.h"
#include "OvToolBase.h"
#include "OvUndoGrouper.h"
#include "OvViewerMainWindow.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QGraphicsView>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>
#include <QUndoStack>

namespace {

// Which panel control chooses a tool, and which object type answers it.
struct ToolChoice
{
    const char* name;
    const char* button;
    int menuData;      // -1: the button itself is toggled
    int objectType;    // the manipulator that must answer
};

const ToolChoice kToolChoices[] = {
    { "distance", "theDistanceButton", 0, 66653 },
    { "free-line", "theDistanceButton", 1, 66755 },
    { "multiple", "theDistanceButton", 2, 66658 },
    { "parallel", "theDistanceButton", 3, 66659 },
    { "circle-distance", "theDistanceButton", 4, 66653 },
    { "free-form", "theFreeFormButton", -1, 66655 },
    { "circle", "theRadiusButton", 5, 66656 },
    { "diameter", "theRadiusButton", 6, 66656 },
    { "angle", "theAngleButton", 7, 66651 },
    { "outer-angle", "theAngleButton", 8, 66651 },
};

const char* const kDrawButtons[] = { "theDistanceButton", "theFreeFormButton", "theRadiusButton", "theAngleButton" };

} // namespace

OvGestureReplayer::OvGestureReplayer(OvViewerMainWindow* aWindow)
    : window(aWindow)
{
}

bool OvGestureReplayer::fail(const QString& aReason)
{
    error = aReason;
    return false;
}

QWidget* OvGestureReplayer::panelWidget(const char* anObjectName) const
{
    return window->findChild<QWidget*>(QString::fromLatin1(anObjectName));
}

bool OvGestureReplayer::run(const OvGestureScript& aScript)
{
    error.clear();
    for (const OvScriptCommand& command : aScript.commands()) {
        if (!execute(command)) {
            error = QStringLiteral("line %1: %2").arg(command.line).arg(error);
            return false;
        }
        QApplication::processEvents();
    }
    if (aScript.hasError()) {
        error = aScript.errorText();
        return false;
    }
    return true;
}

bool OvGestureReplayer::execute(const OvScriptCommand& aCommand)
{
    // A style command is one edit on the panel, as a user's slider drag or
    // spin-box entry is: whatever every tool pushes for it is one undo step.
    switch (aCommand.kind) {
    case OvScriptCommand::Unit:
    case OvScriptCommand::Color:
    case OvScriptCommand::Width:
    case OvScriptCommand::Font: {
        OvUndoGrouper* grouper = window->undoGrouper();
        grouper->begin();
        const bool done = executeStyle(aCommand);
        grouper->end();
        return done;
    }
    default:
        return executeOther(aCommand);
    }
}

bool OvGestureReplayer::executeStyle(const OvScriptCommand& aCommand)
{
    switch (aCommand.kind) {
    case OvScriptCommand::Unit:
        return selectUnit(aCommand.text);
    case OvScriptCommand::Color:
        return setColor(aCommand.color);
    case OvScriptCommand::Width:
        return setSpinBox("theSBWidth", int(aCommand.number));
    case OvScriptCommand::Font:
        return setSpinBox("theSBFontSize", int(aCommand.number));
    default:
        return false;
    }
}

bool OvGestureReplayer::executeOther(const OvScriptCommand& aCommand)
{
    KxGsEditor* editor = window->getEditor();
    switch (aCommand.kind) {
    case OvScriptCommand::Tool:
        return selectTool(aCommand.text);
    case OvScriptCommand::Press:
    case OvScriptCommand::Move:
    case OvScriptCommand::Release:
    case OvScriptCommand::Click:
        return sendMouse(aCommand);
    case OvScriptCommand::SelectNone:
        editor->setCurrentObject(nullptr, false);
        return true;
    case OvScriptCommand::Delete:
        editor->deleteSelected();
        return true;
    case OvScriptCommand::Undo:
        if (!window->undoStack()->canUndo())
            return fail(QStringLiteral("nothing to undo"));
        window->undoStack()->undo();
        return true;
    case OvScriptCommand::Redo:
        if (!window->undoStack()->canRedo())
            return fail(QStringLiteral("nothing to redo"));
        window->undoStack()->redo();
        return true;
    case OvScriptCommand::Frame:
        // A series shows the frame's picture too; a single picture only
        // moves the store, so animated measurements can be scripted on it.
        if (window->frameCount() > 1) {
            if (!window->showFrame(int(aCommand.number)))
                return fail(QStringLiteral("frame %1 is not in the series of %2 frames")
                                .arg(aCommand.number).arg(window->frameCount()));
        } else {
            KxKernelData::getInstance()->setCurrentFrame(qint64(aCommand.number));
        }
        return true;
    case OvScriptCommand::Calibrate:
        window->requestCalibration(aCommand.number);
        return true;
    default:
        break;
    }
    return fail(QStringLiteral("unsupported command"));
}

bool OvGestureReplayer::selectTool(const QString& aName)
{
    KxGsEditor* editor = window->getEditor();
    if (aName == QLatin1String("none")) {
        for (const char* name : kDrawButtons) {
            auto* button = qobject_cast<QAbstractButton*>(panelWidget(name));
            if (button && button->isChecked())
                button->click();
        }
        editor->restoreOverrideManipulator();
        return true;
    }

    const ToolChoice* choice = nullptr;
    for (const ToolChoice& candidate : kToolChoices) {
        if (aName == QLatin1String(candidate.name))
            choice = &candidate;
    }
    if (!choice)
        return fail(QStringLiteral("unknown tool '%1'").arg(aName));

    OvToolBase* tool = window->measurementTool();
    auto* button = qobject_cast<QToolButton*>(panelWidget(choice->button));
    if (!tool || !button)
        return fail(QStringLiteral("the Measurement tool is not loaded"));
    if (!tool->isEnabled() || !button->isEnabled())
        return fail(QStringLiteral("the Measurement tool is disabled for this picture (calibrate it first)"));
    if (!tool->isActive())
        tool->slotActivate(true);
    if (!tool->isActive())
        return fail(QStringLiteral("the Measurement tool could not be activated (no calibration)"));
    tool->slotExpandGui(true);

    if (choice->menuData < 0) {
        if (!button->isChecked())
            button->click();
    } else {
        QAction* entry = nullptr;
        if (button->menu()) {
            for (QAction* action : button->menu()->actions()) {
                if (action->data().toInt() == choice->menuData)
                    entry = action;
            }
        }
        if (!entry)
            return fail(QStringLiteral("the panel has no menu entry for '%1'").arg(aName));
        entry->trigger();
    }

    KxGsManipulator* active = editor->getOverrideManipulator();
    if (!active || active->getObjectType() != choice->objectType)
        return fail(QStringLiteral("tool '%1' is not available in this build").arg(aName));
    return true;
}

bool OvGestureReplayer::selectUnit(const QString& aName)
{
    auto* slider = qobject_cast<QSlider*>(panelWidget("theSLUnitType"));
    auto* label = qobject_cast<QLabel*>(panelWidget("theTLUnit"));
    if (!slider || !label)
        return fail(QStringLiteral("the Measurement tool is not loaded"));
    if (!slider->isEnabled())
        return fail(QStringLiteral("no unit can be chosen now (choose a tool or a measurement first)"));

    // Find the slider position that shows the unit without telling anyone:
    // the panel's own signals stay blocked while we look.
    QWidget* panel = slider->parentWidget();
    const int original = slider->value();
    int target = -1;
    {
        const QSignalBlocker blocker(panel);
        for (int position = slider->minimum(); position <= slider->maximum() && target < 0; ++position) {
            slider->setValue(position);
            const QString shown = label->text();
            if (shown == aName || shown == aName + QChar(0x00B2))
                target = position;
        }
        slider->setValue(original);
    }
    if (target < 0)
        return fail(QStringLiteral("unit '%1' is not offered by the current tool").arg(aName));
    if (target != original)
        slider->setValue(target);
    return true;
}

bool OvGestureReplayer::setColor(const QColor& aColor)
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QColorDialog*>(widget)) {
            dialog->setCurrentColor(aColor);
            return true;
        }
    }
    return fail(QStringLiteral("the panel's colour dialog was not found"));
}

bool OvGestureReplayer::setSpinBox(const char* anObjectName, int aValue)
{
    auto* box = qobject_cast<QSpinBox*>(panelWidget(anObjectName));
    if (!box)
        return fail(QStringLiteral("the Measurement tool is not loaded"));
    box->setValue(aValue);
    return true;
}

bool OvGestureReplayer::sendMouse(const OvScriptCommand& aCommand)
{
    QGraphicsView* view = window->getView();
    KxGsEditor* editor = window->getEditor();
    const QPointF scenePoint = editor->mapToScene(aCommand.point);
    view->ensureVisible(QRectF(scenePoint, QSizeF(1.0, 1.0)), 40, 40);
    const QPoint local = view->mapFromScene(scenePoint);
    QWidget* viewport = view->viewport();
    const QPointF global = viewport->mapToGlobal(local);

    auto send = [&](QEvent::Type aType, Qt::MouseButton aButton, Qt::MouseButtons aButtons) {
        QMouseEvent event(aType, QPointF(local), QPointF(local), global, aButton, aButtons, Qt::NoModifier);
        QApplication::sendEvent(viewport, &event);
    };

    switch (aCommand.kind) {
    case OvScriptCommand::Press:
        heldButtons = Qt::LeftButton;
        send(QEvent::MouseButtonPress, Qt::LeftButton, heldButtons);
        break;
    case OvScriptCommand::Move:
        send(QEvent::MouseMove, Qt::NoButton, heldButtons);
        break;
    case OvScriptCommand::Release:
        heldButtons = Qt::NoButton;
        send(QEvent::MouseButtonRelease, Qt::LeftButton, heldButtons);
        break;
    case OvScriptCommand::Click:
        // The pointer arrives first, as it does for a user.
        send(QEvent::MouseMove, Qt::NoButton, heldButtons);
        send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
        heldButtons = Qt::NoButton;
        send(QEvent::MouseButtonRelease, Qt::LeftButton, heldButtons);
        break;
    default:
        break;
    }
    return true;
}
