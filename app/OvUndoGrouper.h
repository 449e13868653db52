#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QUndoCommand;
class QUndoStack;
class QWidget;

// Makes one edit on a panel one undo step: every command pushed while a
// slider is held (press to release), or while a spin box is being edited
// (from the first key, click or wheel turn until Return or leaving the box),
// or while a watched dialog is open, lands in one macro. The macro takes the text of its first command; a group
// in which nothing was pushed leaves no trace on the stack. The commands
// themselves are the ones the tool pushes, unchanged.
class OvUndoGrouper : public QObject
{
    Q_OBJECT

public:
    OvUndoGrouper(QUndoStack* anUndoStack, QObject* aParent = nullptr);

    // Watches every slider and spin box inside aRoot (as it is now).
    void watch(QWidget* aRoot);
    // One group while aDialog is shown (a colour dialog that follows the
    // choice live).
    void watchDialog(QWidget* aDialog);
    // Groups open only while aWanted() holds (e.g. something is selected, so
    // the edit will push commands): opening a macro drops the redo history.
    void setWanted(const std::function<bool()>& aWanted) { wanted = aWanted; }

    // Opens a group (nothing when one is open) / closes the open one. The
    // window closes the group before it clears the stack or asks about it.
    void begin();
    void end();
    bool isOpen() const;

protected:
    bool eventFilter(QObject* anObj, QEvent* anEvent) override;

private:
    QPointer<QUndoStack> stack;
    std::function<bool()> wanted;
    const QUndoCommand* opened = nullptr;
    bool open = false;
};
