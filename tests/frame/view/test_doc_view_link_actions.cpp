// What a followed link does: it asks, offers, tells or jumps. And what opening a document may do of that.
#include "link_desk.h"

#include <tests/support/opened_addresses.h>
#include <tests/support/test_main.h>

#include <QtTest>

namespace {

constexpr int cancel = 4194304;

} // namespace

class TestDocViewLinkActions : public QObject, private LinkDesk
{
    Q_OBJECT

private slots:
    void init() { OpenDesk(); }
    void cleanup() { CloseDesk(); }
    void anAddressIsAskedForFirst();
    void anAttachmentIsOfferedByTheHost();
    void aDocumentThatForbidsExportOffersNoAttachment();
    void soundsAndMoviesAreToldOnce();
    void aLinkToAPageThatIsNotThereSaysSo();
    void openingFollowsAJumpAndNothingElse();
    void openingFollowsTheFirstJumpThatLeadsSomewhere();
};

void TestDocViewLinkActions::anAddressIsAskedForFirst()
{
    Opened opened;
    fixture->Context()->Answer(cancel);
    Click(40, 45);
    QCOMPARE(fixture->Context()->Asked().size(), 1);
    QVERIFY(fixture->Context()->LastAsked().text.contains("https://example.org/?a=<b>"));
    QVERIFY(opened.urls.isEmpty());
}

void TestDocViewLinkActions::anAttachmentIsOfferedByTheHost()
{
    Click(100, 25);
    QCOMPARE(probe->StatusTexts(), QStringList{"This kind of action is not supported."}); // by a host without a saver
    int asked = -1;
    fixture->Context()->ActionHandler()->SetAttachmentSaver([&](IG_Document* document, int index) {
        asked = document->GetAttachment(index).id;
        return QStringLiteral("kept");
    });
    Click(100, 25);
    QCOMPARE(asked, 31);
    QCOMPARE(probe->StatusTexts().last(), QString("kept"));
    fixture->Document()->RemoveAttachment(0);
    asked = -1;
    Click(100, 25);
    QCOMPARE(asked, -1);
    QCOMPARE(probe->StatusTexts().last(), QString("This attachment does not exist."));
    fixture->Document()->SetModified(false);
}

void TestDocViewLinkActions::aDocumentThatForbidsExportOffersNoAttachment()
{
    fixture->Document()->SetRights(true, true, true, false);
    bool wasAsked = false;
    fixture->Context()->ActionHandler()->SetAttachmentSaver([&](IG_Document*, int) {
        wasAsked = true;
        return QString();
    });
    Click(100, 25);
    QVERIFY(!wasAsked);
    QCOMPARE(probe->StatusTexts(), QStringList{"The document does not allow its attachments to be saved."});
}

void TestDocViewLinkActions::soundsAndMoviesAreToldOnce()
{
    Click(100, 45);
    QCOMPARE(probe->StatusTexts(), QStringList{"Sounds and movies cannot be played."});
}

void TestDocViewLinkActions::aLinkToAPageThatIsNotThereSaysSo()
{
    Click(100, 65);
    QCOMPARE(View()->CurrentPageIndex(), 0);
    QCOMPARE(probe->StatusTexts(), QStringList{"This page does not exist."});
}

void TestDocViewLinkActions::openingFollowsAJumpAndNothingElse()
{
    Opened opened;
    int asked = 0;
    fixture->Context()->ActionHandler()->SetAttachmentSaver([&](IG_Document*, int) {
        ++asked;
        return QString();
    });
    OpenTab* other =
        fixture->Open(pages + "open uri=https://example.org attachment=31 sound page=2 to=0,50,0,50 page=3\n");
    QVERIFY(fixture->Context()->ActionHandler()->FollowOpenActions(other->view.get()));
    ViewFixture::Settle();
    QCOMPARE(other->view->CurrentPageIndex(), 1);
    QVERIFY(opened.urls.isEmpty());
    QVERIFY(fixture->Context()->Asked().isEmpty());
    QCOMPARE(asked, 0);
    QVERIFY(probe->StatusTexts().isEmpty());
    QCOMPARE(View()->CurrentPageIndex(), 0);
}

void TestDocViewLinkActions::openingFollowsTheFirstJumpThatLeadsSomewhere()
{
    OpenTab* other = fixture->Open(pages + "open page=99 bookmark=none bookmark=mark\n");
    QVERIFY(fixture->Context()->ActionHandler()->FollowOpenActions(other->view.get()));
    QCOMPARE(other->view->CurrentPageIndex(), 3);
    OpenTab* lost = fixture->Open(pages + "open page=99 uri=https://example.org\n");
    QVERIFY(!fixture->Context()->ActionHandler()->FollowOpenActions(lost->view.get()));
    QVERIFY(!fixture->Context()->ActionHandler()->FollowOpenActions(View()));
    QVERIFY(probe->StatusTexts().isEmpty());
}

TETO_TEST_MAIN(TestDocViewLinkActions)
#include "test_doc_view_link_actions.moc"
