/** One call of a function of the C interface, with a buffer of exactly the bytes that it may use. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_DELIVERY_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_DELIVERY_H

#include <string>

#include "blackbox/support/exported_functions.h"
#include "blackbox/support/guarded_buffer.h"

namespace blackbox {

class Delivery
{
 public:
  /** Makes the call. For a function that works in place the buffer is as long as its input, if that is longer. */
  Delivery(const ExportedFunction& function, int id, int size, const std::string& in);

  int Status() const { return status_; }
  std::string Text() { return buffer_.Text(); }
  bool IsTerminated() { return buffer_.IsTerminated(); }
  bool IsUnchanged() { return buffer_.Bytes() == before_; }

  /** Checks status and buffer after a call whose operation succeeded with this answer. */
  void Expect(const std::string& answer);
  /** Checks that nothing has changed behind the bytes that the size allows. */
  void ExpectUnchangedBehindTheSize();

 private:
  const ExportedFunction& function_;
  size_t bytes_;
  GuardedBuffer buffer_;
  std::string before_;
  int status_;
};

}  // namespace blackbox

#endif
