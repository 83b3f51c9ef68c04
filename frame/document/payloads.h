#pragma once

#include <frame/base/arrays.h>
#include <frame/base/path.h>
#include <frame/document/destination.h>
#include <frame/document/tree_node.h>

#include <QList>

// Where a record came from, so that a saver can keep what the record does not show. Shared by copies of the record.
class FRAME_EXPORT G_RecordSource
{
public:
    virtual ~G_RecordSource();
};

// A named destination. Copies are deep; a copy shares the source.
class FRAME_EXPORT G_Bookmark : public G_Object, public G_NodeData
{
public:
    G_Bookmark();
    G_Bookmark(const G_Bookmark& other);
    ~G_Bookmark() override;
    G_Bookmark& operator=(const G_Bookmark&) = delete;
    CCA_String NodeText() const override { return name; }
    OVJson ToJson() const override;
    bool FromJson(const OVJson& json) override;

    CCA_String name; // UTF-8
    G_Dest* dest;    // owned, never null
    std::shared_ptr<const G_RecordSource> source;
};

// An entry of the outline. Copies are deep; a copy shares the source.
class FRAME_EXPORT G_OutlineItem : public G_Object, public G_NodeData
{
public:
    G_OutlineItem();
    G_OutlineItem(const G_OutlineItem& other);
    ~G_OutlineItem() override;
    G_OutlineItem& operator=(const G_OutlineItem&) = delete;
    CCA_String NodeText() const override { return text; }
    OVJson ToJson() const override;

    CCA_String title; // UTF-8
    CCA_String text;  // UTF-8; what is shown and saved
    bool expanded = true;
    CCA_ArrayTemplate<G_Action*> actions; // owned
    std::shared_ptr<const G_RecordSource> source;
};

// Page objects of one page. A value type.
class FRAME_EXPORT G_PageObjRef
{
public:
    int pageId = 0;
    QList<int> objectIds;
};

// A semantic tag. Copies are deep; a copy shares the source.
class FRAME_EXPORT G_CustomTagItem : public G_Object, public G_NodeData
{
public:
    G_CustomTagItem();
    G_CustomTagItem(const G_CustomTagItem& other);
    ~G_CustomTagItem() override;
    G_CustomTagItem& operator=(const G_CustomTagItem&) = delete;
    CCA_String NodeText() const override { return tagName; }
    // A fresh record, as a rename makes it, remembers where its predecessor came from.
    void TakePlaceOf(const G_NodeData& previous) override;
    OVJson ToJson() const override;

    CCA_String tagName;                     // UTF-8; the name shown in the tree
    CCA_LockedArray<CCA_String> attributes; // "key=value" each; read-only for panes
    CCA_LockedArray<G_PageObjRef*> objects; // owned
    std::shared_ptr<const G_RecordSource> source;
    // Of the record whose place a fresh one took: a saver needs its place and its namespaces, nothing else of it.
    std::shared_ptr<const G_RecordSource> predecessor;
};

// One attachment. A value type that may cross threads.
struct FRAME_EXPORT G_AttachmentInfo
{
    CCA_String name;    // UTF-8, without extension
    CCA_String format;  // UTF-8, extension without dot
    CCA_String addDate; // UTF-8, free form
    float size = 0;     // KB
    int id = 0;
    bool visible = true;
};
Q_DECLARE_METATYPE(G_AttachmentInfo)
Q_DECLARE_METATYPE(QList<G_AttachmentInfo>)

// Text rectangles of one page, the result of a text selection.
struct G_TextRects
{
    CCA_LockedArray<CCA_GRect> rects; // mm
    int pageIndex = 0;
};

// The outline of one page object that a tag refers to.
struct G_PageObjectPath
{
    int pageIndex = 0;
    int kind = 0;  // 2 = the object's own outline, 1 = a rectangle around it
    CCA_Path path; // page mm
};
