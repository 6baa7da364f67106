#include "update.h"

#include <system_error>

#include "library.h"
#include "log.h"
#include "qxpaf/paf.h"

namespace pafd {

Update::~Update()
{
  if (thread_.joinable()) {
    thread_.join();
  }
}

void Update::Start()
{
  if (isRunning_.exchange(true)) {
    spdlog::warn("a database update is still running; no further one is started");
    return;
  }
  try {
    if (thread_.joinable()) {
      thread_.join();
    }
    thread_ = std::thread(&Update::Run, this);
  } catch (const std::system_error& error) {
    isRunning_ = false;
    spdlog::error("no thread for the database update: {}", error.what());
  }
}

void Update::Run()
{
  int databases = 0;
  int instances = 0;
  const int status = pafUpdateArfs(&databases, &instances);
  if (status == 0 && databases == 0) {
    spdlog::info(
        "update: 0 databases and 0 instances moved: the configuration names no other path for any that is open. "
        "Build the newer database into another directory, name that in the configuration, and send HUP again");
  } else if (status == 0) {
    spdlog::info("update: {} databases and {} instances moved", databases, instances);
  } else {
    spdlog::error("update: {} databases and {} instances moved, then {}", databases, instances, StatusText(status));
  }
  isRunning_ = false;
}

}  // namespace pafd
