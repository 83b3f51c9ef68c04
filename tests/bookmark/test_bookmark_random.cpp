#include <bookmark/bookmark_commands.h>
#include <bookmark/bookmark_node.h>
#include <frame/base/converters.h>
#include <tests/support/random_seed.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QUndoStack>
#include <QtTest>

#include <algorithm>

namespace {

// A bookmark as the plain model keeps it.
struct Entry
{
    QString name;
    int top = 0; // of the destination, mm

    friend bool operator==(const Entry& a, const Entry& b) { return a.name == b.name && a.top == b.top; }
};
using Entries = QList<Entry>;

QByteArray Text(const Entries& entries)
{
    QByteArray text;
    for (const Entry& entry : entries)
        text += entry.name.toUtf8() + "@" + QByteArray::number(entry.top) + " ";
    return text;
}

// Plays random steps on the commands and on a plain list whose undo is a list of states.
class Player
{
public:
    Player(ViewFixture* fixture, quint32 seed)
        : fixture(fixture)
        , random(seed)
    {
        fixture->Document()->CreateBookmarkRoot();
        root = fixture->Document()->GetBookmarkRoot();
        states.append(Entries());
    }

    void Step()
    {
        switch (random.bounded(8)) {
        case 0:
        case 1:
            return Add();
        case 2:
            return Change(true);
        case 3:
            return Change(false);
        case 4:
            return Delete();
        case 5:
            return Move();
        case 6:
            Stack()->undo();
            at = std::max(at - 1, 0);
            return;
        default:
            Stack()->redo();
            at = std::min(at + 1, states.size() - 1);
        }
    }

    Entries Real() const
    {
        Entries entries;
        for (int row = 0; row < root->SubNodeCount(); ++row) {
            const G_Bookmark* bookmark = BookmarkOf(root->SubNode(row));
            entries.append({GQ_ToQStringFromUtf8(bookmark->name), static_cast<int>(bookmark->dest->top)});
        }
        return entries;
    }
    Entries Expected() const { return states.at(at); }
    QUndoStack* Stack() const { return fixture->View()->UndoStack(); }

private:
    G_UIContext* Context() const { return fixture->Context(); }
    int Count() const { return root->SubNodeCount(); }

    void Remember(const Entries& entries)
    {
        while (states.size() > at + 1)
            states.removeLast();
        states.append(entries);
        ++at;
    }

    // As the operation and the pane do: the node first, then the command.
    void Add()
    {
        const Entry entry{QStringLiteral("n%1").arg(++made), made};
        auto* bookmark = new G_Bookmark;
        bookmark->name = GQ_ToCAS(entry.name);
        bookmark->dest->top = static_cast<float>(entry.top);
        Stack()->push(new AddBookmarkCommand(root->AddSubNode(Count(), bookmark), Context()));
        Remember(Expected() << entry);
    }

    void Change(bool isRename)
    {
        if (Count() == 0)
            return;
        const int row = random.bounded(Count());
        G_TreeNode* node = root->SubNode(row);
        const G_Bookmark oldItem(*BookmarkOf(node));
        auto* newItem = new G_Bookmark(oldItem);
        Entries entries = Expected();
        ++made;
        if (isRename) {
            entries[row].name = QStringLiteral("r%1").arg(made);
            newItem->name = GQ_ToCAS(entries[row].name);
        } else {
            entries[row].top = made;
            newItem->dest->top = static_cast<float>(made);
        }
        node->SetNodeData(newItem);
        Stack()->push(new ModifyBookmarkCommand(&oldItem, newItem, node, Context()));
        Remember(entries);
    }

    // Random rows, ascending; possibly none.
    QList<int> PickRows()
    {
        QList<int> rows;
        for (int row = 0; row < Count(); ++row) {
            if (random.bounded(4) == 0)
                rows.append(row);
        }
        return rows;
    }

    QList<G_TreeNode*> Nodes(const QList<int>& rows) const
    {
        QList<G_TreeNode*> nodes;
        for (const int row : rows)
            nodes.append(root->SubNode(row));
        return nodes;
    }

    void Delete()
    {
        const QList<int> rows = PickRows();
        Entries entries = Expected();
        for (int i = rows.size() - 1; i >= 0; --i)
            entries.removeAt(rows.at(i));
        Stack()->push(new DeleteBookmarkCommand(Nodes(rows), Context()));
        Remember(entries);
    }

    void Move()
    {
        QList<int> rows = PickRows();
        const bool toTop = random.bounded(3) == 0;
        if (Count() == 0)
            return;
        const int target = random.bounded(Count());
        if (!toTop)
            rows.removeAll(target); // a selected row is never the destination
        Entries kept;
        Entries moved;
        int insertAt = 0;
        for (int row = 0; row < Count(); ++row) {
            (rows.contains(row) ? moved : kept).append(Expected().at(row));
            if (!toTop && row == target)
                insertAt = kept.size();
        }
        Stack()->push(new BatchMoveBookmarkCommand(Nodes(rows), root->SubNode(target), toTop, Context()));
        Remember(kept.mid(0, insertAt) + moved + kept.mid(insertAt));
    }

    ViewFixture* fixture; // not owned
    QRandomGenerator random;
    G_TreeNode* root;
    QList<Entries> states;
    int at = 0; // the state the model is in
    int made = 0;
};

} // namespace

// The commands against a plain list, many steps in random order.
class TestBookmarkRandom : public QObject
{
    Q_OBJECT

private slots:
    void twoThousandRandomStepsKeepTheTreeEqualToAPlainList()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("tetobaisfla.debug=false")); // a line for each dying command
        const quint32 seed = RandomSeed();
        ViewFixture fixture("page 210 297\n");
        Player player(&fixture, seed);
        for (int step = 0; step < 2000; ++step) {
            player.Step();
            const QByteArray where = "step " + QByteArray::number(step) + ": " + Text(player.Real()) + "instead of " +
                                     Text(player.Expected());
            QVERIFY2(player.Real() == player.Expected(), where.constData());
        }
        while (player.Stack()->canUndo())
            player.Stack()->undo();
        QVERIFY(player.Real().isEmpty());
    }
};

TETO_TEST_MAIN(TestBookmarkRandom)
#include "test_bookmark_random.moc"
