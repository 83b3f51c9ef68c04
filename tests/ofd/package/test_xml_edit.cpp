#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <functional>

using namespace ofd;

namespace {

const QByteArray Head =
    "\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<!-- keep > me -->\r\n";

// Applies an edit to the text and gives the new text.
QByteArray Edited(const QByteArray& xml, const std::function<void(XmlEdit&, pugi::xml_node)>& change)
{
    PackageError error;
    const std::unique_ptr<XmlPart> part = XmlPart::Parse(QStringLiteral("part.xml"), xml, &error);
    if (!part)
        return "does not parse: " + error.text.toUtf8();
    XmlEdit edit(*part);
    change(edit, part->GetRoot());
    const QByteArray result = edit.Apply(&error);
    return error ? "does not apply: " + error.text.toUtf8() : result;
}

pugi::xml_node Child(pugi::xml_node parent, const char* name)
{
    return ChildElement(parent, name);
}

const SchemaOrder DocumentOrder = {"CommonData", "Pages", "Outlines", "Bookmarks", "Annotations"};

QByteArray WithBookmarks(const QByteArray& document)
{
    return Edited(document, [](XmlEdit& edit, pugi::xml_node root) {
        edit.InsertInOrder(root, "Bookmarks", "<Bookmarks/>", DocumentOrder);
    });
}

} // namespace

// Changing a part changes the bytes that have to change, and no others.
class TestXmlEdit : public QObject
{
    Q_OBJECT

private slots:
    void withoutAnEditTheBytesAreTheSame();
    void rangesEndWhereTheElementEnds();
    void anAttributeChangesInPlace();
    void attributesOfOthersAreLeftAlone();
    void attributesAreAddedOnceAndRemoved();
    void textAndContentAreReplaced();
    void anEmptyTagIsOpenedForItsChildren();
    void removingTakesTheIndentationAlong();
    void insertedElementsTakeTheIndentationOfTheirNeighbour();
    void childrenGoIntoAnEmptyListBeforeItsEndTag();
    void severalInsertionsAtOnePlaceKeepTheOrderOfCalls();
    void insertionsBesideARemovedElementSurvive();
    void editsInsideAReplacedOrRemovedElementAreDropped();
    void ofTwoEditsOfOneThingTheLaterHolds();
    void newChildrenGoWhereTheSchemaWantsThem();
    void inAWrongOrderNewChildrenGoBehindTheLastEarlierOne();
    void brokenResultsAreNotHandedOut();
    void oddMarkupDoesNotConfuseTheRanges();
};

void TestXmlEdit::withoutAnEditTheBytesAreTheSame()
{
    const QByteArray xml = Head + "<ofd:a  b='1'\r\n c=\"2\" ><![CDATA[x]]>&#x20;<?p i?><b/></ofd:a>\r\n<!-- end -->";
    QCOMPARE(Edited(xml, [](XmlEdit& edit, pugi::xml_node) { QVERIFY(edit.IsEmpty()); }), xml);
}

void TestXmlEdit::rangesEndWhereTheElementEnds()
{
    const QByteArray inner = "<b x='/>'><c/><b>t</b><!-- </b> --><![CDATA[</b>]]></b>";
    const QByteArray xml = Head + "<a>" + inner + "<d/></a>";
    const auto part = XmlPart::Parse(QStringLiteral("p"), xml);
    XmlEdit edit(*part);
    QCOMPARE(edit.GetElementBytes(Child(part->GetRoot(), "b")), inner);
    QCOMPARE(edit.GetElementBytes(Child(part->GetRoot(), "d")), QByteArray("<d/>"));
    QCOMPARE(edit.GetElementBytes(part->GetRoot()), xml.mid(Head.size()));
    const ElementRange range = edit.GetRange(Child(part->GetRoot(), "b"));
    QVERIFY(!range.isEmptyTag);
    QCOMPARE(xml.mid(int(range.startTagEnd), 4), QByteArray("<c/>"));
    QCOMPARE(xml.mid(int(range.contentEnd), 4), QByteArray("</b>"));
    QVERIFY(!edit.GetRange(pugi::xml_node()));
}

void TestXmlEdit::anAttributeChangesInPlace()
{
    const QByteArray xml = Head + "<ofd:a xmlns:Name=\"u\" z = '&lt;' ofd:Name='old' y=\"1\"/>";
    const QByteArray result = Edited(xml, [](XmlEdit& edit, pugi::xml_node root) {
        edit.SetAttribute(root, "Name", QStringLiteral("it's \"new\""));
    });
    QCOMPARE(result, Head + "<ofd:a xmlns:Name=\"u\" z = '&lt;' ofd:Name=\"it's &quot;new&quot;\" y=\"1\"/>");
}

void TestXmlEdit::attributesOfOthersAreLeftAlone()
{
    const QByteArray result =
        Edited("<a x:n=\"1\" n=\"2\" x:m=\"3\" x:k=\"4\" k=\"5\" y:k=\"6\"/>", [](XmlEdit& edit, pugi::xml_node root) {
            edit.SetAttribute(root, "n", QStringLiteral("new"));
            edit.SetAttribute(root, "m", QStringLiteral("newer"));
            edit.RemoveAttribute(root, "y:k");
            edit.SetAttribute(root, "x:k", QStringLiteral("newest"));
        });
    QCOMPARE(result, QByteArray("<a x:n=\"1\" n=\"new\" x:m=\"newer\" x:k=\"newest\" k=\"5\"/>"));
}

void TestXmlEdit::attributesAreAddedOnceAndRemoved()
{
    const QByteArray result = Edited("<a b=\"1\" ><c /><d></d></a>", [](XmlEdit& edit, pugi::xml_node root) {
        edit.SetAttribute(root, "n", QStringLiteral("1"));
        edit.SetAttribute(root, "n", QStringLiteral("2"));
        edit.RemoveAttribute(root, "b");
        edit.SetAttribute(Child(root, "c"), "n", QStringLiteral("3"));
        edit.SetAttribute(Child(root, "d"), "n", QStringLiteral("4"));
        edit.SetAttribute(Child(root, "d"), "gone", QStringLiteral("5"));
        edit.RemoveAttribute(Child(root, "d"), "gone");
        edit.RemoveAttribute(Child(root, "d"), "never");
    });
    QCOMPARE(result, QByteArray("<a n=\"2\" ><c n=\"3\" /><d n=\"4\"></d></a>"));
}

void TestXmlEdit::textAndContentAreReplaced()
{
    const QByteArray result =
        Edited("<a><b>old<!-- c --></b>\n<c/><d></d><e>x</e></a>", [](XmlEdit& edit, pugi::xml_node root) {
            edit.SetText(Child(root, "b"), QStringLiteral("<new>"));
            edit.SetText(Child(root, "c"), QStringLiteral("c"));
            edit.ReplaceContent(Child(root, "d"), "<x/>");
            edit.ReplaceElement(Child(root, "e"), "<f/>");
        });
    QCOMPARE(result, QByteArray("<a><b>&lt;new&gt;</b>\n<c>c</c><d><x/></d><f/></a>"));
}

void TestXmlEdit::anEmptyTagIsOpenedForItsChildren()
{
    const QByteArray result = Edited("<ofd:a><ofd:b x='1' /></ofd:a>", [](XmlEdit& edit, pugi::xml_node root) {
        const pugi::xml_node b = Child(root, "b");
        edit.AppendChild(b, "<two/>");
        edit.AppendChild(b, "<three/>");
        edit.PrependChild(b, "<one/>");
        edit.SetAttribute(b, "y", QStringLiteral("2"));
    });
    QCOMPARE(result, QByteArray("<ofd:a><ofd:b x='1' y=\"2\"><one/><two/><three/></ofd:b></ofd:a>"));
}

void TestXmlEdit::removingTakesTheIndentationAlong()
{
    const QByteArray xml = "<a>\r\n  <b/>\r\n  <c>t</c>\r\n  <d/>\r\n</a>";
    QCOMPARE(Edited(xml, [](XmlEdit& edit, pugi::xml_node root) { edit.Remove(Child(root, "c")); }),
             QByteArray("<a>\r\n  <b/>\r\n  <d/>\r\n</a>"));
    QCOMPARE(Edited(xml,
                    [](XmlEdit& edit, pugi::xml_node root) {
                        edit.Remove(Child(root, "d"));
                        edit.Remove(Child(root, "b"));
                        edit.Remove(Child(root, "c"));
                    }),
             QByteArray("<a>\r\n</a>"));
    // White space behind text belongs to the text.
    QCOMPARE(Edited("<a>text <b/></a>", [](XmlEdit& edit, pugi::xml_node root) { edit.Remove(Child(root, "b")); }),
             QByteArray("<a>text </a>"));
}

void TestXmlEdit::insertedElementsTakeTheIndentationOfTheirNeighbour()
{
    const QByteArray xml = Head + "<a>\r\n\t<b/>\r\n\t<c/>\r\n</a>";
    QCOMPARE(Edited(xml,
                    [](XmlEdit& edit, pugi::xml_node root) {
                        edit.InsertBefore(Child(root, "c"), "<x/>");
                        edit.AppendChild(root, "<z/>");
                        edit.PrependChild(root, "<w/>");
                    }),
             Head + "<a>\r\n\t<w/>\r\n\t<b/>\r\n\t<x/>\r\n\t<c/>\r\n\t<z/>\r\n</a>");
}

void TestXmlEdit::childrenGoIntoAnEmptyListBeforeItsEndTag()
{
    const auto append = [](XmlEdit& edit, pugi::xml_node root) { edit.AppendChild(root, "<x/>"); };
    QCOMPARE(Edited("<a></a>", append), QByteArray("<a><x/></a>"));
    QCOMPARE(Edited("<a>\n  </a>", append), QByteArray("<a><x/>\n  </a>"));
    QCOMPARE(Edited("<a/>", append), QByteArray("<a><x/></a>"));
    QCOMPARE(Edited("<a>t</a>", append), QByteArray("<a>t<x/></a>"));
}

void TestXmlEdit::severalInsertionsAtOnePlaceKeepTheOrderOfCalls()
{
    QCOMPARE(Edited("<a><b/></a>",
                    [](XmlEdit& edit, pugi::xml_node root) {
                        for (const char* xml : {"<x/>", "<y/>", "<z/>"})
                            edit.InsertAfter(Child(root, "b"), xml);
                        edit.InsertBefore(Child(root, "b"), "<v/>");
                        edit.InsertBefore(Child(root, "b"), "<w/>");
                    }),
             QByteArray("<a><v/><w/><b/><x/><y/><z/></a>"));
}

void TestXmlEdit::insertionsBesideARemovedElementSurvive()
{
    QCOMPARE(Edited("<a>\n <b/>\n</a>",
                    [](XmlEdit& edit, pugi::xml_node root) {
                        edit.InsertBefore(Child(root, "b"), "<x/>");
                        edit.Remove(Child(root, "b"));
                        edit.AppendChild(root, "<y/>");
                    }),
             QByteArray("<a>\n <x/>\n <y/>\n</a>"));
}

void TestXmlEdit::editsInsideAReplacedOrRemovedElementAreDropped()
{
    const auto inside = [](XmlEdit& edit, pugi::xml_node b) {
        edit.SetAttribute(b, "n", QStringLiteral("1"));
        edit.SetText(Child(b, "c"), QStringLiteral("t"));
        edit.InsertBefore(Child(b, "c"), "<x/>");
        edit.AppendChild(b, "<y/>");
    };
    const QByteArray xml = "<a><b><c>s</c></b></a>";
    QCOMPARE(Edited(xml,
                    [&](XmlEdit& edit, pugi::xml_node root) {
                        inside(edit, Child(root, "b"));
                        edit.Remove(Child(root, "b"));
                    }),
             QByteArray("<a></a>"));
    QCOMPARE(Edited(xml,
                    [&](XmlEdit& edit, pugi::xml_node root) {
                        edit.ReplaceElement(Child(root, "b"), "<r/>");
                        inside(edit, Child(root, "b"));
                    }),
             QByteArray("<a><r/></a>"));
    // Replacing the content leaves the attributes and takes the children.
    QCOMPARE(Edited(xml,
                    [&](XmlEdit& edit, pugi::xml_node root) {
                        inside(edit, Child(root, "b"));
                        edit.ReplaceContent(Child(root, "b"), "r");
                    }),
             QByteArray("<a><b n=\"1\">r</b></a>"));
}

void TestXmlEdit::ofTwoEditsOfOneThingTheLaterHolds()
{
    QCOMPARE(Edited("<a n='0'><b>x</b><c></c><d/></a>",
                    [](XmlEdit& edit, pugi::xml_node root) {
                        for (const char* value : {"1", "2"}) {
                            const QString text = QString::fromLatin1(value);
                            edit.SetAttribute(root, "n", text);
                            edit.SetText(Child(root, "b"), text);
                            edit.SetText(Child(root, "c"), text);
                            edit.SetText(Child(root, "d"), text);
                        }
                    }),
             QByteArray("<a n=\"2\"><b>2</b><c>2</c><d>2</d></a>"));
    QCOMPARE(Edited("<a>\n<b/></a>",
                    [](XmlEdit& edit, pugi::xml_node root) {
                        edit.Remove(Child(root, "b"));
                        edit.ReplaceElement(Child(root, "b"), "<c/>");
                    }),
             QByteArray("<a></a>"));
}

void TestXmlEdit::newChildrenGoWhereTheSchemaWantsThem()
{
    QCOMPARE(WithBookmarks("<d><CommonData/><Pages/><Annotations/></d>"),
             QByteArray("<d><CommonData/><Pages/><Bookmarks/><Annotations/></d>"));
    QCOMPARE(WithBookmarks("<d>\n <CommonData/>\n <Pages/>\n</d>"),
             QByteArray("<d>\n <CommonData/>\n <Pages/>\n <Bookmarks/>\n</d>"));
    QCOMPARE(WithBookmarks("<d><Annotations/></d>"), QByteArray("<d><Bookmarks/><Annotations/></d>"));
    QCOMPARE(WithBookmarks("<d><Bookmarks n='1'/><Annotations/></d>"),
             QByteArray("<d><Bookmarks n='1'/><Bookmarks/><Annotations/></d>"));
    // Elements that the order does not know do not count.
    QCOMPARE(WithBookmarks("<d><Odd/><ofd:Pages/><Odd/></d>"),
             QByteArray("<d><Odd/><ofd:Pages/><Odd/><Bookmarks/></d>"));
    QCOMPARE(WithBookmarks("<d/>"), QByteArray("<d><Bookmarks/></d>"));
}

void TestXmlEdit::inAWrongOrderNewChildrenGoBehindTheLastEarlierOne()
{
    QCOMPARE(WithBookmarks("<d><Annotations/><Pages/><CommonData/><Odd/></d>"),
             QByteArray("<d><Annotations/><Pages/><CommonData/><Bookmarks/><Odd/></d>"));
}

void TestXmlEdit::brokenResultsAreNotHandedOut()
{
    const auto part = XmlPart::Parse(QStringLiteral("p"), "<a><b/></a>");
    XmlEdit edit(*part);
    edit.ReplaceElement(Child(part->GetRoot(), "b"), "<b>");
    PackageError error;
    QVERIFY(edit.Apply(&error).isEmpty());
    QCOMPARE(error.kind, PackageErrorKind::BadXml);
}

void TestXmlEdit::oddMarkupDoesNotConfuseTheRanges()
{
    const QByteArray xml = Head + "<:name xmlns:=\"\">&amp;&#13;中<?x <y> ?><b\n\tc = '\"<'\n>中&lt;</b ><e/></:name >";
    const QByteArray result = Edited(xml, [](XmlEdit& edit, pugi::xml_node root) {
        edit.SetAttribute(Child(root, "b"), "c", QStringLiteral("2"));
        edit.SetText(Child(root, "b"), QStringLiteral("文"));
        edit.InsertAfter(Child(root, "e"), "<:f/>");
    });
    QCOMPARE(result, Head + "<:name xmlns:=\"\">&amp;&#13;中<?x <y> ?><b\n\tc = \"2\"\n>文</b ><e/><:f/></:name >");
}

TETO_TEST_MAIN(TestXmlEdit)
#include "test_xml_edit.moc"
