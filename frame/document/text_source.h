#pragma once

#include <frame/document/ig_page.h>

#include <atomic>
#include <memory>

// The text of a page as it was when it was read. Never changes; any thread.
class FRAME_EXPORT IG_ReadText
{
public:
    virtual ~IG_ReadText();
    // False when the page has no readable content.
    virtual bool IsReadable() const = 0;
    // As those of IG_TextPage.
    virtual QList<G_TextGlyph> AllGlyphs() const = 0;
};

// Reads the text of pages off the main thread. Any thread, several at once. Reading a page may take seconds where a
// file is heavy or hostile; the window must not wait for that.
class FRAME_EXPORT IG_TextSource
{
public:
    virtual ~IG_TextSource();
    // Reads a page. Null when it was given up meanwhile. As long as somebody holds the text, asking the page itself for
    // its content and its text takes no time.
    virtual std::shared_ptr<const IG_ReadText> ReadText(int pageIndex, const std::atomic<bool>& isGivenUp) = 0;
    // Whether asking the page itself takes no time now.
    virtual bool IsTextRead(int pageIndex) = 0;
};
