/**
 * A geocoding library that writes into the log of the fakes (QXPAF_FAKE_LOG) when it is loaded and unloaded and with
 * which argument it was told to let go of its files. FAKE_WITHOUT_FIRST, _MIDDLE and _LAST leave an entry point out.
 */
#include <string>

#include "fakes/event_log.h"

namespace {

constexpr const char* kLibrary = "libqxlumo.so";

struct Life
{
  Life()
  {
    fake::OpenEventLog();
    fake::LogEvent(kLibrary, "load");
  }
  ~Life() { fake::LogEvent(kLibrary, "unload"); }
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;
} life;

/** An entry point that has no business being called. */
int Unexpected(const char* name)
{
  fake::LogEvent(kLibrary, (std::string("VIOLATION ") + name).c_str());
  return -1;
}

}  // namespace

#define FAKE_ENTRY(name)                                        \
  extern "C" __attribute__((visibility("default"))) int name(); \
  int name()                                                    \
  {                                                             \
    return Unexpected(#name);                                   \
  }                                                             \
  static_assert(true)

#ifndef FAKE_WITHOUT_FIRST
FAKE_ENTRY(qxgSearchGeocodeFile);
#endif
FAKE_ENTRY(qxgGetGeocodeFileProperties);
FAKE_ENTRY(qxgGetLastError);
FAKE_ENTRY(qxgReverseLookupBegin);
FAKE_ENTRY(qxgReverseLookupGetNext);
#ifndef FAKE_WITHOUT_MIDDLE
FAKE_ENTRY(qxgReverseLookupEnd);
#endif
FAKE_ENTRY(qxgCalculateStreetIntersection);
FAKE_ENTRY(qxgPolygonLookupBegin);
FAKE_ENTRY(qxgPolygonLookupBeginR);

#ifndef FAKE_WITHOUT_LAST
/** Its result is nobody's business, so it is a failure. */
extern "C" __attribute__((visibility("default"))) int qxgUnloadGeocodeFiles(int what);
int qxgUnloadGeocodeFiles(int what)
{
  fake::LogEvent(kLibrary, ("qxgUnloadGeocodeFiles " + std::to_string(what)).c_str());
  return 4321;
}
#endif
