#include "faults/broken_files.h"

#include <algorithm>

#include "arf/format/file_view.h"

namespace arf_test {
namespace {

namespace layout = arf::layout;
using arf::OpenFailure;

/** Changes a copy of the good file; its caller then has the checksums made right or not. */
using Change = void (*)(Bytes& bytes);

struct HeaderDefect
{
  const char* name;
  OpenFailure failure;
  const char* message;
  bool isResealed;
  Change change;
};

constexpr const char* kContradiction = "damaged: the header contradicts itself";

const HeaderDefect kHeaderDefects[] = {
    {"magic_other", OpenFailure::NotADatabase, "not an address database", false, [](Bytes& b) { b[1] = 'X'; }},
    {"magic_line_ends_changed", OpenFailure::NotADatabase, "not an address database", false,
     [](Bytes& b) { b.erase(b.begin() + 4); }},
    {"magic_eighth_bit_cut", OpenFailure::NotADatabase, "not an address database", false,
     [](Bytes& b) { b[0] &= 0x7F; }},
    {"version_older", OpenFailure::WrongVersion,
     "wrong version: format 2 is older than format 3, which this program reads", true,
     [](Bytes& b) { Put<std::uint16_t>(b, layout::header::kMajor, 2); }},
    {"version_newer", OpenFailure::WrongVersion,
     "wrong version: format 4 is newer than format 3, which this program reads", true,
     [](Bytes& b) { Put<std::uint16_t>(b, layout::header::kMajor, 4); }},
    {"header_length_wrong", OpenFailure::Damaged, kContradiction, true,
     [](Bytes& b) {
       Put(b, layout::header::kHeaderLength, Get<std::uint32_t>(b, layout::header::kHeaderLength) + 64);
     }},
    {"header_length_zero", OpenFailure::Damaged, kContradiction, true,
     [](Bytes& b) { Put<std::uint32_t>(b, layout::header::kHeaderLength, 0); }},
    {"section_count_huge", OpenFailure::Damaged, kContradiction, true,
     [](Bytes& b) { Put<std::uint32_t>(b, layout::header::kSectionCount, UINT32_MAX); }},
    {"section_count_too_small", OpenFailure::Damaged, kContradiction, true,
     [](Bytes& b) { Put<std::uint32_t>(b, layout::header::kSectionCount, 2); }},
    {"header_checksum_wrong", OpenFailure::Damaged, "damaged: the checksum of the header differs", false,
     [](Bytes& b) { b[layout::header::kChecksum] ^= 1; }},
    {"header_padding_not_zero", OpenFailure::Damaged, "damaged: the checksum of the header differs", false,
     [](Bytes& b) { b[Get<std::uint32_t>(b, layout::header::kHeaderLength) - 1] = 1; }},
    {"localities_one_more", OpenFailure::Damaged, "damaged: the section \"localities\" has the wrong length", true,
     [](Bytes& b) { ++b[layout::header::kLocalityCount]; }},
    {"streets_one_more", OpenFailure::Damaged, "damaged: the section \"streets\" has the wrong length", true,
     [](Bytes& b) { ++b[layout::header::kStreetCount]; }},
    {"points_one_more", OpenFailure::Damaged, "damaged: the section \"dpids\" has the wrong length", true,
     [](Bytes& b) { ++b[layout::header::kPointCount]; }},
    {"points_far_too_many", OpenFailure::Damaged, "damaged: the section \"point streets\" has the wrong length", true,
     [](Bytes& b) { Put(b, layout::header::kPointCount, UINT32_MAX); }},
    {"blocks_of_no_points", OpenFailure::Damaged, "damaged: the header gives blocks of 0 points", true,
     [](Bytes& b) { Put<std::uint32_t>(b, layout::header::kBlockPoints, 0); }},
    {"blocks_too_large", OpenFailure::Damaged, "damaged: the header gives blocks of 257 points", true,
     [](Bytes& b) { Put<std::uint32_t>(b, layout::header::kBlockPoints, 257); }},
    {"sections_overlap", OpenFailure::Damaged, "damaged: the section \"streets\" is not where it should be", true,
     [](Bytes& b) {
       Put(b, EntryOf(b, SectionId::Streets) + layout::entry::kOffset,
           std::uint64_t{OffsetOf(b, SectionId::Streets) - 64});
     }},
    {"section_offset_huge", OpenFailure::Damaged, "damaged: the section \"points\" is not where it should be", true,
     [](Bytes& b) { Put(b, EntryOf(b, SectionId::Points) + layout::entry::kOffset, UINT64_MAX - 63); }},
    {"section_length_huge", OpenFailure::Damaged, "damaged: the section \"points\" is not where it should be", true,
     [](Bytes& b) { Put(b, EntryOf(b, SectionId::Points) + layout::entry::kLength, UINT64_MAX); }},
    {"section_length_wraps", OpenFailure::Damaged, "damaged: the section \"points\" is not where it should be", true,
     [](Bytes& b) {
       Put(b, EntryOf(b, SectionId::Points) + layout::entry::kLength, UINT64_MAX - OffsetOf(b, SectionId::Points) + 1);
     }},
    {"section_twice", OpenFailure::Damaged, "damaged: there are two sections \"dpids\"", true,
     [](Bytes& b) { Put(b, EntryOf(b, SectionId::Points), static_cast<std::uint32_t>(SectionId::Dpids)); }},
    {"strings_count_huge", OpenFailure::Damaged, "damaged: the section \"strings\" is shorter than its table", true,
     [](Bytes& b) { Put(b, OffsetOf(b, SectionId::Strings), UINT32_MAX); }},
    {"dpid_index_low_bits_too_many", OpenFailure::Damaged, "damaged: the section \"dpid index\" contradicts itself",
     true, [](Bytes& b) { Put<std::uint32_t>(b, OffsetOf(b, SectionId::DpidIndex), 28); }},
    {"dpid_index_low_bits_other", OpenFailure::Damaged, "damaged: the section \"dpid index\" contradicts itself", true,
     [](Bytes& b) { --b[OffsetOf(b, SectionId::DpidIndex)]; }},
    {"dpid_index_bucket_count_wrong", OpenFailure::Damaged, "damaged: the section \"dpid index\" contradicts itself",
     true, [](Bytes& b) { ++b[OffsetOf(b, SectionId::DpidIndex) + layout::dpid_index::kBucketCount]; }},
};

/** Contradictions inside sections, which only the accessors meet. */
struct ContentDefect
{
  const char* name;
  SectionId section;
  std::size_t at;       ///< from the beginning of the section
  std::uint32_t value;  ///< put there
};

constexpr std::uint32_t kHuge = UINT32_MAX;

const ContentDefect kContentDefects[] = {
    {"info_string_out_of_range", SectionId::Info, 0, kHuge},
    {"string_begins_behind_its_end", SectionId::Strings, 8, kHuge},
    {"strings_end_outside", SectionId::Strings, 12, 0x7FFFFFFF},
    {"locality_name_out_of_range", SectionId::Localities, layout::locality::kName, kHuge},
    {"locality_name_index_out_of_range", SectionId::Localities, layout::locality::kNameIndex, kHuge - 1},
    {"locality_streets_out_of_range", SectionId::Localities, layout::locality::kFirstStreet, kHuge},
    {"locality_streets_descend", SectionId::Localities, layout::locality::kSize + layout::locality::kFirstStreet, 0},
    {"locality_name_string_out_of_range", SectionId::LocalityNames, 0, kHuge},
    {"locality_postings_out_of_range", SectionId::LocalityNames, layout::name::kFirstPosting, kHuge},
    {"locality_posting_out_of_range", SectionId::LocalityPostings, 0, kHuge},
    {"postcode_string_out_of_range", SectionId::Postcodes, 0, kHuge},
    {"postcode_posting_out_of_range", SectionId::PostcodePostings, 0, kHuge},
    {"street_class_string_out_of_range", SectionId::StreetClasses, 0, kHuge},
    {"street_name_out_of_range", SectionId::Streets, layout::street::kName, kHuge},
    {"street_name_index_out_of_range", SectionId::Streets, layout::street::kNameIndex, kHuge - 1},
    {"street_locality_out_of_range", SectionId::Streets, layout::street::kLocality, kHuge},
    {"street_points_out_of_range", SectionId::Streets, layout::street::kFirstPoint, kHuge},
    {"street_holds_all_points", SectionId::Streets, layout::street::kSize + layout::street::kFirstPoint, kHuge},
    {"street_data_outside", SectionId::Streets, layout::street::kDataOffset, kHuge},
    {"street_class_out_of_range", SectionId::Streets, layout::street::kClass, kHuge},
    {"street_name_string_out_of_range", SectionId::StreetNames, 0, kHuge},
    {"street_postings_descend", SectionId::StreetNames, layout::name::kSize + layout::name::kFirstPosting, kHuge},
    {"street_posting_out_of_range", SectionId::StreetPostings, 0, kHuge},
    {"points_endless_number", SectionId::Points, 0, 0x80808080},
    {"points_every_flag", SectionId::Points, 9, kHuge},
    {"point_street_out_of_range", SectionId::PointStreets, 0, kHuge},
    {"dpid_bucket_out_of_range", SectionId::DpidIndex, layout::dpid_index::kNumbers, kHuge},
    {"dpid_beyond_all", SectionId::Dpids, 4, kHuge},
    {"dpids_zero", SectionId::Dpids, 4, 0},
    {"dpid_buckets_descend", SectionId::DpidIndex, layout::dpid_index::kNumbers + 40, 0},
    {"attribute_name_out_of_range", SectionId::AttributeColumns, layout::attribute::kName, kHuge},
    {"attribute_bits_33", SectionId::AttributeColumns, layout::attribute::kBits, 33},
    {"attribute_bits_huge", SectionId::AttributeColumns, layout::attribute::kBits, kHuge},
    {"attribute_bits_32", SectionId::AttributeColumns, layout::attribute::kBits, 32},
    {"attribute_values_huge", SectionId::AttributeColumns, layout::attribute::kValueCount, kHuge},
    {"attribute_text_length_huge", SectionId::AttributeColumns, layout::attribute::kTextLength + 4, kHuge},
    {"attribute_text_outside", SectionId::AttributeColumns, layout::attribute::kTextOffset + 4, kHuge},
    {"attribute_codes_outside", SectionId::AttributeColumns, layout::attribute::kCodesOffset + 4, kHuge},
    {"attribute_value_offset_huge", SectionId::AttributeData, 4, kHuge},
};

std::string Named(SectionId id)
{
  std::string label = arf::SectionLabel(static_cast<std::uint32_t>(id));
  std::replace(label.begin(), label.end(), ' ', '_');
  return "section_" + label;
}

std::string Quoted(SectionId id)
{
  return std::string("\"").append(arf::SectionLabel(static_cast<std::uint32_t>(id))).append("\"");
}

/** Missing, cut short by a byte, damaged in its last byte or in the zeros behind it: for each section. */
void BreakSection(const Bytes& good, SectionId id, std::vector<BrokenFile>& files)
{
  Bytes missing = good;
  Put<std::uint32_t>(missing, EntryOf(good, id), 4711);
  Reseal(missing);
  files.push_back(
      {Named(id) + "_missing", OpenFailure::Damaged, "damaged: the section " + Quoted(id) + " is missing", missing});
  Bytes wrongSum = good;
  wrongSum[EntryOf(good, id) + layout::entry::kChecksum] ^= 1;
  ResealHeader(wrongSum);
  files.push_back({Named(id) + "_checksum_wrong", OpenFailure::Damaged,
                   "damaged: the checksum of the section " + Quoted(id) + " differs", wrongSum});
  if (LengthOf(good, id) == 0) return;
  Bytes lastByte = good;
  lastByte[OffsetOf(good, id) + LengthOf(good, id) - 1] ^= 0x80;
  files.push_back({Named(id) + "_last_byte", OpenFailure::Damaged,
                   "damaged: the checksum of the section " + Quoted(id) + " differs", lastByte});
  const bool hasRecords = id != SectionId::Strings && id != SectionId::Points && id != SectionId::AttributeData;
  if (!hasRecords) return;
  const auto begin = good.begin() + static_cast<std::ptrdiff_t>(OffsetOf(good, id));
  const Bytes content(begin, begin + static_cast<std::ptrdiff_t>(LengthOf(good, id)) - 1);
  files.push_back({Named(id) + "_short_by_a_byte", OpenFailure::Damaged,
                   "damaged: the section " + Quoted(id) + " has the wrong length", WithSection(good, id, content)});
}

/** Sizes that are not the header's. */
void BreakSize(const Bytes& good, std::vector<BrokenFile>& files)
{
  const auto commas = [](std::size_t number) {
    std::string digits = std::to_string(number);
    if (digits.size() > 3) digits.insert(digits.size() - 3, 1, ',');
    return digits;
  };
  const auto sizes = [&](std::size_t has) {
    return "header says " + commas(good.size()) + " bytes, file has " + commas(has);
  };
  Bytes half(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(good.size() / 2));
  files.push_back({"truncated_in_the_middle", OpenFailure::Truncated, "truncated: " + sizes(half.size()), half});
  Bytes headerOnly(good.begin(), good.begin() + layout::header::kSize);
  files.push_back({"truncated_behind_the_header", OpenFailure::Truncated, "truncated: " + sizes(64), headerOnly});
  Bytes longer = good;
  longer.resize(good.size() + 64);
  files.push_back({"longer_than_it_says", OpenFailure::Damaged, "damaged: " + sizes(longer.size()), longer});
  Put(longer, layout::header::kFileSize, std::uint64_t{longer.size()});
  ResealHeader(longer);
  files.push_back({"gap_at_the_end", OpenFailure::Damaged, "damaged: the sections do not fill the file", longer});
}

}  // namespace

std::vector<BrokenFile> BreakFile(const Bytes& good)
{
  std::vector<BrokenFile> files;
  for (const HeaderDefect& defect : kHeaderDefects) {
    Bytes bytes = good;
    defect.change(bytes);
    if (defect.isResealed) Reseal(bytes);
    files.push_back({defect.name, defect.failure, defect.message, bytes});
  }
  for (std::uint32_t id = 1; id <= layout::kRequiredSections; ++id) BreakSection(good, SectionId{id}, files);
  BreakSize(good, files);
  files.push_back({"attribute_columns_too_many", OpenFailure::Damaged, "damaged: there are too many attribute columns",
                   WithSection(good, SectionId::AttributeColumns,
                               Bytes((layout::attribute::kMaxColumns + 1) * layout::attribute::kSize))});
  for (const ContentDefect& defect : kContentDefects) {
    Bytes bytes = good;
    Put(bytes, OffsetOf(good, defect.section) + defect.at, defect.value);
    Reseal(bytes);
    files.push_back({std::string("contents_") + defect.name, OpenFailure::None, "", bytes});
  }
  return files;
}

}  // namespace arf_test
