/** Every function of the C interface, in one form, so that what they have in common is tested on all of them. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_EXPORTED_FUNCTIONS_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_EXPORTED_FUNCTIONS_H

#include <climits>
#include <ostream>
#include <vector>

#include "fakes/fake_control.h"

namespace blackbox {

/** What a function works on. */
enum class On
{
  kId,
  kDefault,  // the calling thread's default instance
  kNothing   // neither, or something of its own
};

/** How it delivers an answer. */
enum class Output
{
  kNone,
  kCut,      // by the library, to the size
  kRefused,  // 6406 when it does not fit, and the buffer as it was
  kEmptied,  // 6406 when it does not fit, and the buffer empty
  kDirect,   // by the plug-in, which gets the caller's buffer and size
  kOwn       // by rules that no other function has
};

/** What becomes of the plug-in's failure. */
enum class Failure
{
  kRemembered,  // returned, and described once
  kReturned,    // returned only
  kHidden       // status 0 and an empty answer
};

/** What it answers when there is no instance to work on, when it is busy, and when it has no search object. */
struct Refusals
{
  int noInstance;
  int busy;
  int noSearcher;
};

constexpr Refusals kUsualRefusals = {6405, 6412, 6411};

struct ExportedFunction
{
  const char* name;
  On on;
  FakeOperation operation;  // the one whose status it answers; kFakeOperationCount: none
  Output output;
  /** Calls it. `in` is its text; a function that works in place finds it in `text`. */
  int (*run)(int id, const char* in, char* text, int size);
  Refusals refusals = kUsualRefusals;
  Failure failure = Failure::kRemembered;
  bool inPlace = false;
  int extra = 0;            // bytes that it uses beyond the size: 1 where the size is a length
  int impliedSize = 0;      // the size of functions that take none
  int most = INT_MAX;       // it never delivers more characters
  bool checksSize = false;  // answers 6406 for sizes below 1, before anything else
  bool creates = true;      // opens the default instance when there is none
};

const std::vector<ExportedFunction>& ExportedFunctions();

inline void PrintTo(const ExportedFunction& function, std::ostream* out)
{
  *out << function.name;
}

}  // namespace blackbox

#endif
