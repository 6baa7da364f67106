#include "api/default_instance.h"

#include <utility>

#include "api/instance_table.h"
#include "errors/boundary.h"
#include "errors/thread_data.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace qxpaf {
namespace {

/** Releases the searcher. The database stays open: it is the global one, which is closed for all threads together. */
int ReleaseSearcher(PafInfo& info)
{
  info.serverId = 0;
  if (IArfSearcher* const searcher = std::exchange(info.searcher, nullptr)) searcher->Release();
  return PAF_OK;
}

/** Closes the instance unless it is busy in another thread, or gone. */
int CloseInstance(int id)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  if (const int status = AcquireInstance(id, info); status != 0) return status;
  AtBoundary([&] { return ReleaseSearcher(*info); });
  return FreeInstance(id, info);
}

}  // namespace

void CloseThreadInstance(ThreadData* record)
{
  if (record == nullptr) return;
  if (record->defaultId != 0) AtBoundary([record] { return CloseInstance(record->defaultId); });
  FreeThreadData(record);
}

}  // namespace qxpaf
