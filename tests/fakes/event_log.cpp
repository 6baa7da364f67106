#include "fakes/event_log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace fake {
namespace {

char logPath[4096];  // plain memory: it needs no constructor and no destructor

}  // namespace

void OpenEventLog()
{
  const char* path = std::getenv("QXPAF_FAKE_LOG");
  if (path != nullptr && std::strlen(path) < sizeof logPath) std::strcpy(logPath, path);
}

void LogEvent(const char* library, const char* event)
{
  if (logPath[0] == '\0') return;
  const int file = open(logPath, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) return;
  const std::string line = std::string(library) + " " + event + "\n";
  if (write(file, line.data(), line.size()) < 0) abort();
  close(file);
}

}  // namespace fake
