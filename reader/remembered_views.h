#pragma once

#include <QString>

class G_DocView;

// How documents were last looked at: the place, the zoom, the rotation and the layout, by file, kept in the settings
// for the documents closed last.
class RememberedViews
{
public:
    void Remember(const QString& path, const G_DocView& view);
    // Shows the document as it was left. False, and nothing happens, when it is not known.
    bool Restore(const QString& path, G_DocView& view) const;
};
