#pragma once

#include <tests/ofd/document/ofd_file.h>

#include <frame/document/ig_document.h>
#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>

extern const QString ListPart;
extern const QString TagPart;
// Tags of an invoice, with bytes that must survive.
extern const QByteArray Tags;

// A document of two pages with these tags.
OfdFile File(const QByteArray& tags = Tags);
// "0/1" is the second tag below the first of the top tag's; "" is the top tag.
G_TreeNode* NodeAt(IG_Document& document, const QByteArray& rows, int root = 0);
G_CustomTagItem* TagAt(IG_Document& document, const QByteArray& rows, int root = 0);
// Owned by the caller.
G_CustomTagItem* NewTag(const CCA_String& name);
