#pragma once

#include <QString>

class G_UIContext;

// Tells the frame that the document of the current view was changed. A null context does nothing.
void FireDocumentChanged(G_UIContext* context);
// Shows the user a short transient note; the text is translated already.
void FireStatusText(G_UIContext* context, const QString& text);
