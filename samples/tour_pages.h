#pragma once

#include "document_builder.h"

#include <QMap>

namespace samples {

// What the pages of the tour share.
struct Tour
{
    DocumentBuilder document{QString::fromUtf8("版式文档一览 · A tour of a fixed-layout document")};
    Font hei, song, kai, sans, mono;
    Font embedded; // id 0 where the machine has no font that may be embedded
    int landscapePng = 0, landscapeJpeg = 0, logo = 0, code = 0;
    int badge = 0;                      // composite unit
    int softLine = 0;                   // draw parameter
    int background = 0, foreground = 0; // templates
    QVector<int> pages;
    QMap<QString, int> tagged; // tag path to object id, on the page of tags
};

extern const QColor kInk, kBlue, kOrange, kGreen, kPale, kMuted;

TextStyle Styled(const Font& font, double sizeMm, const QColor& colour = kInk);
PathStyle Stroked(const QColor& colour, double widthMm = 0.3);
PathStyle Filled(const QColor& colour);
// Chinese and English in fonts of their own, one after the other on a base line; returns the x after the last one.
double Mixed(ObjectWriter& objects, const Tour& tour, const QPointF& at, const QString& text, double sizeMm,
             const QColor& colour = kInk, bool isHeading = false);
// The heading that every page but the cover starts with.
void Heading(ObjectWriter& objects, const Tour& tour, const QString& number, const QString& chinese,
             const QString& english, double right = 190);
void Caption(ObjectWriter& objects, const Tour& tour, const QPointF& at, const QString& text);

void AddCover(Tour& tour);
void AddTextPage(Tour& tour);
void AddTablePage(Tour& tour);
void AddPathPage(Tour& tour);
void AddColourPage(Tour& tour);
void AddImagePage(Tour& tour);
void AddLayerPage(Tour& tour);
void AddAnnotationPage(Tour& tour);
void AddTagPage(Tour& tour);

void AddTourAnnotations(Tour& tour);
// Outline, bookmarks, tags, attachments, rights.
void AddTourLists(Tour& tour);

} // namespace samples
