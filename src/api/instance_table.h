/** The table that maps Ids to instances, and the busy flag that lets one call at a time use an instance. */
#ifndef QXPAF_SRC_API_INSTANCE_TABLE_H
#define QXPAF_SRC_API_INSTANCE_TABLE_H

#include <atomic>
#include <span>
#include <string>
#include <vector>

#include "plugins/arf_library.h"
#include "qxpaf/platform/thread.h"

class IArfSearcher;

namespace qxpaf {

/**
 * One client's instance. It belongs to the call that has it busy: that call alone writes the fields (usageCount aside),
 * searcher and names under the instance-table lock, so that others may read these under it.
 */
struct PafInfo
{
  IArfSearcher* searcher = nullptr;  ///< null for a remote instance and before the open completes
  std::string arfName;               ///< the local database's name, exactly as the caller gave it
  std::string remoteArfName;         ///< the name with which a remote instance was opened
  int serverId = 0;                  ///< Id on the socket server; 0 for a local instance
  int remoteMemoryMode = 0;          ///< the mode with which a remote instance was opened
  bool reconnectNeeded = false;      ///< the server lost it; under the lock, because any call may find that out
  std::vector<std::string> remoteProperties;  ///< "name=value" of each property set on the server
  bool isDefault = false;           ///< a thread's default instance, which is on the global database; never changes
  std::atomic<int> usageCount = 0;  ///< 0 idle, 1 a call is in progress
};

/**
 * Recursive. Guards the table, the count of instances, the test-and-set of usageCount, and what PafInfo says. No other
 * lock is taken and no plug-in called under it, except by the database update.
 */
QXMutex& InstanceTableLock();

/** All slots; the caller holds the lock. Slot i is the instance with Id i + 1, or null. */
std::span<PafInfo* const> InstancesLocked();

enum class InstanceKind
{
  Named,
  Default
};

/** Takes the lowest free Id for a new, busy instance. @return 0 or 6404 */
int NewInstance(int* id, PafInfo*& info, InstanceKind kind = InstanceKind::Named);

/** Finds an instance and marks it busy. @return 0, 6405 (no such Id) or 6412 (busy; nothing waits) */
int AcquireInstance(int id, PafInfo*& info);

/**
 * Deletes an instance that the caller holds busy, and frees its Id; `info` becomes null. It is deleted busy, not after
 * it was let go: between the two another thread could take it.
 *
 * @return 0, 6405 or 6410 (it still has a searcher; nothing is freed)
 */
int FreeInstance(int id, PafInfo*& info);

/** Live instances of every kind, counted slot by slot. */
int CountOpenInstances();

/** The same as a number that is kept. */
int OpenInstanceCount();

/** Makes a searcher of an open database. @return 0, 6404 or 6414 */
int MakeSearcher(const ArfInfo& arfInfo, IArfSearcher*& searcher);

/** MakeSearcher, attached to an instance that has none. */
int CreateSearcher(PafInfo& info, const ArfInfo& arfInfo);

/** Takes the searcher off the instance. @return null when it had none */
IArfSearcher* DetachSearcher(PafInfo& info);

void SetArfName(PafInfo& info, const char* name);

/** Releases every searcher, leaving the Ids. Takes no lock: no other call may run. */
void ReleaseAllSearchers();

/** Deletes the idle instances without calling any plug-in; for the library's shut-down. */
void ForgetInstances();

/** Marks the instance that `info` names, if any, idle again when a call leaves. Declared before the instance is had. */
class DecrementUsageCountWhenFinished : QXNonCopyable
{
 public:
  explicit DecrementUsageCountWhenFinished(PafInfo*& info) : info_(info) {}
  ~DecrementUsageCountWhenFinished()
  {
    // Release order: what this call wrote to the instance is seen by the call that finds it idle.
    if (info_ != nullptr) info_->usageCount.fetch_sub(1, std::memory_order_release);
  }

 private:
  PafInfo*& info_;
};

}  // namespace qxpaf

#endif
