#include "support/FailingMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <cjson/cJSON.h>

namespace {

std::atomic<bool (*)()> refusal{nullptr};
thread_local int left = 0;           // allocations up to the one that is refused; below 1: none is, or was already
thread_local std::size_t asked = 0;  // of `new`, in bytes

bool isTheNth()
{
    return left > 0 && --left == 0;
}

bool isRefused()
{
    bool (*const refuses)() = refusal;
    return refuses && refuses();
}

void* mallocUnlessRefused(std::size_t size)
{
    return isRefused() ? nullptr : std::malloc(size);
}

void* newBlock(std::size_t size)
{
    asked += size;
    return mallocUnlessRefused(size);
}

}  // namespace

extern "C" {
void* __real_realloc(void* block, std::size_t size);

// The linker sends here what the program's own objects, the library's among them, ask of realloc.
void* __wrap_realloc(void* block, std::size_t size)
{
    return isRefused() ? nullptr : __real_realloc(block, size);
}
}

void* operator new(std::size_t size)
{
    if (void* const block = newBlock(size)) return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return newBlock(size);
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    std::free(block);
}

namespace OrvuTests {

void refuseAllocations(bool (*refuses)())
{
    cJSON_Hooks hooks = {mallocUnlessRefused, std::free};
    cJSON_InitHooks(refuses ? &hooks : nullptr);
    refusal = refuses;
}

FailingMemory::FailingMemory(int nth)
{
    left = nth;
    refuseAllocations(isTheNth);
}

FailingMemory::~FailingMemory()
{
    refuseAllocations(nullptr);
    left = 0;
}

bool FailingMemory::refused() const
{
    return left == 0;
}

CountedMemory::CountedMemory() : before_(asked) {}

std::size_t CountedMemory::bytes() const
{
    return asked - before_;
}

}  // namespace OrvuTests
