#include "operation.h"

#include "copy_keeper.h"
#include "interceptor.h"
#include "registry.h"

#include <frame/json/ovjson.h>

#include <cmath>
#include <limits>

// Marks a run of a copy that is on the stack, so that the copy is not freed under it. Ends by telling the keeper
// without touching the copy, which the main thread may free as soon as the mark is off.
class G_Operation::RunMark
{
public:
    explicit RunMark(G_Operation* op)
        : op(op)
        , keeper(op->keeper)
        , serial(op->serial)
    {
        ++op->running;
    }
    ~RunMark()
    {
        --op->running;
        if (keeper)
            keeper->RunEnded(op, serial);
    }

private:
    Q_DISABLE_COPY(RunMark)
    G_Operation* op; // not owned
    std::shared_ptr<CopyKeeper> keeper;
    quint64 serial;
};

namespace {

// Gives each entry whose interceptor still lives to `call`, also when calls destroy interceptors on the way.
template <typename Call>
void ForEachAlive(const QVector<InterceptorEntry>& entries, quint64 leavesWhenFound, Call call)
{
    const G_OperationRegistry& registry = G_OperationRegistry::Instance();
    for (const InterceptorEntry& entry : entries) {
        if (registry.LeaveCount() == leavesWhenFound || registry.IsEnrolled(entry))
            call(entry);
    }
}

void AddNumber(G_OperationParam* params, const QByteArray& key, double number)
{
    const bool isInt = std::floor(number) == number && std::abs(number) <= std::numeric_limits<int>::max();
    if (isInt)
        params->Add(key, static_cast<int>(number));
    else
        params->Add(key, static_cast<float>(number));
}

// Objects and arrays are kept as JSON text; a null adds nothing.
void AddJsonMember(G_OperationParam* params, const QByteArray& key, const OVJson& value)
{
    if (value.IsString())
        params->Add(key, value.ToQString());
    else if (value.IsNumber())
        AddNumber(params, key, value.ToQString().toDouble());
    else if (value.IsObject() || value.IsArray())
        params->Add(key, QString::fromUtf8(OVJsonFactory::BuildJsonString(std::make_shared<OVJson>(value))));
    else if (value.ToBool(false) == value.ToBool(true)) // a null answers with the default
        params->Add(key, value.ToBool());
}

} // namespace

G_OperationHost::~G_OperationHost() = default;

G_Operation::G_Operation()
    : Params(new G_OperationParam)
{
}

G_Operation::~G_Operation()
{
    G_OperationRegistry::Instance().Unregister(this);
    if (keeper)
        keeper->Remove(this);
    delete Params;
}

int G_Operation::AuthorityType() const
{
    return Authority::Any;
}

QString G_Operation::ListenerParamsJson() const
{
    return {};
}

void G_Operation::ParseParamJson(const QString& json)
{
    const QByteArray text = json.toUtf8();
    const OVSharedPtr<OVJson> parsed = OVJsonFactory::ParseJsonString(text.constData(), text.size());
    if (!parsed || !parsed->IsObject())
        return;
    for (int i = 0; i < parsed->MemberCount(); ++i) {
        const QByteArray key = parsed->KeyAt(i);
        AddJsonMember(Params, key, parsed->Member(key));
    }
}

void G_Operation::ResetParams()
{
    Params->Clear();
}

G_DocView* G_Operation::DocView() const
{
    return view;
}

G_UIContext* G_Operation::UIContext() const
{
    return context;
}

IG_Document* G_Operation::GDocument() const
{
    return document;
}

bool G_Operation::PerformAction()
{
    const RunMark mark(this);
    if (G_OperationHost* const asked = host) {
        if (!asked->MayRun(this)) {
            asked->RefusedByRights(this);
            return false;
        }
        if (IG_Document* const target = document)
            asked->BeforePerform(target);
    }
    FindInterceptors();
    return IsPrepared() && RunFromBefore();
}

int G_Operation::ExecuteAction()
{
    const RunMark mark(this);
    if (!areInterceptorsFound)
        FindInterceptors();
    return RunFromBefore() ? 1 : 0;
}

void G_Operation::FindInterceptors()
{
    const G_OperationRegistry& registry = G_OperationRegistry::Instance();
    leavesWhenFound = registry.LeaveCount();
    interceptors = registry.Matching(this, document);
    areInterceptorsFound = true;
}

// All are asked, whatever the first ones say: an interceptor may rely on being asked even when another refuses.
bool G_Operation::IsPrepared()
{
    const QVector<InterceptorEntry> asked = interceptors; // a prepare may perform this very copy
    QVector<InterceptorEntry> refusers;
    ForEachAlive(asked, leavesWhenFound, [&](const InterceptorEntry& entry) {
        if (!entry.interceptor->PrepareDataHandle(this, 0))
            refusers.append(entry);
    });
    if (keeper && !refusers.isEmpty())
        keeper->Park(this, refusers);
    return refusers.isEmpty();
}

bool G_Operation::RunFromBefore()
{
    const QVector<InterceptorEntry> asked = interceptors;
    const quint64 leaves = leavesWhenFound;
    Result = 1; // what the before-handlers see: nothing has failed so far
    bool isRefused = false;
    ForEachAlive(asked, leaves, [&](const InterceptorEntry& entry) {
        if (!entry.interceptor->BeforeDoActionHandle(this))
            isRefused = true;
    });
    if (isRefused) {
        Result = 0;
        return false;
    }
    const bool isDone = DoAction();
    Result = isDone ? 1 : 0;
    ForEachAlive(asked, leaves, [&](const InterceptorEntry& entry) { entry.interceptor->AfterDoActionHandle(this); });
    return isDone;
}

void G_Operation::DeleteLater()
{
    if (keeper)
        keeper->HandBack(this);
}

void G_Operation::CopyFrom(const G_Operation* other)
{
    if (other && other != this)
        *Params = *other->Params;
}

void G_Operation::RegisterToGlobal()
{
    G_OperationRegistry::Instance().Register(this);
}
