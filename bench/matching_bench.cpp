// Phonetic keys and fuzzy comparisons beside the plain transcriptions that they are tested against ("/plain"), on names
// of 5 to 12 letters, streets of 15 to 40 and address lines with numbers. One item is one call; strcmp stands beside
// StringsNearlyTheSame.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "qxpaf/text/fuzzy.h"
#include "qxpaf/text/phonetic.h"
#include "reference/fuzzy_reference.h"
#include "reference/phonetic_reference.h"

namespace {

using Texts = std::vector<std::string>;

const Texts& Names()
{
  static const Texts names = {"SMITH",     "SMYTHE",    "JOHNSON",  "JONSON",   "WILLIAMS",   "WILLIAMSON",
                              "ROBERTSON", "ROBINSON",  "THOMPSON", "THOMSON",  "KNIGHT",     "WRIGHT",
                              "SCHMIDT",   "SCHMITT",   "ASHCRAFT", "ASHCROFT", "PHILLIPS",   "PHILIPS",
                              "MACDONALD", "MCDONALD",  "CAMPBELL", "CHRISTIE", "THATCHER",   "FLETCHER",
                              "GALLAGHER", "OSULLIVAN", "XAVIER",   "BRIDGES",  "HUTCHINSON", "WHITELAW"};
  return names;
}

const Texts& Streets()
{
  static const Texts streets = {"OLD NORTHERN ROAD",
                                "OLD NORTHEN ROAD",
                                "SAINT GEORGES TERRACE",
                                "ST GEORGES TERRACE",
                                "GREAT WESTERN HIGHWAY",
                                "GREAT EASTERN HIGHWAY",
                                "WOOLLOOMOOLOO WHARF",
                                "WOOLOOMOOLOO WHARF",
                                "QUEENSBERRY CRESCENT",
                                "QUEENBERRY CRESCENT",
                                "MARTIN LUTHER KING BOULEVARD",
                                "MARTIN LUTHER KING BLVD",
                                "LITTLE COLLINS STREET",
                                "LITTLE COLINS STREET",
                                "NORTH WEST COASTAL HIGHWAY",
                                "NORTH WEST COASTAL HWY",
                                "SIR DONALD BRADMAN DRIVE",
                                "SIR DONALD BRADMEN DRIVE",
                                "UPPER FERNTREE GULLY PARADE",
                                "UPPER FERN TREE GULLY PARADE",
                                "CATHERINE HELEN SPENCE STREET"};
  return streets;
}

// As they are typed: with numbers, units and short forms.
const Texts& AddressLines()
{
  static const Texts lines = {
      "12 OLD NORTHERN ROAD",   "14 OLD NORTHERN ROAD",      "345-347 OLD NORTHERN RD",   "UNIT 5 16 HIGH STREET",
      "UNIT 55 16 HIGH STREET", "UNIT 5 18 HIGH STREET",     "LEVEL 3 120 COLLINS ST",    "LEVEL 13 120 COLLINS ST",
      "120 COLLINS STREET",     "RMB 4021 BACK CREEK ROAD",  "RMB 4012 BACK CREEK ROAD",  "1A KIRKBRIDE WAY",
      "1 KIRKBRIDE WAY",        "PO BOX 12345 NORTH SYDNEY", "PO BOX 12354 NORTH SYDNEY", "27 WESTERN HIGHWAY",
      "SHOP 4 27 WESTERN HWY",  "GATE 2 PRINCES HIGHWAY",    "8/21 THE ESPLANADE",        "21 THE ESPLANADE"};
  return lines;
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

// Every text against every other one.
Pairs AllPairs(const Texts& texts)
{
  Pairs out;
  for (const std::string& a : texts)
    for (const std::string& b : texts)
      if (a != b) out.emplace_back(a, b);
  return out;
}

// Every text against its neighbour in the list, as a rule another spelling of the same.
Pairs SimilarPairs(const Texts& texts)
{
  Pairs out;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) out.emplace_back(texts[i], texts[i + 1]);
  return out;
}

// Every text against itself with one slip, the four kinds in turn, at each place but the last.
Pairs SlippedPairs(const Texts& texts)
{
  Pairs out;
  for (const std::string& text : texts) {
    for (std::size_t at = 0; at + 1 < text.size(); ++at) {
      std::string slipped = text;
      if (at % 4 == 0) slipped[at] = slipped[at] == 'E' ? 'A' : 'E';
      if (at % 4 == 1) slipped.insert(at, 1, 'R');
      if (at % 4 == 2) slipped.erase(at, 1);
      if (at % 4 == 3) std::swap(slipped[at], slipped[at + 1]);
      out.emplace_back(text, slipped);
    }
  }
  return out;
}

Pairs EqualPairs(const Texts& texts)
{
  Pairs out;
  for (const std::string& text : texts) out.emplace_back(text, text);
  return out;
}

template <class Items, class Work>
void Measure(const std::string& title, const Items& items, Work work)
{
  benchmark::RegisterBenchmark(title.c_str(), [items, work](benchmark::State& state) {
    for (auto _ : state)
      for (const auto& item : items) benchmark::DoNotOptimize(work(item));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items.size()));
  });
}

// Both sides are a call: the plain form is not merged into the loop, as the library's cannot be.
template <class Items, class Library, class Plain>
void MeasureBoth(const std::string& title, const Items& items, Library library, Plain plain)
{
  Measure(title, items, library);
  Measure(
      title + "/plain", items, [plain](const auto& item) __attribute__((noinline)) { return plain(item); });
}

template <class Library, class Plain>
void MeasureKey(const std::string& title, Library library, Plain plain)
{
  static constexpr unsigned long kLength = 6;
  const auto keyBy = [](auto function) {
    return [function](const std::string& name) {
      char key[kLength + 1];
      function(key, name.c_str(), kLength);
      return key[0];
    };
  };
  MeasureBoth(title, Names(), keyBy(library), keyBy(plain));
}

void MeasureDistances(const std::string& title, const Pairs& pairs)
{
  for (const int bound : {1, 2, 3}) {
    for (const bool digits : {true, false}) {
      MeasureBoth(
          "CompareStrings2/" + std::to_string(bound) + (digits ? "/" : "/digits fixed/") + title, pairs,
          [=](const auto& pair) { return CompareStrings2(pair.first.c_str(), pair.second.c_str(), bound, digits); },
          [=](const auto& pair) {
            return reference::CompareStrings2(pair.first.c_str(), pair.second.c_str(), bound, digits);
          });
    }
  }
}

void MeasureNearSameness(const std::string& title, const Pairs& pairs)
{
  MeasureBoth(
      "StringsNearlyTheSame/" + title, pairs,
      [](const auto& pair) {
        bool identical;
        return StringsNearlyTheSame(pair.first.c_str(), pair.second.c_str(), identical, false, false);
      },
      [](const auto& pair) {
        bool identical;
        return reference::StringsNearlyTheSame(pair.first.c_str(), pair.second.c_str(), identical, false, false);
      });
  Measure("StringsNearlyTheSame/" + title + "/strcmp", pairs,
          [](const auto& pair) { return std::strcmp(pair.first.c_str(), pair.second.c_str()); });
}

void MeasureJaro(const std::string& title, const Pairs& pairs)
{
  MeasureBoth(
      "CompareJaro/" + title, pairs, [](const auto& pair) { return CompareJaro(pair.first, pair.second); },
      [](const auto& pair) { return reference::CompareJaro(pair.first, pair.second); });
}

void RegisterAll()
{
  MeasureKey("Soundex", Soundex, reference::Soundex);
  MeasureKey("Nysiis", Nysiis, reference::Nysiis);
  MeasureKey("Metaphone", Metaphone, reference::Metaphone);
  MeasureBoth(
      "Soundex2", Names(), [](const std::string& name) { return Soundex2(name.c_str()); },
      [](const std::string& name) { return reference::Soundex2(name.c_str()); });
  const struct
  {
    const char* title;
    Pairs pairs;
  } kinds[] = {{"names", AllPairs(Names())},
               {"slipped names", SlippedPairs(Names())},
               {"similar names", SimilarPairs(Names())},
               {"equal names", EqualPairs(Names())},
               {"streets", AllPairs(Streets())},
               {"slipped streets", SlippedPairs(Streets())},
               {"similar streets", SimilarPairs(Streets())},
               {"equal streets", EqualPairs(Streets())},
               {"address lines", AllPairs(AddressLines())},
               {"slipped address lines", SlippedPairs(AddressLines())}};
  for (const auto& kind : kinds) {
    MeasureDistances(kind.title, kind.pairs);
    MeasureNearSameness(kind.title, kind.pairs);
    MeasureJaro(kind.title, kind.pairs);
  }
}

}  // namespace

int main(int argc, char** argv)
{
  RegisterAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
