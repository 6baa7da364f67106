#include "remote/server_address.h"

#include "platform/bounded.h"
#include "platform/immortal.h"
#include "qxpaf/platform/thread.h"
#include "qxpaf/remote.h"

namespace qxpaf {
namespace {

/** The lock, which guards the texts, is never held while anything else is done. */
struct ServerAddress
{
  QXMutex lock{0};
  char host[256] = {};
  char port[32] = {};
};

ServerAddress& Address()
{
  return Immortal<ServerAddress>();
}

void Set(char* field, std::size_t size, const char* text)
{
  const QXScopedLock lock(Address().lock, true);
  CopyCut(field, size, text != nullptr ? text : "");
}

std::string Copy(const char* field)
{
  const QXScopedLock lock(Address().lock, true);
  return field;
}

}  // namespace

std::string TcpHost()
{
  return Copy(Address().host);
}

std::string TcpPort()
{
  return Copy(Address().port);
}

}  // namespace qxpaf

using namespace qxpaf;

const char* GetTcpHost()
{
  return Address().host;
}

void SetTcpHost(const char* host)
{
  Set(Address().host, sizeof Address().host, host);
}

const char* GetTcpPort()
{
  return Address().port;
}

void SetTcpPort(const char* port)
{
  Set(Address().port, sizeof Address().port, port);
}
