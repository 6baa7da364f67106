#include "api/default_instance.h"

#include <utility>

#include "api/instance_table.h"
#include "api/library.h"
#include "api/remote_instance.h"
#include "errors/boundary.h"
#include "errors/thread_data.h"
#include "plugins/library_wrapper.h"
#include "plugins/open_databases.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "remote/remote_mode.h"

namespace qxpaf {
namespace {

/** The thread's record, made if need be; starts the library when a static constructor calls in before it started. */
int GetThreadDataChecked(ThreadData*& record)
{
  if (LibraryStatus() == PAF_ERR_NOT_INITIALISED) InitialiseLibrary();
  if (const int status = LibraryStatus(); status != 0) return status;
  return GetThreadData(true, record);
}

int OpenInstance(PafInfo& info, int memoryMode)
{
  return AtBoundary([&] {
    if (IsRemoteMode()) return OpenRemoteDefault(info, memoryMode);
    const ArfInfo global = GlobalDatabase();
    return global.db != nullptr ? CreateSearcher(info, global) : static_cast<int>(PAF_ERR_NOT_OPEN);
  });
}

/** Opens an instance and writes its Id to `id`, which is 0 after a failure. */
int NewDefaultInstance(int& id, int memoryMode)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  if (const int status = NewInstance(&id, info, InstanceKind::Default); status != 0) return status;
  const int status = OpenInstance(*info, memoryMode);
  if (status != 0) FreeInstance(std::exchange(id, 0), info);
  return status;
}

/** Releases the searcher. The database stays open: it is the global one, which is closed for all threads together. */
int LetGo(PafInfo& info)
{
  if (info.serverId != 0) CloseRemote(info);
  if (IArfSearcher* const searcher = DetachSearcher(info)) searcher->Release();
  return PAF_OK;
}

/** Closes the instance unless it is busy in another thread, or gone. */
int CloseInstance(int id)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  if (const int status = AcquireInstance(id, info); status != 0) return status;
  AtBoundary([&] { return LetGo(*info); });
  return FreeInstance(id, info);
}

int OpenGlobalDatabase(int memoryMode)
{
  char errText[kLoadErrorSize];
  const int status = OpenGlobalPafDb(memoryMode, globalArfInfo, errText, sizeof errText);
  return status != 0 && errText[0] != '\0' ? SetErrorDescription(status, errText) : status;
}

int CloseRemoteDefaultInstance()
{
  ThreadData* record = nullptr;
  if (const int status = GetThreadDataChecked(record); status != 0) return status;
  // The Id stays the thread's default: remote callers see 6405 until it is given out again.
  return record->defaultId != 0 ? pafClosePafId(record->defaultId) : static_cast<int>(PAF_ERR_INVALID_ID);
}

int CloseLocalDefaultInstance()
{
  ThreadData* record = nullptr;
  GetThreadData(false, record);
  CloseThreadInstance(record);
  ClearThreadData();
  CloseGlobalPafDb(globalArfInfo.db);
  return PAF_OK;
}

}  // namespace

int GetDefaultInstance(int* id, bool create, int memoryMode)
{
  *id = 0;
  ThreadData* record = nullptr;
  if (const int status = GetThreadDataChecked(record); status != 0) return status;
  if (record->defaultId == 0 && create) {
    if (const int status = NewDefaultInstance(record->defaultId, memoryMode); status != 0) return status;
  }
  *id = record->defaultId;
  return PAF_OK;
}

void CloseThreadInstance(ThreadData* record)
{
  if (record == nullptr) return;
  if (record->defaultId != 0) AtBoundary([record] { return CloseInstance(record->defaultId); });
  FreeThreadData(record);
}

}  // namespace qxpaf

using namespace qxpaf;

int pafOpenPafMem(int memoryMode)
{
  if (const int status = LibraryStatus(); status != 0) return status;
  return AtBoundary([memoryMode] {
    if (!IsRemoteMode()) return OpenGlobalDatabase(memoryMode);
    int id = 0;
    return GetDefaultInstance(&id, true, memoryMode);
  });
}

int pafOpenPaf(void)
{
  return pafOpenPafMem(0);
}

int pafClosePaf(void)
{
  return AtBoundary([] { return IsRemoteMode() ? CloseRemoteDefaultInstance() : CloseLocalDefaultInstance(); });
}
