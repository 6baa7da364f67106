// Buffers and random texts for the tests of text clean-up.
#ifndef QXPAF_TESTS_UNIT_TEXT_NORMALISE_TEXT_H
#define QXPAF_TESTS_UNIT_TEXT_NORMALISE_TEXT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random_seed.h"

namespace normalise_test {

constexpr int kTexts = 100000;

/** The text that an in-place function makes of a text, in a buffer that just holds it. */
template <class Function>
std::string InPlace(const std::string& text, Function function)
{
  test_support::GuardedBuffer buffer(text.size() + 1);
  std::memcpy(buffer.Data(), text.c_str(), text.size() + 1);
  function(buffer.Data());
  EXPECT_TRUE(buffer.Intact()) << text;
  EXPECT_NE(std::memchr(buffer.Data(), '\0', buffer.Size()), nullptr) << text;
  return {buffer.Data(), strnlen(buffer.Data(), buffer.Size())};
}

class RandomText
{
 public:
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  /** Up to so many of the parts, in any order. */
  std::string Of(const std::vector<std::string>& parts, std::size_t most)
  {
    std::string out;
    for (std::size_t n = Below(most + 1); n > 0; --n) out += parts[Below(parts.size())];
    return out;
  }

  /** Up to so many bytes but zero. */
  std::string Bytes(std::size_t most)
  {
    std::string out(Below(most + 1), '\0');
    for (char& c : out) c = static_cast<char>(1 + Below(255));
    return out;
  }

  /** Words as they stand in addresses and names, in any case, between separators of all kinds. */
  std::string Address()
  {
    static const std::vector<std::string> words = {
        "UNIT",    "4B",   "345-347",     "old",    "Northern", "ROAD", "McDONALD", "macdonald", "O'BRIEN", "d'arcy",
        "VIII",    "iv",   "XL",          "xlix",   "LI",       "li",   "4TH",      "don't",     "YOU'LL",  "WE'VE",
        "they're", "'tis", "rock'n'roll", "(rear)", "[lot 2]",  "St.",  "JOHN'S",   "mc",        "MC",      "i",
        "ix",      "IIII", "O'REILLY",    "a'",     "ll",       "'ll",  "'vex",     "'RE'"};
    static const std::vector<std::string> separators = {" ", " ", "  ", ", ", "-", "/", "", "'", ".", "\xE9", "_"};
    std::string out;
    for (std::size_t n = Below(8); n > 0; --n) {
      std::string word = words[Below(words.size())];
      if (Below(3) == 0) word[Below(word.size())] ^= 0x20;
      out += word + separators[Below(separators.size())];
    }
    out.erase(std::remove(out.begin(), out.end(), '\0'), out.end());
    return out;
  }

 private:
  std::mt19937_64 random_{test_support::RandomSeed()};
};

}  // namespace normalise_test

#endif
