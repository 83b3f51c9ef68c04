#include "edit_kinds.h"

#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <tests/support/byte_streams.h>

namespace {

using Undo = std::function<void()>;

constexpr int PagesLookedAt = 5;

// The first node of a tree; null when it has none.
G_TreeNode* First(G_TreeNode* root)
{
    return root && root->SubNodeCount() > 0 ? root->SubNode(0) : nullptr;
}

Undo AddBookmark(ofd::OfdDocument& document, bool&)
{
    if (!document.GetBookmarkRoot())
        document.CreateBookmarkRoot();
    G_TreeNode* root = document.GetBookmarkRoot();
    auto* bookmark = new G_Bookmark; // owned by its node
    bookmark->name = "added & saved";
    bookmark->dest->pageIndex = 0;
    bookmark->dest->pageId = document.PageIdFromIndex(0);
    bookmark->dest->top = 12.5F;
    root->AddSubNode(root->SubNodeCount(), bookmark);
    return [root] { root->RemoveSubNode(root->SubNodeCount() - 1); };
}

Undo RenameBookmark(ofd::OfdDocument& document, bool& done)
{
    G_TreeNode* node = First(document.GetBookmarkRoot());
    done = node;
    if (!node)
        return {};
    auto* bookmark = dynamic_cast<G_Bookmark*>(node->data);
    const CCA_String name = bookmark->name;
    bookmark->name = "renamed <&> \"saved\"";
    return [bookmark, name] { bookmark->name = name; };
}

Undo RemoveBookmark(ofd::OfdDocument& document, bool& done)
{
    G_TreeNode* root = document.GetBookmarkRoot();
    done = First(root);
    if (!done)
        return {};
    const auto copy = std::make_shared<G_Bookmark>(*dynamic_cast<G_Bookmark*>(First(root)->data));
    root->RemoveSubNode(0);
    return [root, copy] { root->AddSubNode(0, new G_Bookmark(*copy)); };
}

Undo AddOutlineEntry(ofd::OfdDocument& document, bool&)
{
    if (!document.GetOutlineRoot())
        document.CreateOutlineRoot();
    G_TreeNode* root = document.GetOutlineRoot();
    auto* item = new G_OutlineItem; // owned by its node
    item->title = item->text = "added & saved";
    auto* action = new G_ActionGoto; // owned by the item
    action->dest->pageIndex = 0;
    action->dest->pageId = document.PageIdFromIndex(0);
    item->actions.Add(action);
    root->AddSubNode(root->SubNodeCount(), item);
    return [root] { root->RemoveSubNode(root->SubNodeCount() - 1); };
}

Undo RenameOutlineEntry(ofd::OfdDocument& document, bool& done)
{
    G_TreeNode* node = First(document.GetOutlineRoot());
    done = node;
    if (!node)
        return {};
    auto* item = dynamic_cast<G_OutlineItem*>(node->data);
    const CCA_String name = item->text;
    item->title = item->text = "renamed <&> \"saved\"";
    return [item, name] { item->title = item->text = name; };
}

Undo RemoveOutlineEntry(ofd::OfdDocument& document, bool& done)
{
    G_TreeNode* root = document.GetOutlineRoot();
    done = First(root) && First(root)->SubNodeCount() == 0;
    if (!done)
        return {};
    const auto copy = std::make_shared<G_OutlineItem>(*dynamic_cast<G_OutlineItem*>(First(root)->data));
    root->RemoveSubNode(0);
    return [root, copy] { root->AddSubNode(0, new G_OutlineItem(*copy)); };
}

G_TreeNode* TopTag(ofd::OfdDocument& document)
{
    return document.CustomTagRootCount() > 0 ? First(document.CustomTagRoot(0)) : nullptr;
}

Undo AddTag(ofd::OfdDocument& document, bool& done)
{
    G_TreeNode* top = TopTag(document);
    done = top;
    if (!top)
        return {};
    auto* tag = new G_CustomTagItem; // owned by its node
    tag->tagName = "added tag";
    top->AddSubNode(top->SubNodeCount(), tag);
    return [top] { top->RemoveSubNode(top->SubNodeCount() - 1); };
}

// A new record, as the pane makes one; its predecessor comes back as a copy.
Undo RenameTag(ofd::OfdDocument& document, bool& done)
{
    G_TreeNode* top = TopTag(document);
    G_TreeNode* node = First(top);
    done = node;
    if (!node)
        return {};
    const auto copy = std::make_shared<G_CustomTagItem>(*dynamic_cast<G_CustomTagItem*>(node->data));
    auto* tag = new G_CustomTagItem; // owned by its node
    tag->tagName = "1st renamed";
    node->SetNodeData(tag);
    return [top, copy] { top->SubNode(0)->SetNodeData(new G_CustomTagItem(*copy)); };
}

Undo AddTagRoot(ofd::OfdDocument& document, bool& done)
{
    done = document.AddCustomTagRoot("added root", "added", "urn:added", 0);
    return {};
}

Undo AddAttachment(ofd::OfdDocument& document, bool& done)
{
    const int count = document.GetAttachmentCount();
    done = document.AddAttachment(new BytesReader(QByteArray(500, 'a')), false, "added", "txt", "added", "txt", 0);
    return [&document, count] { document.RemoveAttachment(count); };
}

Undo RemoveAttachment(ofd::OfdDocument& document, bool& done)
{
    done = document.RemoveAttachment(0);
    return {};
}

IG_Annot* FirstAnnot(ofd::OfdDocument& document)
{
    for (int i = 0; i < std::min(document.GetPageCount(), PagesLookedAt); ++i) {
        IG_Page* page = document.GetPage(i);
        if (page && page->LoadAnnots() == 0 && page->GetAnnotCount() > 0)
            return page->GetAnnotAt(0);
    }
    return nullptr;
}

Undo ChangeRemark(ofd::OfdDocument& document, bool& done)
{
    IG_Annot* annot = FirstAnnot(document);
    done = annot;
    if (!annot)
        return {};
    const CCA_String remark = annot->GetRemark();
    const CCA_String date = annot->GetDate();
    annot->SetRemark("another <&> remark");
    annot->SetDate("2024-05-06 07:08:09");
    return [annot, remark, date] {
        annot->SetRemark(remark);
        annot->SetDate(date);
    };
}

Undo RemoveAnnot(ofd::OfdDocument& document, bool& done)
{
    IG_Annot* annot = FirstAnnot(document);
    done = annot && document.RemoveAnnot(annot);
    return [&document, annot] { document.ReviveAnnot(annot); };
}

} // namespace

const std::vector<EditKind>& EditKinds()
{
    static const std::vector<EditKind> kinds = {
        {"a bookmark is added", AddBookmark, ""},
        {"a bookmark is renamed", RenameBookmark, ""},
        {"a bookmark is removed", RemoveBookmark, ""},
        {"an outline entry is added", AddOutlineEntry, ""},
        {"an outline entry is renamed", RenameOutlineEntry, ""},
        {"an outline entry is removed", RemoveOutlineEntry, ""},
        {"a tag is added", AddTag, "CustomTags"},
        {"a tag is renamed", RenameTag, "CustomTags"},
        {"a tag file is added", AddTagRoot, "CustomTags"},
        {"an attachment is added", AddAttachment, "Attachments"},
        {"an attachment is removed", RemoveAttachment, "Attachments"},
        {"a remark is changed", ChangeRemark, "Annotations"},
        {"an annotation is removed", RemoveAnnot, "Annotations"},
    };
    return kinds;
}
