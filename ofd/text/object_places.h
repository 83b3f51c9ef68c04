#pragma once

#include <QPainterPath>
#include <QPolygonF>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QVector>

#include <atomic>

namespace ofd {

class DocumentStore;
struct PageContent;

// A piece of text that is selected as one.
struct PlacedText
{
    QRectF box; // page mm
    QString text;
    QPolygonF cell;       // page mm; turned as the text is
    QPointF along;        // the way the text runs on the page; 1 long
    bool isFirst = false; // of what the file writes as one
};

// Where an object is painted.
struct ObjectPlace
{
    int id = 0;
    int layer = 0; // position of its layer
    bool isVisible = true;
    QRectF box;           // page mm, normalised; that of the glyphs for texts, whose boundaries are often empty
    QPainterPath outline; // page mm; of paths only
};

// The visible texts of the content's own layers in document order, those inside composites included, without the layers
// at those positions. Ends early once it is given up.
QVector<PlacedText> PlaceTexts(const PageContent& content, DocumentStore& store, const QSet<int>& hiddenLayers = {},
                               const std::atomic<bool>* isGivenUp = nullptr);
// All objects of the page itself with an identifier, in document order, also those inside groups; a composite counts as
// one object. None of its templates: their objects have identifiers of another page.
QVector<ObjectPlace> PlaceObjects(const PageContent& content, DocumentStore& store);

} // namespace ofd
