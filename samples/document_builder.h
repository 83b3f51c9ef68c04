#pragma once

#include "object_writer.h"
#include "package.h"

#include <QMap>
#include <QSizeF>

namespace samples {

constexpr const char* kDocumentPart = "Doc_0/Document.xml";

// A place in the document. The type is the format's word: XYZ, Fit, FitH, FitV or FitR; numbers in millimetres. Only
// what the type uses is written.
struct Dest
{
    QString type = "XYZ";
    int pageId = 0;
    double left = 0, top = 0, right = 0, bottom = 0;
    double zoom = 0; // factor; 0 keeps the view's zoom
};

struct Outline
{
    QString title;
    Dest dest;
    std::vector<Outline> children;
    bool isExpanded = true;
    XmlHook action; // in place of the destination: writes the child of Action
};

struct Annotation
{
    QString type; // Link, Path, Highlight, Stamp or Watermark
    QString subtype;
    QRectF boundary;
    QString remark;
    bool isReadOnly = false;
    QVector<QPair<QString, QString>> parameters;
    std::function<void(ObjectWriter&)> appearance; // in the space of the boundary
};

struct Attachment
{
    QString name;     // as shown, without extension
    QString fileName; // base name of the part
    QString format;
    QByteArray data;
    bool isVisible = true;
    bool isStored = false;
};

struct PageSetup
{
    QSizeF sizeMm{210, 297};
    bool hasArea = true;
    QVector<int> templates;
    QString foregroundTemplates; // ids, blank-separated, referred to with ZOrder="Foreground"
};

// Opens and closes the layers of one page; objects are written through Objects() while a layer is open.
class PageBuilder
{
public:
    PageBuilder(XmlPart& xml, Ids& ids);

    // Types: Body, Background, Foreground, Custom. Closes the layer before it.
    void BeginLayer(const QString& type = "Body", int drawParam = 0);
    void EndLayer();
    ObjectWriter& Objects() { return objects; }

private:
    XmlPart& xml;
    Ids& ids;
    ObjectWriter objects;
    bool isLayerOpen = false;
};

// Puts one document together: collects resources, pages and lists in any order in which ids are known, and gives the
// package with all parts in the usual places.
class DocumentBuilder
{
public:
    explicit DocumentBuilder(const QString& title);

    Font AddFont(const QString& fontName, Face face, const Attributes& more = {});
    // An embedded font; measured from its bytes.
    Font AddEmbeddedFont(const QString& fontName, const QString& fileName, const QByteArray& bytes);
    int AddImage(const QString& fileName, const QByteArray& bytes, const QString& format);
    int AddDrawParam(const Attributes& attributes, const QColor& fill, const QColor& stroke);
    int AddColorSpace(const QString& type);
    int AddComposite(const QSizeF& size, const std::function<void(ObjectWriter&)>& content);
    int AddTemplate(const QString& name, const QString& zOrder, const QSizeF& sizeMm,
                    const std::function<void(PageBuilder&)>& content);
    // The page's id, which destinations and tags refer to. `content` may be null: a page without Content.
    int AddPage(const PageSetup& setup, const std::function<void(PageBuilder&)>& content);

    void AddOutline(const Outline& outline) { outlines.push_back(outline); }
    void AddBookmark(const QString& name, const Dest& dest) { bookmarks.append({name, dest}); }
    void AddAnnotation(int pageId, const Annotation& annotation) { annotations[pageId].push_back(annotation); }
    void AddAttachment(const Attachment& attachment) { attachments.push_back(attachment); }
    // `xml` is the whole tag file.
    void AddTagFile(const QString& fileName, const QString& nameSpace, const QByteArray& xml);
    void SetPermissions(const QVector<QPair<QString, bool>>& rights) { permissions = rights; }
    void SetPageMode(const QString& mode) { pageMode = mode; }
    Ids& UnitIds() { return ids; }

    // All parts, OFD.xml first. Call once, last.
    Package Build();

private:
    QByteArray BuildEntry() const;
    QByteArray BuildDocument() const;
    void BuildResources(Package& package);
    void BuildAnnotations(Package& package);
    void BuildAttachments(Package& package);
    void BuildTags(Package& package) const;
    QByteArray BuildPageAnnotations(const std::vector<Annotation>& list);
    void WritePermissions(XmlPart& xml) const;

    struct TemplateEntry
    {
        int id;
        QString name, zOrder, location;
    };
    struct FontEntry
    {
        Attributes attributes;
        QString fileName;
    };
    struct TagFile
    {
        QString fileName, nameSpace;
        QByteArray xml;
    };

    QString title;
    Ids ids;
    std::vector<FontEntry> fonts;
    std::vector<Part> files; // parts of their own: pages, templates, media
    QVector<Attributes> media;
    QVector<QString> mediaFiles;
    QVector<std::function<void(XmlPart&)>> drawParams, colorSpaces, composites;
    std::vector<TemplateEntry> templates;
    QVector<int> pages;
    std::vector<Outline> outlines;
    QVector<QPair<QString, Dest>> bookmarks;
    QMap<int, std::vector<Annotation>> annotations;
    std::vector<Attachment> attachments;
    std::vector<TagFile> tagFiles;
    QVector<QPair<QString, bool>> permissions;
    QString pageMode;
};

// Writes the Dest element.
void WriteDest(XmlPart& xml, const Dest& dest);
// Writes Actions with one click action that goes to the place, or opens the address.
XmlHook GotoAction(const Dest& dest);
XmlHook UriAction(const QString& uri);

} // namespace samples
