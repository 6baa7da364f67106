/** An open file descriptor that closes itself. */
#ifndef QXPAF_ARF_FORMAT_DESCRIPTOR_H
#define QXPAF_ARF_FORMAT_DESCRIPTOR_H

#include <unistd.h>

namespace arf {

class Descriptor
{
 public:
  explicit Descriptor(int value) : value_(value) {}
  ~Descriptor()
  {
    if (value_ >= 0) close(value_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool IsOpen() const { return value_ >= 0; }
  int Value() const { return value_; }

 private:
  int value_;
};

}  // namespace arf

#endif
