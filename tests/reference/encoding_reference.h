// A second, slow transcription of the encoding rules, one character at a time, to compare the library with. It shares
// no code with the library; where both agree on random text, either both are right or both misread the same rule.
#ifndef QXPAF_TESTS_REFERENCE_ENCODING_REFERENCE_H
#define QXPAF_TESTS_REFERENCE_ENCODING_REFERENCE_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace reference {

struct AnsiRow
{
  int byte;
  long codePoint;
};

inline constexpr AnsiRow kAnsiRows[27] = {
    {0x80, 0x20AC}, {0x82, 0x201A}, {0x83, 0x0192}, {0x84, 0x201E}, {0x85, 0x2026}, {0x86, 0x2020}, {0x87, 0x2021},
    {0x88, 0x02C6}, {0x89, 0x2030}, {0x8A, 0x0160}, {0x8B, 0x2039}, {0x8C, 0x0152}, {0x8E, 0x017D}, {0x91, 0x2018},
    {0x92, 0x2019}, {0x93, 0x201C}, {0x94, 0x201D}, {0x95, 0x2022}, {0x96, 0x2013}, {0x97, 0x2014}, {0x98, 0x02DC},
    {0x99, 0x2122}, {0x9A, 0x0161}, {0x9B, 0x203A}, {0x9C, 0x0153}, {0x9E, 0x017E}, {0x9F, 0x0178},
};

inline long AnsiToWideChar(int byte)
{
  for (const AnsiRow& row : kAnsiRows)
    if (row.byte == byte) return row.codePoint;
  return byte;
}

// The byte 0-255, or -1.
inline int WideToAnsiChar(long character)
{
  if (character <= 0x7F) return static_cast<int>(character & 0xFF);
  if (character >= 0xA0 && character <= 0xFF) return static_cast<int>(character);
  for (const AnsiRow& row : kAnsiRows)
    if (row.codePoint == character) return row.byte;
  return -1;
}

inline int Byte(const std::string& s, std::size_t i)
{
  return i < s.size() ? static_cast<unsigned char>(s[i]) : 0;
}

// s as far as a C function sees it.
template <class String>
String UpToZero(const String& s)
{
  return String(s.c_str());
}

struct Decoded
{
  bool valid;
  std::size_t moved;  // 0, or the length of the sequence
  long codePoint;
};

inline Decoded Decode(const std::string& s, std::size_t at)
{
  const int b0 = Byte(s, at);
  const int b1 = Byte(s, at + 1);
  const int b2 = Byte(s, at + 2);
  const int b3 = Byte(s, at + 3);
  const bool c1 = b1 >= 0x80 && b1 <= 0xBF;
  const bool c2 = c1 && b2 >= 0x80 && b2 <= 0xBF;
  const bool c3 = c2 && b3 >= 0x80 && b3 <= 0xBF;
  if (b0 <= 0x7F) return {true, 1, b0};
  if (b0 >= 0xC0 && b0 <= 0xDF && c1) return {true, 2, (b0 - 0xC0) * 64L + (b1 - 0x80)};
  if (b0 >= 0xE0 && b0 <= 0xEF && c2) return {true, 3, (b0 - 0xE0) * 4096L + (b1 - 0x80) * 64L + (b2 - 0x80)};
  if (b0 >= 0xF0 && b0 <= 0xF7 && c3) {
    const long value = (b0 - 0xF0) * 262144L + (b1 - 0x80) * 4096L + (b2 - 0x80) * 64L + (b3 - 0x80);
    return {value <= 0x10FFFF, 4, value};
  }
  return {false, 0, 0};
}

inline std::pair<bool, std::wstring> ReadWide(const std::string& s, std::size_t n, bool tolerant)
{
  const std::string text = UpToZero(s);
  std::wstring out;
  std::size_t i = 0;
  while (i < text.size() && i < n) {
    const Decoded decoded = Decode(text, i);
    if (!decoded.valid && !tolerant) return {false, out};
    out += static_cast<wchar_t>(decoded.valid ? decoded.codePoint : Byte(text, i));
    i += decoded.valid ? decoded.moved : 1;
  }
  return {true, out};
}

inline std::pair<bool, std::string> ReadAnsi(const std::string& s, std::size_t n, bool tolerant)
{
  const std::string text = UpToZero(s);
  std::string out;
  std::size_t i = 0;
  while (i < text.size() && i < n) {
    const Decoded decoded = Decode(text, i);
    int byte = decoded.valid ? WideToAnsiChar(decoded.codePoint) : -1;
    if (byte < 0 && !tolerant) return {false, out};
    if (byte < 0) byte = decoded.valid ? 0x7F : Byte(text, i);
    out += static_cast<char>(byte);
    i += decoded.valid ? decoded.moved : 1;
  }
  return {true, out};
}

inline void AppendUtf16(std::wstring& out, long codePoint)
{
  if (codePoint < 0x10000) {
    out += static_cast<wchar_t>(codePoint);
    return;
  }
  out += static_cast<wchar_t>(0xD800 + (codePoint - 0x10000) / 0x400);
  out += static_cast<wchar_t>(0xDC00 + codePoint % 0x400);
}

inline std::pair<bool, std::wstring> Utf8ToUtf16(const std::string& s, bool tolerant)
{
  const std::string text = UpToZero(s);
  std::wstring out;
  std::size_t i = 0;
  while (i < text.size()) {
    const Decoded decoded = Decode(text, i);
    if (!decoded.valid && !tolerant) return {false, out};
    if (decoded.valid)
      AppendUtf16(out, decoded.codePoint);
    else
      out += static_cast<wchar_t>(Byte(text, i) - 256);
    i += decoded.valid ? decoded.moved : 1;
  }
  return {true, out};
}

inline std::wstring Utf32ToUtf16(const std::vector<unsigned int>& codePoints)
{
  std::wstring out;
  for (const unsigned int codePoint : codePoints) {
    if (codePoint == 0) break;
    if (codePoint <= 0x10FFFE) AppendUtf16(out, static_cast<long>(codePoint));
  }
  return out;
}

inline void AppendByte(std::string& out, unsigned long byte)
{
  out += static_cast<char>(byte & 0xFF);
}

inline void AppendUtf8(std::string& out, unsigned long v)
{
  if (v < 0x80) {
    AppendByte(out, v);
  } else if (v < 0x800) {
    AppendByte(out, 0xC0 | (v >> 6));
    AppendByte(out, 0x80 | (v & 0x3F));
  } else if (v < 0x10000) {
    AppendByte(out, 0xE0 | (v >> 12));
    AppendByte(out, 0x80 | ((v >> 6) & 0x3F));
    AppendByte(out, 0x80 | (v & 0x3F));
  } else {
    AppendByte(out, 0xF0 | (v >> 18));
    AppendByte(out, 0x80 | ((v >> 12) & 0x3F));
    AppendByte(out, 0x80 | ((v >> 6) & 0x3F));
    AppendByte(out, 0x80 | (v & 0x3F));
  }
}

inline std::string WideCharToUtf8(long c)
{
  std::string out;
  if (c < 0x80)
    AppendByte(out, static_cast<unsigned long>(c));
  else
    AppendUtf8(out, static_cast<unsigned long>(c));
  return out;
}

inline std::string WideToUtf8(const std::wstring& s)
{
  const std::wstring text = UpToZero(s);
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const long v = text[i];
    const long next = i + 1 < text.size() ? text[i + 1] : 0;
    if (v >= 0xD800 && v <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
      AppendUtf8(out, static_cast<unsigned long>(((v - 0xD800) << 10) + next + 0x2400));
      ++i;
    } else if (v >= 0 && v < 0x110000) {
      AppendUtf8(out, static_cast<unsigned long>(v));
    }
  }
  return out;
}

inline std::string Windows1252ToUtf8(const std::string& s)
{
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) AppendUtf8(out, static_cast<unsigned long>(AnsiToWideChar(Byte(s, i))));
  return out;
}

// The buffer after the in-place conversion with the given size, which may be less than the text's. Steps that would
// write behind the size or move a negative length are left out.
inline std::vector<char> Windows1252ToUtf8InPlace(std::vector<char> buffer, std::size_t size)
{
  const std::size_t length = std::strlen(buffer.data());
  const std::size_t room = size - length;  // enormous for a size below the length
  for (std::size_t i = 0; i < buffer.size() && buffer[i] != 0; ++i) {
    const int byte = static_cast<unsigned char>(buffer[i]);
    const std::string encoded = byte < 0x80 ? "" : Windows1252ToUtf8(std::string(1, buffer[i]));
    if (encoded.empty() || encoded.size() > room || i > length || encoded.size() + length - i > size) continue;
    const std::string tail(buffer.data() + 1, length - i);
    std::copy(tail.begin(), tail.end(), buffer.data() + encoded.size());
    std::copy(encoded.begin(), encoded.end(), buffer.data());
  }
  return buffer;
}

inline std::string WideToAnsi(const std::wstring& s, char replacement)
{
  std::string out;
  for (const wchar_t c : UpToZero(s)) out += WideToAnsiChar(c) < 0 ? replacement : static_cast<char>(WideToAnsiChar(c));
  return out;
}

// The characters before the first one without a byte, and whether there is none such.
inline std::pair<bool, std::string> WideToAnsiStrict(const std::wstring& s)
{
  std::string out;
  for (const wchar_t c : UpToZero(s)) {
    if (WideToAnsiChar(c) < 0) return {false, out};
    out += static_cast<char>(WideToAnsiChar(c));
  }
  return {true, out};
}

inline std::string WideToLatin1(const std::wstring& s, char replacement)
{
  std::string out;
  for (const wchar_t c : UpToZero(s)) out += c <= 255 ? static_cast<char>(c & 0xFF) : replacement;
  return out;
}

inline std::wstring AnsiToWide(const std::string& s)
{
  std::wstring out;
  for (std::size_t i = 0; i < s.size(); ++i) out += static_cast<wchar_t>(AnsiToWideChar(Byte(s, i)));
  return out;
}

inline std::string WideToUcs2(const std::wstring& s, bool lowFirst)
{
  std::string out;
  for (const wchar_t c : UpToZero(s)) {
    const auto v = static_cast<unsigned long>(static_cast<std::uint32_t>(c));
    AppendByte(out, lowFirst ? v : v >> 8);
    AppendByte(out, lowFirst ? v >> 8 : v);
  }
  return out;
}

inline std::string Latin1ToUcs2(const std::string& s, bool lowFirst)
{
  std::string out;
  for (const char c : UpToZero(s)) {
    if (!lowFirst) out += '\0';
    out += c;
    if (lowFirst) out += '\0';
  }
  return out;
}

inline std::size_t Utf8Strlen(const std::string& s)
{
  std::size_t count = 0;
  for (const char c : UpToZero(s)) count += (c & 0xC0) != 0x80;
  return count;
}

// The continuation bytes that a lead byte asks for, or -1 for a byte that is no lead.
inline int ExpectedContinuations(int byte)
{
  if (byte >= 0xC2 && byte <= 0xDF) return 1;
  if (byte >= 0xE0 && byte <= 0xEF) return 2;
  if (byte >= 0xF0 && byte <= 0xF4) return 3;
  return -1;
}

inline bool Judge(std::uint64_t good, std::uint64_t bad, int ratio)
{
  if (good == 0) return false;
  if (bad == 0) return true;
  if (ratio == 0) return false;
  return ratio > 0 && good / static_cast<std::uint64_t>(ratio) > bad;
}

inline bool HasContinuations(const std::string& s, std::size_t lead, int count)
{
  for (int k = 1; k <= count; ++k)
    if ((Byte(s, lead + static_cast<std::size_t>(k)) & 0xC0) != 0x80) return false;
  return true;
}

inline bool IsBufferUtf8(const std::string& s, int ratio)
{
  if (s.size() > 2 && s.substr(0, 3) == "\xEF\xBB\xBF") return true;
  std::uint64_t good = 0;
  std::uint64_t bad = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (Byte(s, i) < 0x80) continue;
    const int expected = ExpectedContinuations(Byte(s, i));
    if (expected < 0) {
      ++bad;
      continue;
    }
    if (i + static_cast<std::size_t>(expected) >= s.size()) {
      ++bad;
      break;
    }
    HasContinuations(s, i, expected) ? ++good : ++bad;
    i += static_cast<std::size_t>(expected);
  }
  return Judge(good, bad, ratio);
}

inline bool IsStringUtf8(const std::string& s, int ratio)
{
  const std::string text = UpToZero(s);
  std::uint64_t good = 0;
  std::uint64_t bad = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (Byte(text, i) < 0x80) continue;
    const int expected = ExpectedContinuations(Byte(text, i));
    const bool isGood = expected > 0 && HasContinuations(text, i, expected);
    isGood ? ++good : ++bad;
    if (isGood) i += static_cast<std::size_t>(expected);
  }
  return Judge(good, bad, ratio);
}

}  // namespace reference

#endif
