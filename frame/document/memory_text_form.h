#pragma once

#include "line_words.h"
#include "memory_document.h"

#include <QString>
#include <QVector>

#include <memory>

// Builds one document from one text; used once.
class TextForm
{
public:
    std::unique_ptr<MemoryDocument> Read(const QString& text);
    const QString& Error() const { return error; }

private:
    enum Place { AtTop, InPage, InOutline, InTag, InLeaf };
    struct Level
    {
        Place place = AtTop;
        G_TreeNode* node = nullptr; // not owned; where entries below go
    };
    using Handler = bool (TextForm::*)();
    struct Keyword
    {
        const char* word;
        Place place; // what the line must stand in
        Handler handler;
        Place opens; // what deeper lines below it stand in
    };

    bool ReadLine(const QString& line);
    bool ReadItem(const QString& keyword, const Level& outer, Level* inner);
    bool Page();
    bool Text();
    bool Layer();
    bool Template();
    bool TemplateRef();
    bool Annot();
    bool AnnotWord(const QString& key, const QString& value, MemoryDocument::AnnotRecord* record);
    bool Link();
    bool Open();
    bool ActionWords(G_ActionList* list, G_PageLink* link, int* annotId);
    bool ActionWord(const QString& key, const QString& value, G_ActionList* list);
    G_ActionGoto* JumpOf(G_ActionList* list, bool isNew);
    bool Bookmark();
    bool Outline();
    bool Tag();
    bool Attachment();
    bool Rights();
    bool ReadOnly();
    bool Signed();
    bool Encrypted();
    G_TreeNode* AddTo(G_TreeNode* parent, G_NodeData* payload);
    bool DestWord(const QString& key, const QString& value, G_Dest* dest);
    bool TagObjects(const QString& value, G_CustomTagItem* tag);
    bool NextFloat(float* number);
    bool NextId(int* id);
    bool Fail(const QString& message);

    std::unique_ptr<MemoryDocument> document;
    QVector<Level> levels;          // what each indentation of the lines before stands in
    LineWords words;                // the rest of the present line
    G_TreeNode* treeNode = nullptr; // not owned; the node that the present line goes below, then the one it made
    QVector<G_Dest*> openDests;     // not owned; those whose page index is to be found at the end
    QString error;
};
