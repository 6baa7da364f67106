// A library that is constructed before libqxpaf.so and destroyed after it, and calls its program at both times.
#include "blackbox/lifetime/bracket_library.h"

namespace {

struct Bracket
{
  Bracket() { BeforeStartUp(); }
  ~Bracket() { AfterShutDown(); }
} bracket;

}  // namespace
