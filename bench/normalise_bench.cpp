// Text clean-up, packing and distance on address lines and on a megabyte, beside the plain transcriptions of the tests
// and (where it was found) ICU. Rates are of input bytes.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "qxpaf/text/geometry.h"
#include "qxpaf/text/normalise.h"
#include "qxpaf/text/packing.h"
#include "reference/packing_reference.h"

#ifdef QXPAF_BENCH_ICU
#include <unicode/ubrk.h>
#include <unicode/ucasemap.h>
#endif

namespace {

constexpr const char* kLine = "UNIT 12 345-347 OLD NORTHERN RD O'BRIEN LEVEL VIII";

// ---- Clean-up in place: every round on a fresh copy
// -------------------------------------------------------------------

template <class CleanUp>
void InPlace(benchmark::State& state, const std::string& text, CleanUp cleanUp)
{
  std::string buffer = text;
  for (auto _ : state) {
    std::memcpy(buffer.data(), text.c_str(), text.size() + 1);
    cleanUp(buffer.data());
    benchmark::DoNotOptimize(buffer.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(text.size()));
}

std::string Repeated(const std::string& part, std::size_t size)
{
  std::string out;
  while (out.size() < size) out += part;
  return out;
}

void CopyOnly(benchmark::State& state)
{
  InPlace(state, kLine, [](char*) {});
}

void TitleCaseLine(benchmark::State& state)
{
  InPlace(state, kLine, TitleCase);
}

void TitleCaseUtf8Line(benchmark::State& state)
{
  InPlace(state, kLine, TitleCaseUtf8);
}

void TitleCaseUtf8Accents(benchmark::State& state)
{
  InPlace(state, "14 RUE DE LA RÉPUBLIQUE, SÃO JOSÉ, ÎLE-DE-BRÉHAT", TitleCaseUtf8);
}

void PunctuationLine(benchmark::State& state)
{
  InPlace(state, kLine, [](char* s) { RemovePunctuationForIndex(s, '\''); });
}

void BracketsOfALine(benchmark::State& state)
{
  InPlace(state, "12 (rear) OLD NORTHERN RD [lot 2] CASTLE HILL", RemoveInBrackets);
}

void BracketsNestedDeep(benchmark::State& state)
{
  InPlace(state, Repeated("(", 50000) + Repeated(")", 50000), RemoveInBrackets);
}

BENCHMARK(CopyOnly);
BENCHMARK(TitleCaseLine);
BENCHMARK(TitleCaseUtf8Line);
BENCHMARK(TitleCaseUtf8Accents);
BENCHMARK(PunctuationLine);
BENCHMARK(BracketsOfALine);
BENCHMARK(BracketsNestedDeep);

#ifdef QXPAF_BENCH_ICU
// The break iterator is made once, as a careful caller would.
void IcuTitleCaseLine(benchmark::State& state)
{
  UErrorCode status = U_ZERO_ERROR;
  UCaseMap* const map = ucasemap_open("", 0, &status);
  UBreakIterator* const words = ubrk_open(UBRK_WORD, "", nullptr, 0, &status);
  ucasemap_setBreakIterator(map, words, &status);  // which owns it from now on
  const auto length = static_cast<std::int32_t>(std::strlen(kLine));
  char out[200];
  for (auto _ : state) {
    status = U_ZERO_ERROR;
    benchmark::DoNotOptimize(ucasemap_utf8ToTitle(map, out, sizeof out, kLine, length, &status));
    benchmark::ClobberMemory();
  }
  if (U_FAILURE(status)) state.SkipWithError(u_errorName(status));
  ucasemap_close(map);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * length);
}

BENCHMARK(IcuTitleCaseLine);
#endif

// ---- Packing
// ------------------------------------------------------------------------------------------------------------

constexpr std::int64_t kMegabyte = 1 << 20;

std::string Storable(std::size_t size)
{
  return Repeated("UNIT 12 345-347 OLD NORTHERN RD CASTLE HILL ", size).substr(0, size);
}

using Packer = unsigned long (*)(char*, unsigned long, const char*, unsigned long);
using Unpacker = void (*)(char*, const char*, int);

// The functions are hidden from the compiler, so that it does not bend the plain loops to the constants of this file.
void Pack(benchmark::State& state, Packer pack)
{
  benchmark::DoNotOptimize(pack);
  const std::string text = Storable(static_cast<std::size_t>(state.range(0)));
  std::vector<char> packed(text.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(pack(packed.data(), packed.size(), text.data(), text.size()));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void Unpack(benchmark::State& state, Unpacker unpack)
{
  benchmark::DoNotOptimize(unpack);
  std::string text = Storable(static_cast<std::size_t>(state.range(0)));
  std::vector<char> packed(text.size());
  Compress6(packed.data(), packed.size(), text.data(), text.size());
  for (auto _ : state) {
    unpack(text.data(), packed.data(), static_cast<int>(text.size()));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
}

void Compress5Line(benchmark::State& state)
{
  const std::string text = Storable(45);
  char packed[45];
  for (auto _ : state) {
    benchmark::DoNotOptimize(Compress5(packed, sizeof packed, text.data(), text.size()));
    benchmark::ClobberMemory();
  }
}

BENCHMARK_CAPTURE(Pack, library, Compress6)->Arg(30)->Arg(45)->Arg(60)->Arg(kMegabyte);
BENCHMARK_CAPTURE(Pack, plain, reference::Compress6)->Arg(30)->Arg(45)->Arg(60)->Arg(kMegabyte);
BENCHMARK_CAPTURE(Unpack, library, Decompress6)->Arg(30)->Arg(45)->Arg(60)->Arg(kMegabyte);
BENCHMARK_CAPTURE(Unpack, plain, reference::Decompress6)->Arg(30)->Arg(45)->Arg(60)->Arg(kMegabyte);
BENCHMARK(Compress5Line);

// ---- Distance
// -----------------------------------------------------------------------------------------------------------

constexpr double kRadians = 0.017453292519943295;

// The bare formula, without the tests around it.
double Formula(double lat1, double lon1, double lat2, double lon2)
{
  return std::acos(std::sin(lat1 * kRadians) * std::sin(lat2 * kRadians) +
                   std::cos(lat1 * kRadians) * std::cos(lat2 * kRadians) *
                       std::cos(lon2 * kRadians - lon1 * kRadians)) *
         6371.0;
}

using Distance = double (*)(double, double, double, double);

void Measure(benchmark::State& state, Distance distance)
{
  benchmark::DoNotOptimize(distance);
  std::mt19937 random(1);
  std::uniform_real_distribution<double> degrees(-80, 80);
  std::vector<double> points(4096);
  for (double& p : points) p = degrees(random);
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(distance(points[i], points[i + 1], points[i + 2], points[i + 3]));
    i = (i + 4) % points.size();
  }
}

BENCHMARK_CAPTURE(Measure, library, static_cast<Distance>(LatLongDist));
BENCHMARK_CAPTURE(Measure, formula, Formula);

}  // namespace

BENCHMARK_MAIN();
