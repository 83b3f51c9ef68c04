#pragma once

#include <frame/base/geometry.h>
#include <frame/base/strings.h>
#include <frame/view/view_render.h>

#include <QMetaType>

class G_AnnotationHandler;
class G_UIContext;
class IG_Annot;
class IG_Document;

// A mouse tool. The registered prototype is cloned once for each view; the view owns its clones. Scene points are in
// scene units. Handlers return non-zero when they took the event; what no tool takes goes to the view itself
// (scrolling by wheel and keys).
class FRAME_EXPORT G_ToolHandler : public G_DocViewRender
{
public:
    G_ToolHandler() = default;
    ~G_ToolHandler() override;
    virtual G_ToolHandler* Clone() = 0; // owned by the caller
    virtual CCA_String Name() = 0;      // the registered name
    // The clone's view dies; the tool became, or is no longer, the view's current one.
    virtual void OnDestroy() = 0;
    virtual void OnActivate() = 0;
    virtual void OnDeactivate() = 0;
    // Of the current tool. `flags` are the Qt::MouseButtons that are down and the Qt::KeyboardModifiers.
    virtual int OnLButtonDown(unsigned flags, CCA_Point point) = 0;
    virtual int OnLButtonUp(unsigned flags, CCA_Point point) = 0;
    virtual int OnLButtonDblClk(unsigned flags, CCA_Point point) = 0;
    virtual int OnMButtonDown(unsigned flags, CCA_Point point) = 0;
    virtual int OnMButtonUp(unsigned flags, CCA_Point point) = 0;
    virtual int OnMButtonDblClk(unsigned flags, CCA_Point point) = 0;
    virtual int OnRButtonDown(unsigned flags, CCA_Point point) = 0;
    virtual int OnRButtonUp(unsigned flags, CCA_Point point) = 0;
    virtual int OnRButtonDblClk(unsigned flags, CCA_Point point) = 0;
    virtual int OnMouseMove(unsigned flags, CCA_Point point) = 0;
    virtual int OnEnter() = 0;
    virtual int OnLeave() = 0;
    virtual int OnWheel(unsigned flags, int delta, CCA_Point point) = 0;
    virtual int OnKeyDown(int key, unsigned flags) = 0; // Qt::Key, Qt::KeyboardModifiers
    virtual int OnKeyUp(int key, unsigned flags) = 0;
    virtual int ShortCutActivated(int id) = 0;
    virtual int OnWinEvent(void* event) = 0;
    virtual int OnWinActiveEvent(bool active) = 0;

    // Null on a prototype and once the view has died.
    G_DocView* DocView() const { return view; }
    IG_Document* GDocument() const;
    G_UIContext* UIContext() const;
    // Makes this object the prototype of its name; the caller keeps owning it. The destructor takes it out again.
    void RegisterHandlerToGlobal();

private:
    friend class G_DocView;
    G_DocView* view = nullptr; // not owned; set on clones
};
Q_DECLARE_METATYPE(G_ToolHandler*)

// What a tool keeps of the annotation it works on.
class FRAME_EXPORT G_AnnotationHandler
{
public:
    virtual ~G_AnnotationHandler();
    // Null clears the tool's current annotation.
    virtual void SetCurrentAnnot(IG_Annot* annot);
    IG_Annot* CurrentAnnot() const { return current; }

private:
    IG_Annot* current = nullptr; // not owned
};

// The usual base of concrete tools: takes no event.
class FRAME_EXPORT GT_Base : public G_ToolHandler
{
public:
    GT_Base() = default;
    void OnDestroy() override;
    void OnActivate() override;
    void OnDeactivate() override;
    int OnLButtonDown(unsigned flags, CCA_Point point) override;
    int OnLButtonUp(unsigned flags, CCA_Point point) override;
    int OnLButtonDblClk(unsigned flags, CCA_Point point) override;
    int OnMButtonDown(unsigned flags, CCA_Point point) override;
    int OnMButtonUp(unsigned flags, CCA_Point point) override;
    int OnMButtonDblClk(unsigned flags, CCA_Point point) override;
    int OnRButtonDown(unsigned flags, CCA_Point point) override;
    int OnRButtonUp(unsigned flags, CCA_Point point) override;
    int OnRButtonDblClk(unsigned flags, CCA_Point point) override;
    int OnMouseMove(unsigned flags, CCA_Point point) override;
    int OnEnter() override;
    int OnLeave() override;
    int OnWheel(unsigned flags, int delta, CCA_Point point) override;
    int OnKeyDown(int key, unsigned flags) override;
    int OnKeyUp(int key, unsigned flags) override;
    int ShortCutActivated(int id) override;
    int OnWinEvent(void* event) override;
    int OnWinActiveEvent(bool active) override;

    // Between the two, OnLButtonDown and OnLButtonUp treat this annotation as lying under the point.
    virtual void SimulateBegin(IG_Annot* annot);
    virtual void SimulateEnd();

    G_AnnotationHandler* annotHandler = nullptr; // not owned; may be null

protected:
    IG_Annot* simulatedAnnot = nullptr; // not owned
};

// The registered tool prototypes of the process. Holds by reference, deletes nothing.
class FRAME_EXPORT G_ToolRegistry
{
public:
    static G_ToolRegistry& Instance();
    void Register(G_ToolHandler* prototype);
    void Unregister(G_ToolHandler* prototype); // only if it is the registered one
    G_ToolHandler* Find(const QByteArray& name) const;
    QList<QByteArray> Names() const;

private:
    QList<QPair<QByteArray, G_ToolHandler*>> prototypes; // not owned
};
