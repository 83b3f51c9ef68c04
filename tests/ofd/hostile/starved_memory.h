#pragma once

// The memory of a test program that runs out when it is told to: a large block, or all of them from one on. Small
// blocks are always there, since the libraries beneath do not bear that they are not; what a file asks for too much of
// is large.

namespace StarvedMemory {

// Whether blocks can be refused. Not where a sanitizer has its own memory.
bool CanRunOut();
// Counts from now on, and refuses the block of that number, from 1, or it and all behind it.
void RefuseFrom(int first, bool isForGood);
// Gives again, and tells how many large blocks were asked for meanwhile.
int Relent();

} // namespace StarvedMemory
