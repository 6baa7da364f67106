#include "api/library.h"

#include <atomic>
#include <cstdio>

#include "api/default_instance.h"
#include "api/instance_table.h"
#include "errors/thread_data.h"
#include "plugins/open_databases.h"
#include "qxpaf/paf.h"

namespace qxpaf {
namespace {

constinit std::atomic<int> libraryStatus = PAF_ERR_NOT_INITIALISED;

/** Run by the thread library when a thread that has a record ends. */
void TlsDestructor(void* record)
{
  CloseThreadInstance(static_cast<ThreadData*>(record));
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
  libraryStatus = PAF_OK;
  if (const int error = CreateThreadKey(TlsDestructor); error != 0) {
    libraryStatus = PAF_ERR_THREAD_KEY;
    std::fprintf(stderr, "pthread_key_created failed returning %d\n", error);
  }
}

void FinaliseLibrary()
{
  ForgetInstances();
  DeleteThreadKey();
  ForgetOpenDatabases();
}

}  // namespace qxpaf
