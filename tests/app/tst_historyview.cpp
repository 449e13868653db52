// The History list follows the undo stack step by step: rows for the empty
// state and every command, the row of the stack's index current, and a chosen
// row a jump in the history.

#include "OvHistoryView.h"

#include <QtTest>
#include <QUndoCommand>
#include <QUndoStack>

namespace {

QStringList rows(const OvHistoryView& aView)
{
    QStringList texts;
    for (int row = 0; row < aView.model()->rowCount(); ++row)
        texts << aView.model()->index(row, 0).data().toString();
    return texts;
}

void push(QUndoStack& aStack, const QString& aText)
{
    aStack.push(new QUndoCommand(aText));
}

} // namespace

class tst_HistoryView : public QObject
{
    Q_OBJECT

private slots:
    void followsTheStack()
    {
        QUndoStack stack;
        push(stack, "Add Distance 1");
        OvHistoryView view(&stack);
        view.setEmptyLabel("<picture opened>");
        QCOMPARE(rows(view), QStringList({ "<picture opened>", "Add Distance 1" }));

        push(stack, "Add Distance 2");
        push(stack, "Change Distance 1");
        QCoreApplication::processEvents();
        QCOMPARE(rows(view), QStringList({ "<picture opened>", "Add Distance 1", "Add Distance 2", "Change Distance 1" }));
        QCOMPARE(view.currentIndex().row(), 3);

        // Undo keeps the rows that can be redone; a push replaces them.
        stack.undo();
        stack.undo();
        QCoreApplication::processEvents();
        QCOMPARE(view.currentIndex().row(), 1);
        QCOMPARE(rows(view).size(), 4);
        push(stack, "Delete Distance 1");
        QCoreApplication::processEvents();
        QCOMPARE(rows(view), QStringList({ "<picture opened>", "Add Distance 1", "Delete Distance 1" }));
        QCOMPARE(view.currentIndex().row(), 2);

        // Choosing a row jumps there.
        view.setCurrentIndex(view.model()->index(0, 0));
        QCOMPARE(stack.index(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(view.currentIndex().row(), 0);

        stack.clear();
        QCoreApplication::processEvents();
        QCOMPARE(rows(view), QStringList({ "<picture opened>" }));
        QCOMPARE(view.currentIndex().row(), 0);
    }

    void aBurstOfStepsIsFollowedOnce()
    {
        QUndoStack stack;
        OvHistoryView view(&stack);
        for (int i = 1; i <= 500; ++i)
            push(stack, QStringLiteral("Delete Distance %1").arg(i));
        QCOMPARE(view.model()->rowCount(), 501);
        QCOMPARE(view.model()->index(500, 0).data().toString(), QStringLiteral("Delete Distance 500"));
        QCoreApplication::processEvents();
        QCOMPARE(view.currentIndex().row(), 500);
    }
};

QTEST_MAIN(tst_HistoryView)
#include "tst_historyview.moc"
