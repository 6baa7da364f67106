/** One call of the command interpreter, in a buffer of exactly the bytes that it may use. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_COMMAND_CALL_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_COMMAND_CALL_H

#include <string>

#include "blackbox/support/guarded_buffer.h"

namespace blackbox {

class CommandCall
{
 public:
  /** Runs a command whose answer may take `size` characters; the buffer has size + 1 bytes, more if the input does. */
  explicit CommandCall(const std::string& input, int size = 100);

  int Status() const { return status_; }
  std::string Text() { return buffer_.Text(); }
  /** Where the command and its answer stand, to be compared with what reached the plug-in. */
  const void* Start() { return buffer_.data(); }

 private:
  void ExpectInputKeptBehindTheAnswer();

  std::string input_;
  int size_;
  GuardedBuffer buffer_;
  int status_;
};

}  // namespace blackbox

#endif
