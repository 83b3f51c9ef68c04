#pragma once

#include "memory_annot.h"
#include "memory_text.h"

#include <QSizeF>
#include <QVector>

#include <atomic>
#include <memory>
#include <vector>

// A layer of a page in memory.
class MemoryLayer : public IG_PageLayer
{
public:
    // The number, which counts what is hidden and shown in the document, outlives the layer.
    MemoryLayer(int kind, const QString& name, std::atomic<int>* textRevision)
        : kind(kind)
        , name(name)
        , textRevision(textRevision)
    {
    }
    CCA_WString GetName() override { return name; }
    int GetKind() override { return kind; }
    void SetVisible(bool visible) override
    {
        isVisible = visible;
        ++*textRevision;
    }
    bool IsVisible() override { return isVisible; }

private:
    int kind;
    QString name;
    std::atomic<int>* textRevision;    // not owned
    std::atomic<bool> isVisible{true}; // the renderer reads it from its threads
};

// A page in memory. What it holds stays; "loaded" only says whether the contract lets the content be seen, so that
// callers who forget to load are found out.
class MemoryPage : public IG_Page
{
public:
    struct TemplateRef
    {
        int id = 0;
        CCA_String zOrder;
    };

    // The document and what it is told in outlive the page.
    MemoryPage(IG_Document* document, std::atomic<bool>* isDocumentModified, std::atomic<int>* textRevision, int id,
               float widthMm, float heightMm);
    ~MemoryPage() override;

    IG_Document* GetDocument() override { return document; }
    float GetPageWidth() override { return widthMm; }
    float GetPageHeight() override { return heightMm; }
    int GetIndex() override { return index; }
    bool IsLoaded() override { return isLoaded; }
    bool Load() override;
    int GetTemplateRefCount() override { return isLoaded ? templateRefs.size() : 0; }
    int GetTemplateRefAt(int position) override;
    int GetLayerCount() override { return isLoaded ? static_cast<int>(layers.size()) : 0; }
    IG_PageLayer* GetLayerAt(int position) override;
    int LoadAnnots() override;
    int GetAnnotCount() override { return shownAnnots.size(); }
    IG_Annot* GetAnnotAt(int position) override { return shownAnnots.value(position); }
    IG_Annot* GetAnnotById(int id) override;
    IG_TextPage* GetTextPage() override;
    int PageId() override { return id; }
    int Id() const { return id; }
    int CollectObjectsInRect(const CCA_GRect& rect, G_PageObjRef* ref) override;
    bool CustomTagAtPoint(float x, float y, G_TreeNode** node, int* extra) override;
    CCA_String GetTemplateRefZOrder(int position) override;
    QVector<G_PageLink> GetLinks() override;

    void Unload();
    void SetIndex(int newIndex) { index = newIndex; }
    void SetFails(bool newFails) { fails = newFails; }
    bool Fails() const { return fails; }
    void AddText(float x, float y, const QString& text);
    void AddLayer(int kind, const QString& name);
    void AddTemplateRef(const TemplateRef& ref) { templateRefs.append(ref); }
    IG_Annot* AddAnnot(const MemoryDocument::AnnotRecord& record);
    // It belongs to the annotation of that id, else to the layer that was added last.
    void AddLink(const G_PageLink& link, int annotId);
    // False when the annotation is none of this page.
    bool SetAnnotRemoved(IG_Annot* annot, bool removed);
    // The box of an object of this page; false when there is none with the id.
    bool ObjectBox(int objectId, CCA_GRect* box) const;
    QVector<MemoryText> Texts() const { return texts; }
    QVector<TemplateRef> TemplateRefs() const { return templateRefs; }
    QVector<CCA_GRect> PaintedAnnotBoxes() const;

private:
    struct Link
    {
        G_PageLink link;
        MemoryLayer* layer = nullptr; // not owned; null for none
        int annotId = 0;              // 0 for none
    };
    void ListAnnots();
    bool IsShown(const Link& link) const;

    IG_Document* document;                 // not owned
    std::atomic<bool>* isDocumentModified; // not owned
    std::atomic<int>* textRevision;        // not owned
    int id;
    int index = 0;
    float widthMm;
    float heightMm;
    bool isLoaded = false;
    bool fails = false;
    bool areAnnotsKnown = false;
    QVector<MemoryText> texts;
    QVector<TemplateRef> templateRefs;
    QVector<Link> links;
    std::vector<std::unique_ptr<MemoryLayer>> layers;
    std::vector<std::unique_ptr<MemoryAnnot>> annots; // removed ones included
    QVector<IG_Annot*> shownAnnots;                   // not owned; what is known and not removed
    std::unique_ptr<MemoryTextPage> textPage;
};
