#pragma once

#include "objects.h"
#include "text_object.h"

#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace ofd {

struct Resources;

enum class LayerKind { Background = 0, Body = 1, Foreground = 2 };

struct Layer
{
    int id = 0;
    LayerKind kind = LayerKind::Body;
    QString name;
    ObjectList objects;
};

struct TemplateRef
{
    int id = 0;
    QString zOrder; // as written; empty when not given
};

// The content of a page or of a template.
struct PageContent
{
    std::vector<Layer> layers; // in document order
    QVector<TemplateRef> templates;
    std::unique_ptr<const ObjectActions> actions; // that a click on the page itself runs; null for none
    std::shared_ptr<const Resources> resources;   // never null
    qint64 bytes = 0;                             // of memory that it takes, about
};

} // namespace ofd
