#include "remote/server_address.h"

#include "platform/bounded.h"
#include "platform/immortal.h"
#include "qxpaf/platform/thread.h"
#include "qxpaf/remote.h"

namespace qxpaf {
namespace {

/** The lock, which guards the texts, is never held while anything else is done. */
struct LockedAddress
{
  QXMutex lock{0};
  ServerAddress texts;
};

LockedAddress& Address()
{
  return Immortal<LockedAddress>();
}

void Set(char* field, std::size_t size, const char* text)
{
  const QXScopedLock lock(Address().lock, true);
  CopyCut(field, size, text != nullptr ? text : "");
}

}  // namespace

ServerAddress CurrentServerAddress()
{
  const QXScopedLock lock(Address().lock, true);
  return Address().texts;
}

std::string TcpHost()
{
  return CurrentServerAddress().host;
}

std::string TcpPort()
{
  return CurrentServerAddress().port;
}

}  // namespace qxpaf

using namespace qxpaf;

const char* GetTcpHost()
{
  return Address().texts.host;
}

void SetTcpHost(const char* host)
{
  Set(Address().texts.host, sizeof Address().texts.host, host);
}

const char* GetTcpPort()
{
  return Address().texts.port;
}

void SetTcpPort(const char* port)
{
  Set(Address().texts.port, sizeof Address().texts.port, port);
}
