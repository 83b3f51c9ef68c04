#include "destination.h"

#include <QUrl>

bool operator==(const G_Dest& a, const G_Dest& b)
{
    return a.zoomMode == b.zoomMode && a.pageId == b.pageId && a.pageIndex == b.pageIndex && a.Rect() == b.Rect() &&
           a.zoom == b.zoom;
}

G_Action::~G_Action() = default;

G_Action* G_Action::Clone() const
{
    return new G_Action(*this);
}

G_ActionGoto::G_ActionGoto()
    : G_Action(Goto)
    , dest(new G_Dest)
{
}

G_ActionGoto::G_ActionGoto(const G_ActionGoto& other)
    : G_Action(other)
    , dest(new G_Dest(*other.dest))
    , bookmarkName(other.bookmarkName)
{
}

G_ActionGoto::~G_ActionGoto()
{
    delete dest;
}

G_Action* G_ActionGoto::Clone() const
{
    return new G_ActionGoto(*this);
}

G_Action* G_ActionUri::Clone() const
{
    return new G_ActionUri(*this);
}

CCA_String G_ActionUri::Address() const
{
    const QUrl own(QString::fromUtf8(uri.Bytes()).trimmed());
    if (base.IsEmpty() || !own.isRelative())
        return uri;
    const QUrl from(QString::fromUtf8(base.Bytes()).trimmed());
    return CCA_String(from.resolved(own).toString(QUrl::FullyEncoded).toUtf8());
}

G_Action* G_ActionAttachment::Clone() const
{
    return new G_ActionAttachment(*this);
}
