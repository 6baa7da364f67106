// What the frame costs: an exported call through the shared library beside a bare virtual call of the same plug-in.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <stdexcept>

#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/dynamic_library.h"

namespace {

constexpr const char* kDatabase = "DLL:framebench";

/** The plug-in's own objects, had without the library. */
IArfSearcher& BareSearcher()
{
  static IArfSearcher* const searcher = [] {
    void* const handle = QXDLL::FixNameAndLoad("framebench");
    if (handle == nullptr) throw std::runtime_error("libframebench.so not found");
    const auto getDb = reinterpret_cast<decltype(&GetDb)>(QXDLL::GetProc(handle, "GetDb"));
    const auto getSearcher = reinterpret_cast<decltype(&GetSearcher)>(QXDLL::GetProc(handle, "GetSearcher"));
    return getSearcher(getDb());
  }();
  return *searcher;
}

/** An instance of each benchmark thread. */
struct Instance
{
  Instance()
  {
    if (pafOpenArfId(&id, 0, kDatabase) != 0) throw std::runtime_error("cannot open the benchmark's plug-in");
  }
  ~Instance() { pafClosePafId(id); }
  int id = 0;
};

void BareVirtualCall(benchmark::State& state)
{
  IArfSearcher& searcher = BareSearcher();
  char out[64];
  for (auto _ : state) {
    benchmark::DoNotOptimize(searcher.GetParsedInput(out, sizeof out));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BareVirtualCall);

void QueryThroughTheFrame(benchmark::State& state)
{
  const Instance instance;
  char out[64];
  for (auto _ : state) {
    benchmark::DoNotOptimize(pafGetParsedInputId(instance.id, out, sizeof out));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(QueryThroughTheFrame)->Threads(1)->Threads(2);

void LookupThroughTheFrame(benchmark::State& state)
{
  const Instance instance;
  char address[64] = "1 MACQUARIE ST SYDNEY NSW 2000";
  for (auto _ : state) {
    benchmark::DoNotOptimize(pafLookupAddress(instance.id, address, sizeof address, 0));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(LookupThroughTheFrame);

void UnknownId(benchmark::State& state)
{
  char out[64];
  for (auto _ : state) benchmark::DoNotOptimize(pafGetParsedInputId(-1, out, sizeof out));
}
BENCHMARK(UnknownId);

}  // namespace

BENCHMARK_MAIN();
