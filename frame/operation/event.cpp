#include "event.h"

G_Event::~G_Event() = default;
