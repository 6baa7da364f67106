#include "errors/thread_data.h"

#include <pthread.h>

#include <atomic>
#include <new>

#include "platform/bounded.h"
#include "platform/immortal.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/thread.h"

namespace qxpaf {

/** Every record alive, so that shut-down can free those of threads that end after the key is gone. */
class ThreadRecords
{
 public:
  void Add(ThreadData* record)
  {
    const QXScopedLock lock(mutex_, true);
    record->next_ = first_;
    if (first_ != nullptr) first_->previous_ = record;
    first_ = record;
  }

  void Delete(ThreadData* record)
  {
    const QXScopedLock lock(mutex_, true);
    (record->previous_ != nullptr ? record->previous_->next_ : first_) = record->next_;
    if (record->next_ != nullptr) record->next_->previous_ = record->previous_;
    delete record;
  }

  void DeleteAll()
  {
    const QXScopedLock lock(mutex_, true);
    while (first_ != nullptr) {
      ThreadData* const next = first_->next_;
      delete first_;
      first_ = next;
    }
  }

 private:
  QXMutex mutex_{0};
  ThreadData* first_ = nullptr;
};

namespace {

pthread_key_t threadKey = 0;
// Key 0 is a valid key that may be somebody else's, so its existence is kept apart.
std::atomic<bool> haveThreadKey = false;

ThreadRecords& Records()
{
  return Immortal<ThreadRecords>();
}

}  // namespace

int CreateThreadKey(void (*destructor)(void*))
{
  const int result = pthread_key_create(&threadKey, destructor);
  haveThreadKey = result == 0;
  return result;
}

void DeleteThreadKey()
{
  if (!haveThreadKey.exchange(false)) return;
  pthread_key_delete(threadKey);
  threadKey = 0;
  Records().DeleteAll();
}

int GetThreadData(bool create, ThreadData*& record)
{
  record = nullptr;
  if (!haveThreadKey) return create ? PAF_ERR_THREAD_VALUE_GET : PAF_OK;
  record = static_cast<ThreadData*>(pthread_getspecific(threadKey));
  if (record != nullptr || !create) return PAF_OK;

  ThreadData* const fresh = new (std::nothrow) ThreadData;
  if (fresh == nullptr) return PAF_ERR_OUT_OF_MEMORY;
  if (pthread_setspecific(threadKey, fresh) != 0) {
    delete fresh;
    return PAF_ERR_THREAD_VALUE_SET;
  }
  Records().Add(fresh);
  record = fresh;
  return PAF_OK;
}

void ClearThreadData()
{
  if (haveThreadKey) pthread_setspecific(threadKey, nullptr);
}

void FreeThreadData(ThreadData* record)
{
  Records().Delete(record);
}

int SetErrorDescription(int code, const char* text)
{
  return SetInstanceError(code, 0, text);
}

int SetInstanceError(int code, int id, const char* text)
{
  ThreadData* record = nullptr;
  if (GetThreadData(true, record) != 0) return code;
  record->lastError.code = code;
  record->lastError.id = id;
  CopyCut(record->lastError.text, sizeof record->lastError.text, text != nullptr ? text : "");
  return code;
}

}  // namespace qxpaf
