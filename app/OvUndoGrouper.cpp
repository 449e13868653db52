#include "OvUndoGrouper.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QEvent>
#include <QUndoCommand>
#include <QUndoStack>
#include <QWidget>

OvUndoGrouper::OvUndoGrouper(QUndoStack* anUndoStack, QObject* aParent)
    : QObject(aParent)
    , stack(anUndoStack)
{
}

void OvUndoGrouper::watch(QWidget* aRoot)
{
    if (!aRoot)
        return;
    for (QAbstractSlider* slider : aRoot->findChildren<QAbstractSlider*>())
        slider->installEventFilter(this);
    for (QAbstractSpinBox* box : aRoot->findChildren<QAbstractSpinBox*>()) {
        box->installEventFilter(this);
        connect(box, &QAbstractSpinBox::editingFinished, this, &OvUndoGrouper::end);
    }
}

void OvUndoGrouper::watchDialog(QWidget* aDialog)
{
    if (aDialog)
        aDialog->installEventFilter(this);
}

bool OvUndoGrouper::isOpen() const
{
    return open;
}

void OvUndoGrouper::begin()
{
    if (open || !stack || (wanted && !wanted()))
        return;
    stack->beginMacro(tr("Panel change"));
    opened = stack->command(stack->count() - 1);
    open = true;
}

void OvUndoGrouper::end()
{
    if (!open)
        return;
    open = false;
    // The stack was cleared meanwhile: the group went with it.
    if (!stack || stack->count() == 0 || stack->command(stack->count() - 1) != opened)
        return;
    // The stack hands out its commands read-only; the macro is still ours to
    // name, and an empty one is marked obsolete so that undo() drops it.
    auto* macro = const_cast<QUndoCommand*>(opened);
    const bool empty = macro->childCount() == 0;
    if (!empty)
        macro->setText(macro->child(0)->text());
    stack->endMacro();
    if (empty) {
        macro->setObsolete(true);
        stack->undo();
    }
}

bool OvUndoGrouper::eventFilter(QObject* anObj, QEvent* anEvent)
{
    if (qobject_cast<QAbstractSlider*>(anObj)) {
        // Press and release arrive here before the slider handles them, so
        // the group is open before its first value change. With tracking on
        // (the default) the value does not change on release.
        if (anEvent->type() == QEvent::MouseButtonPress)
            begin();
        else if (anEvent->type() == QEvent::MouseButtonRelease)
            end();
    } else if (anObj->isWidgetType() && static_cast<QWidget*>(anObj)->isWindow()) {
        if (anEvent->type() == QEvent::Show)
            begin();
        else if (anEvent->type() == QEvent::Hide)
            end();
    } else if (qobject_cast<QAbstractSpinBox*>(anObj)) {
        switch (anEvent->type()) {
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
            begin();
            break;
        case QEvent::FocusOut:
        case QEvent::Hide:
            end();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(anObj, anEvent);
}
