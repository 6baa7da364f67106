#include "api/change_arf.h"

#include "api/local_instance.h"
#include "api/remote_instance.h"
#include "errors/thread_data.h"
#include "plugins/library_wrapper.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace qxpaf {
namespace {

int ChangeLocal(PafInfo& info, int id, int memoryMode, const char* arfName)
{
  if (info.arfName == arfName) return PAF_OK;
  ArfInfo arfInfo;
  char errText[kLoadErrorSize];
  if (const int status = OpenArfDb(arfName, memoryMode, arfInfo, errText, sizeof errText); status != 0) {
    return SetInstanceError(status, id, errText);
  }
  DatabaseReference reference(arfInfo.db);
  DetachDatabase(info);
  reference.Keep();
  return AttachDatabase(info, arfInfo, arfName);
}

}  // namespace

int ChangeArf(int id, int memoryMode, const char* arfName)
{
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  if (const int status = AcquireInstance(id, info); status != 0) return status;
  if (info->serverId != 0) return ChangeRemote(*info, memoryMode, arfName);
  if (info->searcher == nullptr) return PAF_ERR_NO_SEARCHER;
  return ChangeLocal(*info, id, memoryMode, arfName);
}

}  // namespace qxpaf
