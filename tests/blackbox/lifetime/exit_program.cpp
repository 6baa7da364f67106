// Ends a process that uses libqxpaf.so in awkward moments. Usage: exit_program <way>. Ends with 0 when everything
// answered as it should; a message says what did not.
#include <dlfcn.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>
#include <thread>

#include "blackbox/lifetime/require.h"
#include "fakes/fake_control.h"
#include "qxpaf/paf.h"

namespace {

constexpr const char* kName = "DLL:FakeTwo;/p";

void OpenThree()
{
  for (int id = 1; id <= 3; ++id) Require(pafOpenArfId2(0, kName) == id, "opening works");
  Require(pafGetFindStatusId(3) == 0, "querying works");
}

/** Puts a thread into the plug-in, where it stays. */
void BlockAThread()
{
  void* handle = dlopen("libfaketwo.so", RTLD_NOW);
  Require(handle != nullptr, "the fake is there");
  const FakeControl* fake = reinterpret_cast<FakeControlFunction>(dlsym(handle, "fake_control"))();
  fake->block(kFakeLookupAddress);
  std::thread([] {
    char text[32] = "1 High St";
    pafLookupAddress(1, text, sizeof text, 0);
  }).detach();
  Require(fake->waitUntilBlocked(kFakeLookupAddress, 10000) > 0, "a thread stands in the plug-in");
}

int ReturnWithOpenInstances()
{
  OpenThree();
  return 0;
}

int ExitInAThread()
{
  OpenThree();
  std::thread([] { std::exit(0); }).join();
  return 1;
}

int ReturnWhileAThreadIsInside()
{
  OpenThree();
  BlockAThread();
  return 0;
}

/** A thread with an unread error sleeps through the end. */
int ReturnBesideAThreadWithAnError()
{
  OpenThree();
  static std::promise<int> failed;
  std::thread([] {
    failed.set_value(pafOpenArfId2(0, "DLL:FakeNowhere"));
    std::this_thread::sleep_for(std::chrono::hours(1));
  }).detach();
  Require(failed.get_future().get() == -PAF_ERR_LIBRARY_NOT_LOADED, "a missing plug-in is reported");
  return 0;
}

int ForceCloseAllAtTheEnd()
{
  OpenThree();
  std::atexit([] { pafForceCloseAll(); });
  return 0;
}

void UseDefaultInstance()
{
  char out[255];
  Require(pafGetAddress("q", out) == 0, "querying the default instance works");
}

int ReturnWithADefaultInstance()
{
  Require(pafOpenPaf() == 0, "opening the default database works");
  UseDefaultInstance();
  return 0;
}

/** A thread with a default instance sleeps through the end. */
int ReturnBesideAThreadWithADefaultInstance()
{
  Require(pafOpenPaf() == 0, "opening the default database works");
  static std::promise<void> used;
  std::thread([] {
    UseDefaultInstance();
    used.set_value();
    std::this_thread::sleep_for(std::chrono::hours(1));
  }).detach();
  used.get_future().wait();
  return 0;
}

/** The process goes on without its first thread, which ends like any other. */
int EndTheFirstThreadOnly()
{
  ReturnWithADefaultInstance();
  static const pthread_t first = pthread_self();
  std::thread([] {
    pthread_join(first, nullptr);
    char count[16];
    Require(pafGetPropertiesId(0, "ClientCount", count, sizeof count) == 0 && std::strcmp(count, "0") == 0,
            "the instance went with its thread");
    UseDefaultInstance();
    std::exit(0);
  }).detach();
  pthread_exit(nullptr);
}

int UseInAChild()
{
  OpenThree();
  const pid_t child = fork();
  Require(child >= 0, "fork works");
  Require(pafGetFindStatusId(2) == 0, "querying works after fork");
  Require(pafOpenArfId2(0, kName) == 4, "opening works after fork");
  Require(pafOpenArfId2(0, "DLL:FakeNowhere") == -PAF_ERR_LIBRARY_NOT_LOADED, "errors work after fork");
  char text[256];
  pafGetErrorDescription(text, PAF_ERR_LIBRARY_NOT_LOADED, sizeof text);
  Require(std::strstr(text, "libfakenowhere.so") != nullptr, "texts work after fork");
  for (int id = 1; id <= 4; ++id) Require(pafClosePafId(id) == 0, "closing works after fork");
  Require(pafUnloadPlugins() == 0, "unloading works after fork");
  if (child == 0) return 0;
  int status = 0;
  Require(waitpid(child, &status, 0) == child && status == 0, "the child ended well");
  return 0;
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc != 2) return 2;
  const struct
  {
    const char* name;
    int (*run)();
  } kWays[] = {{"return", ReturnWithOpenInstances},
               {"exit_in_thread", ExitInAThread},
               {"thread_inside", ReturnWhileAThreadIsInside},
               {"thread_with_error", ReturnBesideAThreadWithAnError},
               {"force_close_at_exit", ForceCloseAllAtTheEnd},
               {"return_with_default", ReturnWithADefaultInstance},
               {"thread_with_default", ReturnBesideAThreadWithADefaultInstance},
               {"first_ends_alone", EndTheFirstThreadOnly},
               {"fork", UseInAChild}};
  for (const auto& way : kWays) {
    if (std::strcmp(way.name, argv[1]) == 0) return way.run();
  }
  return 2;
}
