#include "api/local_instance.h"

#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace qxpaf {

int AttachDatabase(PafInfo& info, const ArfInfo& arfInfo, const char* arfName)
{
  DatabaseReference reference(arfInfo.db);
  // Before the searcher, so that whoever finds the searcher finds the name.
  SetArfName(info, arfName);
  if (const int status = CreateSearcher(info, arfInfo); status != 0) {
    SetArfName(info, "");
    return status;
  }
  reference.Keep();
  return PAF_OK;
}

int ReleaseWithDatabase(IArfSearcher& searcher)
{
  IArfDb* db = nullptr;
  const int status = AtBoundary([&] { return db = searcher.GetArfDb(), 0; });
  DatabaseReference reference(db);
  searcher.Release();
  reference.Keep();
  CloseArfDb(db, false, false);
  return status;
}

int DetachDatabase(PafInfo& info)
{
  return ReleaseWithDatabase(*DetachSearcher(info));
}

}  // namespace qxpaf
