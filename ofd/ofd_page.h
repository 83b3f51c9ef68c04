#pragma once

#include "ofd_annot.h"

#include <frame/document/ig_page.h>
#include <ofd/model/content.h>
#include <ofd/text/object_places.h>

#include <QHash>

#include <memory>
#include <vector>

namespace ofd {

class DocumentStore;
class OfdTextPage;

// A layer of a page's own content.
class OfdPageLayer : public IG_PageLayer
{
public:
    OfdPageLayer(DocumentStore& store, int pageIndex, int position, const QString& name, LayerKind kind);
    CCA_WString GetName() override { return name; }
    int GetKind() override { return int(kind); }
    void SetVisible(bool visible) override;
    bool IsVisible() override;

private:
    DocumentStore& store; // outlives the page
    const int pageIndex;
    const int position;
    const QString name;
    const LayerKind kind;
};

// A page of a document. A page whose part is missing is an empty sheet; one whose part is broken does not load.
// Main thread.
class OfdPage : public IG_Page
{
public:
    OfdPage(IG_Document* document, std::shared_ptr<DocumentStore> store, int index);
    ~OfdPage() override;

    IG_Document* GetDocument() override { return document; }
    float GetPageWidth() override;
    float GetPageHeight() override;
    int GetIndex() override { return index; }
    bool IsLoaded() override { return content != nullptr; }
    bool Load() override;
    int GetTemplateRefCount() override;
    int GetTemplateRefAt(int position) override;
    int GetLayerCount() override { return content ? int(layers.size()) : 0; }
    IG_PageLayer* GetLayerAt(int position) override;
    int LoadAnnots() override;
    int GetAnnotCount() override { return shownAnnots.size(); }
    IG_Annot* GetAnnotAt(int position) override { return shownAnnots.value(position); }
    IG_Annot* GetAnnotById(int id) override;
    IG_TextPage* GetTextPage() override;
    int PageId() override;
    int CollectObjectsInRect(const CCA_GRect& rect, G_PageObjRef* ref) override;
    bool CustomTagAtPoint(float x, float y, G_TreeNode** node, int* extra) override;
    CCA_String GetTemplateRefZOrder(int position) override;
    QVector<G_PageLink> GetLinks() override;

    // False for a page that only stands for one whose part is missing: nothing on it can be changed.
    bool IsEditable() const;
    // Lets the content go.
    void Unload();
    // The object with that id, of a page that need not be loaded; null when there is none. Valid until Unload.
    const ObjectPlace* FindObject(int id);
    // False when it is none of this page.
    bool SetAnnotRemoved(IG_Annot* annot, bool isRemoved);
    // All annotations that were asked for so far, removed ones included, in file order.
    const std::vector<std::unique_ptr<OfdAnnot>>& Annots() const { return annots; }

private:
    const QVector<ObjectPlace>& Places();
    void MakeLayers();
    void GiveAnnotIds(const PageAnnotations& list);
    void ListAnnots();

    IG_Document* document; // not owned
    const std::shared_ptr<DocumentStore> store;
    const int index;
    std::shared_ptr<const PageContent> content;        // null while not loaded
    std::vector<std::unique_ptr<OfdPageLayer>> layers; // made at the first load, then kept
    std::unique_ptr<OfdTextPage> textPage;
    std::unique_ptr<QVector<ObjectPlace>> places; // made when asked for
    QHash<int, int> placeById;                    // positions in `places`; of one identifier the first
    bool areAnnotsRead = false;
    bool areAnnotsBroken = false;
    QVector<int> annotIds; // given to the annotations when they are first read
    std::vector<std::unique_ptr<OfdAnnot>> annots;
    QVector<IG_Annot*> shownAnnots; // not owned; those not removed
};

} // namespace ofd
