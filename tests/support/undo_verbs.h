#pragma once

#include <QString>

#include <functional>

class G_TreeNode;
class QUndoStack;

// Runs the action, undoes everything that it pushed, redoes it, several times over, and compares the dumps: every undo
// must bring back the state before, every redo the state after. Empty when all is well, else what went wrong with the
// two states. An action that pushes nothing or changes nothing is a failure too. The action is left done.
QString UndoRedoProblem(QUndoStack* stack, const std::function<QString()>& dump, const std::function<void()>& act,
                        int rounds = 2);

// The same for a tree that exists already, compared by DumpTree.
QString UndoRedoProblem(QUndoStack* stack, G_TreeNode* root, const std::function<void()>& act, int rounds = 2);

// Fails the running test when UndoRedoProblem finds something. `what` is a tree root or a function that gives a dump.
#define VERIFY_UNDO_REDO(stack, what, act)                                                                             \
    do {                                                                                                               \
        const QString undoRedoProblem = UndoRedoProblem(stack, what, act);                                             \
        QVERIFY2(undoRedoProblem.isEmpty(), qPrintable(undoRedoProblem));                                              \
    } while (false)

// Undoes down to the given index of the stack, or redoes up to it, step by step; false when the stack refuses to move.
bool StepTo(QUndoStack* stack, int index);
