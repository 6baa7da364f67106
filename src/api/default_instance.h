/** The calling thread's default instance. */
#ifndef QXPAF_SRC_API_DEFAULT_INSTANCE_H
#define QXPAF_SRC_API_DEFAULT_INSTANCE_H

namespace qxpaf {

struct ThreadData;

/**
 * The Id of the calling thread's default instance.
 *
 * @param id          receives the Id; 0 when there is none and `create` is false
 * @param create      opens the instance when there is none
 * @param memoryMode  for a remote instance that is opened
 * @return 0; 6413 (the global database is not open); what the library's start-up or opening the instance failed with
 */
int GetDefaultInstance(int* id, bool create, int memoryMode);

/** Closes the default instance of a thread that ends, if it has one and it is idle, and frees the thread's record. */
void CloseThreadInstance(ThreadData* record);

}  // namespace qxpaf

#endif
