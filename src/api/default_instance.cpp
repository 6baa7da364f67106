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
int ReleaseDefaultSearcher(int id)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  const int status = AcquireInstance(id, info);
  if (status == 0) {
    info->serverId = 0;
    if (IArfSearcher* const searcher = std::exchange(info->searcher, nullptr)) searcher->Release();
  }
  return status;
}

}  // namespace

void CloseThreadInstance(ThreadData* record)
{
  if (record == nullptr) return;
  const int id = record->defaultId;
  if (id != 0 && AtBoundary([id] { return ReleaseDefaultSearcher(id); }) != PAF_ERR_ID_IN_USE) FreeInstance(id);
  FreeThreadData(record);
}

}  // namespace qxpaf
