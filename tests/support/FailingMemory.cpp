#include "support/FailingMemory.h"

#include <cstdlib>
#include <new>

#include <cjson/cJSON.h>

namespace {

int left = 0;  // allocations up to the one that is refused; below 1: none is, or was already

bool granted()
{
    return left < 1 || --left > 0;
}

void* mallocUnlessRefused(std::size_t size)
{
    return granted() ? std::malloc(size) : nullptr;
}

}  // namespace

extern "C" {
void* __real_realloc(void* block, std::size_t size);

// The linker sends here what the program's own objects, the library's among them, ask of realloc.
void* __wrap_realloc(void* block, std::size_t size)
{
    return granted() ? __real_realloc(block, size) : nullptr;
}
}

void* operator new(std::size_t size)
{
    if (void* const block = mallocUnlessRefused(size)) return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return mallocUnlessRefused(size);
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

FailingMemory::FailingMemory(int nth)
{
    cJSON_Hooks hooks = {mallocUnlessRefused, std::free};
    cJSON_InitHooks(&hooks);
    left = nth;
}

FailingMemory::~FailingMemory()
{
    left = 0;
    cJSON_InitHooks(nullptr);
}

bool FailingMemory::refused() const
{
    return left == 0;
}

}  // namespace OrvuTests
