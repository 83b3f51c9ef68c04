#pragma once

#include <frame/base/export.h>
#include <frame/base/geometry.h>
#include <frame/base/strings.h>

#include <QMetaType>
#include <QVector>

// A place in a document. A value type; the rectangle is in millimetres on the page.
class FRAME_EXPORT G_Dest
{
public:
    CCA_GRect Rect() const { return CCA_GRect(left, top, right, bottom); }

    int zoomMode = 0;  // 0 plain zoom, 1 fit page, 2 fit width, 3 fit height, 4 fit rectangle
    int pageId = 0;    // 0 = unset, and pageIndex counts
    int pageIndex = 0; // from 0; negative when the page does not exist
    float left = 0;
    float right = 0;
    float top = 0;
    float bottom = 0;
    float zoom = 0; // a factor: percent divided by 100
};
FRAME_EXPORT bool operator==(const G_Dest& a, const G_Dest& b);

Q_DECLARE_METATYPE(G_Dest*)

// Something a click runs. Polymorphic; lists of actions own theirs.
class FRAME_EXPORT G_Action
{
public:
    enum Type { Other = 0, Goto = 1, Uri = 2, GotoBookmark = 3, Attachment = 4, Sound = 5, Movie = 6 };

    explicit G_Action(int actionType = Other)
        : actionType(actionType)
    {
    }
    virtual ~G_Action();
    // A deep copy, owned by the caller.
    virtual G_Action* Clone() const;

    int actionType;
    // The source of an action that the record does not tell all of, kept for saving; empty otherwise.
    CCA_String opaque;

protected:
    G_Action(const G_Action&) = default;
    G_Action& operator=(const G_Action&) = delete;
};

// Goes to a destination.
class FRAME_EXPORT G_ActionGoto : public G_Action
{
public:
    G_ActionGoto();
    G_ActionGoto(const G_ActionGoto& other);
    ~G_ActionGoto() override;
    G_Action* Clone() const override;

    G_Dest* dest; // owned, never null
    // The bookmark that the destination was resolved through; empty when the action holds a destination of its own.
    CCA_String bookmarkName;
};

// Opens an address, after the reader's question.
class FRAME_EXPORT G_ActionUri : public G_Action
{
public:
    G_ActionUri()
        : G_Action(Uri)
    {
    }
    G_Action* Clone() const override;
    // What is opened: the address, and where that is a relative one, as seen from the base. UTF-8.
    CCA_String Address() const;

    CCA_String uri;
    CCA_String base; // empty for none

protected:
    G_ActionUri(const G_ActionUri&) = default;
};

// Shows an attachment of the document.
class FRAME_EXPORT G_ActionAttachment : public G_Action
{
public:
    G_ActionAttachment()
        : G_Action(Attachment)
    {
    }
    G_Action* Clone() const override;

    int attachmentId = 0; // 0 when it names none
    bool opensNewWindow = true;

protected:
    G_ActionAttachment(const G_ActionAttachment&) = default;
};
