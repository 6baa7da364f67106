#include "remote/remote_mode.h"

#include <atomic>
#include <string>

#include "config/setting.h"

namespace qxpaf {
namespace {

enum class Mode
{
  Undecided = 0,
  Remote = 1,
  Local = 2
};

std::atomic<Mode> remoteModeState = Mode::Undecided;

bool IsConfigured(const char* name)
{
  std::string value;
  return ReadSetting("PindleSvr", name, value) == 0 && !value.empty();
}

}  // namespace

bool IsRemoteMode()
{
  Mode mode = remoteModeState;
  if (mode == Mode::Undecided) {
    const Mode decided = IsConfigured("TcpHost") || IsConfigured("TcpPort") ? Mode::Remote : Mode::Local;
    // Threads that decide at the same time agree with whichever was first.
    if (remoteModeState.compare_exchange_strong(mode, decided)) mode = decided;
  }
  return mode == Mode::Remote;
}

}  // namespace qxpaf
