/** The per-thread record: the thread's default instance and its last error. A leaf that every room above may use. */
#ifndef QXPAF_SRC_ERRORS_THREAD_DATA_H
#define QXPAF_SRC_ERRORS_THREAD_DATA_H

namespace qxpaf {

inline constexpr int kErrorTextSize = 256;

/** What a failure left behind; touched by its own thread only. */
struct LastError
{
  int id = 0;    ///< Id of the instance whose call failed last; 0 the library itself
  int code = 0;  ///< 0 none
  char text[kErrorTextSize] = {};
};

struct ThreadData
{
  int defaultId = 0;  ///< Id of the thread's default instance; 0 none
  LastError lastError;

 private:
  // Links of the list of all records, written by other threads under its lock.
  friend class ThreadRecords;
  ThreadData* previous_ = nullptr;
  ThreadData* next_ = nullptr;
};

/** Creates the per-thread key; `destructor` runs when a thread that has a record ends. @return 0 or the system's error
 */
int CreateThreadKey(void (*destructor)(void*));

/** Deletes the key and every record, those of threads that still live included: they must not call in any more. */
void DeleteThreadKey();

/** The calling thread's record. With `create` false there may be none. @return 0, 6401, 6402 or 6404 */
int GetThreadData(bool create, ThreadData*& record);

/** Forgets the calling thread's record without freeing it. */
void ClearThreadData();

void FreeThreadData(ThreadData* record);

/** Records a failure that the library found itself, with its detail. Never fails. @return code */
int SetErrorDescription(int code, const char* text);

/** Records a failure of an instance's search object, with the detail if there is one (null or empty: none). @return
 * code */
int SetInstanceError(int code, int id, const char* text);

}  // namespace qxpaf

#endif
