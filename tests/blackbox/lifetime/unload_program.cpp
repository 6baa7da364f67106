// Loads libqxpaf.so at run time and unloads it in awkward moments. Usage: unload_program <way> <path of the library>.
// Ends with 0 when everything answered as it should; a message says what did not.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <future>
#include <thread>

#include "qxpaf/paf.h"

namespace {

struct Library
{
  void* handle;
  decltype(&pafOpenArfId2) open;
  decltype(&pafClosePafId) close;
  decltype(&pafGetParsedInputId) query;
  decltype(&pafGetFindStatusId) findStatus;
  decltype(&pafGetErrorDescription) describe;
  decltype(&pafOpenPaf) openDefault;
  decltype(&pafGetAddress) queryDefault;
};

template <class Function>
void Resolve(void* handle, const char* name, Function& function)
{
  function = reinterpret_cast<Function>(dlsym(handle, name));
}

bool Load(const char* path, Library& library)
{
  library.handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library.handle == nullptr) {
    std::printf("%s\n", dlerror());
    return false;
  }
  Resolve(library.handle, "pafOpenArfId2", library.open);
  Resolve(library.handle, "pafClosePafId", library.close);
  Resolve(library.handle, "pafGetParsedInputId", library.query);
  Resolve(library.handle, "pafGetFindStatusId", library.findStatus);
  Resolve(library.handle, "pafGetErrorDescription", library.describe);
  Resolve(library.handle, "pafOpenPaf", library.openDefault);
  Resolve(library.handle, "pafGetAddress", library.queryDefault);
  return true;
}

bool Expect(bool truth, const char* what)
{
  if (!truth) std::printf("not so: %s\n", what);
  return truth;
}

/** Opens an instance on a database that cannot be opened: leaves a record of this thread's last error behind. */
bool FailOnThisThread(const Library& library)
{
  return Expect(library.open(0, "DLL:FakeNowhere;/p") == -PAF_ERR_LIBRARY_NOT_LOADED, "a missing plug-in is reported");
}

/** A thread that has used the library outlives it. */
template <class Use>
bool UserOutlivesLibrary(const char* path, Use use)
{
  Library library;
  if (!Load(path, library)) return false;
  std::promise<void> used;
  std::promise<void> unloaded;
  bool good = false;
  std::thread thread([&] {
    good = use(library);
    used.set_value();
    unloaded.get_future().wait();
  });
  used.get_future().wait();
  dlclose(library.handle);
  unloaded.set_value();
  thread.join();
  return good;
}

bool ThreadOutlivesLibrary(const char* path)
{
  return UserOutlivesLibrary(path, [](const Library& library) {
    return FailOnThisThread(library) && Expect(library.open(0, "DLL:FakeTwo;/p") == 1, "opening works");
  });
}

/** The same with a default instance, which the thread's end would release. */
bool DefaultInstanceOutlivesLibrary(const char* path)
{
  return UserOutlivesLibrary(path, [](const Library& library) {
    char out[255];
    return Expect(library.openDefault() == 0, "opening the default database works") &&
           Expect(library.queryDefault("q", out) == 0, "querying the default instance works");
  });
}

/** The library is unloaded while instances are open. */
bool OpenInstances(const char* path)
{
  Library library;
  if (!Load(path, library)) return false;
  bool good = true;
  for (int id = 1; id <= 3; ++id) good &= Expect(library.open(0, "DLL:FakeTwo;/p") == id, "opening works");
  good &= Expect(library.findStatus(2) == 0, "querying works");
  dlclose(library.handle);
  return good;
}

/** Loaded, used and unloaded again and again, always from its initial state. */
bool AgainAndAgain(const char* path)
{
  bool good = true;
  for (int time = 0; time < 5; ++time) {
    Library library;
    if (!Load(path, library)) return false;
    good &= FailOnThisThread(library);
    const int id = library.open(0, "DLL:FakeTwo;/p");
    good &= Expect(id > 0, "opening works");
    good &= Expect(library.close(id) == 0, "closing works");
    char text[64];
    library.describe(text, PAF_ERR_INVALID_ID, sizeof text);
    good &= Expect(std::strcmp(text, "Invalid Id passed to function") == 0, "texts are there");
    dlclose(library.handle);
  }
  return good;
}

/** The last user of the library is the thread that unloads it. */
bool UnloadedByAnotherThread(const char* path)
{
  bool good = false;
  std::thread([&] {
    Library library;
    if (!Load(path, library)) return;
    good = FailOnThisThread(library) && Expect(library.open(0, "DLL:FakeTwo;/p") == 1, "opening works") &&
           Expect(library.close(1) == 0, "closing works");
    dlclose(library.handle);
  }).join();
  return good;
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc != 3) return 2;
  const struct
  {
    const char* name;
    bool (*run)(const char*);
  } kWays[] = {{"thread_outlives", ThreadOutlivesLibrary},
               {"default_outlives", DefaultInstanceOutlivesLibrary},
               {"open_instances", OpenInstances},
               {"again_and_again", AgainAndAgain},
               {"by_another_thread", UnloadedByAnotherThread}};
  for (const auto& way : kWays) {
    if (std::strcmp(way.name, argv[1]) == 0) return way.run(argv[2]) ? 0 : 1;
  }
  return 2;
}
