/** An open address database, as the library sees it. */
#ifndef QXPAF_ARF_AU_AU_DATABASE_H
#define QXPAF_ARF_AU_AU_DATABASE_H

#include <memory>
#include <string>

#include "arf/au/live_objects.h"
#include "arf/barcode/sort_plan.h"
#include "arf/match/engine.h"
#include "qxpaf/arf_plugin.h"

namespace arf {

class AuDatabase final : public IArfDb, private LiveObject
{
 public:
  void Release() override;
  const char* GetPath() override { return path_.c_str(); }
  const char* GetCountry() override { return "AU"; }
  int* RefCount() override { return &users_; }
  int GetOpenMode() override { return mode_; }
  int Open(const char* path, int mode, char* errText, int errSize) override;
  void Close() override;

  /** What searchers read; shared with them, so that it outlives a Close that comes too early. Null unless open. */
  const std::shared_ptr<const Engine>& GetEngine() const { return engine_; }
  /** The sort plan as it was when the database was opened, or what is wrong with it; shared in the same way. */
  const std::shared_ptr<const SortPlanFile>& GetSortPlan() const { return sortPlan_; }

 private:
  int OpenFile(const char* path, int mode, char* errText, int errSize);

  std::string path_;
  int mode_ = 0;
  int users_ = 0;
  std::shared_ptr<const Engine> engine_;
  std::shared_ptr<const SortPlanFile> sortPlan_;
};

}  // namespace arf

#endif
