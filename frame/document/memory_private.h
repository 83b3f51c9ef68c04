#pragma once

#include "memory_attachments.h"
#include "memory_document.h"
#include "memory_page.h"
#include "memory_renderer.h"

#include <QHash>
#include <QSet>

#include <mutex>

// What the in-memory document holds. The mutex guards the pages and templates against the renderer's threads: the main
// thread takes it to write, other threads to read.
struct MemoryDocument::Private
{
    struct Template
    {
        int id = 0;
        CCA_String name;
        CCA_String zOrder;
        bool isVisible = true;
    };
    struct Rights
    {
        bool hasPermissions = false;
        bool edit = true;
        bool annotate = true;
        bool exportContent = true;
        bool print = true;
        int copies = -1;
    };

    Private();
    MemoryPage* PageAt(int index) const; // null when out of range; also a page that fails to load
    const Template* FindTemplate(int id) const;
    void NumberPages();
    bool FillSheet(const G_RenderRequest& request, MemorySheet* sheet) const;

    CCA_String key;
    mutable std::mutex mutex;
    std::vector<std::unique_ptr<MemoryPage>> pages;
    QHash<int, int> pageIndexById;
    int highestPageId = 0;
    std::vector<std::unique_ptr<MemoryPage>> removedPages; // kept for those who still point at them
    QSet<int> annotIds;                                    // of all pages, removed ones included
    int highestAnnotId = 0;
    QVector<Template> templates;
    std::unique_ptr<G_TreeNode> outlineRoot;
    std::unique_ptr<G_TreeNode> bookmarkRoot;
    std::vector<std::unique_ptr<G_TreeNode>> tagRoots;
    std::shared_ptr<const G_ActionList> openActions; // null for none
    MemoryAttachments attachments;
    MemoryRenderer renderer;
    Rights rights;
    bool isReadOnly = false;
    bool isSigned = false;
    bool isEncrypted = false;
    bool failsToCreateRoots = false;
    std::atomic<bool> isModified{false};
    std::atomic<int> textRevision{0}; // counts what is hidden and shown
    QByteArray savedTrees;            // the fingerprint of the trees that count as unchanged
};
