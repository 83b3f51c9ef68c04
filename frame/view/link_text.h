#pragma once

#include <frame/base/export.h>
#include <frame/document/page_link.h>

#include <QString>

class IG_Document;
struct G_AttachmentInfo;

// Kinds of clicks, for G_ActionHandler::DoActions.
constexpr int kClickOnPage = 1;
constexpr int kClickInPane = 3;

// What actions would do, in words for people, one line each; for a long list the first few. Texts of the document are
// shown as they are, without what could hide or reorder parts of them.
FRAME_EXPORT QString DescribeActions(const G_ActionList& actions, IG_Document* document);

// The first address that the actions would open; empty when they open none.
FRAME_EXPORT QString AddressOf(const G_ActionList& actions);

// The name of the file that the attachment would be.
FRAME_EXPORT QString FileNameOf(const G_AttachmentInfo& attachment);

// A text of a document, for people: characters that are not seen, or turn the direction of others, become "_".
FRAME_EXPORT QString ShownText(QString text);

// An address likewise, cut where it gets long.
FRAME_EXPORT QString ShownAddress(const QString& address);
