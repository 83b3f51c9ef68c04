#include "undo_verbs.h"

#include "tree_dump.h"

#include <QUndoStack>

namespace {

QString Difference(const QString& title, const QString& expected, const QString& actual)
{
    return QStringLiteral("%1\n-- expected:\n%2\n-- actual:\n%3").arg(title, expected, actual);
}

} // namespace

bool StepTo(QUndoStack* stack, int index)
{
    while (stack->index() != index) {
        const int earlier = stack->index();
        if (earlier > index)
            stack->undo();
        else
            stack->redo();
        if (stack->index() == earlier)
            return false;
    }
    return true;
}

QString UndoRedoProblem(QUndoStack* stack, const std::function<QString()>& dump, const std::function<void()>& act,
                        int rounds)
{
    const int indexBefore = stack->index();
    const QString before = dump();
    act();
    const int indexAfter = stack->index();
    const QString after = dump();
    if (indexAfter <= indexBefore)
        return QStringLiteral("the action pushed no command");
    if (after == before)
        return Difference(QStringLiteral("the action changed nothing"), QStringLiteral("something else"), after);
    for (int round = 1; round <= rounds; ++round) {
        if (!StepTo(stack, indexBefore) || dump() != before)
            return Difference(QStringLiteral("undo %1 does not bring back the state before").arg(round), before,
                              dump());
        if (!StepTo(stack, indexAfter) || dump() != after)
            return Difference(QStringLiteral("redo %1 does not bring back the state after").arg(round), after, dump());
    }
    return {};
}

QString UndoRedoProblem(QUndoStack* stack, G_TreeNode* root, const std::function<void()>& act, int rounds)
{
    return UndoRedoProblem(
        stack, [root] { return DumpTree(root); }, act, rounds);
}
