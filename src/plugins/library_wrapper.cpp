#include "plugins/library_wrapper.h"

#include <cstring>

#include "platform/bounded.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/dynamic_library.h"

namespace qxpaf {
namespace {

void Append(char* text, const char* more)
{
  const std::size_t length = std::strlen(text);
  CopyCut(text + length, kLoadErrorSize - length, more);
}

void DescribeLoadFailure(char* errText, const char* fileName)
{
  QXDLL::GetError(errText, kLoadErrorSize);
  constexpr const char* kSeparator = ". ";
  if (std::strlen(errText) + std::strlen(kSeparator) + std::strlen(fileName) >= kLoadErrorSize) return;
  Append(errText, kSeparator);
  Append(errText, fileName);
}

}  // namespace

LibraryWrapper::LibraryWrapper(const char* fileName) : fileName_(), handle_(nullptr)
{
  CopyCut(fileName_, sizeof fileName_, fileName);
}

int LibraryWrapper::Load(char* errText)
{
  if (IsLoaded()) return PAF_OK;
  handle_ = QXDLL::Load(fileName_);
  if (!IsLoaded()) {
    if (errText != nullptr) DescribeLoadFailure(errText, fileName_);
    return PAF_ERR_LIBRARY_NOT_LOADED;
  }
  if (LoadFunctions(errText)) return PAF_OK;
  QXDLL::Unload(handle_);
  handle_ = nullptr;
  if (errText != nullptr) {
    Append(errText, " function doesn't exist in ");
    Append(errText, fileName_);
  }
  return PAF_ERR_ENTRY_POINT_MISSING;
}

bool LibraryWrapper::Unload()
{
  if (!IsLoaded()) return true;
  if (!QXDLL::Unload(handle_)) return false;
  handle_ = nullptr;
  return true;
}

}  // namespace qxpaf
