// Compiled plug-ins bind to these functions by their mangled names, so every signature is fixed to the last type. Each
// line compiles only when an overload of exactly that type exists.
#include <string>

#include "qxpaf/text/unicode.h"

namespace {

template <class Signature>
constexpr bool Exactly(Signature*)
{
  return true;
}

using S = std::string;
using W = std::wstring;

static_assert(Exactly<wchar_t(wchar_t)>(UnicodeToLower) && Exactly<W(W)>(UnicodeToLower));
static_assert(Exactly<wchar_t(wchar_t)>(UnicodeToUpper) && Exactly<W(W)>(UnicodeToUpper));
static_assert(Exactly<void(wchar_t*)>(UnicodeUpperCaseMe) && Exactly<S(const S&)>(Utf8ToUpper));
static_assert(Exactly<bool(wchar_t)>(UnicodeIsAlpha) && Exactly<bool(wchar_t)>(UnicodeIsUpper));
static_assert(Exactly<bool(wchar_t)>(UnicodeIsLower) && Exactly<bool(wchar_t)>(UnicodeIsSpace));
static_assert(Exactly<bool(wchar_t)>(UnicodeIsXdigit) && Exactly<bool(wchar_t)>(UnicodeIsDigit));
static_assert(Exactly<bool(wchar_t)>(UnicodeIsAlnum) && Exactly<bool(wchar_t)>(UnicodeIsPunct));
static_assert(Exactly<wchar_t(wchar_t)>(UnicodeRemoveAccents) && Exactly<W(W)>(UnicodeRemoveAccents));
static_assert(Exactly<S(S)>(UnicodeRemoveAccents) && Exactly<void(wchar_t*)>(UnicodeRemoveAccentsMe));
static_assert(Exactly<W(W)>(UnicodeCaseFold) && Exactly<W(const W&)>(UnicodeFold));
static_assert(Exactly<S(S)>(RemoveAccents1252) && Exactly<S(S)>(ToUpper1252) && Exactly<S(S)>(ToLower1252));
static_assert(Exactly<void(char*)>(Utf8RemoveAccentsMe) && Exactly<void(S&)>(Utf8RemoveAccentsMe));

}  // namespace
