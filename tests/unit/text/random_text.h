// Random text made of what the encodings care about: runs of ASCII of all lengths, sequences good and bad, surrogates,
// values at every boundary, zeros.
#ifndef QXPAF_TESTS_UNIT_TEXT_RANDOM_TEXT_H
#define QXPAF_TESTS_UNIT_TEXT_RANDOM_TEXT_H

#include <array>
#include <cstddef>
#include <iterator>
#include <random>
#include <string>

#include "unit/text/encoding_text.h"

namespace encoding_test {

class RandomText
{
 public:
  explicit RandomText(unsigned int seed) : random_(seed) {}

  /** 0 to limit - 1. */
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  std::string Narrow()
  {
    std::string out;
    for (std::size_t parts = Below(10); parts > 0; --parts) out += NarrowPart();
    return out;
  }

  std::wstring Wide()
  {
    std::wstring out;
    for (std::size_t parts = Below(10); parts > 0; --parts) out += WidePart();
    return out;
  }

 private:
  std::string NarrowPart()
  {
    switch (Below(8)) {
      case 0:
        return Ascii<char>();
      case 1:
        return std::string(1, static_cast<char>(Below(40) == 0 ? 0 : 1 + Below(255)));
      case 2:
        return Sequence(0xC0 + Below(0x20), 1);
      case 3:
        return Sequence(0xE0 + Below(0x10), 2);
      case 4:
        return Sequence(0xF0 + Below(8), 3);
      case 5:
        return Sequence(0xC0 + Below(0x40), Below(4));
      default:
        return One(kNotable);
    }
  }

  std::wstring WidePart()
  {
    switch (Below(8)) {
      case 0:
        return Ascii<wchar_t>();
      case 1:
        return std::wstring(1, static_cast<wchar_t>(Below(40) == 0 ? 0 : 1 + Below(0x2FF)));
      case 2:
        return std::wstring(1, static_cast<wchar_t>(Below(0x110000)));
      case 3:
        return std::wstring(1, static_cast<wchar_t>(static_cast<std::uint32_t>(random_())));
      case 4:
        return std::wstring{static_cast<wchar_t>(0xD7FE + Below(0x404)), static_cast<wchar_t>(0xDBFE + Below(0x404))};
      default:
        return std::wstring(1, static_cast<wchar_t>(One(kBoundaries)));
    }
  }

  template <class Element>
  std::basic_string<Element> Ascii()
  {
    std::basic_string<Element> out(Below(Below(30) == 0 ? 600 : 70), Element());
    for (Element& element : out) element = static_cast<Element>(1 + Below(0x7F));
    return out;
  }

  std::string Sequence(std::size_t lead, std::size_t continuations)
  {
    std::string out(1, static_cast<char>(lead));
    for (; continuations > 0; --continuations) out += static_cast<char>(0x80 + Below(0x40));
    return out;
  }

  template <class Table>
  typename Table::value_type One(const Table& table)
  {
    return table[Below(table.size())];
  }

  // Overlong forms, surrogates, the last code points and the first values behind them, the mark, specials of the code
  // page.
  inline static const std::array<std::string, 16> kNotable = {
      "\xC0\xAF",         "\xC0\x80",         "\xE0\x80\xAF",     "\xF0\x80\x80\xAF", "\xED\xA0\x80", "\xED\xBF\xBF",
      "\xF4\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF7\xBF\xBF\xBF", "\xEF\xBB\xBF",     "\xE2\x82\xAC", "\xC2\x81",
      "\xC2\x9F",         "\xC2\xA0",         "\xC3\xBF",         "\xC4\x80"};

  inline static const std::array<std::int64_t, 24> kBoundaries = {
      0x7F,  0x80,   0x81,   0x9F,   0xA0,   0xFF,   0x100,   0x152,    0x178,    0x192,    0x2C6,      0x7FF,
      0x800, 0x2122, 0x20AC, 0xD800, 0xDFFF, 0xFFFF, 0x10000, 0x10FFFE, 0x10FFFF, 0x110000, 0x7FFFFFFF, -1};

  std::mt19937_64 random_;
};

}  // namespace encoding_test

#endif
