// Registers the work of a function on inputs under "Function/input". Another
// way to the same result has one part more, "Function/input/plain" (the
// transcription of the tests), "/iconv" and so on, by which scripts/benchmarks
// pairs them. One item is one call.
#ifndef QXPAF_BENCH_MEASURE_H
#define QXPAF_BENCH_MEASURE_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "address_texts.h"

namespace bench {

// The texts must live until the benchmarks have run.
template <class Text, class Work>
void MeasureOne(const std::string& name, const std::vector<Text>& texts, Work work)
{
  benchmark::RegisterBenchmark(name.c_str(), [&texts, work](benchmark::State& state) {
    for (auto _ : state)
      for (const Text& text : texts) benchmark::DoNotOptimize(work(text));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.size()));
  });
}

template <class Text, class Work>
void Measure(const std::string& function, const Inputs<Text>& inputs, Work work)
{
  for (const Input<Text>& input : inputs) MeasureOne(function + "/" + input.name, input.texts, work);
}

template <class Text, class Work>
void Measure(const std::string& function, const Inputs<Text>& inputs, const std::string& other, Work work)
{
  for (const Input<Text>& input : inputs) MeasureOne(function + "/" + input.name + "/" + other, input.texts, work);
}

inline int Run(int argc, char** argv)
{
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace bench

#endif
