/** The library's life: start-up when it is loaded, shut-down when it is unloaded or the process ends. */
#ifndef QXPAF_SRC_API_LIBRARY_H
#define QXPAF_SRC_API_LIBRARY_H

namespace qxpaf {

/** 6400 until start-up has run, then 0, or 6403 when the per-thread key could not be created. */
int LibraryStatus();

/** Start-up: when the library is loaded, or before that when another library's constructor calls in. Runs once. */
void InitialiseLibrary();

/** Shut-down: frees instances and per-thread records without calling a plug-in. No other call may run. */
void FinaliseLibrary();

}  // namespace qxpaf

#endif
