#include "link_text.h"

#include "go_to_dest.h"
#include "ui_context.h"

#include <frame/base/converters.h>
#include <frame/document/ig_document.h>

#include <QStringList>

namespace {

constexpr int shownAddressLength = 300; // characters
constexpr int shownActions = 4;

QString DescribeJump(const G_ActionGoto& jump, IG_Document* document)
{
    const G_Dest* dest = PlaceOf(jump, document);
    const int page = dest ? PageOf(*dest, document) : -1;
    if (page >= 0)
        return G_ActionHandler::tr("Page %1").arg(page + 1);
    return dest ? G_ActionHandler::tr("This page does not exist.")
                : G_ActionHandler::tr("The bookmark “%1” does not exist.")
                      .arg(ShownText(GQ_ToQStringFromUtf8(jump.bookmarkName)));
}

QString Describe(const G_Action& action, IG_Document* document)
{
    if (const auto* jump = dynamic_cast<const G_ActionGoto*>(&action))
        return DescribeJump(*jump, document);
    if (const auto* opens = dynamic_cast<const G_ActionUri*>(&action))
        return ShownAddress(GQ_ToQStringFromUtf8(opens->Address()));
    if (const auto* shows = dynamic_cast<const G_ActionAttachment*>(&action)) {
        const int index = document->GetAttachmentIndexById(shows->attachmentId);
        return index < 0
                   ? G_ActionHandler::tr("This attachment does not exist.")
                   : G_ActionHandler::tr("Attachment: %1").arg(ShownText(FileNameOf(document->GetAttachment(index))));
    }
    if (action.actionType == G_Action::Sound)
        return G_ActionHandler::tr("Sound");
    return action.actionType == G_Action::Movie ? G_ActionHandler::tr("Movie") : QString();
}

} // namespace

QString FileNameOf(const G_AttachmentInfo& attachment)
{
    const QString name = GQ_ToQStringFromUtf8(attachment.name);
    const QString ending = GQ_ToQStringFromUtf8(attachment.format);
    return ending.isEmpty() ? name : name + QLatin1Char('.') + ending;
}

QString DescribeActions(const G_ActionList& actions, IG_Document* document)
{
    QStringList lines;
    for (const G_Action* action : actions.Actions()) {
        const QString line = Describe(*action, document);
        if (line.isEmpty() || lines.contains(line))
            continue;
        if (lines.size() == shownActions) {
            lines.append(QString(QChar(0x2026)));
            break;
        }
        lines.append(line);
    }
    return lines.join(QLatin1Char('\n'));
}

QString AddressOf(const G_ActionList& actions)
{
    for (const G_Action* action : actions.Actions()) {
        const auto* opens = dynamic_cast<const G_ActionUri*>(action);
        if (opens && !opens->uri.IsEmpty())
            return ShownText(GQ_ToQStringFromUtf8(opens->Address()));
    }
    return QString();
}

QString ShownText(QString text)
{
    for (QChar& c : text) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            c = QLatin1Char('_');
    }
    return text;
}

QString ShownAddress(const QString& address)
{
    const QString shown = ShownText(address);
    return shown.size() > shownAddressLength ? shown.left(shownAddressLength) + QChar(0x2026) : shown;
}
