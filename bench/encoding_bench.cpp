// Encoding conversions on an address line, a megabyte of ASCII and a megabyte of mixed scripts, beside the plain
// byte-by-byte loop, the reference transcription, iconv and (where it was found) ICU. Rates are of input bytes.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "qxpaf/text/encoding.h"
#include "reference/encoding_reference.h"

#ifdef QXPAF_BENCH_ICU
#include <unicode/ustring.h>
#endif

namespace {

enum Sample
{
  kAddressLine,
  kLongAscii,
  kMixedScripts,
  kLatinAccents
};

const std::string& Utf8Sample(Sample sample)
{
  const auto repeat = [](const std::string& text) {
    std::string out;
    while (out.size() + text.size() <= 1 << 20) out += text;
    return out;
  };
  static const std::string line = "UNIT 12 345-347 OLD NORTHERN RD CASTLE HILL 2";
  static const std::string samples[] = {
      line, repeat(line + " "),
      repeat("12 Straße, Île-de-Bréhat; Οδός Ερμού 7, Αθήνα; Невский проспект 28; 東京都千代田区丸の内一丁目; "),
      repeat("Rue de la République 14, 1º, São José dos Campos; Åkergatan 3, Malmö; ")};
  return samples[sample];
}

const std::wstring& WideSample(Sample sample)
{
  static const std::wstring samples[] = {Utf8ToWide(Utf8Sample(kAddressLine)), Utf8ToWide(Utf8Sample(kLongAscii)),
                                         Utf8ToWide(Utf8Sample(kMixedScripts)), Utf8ToWide(Utf8Sample(kLatinAccents))};
  return samples[sample];
}

// Characters without a byte become "?".
const std::string& AnsiSample(Sample sample)
{
  static const std::string samples[] = {
      WideToAnsi(WideSample(kAddressLine), '?'), WideToAnsi(WideSample(kLongAscii), '?'),
      WideToAnsi(WideSample(kMixedScripts), '?'), WideToAnsi(WideSample(kLatinAccents), '?')};
  return samples[sample];
}

template <class Text, class Convert>
void Run(benchmark::State& state, const Text& text, Convert convert)
{
  for (auto _ : state) benchmark::DoNotOptimize(convert(text));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size() * sizeof(text[0])));
}

// The body of a benchmark of `convert` on the samples of one encoding.
template <class Convert>
auto OnUtf8(Convert convert)
{
  return [convert](benchmark::State& state, Sample sample) { Run(state, Utf8Sample(sample), convert); };
}

template <class Convert>
auto OnWide(Convert convert)
{
  return [convert](benchmark::State& state, Sample sample) { Run(state, WideSample(sample), convert); };
}

template <class Convert>
auto OnAnsi(Convert convert)
{
  return [convert](benchmark::State& state, Sample sample) { Run(state, AnsiSample(sample), convert); };
}

// The yardstick: what a caller would write for text known to be ASCII.
std::wstring WidenLoop(const std::string& s)
{
  std::wstring out(s.size(), L'\0');
  for (std::size_t i = 0; i < s.size(); ++i) out[i] = static_cast<unsigned char>(s[i]);
  return out;
}

std::string NarrowLoop(const std::wstring& s)
{
  std::string out(s.size(), '\0');
  for (std::size_t i = 0; i < s.size(); ++i) out[i] = static_cast<char>(s[i]);
  return out;
}

// The same without setting the result to zero first.
std::wstring WidenRange(const std::string& s)
{
  const auto* bytes = reinterpret_cast<const unsigned char*>(s.data());
  return {bytes, bytes + s.size()};
}

std::string NarrowRange(const std::wstring& s)
{
  return {s.begin(), s.end()};
}

class Iconv
{
 public:
  Iconv(const char* to, const char* from) : handle_(iconv_open(to, from))
  {
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv_open");
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() { iconv_close(handle_); }

  template <class Out, class Text>
  Out Convert(const Text& text, std::size_t capacity)
  {
    Out out(capacity, 0);
    char* from = const_cast<char*>(reinterpret_cast<const char*>(text.data()));
    std::size_t left = text.size() * sizeof(text[0]);
    char* to = reinterpret_cast<char*>(out.data());
    std::size_t room = capacity * sizeof(out[0]);
    if (iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1)) throw std::runtime_error("iconv");
    out.resize(capacity - room / sizeof(out[0]));
    return out;
  }

 private:
  iconv_t handle_;
};

std::wstring IconvUtf8ToWide(const std::string& s)
{
  static Iconv converter("WCHAR_T", "UTF-8");
  return converter.Convert<std::wstring>(s, s.size());
}

std::string IconvWideToUtf8(const std::wstring& s)
{
  static Iconv converter("UTF-8", "WCHAR_T");
  return converter.Convert<std::string>(s, 4 * s.size());
}

std::string IconvAnsiToUtf8(const std::string& s)
{
  static Iconv converter("UTF-8", "WINDOWS-1252");
  return converter.Convert<std::string>(s, 3 * s.size());
}

std::wstring IconvAnsiToWide(const std::string& s)
{
  static Iconv converter("WCHAR_T", "WINDOWS-1252");
  return converter.Convert<std::wstring>(s, s.size());
}

#ifdef QXPAF_BENCH_ICU
std::u16string IcuUtf8ToUtf16(const std::string& s)
{
  std::u16string out(s.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, s.data(),
                static_cast<std::int32_t>(s.size()), &error);
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::wstring IcuUtf8ToWide(const std::string& s)
{
  const std::u16string units = IcuUtf8ToUtf16(s);
  std::wstring out(units.size(), L'\0');
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strToUTF32(reinterpret_cast<UChar32*>(out.data()), static_cast<std::int32_t>(out.size()), &length, units.data(),
               static_cast<std::int32_t>(units.size()), &error);
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::string IcuWideToUtf8(const std::wstring& s)
{
  std::u16string units(2 * s.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF32(units.data(), static_cast<std::int32_t>(units.size()), &length,
                 reinterpret_cast<const UChar32*>(s.data()), static_cast<std::int32_t>(s.size()), &error);
  std::string out(3 * static_cast<std::size_t>(length), '\0');
  u_strToUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, units.data(), length, &error);
  out.resize(static_cast<std::size_t>(length));
  return out;
}
#endif

template <class Body>
void Register(const std::string& name, Body body)
{
  static const char* const kSampleNames[] = {"line45", "ascii1MB", "mixed1MB", "latin1MB"};
  for (const Sample sample : {kAddressLine, kLongAscii, kMixedScripts, kLatinAccents})
    benchmark::RegisterBenchmark((name + "/" + kSampleNames[sample]).c_str(),
                                 [body, sample](benchmark::State& state) { body(state, sample); });
}

void RegisterUtf8ToWide()
{
  Register("Utf8ToWide", OnUtf8([](const std::string& s) { return Utf8ToWide(s); }));
  Register("Utf8ToWide.loop", OnUtf8(WidenLoop));
  Register("Utf8ToWide.range", OnUtf8(WidenRange));
  Register("Utf8ToWide.twin",
           OnUtf8([](const std::string& s) { return reference::ReadWide(s, s.size(), true).second; }));
  Register("Utf8ToWide.iconv", OnUtf8(IconvUtf8ToWide));
  Register("ReadUtf8String", OnUtf8([](const std::string& s) {
             std::wstring out;
             ReadUtf8String(out, s.c_str());
             return out;
           }));
#ifdef QXPAF_BENCH_ICU
  Register("Utf8ToWide.icu", OnUtf8(IcuUtf8ToWide));
  Register("Utf8ToUtf16.icu", OnUtf8(IcuUtf8ToUtf16));
#endif
}

void RegisterWideToNarrow()
{
  Register("WideToUtf8", OnWide([](const std::wstring& s) { return WideToUtf8(s); }));
  Register("WideToUtf8.loop", OnWide(NarrowLoop));
  Register("WideToUtf8.range", OnWide(NarrowRange));
  Register("WideToUtf8.twin", OnWide(reference::WideToUtf8));
  Register("WideToUtf8.iconv", OnWide(IconvWideToUtf8));
#ifdef QXPAF_BENCH_ICU
  Register("WideToUtf8.icu", OnWide(IcuWideToUtf8));
#endif
  Register("WideToAnsi", OnWide([](const std::wstring& s) { return WideToAnsi(s, '?'); }));
  Register("WideToAnsi.twin", OnWide([](const std::wstring& s) { return reference::WideToAnsi(s, '?'); }));
}

void RegisterAnsi()
{
  Register("Windows1252ToUtf8", OnAnsi([](const std::string& s) { return Windows1252ToUtf8(s); }));
  Register("Windows1252ToUtf8.twin", OnAnsi(reference::Windows1252ToUtf8));
  Register("Windows1252ToUtf8.iconv", OnAnsi(IconvAnsiToUtf8));
  Register("AnsiToWide", OnAnsi([](const std::string& s) { return AnsiToWide(s); }));
  Register("AnsiToWide.twin", OnAnsi(reference::AnsiToWide));
  Register("AnsiToWide.iconv", OnAnsi(IconvAnsiToWide));
}

void RegisterScans()
{
  Register("Utf8Strlen", OnUtf8([](const std::string& s) { return Utf8Strlen(s.c_str()); }));
  Register("Utf8Strlen.twin", OnUtf8(reference::Utf8Strlen));
  Register("IsStringUtf8", OnUtf8([](const std::string& s) { return IsStringUtf8(s, 10); }));
  Register("IsStringUtf8.twin", OnUtf8([](const std::string& s) { return reference::IsStringUtf8(s, 10); }));
}

}  // namespace

int main(int argc, char** argv)
{
  RegisterUtf8ToWide();
  RegisterWideToNarrow();
  RegisterAnsi();
  RegisterScans();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
