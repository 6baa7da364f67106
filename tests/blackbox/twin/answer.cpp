#include "blackbox/twin/answer.h"

#include <algorithm>
#include <ostream>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/session.h"

namespace blackbox {

std::ostream& operator<<(std::ostream& out, const Answer& answer)
{
  return out << answer.status << ' ' << testing::PrintToString(answer.text) << ' '
             << testing::PrintToString(answer.words);
}

Answer Say(int status, std::string text)
{
  return {status, std::move(text), status == 0 ? std::string() : Describe(status)};
}

Answer Number(int number)
{
  return {number, {}, {}};
}

Answer InBuffer(int size, const std::string& before, const std::function<int(char* text, int size)>& call)
{
  GuardedBuffer buffer(before, static_cast<std::size_t>(std::max(size, 0)));
  const int status = call(buffer.data(), size);
  return Say(status, buffer.Text());
}

Answer IntoBuffer(int size, const std::function<int(char* text, int size)>& call)
{
  return InBuffer(size, kBefore, call);
}

std::string AsReplied(std::string text)
{
  std::replace(text.begin(), text.end(), '\n', '\t');
  return text;
}

std::string AsRequested(std::string text)
{
  std::replace(text.begin(), text.end(), '\t', '\n');
  return text;
}

}  // namespace blackbox
