// Text for the tests of case, classes and accents: random strings of what these functions care about, and memory in
// which a step over either end of a text is found out.
#ifndef QXPAF_TESTS_UNIT_TEXT_UNICODE_TEXT_H
#define QXPAF_TESTS_UNIT_TEXT_UNICODE_TEXT_H

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include "reference/unicode_rows.h"

namespace unicode_test {

/** A character in messages: U+0041; in eight digits where it is outside the plane. */
inline std::string Code(long c)
{
  char text[16];
  std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned int>(c));
  return text;
}

/**
 * Memory that ends at a page without access. Text is put so that its terminator is the last element in front of that
 * page: reading or writing behind it ends the test, with or without a sanitizer.
 */
template <class Element>
class EdgeBuffer
{
 public:
  EdgeBuffer()
      : start_(static_cast<char*>(
            mmap(nullptr, kSize + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
  {
    if (start_ == MAP_FAILED || mprotect(start_ + kSize, kPage, PROT_NONE) != 0) throw std::runtime_error("mmap");
  }
  ~EdgeBuffer() { munmap(start_, kSize + kPage); }

  EdgeBuffer(const EdgeBuffer&) = delete;
  EdgeBuffer& operator=(const EdgeBuffer&) = delete;

  /** A copy of text, which has room for kSize bytes less the guard. */
  Element* Put(const std::basic_string<Element>& text)
  {
    if ((text.size() + 1 + kGuard) * sizeof(Element) > kSize) throw std::length_error("text");
    text_ = End() - (text.size() + 1);
    std::fill(text_ - kGuard, text_, kGuardElement);
    std::copy(text.c_str(), text.c_str() + text.size() + 1, text_);
    return text_;
  }

  /** All of the text's memory, without the last terminator. */
  std::basic_string<Element> Whole() const { return {text_, End() - 1}; }

  /** Whether what precedes the text is untouched. */
  bool Intact() const
  {
    return std::all_of(text_ - kGuard, text_, [](Element element) { return element == kGuardElement; });
  }

  /** Any write to the text now ends the test. */
  void Protect() { mprotect(start_, kSize, PROT_READ); }
  void Unprotect() { mprotect(start_, kSize, PROT_READ | PROT_WRITE); }

 private:
  static constexpr std::size_t kPage = 4096;
  static constexpr std::size_t kSize = 256 * kPage;
  static constexpr std::size_t kGuard = 16;
  static constexpr Element kGuardElement = 'y';

  Element* End() const { return reinterpret_cast<Element*>(start_ + kSize); }

  char* start_;
  Element* text_ = nullptr;
};

class RandomUnicode
{
 public:
  explicit RandomUnicode(unsigned int seed) : random_(seed) {}

  /** 0 to limit - 1. */
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  std::wstring Wide()
  {
    std::wstring out;
    for (std::size_t parts = Below(12); parts > 0; --parts) AddWidePart(out);
    return out;
  }

  std::string Bytes()
  {
    std::string out;
    for (std::size_t parts = Below(12); parts > 0; --parts) AddBytePart(out);
    return out;
  }

 private:
  void AddWidePart(std::wstring& out)
  {
    switch (Below(9)) {
      case 0:
      case 1:
        for (std::size_t n = Below(14); n > 0; --n) out += static_cast<wchar_t>(0x20 + Below(0x60));
        return;
      case 2:
        for (std::size_t n = Below(10); n > 0; --n) out += static_cast<wchar_t>(0x80 + Below(0x580));
        return;
      case 3:
        out += static_cast<wchar_t>(Below(0x10000));
        return;
      case 4:
        out += static_cast<wchar_t>(0x1E00 + Below(0x200));
        return;
      case 5:
        out += static_cast<wchar_t>(reference::kFoldLists[Below(std::size(reference::kFoldLists))].codePoint);
        return;
      case 6:
        out.append(1 + Below(3), L'\xDF');
        return;
      case 7:
        out += static_cast<wchar_t>(0xD7F0 + Below(0x810));  // surrogates, list marks, the same as characters
        return;
      default:
        out += Below(4) == 0 ? L'\0' : static_cast<wchar_t>(static_cast<std::uint32_t>(random_()));
    }
  }

  void AddBytePart(std::string& out)
  {
    switch (Below(8)) {
      case 0:
      case 1:
        for (std::size_t n = Below(40); n > 0; --n) out += static_cast<char>(0x20 + Below(0x60));
        return;
      case 2:
      case 3:
        out += static_cast<char>(0xC2 + Below(8));
        out += Continuation();
        return;
      case 4:
        out += '\xE1';
        out += static_cast<char>(0xB7 + Below(6));
        out += Continuation();
        return;
      case 5:
        out += Lead();
        return;
      case 6:
        out += Continuation();
        return;
      default:
        out += static_cast<char>(Below(256));
    }
  }

  char Lead()
  {
    static constexpr std::array<char, 9> kLeads = {'\xC2', '\xC3', '\xC4', '\xC5', '\xC8',
                                                   '\xC9', '\xE1', '\xB8', '\xBB'};
    return kLeads[Below(kLeads.size())];
  }

  char Continuation() { return static_cast<char>(0x80 + Below(0x40)); }

  std::mt19937_64 random_;
};

}  // namespace unicode_test

#endif
