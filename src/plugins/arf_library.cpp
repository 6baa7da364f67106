#include "plugins/arf_library.h"

#include "platform/ascii.h"
#include "platform/bounded.h"
#include "qxpaf/platform/dynamic_library.h"

namespace qxpaf {
namespace {

template <class Function>
bool Resolve(void* handle, const char* name, Function*& function)
{
  function = reinterpret_cast<Function*>(QXDLL::GetProc(handle, name));
  return function != nullptr;
}

}  // namespace

ArfLibWrapper::ArfLibWrapper(const std::string& baseName)
    : LibraryWrapper(("lib" + AsciiLower(baseName) + ".so").c_str()), baseName_(baseName)
{
}

bool ArfLibWrapper::LoadFunctions(char* errText)
{
  ArfPluginFunctions found;
  const char* missing = nullptr;
  if (!Resolve(Handle(), "GetDb", found.getDb)) {
    missing = "GetDb";
  } else if (!Resolve(Handle(), "GetSearcher", found.getSearcher)) {
    missing = "GetSearcher";
  } else if (!Resolve(Handle(), "CanUnloadNow", found.canUnloadNow)) {
    missing = "CanUnloadNow";
  }
  if (missing != nullptr) {
    if (errText != nullptr) CopyCut(errText, kLoadErrorSize, missing);
    return false;
  }
  Resolve(Handle(), "GetOtherProperties", found.getOtherProperties);
  functions_ = found;
  return true;
}

}  // namespace qxpaf
