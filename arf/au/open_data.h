/** What an open database gives its searchers, and how they notice that it was closed and opened on other files. */
#ifndef QXPAF_ARF_AU_OPEN_DATA_H
#define QXPAF_ARF_AU_OPEN_DATA_H

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

#include "arf/au/other_locality_names.h"
#include "arf/au/record_fields.h"
#include "arf/barcode/sort_plan.h"
#include "arf/match/engine.h"

namespace arf {

/** Immutable. */
struct OpenData
{
  OpenData(std::unique_ptr<const Engine> opened, SortPlanFile plan)
      : engine(std::move(opened)),
        sortPlan(std::move(plan)),
        otherLocalityNames(engine->Data()),
        fieldColumns(engine->Data()),
        hasMintedIdentifiers(engine->Data().Info(kIdentifiersKey) == kMintedIdentifiers)
  {
  }
  std::unique_ptr<const Engine> engine;
  SortPlanFile sortPlan;  ///< as it was when the database was opened, or what is wrong with it
  OtherLocalityNames otherLocalityNames;
  FieldColumns fieldColumns;
  bool hasMintedIdentifiers = false;  ///< they are no delivery point identifiers
};

/**
 * The data that was opened last, shared by a database and its searchers, so that neither needs the other to be alive: a
 * searcher whose database is closed goes on with the data it has. Thread-safe.
 */
class CurrentData
{
 public:
  void Set(std::shared_ptr<const OpenData> data)
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    data_ = std::move(data);
    version_.fetch_add(1, std::memory_order_release);
  }

  /** Gets the data, null unless open, when this is not the version that was got before. @return false when it is */
  bool GetNewer(unsigned& version, std::shared_ptr<const OpenData>& data) const
  {
    if (version_.load(std::memory_order_acquire) == version) return false;
    const std::lock_guard<std::mutex> lock(mutex_);
    version = version_.load(std::memory_order_relaxed);
    data = data_;
    return true;
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const OpenData> data_;
  std::atomic<unsigned> version_{0};
};

}  // namespace arf

#endif
