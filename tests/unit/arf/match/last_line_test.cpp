// State, postcode and country at the ends of texts, and the correction of last lines.
#include "arf/match/last_line.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "arf/match/failure_text.h"
#include "arf/match/last_line_fixer.h"
#include "arf/match/locality_query.h"
#include "arf/match/one_typo.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::InputFault;
using arf::InputText;
using arf::Verdict;

/** All tails, the one that cuts most first: "SYDNEY(NSW 2000)". */
std::vector<std::string> TailsOf(const std::string& text)
{
  InputText input;
  EXPECT_EQ(input.Read(text), InputFault::None);
  std::vector<std::string> out;
  for (const arf::Tail& tail : arf::Tails(input))
    out.push_back(std::string(input.Text(0, tail.localityEnd)) + "(" + std::string(tail.place.Text().View()) + ")");
  return out;
}

TEST(Tails, Rows)
{
  struct Row
  {
    const char* text;
    std::vector<std::string> tails;
  };
  const Row rows[] = {
      {"Sydney", {"SYDNEY()"}},
      {"Sydney NSW 2000", {"SYDNEY(NSW 2000)", "SYDNEY NSW(2000)", "SYDNEY NSW 2000()"}},
      {"Sydney 2000 NSW", {"SYDNEY(NSW 2000)", "SYDNEY 2000(NSW)", "SYDNEY 2000 NSW()"}},
      {"Sydney NSW2000", {"SYDNEY(NSW 2000)", "SYDNEY NSW2000()"}},
      {"Darwin NT 800", {"DARWIN(NT 0800)", "DARWIN NT(0800)", "DARWIN NT 800()"}},
      {"Perth Western Australia", {"PERTH(WA)", "PERTH WESTERN AUSTRALIA()"}},
      {"Perth Australia", {"PERTH()", "PERTH AUSTRALIA()"}},
      {"A 12345", {"A 12345()"}},
      {"A 12", {"A 12()"}},
      {"NSW VIC", {"NSW(VIC)", "NSW VIC()"}},
      {"1 2000 3000", {"1 2000(3000)", "1 2000 3000()"}},
      {"", {"()"}},
  };
  for (const Row& row : rows) EXPECT_EQ(TailsOf(row.text), row.tails) << row.text;
}

struct FixRow
{
  const char* input;
  const char* answer;  ///< a last line, or the kind of failure
  bool changed = false;
};

TEST(LastLineFixer, Rows)
{
  const FixRow rows[] = {
      // in any order, completed where only one is meant
      {"SYDNEY NSW 2000", "SYDNEY NSW 2000"},
      {"sydney 2000 nsw", "SYDNEY NSW 2000"},
      {"NSW 2000 Sydney", "SYDNEY NSW 2000"},
      {"2000 Sydney NSW", "SYDNEY NSW 2000"},
      {"2000, Sydney", "SYDNEY NSW 2000"},
      {"Sydney New South Wales 2000 Australia", "SYDNEY NSW 2000"},
      {"Sydney NSW2000", "SYDNEY NSW 2000"},
      {"Darwin 800", "DARWIN NT 0800"},
      {"mt isa", "MOUNT ISA QLD 4825"},
      {"saint kilda", "ST KILDA VIC 3182"},
      {"surfersparadise", "SURFERS PARADISE QLD 4217"},
      {"Gap QLD", "THE GAP QLD 4061"},
      {"Victoria Point", "VICTORIA POINT QLD 4165"},
      {"Richmond VIC", "RICHMOND VIC 3121"},
      {"Richmond 2753", "RICHMOND NSW 2753"},
      {"3207", "PORT MELBOURNE VIC 3207"},
      {"VIC 3207", "PORT MELBOURNE VIC 3207"},
      {"Norfolk Island NSW 2899", "NORFOLK ISLAND OT 2899"},
      // more than one
      {"Richmond", "several"},
      {"Sydney", "several"},
      {"The Gap", "several"},
      // name and one of state and postcode outvote the other
      {"Sydney VIC 2000", "SYDNEY NSW 2000", true},
      {"Mount Isa QLD 4000", "MOUNT ISA QLD 4825", true},
      {"Richmond VIC 2753", "several"},
      {"Sydney NSW 3000", "several"},
      {"Sydney VIC 3000", "locality"},
      {"Mount Isa VIC", "locality"},
      {"Mount Isa 3000", "locality"},
      // one typing error
      {"Melborne VIC 3000", "MELBOURNE VIC 3000", true},
      {"Mellbourne VIC 3000", "MELBOURNE VIC 3000", true},
      {"Melbuurne VIC 3000", "MELBOURNE VIC 3000", true},
      {"Melbuorne VIC 3000", "MELBOURNE VIC 3000", true},
      {"Melbourn", "MELBOURNE VIC 3000", true},
      {"elbourne", "MELBOURNE VIC 3000", true},
      {"Surfer Paradise", "SURFERS PARADISE QLD 4217", true},
      {"Canbera ACT", "CANBERRA ACT 2600", true},
      {"Richmund 3121", "RICHMOND VIC 3121", true},
      {"Richmund", "several"},
      {"Richmund TAS", "locality"},
      {"Melburn VIC 3000", "locality"},
      {"Melborne NSW 3000", "locality"},
      {"Melborne 2000", "locality"},
      // nothing
      {"", "nothing"},
      {"xyzzy", "nothing"},
      {"NSW", "locality"},
      {"9999", "locality"},
      {"VIC 2000", "locality"},
      {"xyzzy NSW", "locality"},
  };
  const auto fixer = std::make_unique<arf::LastLineFixer>(arf_test::SmallEngine());
  const arf::Database& data = arf_test::SmallEngine().Data();
  for (const FixRow& row : rows) {
    const arf::LastLineAnswer answer = fixer->Fix(row.input);
    std::string outcome;
    if (answer.verdict == Verdict::Found) {
      const arf::Locality locality = data.LocalityAt(answer.locality);
      outcome = std::string(locality.name) + " " + std::string(locality.state) + " " + std::string(locality.postcode);
    } else {
      outcome = answer.verdict == Verdict::Several   ? "several"
                : answer.verdict == Verdict::Nothing ? "nothing"
                                                     : "locality";
    }
    EXPECT_EQ(outcome, row.answer) << row.input;
    EXPECT_EQ(answer.changed, row.changed) << row.input;
  }
}

TEST(LastLineFixer, RefusesLongTexts)
{
  const auto fixer = std::make_unique<arf::LastLineFixer>(arf_test::SmallEngine());
  EXPECT_EQ(fixer->Fix(std::string(5000, 'a')).verdict, Verdict::TooLong);
}

TEST(FindLocalities, Rows)
{
  struct Row
  {
    const char* line;
    std::size_t count;
    arf::Fault fault;
  };
  const Row rows[] = {
      {"SYDNEY NSW 2000", 1, arf::Fault::None},
      {"Sydney", 2, arf::Fault::None},
      {"richmond", 2, arf::Fault::None},
      {"Richmond VIC", 1, arf::Fault::None},
      {"mt isa", 1, arf::Fault::None},
      {"VIC", 5, arf::Fault::None},
      {"2000", 1, arf::Fault::None},
      {"VIC 2000", 0, arf::Fault::LocalityUnknown},
      {"Sydney VIC", 0, arf::Fault::PlaceContradicts},
      {"Melborne", 0, arf::Fault::LocalityUnknown},
      {"Gap", 0, arf::Fault::LocalityUnknown},
      {"", 0, arf::Fault::NothingRecognised},
      {"TAS", 0, arf::Fault::LocalityUnknown},
      {"2000 Sydney", 1, arf::Fault::None},
      {"NSW 2001 Sydney", 1, arf::Fault::None},
      {"2753 Richmond NSW", 1, arf::Fault::None},
      {"NSW Richmond 2753", 1, arf::Fault::None},
      {"Victoria Point", 1, arf::Fault::None},
      {"3000 Sydney", 0, arf::Fault::PlaceContradicts},
      {"VIC Sydney", 0, arf::Fault::PlaceContradicts},
      {"2000 Melborne", 0, arf::Fault::LocalityUnknown},
      {"2000 2001 Sydney", 0, arf::Fault::LocalityUnknown},
  };
  std::vector<std::uint32_t> found;
  for (const Row& row : rows) {
    InputText line;
    ASSERT_EQ(line.Read(row.line), InputFault::None);
    EXPECT_EQ(arf::FindLocalities(arf_test::SmallEngine(), line, found).fault, row.fault) << row.line;
    EXPECT_EQ(found.size(), row.count) << row.line;
  }
}

/** The definition: is `b` among the texts that one error makes of `a`? */
bool IsOneTypoApartByDefinition(const std::string& a, const std::string& b, const std::string& alphabet)
{
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (const char c : alphabet) {
      if (a.substr(0, i) + c + a.substr(i) == b) return true;
      if (i < a.size() && a[i] != c && a.substr(0, i) + c + a.substr(i + 1) == b) return true;
    }
    if (i < a.size() && a.substr(0, i) + a.substr(i + 1) == b) return true;
    if (i + 1 < a.size() && a[i] != a[i + 1] && a.substr(0, i) + a[i + 1] + a[i] + a.substr(i + 2) == b) return true;
  }
  return false;
}

TEST(OneTypo, AllShortWordsOverASmallAlphabet)
{
  const std::string alphabet = "ABC";
  std::vector<std::string> words = {""};
  for (std::size_t first = 0, length = 0; length < 4; ++length) {
    const std::size_t last = words.size();
    for (; first < last; ++first)
      for (const char c : alphabet) words.push_back(words[first] + c);
  }
  for (const std::string& a : words)
    for (const std::string& b : words)
      ASSERT_EQ(arf::IsOneTypoApart(a, b), IsOneTypoApartByDefinition(a, b, alphabet)) << a << " " << b;
}

}  // namespace
