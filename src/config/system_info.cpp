#include <unistd.h>

#include <cstring>

#include "qxpaf/registry.h"

void GetComputerName_(char* buffer, unsigned long size)
{
  if (buffer == nullptr || size == 0) return;
  if (gethostname(buffer, size) != 0) {
    *buffer = '\0';
    return;
  }
  buffer[size - 1] = '\0';
  buffer[std::strcspn(buffer, ".")] = '\0';
}

int GetNumberOfProcessors_()
{
  return static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
}

void GetVersionOfThisFile(int& /*major*/, int& /*minor*/, int& /*release*/, int& /*build*/, void* /*module*/) {}
