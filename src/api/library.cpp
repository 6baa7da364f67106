#include "api/library.h"

#include <atomic>
#include <cstdio>

#include "api/default_instance.h"
#include "api/instance_table.h"
#include "errors/thread_data.h"
#include "platform/immortal.h"
#include "plugins/geocoding_library.h"
#include "plugins/open_databases.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/thread.h"
#include "qxpaf/remote.h"

namespace qxpaf {
namespace {

constinit std::atomic<int> libraryStatus = PAF_ERR_NOT_INITIALISED;

/** Threads may start the library at the same time, from static constructors. */
struct StartUp
{
  QXMutex lock{0};
};

/** Run by the thread library when a thread that has a record ends. */
void TlsDestructor(void* record)
{
  CloseThreadInstance(static_cast<ThreadData*>(record));
  // A server that could not be told left an error behind, in a new record.
  ThreadData* late = nullptr;
  if (GetThreadData(false, late) == 0 && late != nullptr) FreeThreadData(late);
  ClearThreadData();
}

/** The one object with a static constructor: everything else is constructed on first use and outlives all callers. */
struct InitialiseFinaliseLib
{
  InitialiseFinaliseLib() { InitialiseLibrary(); }
  ~InitialiseFinaliseLib() { FinaliseLibrary(); }
} initialiseFinaliseLib;

}  // namespace

int LibraryStatus()
{
  return libraryStatus;
}

void InitialiseLibrary()
{
  const QXScopedLock lock(Immortal<StartUp>().lock, true);
  if (libraryStatus != PAF_ERR_NOT_INITIALISED) return;
  SetTcpHost("");
  SetTcpPort("");
  const int error = CreateThreadKey(TlsDestructor);
  if (error != 0) std::fprintf(stderr, "pthread_key_created failed returning %d\n", error);
  libraryStatus = error == 0 ? PAF_OK : PAF_ERR_THREAD_KEY;
}

void FinaliseLibrary()
{
  SetProcessDetach();
  ForgetInstances();
  DeleteThreadKey();
  ForgetOpenDatabases();
}

}  // namespace qxpaf
