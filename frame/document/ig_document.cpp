#include "ig_document.h"

IG_PageRenderer::~IG_PageRenderer() = default;

IG_Document::~IG_Document() = default;
