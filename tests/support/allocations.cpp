#include "support/allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local long allocations = 0;
thread_local bool memoryIsOut = false;

}  // namespace

namespace test_support {

long Allocations()
{
  return allocations;
}

MemoryIsOut::MemoryIsOut()
{
  memoryIsOut = true;
}

MemoryIsOut::~MemoryIsOut()
{
  memoryIsOut = false;
}

}  // namespace test_support

// The forms for arrays are replaced too: a sanitizer's do not lead to the single ones.
// Not inlined, so that the compiler does not take malloc and operator delete for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
  ++allocations;
  return memoryIsOut ? nullptr : std::malloc(size == 0 ? 1 : size);
}

[[gnu::noinline]] void* operator new(std::size_t size)
{
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new[](std::size_t size)
{
  return operator new(size);
}

[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
  return operator new(size, std::nothrow);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept
{
  std::free(memory);
}
