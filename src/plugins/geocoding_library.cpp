#include "plugins/geocoding_library.h"

#include <atomic>
#include <cstring>

#include "platform/bounded.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/dynamic_library.h"

namespace qxpaf {
namespace {

constexpr const char* kBaseName = "qxlumo";

constexpr const char* kEntryPoints[] = {
    "qxgSearchGeocodeFile",           "qxgGetGeocodeFileProperties", "qxgGetLastError",
    "qxgReverseLookupBegin",          "qxgReverseLookupGetNext",     "qxgReverseLookupEnd",
    "qxgCalculateStreetIntersection", "qxgPolygonLookupBegin",       "qxgPolygonLookupBeginR",
    "qxgUnloadGeocodeFiles"};

constinit std::atomic<bool> processDetach = false;

/** The loader's words if they are short enough, and then the base name if that is. */
void DescribeLoadFailure(char* errText, unsigned long errSize)
{
  char message[256];
  QXDLL::GetError(message, sizeof message);
  if (!CopyWhole(errText, errSize, message) || errText[0] == '\0') return;
  const std::size_t length = std::strlen(errText);
  if (length + 1 + std::strlen(kBaseName) >= errSize) return;
  errText[length] = ' ';
  CopyCut(errText + length + 1, errSize - length - 1, kBaseName);
}

}  // namespace

int LumoWrapper::Load(char* errText, unsigned long errSize)
{
  if (errText != nullptr) CopyCut(errText, errSize, "");
  if (handle_ != nullptr) return PAF_OK;
  handle_ = QXDLL::FixNameAndLoad(kBaseName);
  if (handle_ == nullptr) {
    if (errText != nullptr && errSize != 0) DescribeLoadFailure(errText, errSize);
    return kGeocodingNotLoaded;
  }
  if (Resolve()) return PAF_OK;
  Unload();
  return kGeocodingEntryPointMissing;
}

bool LumoWrapper::Resolve()
{
  static_assert(std::size(kEntryPoints) == kEntryPointCount);
  for (std::size_t i = 0; i < std::size(kEntryPoints); ++i) {
    functions_[i] = reinterpret_cast<Function>(QXDLL::GetProc(handle_, kEntryPoints[i]));
    if (functions_[i] == nullptr) return false;
  }
  return true;
}

void LumoWrapper::Unload()
{
  if (handle_ == nullptr || processDetach) return;
  QXDLL::Unload(handle_);
  handle_ = nullptr;
}

void LumoWrapper::UnloadGeocodeFiles()
{
  reinterpret_cast<int (*)(int)>(functions_[kUnloadGeocodeFiles])(0);
}

void SetProcessDetach()
{
  processDetach = true;
}

}  // namespace qxpaf
