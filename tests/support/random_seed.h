#pragma once

#include <QtGlobal>

// Where a test of random steps starts: what TETO_SEED says, else by chance. Tells the number, so that a failure can be
// had again.
quint32 RandomSeed();
