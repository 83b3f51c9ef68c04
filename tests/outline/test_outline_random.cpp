#include "outline_operations_set.h"

#include <frame/base/converters.h>
#include <frame/json/ovjson.h>
#include <ofd/ofd_document.h>
#include <outline/outline_commands.h>
#include <outline/outline_json.h>
#include <outline/outline_node.h>
#include <tests/support/random_seed.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <common/public_method.h>

#include <QLoggingCategory>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

#include <algorithm>
#include <vector>

namespace {

// An entry as the plain model keeps it: a value tree, so that a state is a copy.
struct Entry
{
    QString title;
    int destinations = 0;
    std::vector<Entry> children;

    friend bool operator==(const Entry& a, const Entry& b)
    {
        return a.title == b.title && a.destinations == b.destinations && a.children == b.children;
    }
};

QByteArray Text(const Entry& entry, int depth = 0)
{
    QByteArray text =
        QByteArray(2 * depth, ' ') + entry.title.toUtf8() + " " + QByteArray::number(entry.destinations) + "\n";
    for (const Entry& child : entry.children)
        text += Text(child, depth + 1);
    return text;
}

Entry Copy(const G_TreeNode* node)
{
    Entry entry;
    entry.title = OutlineTitle(node);
    if (const G_OutlineItem* item = OutlineItemOf(node))
        entry.destinations = item->actions.GetSize();
    for (int row = 0; row < node->SubNodeCount(); ++row)
        entry.children.push_back(Copy(node->SubNode(row)));
    return entry;
}

using Rows = QList<int>; // from the top level down

Entry& At(Entry& root, const Rows& rows)
{
    Entry* entry = &root;
    for (const int row : rows)
        entry = &entry->children[static_cast<size_t>(row)];
    return *entry;
}

Rows ParentOf(const Rows& rows)
{
    return rows.mid(0, rows.size() - 1);
}

bool IsBelow(const Rows& rows, const Rows& above)
{
    return rows.size() > above.size() && rows.mid(0, above.size()) == above;
}

void CollectPlaces(const Entry& entry, const Rows& rows, QList<Rows>& places)
{
    for (size_t row = 0; row < entry.children.size(); ++row) {
        const Rows below = Rows(rows) << static_cast<int>(row);
        places.append(below);
        CollectPlaces(entry.children[row], below, places);
    }
}

// Plays random steps by the operations on a document and by hand on a plain tree whose undo is a list of states.
class Player
{
public:
    // On the current view's document; the view outlives the player.
    Player(G_UIContext* context, quint32 seed)
        : context(context)
        , view(context->CurrentDocView())
        , random(seed)
    {
        view->CreateUndoStack();
        view->GDocument()->CreateOutlineRoot();
        root = view->GDocument()->GetOutlineRoot();
        states.push_back(Copy(root));
    }

    void Step()
    {
        switch (random.bounded(12)) {
        case 0:
        case 1:
            return Add();
        case 2:
            return AddSub();
        case 3:
            return Rename();
        case 4:
            return ResetPos();
        case 5:
        case 6:
            return Move();
        case 7:
            return Delete();
        case 8:
            return BatchAdd();
        case 9:
        case 10:
            Stack()->undo();
            at = std::max(at - 1, 0);
            return;
        default:
            Stack()->redo();
            at = std::min(at + 1, static_cast<int>(states.size()) - 1);
        }
    }

    Entry Real() const { return Copy(root); }
    const Entry& Expected() const { return states.at(static_cast<size_t>(at)); }
    QUndoStack* Stack() const { return view->UndoStack(); }

private:
    void Remember(const Entry& state)
    {
        states.resize(static_cast<size_t>(at) + 1);
        states.push_back(state);
        ++at;
    }

    QList<Rows> Places() const
    {
        QList<Rows> places;
        CollectPlaces(Expected(), {}, places);
        return places;
    }

    // A random entry; no rows when there is none.
    Rows Pick()
    {
        const QList<Rows> places = Places();
        return places.isEmpty() ? Rows() : places.at(random.bounded(places.size()));
    }

    // Some random entries in the tree's order, none below another; possibly none.
    QList<Rows> PickSome()
    {
        QList<Rows> picked;
        for (const Rows& place : Places()) {
            const auto isAbove = [&place](const Rows& above) { return IsBelow(place, above); };
            if (random.bounded(5) == 0 && std::none_of(picked.cbegin(), picked.cend(), isAbove))
                picked.append(place);
        }
        return picked;
    }

    G_TreeNode* Node(const Rows& rows) const
    {
        G_TreeNode* node = root;
        for (const int row : rows)
            node = node->SubNode(row);
        return node;
    }

    QList<G_TreeNode*> Nodes(const QList<Rows>& places) const
    {
        QList<G_TreeNode*> nodes;
        for (const Rows& rows : places)
            nodes.append(Node(rows));
        return nodes;
    }

    G_Operation* Make(const char* name, const QString& json)
    {
        G_Operation* operation = context->CreateOperationByName(name, QString());
        operation->Params->Add("jsonParam", json);
        return operation;
    }

    static void Run(G_Operation* operation)
    {
        operation->PerformAction();
        operation->DeleteLater();
    }

    QString UniqueTitle(const QString& title) const
    {
        QStringList titles;
        for (const Rows& rows : Places())
            titles.append(At(const_cast<Entry&>(Expected()), rows).title);
        QString unique = title;
        for (int n = 1; titles.contains(unique); ++n)
            unique = title + "(" + QString::number(n) + ")";
        return unique;
    }

    void Add()
    {
        const Rows behind = Pick();
        Entry state = Expected();
        Entry& parent = behind.isEmpty() ? state : At(state, ParentOf(behind));
        const size_t row = behind.isEmpty() ? parent.children.size() : static_cast<size_t>(behind.last()) + 1;
        parent.children.insert(parent.children.begin() + static_cast<long>(row), {UniqueTitle("new outline"), 1, {}});
        const int packedRow = behind.isEmpty() ? -1 : behind.last();
        Run(Make("d_outline_add", OutlineJson::AddText(packedRow, Node(behind.isEmpty() ? Rows() : ParentOf(behind)))));
        Remember(state);
    }

    void AddSub()
    {
        const Rows above = Pick();
        Entry state = Expected();
        At(state, above).children.push_back({UniqueTitle("new outline"), 1, {}});
        Run(Make("d_outline_addsub", OutlineJson::WalkText(Node(above))));
        Remember(state);
    }

    void Rename()
    {
        const Rows rows = Pick();
        if (rows.isEmpty())
            return;
        Entry state = Expected();
        // Few titles, so that equal ones stand everywhere.
        At(state, rows).title = QStringLiteral("t%1").arg(random.bounded(3));
        G_Operation* operation = Make("d_outline_rename", OutlineJson::WalkText(Node(ParentOf(rows))));
        operation->Params->Add("nodeIdx", rows.last());
        operation->Params->Add("title", At(state, rows).title);
        Run(operation);
        Remember(state);
    }

    void ResetPos()
    {
        const Rows rows = Pick();
        if (rows.isEmpty())
            return;
        Entry state = Expected();
        ++At(state, rows).destinations;
        G_Operation* operation = Make("d_outline_resetpos", OutlineJson::WalkText(Node(ParentOf(rows))));
        operation->Params->Add("nodeIdx", rows.last());
        Run(operation);
        Remember(state);
    }

    // Takes the entries out of the state, last to first, and gives them back in their order.
    static std::vector<Entry> TakeOut(Entry& state, const QList<Rows>& places)
    {
        std::vector<Entry> taken;
        for (int i = places.size() - 1; i >= 0; --i) {
            std::vector<Entry>& siblings = At(state, ParentOf(places.at(i))).children;
            const auto it = siblings.begin() + places.at(i).last();
            taken.insert(taken.begin(), *it);
            siblings.erase(it);
        }
        return taken;
    }

    void Delete()
    {
        const QList<Rows> places = PickSome();
        Entry state = Expected();
        TakeOut(state, places);
        Run(Make("d_outline_del", OutlineJson::DeleteText(Nodes(places))));
        Remember(state);
    }

    void BatchAdd()
    {
        const Rows behind = Pick();
        const Rows above = behind.isEmpty() ? Rows() : ParentOf(behind);
        Entry state = Expected();
        Entry& parent = At(state, above);
        const int row = behind.isEmpty() ? static_cast<int>(parent.children.size()) - 1 : behind.last();
        QStringList titles;
        const int count = random.bounded(4);
        for (int i = 0; i < count; ++i) {
            titles.append(QStringLiteral("t%1").arg(random.bounded(3)));
            parent.children.insert(parent.children.begin() + (row + 1 + i), {titles.last(), 0, {}});
        }
        Run(Make("d_outline_batchadd", OutlineJson::BatchAddText(titles, row, Node(above))));
        Remember(state);
    }

    // Behind a random entry, or to be its first children, or the first entries of all. The place is marked in the plain
    // tree, so that taking entries out needs no counting.
    void Move()
    {
        const QList<Rows> places = PickSome();
        const Rows destination = Pick();
        const bool asChild = destination.isEmpty() || random.bounded(2) == 0;
        const auto holds = [&](const Rows& place) { return place == destination || IsBelow(destination, place); };
        if (std::any_of(places.cbegin(), places.cend(), holds))
            return; // such a drop is refused
        G_TreeNode* dst = Node(destination);
        const QList<G_TreeNode*> nodes = Nodes(places);

        Entry state = Expected();
        const QString mark = QStringLiteral("\1mark");
        const QString title = At(state, destination).title;
        At(state, destination).title = mark;
        const std::vector<Entry> moved = TakeOut(state, places);
        PutAtMark(state, mark, title, asChild, moved);
        Stack()->push(new BatchMoveOutlineCommand(nodes, dst, asChild, context, nullptr));
        Remember(state);
    }

    static bool PutAtMark(Entry& entry, const QString& mark, const QString& title, bool asChild,
                          const std::vector<Entry>& moved)
    {
        if (entry.title == mark) { // the destination, as child; the root too
            entry.title = title;
            if (asChild)
                entry.children.insert(entry.children.begin(), moved.begin(), moved.end());
            return true;
        }
        for (size_t row = 0; row < entry.children.size(); ++row) {
            const bool isHere = entry.children[row].title == mark;
            if (!PutAtMark(entry.children[row], mark, title, asChild, moved))
                continue;
            if (isHere && !asChild)
                entry.children.insert(entry.children.begin() + (static_cast<long>(row) + 1), moved.begin(),
                                      moved.end());
            return true;
        }
        return false;
    }

    G_UIContext* context; // not owned
    G_DocView* view;      // not owned
    QRandomGenerator random;
    G_TreeNode* root;
    std::vector<Entry> states;
    int at = 0; // the state the model is in
};

} // namespace

// The operations and commands against a plain tree, many steps in random order.
class TestOutlineRandom : public QObject
{
    Q_OBJECT

private slots:
    void twoThousandRandomStepsKeepTheOutlineEqualToAPlainTree()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("tetobaisfla.debug=false")); // a line for each dying command
        const quint32 seed = RandomSeed();
        const OutlineOperations operations;
        ViewFixture fixture("page 210 297\npage 210 297\n");
        Player player(fixture.Context(), seed);
        QVERIFY(Plays(&player));
        while (player.Stack()->canUndo())
            player.Stack()->undo();
        QVERIFY(player.Real() == Entry());
    }

    void twoThousandRandomStepsOnAFileAreThereAfterSavingAndReopening()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("tetobaisfla.debug=false"));
        const quint32 seed = RandomSeed();
        const QTemporaryDir folder;
        QProcess maker;
        maker.start(qEnvironmentVariable("TETO_BIN") + "/make_samples", {folder.path(), "tour"});
        QVERIFY(maker.waitForFinished(60000));
        ofd::OpenResult file = ofd::OfdDocument::Open(folder.filePath("tour.ofd"));
        QVERIFY2(file, qPrintable(file.error));

        const OutlineOperations operations;
        ScriptedContext context;
        {
            G_DocView view(&context, file.document.get());
            context.SetCurrentDocView(&view);
            Player player(&context, seed);
            const Entry before = player.Real();
            QVERIFY(!before.children.empty());
            QVERIFY(Plays(&player));
            const Entry expected = player.Expected();
            const ofd::DocumentSaveResult saved = file.document->Save();
            QVERIFY2(saved, qPrintable(saved.error));
            ofd::OpenResult again = ofd::OfdDocument::Open(folder.filePath("tour.ofd"));
            QVERIFY2(again, qPrintable(again.error));
            QCOMPARE(Text(Copy(again.document->GetOutlineRoot())), Text(expected));
            while (player.Stack()->canUndo())
                player.Stack()->undo();
            QVERIFY(player.Real() == before);
            ViewFixture::Settle();
        }
    }

private:
    static bool Plays(Player* player)
    {
        for (int step = 0; step < 2000; ++step) {
            player->Step();
            if (!(player->Real() == player->Expected())) {
                qWarning("step %d:\n%s\ninstead of\n%s", step, Text(player->Real()).constData(),
                         Text(player->Expected()).constData());
                return false;
            }
            if (step % 100 == 0)
                ViewFixture::Settle(); // lets the operations go
        }
        return true;
    }
};

TETO_TEST_MAIN(TestOutlineRandom)
#include "test_outline_random.moc"
