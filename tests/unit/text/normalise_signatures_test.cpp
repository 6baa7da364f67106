// Compiled plug-ins bind to these functions by their mangled names, so every signature is fixed to the last type. Each
// line compiles only when an overload of exactly that type exists.
#include <cstdio>
#include <ctime>

#include "qxpaf/text/geometry.h"
#include "qxpaf/text/normalise.h"
#include "qxpaf/text/packing.h"

namespace {

template <class Signature>
constexpr bool Exactly(Signature*)
{
  return true;
}

using Size = unsigned long;
using Text = const char*;

static_assert(Exactly<char*(char*)>(strupr_) && Exactly<char*(char*)>(strlwr_) && Exactly<char*(char*)>(strrev_));
static_assert(Exactly<wchar_t*(wchar_t*)>(wcsupr_));
static_assert(Exactly<char*(int, char*, int)>(itoa_) && Exactly<int(int)>(iscsym_));
static_assert(Exactly<int(const wchar_t*, const wchar_t*)>(wcsicmp_));
static_assert(Exactly<int(const wchar_t*, const wchar_t*, Size)>(wcsnicmp_));
static_assert(Exactly<void(char*)>(RTrim_) && Exactly<void(char*, char)>(Trim_) && Exactly<void(char*, Text)>(Trim_));
static_assert(Exactly<char**(Text, char)>(Split_));
static_assert(Exactly<void(char**)>(FreeArray_) && Exactly<void(wchar_t**)>(FreeArray_));
static_assert(Exactly<void(char*&)>(delete_array_and_null<char>));
static_assert(Exactly<void(char**&)>(delete_array_and_null<char*>));
static_assert(Exactly<char*(char*, char)>(strcatc) && Exactly<char*(char*, int, FILE*)>(fgets_));
static_assert(Exactly<bool(const time_t*, tm&)>(Localtime) && Exactly<bool(const time_t*, char*)>(Ctime));
static_assert(Exactly<void(char*, Size, Text, Text, Text, Text)>(ConcatStrings));
static_assert(Exactly<void(char*, Size, Text, Text, long)>(ConcatStrings));
static_assert(Exactly<void(char*, Size, Text, long, Text)>(ConcatStrings));
static_assert(Exactly<char*(char*)>(TitleCase) && Exactly<char*(char*)>(TitleCaseUtf8));
static_assert(Exactly<void(char*)>(RemoveMultipleSpaces) && Exactly<void(char*)>(RemoveInBrackets));
static_assert(Exactly<void(char*, char)>(RemovePunctuationForIndex) && Exactly<char*(char*, Text)>(StripChars));
static_assert(Exactly<void(char*, char, char)>(Replace) && Exactly<void(char*, Text, char)>(Replace));
static_assert(Exactly<int(Text)>(ReadRomanNumeral) && Exactly<bool(Text, int&, int&, int&)>(ReadDateDMY));

static_assert(Exactly<unsigned char(char)>(CharToSixBits) && Exactly<void(char*, Text, int)>(Decompress6));
static_assert(Exactly<Size(char*, Size, Text, Size)>(Compress6) && Exactly<long(char*, Size, Text, Size)>(Compress5));

static_assert(Exactly<double(double, double, double, double)>(LatLongDist));
static_assert(Exactly<void(char*, Text, Text, int, Size)>(LatLongDist));
static_assert(Exactly<bool(double, double, double, double, double, double, double, double, double, double, double&,
                           double&, bool*)>(IntersectionOfLines));

}  // namespace
