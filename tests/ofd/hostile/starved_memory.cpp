#include "starved_memory.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

namespace {

constexpr size_t LargeBytes = 64 << 10;

std::atomic<bool> isCounting{false};
std::atomic<int> asked{0};
std::atomic<int> firstRefused{0};
std::atomic<bool> isRefusedForGood{false};

} // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

bool StarvedMemory::CanRunOut()
{
    return false;
}

#else

bool StarvedMemory::CanRunOut()
{
    return true;
}

namespace {

bool IsRefused(size_t bytes)
{
    if (bytes < LargeBytes || !isCounting)
        return false;
    const int number = ++asked;
    const bool isRefused = isRefusedForGood ? number >= firstRefused : number == firstRefused;
    if (isRefused)
        errno = ENOMEM;
    return isRefused;
}

} // namespace

// In place of the system's, for the whole program with its libraries; these are what the system's are made of.
extern "C" {
void* __libc_malloc(size_t bytes);               // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(size_t count, size_t each);  // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block, size_t bytes); // NOLINT(bugprone-reserved-identifier)

void* malloc(size_t bytes)
{
    return IsRefused(bytes) ? nullptr : __libc_malloc(bytes);
}

void* calloc(size_t count, size_t each)
{
    return IsRefused(count * each) ? nullptr : __libc_calloc(count, each);
}

void* realloc(void* block, size_t bytes)
{
    return IsRefused(bytes) ? nullptr : __libc_realloc(block, bytes);
}
}

#endif

void StarvedMemory::RefuseFrom(int first, bool isForGood)
{
    asked = 0;
    firstRefused = first;
    isRefusedForGood = isForGood;
    isCounting = true;
}

int StarvedMemory::Relent()
{
    isCounting = false;
    return asked;
}
