// Case, classes and accents beside the plain transcriptions of the tests, the
// same loop over ICU's function for one character and, for accents in UTF-8,
// utf8proc's decompose-and-strip. Functions by value return a new string, so
// that making one is part of their figures; functions in place work on a fresh
// copy in storage that is reused.
#include <algorithm>
#include <string>

#include "measure.h"
#include "qxpaf/text/encoding.h"
#include "qxpaf/text/unicode.h"
#include "reference/unicode_reference.h"

#ifdef QXPAF_BENCH_ICU
#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#endif
#ifdef QXPAF_BENCH_UTF8PROC
#include <utf8proc.h>

#include <cstdlib>
#endif

namespace {

using bench::Inputs;
using bench::Measure;

Inputs<std::wstring> Wide(const Inputs<std::string>& inputs)
{
  return bench::Converted(inputs, [](const std::string& utf8) { return Utf8ToWide(utf8); });
}

const Inputs<std::wstring>& WideTexts()
{
  static const auto inputs = Wide(bench::AddressTexts());
  return inputs;
}

// Elements that all expand: upper case and folding have to make room for each.
const Inputs<std::wstring>& SharpS()
{
  static const auto inputs = Wide(bench::Doubling("all sharp s", "\u00DF"));
  return inputs;
}

bool IsLine(const std::string& name)
{
  return name.ends_with(" line");
}

template <class Map>
auto EachOf(Map map)
{
  return [map](std::wstring s) {
    for (wchar_t& c : s) c = map(c);
    return s;
  };
}

template <class Test>
auto CountOf(Test test)
{
  return [test](const std::wstring& s) { return std::count_if(s.begin(), s.end(), test); };
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

// ICU removes no accents; the first unit of the decomposition is what comes
// nearest.
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

bool IcuIsAlnum(wchar_t c)
{
  return u_isUAlphabetic(c) || u_isdigit(c);
}

void RegisterIcu()
{
  Measure("UnicodeToUpper", WideTexts(), "icu", EachOf(IcuUpper));
  Measure("UnicodeToLower", WideTexts(), "icu", EachOf(IcuLower));
  Measure("UnicodeCaseFold", WideTexts(), "icu", EachOf(IcuFold));
  Measure("UnicodeRemoveAccents", WideTexts(), "icu", EachOf(IcuBase));
  Measure("UnicodeIsAlnum", WideTexts(), "icu", CountOf(IcuIsAlnum));
}
#else
void RegisterIcu() {}
#endif

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

void RegisterUtf8proc()
{
  Measure("Utf8RemoveAccentsMe", bench::AddressTexts(), "utf8proc", Utf8procStrip);
  Measure("Utf8RemoveAccentsMe(char*)", bench::AddressTexts(), "utf8proc", Utf8procStrip);
}
#else
void RegisterUtf8proc() {}
#endif

// Functions in place get a fresh copy in storage that is reused.
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

void RegisterWide()
{
  const auto upper = [](const std::wstring& s) { return UnicodeToUpper(s); };
  const auto fold = [](const std::wstring& s) { return UnicodeCaseFold(s); };
  Measure("UnicodeToUpper", WideTexts(), upper);
  Measure("UnicodeToUpper", SharpS(), upper);
  Measure("UnicodeToLower", WideTexts(), [](const std::wstring& s) { return UnicodeToLower(s); });
  Measure("UnicodeCaseFold", WideTexts(), fold);
  Measure("UnicodeCaseFold", SharpS(), fold);
  Measure("UnicodeRemoveAccents", WideTexts(), [](const std::wstring& s) { return UnicodeRemoveAccents(s); });
  Measure("UnicodeIsAlnum", WideTexts(), CountOf(UnicodeIsAlnum));
}

// The transcriptions move the rest of the text at every change and are left out
// where that takes minutes.
void RegisterPlain()
{
  static const auto lines = bench::Converted(
      bench::AddressTexts(), [](const std::string& s) { return s; }, IsLine);
  static const auto wideLines = Wide(lines);
  Measure("UnicodeToUpper", wideLines, "plain", reference::ToUpper);
  Measure("UnicodeCaseFold", wideLines, "plain", reference::CaseFold);
  Measure("UnicodeRemoveAccents", wideLines, "plain",
          [](const std::wstring& s) { return reference::MapEach(reference::Accents(), s); });
  Measure("Utf8RemoveAccentsMe", lines, "plain", reference::Utf8RemoveAccents);
}

void RegisterNarrow()
{
  static const auto accents = bench::Doubling("all accents", "\u00E9\u1EC7");
  const auto remove = InPlace([](std::string& s) { Utf8RemoveAccentsMe(s); });
  const auto removeInBuffer = InPlace([](std::string& s) { Utf8RemoveAccentsMe(s.data()); });
  for (const auto* inputs : {&bench::AddressTexts(), &accents}) {
    Measure("Utf8RemoveAccentsMe", *inputs, remove);
    Measure("Utf8RemoveAccentsMe(char*)", *inputs, removeInBuffer);
  }
  Measure("Utf8ToUpper", bench::AddressTexts(), [](const std::string& s) { return Utf8ToUpper(s); });
}

}  // namespace

int main(int argc, char** argv)
{
  RegisterWide();
  RegisterNarrow();
  RegisterPlain();
  RegisterIcu();
  RegisterUtf8proc();
  return bench::Run(argc, argv);
}
