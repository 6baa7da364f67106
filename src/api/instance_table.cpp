#include "api/instance_table.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "errors/boundary.h"
#include "platform/immortal.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace qxpaf {
namespace {

/** Slots are never removed: a free one holds null and is used again. */
struct InstanceTable
{
  QXMutex lock{2};
  std::vector<PafInfo*> slots;
  int openInstanceCount = 0;
};

InstanceTable& Table()
{
  return Immortal<InstanceTable>();
}

/** The slot of an Id, or null. */
PafInfo** SlotLocked(int id)
{
  auto& slots = Table().slots;
  if (id < 1 || static_cast<std::size_t>(id) > slots.size()) return nullptr;
  return &slots[static_cast<std::size_t>(id) - 1];
}

}  // namespace

QXMutex& InstanceTableLock()
{
  return Table().lock;
}

std::span<PafInfo* const> InstancesLocked()
{
  return Table().slots;
}

int NewInstance(int* id, PafInfo*& info, InstanceKind kind)
{
  auto fresh = std::make_unique<PafInfo>();
  fresh->isDefault = kind == InstanceKind::Default;
  fresh->usageCount.store(1, std::memory_order_relaxed);

  InstanceTable& table = Table();
  const QXScopedLock lock(table.lock, true);
  auto slot = std::find(table.slots.begin(), table.slots.end(), nullptr);
  if (slot == table.slots.end()) slot = table.slots.insert(slot, nullptr);
  *slot = info = fresh.release();
  ++table.openInstanceCount;
  *id = static_cast<int>(slot - table.slots.begin()) + 1;
  return PAF_OK;
}

int AcquireInstance(int id, PafInfo*& info)
{
  const QXScopedLock lock(Table().lock, true);
  PafInfo** const slot = SlotLocked(id);
  if (slot == nullptr || *slot == nullptr) return PAF_ERR_INVALID_ID;
  if ((*slot)->usageCount.load(std::memory_order_acquire) != 0) return PAF_ERR_ID_IN_USE;
  (*slot)->usageCount.store(1, std::memory_order_relaxed);
  info = *slot;
  return PAF_OK;
}

int FreeInstance(int id, PafInfo*& info)
{
  std::unique_ptr<PafInfo> freed;
  InstanceTable& table = Table();
  const QXScopedLock lock(table.lock, true);
  PafInfo** const slot = SlotLocked(id);
  if (slot == nullptr || *slot == nullptr) return PAF_ERR_INVALID_ID;
  if ((*slot)->searcher != nullptr) return PAF_ERR_HAS_SEARCHER;
  freed.reset(std::exchange(*slot, nullptr));
  info = nullptr;
  --table.openInstanceCount;
  return PAF_OK;
}

int CountOpenInstances()
{
  const QXScopedLock lock(Table().lock, true);
  const auto& slots = Table().slots;
  return static_cast<int>(slots.size() - static_cast<std::size_t>(std::count(slots.begin(), slots.end(), nullptr)));
}

int OpenInstanceCount()
{
  const QXScopedLock lock(Table().lock, true);
  return Table().openInstanceCount;
}

int MakeSearcher(const ArfInfo& arfInfo, IArfSearcher*& searcher)
{
  if (arfInfo.db == nullptr || arfInfo.functions.getSearcher == nullptr) return PAF_ERR_NO_DATABASE_OBJECT;
  searcher = arfInfo.functions.getSearcher(arfInfo.db);
  return searcher != nullptr ? PAF_OK : PAF_ERR_OUT_OF_MEMORY;
}

int CreateSearcher(PafInfo& info, const ArfInfo& arfInfo)
{
  IArfSearcher* searcher = nullptr;
  if (const int status = MakeSearcher(arfInfo, searcher); status != 0) return status;
  const QXScopedLock lock(Table().lock, true);
  info.searcher = searcher;
  return PAF_OK;
}

IArfSearcher* DetachSearcher(PafInfo& info)
{
  const QXScopedLock lock(Table().lock, true);
  return std::exchange(info.searcher, nullptr);
}

void SetArfName(PafInfo& info, const char* name)
{
  std::string copy = name;
  const QXScopedLock lock(Table().lock, true);
  info.arfName = std::move(copy);
}

void ReleaseAllSearchers()
{
  for (std::size_t i = 0; i < Table().slots.size(); ++i) {
    PafInfo* const info = Table().slots[i];
    if (info == nullptr || info->searcher == nullptr) continue;
    AtBoundary([info] { return std::exchange(info->searcher, nullptr)->Release(), 0; });
  }
}

void ForgetInstances()
{
  for (PafInfo* info : Table().slots) {
    // A busy instance is in the hands of a thread that is still running while the process ends: leave it to that.
    if (info != nullptr && info->usageCount.load(std::memory_order_acquire) == 0) delete info;
  }
  GiveBack(Table().slots);
  Table().openInstanceCount = 0;
}

}  // namespace qxpaf
