#include "reply.h"

#include "qxpaf/paf.h"

namespace tool {
namespace {

constexpr int kFirstLibraryStatus = 600;

}  // namespace

bool IsAboutTheQuestion(int status)
{
  return status > 0 && status < kFirstLibraryStatus;
}

bool IsAboutTheConnection(int status)
{
  return (status >= PAF_ERR_SOCKET_CREATE && status <= PAF_ERR_SOCKET_SELECT) ||
         (status >= PAF_ERR_SOCKET_READLINE && status <= PAF_ERR_SOCKET_BROKEN);
}

std::string StatusText(const Reply& reply)
{
  const std::string number = "status " + std::to_string(reply.status);
  return reply.description.empty() ? number : reply.description + " (" + number + ")";
}

}  // namespace tool
