// Compiled plug-ins bind to these functions by their mangled names, so every signature is fixed to the last type. Each
// line compiles only when an overload of exactly that type exists.
#include <cstdint>
#include <string>
#include <type_traits>

#include "qxpaf/text/encoding.h"

namespace {

template <class Signature>
constexpr bool Exactly(Signature*)
{
  return true;
}

using S = std::string;
using W = std::wstring;
using Converter = bool (*)(char&, wchar_t);

static_assert(sizeof(wchar_t) == 4 && std::is_signed_v<wchar_t>);
static_assert(std::is_same_v<std::underlying_type_t<CharsetEnum>, int> && std::is_convertible_v<CharsetEnum, int>);
static_assert(CharsetUtf8 == 0 && CharsetWindows1252 == 1 && CharsetLatin1 == 2);

static_assert(Exactly<bool(char&, wchar_t)>(CharWideToAnsi));
static_assert(Exactly<bool(char&, wchar_t)>(CharToAnsi) && Exactly<bool(char&, char)>(CharToAnsi));
static_assert(Exactly<wchar_t(unsigned char)>(CharAnsiToWide));
static_assert(Exactly<void(char&, char)>(AnsiToChar) && Exactly<void(wchar_t&, char)>(AnsiToChar));
static_assert(Exactly<int(char*, wchar_t)>(WideCharToUtf8));

static_assert(Exactly<bool(wchar_t&, const char*&)>(NextUtf8Char) && Exactly<bool(char&, const char*&)>(NextUtf8Char));
static_assert(Exactly<bool(W&, const char*&)>(NextUtf8Char) && Exactly<unsigned int(const char*&)>(NextUtf8Char));
static_assert(Exactly<bool(char)>(Utf8IsSingle) && Exactly<bool(unsigned char)>(Utf8IsLead));
static_assert(Exactly<bool(char)>(Utf8IsContinue) && Exactly<unsigned long(const char*)>(Utf8Strlen));
static_assert(Exactly<bool(const char*&)>(Utf8Inc) && Exactly<bool(const char*, int&)>(Utf8Inc));

static_assert(Exactly<bool(W&, const char*)>(ReadUtf8String) && Exactly<bool(S&, const char*)>(ReadUtf8String));
static_assert(Exactly<bool(W&, const char*, unsigned long)>(ReadUtf8String));
static_assert(Exactly<bool(S&, const char*, unsigned long)>(ReadUtf8String));
static_assert(Exactly<void(W&, const char*)>(ReadUtf8StringTolerant));
static_assert(Exactly<void(S&, const char*)>(ReadUtf8StringTolerant));
static_assert(Exactly<W(const S&)>(Utf8ToWide) && Exactly<bool(W&, const char*, bool)>(Utf8ToUtf16));
static_assert(Exactly<S(const S&)>(FromUtf8IfWide<S>) && Exactly<W(const S&)>(FromUtf8IfWide<W>));

static_assert(Exactly<S(const wchar_t*)>(WideToUtf8) && Exactly<S(const W&)>(WideToUtf8));
static_assert(Exactly<S(const wchar_t*)>(StringToUtf8) && Exactly<S(const W&)>(StringToUtf8));
static_assert(Exactly<S(const char*)>(StringToUtf8) && Exactly<S(const S&)>(StringToUtf8));
static_assert(Exactly<S(S)>(Windows1252ToUtf8) && Exactly<bool(char*, unsigned long)>(Windows1252ToUtf8));
static_assert(Exactly<S(const wchar_t*)>(ToUtf8IfWide) && Exactly<S(const W&)>(ToUtf8IfWide));
static_assert(Exactly<S(const char*)>(ToUtf8IfWide) && Exactly<S(const S&)>(ToUtf8IfWide));
static_assert(Exactly<void(W&, const W&)>(ToUtf8IfDestNotWide) && Exactly<void(S&, const W&)>(ToUtf8IfDestNotWide));

static_assert(Exactly<S(const wchar_t*, char)>(WideToAnsi) && Exactly<S(const W&, char)>(WideToAnsi));
static_assert(Exactly<bool(const wchar_t*)>(CanWideToAnsi));
static_assert(Exactly<bool(char*, const wchar_t*)>(WideToAnsi) && Exactly<bool(S&, const W&)>(WideToAnsi));
static_assert(Exactly<S(const wchar_t*, char)>(StringToAnsi) && Exactly<S(const W&, char)>(StringToAnsi));
static_assert(Exactly<S(const char*, char)>(StringToAnsi) && Exactly<S(const S&, char)>(StringToAnsi));
static_assert(Exactly<bool(char*, const wchar_t*)>(StringToAnsi) && Exactly<bool(char*, const char*)>(StringToAnsi));
static_assert(Exactly<bool(S&, const W&)>(StringToAnsi) && Exactly<bool(S&, const S&)>(StringToAnsi));

static_assert(Exactly<W(const char*, unsigned long)>(AnsiToWide) && Exactly<W(const char*)>(AnsiToWide));
static_assert(Exactly<W(const S&)>(AnsiToWide));
static_assert(Exactly<W(const W&)>(StringToWide) && Exactly<W(const S&)>(StringToWide));
static_assert(Exactly<void(W&, const char*, unsigned long)>(AnsiToString));
static_assert(Exactly<void(S&, const char*, unsigned long)>(AnsiToString));
static_assert(Exactly<void(W&, const char*)>(AnsiToString) && Exactly<void(S&, const char*)>(AnsiToString));
static_assert(Exactly<void(wchar_t*, const char*)>(AnsiToStringC) && Exactly<void(char*, const char*)>(AnsiToStringC));

static_assert(Exactly<S(const wchar_t*)>(UnicodeToUCS2LE) && Exactly<S(const char*)>(UnicodeToUCS2LE));
static_assert(Exactly<S(const wchar_t*)>(UnicodeToUCS2BE) && Exactly<S(const char*)>(UnicodeToUCS2BE));
static_assert(Exactly<void(W&, const unsigned int*)>(Utf32ToUtf16) && Exactly<void(W&, unsigned int)>(Utf32ToUtf16));
static_assert(Exactly<void(W&, unsigned int)>(Utf32ToWide));
static_assert(Exactly<S(const W&, CharsetEnum, char)>(CharsetConvert));
static_assert(Exactly<S(const W&, Converter, char)>(ConvertFromWide));
static_assert(Exactly<bool(const char*, unsigned long, int)>(IsBufferUtf8));
static_assert(Exactly<bool(const char*, int)>(IsStringUtf8) && Exactly<bool(const S&, int)>(IsStringUtf8));

static_assert(Exactly<S(int)>(QX_to_string) && Exactly<W(int)>(QX_to_wstring));
static_assert(Exactly<S(unsigned int)>(QX_to_string) && Exactly<W(unsigned int)>(QX_to_wstring));
static_assert(Exactly<S(long)>(QX_to_string) && Exactly<W(long)>(QX_to_wstring));
static_assert(Exactly<S(unsigned long)>(QX_to_string) && Exactly<W(unsigned long)>(QX_to_wstring));
static_assert(Exactly<S(long long)>(QX_to_string) && Exactly<W(long long)>(QX_to_wstring));
static_assert(Exactly<S(unsigned long long)>(QX_to_string) && Exactly<W(unsigned long long)>(QX_to_wstring));
static_assert(Exactly<S(float)>(QX_to_string) && Exactly<W(float)>(QX_to_wstring));
static_assert(Exactly<S(double)>(QX_to_string) && Exactly<W(double)>(QX_to_wstring));
static_assert(Exactly<S(long double)>(QX_to_string) && Exactly<W(long double)>(QX_to_wstring));
static_assert(Exactly<bool(char*, const char*, unsigned long)>(QX_strcpy));

}  // namespace
