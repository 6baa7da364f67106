// Working memory that is on the stack unless unusually much is needed.
#ifndef QXPAF_SRC_TEXT_SCRATCH_ARRAY_H
#define QXPAF_SRC_TEXT_SCRATCH_ARRAY_H

#include <algorithm>
#include <cstddef>
#include <memory>

namespace qxpaf {

template <class Element, std::size_t kOnStack>
class ScratchArray
{
 public:
  ScratchArray(std::size_t size, Element fill)
  {
    if (size > kOnStack) {
      large_ = std::make_unique_for_overwrite<Element[]>(size);
      elements_ = large_.get();
    }
    std::fill_n(elements_, size, fill);
  }

  ScratchArray(const ScratchArray&) = delete;
  ScratchArray& operator=(const ScratchArray&) = delete;

  Element* Data() { return elements_; }

 private:
  Element small_[kOnStack];
  std::unique_ptr<Element[]> large_;
  Element* elements_ = small_;
};

}  // namespace qxpaf

#endif
