/**
 * Barcodes a second: through the C interface, which asks the Australian plug-in beside the library, and of the encoder
 * alone.
 */
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "arf/barcode/four_state.h"
#include "qxpaf/paf.h"

namespace {

constexpr std::size_t kBufferSize = 80;

/** Identifiers all over the range, so that no digit is always the same. */
const std::vector<std::string>& Dpids()
{
  static const std::vector<std::string> dpids = [] {
    std::vector<std::string> made;
    for (unsigned i = 0; i < 4096; ++i) made.push_back(std::to_string(10'000'000 + i * 21'943 % 90'000'000));
    return made;
  }();
  return dpids;
}

/** Calls `make` with one identifier after the other; it gives the number of bars. */
template <class Make>
void Measure(benchmark::State& state, std::size_t bars, Make make)
{
  std::size_t next = 0;
  for (auto _ : state) {
    const std::size_t made = make(Dpids()[next]);
    if (made != bars) {
      state.SkipWithError("no barcode");
      return;
    }
    next = (next + 1) % Dpids().size();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void DpidToBarcode(benchmark::State& state)
{
  char text[kBufferSize];
  Measure(state, 37, [&](const std::string& dpid) -> std::size_t {
    std::memcpy(text, dpid.c_str(), dpid.size() + 1);
    return pafDpidToBarcode(text, kBufferSize) == PAF_OK ? std::strlen(text) : 0;
  });
}

void BuildBarcode(benchmark::State& state, const char* format, const char* customer, std::size_t bars)
{
  char text[kBufferSize];
  Measure(state, bars, [&](const std::string& dpid) -> std::size_t {
    int length = 0;
    return pafBuildBarcode_(format, dpid.c_str(), customer, 0, text, &length) == PAF_OK
               ? static_cast<std::size_t>(length)
               : 0;
  });
}

void Encode(benchmark::State& state, const char* format, const char* customer, std::size_t bars)
{
  arf::FourStateBars made;
  Measure(state, bars, [&](const std::string& dpid) -> std::size_t {
    const bool isMade = arf::EncodeFourState({dpid, format, customer}, made) == arf::FourStateFault::None;
    benchmark::DoNotOptimize(made);
    return isMade ? made.View().size() : 0;
  });
}

BENCHMARK(DpidToBarcode)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK_CAPTURE(BuildBarcode, Standard, "11", "", 37)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK_CAPTURE(BuildBarcode, Customer3, "62", "HELLO 12#", 67)->UseRealTime();
BENCHMARK_CAPTURE(Encode, Standard, "11", "", 37);
BENCHMARK_CAPTURE(Encode, Customer3, "62", "HELLO 12#", 67);

}  // namespace

BENCHMARK_MAIN();
