// A thread with a default instance outlives libqxpaf.so's shut-down. Ends with 0 when it works.
#include <cstring>
#include <future>
#include <thread>

#include "blackbox/lifetime/bracket_library.h"
#include "blackbox/lifetime/require.h"
#include "qxpaf/paf.h"

namespace {

/** Never destroyed: it is used after the program's static objects are gone. */
struct Late
{
  std::promise<void> ready;
  std::promise<void> end;
  std::thread thread;
};
Late* late = nullptr;

void QueryAndWait()
{
  char out[255];
  Require(pafGetAddress("q", out) == 0, "querying works");
  late->ready.set_value();
  late->end.get_future().wait();
  Require(pafGetAddress("q", out) != 0, "the library is shut down");
  Require(pafGet_FindStatus() == -1, "also for the find status");
}

}  // namespace

void BeforeStartUp() {}

void AfterShutDown()
{
  char count[16];
  Require(pafGetPropertiesId(0, "ClientCount2", count, sizeof count) == 0 && std::strcmp(count, "0") == 0,
          "the library has forgotten its instances");
  late->end.set_value();
  late->thread.join();
}

int main()
{
  Require(pafOpenPaf() == 0, "opening works");
  late = new Late;
  late->thread = std::thread(QueryAndWait);
  late->ready.get_future().wait();
  return 0;
}
