/** Shared libraries that are loaded by name and asked for entry points. */
#ifndef QXPAF_SRC_PLUGINS_LIBRARY_WRAPPER_H
#define QXPAF_SRC_PLUGINS_LIBRARY_WRAPPER_H

#include <cstddef>

namespace qxpaf {

/** Bytes that an error text buffer handed to Load must hold, terminator included. */
inline constexpr std::size_t kLoadErrorSize = 255;

/**
 * One loadable library. Copies share the loader's handle without counting, and the destructor does not unload: a
 * wrapper is a name and a handle, its owner decides about the library's life. Not thread-safe.
 */
class LibraryWrapper
{
 public:
  /** @param fileName the library's file name; cut to 63 characters */
  explicit LibraryWrapper(const char* fileName);
  LibraryWrapper(const LibraryWrapper&) = default;
  LibraryWrapper& operator=(const LibraryWrapper&) = default;

  /** Resolves the entry points. On failure the missing one's name is in errText (null: not wanted). */
  virtual bool LoadFunctions(char* errText) = 0;

  virtual ~LibraryWrapper() = default;

  bool IsLoaded() const { return handle_ != nullptr; }

  /**
   * Loads the library and its entry points; does nothing when it is loaded.
   *
   * @param errText null, or kLoadErrorSize bytes that receive on failure the loader's words and the file name
   * @return 0, 990 (not loaded) or 991 (an entry point is missing; the library is unloaded again)
   */
  int Load(char* errText);

  /** @return true when the library is not loaded (any more) */
  bool Unload();

  const char* FileName() const { return fileName_; }

 protected:
  void* Handle() const { return handle_; }

 private:
  char fileName_[64];
  void* handle_;
};

}  // namespace qxpaf

#endif
