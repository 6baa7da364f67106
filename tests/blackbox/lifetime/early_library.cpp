// A library whose static object uses libqxpaf.so in its constructor and its destructor. Unless it is linked against
// libqxpaf.so, these may run before the constructors and after the destructors of that library.
#include "blackbox/lifetime/early_library.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "qxpaf/paf.h"

namespace {

void Require(bool truth, const char* when, const char* what)
{
  if (truth) return;
  std::printf("%s, not so: %s\n", when, what);
  std::fflush(stdout);
  _exit(1);
}

/** What holds at any time: unknown Ids are refused and texts are given. */
void UseWithoutPlugin(const char* when)
{
  char text[64] = "";
  Require(pafGetErrorDescription(text, PAF_ERR_INVALID_ID, sizeof text) == 0, when, "describing answers 0");
  Require(std::strcmp(text, "Invalid Id passed to function") == 0, when, "texts are there");
  Require(pafLookupAddress(1000, text, sizeof text, 0) == PAF_ERR_INVALID_ID, when, "unknown Ids are refused");
  Require(pafClosePafId(1000) == PAF_ERR_INVALID_ID, when, "unknown Ids are not closed");
  Require(pafOpenArfId2(0, "abcd.x") == -PAF_ERR_UNKNOWN_COUNTRY, when, "unknown countries are refused");
}

struct Early
{
  Early()
  {
    UseWithoutPlugin("before main");
    id = pafOpenArfId2(0, "DLL:FakeTwo;/early");
    Require(id == 1, "before main", "opening works");
    Require(pafGetFindStatusId(id) == 0, "before main", "querying works");
  }
  ~Early() { UseWithoutPlugin("after main"); }

  int id = 0;
} early;

}  // namespace

int EarlyId()
{
  return early.id;
}
