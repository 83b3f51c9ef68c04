#include "deviations.h"

#include "document_builder.h"
#include "pictures.h"

namespace samples {

const QString kEntryPart = "OFD.xml", kDocument = kDocumentPart, kFirstPage = "Doc_0/Pages/Page_0/Content.xml",
              kSecondPage = "Doc_0/Pages/Page_1/Content.xml", kTemplate = "Doc_0/Tpls/Tpl_0/Content.xml",
              kPublicRes = "Doc_0/PublicRes.xml", kDocumentRes = "Doc_0/DocumentRes.xml",
              kAnnotationList = "Doc_0/Annots/Annotations.xml", kAnnotations = "Doc_0/Annots/Page_0/Annotation.xml",
              kTagList = "Doc_0/Tags/CustomTags.xml", kTagFile = "Doc_0/Tags/Sample.xml",
              kAttachmentList = "Doc_0/Attachs/Attachments.xml", kPicture = "Doc_0/Res/quadrants.png";

namespace {

TextStyle Style(const Font& font, double sizeMm)
{
    TextStyle style;
    style.font = font;
    style.sizeMm = sizeMm;
    return style;
}

QByteArray TagXml(int page, const QVector<int>& objects)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<sp:Sample xmlns:sp=\"http://example.org/sample\" xmlns:ofd=\"%1\" version=\"1.0\">\n"
                          "<sp:Name><ofd:ObjectRef PageRef=\"%2\">%3</ofd:ObjectRef></sp:Name>\n"
                          "<sp:Box><ofd:ObjectRef PageRef=\"%2\">%4</ofd:ObjectRef></sp:Box>\n</sp:Sample>\n")
        .arg(QLatin1String(kOfdUri), Num(page), Num(objects[0]), Num(objects[1]))
        .toUtf8();
}

void AddLists(DocumentBuilder& document, const QVector<int>& pages)
{
    for (int index = 0; index < pages.size(); ++index) {
        Outline outline;
        outline.title = index == 0 ? "First page" : "Second page";
        outline.dest.pageId = pages[index];
        outline.dest.top = 10;
        document.AddOutline(outline);
    }
    Dest dest;
    dest.pageId = pages[1];
    dest.top = 20;
    document.AddBookmark("Second page", dest);
    Annotation stamp;
    stamp.type = "Stamp";
    stamp.subtype = "Stamp";
    stamp.boundary = QRectF(150, 20, 20, 20);
    stamp.remark = "A stamp";
    stamp.appearance = [](ObjectWriter& objects) {
        PathStyle style;
        style.stroke = QColor(220, 40, 40);
        style.widthMm = 1;
        objects.Ellipse(QRectF(1, 1, 18, 18), style);
    };
    document.AddAnnotation(pages[0], stamp);
    Attachment note;
    note.name = "note";
    note.fileName = "note.txt";
    note.format = "txt";
    note.data = QByteArray("A text attachment.\r\n").repeated(20);
    document.AddAttachment(note);
    Attachment hidden;
    hidden.name = "machine";
    hidden.fileName = "machine.xml";
    hidden.format = "xml";
    hidden.data = "<machine/>\n";
    hidden.isVisible = false;
    document.AddAttachment(hidden);
}

} // namespace

Package PlainDocument(const QString& name, const QString& shows)
{
    DocumentBuilder document(name);
    const Font sans = document.AddFont("Arial", Face::Sans);
    const int picture = document.AddImage("quadrants.png", QuadrantsPng(), "PNG");
    const int header = document.AddTemplate("Header", "Background", QSizeF(210, 297), [](PageBuilder& page) {
        page.BeginLayer("Background");
        PathStyle style;
        page.Objects().Line(QPointF(20, 15), QPointF(190, 15), style);
    });
    PageSetup setup;
    setup.templates = {header};
    QVector<int> pages, named;
    pages.append(document.AddPage(setup, [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        named.append(objects.Text(QPointF(20, 30), name, Style(sans, 6)));
        PathStyle box;
        box.stroke = QColor(40, 80, 160);
        box.fill = QColor(200, 220, 250);
        named.append(objects.Rect(QRectF(20, 70, 40, 20), box));
        objects.Image(QRectF(80, 70, 20, 20), picture);
    }));
    pages.append(document.AddPage(setup, [&](PageBuilder& page) {
        page.BeginLayer();
        page.Objects().Text(QPointF(20, 30), "Second page", Style(sans, 6));
        page.Objects().Paragraph(QPointF(20, 40), 150, shows, Style(sans, 4), 6);
    }));
    AddLists(document, pages);
    document.AddTagFile("Sample.xml", "http://example.org/sample", TagXml(pages[0], named));
    return document.Build();
}

void AddToFirstPage(Package& package, const QByteArray& objects)
{
    package.Replace(kFirstPage, "</ofd:Layer>", objects + "</ofd:Layer>");
}

void AddResources(Package& package, const QByteArray& groups)
{
    package.Replace(kDocumentRes, "</ofd:Res>", groups + "</ofd:Res>");
}

QByteArray ElementText(Package& package, const QString& part, const QByteArray& element)
{
    const QByteArray& data = package.Data(part);
    int start = data.indexOf("<ofd:" + element + ">");
    if (start < 0)
        start = data.indexOf("<ofd:" + element + " ");
    if (start < 0)
        start = data.indexOf("<ofd:" + element + "/>");
    if (start < 0)
        qFatal("part %s has no element %s", qPrintable(part), element.constData());
    const int tagEnd = data.indexOf('>', start);
    if (data[tagEnd - 1] == '/')
        return data.mid(start, tagEnd + 1 - start);
    const QByteArray close = "</ofd:" + element + ">";
    const int end = data.indexOf(close, tagEnd);
    return data.mid(start, end + close.size() - start);
}

void MoveLast(Package& package, const QString& part, const QByteArray& element, const QByteArray& parent)
{
    const QByteArray text = ElementText(package, part, element);
    package.Replace(part, text, QByteArray());
    package.Replace(part, "</ofd:" + parent + ">", text + "\n</ofd:" + parent + ">");
}

} // namespace samples
