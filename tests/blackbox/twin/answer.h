/** What one call of the C interface left behind, and how to make calls so that it can be compared. */
#ifndef QXPAF_TESTS_BLACKBOX_TWIN_ANSWER_H
#define QXPAF_TESTS_BLACKBOX_TWIN_ANSWER_H

#include <functional>
#include <iosfwd>
#include <string>

namespace blackbox {

struct Answer
{
  int status = 0;
  std::string text;
  std::string words = {};  // of the status, from pafGetErrorDescription

  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer);

/** What stands in buffers that a call only writes to. */
inline constexpr const char* kBefore = "before";

/** A size that no answer of these tests reaches. */
inline constexpr int kWhole = 4096;

/** A status with its words, which are asked for at once: the library keeps them for the next question only. */
Answer Say(int status, std::string text = {});

/** A number that is no status. */
Answer Number(int number);

/** Makes a call on a guarded buffer that holds `before` and has `size` bytes, or more where `before` needs them. */
Answer InBuffer(int size, const std::string& before, const std::function<int(char* text, int size)>& call);

/** The same for functions that only write: the buffer holds kBefore. */
Answer IntoBuffer(int size, const std::function<int(char* text, int size)>& call);

/** Like a text that travelled in a reply: a line feed arrives as a TAB. */
std::string AsReplied(std::string text);

/** Like the last text of a request that travelled: a TAB cannot be told from a line feed and arrives as one. */
std::string AsRequested(std::string text);

}  // namespace blackbox

#endif
