#ifndef QXPAF_SRC_API_DEFAULT_INSTANCE_H
#define QXPAF_SRC_API_DEFAULT_INSTANCE_H

namespace qxpaf {

struct ThreadData;

/** Closes the default instance of a thread that ends, if it has one and it is idle, and frees the thread's record. */
void CloseThreadInstance(ThreadData* record);

}  // namespace qxpaf

#endif
