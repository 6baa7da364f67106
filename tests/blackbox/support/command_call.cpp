#include "blackbox/support/command_call.h"

#include <strings.h>

#include "qxpaf/paf.h"

namespace blackbox {
namespace {

size_t BytesFor(int size)
{
  return size < 0 ? 0 : static_cast<size_t>(size) + 1;
}

/** Commands that move their data to the start of the buffer, however long it is. */
bool MovesItsData(const std::string& input)
{
  for (const std::string name : {"LookupAddress;", "ValidatePartialAddress;", "FixLastLine;"}) {
    if (strncasecmp(input.c_str(), name.c_str(), name.size()) == 0) return true;
  }
  return false;
}

}  // namespace

CommandCall::CommandCall(const std::string& input, int size)
    : input_(input), size_(size), buffer_(input, BytesFor(size)), status_(pafCallPafFromBrimo(buffer_.data(), size))
{
  if (!MovesItsData(input)) ExpectInputKeptBehindTheAnswer();
}

/** Reading parameters puts NULs over "=", ";" and, to replace a comma by a delimiter, one byte over ",". */
void CommandCall::ExpectInputKeptBehindTheAnswer()
{
  const std::string bytes = buffer_.Bytes();
  for (size_t i = std::max(BytesFor(size_), size_t{1}); i < input_.size(); ++i) {
    const bool used = bytes[i] == '\0' && (input_[i] == '=' || input_[i] == ';');
    EXPECT_TRUE(bytes[i] == input_[i] || used || input_[i] == ',') << "byte " << i << " of " << input_;
  }
}

}  // namespace blackbox
