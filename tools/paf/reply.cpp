#include "reply.h"

namespace tool {
namespace {

constexpr int kFirstLibraryStatus = 600;

}  // namespace

bool IsAboutTheQuestion(int status)
{
  return status > 0 && status < kFirstLibraryStatus;
}

std::string StatusText(const Reply& reply)
{
  const std::string number = "status " + std::to_string(reply.status);
  return reply.description.empty() ? number : reply.description + " (" + number + ")";
}

}  // namespace tool
