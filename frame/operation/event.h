#pragma once

#include <frame/base/export.h>

#include <QMetaType>
#include <QString>
#include <QStringList>

class G_DocView;
class IG_Annot;
class IG_Document;

// The numbers of events, spelled once.
namespace EventType {
constexpr unsigned short DocumentChanged = 110;
constexpr unsigned short AnnotChanged = 111;
constexpr unsigned short ViewZoomChanged = 152;
constexpr unsigned short StatusText = 173;
constexpr unsigned short CommandBarChanged = 260;
constexpr unsigned short SubScreensChanged = 332;
constexpr unsigned short NodeAdded = 1000;
} // namespace EventType

// The base of events. Made on the heap, handed to G_UIContext::FireEvent and forgotten: the frame owns and deletes it
// after delivery.
class FRAME_EXPORT G_Event
{
public:
    explicit G_Event(unsigned short type)
        : type(type)
    {
    }
    virtual ~G_Event();
    unsigned short TypeEnum() const { return type; }
    // The view the event speaks of; null when it speaks of none. An event whose view died before delivery is dropped.
    virtual G_DocView* View() const { return nullptr; }

private:
    unsigned short type;
};
Q_DECLARE_METATYPE(G_Event*)

// Type 110: the document of the view was changed. The sub-type is 0 in every firing.
class FRAME_EXPORT G_DocumentChangedEvent : public G_Event
{
public:
    G_DocumentChangedEvent(G_DocView* view, unsigned short type, int subType)
        : G_Event(type)
        , view(view)
        , subType(subType)
    {
    }
    G_DocView* View() const override { return view; }
    int SubType() const { return subType; }

private:
    G_DocView* view; // not owned
    int subType;
};

// Type 152: something about a view changed.
class FRAME_EXPORT G_DocViewEvent : public G_Event
{
public:
    G_DocViewEvent(G_DocView* view, unsigned short type)
        : G_Event(type)
        , view(view)
    {
    }
    G_DocView* View() const override { return view; }

private:
    G_DocView* view; // not owned
};

// Type 111: an annotation changed.
class FRAME_EXPORT G_AnnotationEvent : public G_Event
{
public:
    G_AnnotationEvent(IG_Document* document, IG_Annot* annot, unsigned short type)
        : G_Event(type)
        , document(document)
        , annot(annot)
    {
    }
    IG_Document* Document() const { return document; }
    IG_Annot* Annot() const { return annot; }

private:
    IG_Document* document; // not owned
    IG_Annot* annot;       // not owned
};

// Type 173: a short text for the user, shown in a transient note.
class FRAME_EXPORT G_StringEvent : public G_Event
{
public:
    G_StringEvent(const QString& text, unsigned short type)
        : G_Event(type)
        , text(text)
    {
    }
    const QString& Text() const { return text; }

private:
    QString text;
};

// Type 332: secondary views are to be repainted.
class FRAME_EXPORT G_UpdateSubScreenEvent : public G_Event
{
public:
    explicit G_UpdateSubScreenEvent(unsigned short type)
        : G_Event(type)
    {
    }
};

// Tells the host's tool bar that operations changed state.
struct CommandBarSettingData
{
    QStringList names;
    int kind = 7;
    bool value = false;
};

// Type 260: operations changed state.
class FRAME_EXPORT G_CommandBarOpChangedEvent : public G_Event
{
public:
    explicit G_CommandBarOpChangedEvent(const CommandBarSettingData& data)
        : G_Event(EventType::CommandBarChanged)
        , data(data)
    {
    }
    const CommandBarSettingData& Data() const { return data; }

private:
    CommandBarSettingData data;
};
