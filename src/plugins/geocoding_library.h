/** The optional geocoding library, which keeps geocode files open on its own. */
#ifndef QXPAF_SRC_PLUGINS_GEOCODING_LIBRARY_H
#define QXPAF_SRC_PLUGINS_GEOCODING_LIBRARY_H

#include "qxpaf/platform/thread.h"

namespace qxpaf {

inline constexpr int kGeocodingNotLoaded = 4470;
inline constexpr int kGeocodingEntryPointMissing = 4471;

/** Binds to libqxlumo.so, whose ten entry points must all be there, for one use. The destructor does not unload it. */
class LumoWrapper : QXNonCopyable
{
 public:
  /**
   * Loads the library unless that was done.
   *
   * @param errText  null, or receives the loader's words and the library's base name as far as they fit; emptied first
   * @param errSize  bytes of errText
   * @return 0, kGeocodingNotLoaded, or kGeocodingEntryPointMissing, after which nothing is loaded
   */
  int Load(char* errText, unsigned long errSize);

  /** Unloads the library, unless the process is ending: other code may be in it still. */
  void Unload();

  /** Lets go of every geocode file. Only while loaded. */
  void UnloadGeocodeFiles();

 private:
  using Function = void (*)();
  enum EntryPoint
  {
    kUnloadGeocodeFiles = 9,
    kEntryPointCount
  };

  bool Resolve();

  void* handle_ = nullptr;
  Function functions_[kEntryPointCount] = {};
};

/** From now on the geocoding library is left loaded: the process is ending. */
void SetProcessDetach();

}  // namespace qxpaf

#endif
