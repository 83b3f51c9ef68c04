#include "deviations.h"

namespace samples {

namespace {

const QByteArray kUri = "http://www.ofdspec.org/2016", kUriWithoutYear = "http://www.ofdspec.org";

void EmptyPrefix(Package& package)
{
    package.Data(kTagFile) = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<:Sample xmlns:=\"\">\n"
                             "<Name><ObjectRef PageRef=\"6\">8</ObjectRef></Name>\n"
                             "<Box><ObjectRef PageRef=\"6\">9</ObjectRef></Box>\n</:Sample>\n";
}

void UndeclaredPrefix(Package& package)
{
    package.Data(kTagFile) = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<:Sample xmlns:=\"\">\n"
                             "<Name><ofd:ObjectRef PageRef=\"6\">8</ofd:ObjectRef></Name>\n"
                             "<Box><ofd:ObjectRef PageRef=\"6\">9</ofd:ObjectRef></Box>\n</:Sample>\n";
}

void EachXml(Package& package, void (*change)(QByteArray&))
{
    for (Part& part : package.Parts())
        if (part.name.endsWith(".xml"))
            change(part.data);
}

void ByteOrderMark(Package& package)
{
    EachXml(package, [](QByteArray& data) { data.prepend("\xEF\xBB\xBF"); });
}

void CrlfLineEnds(Package& package)
{
    EachXml(package, [](QByteArray& data) { data.replace("\n", "\r\n"); });
}

void Cdata(Package& package)
{
    package.Replace(kSecondPage, ">Second page</ofd:TextCode>", "><![CDATA[Second page]]></ofd:TextCode>");
}

void Comments(Package& package)
{
    package.Replace(kFirstPage, "<ofd:Layer ID=\"7\">",
                    "<!-- the only layer --><ofd:Layer ID=\"7\"><!-- <ofd:TextObject/> -->");
}

void Standalone(Package& package)
{
    EachXml(package,
            [](QByteArray& data) { data.replace("encoding=\"UTF-8\"?>", "encoding=\"utf-8\" standalone=\"yes\"?>"); });
}

void CharacterReferences(Package& package)
{
    package.Replace(kSecondPage, ">Second page<", ">Second&#x20;p&#97;ge<");
    package.Replace(kDocument, "Bookmark Name=\"Second page\"", "Bookmark Name=\"Second &amp;&#32;page\"");
}

void UriWithoutYear(Package& package)
{
    EachXml(package, [](QByteArray& data) { data.replace(kUri, kUriWithoutYear); });
}

void UriMixed(Package& package)
{
    package.Replace(kFirstPage, kUri, kUriWithoutYear);
    package.Replace(kPublicRes, kUri, kUriWithoutYear);
    package.Replace(kAnnotationList, kUri, kUriWithoutYear);
}

void UnprefixedChildren(Package& package)
{
    package.Replace(kAnnotations, "<ofd:Remark>A stamp</ofd:Remark>",
                    "<Remark>A stamp</Remark><Parameters><Parameter Name=\"Kind\">round</Parameter></Parameters>");
    package.Replace(kDocument, "<ofd:Bookmark Name=\"Second page\">", "<Bookmark Name=\"Second page\">");
    package.Replace(kDocument, "<ofd:Dest Type=\"XYZ\" PageID=\"11\" Left=\"0\" Top=\"20\"/>\n</ofd:Bookmark>",
                    "<Dest Type=\"XYZ\" PageID=\"11\" Left=\"0\" Top=\"20\"/>\n</Bookmark>");
    package.Replace(kDocument, "<ofd:PhysicalBox>0 0 210 297</ofd:PhysicalBox>",
                    "<PhysicalBox>0 0 210 297</PhysicalBox>");
}

void DefaultNamespace(Package& package)
{
    EachXml(package, [](QByteArray& data) {
        data.replace("xmlns:ofd=", "xmlns=");
        data.replace("<ofd:", "<");
        data.replace("</ofd:", "</");
    });
}

void OtherPrefix(Package& package)
{
    EachXml(package, [](QByteArray& data) {
        data.replace("xmlns:ofd=", "xmlns:d=");
        data.replace("<ofd:", "<d:");
        data.replace("</ofd:", "</d:");
    });
}

constexpr const char* kGroup = "XML";

const Deviation kTable[] = {
    {"tag_file_empty_prefix", kGroup, "the tag file's root has an empty prefix",
     "parse without namespaces and show the tags", EmptyPrefix},
    {"undeclared_prefix", kGroup, "the tag file uses a prefix that it does not declare",
     "parse without namespaces and show the tags", UndeclaredPrefix},
    {"byte_order_mark", kGroup, "all XML parts begin with a byte-order mark", "skip it on load, keep it on save",
     ByteOrderMark},
    {"crlf_line_ends", kGroup, "lines of the XML parts end in CR LF", "read as usual, keep them on save", CrlfLineEnds},
    {"cdata_in_page_text", kGroup, "the text of the second page is a CDATA section", "show the text", Cdata},
    {"comments_in_layers", kGroup, "comments stand in the page content", "skip them, keep them on save", Comments},
    {"standalone_declaration", kGroup, "the XML declaration says standalone", "read as usual", Standalone},
    {"character_references", kGroup, "text and names use character references", "show the characters",
     CharacterReferences},
    {"uri_without_year", kGroup, "the namespace lacks the year in all parts", "match elements by local name",
     UriWithoutYear},
    {"uri_mixed", kGroup, "some parts have the namespace without the year", "match elements by local name", UriMixed},
    {"unprefixed_children", kGroup, "a remark, a bookmark and a page box have no prefix",
     "match elements by local name; edit them in place", UnprefixedChildren},
    {"default_namespace", kGroup, "the format's namespace is the default one", "match elements by local name",
     DefaultNamespace},
    {"other_prefix", kGroup, "the format's namespace has another prefix", "match elements by local name", OtherPrefix},
};

} // namespace

std::vector<Deviation> XmlDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
