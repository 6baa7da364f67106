#include "remote/remote_mode.h"

#include <atomic>
#include <string>

#include "config/setting.h"
#include "platform/immortal.h"
#include "qxpaf/platform/thread.h"
#include "qxpaf/remote.h"
#include "remote/server_address.h"

namespace qxpaf {
namespace {

enum class Mode
{
  Undecided = 0,
  Remote = 1,
  Local = 2
};

std::atomic<Mode> remoteModeState = Mode::Undecided;

/** One thread decides: a second one would find host and port set already and take that for local mode. */
struct Decision
{
  QXMutex lock{0};
};

/** Takes a setting that the program has not made itself from the configuration. @return true when it was there */
bool TakeFromConfiguration(const char* name, const std::string& current, void (*set)(const char*))
{
  std::string value;
  if (!current.empty() || ReadSetting("PindleSvr", name, value) != 0 || value.empty()) return false;
  set(value.c_str());
  return true;
}

Mode DecideByConfiguration()
{
  const bool host = TakeFromConfiguration("TcpHost", TcpHost(), SetTcpHost);
  const bool port = TakeFromConfiguration("TcpPort", TcpPort(), SetTcpPort);
  return host || port ? Mode::Remote : Mode::Local;
}

}  // namespace

bool IsRemoteMode()
{
  if (remoteModeState == Mode::Undecided) {
    const QXScopedLock lock(Immortal<Decision>().lock, true);
    if (remoteModeState == Mode::Undecided) {
      Mode undecided = Mode::Undecided;
      // Loses against a SetRemoteMode meanwhile.
      remoteModeState.compare_exchange_strong(undecided, DecideByConfiguration());
    }
  }
  return remoteModeState == Mode::Remote;
}

void SetRemoteMode(bool remote)
{
  remoteModeState = remote ? Mode::Remote : Mode::Local;
}

bool IsRemoteModeOn()
{
  return remoteModeState == Mode::Remote;
}

}  // namespace qxpaf
