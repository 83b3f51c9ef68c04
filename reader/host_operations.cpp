#include "host_operations.h"

#include "link_operations.h"
#include "main_window.h"
#include "reader_context.h"

#include <frame/json/ovjson.h>
#include <frame/view/doc_view.h>

namespace {

template <typename Operation>
G_Operation* CloneOf(const Operation* original)
{
    auto* copy = new Operation;
    copy->CopyFrom(original);
    return copy;
}

} // namespace

G_Operation* GP_Navigation::Clone() const
{
    return CloneOf(this);
}

bool GP_Navigation::DoAction()
{
    MainWindow* window = ReaderContext::WindowOf(UIContext());
    const QByteArray text = Params->GetQString("navi_params").toUtf8();
    const OVSharedPtr<OVJson> json = OVJsonFactory::ParseJsonString(text.constData(), text.size());
    if (!window || !json)
        return false;
    const bool opens = json->Member("navi_open_status").ToQString() == QLatin1String("1");
    return window->ShowPane(json->Member("navi_btn_checked").ToQString(), opens);
}

G_Operation* GP_OpenFile::Clone() const
{
    return CloneOf(this);
}

bool GP_OpenFile::DoAction()
{
    MainWindow* window = ReaderContext::WindowOf(UIContext());
    const QString path = Params->GetQString("filename");
    return window && !path.isEmpty() && window->OpenFile(path, Params->GetBool("readonly"));
}

G_Operation* GP_ShowAnnotations::Clone() const
{
    return CloneOf(this);
}

bool GP_ShowAnnotations::DoAction()
{
    G_DocView* view = DocView();
    if (!view)
        return false;
    view->SetAnnotStatus(Params->Contains("isVisible") ? Params->GetBool("isVisible") : !view->AnnotStatus());
    view->UpdateView();
    return true;
}

G_Operation* GP_WindowCommand::Clone() const
{
    auto* copy = new GP_WindowCommand(name, command);
    copy->CopyFrom(this);
    return copy;
}

bool GP_WindowCommand::DoAction()
{
    MainWindow* window = ReaderContext::WindowOf(UIContext());
    if (!window || !window->CurrentTab())
        return false;
    (window->*command)();
    return true;
}

std::vector<std::unique_ptr<G_Operation>> RegisterHostOperations()
{
    std::vector<std::unique_ptr<G_Operation>> operations;
    operations.push_back(std::make_unique<GP_Navigation>());
    operations.push_back(std::make_unique<GP_OpenFile>());
    operations.push_back(std::make_unique<GP_ShowAnnotations>());
    operations.push_back(std::make_unique<GP_WindowCommand>("e_copytext", &MainWindow::CopyText));
    operations.push_back(std::make_unique<GP_WindowCommand>("e_selectalltext", &MainWindow::SelectAllText));
    operations.push_back(std::make_unique<GP_LinkCommand>(GP_LinkCommand::Open));
    operations.push_back(std::make_unique<GP_LinkCommand>(GP_LinkCommand::CopyAddress));
    operations.push_back(std::make_unique<GP_WindowCommand>("e_find", &MainWindow::Find));
    operations.push_back(std::make_unique<GP_WindowCommand>("f_properties", &MainWindow::ShowProperties));
    for (const auto& operation : operations)
        operation->RegisterToGlobal();
    return operations;
}
