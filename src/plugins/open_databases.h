/**
 * The registry of open databases: every database is open once, shared by reference count among all instances that name
 * its path, and closed when the last lets go. All functions are thread-safe unless they say otherwise.
 */
#ifndef QXPAF_SRC_PLUGINS_OPEN_DATABASES_H
#define QXPAF_SRC_PLUGINS_OPEN_DATABASES_H

#include <string>

#include "plugins/arf_library.h"

namespace qxpaf {

/** The database that was opened without a name for default instances; empty until then. Not in the list of the others.
 */
extern ArfInfo globalArfInfo;

/**
 * Opens a database by name, or shares it.
 *
 * @param mode     0 as configured, or the plug-in's opening mode
 * @param info     receives the database and its plug-in's entry points; the caller holds one reference
 * @param errText  receives on failure the plug-in's or the loader's words; the loader's only from 255 bytes on
 * @param errSize  bytes of errText
 */
int OpenArfDb(const char* name, int mode, ArfInfo& info, char* errText, int errSize);

/** Opens or shares the configured default database, which must be Australian. `info` keeps it: see globalArfInfo. */
int OpenGlobalPafDb(int mode, ArfInfo& info, char* errText, int errSize);

/** A copy of globalArfInfo for a new searcher; without a database when it is not open. */
ArfInfo GlobalDatabase();

/** The global database, to be recognised by; null when there is none. */
const IArfDb* GlobalPafDb();

/** Adds a reference to an open database. */
void IncreaseOpenArfDbRefCount(IArfDb* db);

/**
 * Drops one reference, or with `force` closes the database at once whatever its count; a null or unknown db is ignored.
 * With `force` and `all` every open database is closed, and no lock is taken: no other call may run then.
 *
 * @return 0
 */
int CloseArfDb(const IArfDb* db, bool force, bool all);

/** Drops one reference of the global database; with the last it is closed and `db` becomes null. */
void CloseGlobalPafDb(IArfDb*& db);

/** True when there is a global database that is open on another path than this, or could not be reopened. */
bool IsGlobalPafDbElsewhere(const std::string& path);

/**
 * Has the plug-in close the global database and open it on another path, in the same mode; its users keep their
 * searchers, which must be idle. After a failure it is closed and keeps its users, so that another attempt is possible,
 * but gets no new ones. Does nothing when there is none.
 *
 * @return 0 or the plug-in's status, with its words in errText
 */
int ReopenGlobalPafDb(const std::string& path, char* errText, int errSize);

/** The paths of all open databases in list order, joined with ";". */
std::string GetOpenArfPaths();

/** A property request to the Australian plug-in, which is loaded for it. */
int GetPropertyFromDll(const char* request, char* out, int outSize);

/** A property request to the plug-in "lib" + library + ".so", which is loaded for this call only. */
int GetPropertyFromDLL(const char* library, const char* request, char* out, int outSize);

/** Unloads every plug-in that says it can be unloaded. Takes no lock: no other call may run. */
void UnloadPlugins_();

/** Gives back the registry's memory without calling a plug-in; for the library's shut-down. */
void ForgetOpenDatabases();

}  // namespace qxpaf

#endif
