#include "ig_page.h"

IG_TextPage::~IG_TextPage() = default;

IG_PageLayer::~IG_PageLayer() = default;

IG_Page::~IG_Page() = default;
