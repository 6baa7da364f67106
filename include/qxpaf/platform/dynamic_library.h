/** The dynamic loader, as static functions. All are as thread-safe as the loader itself. */
#ifndef QXPAF_PLATFORM_DYNAMIC_LIBRARY_H
#define QXPAF_PLATFORM_DYNAMIC_LIBRARY_H

#include "qxpaf/export.h"

/** Loads shared libraries and resolves their symbols. */
class QXPAF_API QXDLL
{
 public:
  /** Loads a library by file name with lazy binding; names without "/" are searched for as the loader does.
      @return its handle, or null (GetError then has the reason) */
  static void* Load(const char* fileName);

  /** Loads "lib" + name + ".so", the name's case kept.
      @return its handle, or null; null without trying when the name has more than 249 characters */
  static void* FixNameAndLoad(const char* name);

  /** The address of a symbol, or null. */
  static void* GetProc(void* handle, const char* symbol);

  /** Drops one reference of a loaded library. @return true when the loader accepted it */
  static bool Unload(void* handle);

  /** Takes the calling thread's pending loader message, cut to outSize - 1 characters; empty when there is none.
      Does nothing when outSize (bytes, terminator included) is 0. */
  static void GetError(char* out, unsigned long outSize);
};

#endif
