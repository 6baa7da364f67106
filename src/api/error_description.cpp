/** From a status code to text. */
#include <cstring>
#include <utility>

#include "api/instance_table.h"
#include "errors/boundary.h"
#include "errors/status_text.h"
#include "errors/thread_data.h"
#include "platform/bounded.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"
#include "remote/remote_mode.h"

using namespace qxpaf;

namespace {

/** The words of the plug-in whose instance failed; a busy or closed instance has none. */
int AskSearcher(int id, int code, char* buffer, int size)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  const int status = AcquireInstance(id, info);
  if (status == 0 && info->searcher != nullptr) {
    info->searcher->GetErrorDescription(buffer, code, size);
    buffer[size - 1] = '\0';
  }
  return status;
}

/** The text of a code that is not the library's own; asking consumes the thread's last error. */
void DescribeLastError(char* buffer, int code, int size)
{
  ThreadData* record = nullptr;
  if (GetThreadData(false, record) != 0 || record == nullptr) return;
  const LastError last = std::exchange(record->lastError, LastError());
  if (last.code != code) return;
  if (last.text[0] != '\0') {
    CopyCut(buffer, Capacity(size), last.text);
    return;
  }
  const int id = last.id != 0 ? last.id : record->defaultId;
  if (id != 0) AtBoundary([&] { return AskSearcher(id, code, buffer, size); });
}

/** Appends the detail that the library itself recorded for this code, if all of it fits, and consumes it. */
void AppendRecordedDetail(char* buffer, int code, int size)
{
  constexpr const char* kSeparator = ". ";
  ThreadData* record = nullptr;
  if (GetThreadData(false, record) != 0 || record == nullptr) return;
  const LastError last = std::exchange(record->lastError, LastError());
  const std::size_t length = std::strlen(buffer);
  const std::size_t detail = std::strlen(last.text);
  const bool mine = last.code == code && last.id == 0 && detail != 0;
  if (mine && length + detail + std::strlen(kSeparator) < Capacity(size)) {
    if (length != 0) CopyCut(buffer + length, Capacity(size) - length, kSeparator);
    const std::size_t end = std::strlen(buffer);
    CopyCut(buffer + end, Capacity(size) - end, last.text);
  }
}

}  // namespace

int pafGetErrorDescription(char* buffer, int code, int size)
{
  if (size < 1) return PAF_OK;
  buffer[0] = '\0';
  const char* const text = StatusText(code);
  if (text == nullptr && AtBoundary([] { return IsRemoteMode() ? 1 : 0; }) == 0) {
    DescribeLastError(buffer, code, size);
    return PAF_OK;
  }
  if (text != nullptr) CopyCut(buffer, Capacity(size), text);
  AppendRecordedDetail(buffer, code, size);
  AtBoundary(
      [&] { return buffer[0] == '\0' && IsRemoteMode() ? GetErrorDescriptionViaSocket(buffer, code, size) : 0; });
  return PAF_OK;
}
