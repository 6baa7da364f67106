// Text for the tests of phonetic keys and fuzzy comparisons: names and streets, slips of the typist, short alphabets.
#ifndef QXPAF_TESTS_UNIT_TEXT_MATCHING_TEXT_H
#define QXPAF_TESTS_UNIT_TEXT_MATCHING_TEXT_H

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "unit/text/encoding_text.h"

namespace matching_test {

using encoding_test::ExactText;

inline constexpr std::array<std::string_view, 64> kNames = {
    "Smith",          "Schmidt",   "Knight",   "Wright",     "Thomas",      "Xavier",       "Robert",
    "Rupert",         "Tymczak",   "Pfister",  "Ashcraft",   "Ashcroft",    "Lee",          "MacDonald",
    "McDonald",       "Macintosh", "Phillips", "Philipps",   "Evans",       "O'Brien",      "O'Connor",
    "van Dyck",       "Wojcik",    "Yarrow",   "Yeoward",    "Hughes",      "Hahn",         "Judged",
    "Bridges",        "Badger",    "Czerny",   "Schwarz",    "Vaughan",     "Cholmondeley", "Featherstonehaugh",
    "Aeneas",         "Gnome",     "Pneuma",   "Knox",       "Christopher", "Achesson",     "Thatcher",
    "Watkins",        "Whitelaw",  "Rowland",  "Cowan",      "Bevan",       "Levene",       "Quigley",
    "McQueen",        "Zimmerman", "Szabo",    "Rzhevsky",   "Wyndham",     "Lamb",         "Campbell",
    "Marc",           "King",      "Laugh",    "Iannaccone", "Patience",    "Garcia",       "M\xFCller",
    "Fran\xC3\xA7ois"};

inline constexpr std::array<std::string_view, 20> kStreets = {"12 MAIN STREET",
                                                              "345-347 OLD NORTHERN ROAD",
                                                              "UNIT 5 16 HIGH STREET",
                                                              "UNIT 55 16 HIGH STREET",
                                                              "SAINT GEORGES TERRACE",
                                                              "ST GEORGES TCE",
                                                              "GREAT WESTERN HIGHWAY",
                                                              "GT WESTERN HWY",
                                                              "LEVEL 3 120 COLLINS ST",
                                                              "PO BOX 1234",
                                                              "RMB 4021 BACK CREEK ROAD",
                                                              "QUEENSBERRY CRESCENT",
                                                              "QUEENBERRY CRES",
                                                              "WOOLLOOMOOLOO WHARF",
                                                              "WOOLOOMOOLOO WHARF",
                                                              "THE ESPLANADE",
                                                              "LT COLLINS STREET",
                                                              "LITTLE COLLINS STREET",
                                                              "MARTIN LUTHER KING JR BLVD",
                                                              "1A KIRKBRIDE WAY"};

class RandomMatching
{
 public:
  explicit RandomMatching(unsigned int seed) : random_(seed) {}

  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  /** Up to longest characters of the alphabet. */
  std::string Of(std::string_view alphabet, std::size_t longest)
  {
    std::string out(Below(longest + 1), ' ');
    for (char& c : out) c = alphabet[Below(alphabet.size())];
    return out;
  }

  template <class Table>
  std::string One(const Table& table)
  {
    return std::string(table[Below(table.size())]);
  }

  /** A name or a street, as it is, in upper case or with a few slips. */
  std::string Realistic()
  {
    std::string out = Below(3) == 0 ? One(kStreets) : One(kNames);
    if (Below(2) == 0)
      for (char& c : out) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return Slip(out, Below(4));
  }

  /** With some random edits: changed, added, dropped and transposed characters. */
  std::string Slip(std::string text, std::size_t slips)
  {
    static constexpr std::string_view kTyped = "AEHKMST059 ";
    for (; slips > 0; --slips) {
      const std::size_t at = Below(text.size() + 1);
      const char typed = kTyped[Below(kTyped.size())];
      switch (Below(4)) {
        case 0:
          text.insert(at, 1, typed);
          break;
        case 1:
          if (at < text.size()) text[at] = typed;
          break;
        case 2:
          if (at < text.size()) text.erase(at, 1);
          break;
        default:
          if (at + 1 < text.size()) std::swap(text[at], text[at + 1]);
          break;
      }
    }
    return text;
  }

 private:
  std::mt19937 random_;
};

/** All strings of at most longest characters of the alphabet. */
inline std::vector<std::string> AllStrings(std::string_view alphabet, std::size_t longest)
{
  std::vector<std::string> out = {""};
  std::size_t begin = 0;
  for (std::size_t length = 1; length <= longest; ++length) {
    const std::size_t end = out.size();
    for (std::size_t i = begin; i < end; ++i)
      for (const char c : alphabet) out.push_back(out[i] + c);
    begin = end;
  }
  return out;
}

/** Each byte as one element of the same value. */
inline std::wstring Widened(const std::string& text)
{
  std::wstring out;
  for (const char c : text) out += static_cast<wchar_t>(static_cast<unsigned char>(c));
  return out;
}

}  // namespace matching_test

#endif
