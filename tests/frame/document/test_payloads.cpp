#include <frame/document/ig_annot.h>
#include <frame/document/payloads.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <memory>

class TestPayloads : public QObject
{
    Q_OBJECT

private slots:
    void aCopiedBookmarkHasItsOwnDestination();
    void aCopiedOutlineEntryHasItsOwnActions();
    void aCopiedTagHasItsOwnReferences();
    void copiesShareTheirSource();
    void theTextOfARecordIsWhatItIsFoundBy();
    void aNodeReachesItsRecordThroughEitherBase();
    void aBookmarkReadsBackFromItsJson();
    void aBookmarkRefusesForeignJson();
    void recordsWriteThemselvesAsText();
    void destinationsCompareByEveryField();
    void aDestinationsRectangleHasItsFieldsInPlace();
    void actionsCloneAsTheirOwnKind();
    void annotationTypesHaveNames();
    void attachmentRecordsTravelAsVariants();
};

void TestPayloads::aCopiedBookmarkHasItsOwnDestination()
{
    auto original = std::make_unique<G_Bookmark>();
    original->name = "a";
    original->dest->zoom = 1.5F;
    const G_Bookmark copy(*original);
    original->dest->zoom = 9;
    original.reset();
    QVERIFY(copy.name == "a");
    QCOMPARE(copy.dest->zoom, 1.5F);
}

void TestPayloads::aCopiedOutlineEntryHasItsOwnActions()
{
    auto original = std::make_unique<G_OutlineItem>();
    QVERIFY(original->expanded);
    original->title = "t";
    original->text = "x";
    original->expanded = false;
    auto* go = new G_ActionGoto;
    go->dest->pageIndex = 4;
    go->bookmarkName = "mark";
    auto* address = new G_ActionUri;
    address->uri = "https://example.org";
    auto* unknown = new G_Action(77);
    unknown->opaque = "<Sound/>";
    original->actions.Add(go);
    original->actions.Add(address);
    original->actions.Add(unknown);
    const G_OutlineItem copy(*original);
    go->dest->pageIndex = 8;
    original.reset();
    QCOMPARE(copy.actions.GetSize(), 3);
    const auto* copiedGo = dynamic_cast<const G_ActionGoto*>(copy.actions[0]);
    QVERIFY(copiedGo);
    QCOMPARE(copiedGo->actionType, int(G_Action::Goto));
    QCOMPARE(copiedGo->dest->pageIndex, 4);
    QVERIFY(copiedGo->bookmarkName == "mark");
    QVERIFY(dynamic_cast<const G_ActionUri*>(copy.actions[1])->uri == "https://example.org");
    QCOMPARE(copy.actions[2]->actionType, 77);
    QVERIFY(copy.actions[2]->opaque == "<Sound/>");
    QVERIFY(!copy.expanded);
    QVERIFY(copy.title == "t" && copy.text == "x");
}

void TestPayloads::aCopiedTagHasItsOwnReferences()
{
    auto original = std::make_unique<G_CustomTagItem>();
    original->tagName = "Buyer";
    original->nodeTitle = "kept";
    original->attributes.Add("a=1");
    auto* ref = new G_PageObjRef;
    ref->pageId = 3;
    ref->objectIds = {1, 2};
    original->objects.Add(ref);
    const G_CustomTagItem copy(*original);
    ref->objectIds.clear();
    original.reset();
    QVERIFY(copy.tagName == "Buyer");
    QVERIFY(copy.nodeTitle == "kept");
    QVERIFY(copy.attributes.GetAt(0) == "a=1");
    QCOMPARE(copy.objects.GetAt(0)->objectIds, (QList<int>{1, 2}));
}

void TestPayloads::copiesShareTheirSource()
{
    G_Bookmark original;
    original.source = std::make_shared<G_RecordSource>();
    const G_Bookmark copy(original);
    QCOMPARE(copy.source, original.source);
    QCOMPARE(original.source.use_count(), 2L);
}

void TestPayloads::theTextOfARecordIsWhatItIsFoundBy()
{
    G_Bookmark bookmark;
    bookmark.name = "n";
    QVERIFY(bookmark.NodeText() == "n");
    G_OutlineItem item;
    item.title = "title";
    item.text = "text";
    QVERIFY(item.NodeText() == "text");
    G_CustomTagItem tag;
    tag.tagName = "tag";
    QVERIFY(tag.NodeText() == "tag");
    QVERIFY(tag.nodeTitle.IsEmpty());
}

void TestPayloads::aNodeReachesItsRecordThroughEitherBase()
{
    const std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    auto* bookmark = new G_Bookmark;
    G_TreeNode* node = root->AddSubNode(0, bookmark);
    QCOMPARE(dynamic_cast<G_Bookmark*>(node->data), bookmark);
    QCOMPARE(dynamic_cast<G_Object*>(node->data), static_cast<G_Object*>(bookmark));
    QVERIFY(!dynamic_cast<G_OutlineItem*>(node->data));
}

void TestPayloads::aBookmarkReadsBackFromItsJson()
{
    G_Bookmark bookmark;
    bookmark.name = "\xE5\x8F\x91";
    bookmark.dest->pageId = 7;
    bookmark.dest->pageIndex = 2;
    bookmark.dest->left = 0.1F;
    bookmark.dest->bottom = 297;
    bookmark.dest->zoom = 1.25F;
    bookmark.dest->zoomMode = 4;
    G_Bookmark copy;
    QVERIFY(copy.FromJson(bookmark.ToJson()));
    QVERIFY(copy.name == bookmark.name);
    QVERIFY(*copy.dest == *bookmark.dest);
}

void TestPayloads::aBookmarkRefusesForeignJson()
{
    G_Bookmark bookmark;
    bookmark.name = "kept";
    QVERIFY(!bookmark.FromJson(OVJson()));
    QVERIFY(!bookmark.FromJson(OVJson::MakeArray()));
    OVJson json;
    json.SetInt("name", 3);
    json.SetObject("dest", OVJson());
    QVERIFY(!bookmark.FromJson(json));
    QVERIFY(bookmark.name == "kept");
}

void TestPayloads::recordsWriteThemselvesAsText()
{
    G_CustomTagItem tag;
    tag.tagName = "Buyer";
    tag.attributes.Add("a=1");
    auto* ref = new G_PageObjRef;
    ref->pageId = 3;
    ref->objectIds = {1, 2};
    tag.objects.Add(ref);
    QVERIFY(tag.ToString() ==
            "{\"tagName\":\"Buyer\",\"attributes\":[\"a=1\"],\"objects\":[{\"pageId\":3,\"objectIds\":[1,2]}]}");
    G_OutlineItem item;
    item.text = "x";
    QVERIFY(item.ToString() == "{\"title\":\"\",\"text\":\"x\",\"expanded\":true,\"actions\":[]}");
    G_Object plain;
    QVERIFY(plain.ToString() == "{}");
    QVERIFY(plain.FromJson(OVJson()));
}

void TestPayloads::destinationsCompareByEveryField()
{
    const auto isEqualAfter = [](const auto& change) {
        G_Dest changed;
        change(changed);
        return changed == G_Dest();
    };
    QVERIFY(isEqualAfter([](G_Dest&) {}));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.zoomMode = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.pageId = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.pageIndex = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.left = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.right = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.top = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.bottom = 1; }));
    QVERIFY(!isEqualAfter([](G_Dest& dest) { dest.zoom = 1; }));
}

void TestPayloads::aDestinationsRectangleHasItsFieldsInPlace()
{
    G_Dest dest;
    dest.left = 1;
    dest.top = 2;
    dest.right = 3;
    dest.bottom = 4;
    QVERIFY(dest.Rect() == CCA_GRect(1, 2, 3, 4));
}

void TestPayloads::actionsCloneAsTheirOwnKind()
{
    const G_ActionGoto go;
    const std::unique_ptr<G_Action> clone(static_cast<const G_Action&>(go).Clone());
    const auto* clonedGo = dynamic_cast<const G_ActionGoto*>(clone.get());
    QVERIFY(clonedGo);
    QVERIFY(clonedGo->dest != go.dest);
    const std::unique_ptr<G_Action> plain(G_Action(5).Clone());
    QCOMPARE(plain->actionType, 5);
}

void TestPayloads::annotationTypesHaveNames()
{
    QVERIFY(AnnotTypeToString(AnnotLink) == "Link");
    QVERIFY(AnnotTypeToString(AnnotPath) == "Path");
    QVERIFY(AnnotTypeToString(AnnotHighlight) == "Highlight");
    QVERIFY(AnnotTypeToString(AnnotStamp) == "Stamp");
    QVERIFY(AnnotTypeToString(AnnotWatermark) == "Watermark");
    QVERIFY(AnnotTypeToString(AnnotOther) == "Other");
    QVERIFY(AnnotTypeToString(3) == "Other");
}

void TestPayloads::attachmentRecordsTravelAsVariants()
{
    G_AttachmentInfo info;
    info.name = "data";
    const QVariant variant = QVariant::fromValue(QList<G_AttachmentInfo>{info});
    QVERIFY(variant.value<QList<G_AttachmentInfo>>().first().name == "data");
}

TETO_TEST_MAIN(TestPayloads)
#include "test_payloads.moc"
