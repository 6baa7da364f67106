/** Moving running instances onto newly installed databases. */
#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "api/local_instance.h"
#include "errors/thread_data.h"
#include "platform/ascii.h"
#include "plugins/database_name.h"
#include "plugins/geocoding_library.h"
#include "plugins/library_wrapper.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "remote/remote_mode.h"

using namespace qxpaf;

namespace {

/** The waits for busy instances that one database may cost. */
class Patience
{
 public:
  /** Waits. @return false, without a wait, when there were too many before */
  bool Wait()
  {
    if (waits_ == kMostWaits) return false;
    ++waits_;
    std::this_thread::sleep_for(kWait);  // goes on after a signal
    return true;
  }

 private:
  static constexpr int kMostWaits = 30;
  static constexpr std::chrono::milliseconds kWait{500};
  int waits_ = 0;
};

bool IsBusy(const PafInfo& info)
{
  // Acquire order: what the call that let the instance go wrote to its searcher is seen here.
  return info.usageCount.load(std::memory_order_acquire) != 0;
}

void UnloadGeocodeFiles()
{
  LumoWrapper geocoding;
  if (geocoding.Load(nullptr, 0) != 0) return;
  AtBoundary([&] { return geocoding.UnloadGeocodeFiles(), 0; });
  geocoding.Unload();
}

/** The database names of all local instances, each once, exactly as given. */
std::vector<std::string> OpenNames()
{
  const QXScopedLock lock(InstanceTableLock(), true);
  std::vector<std::string> names;
  for (const PafInfo* const info : InstancesLocked()) {
    if (info == nullptr || info->searcher == nullptr) continue;
    if (std::find(names.begin(), names.end(), info->arfName) == names.end()) names.push_back(info->arfName);
  }
  return names;
}

/** Releases a new searcher that did not get into an instance. */
class NewSearcher : QXNonCopyable
{
 public:
  explicit NewSearcher(IArfSearcher* searcher) : searcher_(searcher) {}
  ~NewSearcher()
  {
    if (searcher_ != nullptr) AtBoundary([this] { return searcher_->Release(), 0; });
  }
  IArfSearcher* operator->() const { return searcher_; }
  IArfSearcher* Take() { return std::exchange(searcher_, nullptr); }

 private:
  IArfSearcher* searcher_;
};

/** The move of one database name's instances from where they are to the database that the name means now. */
class NamedUpdate
{
 public:
  explicit NamedUpdate(const std::string& name) : name_(name), global_(GlobalPafDb()) {}

  /** Moves the instances one by one and counts them. */
  int Run(int& moved)
  {
    int mode = 0;
    if (!FindMode(mode)) return PAF_OK;
    char errText[kLoadErrorSize];
    if (const int status = OpenArfDb(name_.c_str(), mode, fresh_, errText, sizeof errText); status != 0) {
      return SetErrorDescription(status, errText);
    }
    const DatabaseReference reference(fresh_.db);
    Patience patience;
    for (;;) {
      Outcome outcome = Outcome::AllMoved;
      if (const int status = MoveOne(outcome, moved); status != 0) return status;
      if (outcome == Outcome::AllMoved) return PAF_OK;
      if (outcome == Outcome::AllBusy && !patience.Wait()) return PAF_ERR_TIMED_OUT;
    }
  }

 private:
  enum class Outcome
  {
    Moved,
    AllBusy,
    AllMoved
  };

  /** The database of an instance of this name; null for an instance of another name or on the global database. */
  IArfDb* DatabaseOf(const PafInfo* info) const
  {
    if (info == nullptr || info->searcher == nullptr || !EqualIgnoringCase(info->arfName, name_)) return nullptr;
    IArfDb* const db = info->searcher->GetArfDb();
    return db != global_ ? db : nullptr;
  }

  /** The mode in which the first instance's database was opened. @return false when there is no instance */
  bool FindMode(int& mode) const
  {
    const QXScopedLock lock(InstanceTableLock(), true);
    for (const PafInfo* const info : InstancesLocked()) {
      if (IArfDb* const db = DatabaseOf(info)) {
        mode = db->GetOpenMode();
        return true;
      }
    }
    return false;
  }

  /** An idle instance that is to be moved, or null; then `outcome` tells whether there are busy ones. */
  PafInfo* FindIdleLocked(Outcome& outcome) const
  {
    const std::string path = fresh_.db->GetPath();
    outcome = Outcome::AllMoved;
    for (PafInfo* const info : InstancesLocked()) {
      IArfDb* const db = DatabaseOf(info);
      if (db == nullptr || path == db->GetPath()) continue;
      if (!IsBusy(*info)) return info;
      outcome = Outcome::AllBusy;
    }
    return nullptr;
  }

  int MoveOne(Outcome& outcome, int& moved)
  {
    // The instance's reference is there before the instance is: it could be closed as soon as the lock is free.
    IncreaseOpenArfDbRefCount(fresh_.db);
    DatabaseReference reference(fresh_.db);
    IArfSearcher* old = nullptr;
    {
      const QXScopedLock lock(InstanceTableLock(), true);
      PafInfo* const info = FindIdleLocked(outcome);
      if (info == nullptr) return PAF_OK;
      IArfSearcher* searcher = nullptr;
      if (const int status = MakeSearcher(fresh_, searcher); status != 0) return status;
      NewSearcher fresh(searcher);
      fresh->TakeOverFrom(info->searcher);
      old = std::exchange(info->searcher, fresh.Take());
      ++moved;
    }
    reference.Keep();
    outcome = Outcome::Moved;
    return ReleaseWithDatabase(*old);
  }

  const std::string& name_;
  const IArfDb* const global_;
  ArfInfo fresh_;
};

/** Counts the instances on the global database. @return false when one of them is busy, or is being opened on it */
bool CountGlobalInstancesLocked(const IArfDb* global, int& count)
{
  count = 0;
  for (const PafInfo* const info : InstancesLocked()) {
    if (info == nullptr) continue;
    const bool opening = info->searcher == nullptr && info->isDefault;
    if (!opening && (info->searcher == nullptr || info->searcher->GetArfDb() != global)) continue;
    if (IsBusy(*info)) return false;
    if (!opening) ++count;
  }
  return true;
}

enum class GlobalOutcome
{
  Done,
  Busy
};

/** Reopens the global database if it is on another path, unless one of its users is busy. */
int ReopenGlobal(const std::string& path, GlobalOutcome& outcome, int& databases, int& instances)
{
  // No instance becomes busy, and no default instance is opened, until the database is open again.
  const QXScopedLock lock(InstanceTableLock(), true);
  outcome = GlobalOutcome::Done;
  if (!IsGlobalPafDbElsewhere(path)) return PAF_OK;
  int users = 0;
  if (!CountGlobalInstancesLocked(GlobalPafDb(), users)) {
    outcome = GlobalOutcome::Busy;
    return PAF_OK;
  }
  char errText[kLoadErrorSize];
  if (const int status = ReopenGlobalPafDb(path, errText, sizeof errText); status != 0) {
    return SetErrorDescription(status, errText);
  }
  ++databases;
  instances += users;
  return PAF_OK;
}

int UpdateGlobal(int& databases, int& instances)
{
  if (GlobalPafDb() == nullptr) return PAF_OK;
  std::string path;
  std::string country;
  std::string options;
  if (const int status = GetArfPath("", path, country, options); status != 0) return status;
  for (Patience patience;;) {
    GlobalOutcome outcome = GlobalOutcome::Done;
    const int status = ReopenGlobal(path, outcome, databases, instances);
    if (status != 0 || outcome == GlobalOutcome::Done) return status;
    if (!patience.Wait()) return PAF_ERR_TIMED_OUT;
  }
}

int UpdateAll(int& databases, int& instances)
{
  if (IsRemoteMode()) return PAF_ERR_NOT_IMPLEMENTED;
  UnloadGeocodeFiles();
  ExpireArfPaths();
  for (const std::string& name : OpenNames()) {
    int moved = 0;
    const int status = AtBoundary([&] { return NamedUpdate(name).Run(moved); });
    instances += moved;
    if (moved != 0) ++databases;
    if (status != 0) return status;
  }
  return UpdateGlobal(databases, instances);
}

}  // namespace

int pafUpdateArfs(int* databasesUpdated, int* instancesUpdated)
{
  int databases = 0;
  int instances = 0;
  const int status = AtBoundary([&] { return UpdateAll(databases, instances); });
  if (databasesUpdated != nullptr) *databasesUpdated = databases;
  if (instancesUpdated != nullptr) *instancesUpdated = instances;
  return status;
}
