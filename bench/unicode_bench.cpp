// Case, classes and accents on lines of 30 to 60 bytes and on a megabyte of them, beside the same loop over ICU's
// function for one character and, for accents in UTF-8, utf8proc's decompose-and-strip. Functions by value return a new
// string, so that allocating and copying one is part of their figures; "copy" is that part alone, and "assign" the copy
// that functions in place start from. Compare times of one run only; on a busy machine, the least of many repetitions:
//
//     bench_unicode --benchmark_repetitions=30 --benchmark_min_time=0.005 --benchmark_enable_random_interleaving=true
//                   --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "qxpaf/text/encoding.h"
#include "qxpaf/text/unicode.h"

#ifdef QXPAF_BENCH_ICU
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#endif
#ifdef QXPAF_BENCH_UTF8PROC
#include <utf8proc.h>

#include <cstdlib>
#endif

namespace {

struct Sample
{
  const char* name;
  std::string utf8;
};

std::string Repeat(const std::string& line)
{
  std::string out;
  while (out.size() + line.size() <= 1 << 20) out += line + " ";
  return out;
}

const std::array<Sample, 9>& Samples()
{
  static const std::array<Sample, 9> samples = [] {
    const std::string ascii = "Unit 12 345-347 Old Northern Rd Castle Hill 2";
    const std::string latin = "12 Rue de l'Égalité, Île-de-Bréhat; São José";
    const std::string cyrillic = "Невский проспект 28, Россия";
    const std::string greek = "Λεωφόρος Κηφισίας 124, Αθήνα";
    const std::string mixed = "Straße 7 — Hà Nội, Ερμού 3, Řež";
    const std::string vietnamese = "Đại lộ Nguyễn Huệ, Bến Nghé, Quận 1";
    return std::array<Sample, 9>{{{"ascii45", ascii},
                                  {"latin50", latin},
                                  {"cyrillic50", cyrillic},
                                  {"greek50", greek},
                                  {"mixed45", mixed},
                                  {"vietnamese50", vietnamese},
                                  {"ascii1MB", Repeat(ascii)},
                                  {"latin1MB", Repeat(latin)},
                                  {"sharpS1MB", Repeat("ß")}}};
  }();
  return samples;
}

std::wstring CopyWide(std::wstring s)
{
  return s;
}

template <class Map>
auto EachOf(Map map)
{
  return [map](std::wstring s) {
    for (wchar_t& c : s) c = map(c);
    return s;
  };
}

#ifdef QXPAF_BENCH_ICU
wchar_t IcuUpper(wchar_t c)
{
  return static_cast<wchar_t>(u_toupper(c));
}

wchar_t IcuLower(wchar_t c)
{
  return static_cast<wchar_t>(u_tolower(c));
}

wchar_t IcuFold(wchar_t c)
{
  return static_cast<wchar_t>(u_foldCase(c, U_FOLD_CASE_DEFAULT));
}

// ICU removes no accents; the first unit of the decomposition is what comes nearest.
wchar_t IcuBase(wchar_t c)
{
  static const UNormalizer2* const normalizer = [] {
    UErrorCode error = U_ZERO_ERROR;
    return unorm2_getNFDInstance(&error);
  }();
  UErrorCode error = U_ZERO_ERROR;
  UChar units[32];
  return unorm2_getDecomposition(normalizer, c, units, 32, &error) > 0 ? static_cast<wchar_t>(units[0]) : c;
}
#endif

// In-place functions work on text that is there: it is copied into storage that is reused, which "assign" measures
// alone.
template <class Change>
auto InPlace(Change change)
{
  return [change](const std::string& text) {
    static std::string s;
    s.assign(text);
    change(s);
    return s.data();
  };
}

#ifdef QXPAF_BENCH_UTF8PROC
bool Utf8procStrip(const std::string& s)
{
  utf8proc_uint8_t* out = nullptr;
  const auto options = static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_STRIPMARK);
  const auto* in = reinterpret_cast<const utf8proc_uint8_t*>(s.data());
  const utf8proc_ssize_t n = utf8proc_map(in, static_cast<utf8proc_ssize_t>(s.size()), &out, options);
  std::free(out);
  return n >= 0;
}
#endif

double Least(const std::vector<double>& times)
{
  return *std::min_element(times.begin(), times.end());
}

template <class Text, class Convert>
void Register(const std::string& name, Convert convert, Text (*sampleOf)(const std::string&))
{
  for (const Sample& sample : Samples()) {
    const Text text = sampleOf(sample.utf8);
    const auto body = [text, convert](benchmark::State& state) {
      for (auto _ : state) benchmark::DoNotOptimize(convert(text));
      state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * sizeof text[0]));
    };
    benchmark::RegisterBenchmark((name + "/" + sample.name).c_str(), body)->ComputeStatistics("min", Least);
  }
}

template <class Convert>
void OnWide(const char* name, Convert convert)
{
  Register<std::wstring>(name, convert, [](const std::string& utf8) { return Utf8ToWide(utf8); });
}

template <class Convert>
void OnUtf8(const char* name, Convert convert)
{
  Register<std::string>(name, convert, [](const std::string& utf8) { return utf8; });
}

template <class Convert>
void OnAnsi(const char* name, Convert convert)
{
  Register<std::string>(name, convert, [](const std::string& utf8) { return WideToAnsi(Utf8ToWide(utf8), '?'); });
}

void RegisterWide()
{
  OnWide("copy", CopyWide);
  OnWide("UnicodeToUpper", [](const std::wstring& s) { return UnicodeToUpper(s); });
  OnWide("UnicodeToLower", [](const std::wstring& s) { return UnicodeToLower(s); });
  OnWide("UnicodeCaseFold", [](const std::wstring& s) { return UnicodeCaseFold(s); });
  OnWide("UnicodeRemoveAccents", [](const std::wstring& s) { return UnicodeRemoveAccents(s); });
  OnWide("UnicodeIsAlnum", [](const std::wstring& s) {
    int count = 0;
    for (const wchar_t c : s) count += UnicodeIsAlnum(c);
    return count;
  });
#ifdef QXPAF_BENCH_ICU
  OnWide("UnicodeToUpper.icu", EachOf(IcuUpper));
  OnWide("UnicodeToLower.icu", EachOf(IcuLower));
  OnWide("UnicodeCaseFold.icu", EachOf(IcuFold));
  OnWide("UnicodeRemoveAccents.icu", EachOf(IcuBase));
  OnWide("UnicodeIsAlnum.icu", [](const std::wstring& s) {
    int count = 0;
    for (const wchar_t c : s) count += u_isUAlphabetic(c) || u_isdigit(c);
    return count;
  });
#endif
}

void RegisterNarrow()
{
  OnUtf8("assign", InPlace([](std::string&) {}));
  OnUtf8("Utf8RemoveAccentsMe", InPlace([](std::string& s) { Utf8RemoveAccentsMe(s); }));
  OnUtf8("Utf8RemoveAccentsMe.buffer", InPlace([](std::string& s) { Utf8RemoveAccentsMe(s.data()); }));
#ifdef QXPAF_BENCH_UTF8PROC
  OnUtf8("Utf8RemoveAccentsMe.utf8proc", Utf8procStrip);
#endif
  OnUtf8("Utf8ToUpper", [](const std::string& s) { return Utf8ToUpper(s); });
  OnAnsi("ToUpper1252", [](const std::string& s) { return ToUpper1252(s); });
  OnAnsi("RemoveAccents1252", [](const std::string& s) { return RemoveAccents1252(s); });
}

}  // namespace

int main(int argc, char** argv)
{
  RegisterWide();
  RegisterNarrow();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
