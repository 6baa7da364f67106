#include "arf/build/index_writer.h"

#include <map>
#include <span>
#include <utility>
#include <vector>

#include "arf/build/attribute_writer.h"
#include "arf/build/building_writer.h"
#include "arf/build/dpid_writer.h"
#include "arf/build/file_strings.h"
#include "arf/build/hint_writer.h"
#include "arf/build/name_tables_writer.h"
#include "arf/build/point_encoder.h"
#include "arf/build/relation_writer.h"
#include "arf/build/section_writer.h"
#include "arf/build/spatial_writer.h"
#include "arf/build/text_table_writer.h"

namespace arf {
namespace {

using layout::SectionId;

/** Points a block: a lookup decodes half a block on average, and each block of a long street costs sixteen bytes. */
constexpr std::uint32_t kBlockPoints = 32;

constexpr std::size_t kRowsPerReport = 1 << 16;

class IndexWriter
{
 public:
  IndexWriter(OutputFile& file, AddressTable& table, const OrderedAddresses& ordered, const BuildWatch& watch)
      : table_(table), ordered_(ordered), watch_(watch), writer_(file), strings_(table, ordered)
  {
  }

  std::uint64_t Run(const InfoEntries& info)
  {
    WriteLocalities();
    WriteStreets();
    WritePointStreets();
    WriteDpids(writer_, table_.rows);
    WriteAttributes(writer_, table_, strings_, watch_);  // early, as it makes room for the others
    WriteSpatial(writer_, table_, ordered_);
    WriteBuildingNames(writer_, table_, ordered_);
    WriteHints(writer_, table_, ordered_);
    WriteNameTables(writer_, ordered_);
    WriteRelations(writer_, table_, ordered_, strings_);
    WriteAddressAliases();
    WriteInfo(info);
    strings_.Write(writer_);  // last, when every text has its number
    return writer_.Finish({Size(table_.localities), Size(table_.streets), Size(table_.rows), kBlockPoints});
  }

 private:
  /** Lists are shorter than 2^32: the number of rows was limited, and no other list is longer. */
  template <class List>
  static std::uint32_t Size(const List& list)
  {
    return static_cast<std::uint32_t>(list.size());
  }

  void WriteSection(SectionId id, const std::vector<std::uint32_t>& numbers)
  {
    writer_.Begin(id);
    writer_.AppendNumbers(numbers);
    writer_.End();
  }

  template <class StringOf>
  void WriteDictionary(SectionId texts, SectionId postings, const SortedDictionary& dictionary, StringOf stringOf)
  {
    writer_.Begin(texts);
    for (std::size_t i = 0; i < dictionary.texts.size(); ++i) {
      writer_.AppendNumber(stringOf(dictionary.texts[i]));
      writer_.AppendNumber(dictionary.firstPosting[i]);
    }
    writer_.End();
    WriteSection(postings, dictionary.postings);
  }

  void WriteLocalities()
  {
    writer_.Begin(SectionId::Localities);
    for (std::size_t i = 0; i < table_.localities.size(); ++i) {
      const LocalityEntry& locality = table_.localities[i];
      for (const std::uint32_t name : {locality.name, locality.state, locality.postcode}) {
        writer_.AppendNumber(strings_.OfName(name));
      }
      writer_.AppendNumber(ordered_.localityKeys[i]);
      writer_.AppendNumber(ordered_.firstStreets[i]);
    }
    writer_.End();
    WriteDictionary(SectionId::LocalityNames, SectionId::LocalityPostings, ordered_.localityNames,
                    [this](std::uint32_t key) { return strings_.OfKey(key); });
    WriteDictionary(SectionId::Postcodes, SectionId::PostcodePostings, ordered_.postcodes,
                    [this](std::uint32_t name) { return strings_.OfName(name); });
  }

  void WriteStreets()
  {
    const std::vector<std::uint32_t> dataOffsets = WritePoints();
    const std::vector<std::uint32_t> classes = WriteStreetClasses();
    writer_.Begin(SectionId::Streets);
    for (std::size_t i = 0; i < table_.streets.size(); ++i) {
      const StreetEntry& street = table_.streets[i];
      for (const std::uint32_t number : {strings_.OfName(street.name), ordered_.streetKeys[i], street.locality,
                                         ordered_.firstRows[i], dataOffsets[i], classes[i]}) {
        writer_.AppendNumber(number);
      }
    }
    writer_.End();
    WriteDictionary(SectionId::StreetNames, SectionId::StreetPostings, ordered_.streetNames,
                    [this](std::uint32_t key) { return strings_.OfKey(key); });
  }

  /** Returns where each street's points begin. */
  std::vector<std::uint32_t> WritePoints()
  {
    PointEncoder encoder(table_.details, strings_.OfParts(), kBlockPoints);
    std::vector<std::uint32_t> offsets;
    offsets.reserve(table_.streets.size());
    std::size_t reported = 0;
    writer_.Begin(SectionId::Points);
    for (std::size_t i = 0; i < table_.streets.size(); ++i) {
      const std::size_t first = ordered_.firstRows[i];
      const std::size_t end = i + 1 < table_.streets.size() ? ordered_.firstRows[i + 1] : table_.rows.size();
      if (writer_.Length() > UINT32_MAX) throw BuildError("the coded addresses are longer than 4 GiB");
      offsets.push_back(static_cast<std::uint32_t>(writer_.Length()));
      const std::vector<std::uint8_t>& code = encoder.Encode(std::span(table_.rows).subspan(first, end - first));
      writer_.Append(code.data(), code.size());
      if (end / kRowsPerReport == reported) continue;
      reported = end / kRowsPerReport;
      watch_.Reached(BuildPhase::Writing, end, table_.rows.size());
    }
    writer_.End();
    return offsets;
  }

  /** Returns the class of each street: its type, suffix and whether it is a postal delivery. */
  std::vector<std::uint32_t> WriteStreetClasses()
  {
    std::map<std::tuple<std::uint32_t, std::uint32_t, bool>, std::uint32_t> numbers;
    std::vector<std::uint32_t> classes;
    classes.reserve(table_.streets.size());
    writer_.Begin(SectionId::StreetClasses);
    for (const StreetEntry& street : table_.streets) {
      const auto [place, isNew] = numbers.try_emplace({street.type, street.suffix, street.isPostal}, Size(numbers));
      classes.push_back(place->second);
      if (!isNew) continue;
      writer_.AppendNumber(strings_.OfName(street.type));
      writer_.AppendNumber(strings_.OfName(street.suffix));
      writer_.AppendNumber(street.isPostal);
    }
    writer_.End();
    return classes;
  }

  void WritePointStreets()
  {
    writer_.Begin(SectionId::PointStreets);
    for (std::size_t ordinal = 0; ordinal < table_.rows.size(); ordinal += layout::kStreetSampling) {
      writer_.AppendNumber(table_.rows[ordinal].street);
    }
    writer_.End();
  }

  void WriteAddressAliases()
  {
    writer_.Begin(SectionId::AddressAliases);
    for (const AddressAlias& link : ordered_.aliases) {
      writer_.AppendNumber(link.alias);
      writer_.AppendNumber(link.principal);
    }
    writer_.End();
  }

  void WriteInfo(const InfoEntries& info)
  {
    writer_.Begin(SectionId::Info);
    for (const auto& [key, value] : info) {
      writer_.AppendNumber(strings_.Add(key));
      writer_.AppendNumber(strings_.Add(value));
    }
    writer_.End();
  }

  AddressTable& table_;
  const OrderedAddresses& ordered_;
  const BuildWatch& watch_;
  SectionWriter writer_;
  FileStrings strings_;
};

}  // namespace

std::uint64_t WriteIndex(OutputFile& file, AddressTable& table, const OrderedAddresses& ordered,
                         const InfoEntries& info, const BuildWatch& watch)
{
  return IndexWriter(file, table, ordered, watch).Run(info);
}

}  // namespace arf
