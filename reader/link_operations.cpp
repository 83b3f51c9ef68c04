#include "link_operations.h"

#include "main_window.h"
#include "reader_context.h"

#include <frame/base/streams.h>
#include <frame/document/ig_document.h>
#include <frame/view/context_menu.h>
#include <frame/view/doc_view.h>
#include <frame/view/link_text.h>

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

constexpr int MostOfName = 60; // characters, which are bytes up to four times

// A name that any file system takes and that leads nowhere.
QString SuggestedName(const G_AttachmentInfo& attachment)
{
    QString name = ShownText(FileNameOf(attachment));
    for (QChar& c : name) {
        if (QStringLiteral("/\\:*?\"<>|").contains(c))
            c = QLatin1Char('_');
    }
    while (name.startsWith(QLatin1Char('.')))
        name.remove(0, 1);
    return name.isEmpty() ? QStringLiteral("attachment") : name;
}

// Files of its kind first, so that a name typed without an ending gets that of the attachment.
QString FilterFor(const QString& name)
{
    static const QRegularExpression plain(QStringLiteral("^\\w+$"));
    const QString ending = QFileInfo(name).suffix();
    const QString all = GP_LinkCommand::tr("All files (*)");
    return plain.match(ending).hasMatch() ? QStringLiteral("*.%1;;%2").arg(ending, all) : all;
}

bool WriteTo(const QString& path, IG_Document* document, int index)
{
    std::unique_ptr<ICA_StreamWriter> writer(ICA_StreamWriter::CreateFileStreamWriter(path.toStdWString().c_str(), 0));
    if (!writer)
        return false;
    const bool isWritten = document->WriteAttachment(index, writer.get());
    if (!isWritten)
        writer->Abandon();
    writer.reset(); // the file takes its place
    return isWritten && QFileInfo::exists(path);
}

// Into a folder that only the user can read, under a name of our own length.
QString OpenAttachment(ReaderContext* context, IG_Document* document, int index)
{
    const QFileInfo name(SuggestedName(document->GetAttachment(index)));
    auto folder = std::make_unique<QTemporaryDir>(QDir::temp().filePath(QStringLiteral("tetoreader-XXXXXX")));
    const QString path = folder->filePath(name.completeBaseName().left(MostOfName) + QLatin1Char('.') + name.suffix());
    if (!folder->isValid() || !WriteTo(path, document, index))
        return GP_LinkCommand::tr("The attachment cannot be opened.");
    QFile::setPermissions(path, QFileDevice::ReadOwner);
    context->Window()->OpenTemporaryFile(std::move(folder), path);
    return QString();
}

QString SaveAttachment(ReaderContext* context, IG_Document* document, int index)
{
    const G_AttachmentInfo attachment = document->GetAttachment(index);
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    const QString name = SuggestedName(attachment);
    const QString path =
        context->AskSavePath(GP_LinkCommand::tr("Save Attachment"), folder.filePath(name), FilterFor(name));
    if (path.isEmpty())
        return QString();
    const int place = document->GetAttachmentIndexById(attachment.id); // the list may have changed meanwhile
    const bool isWritten = place >= 0 && WriteTo(path, document, place);
    return isWritten ? GP_LinkCommand::tr("The attachment was saved.")
                     : GP_LinkCommand::tr("The attachment cannot be saved there.");
}

// Nothing that came with a document is started: one that the reader itself shows may be looked at, all others are
// saved.
QString OfferAttachment(ReaderContext* context, IG_Document* document, int index)
{
    const G_AttachmentInfo attachment = document->GetAttachment(index);
    const QString name = SuggestedName(attachment);
    if (!context->Window() || QFileInfo(name).suffix().compare(QLatin1String("ofd"), Qt::CaseInsensitive) != 0)
        return SaveAttachment(context, document, index);
    const QString text = GP_LinkCommand::tr("The attachment %1 is a document. Do you want to open it or to save it?");
    const int answer =
        context->ShowQuestionBox(GP_LinkCommand::tr("Attachment"), text.arg(name),
                                 QMessageBox::Open | QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Open);
    if (answer != QMessageBox::Open && answer != QMessageBox::Save)
        return QString(); // the document may have gone meanwhile
    const int place = document->GetAttachmentIndexById(attachment.id);
    if (place < 0)
        return GP_LinkCommand::tr("The attachment cannot be opened.");
    return answer == QMessageBox::Open ? OpenAttachment(context, document, place)
                                       : SaveAttachment(context, document, place);
}

} // namespace

G_Operation* GP_LinkCommand::Clone() const
{
    auto* copy = new GP_LinkCommand(command);
    copy->CopyFrom(this);
    return copy;
}

bool GP_LinkCommand::DoAction()
{
    G_PageLink link;
    if (!DocView() || !DocView()->LinkAt({Params->GetInt32("link_x"), Params->GetInt32("link_y")}, &link))
        return false;
    if (command == Open) {
        UIContext()->ActionHandler()->DoActions(link.actions->Actions(), GDocument(), kClickOnPage);
        return true;
    }
    const QString address = AddressOf(*link.actions);
    if (!address.isEmpty())
        QGuiApplication::clipboard()->setText(address);
    return !address.isEmpty();
}

void AddLinkToMenu(G_DocView* view, const QPoint& scenePoint, QMap<QString, ContextMenuItemState>* states,
                   G_OperationParam* params)
{
    G_PageLink link;
    ContextMenuItemState open;
    open.visible = view->LinkAt({scenePoint.x(), scenePoint.y()}, &link);
    ContextMenuItemState copy;
    copy.visible = open.visible && !AddressOf(*link.actions).isEmpty();
    states->insert(QStringLiteral("e_openlink"), open);
    states->insert(QStringLiteral("e_copylinkaddress"), copy);
    params->Add("link_x", scenePoint.x());
    params->Add("link_y", scenePoint.y());
}

void OfferAttachments(ReaderContext* context)
{
    context->ActionHandler()->SetAttachmentSaver(
        [context](IG_Document* document, int index) { return OfferAttachment(context, document, index); });
}
