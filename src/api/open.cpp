/** Opening and closing instances. */
#include "api/instance_table.h"
#include "api/local_instance.h"
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

int OpenLocal(PafInfo& info, int memoryMode, const char* arfName)
{
  ArfInfo arfInfo;
  char errText[kLoadErrorSize];
  if (const int status = OpenArfDb(arfName, memoryMode, arfInfo, errText, sizeof errText); status != 0) {
    return errText[0] != '\0' ? SetErrorDescription(status, errText) : status;
  }
  return AttachDatabase(info, arfInfo, arfName);
}

int OpenInstance(PafInfo& info, int memoryMode, const char* arfName)
{
  return AtBoundary(
      [&] { return IsRemoteMode() ? OpenRemote(info, memoryMode, arfName) : OpenLocal(info, memoryMode, arfName); });
}

int CloseInstance(PafInfo& info)
{
  return AtBoundary([&] { return info.serverId != 0 ? CloseRemote(info) : DetachDatabase(info); });
}

/** The Id, or the negated status, of an open function's result. */
int FoldOpenResult(int status, int id)
{
  if (status != 0) return -status;
  return id < 0 ? -PAF_ERR_INVALID_ID : id;
}

}  // namespace
}  // namespace qxpaf

using namespace qxpaf;

int pafOpenArfId(int* id, int memoryMode, const char* arfName)
{
  if (id == nullptr) return PAF_ERR_INVALID_ID;
  return AtBoundary([&] {
    PafInfo* info = nullptr;
    const DecrementUsageCountWhenFinished guard(info);
    if (const int status = NewInstance(id, info); status != 0) return status;
    const int status = OpenInstance(*info, memoryMode, arfName != nullptr ? arfName : "");
    if (status != 0) FreeInstance(*id, info);
    return status;
  });
}

int pafOpenArfId2(int memoryMode, const char* arfName)
{
  int id = 0;
  const int status = pafOpenArfId(&id, memoryMode, arfName);
  return FoldOpenResult(status, id);
}

int pafOpenPafMemId(int* id, int memoryMode)
{
  return pafOpenArfId(id, memoryMode, "");
}

int pafOpenPafId(int* id)
{
  return pafOpenPafMemId(id, 0);
}

int pafOpenPafId2(void)
{
  int id = 0;
  const int status = pafOpenPafId(&id);
  return FoldOpenResult(status, id);
}

int pafClosePafId(int id)
{
  return AtBoundary([&] {
    PafInfo* info = nullptr;
    const DecrementUsageCountWhenFinished guard(info);
    if (const int status = AcquireInstance(id, info); status != 0) return status;
    if (info->serverId == 0 && info->searcher == nullptr) return static_cast<int>(PAF_ERR_NO_SEARCHER);
    const int status = CloseInstance(*info);
    const int freed = FreeInstance(id, info);
    return status != 0 ? status : freed;
  });
}

int pafForceCloseAll(void)
{
  ReleaseAllSearchers();
  CloseArfDb(nullptr, true, true);
  return PAF_OK;
}

int pafUnloadPlugins(void)
{
  UnloadPlugins_();
  return PAF_OK;
}
