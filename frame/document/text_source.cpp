#include "text_source.h"

IG_ReadText::~IG_ReadText() = default;
IG_TextSource::~IG_TextSource() = default;
