#include "bookmark_operations.h"

#include "bookmark_commands.h"
#include "bookmark_events.h"
#include "bookmark_ids.h"
#include "bookmark_names.h"
#include "bookmark_node.h"

#include <common/clone_of.h>
#include <common/notify.h>
#include <common/param_keys.h>
#include <common/public_method.h>
#include <common/text_probe.h>
#include <common/text_rules.h>
#include <common/view_place.h>
#include <frame/base/converters.h>
#include <frame/document/ig_document.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>
#include <plugin/shell/undo_stack.h>

#include <QUndoStack>

#include <algorithm>
#include <climits>
#include <memory>

namespace {

void LogLine(const QByteArray& text, const char* where)
{
    G_Application::Instance().Log(text, where);
}

QByteArray RectText(const QRectF& rect)
{
    return "(" + QByteArray::number(rect.left()) + " " + QByteArray::number(rect.top()) + " " +
           QByteArray::number(rect.width()) + " " + QByteArray::number(rect.height()) + ")";
}

void LogRects(G_DocView* view, const CCA_GRect& visibleMm, const char* where)
{
    LogLine("scene " + RectText(view->BoundingRect()) + " page " +
                RectText(view->PageLogicalRect(view->CurrentPageIndex())) + " visible " +
                RectText(GQ_ToQRectF(visibleMm)),
            where);
}

// Null when the document has no bookmarks and none can be had.
G_TreeNode* RootMadeIfMissing(IG_Document* document)
{
    if (!document->GetBookmarkRoot() && !document->CreateBookmarkRoot())
        return nullptr;
    return document->GetBookmarkRoot();
}

// "row0", "row1", ... until a number is missing; ascending and once each, as the command relies on, whoever wrote them.
QList<int> RowsIn(const G_OperationParam& params)
{
    QList<int> rows;
    for (int i = 0; params.Contains(ParamKey::Row + QByteArray::number(i)); ++i)
        rows.append(params.GetInt32(ParamKey::Row + QByteArray::number(i), -1));
    PublicMethod::SortRows(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

// The bookmarks at the rows; rows that are not there are left out.
QList<G_TreeNode*> NodesAt(IG_Document* document, const QList<int>& rows)
{
    QList<G_TreeNode*> nodes;
    for (const int row : rows) {
        if (G_TreeNode* node = BookmarkNode(document, row))
            nodes.append(node);
    }
    return nodes;
}

int BookmarkCount(IG_Document* document)
{
    const G_TreeNode* root = document->GetBookmarkRoot();
    return root ? root->SubNodeCount() : 0;
}

} // namespace

G_Operation* GP_BookmarkOperation::Clone() const
{
    return CloneOf(this);
}

const char* GP_BookmarkOperation::Name() const
{
    return BookmarkId::Open;
}

const char* GP_BookmarkOperation::PaneId() const
{
    return BookmarkId::Pane;
}

G_Operation* GP_AddBookmark::Clone() const
{
    return CloneOf(this);
}

const char* GP_AddBookmark::Name() const
{
    return BookmarkId::Add;
}

int GP_AddBookmark::AuthorityType() const
{
    return Authority::EditDocument;
}

// The highlighted text or the default name, made unique; empty when there is no text or no list to add to.
QString GP_AddBookmark::NewName() const
{
    QString name = tr("new bookmark");
    if (!DocView()->SelectHighLightText().isEmpty()) {
        PageTextProbe probe;
        ProbePageText(DocView(), INT_MAX, "GP_AddBookmark::ParseTextPage", probe);
        name = CutText(probe.text, MaxNameLength);
    }
    return name.isEmpty() ? QString() : UniqueBookmarkName(name, GDocument());
}

bool GP_AddBookmark::DoAction()
{
    constexpr char where[] = "GP_AddBookmark::DoAction";
    if (!DocView() || !GDocument())
        return false;
    const QString name = NewName();
    G_TreeNode* root = name.isEmpty() ? nullptr : RootMadeIfMissing(GDocument());
    if (!root) {
        LogLine("bookmark create failed", where);
        return false;
    }
    const G_Dest dest = DestOfView(DocView());
    LogRects(DocView(), dest.Rect(), where);
    auto bookmark = std::make_unique<G_Bookmark>();
    bookmark->name = GQ_ToCAS(name);
    *bookmark->dest = dest;
    if (!root->AddSubNode(root->SubNodeCount(), bookmark.get())) {
        LogLine("add failed " + QByteArray::number(root->SubNodeCount()), where);
        return false;
    }
    static_cast<void>(bookmark.release()); // the tree's
    // The pane shows the row and pushes the undo command while this is delivered; it must have its row before it is
    // brought to the front.
    G_UIContext* context = UIContext();
    context->FireEvent(new G_BookmarkAddEvent(QString::fromLatin1(BookmarkId::Add),
                                              GQ_ToQStringFromUtf8(GDocument()->GetDocumentKey()),
                                              EventType::NodeAdded));
    FireDocumentChanged(context);
    OpenNavigationPane(context, BookmarkId::Pane);
    return true;
}

G_Operation* GP_BookmarkDelete::Clone() const
{
    return CloneOf(this);
}

const char* GP_BookmarkDelete::Name() const
{
    return BookmarkId::Delete;
}

int GP_BookmarkDelete::AuthorityType() const
{
    return Authority::EditDocument;
}

bool GP_BookmarkDelete::DoAction()
{
    constexpr char where[] = "GP_BookmarkDelete::DoAction";
    if (!DocView() || !GDocument())
        return false;
    LogLine("Before del: " + QByteArray::number(BookmarkCount(GDocument())), where);
    const QList<G_TreeNode*> nodes = NodesAt(GDocument(), RowsIn(*Params));
    if (nodes.isEmpty())
        return true;
    EnsureUndoStack(DocView())->push(new DeleteBookmarkCommand(nodes, UIContext()));
    LogLine("After del: " + QByteArray::number(BookmarkCount(GDocument())), where);
    FireDocumentChanged(UIContext());
    return true;
}

G_Operation* GP_BookmarkDeleteAll::Clone() const
{
    return CloneOf(this);
}

const char* GP_BookmarkDeleteAll::Name() const
{
    return BookmarkId::DeleteAll;
}

int GP_BookmarkDeleteAll::AuthorityType() const
{
    return Authority::EditDocument;
}

// An empty list goes the same way on purpose: a command without effect is pushed.
bool GP_BookmarkDeleteAll::DoAction()
{
    if (!DocView() || !GDocument())
        return false;
    QList<G_TreeNode*> nodes;
    for (int row = 0; row < BookmarkCount(GDocument()); ++row)
        nodes.append(BookmarkNode(GDocument(), row));
    EnsureUndoStack(DocView())->push(new DeleteBookmarkCommand(nodes, UIContext()));
    FireDocumentChanged(UIContext());
    return true;
}

G_Operation* GP_BookmarkRename::Clone() const
{
    return CloneOf(this);
}

const char* GP_BookmarkRename::Name() const
{
    return BookmarkId::Rename;
}

int GP_BookmarkRename::AuthorityType() const
{
    return Authority::EditDocument;
}

bool GP_BookmarkRename::DoAction()
{
    if (!DocView())
        return false;
    G_TreeNode* node = BookmarkNode(GDocument(), Params->GetInt32(ParamKey::Row, -1));
    const G_Bookmark* present = BookmarkOf(node);
    if (!present)
        return false;
    const G_Bookmark oldItem(*present);
    auto* newItem = new G_Bookmark(*present);
    newItem->name = GQ_ToCAS(Params->GetQString(ParamKey::Name));
    node->SetNodeData(newItem); // the tree's; `present` is gone
    Params->Add(ParamKey::Result, true);
    FireDocumentChanged(UIContext());
    EnsureUndoStack(DocView())->push(new ModifyBookmarkCommand(&oldItem, newItem, node, UIContext()));
    return true;
}

G_Operation* GP_BookmarkResetPosition::Clone() const
{
    return CloneOf(this);
}

const char* GP_BookmarkResetPosition::Name() const
{
    return BookmarkId::ResetPosition;
}

int GP_BookmarkResetPosition::AuthorityType() const
{
    return Authority::EditDocument;
}

bool GP_BookmarkResetPosition::DoAction()
{
    if (!DocView())
        return false;
    G_TreeNode* node = BookmarkNode(GDocument(), Params->GetInt32(ParamKey::Row, -1));
    G_Bookmark* present = BookmarkOf(node);
    if (!present)
        return false;
    const G_Bookmark oldItem(*present);
    // In place first: who holds the destination of the row sees the new place until the row is refreshed.
    *present->dest = DestOfView(DocView());
    auto* newItem = new G_Bookmark(*present);
    node->SetNodeData(newItem); // the tree's; `present` is gone
    Params->Add(ParamKey::Result, true);
    FireStatusText(UIContext(), tr("set success!"));
    FireDocumentChanged(UIContext());
    EnsureUndoStack(DocView())->push(new ModifyBookmarkCommand(&oldItem, newItem, node, UIContext()));
    return true;
}

G_Operation* GP_BookmarkWrap::Clone() const
{
    return CloneOf(this);
}

const char* GP_BookmarkWrap::Name() const
{
    return BookmarkId::Wrap;
}

bool GP_BookmarkWrap::DoAction()
{
    return true;
}
