// Addresses of a database as somebody types them, letter by letter, for the two programs that measure hints.
#ifndef QXPAF_BENCH_HINT_SAMPLE_H
#define QXPAF_BENCH_HINT_SAMPLE_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "arf/format/database.h"
#include "arf/match/address_text.h"
#include "arf/tables/street_suffixes.h"
#include "arf/tables/street_types.h"
#include "arf/tables/unit_types.h"

namespace bench {

/** How an address is typed. */
enum class Form
{
  Label,  ///< "UNIT 3 12 GEORGE STREET, SYDNEY NSW 2000"
  Hasty   ///< "3/12 george st sydney nsw 2000"
};

struct TypedAddress
{
  std::string text;
  std::uint32_t ordinal = 0;
};

inline std::string LabelOf(const arf::Database& data, std::uint32_t ordinal)
{
  char buffer[512];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendAddress(text, data, ordinal);
  return buffer;
}

inline std::string HastyFormOf(const arf::Database& data, std::uint32_t ordinal)
{
  const arf::Point point = data.PointAt(ordinal);
  const arf::Street street = data.StreetAt(point.street);
  char buffer[512];
  arf::BoundedText text(buffer, sizeof buffer);
  const bool isSlashed = !point.unitNumber.empty() && point.levelNumber.empty() && point.levelType.empty() &&
                         (point.unitType.empty() || point.unitType == "UNIT" || point.unitType == "FLAT");
  if (!isSlashed) text.Word(arf::AbbreviateUnitType(point.unitType)).Word(point.unitNumber);
  text.Word(point.levelType).Word(point.levelNumber);
  if (point.numberFirst == 0 && !point.lot.empty()) text.Word("LOT").Word(point.lot);
  if (street.isPostal) text.Word(street.type);
  if (point.numberFirst != 0) {
    text.Gap();
    if (isSlashed) text << point.unitNumber << '/';
    arf::AppendNumber(text, point);
  }
  if (!street.isPostal)
    text.Word(street.name)
        .Word(arf::AbbreviateStreetType(street.type))
        .Word(arf::AbbreviateStreetSuffix(street.suffix));
  arf::AppendLocality(text, data.LocalityAt(street.locality));
  std::string result = buffer;
  for (char& c : result)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return result;
}

/** Addresses chosen at random, the same ones in every run. */
inline std::vector<TypedAddress> SampleOf(const arf::Database& data, Form form, std::size_t count)
{
  constexpr unsigned kSeed = 20'000'229;
  std::mt19937 random(kSeed);
  std::uniform_int_distribution<std::uint32_t> any(0, data.PointCount() - 1);
  std::vector<TypedAddress> sample;
  while (sample.size() < count) {
    const std::uint32_t ordinal = any(random);
    sample.push_back({form == Form::Label ? LabelOf(data, ordinal) : HastyFormOf(data, ordinal), ordinal});
  }
  return sample;
}

/** The database that the command line or QXPAF_BENCH_DATABASE names; null, after a message, when there is none. */
inline std::unique_ptr<arf::Database> OpenDatabase(int argc, char** argv)
{
  const char* directory = argc > 1 ? argv[1] : std::getenv("QXPAF_BENCH_DATABASE");
  if (directory == nullptr) {
    std::puts("skipped: name a database directory as argument or in QXPAF_BENCH_DATABASE");
    return nullptr;
  }
  arf::OpenResult result;
  std::unique_ptr<arf::Database> data = arf::Database::Open(directory, arf::OpenMode::Mapped, result);
  if (!data) std::fprintf(stderr, "%s\n", result.message.c_str());
  if (data && data->PointCount() == 0) {
    std::puts("skipped: the database is empty");
    return nullptr;
  }
  if (data)
    std::printf("%u addresses, %u streets, %u localities\n", data->PointCount(), data->StreetCount(),
                data->LocalityCount());
  return data;
}

}  // namespace bench

#endif
