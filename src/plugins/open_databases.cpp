#include "plugins/open_databases.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include "errors/boundary.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "platform/immortal.h"
#include "plugins/database_name.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/dynamic_library.h"
#include "qxpaf/platform/thread.h"

namespace qxpaf {

constinit ArfInfo globalArfInfo;

namespace {

/**
 * The database-registry lock guards everything beside it, every reference count, and the loading of plug-ins; plug-ins
 * open and close databases under it. Taken while the instance-table lock is held only to reopen the global database.
 */
struct Registry
{
  QXMutex lock{0};
  std::vector<ArfInfo> open;    ///< an entry without a database is free
  bool globalIsClosed = false;  ///< there is a global database, but it could not be reopened
  ArfLibWrapper au{"QXArfAu"}, nz{"QXArfNz"}, us{"QXArfUs"}, uk{"QXArfUk"}, international{"QXArfInt"};
  std::vector<ArfLibWrapper> others;  ///< named by "DLL:" databases
};

Registry& Shared()
{
  return Immortal<Registry>();
}

/** Closes and releases a database at the end of a scope, also when an exception passes. */
class ClosingDatabase : QXNonCopyable
{
 public:
  explicit ClosingDatabase(IArfDb* db, bool isClosed = false) : db_(db), isClosed_(isClosed) {}
  ~ClosingDatabase() noexcept(false)
  {
    if (db_ == nullptr) return;
    const bool unwinding = std::uncaught_exceptions() > 0;
    const ReleasingDatabase release{db_, unwinding};
    if (isClosed_) return;
    if (unwinding) {
      AtBoundary([this] { return db_->Close(), 0; });
    } else {
      db_->Close();
    }
  }

  /** The database stays open after all. */
  void Keep() { db_ = nullptr; }

 private:
  /** Release follows Close even when that throws; while another exception is in flight none may follow it. */
  struct ReleasingDatabase
  {
    IArfDb* db;
    bool unwinding;
    ~ReleasingDatabase() noexcept(false)
    {
      if (unwinding || std::uncaught_exceptions() > 0) {
        AtBoundary([this] { return db->Release(), 0; });
      } else {
        db->Release();
      }
    }
  };

  IArfDb* db_;
  bool isClosed_;
};

ArfInfo* FindByPathLocked(const std::string& path)
{
  auto& open = Shared().open;
  const auto found = std::find_if(open.begin(), open.end(), [&](const ArfInfo& entry) {
    return entry.db != nullptr && path == entry.db->GetPath();
  });
  return found == open.end() ? nullptr : &*found;
}

/** The entry of a database; for null the first free entry. */
ArfInfo* FindEntryLocked(const IArfDb* db)
{
  auto& open = Shared().open;
  const auto found = std::find_if(open.begin(), open.end(), [db](const ArfInfo& entry) { return entry.db == db; });
  return found == open.end() ? nullptr : &*found;
}

ArfInfo& FreeEntryLocked()
{
  if (ArfInfo* const entry = FindEntryLocked(nullptr)) return *entry;
  return Shared().open.emplace_back();
}

ArfLibWrapper* FixedWrapper(const std::string& country)
{
  Registry& shared = Shared();
  const std::pair<const char*, ArfLibWrapper*> wrappers[] = {
      {"US", &shared.us}, {"AU", &shared.au}, {"NZ", &shared.nz}, {"UK", &shared.uk}, {"INT", &shared.international}};
  for (const auto& [code, wrapper] : wrappers) {
    if (country == code) return wrapper;
  }
  return nullptr;
}

ArfLibWrapper* OtherWrapperLocked(const std::string& baseName)
{
  auto& others = Shared().others;
  for (ArfLibWrapper& wrapper : others) {
    if (EqualIgnoringCase(wrapper.BaseName(), baseName)) return &wrapper;
  }
  return &others.emplace_back(baseName);
}

/** Splits "DLL:Base;path". */
std::pair<std::string, std::string> DllNameParts(const std::string& name)
{
  const std::size_t begin = std::string_view("DLL:").size();
  const std::size_t semicolon = name.find(';', begin);
  if (semicolon == std::string::npos) return {name.substr(begin), std::string()};
  return {name.substr(begin, semicolon - begin), name.substr(semicolon + 1)};
}

/** Chooses the plug-in of a resolved path and reduces the path to what the plug-in opens. */
int ChooseWrapperLocked(std::string& path, std::string& country, ArfLibWrapper*& wrapper, char* errText, int errSize)
{
  if (IsDllName(path)) {
    auto [baseName, pluginPath] = DllNameParts(path);
    wrapper = OtherWrapperLocked(baseName);
    path = std::move(pluginPath);
    return PAF_OK;
  }
  if (country.empty()) {
    if (const int status = CountryOfDatabase(path, country, errText, errSize); status != 0) return status;
  }
  wrapper = FixedWrapper(country);
  return wrapper != nullptr ? PAF_OK : PAF_ERR_PLUGIN_SYSTEM;
}

/** Has a plug-in open a database. On success info holds it, counted once. */
int OpenWithPluginLocked(ArfLibWrapper& wrapper, const std::string& path, int mode, ArfInfo& info, char* errText,
                         int errSize)
{
  const bool loaderTextFits = Capacity(errSize) >= kLoadErrorSize;
  if (const int status = wrapper.Load(loaderTextFits ? errText : nullptr); status != 0) return status;
  ArfInfo fresh{nullptr, wrapper.Functions()};
  fresh.db = fresh.functions.getDb();
  if (fresh.db == nullptr) return PAF_ERR_PLUGIN_MEMORY;

  ClosingDatabase closing(fresh.db);
  const int status = fresh.db->Open(path.c_str(), mode, errText, errSize);
  if (errSize > 0) errText[errSize - 1] = '\0';
  if (status != 0) return status;
  *fresh.db->RefCount() = 1;
  closing.Keep();
  info = fresh;
  return PAF_OK;
}

void CloseEntryLocked(ArfInfo& entry)
{
  const ClosingDatabase closing(std::exchange(entry.db, nullptr));
}

void CloseAll()
{
  // By index: a plug-in's fault must not keep the others open, and nothing else may run.
  for (std::size_t i = 0; i < Shared().open.size(); ++i) {
    AtBoundary([i] { return CloseEntryLocked(Shared().open[i]), 0; });
  }
}

void ClearErrorText(char* errText, int errSize)
{
  CopyCut(errText, Capacity(errSize), "");
}

void UnloadIfPossible(ArfLibWrapper& wrapper)
{
  AtBoundary([&wrapper] {
    if (wrapper.IsLoaded() && wrapper.Functions().canUnloadNow() != 0) wrapper.Unload();
    return 0;
  });
}

}  // namespace

int OpenArfDb(const char* name, int mode, ArfInfo& info, char* errText, int errSize)
{
  ClearErrorText(errText, errSize);
  std::string path;
  std::string country;
  std::string options;
  if (const int status = GetArfPath(name, path, country, options); status != 0) return status;

  const QXScopedLock lock(Shared().lock, true);
  if (const ArfInfo* const shared = FindByPathLocked(path)) {
    ++*shared->db->RefCount();
    info = *shared;
    return PAF_OK;
  }
  ArfLibWrapper* wrapper = nullptr;
  if (const int status = ChooseWrapperLocked(path, country, wrapper, errText, errSize); status != 0) return status;
  ArfInfo& entry = FreeEntryLocked();
  const int status = OpenWithPluginLocked(*wrapper, path, OpeningMode(mode, options), entry, errText, errSize);
  if (status == 0) info = entry;
  return status;
}

int OpenGlobalPafDb(int mode, ArfInfo& info, char* errText, int errSize)
{
  ClearErrorText(errText, errSize);
  {
    const QXScopedLock lock(Shared().lock, true);
    if (info.db != nullptr) {
      ++*info.db->RefCount();
      return PAF_OK;
    }
  }
  std::string path;
  std::string country;
  std::string options;
  if (const int status = GetArfPath("", path, country, options); status != 0) return status;
  if (IsDllName(path)) return PAF_ERR_DEFAULT_NOT_AU;
  if (country.empty()) {
    if (const int status = CountryOfDatabase(path, country, errText, errSize); status != 0) return status;
  }
  const int openingMode = OpeningMode(mode, options);
  if (country != "AU") return PAF_ERR_DEFAULT_NOT_AU;

  const QXScopedLock lock(Shared().lock, true);
  if (info.db != nullptr) {  // another thread was faster
    ++*info.db->RefCount();
    return PAF_OK;
  }
  return OpenWithPluginLocked(Shared().au, path, openingMode, info, errText, errSize);
}

ArfInfo GlobalDatabase()
{
  const QXScopedLock lock(Shared().lock, true);
  return Shared().globalIsClosed ? ArfInfo() : globalArfInfo;
}

const IArfDb* GlobalPafDb()
{
  const QXScopedLock lock(Shared().lock, true);
  return globalArfInfo.db;
}

void IncreaseOpenArfDbRefCount(IArfDb* db)
{
  const QXScopedLock lock(Shared().lock, true);
  ++*db->RefCount();
}

int CloseArfDb(const IArfDb* db, bool force, bool all)
{
  if (force && all) {
    CloseAll();
    return 0;
  }
  if (db == nullptr) return 0;
  const QXScopedLock lock(Shared().lock, true);
  ArfInfo* const entry = FindEntryLocked(db);
  if (entry != nullptr && (force || --*entry->db->RefCount() < 1)) CloseEntryLocked(*entry);
  return 0;
}

void CloseGlobalPafDb(IArfDb*& db)
{
  const QXScopedLock lock(Shared().lock, true);
  if (db == nullptr || --*db->RefCount() >= 1) return;
  const bool isClosed = std::exchange(Shared().globalIsClosed, false);
  const ClosingDatabase closing(std::exchange(db, nullptr), isClosed);
}

bool IsGlobalPafDbElsewhere(const std::string& path)
{
  const QXScopedLock lock(Shared().lock, true);
  return globalArfInfo.db != nullptr && (Shared().globalIsClosed || path != globalArfInfo.db->GetPath());
}

int ReopenGlobalPafDb(const std::string& path, char* errText, int errSize)
{
  ClearErrorText(errText, errSize);
  const QXScopedLock lock(Shared().lock, true);
  IArfDb* const db = globalArfInfo.db;
  if (db == nullptr) return PAF_OK;
  const int users = *db->RefCount();
  const int mode = db->GetOpenMode();
  if (!std::exchange(Shared().globalIsClosed, true)) db->Close();
  const int status = AtBoundary([&] { return db->Open(path.c_str(), mode, errText, errSize); });
  if (errSize > 0) errText[errSize - 1] = '\0';
  *db->RefCount() = users;
  if (status != 0) {
    db->Close();
  } else {
    Shared().globalIsClosed = false;
  }
  return status;
}

std::string GetOpenArfPaths()
{
  const QXScopedLock lock(Shared().lock, true);
  std::string paths;
  for (const ArfInfo& entry : Shared().open) {
    if (entry.db == nullptr) continue;
    if (!paths.empty()) paths += ';';
    paths += entry.db->GetPath();
  }
  return paths;
}

int GetPropertyFromDll(const char* request, char* out, int outSize)
{
  ArfPluginFunctions functions;
  {
    const QXScopedLock lock(Shared().lock, true);
    if (const int status = Shared().au.Load(nullptr); status != 0) return status;
    functions = Shared().au.Functions();
  }
  if (functions.getOtherProperties == nullptr) return PAF_ERR_ENTRY_POINT_MISSING;
  return functions.getOtherProperties(request, out, outSize);
}

int GetPropertyFromDLL(const char* library, const char* request, char* out, int outSize)
{
  struct Unloading
  {
    void* handle;
    ~Unloading() { QXDLL::Unload(handle); }
  };
  void* const handle = QXDLL::FixNameAndLoad(library);
  if (handle == nullptr) return PAF_ERR_LIBRARY_NOT_LOADED;
  const Unloading unloading{handle};
  using Function = int (*)(const char*, char*, int);
  const auto getOtherProperties = reinterpret_cast<Function>(QXDLL::GetProc(handle, "GetOtherProperties"));
  if (getOtherProperties == nullptr) return PAF_ERR_ENTRY_POINT_MISSING;
  return getOtherProperties(request, out, outSize);
}

void UnloadPlugins_()
{
  Registry& shared = Shared();
  for (ArfLibWrapper* wrapper : {&shared.au, &shared.nz, &shared.us, &shared.uk, &shared.international}) {
    UnloadIfPossible(*wrapper);
  }
  for (ArfLibWrapper& wrapper : shared.others) UnloadIfPossible(wrapper);
  shared.others.clear();
}

void ForgetOpenDatabases()
{
  GiveBack(Shared().open);
  GiveBack(Shared().others);
  ExpireArfPaths();
}

}  // namespace qxpaf
