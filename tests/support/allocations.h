/**
 * Counts allocations, and lets them fail. A program that uses this is compiled with allocations.cpp, which replaces the
 * allocation functions of all of it.
 */
#ifndef QXPAF_TESTS_SUPPORT_ALLOCATIONS_H
#define QXPAF_TESTS_SUPPORT_ALLOCATIONS_H

namespace test_support {

/** How often this thread has allocated so far. */
long Allocations();

/** How often this thread allocates while `work` runs. */
template <class Work>
long AllocationsOf(Work work)
{
  const long before = Allocations();
  work();
  return Allocations() - before;
}

/** While it lives this thread finds no memory for anything but exceptions. */
class MemoryIsOut
{
 public:
  MemoryIsOut();
  ~MemoryIsOut();
  MemoryIsOut(const MemoryIsOut&) = delete;
  MemoryIsOut& operator=(const MemoryIsOut&) = delete;
};

}  // namespace test_support

#endif
