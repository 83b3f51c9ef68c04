#pragma once

#include <QHash>

#include <QPair>
#include <QSet>

#include <mutex>

namespace ofd {

// What is hidden in this session. The panes write it on the main thread while painting threads read it; nothing of it
// is saved.
class SessionState
{
public:
    struct PageView
    {
        QSet<int> hiddenTemplates;   // ids
        QSet<int> hiddenLayers;      // positions on the page
        QSet<int> hiddenAnnotations; // positions in the page's list, removed ones included
    };

    void SetTemplateHidden(int id, bool isHidden);
    bool IsTemplateHidden(int id) const;
    void SetLayerHidden(int pageIndex, int position, bool isHidden);
    bool IsLayerHidden(int pageIndex, int position) const;
    void SetAnnotationHidden(int pageIndex, int position, bool isHidden);
    // Changes whenever a template or a layer is hidden or shown.
    int GetTextRevision() const;
    // All that concerns one page, at one moment.
    PageView GetPageView(int pageIndex) const;

private:
    mutable std::mutex mutex;
    QSet<int> templates;
    int textRevision = 0;
    QHash<int, QSet<int>> layers; // by page index
    QHash<int, QSet<int>> annotations;
};

} // namespace ofd
