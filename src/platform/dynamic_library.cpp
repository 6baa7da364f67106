#include "qxpaf/platform/dynamic_library.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstring>

#include "platform/bounded.h"

namespace {

constexpr std::size_t kMaxFileName = 255;
constexpr std::size_t kPrefixAndSuffix = sizeof("lib.so") - 1;

}  // namespace

void* QXDLL::Load(const char* fileName)
{
  return dlopen(fileName, RTLD_LAZY);
}

void* QXDLL::FixNameAndLoad(const char* name)
{
  if (std::strlen(name) + kPrefixAndSuffix > kMaxFileName) return nullptr;
  char fileName[kMaxFileName + 1];
  std::snprintf(fileName, sizeof fileName, "lib%s.so", name);
  return Load(fileName);
}

void* QXDLL::GetProc(void* handle, const char* symbol)
{
  return dlsym(handle, symbol);
}

bool QXDLL::Unload(void* handle)
{
  return dlclose(handle) == 0;
}

void QXDLL::GetError(char* out, unsigned long outSize)
{
  if (outSize == 0) return;  // the pending message stays pending
  const char* message = dlerror();
  qxpaf::CopyCut(out, outSize, message != nullptr ? message : "");
}
