/**
 * The layout of a database file in numbers; docs/index-format.md explains it. All numbers are little-endian.
 */
#ifndef QXPAF_ARF_FORMAT_LAYOUT_H
#define QXPAF_ARF_FORMAT_LAYOUT_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace arf::layout {

/** Not text, and broken visibly by transfers that change line ends, cut the eighth bit or stop at end-of-file marks. */
inline constexpr std::array<std::uint8_t, 8> kMagic = {0x89, 'A', 'R', 'F', '\r', '\n', 0x1A, '\n'};
inline constexpr std::uint16_t kMajorVersion = 3;  ///< a reader refuses any other
inline constexpr std::uint16_t kMinorVersion = 0;  ///< later minor versions only add sections
inline constexpr std::uint32_t kAlignment = 64;    ///< of sections and of the file's end; the gaps are zero

namespace header {
inline constexpr std::size_t kMajor = 8;
inline constexpr std::size_t kMinor = 10;
inline constexpr std::size_t kHeaderLength = 12;  ///< up to the first section; what the header checksum covers
inline constexpr std::size_t kFileSize = 16;
inline constexpr std::size_t kSectionCount = 24;
inline constexpr std::size_t kLocalityCount = 28;
inline constexpr std::size_t kStreetCount = 32;
inline constexpr std::size_t kPointCount = 36;
inline constexpr std::size_t kBlockPoints = 40;
inline constexpr std::size_t kChecksum = 56;  ///< taken with these eight bytes zero
inline constexpr std::size_t kSize = 64;      ///< the section table follows
}  // namespace header

namespace entry {
inline constexpr std::size_t kId = 0;
inline constexpr std::size_t kOffset = 8;
inline constexpr std::size_t kLength = 16;
inline constexpr std::size_t kChecksum = 24;  ///< of the section and the zeros up to the next one
inline constexpr std::size_t kSize = 32;
}  // namespace entry

inline constexpr std::uint32_t kMaxSections = 1024;

/**
 * Section ids. The first kRequiredSections are in every file; a file may lack the others, which read as empty then. A
 * reader passes over ids that it does not know.
 */
enum class SectionId : std::uint32_t
{
  Info = 1,
  Strings = 2,
  Localities = 3,
  LocalityNames = 4,
  LocalityPostings = 5,
  Postcodes = 6,
  PostcodePostings = 7,
  StreetClasses = 8,
  Streets = 9,
  StreetNames = 10,
  StreetPostings = 11,
  Points = 12,
  PointStreets = 13,
  Dpids = 14,
  DpidIndex = 15,
  AttributeColumns = 16,
  AttributeData = 17,
  LocalityNameHash = 18,
  StreetNameHash = 19,
  SpatialTree = 20,
  StreetAliases = 21,
  Neighbours = 22,
  LocalityAliases = 23,
  HintTree = 24,
  HintWeights = 25,
  LocalitySignatures = 26,
  StreetSignatures = 27,
  BuildingNames = 28,
  PostalLists = 29,
  AddressAliases = 30,
  BuildingNameHash = 31
};
inline constexpr std::size_t kRequiredSections = 17;
inline constexpr std::size_t kSectionIds = 31;

/** Names of the sections, the first being that of id 1. */
inline constexpr std::array<std::string_view, kSectionIds> kSectionNames = {"info",
                                                                            "strings",
                                                                            "localities",
                                                                            "locality names",
                                                                            "locality postings",
                                                                            "postcodes",
                                                                            "postcode postings",
                                                                            "street classes",
                                                                            "streets",
                                                                            "street names",
                                                                            "street postings",
                                                                            "points",
                                                                            "point streets",
                                                                            "dpids",
                                                                            "dpid index",
                                                                            "attribute columns",
                                                                            "attribute data",
                                                                            "locality name hash",
                                                                            "street name hash",
                                                                            "spatial tree",
                                                                            "street aliases",
                                                                            "neighbours",
                                                                            "locality aliases",
                                                                            "hint tree",
                                                                            "hint weights",
                                                                            "locality signatures",
                                                                            "street signatures",
                                                                            "building names",
                                                                            "postal lists",
                                                                            "address aliases",
                                                                            "building name hash"};

/** The name of a free slot of a name hash, whose slots are pairs of hash and name. */
inline constexpr std::uint32_t kFreeSlot = UINT32_MAX;

namespace locality {
inline constexpr std::size_t kName = 0;
inline constexpr std::size_t kState = 4;
inline constexpr std::size_t kPostcode = 8;
inline constexpr std::size_t kNameIndex = 12;
inline constexpr std::size_t kFirstStreet = 16;
inline constexpr std::size_t kSize = 20;
}  // namespace locality

namespace street {
inline constexpr std::size_t kName = 0;
inline constexpr std::size_t kNameIndex = 4;
inline constexpr std::size_t kLocality = 8;
inline constexpr std::size_t kFirstPoint = 12;
inline constexpr std::size_t kDataOffset = 16;
inline constexpr std::size_t kClass = 20;
inline constexpr std::size_t kSize = 24;
}  // namespace street

namespace street_class {
inline constexpr std::size_t kType = 0;
inline constexpr std::size_t kSuffix = 4;
inline constexpr std::size_t kIsPostal = 8;
inline constexpr std::size_t kSize = 12;
}  // namespace street_class

/** Entries of the name dictionaries and of the postcodes. */
namespace name {
inline constexpr std::size_t kText = 0;
inline constexpr std::size_t kFirstPosting = 4;
inline constexpr std::size_t kSize = 8;
}  // namespace name

/** Entries of a street's block table, which streets of more than one block have. */
namespace block {
inline constexpr std::size_t kEnd = 0;          ///< where the block ends, counted from the end of the table
inline constexpr std::size_t kFirstNumber = 4;  ///< number of the first point
inline constexpr std::size_t kMaxNumber = 8;    ///< the highest number that a point or range of the block reaches
inline constexpr std::size_t kReach = 12;       ///< the highest that a block reaches up to and with this one
inline constexpr std::size_t kSize = 16;
}  // namespace block

/** Flags before each point: what differs from the point before it in its block. */
namespace point {
inline constexpr std::uint32_t kHead = 1;  ///< another number (a head follows; unit … building start empty again)
inline constexpr std::uint32_t kMoved = 2;
inline constexpr std::uint32_t kUnitNumber = 4;
inline constexpr std::uint32_t kUnitType = 8;
inline constexpr std::uint32_t kBuilding = 16;
inline constexpr std::uint32_t kLot = 32;
inline constexpr std::uint32_t kLevel = 64;
inline constexpr std::uint32_t kUnlocated = 128;
}  // namespace point

/** A head is a varint (number increment × 2 + 1 if one of these follows), then a varint of these, then their values. */
namespace head {
inline constexpr std::uint32_t kPrefix = 1;
inline constexpr std::uint32_t kFirstSuffix = 2;
inline constexpr std::uint32_t kLast = 4;
inline constexpr std::uint32_t kLastSuffix = 8;
}  // namespace head

/** Every kStreetSampling-th ordinal's street is in PointStreets. */
inline constexpr std::uint32_t kStreetSampling = 64;

/** Numbers of a fixed width, the first in the lowest bits: four bytes for each 32 bits begun, and zeros behind them. */
inline constexpr std::size_t kPackedPadding = 8;
constexpr std::uint64_t PackedSize(std::uint64_t count, std::uint32_t bits)
{
  return (count * bits / 32 + 1) * sizeof(std::uint32_t) + kPackedPadding;
}
constexpr std::uint32_t BitsForNumbersTo(std::uint32_t highest)
{
  return static_cast<std::uint32_t>(std::bit_width(highest));
}

inline constexpr std::uint32_t kDpidBits = 27;  ///< of the packed numbers in Dpids

namespace dpid_index {
inline constexpr std::size_t kLowBits = 0;  ///< a bucket holds the DPIDs that agree in all but the low bits
inline constexpr std::size_t kBucketCount = 4;
inline constexpr std::size_t kNumbers = 8;  ///< packed: bucketCount + 1 starts, then the ordinals by their DPIDs
inline constexpr std::uint32_t kMaxDpid = 99999999;
inline constexpr std::uint32_t kMaxLowBits = 27;
static_assert(kMaxDpid >> kDpidBits == 0);
}  // namespace dpid_index

namespace attribute {
inline constexpr std::size_t kName = 0;
inline constexpr std::size_t kBits = 4;  ///< width of a point's code, up to 32, or one of the kinds below
inline constexpr std::size_t kValueCount = 8;
inline constexpr std::size_t kTextLength = 16;   ///< of the values' table: valueCount + 1 offsets, then the texts
inline constexpr std::size_t kTextOffset = 24;   ///< in AttributeData
inline constexpr std::size_t kCodesOffset = 32;  ///< in AttributeData; packed codes, eight bytes of zeros behind
inline constexpr std::size_t kSize = 40;
inline constexpr std::uint32_t kDirect = 255;   ///< the code is the ordinal
inline constexpr std::uint32_t kDeltas = 254;   ///< codes in blocks of differences
inline constexpr std::uint32_t kNumbers = 253;  ///< so too; the table has what stands in front of numbers, with ranges
inline constexpr std::uint32_t kMaxColumns = 1024;
inline constexpr std::uint32_t kDeltaBlock = 64;  ///< points a block of differences; each has a beginning of four bytes
inline constexpr std::size_t kMaxFront = 200;     ///< the longest text in front of numbers
/** A range of kNumbers: the first code of a text, ascending, and the number (one more than shown, 0 for none) there. */
namespace range {
inline constexpr std::size_t kFirstCode = 0;
inline constexpr std::size_t kFirstNumber = 8;
inline constexpr std::size_t kSize = 16;
}  // namespace range
}  // namespace attribute

/** Entries of StreetAliases, ascending by the text of the match key, then by street. */
namespace street_alias {
inline constexpr std::size_t kKey = 0;
inline constexpr std::size_t kName = 4;
inline constexpr std::size_t kType = 8;
inline constexpr std::size_t kSuffix = 12;
inline constexpr std::size_t kStreet = 16;
inline constexpr std::size_t kSize = 20;
}  // namespace street_alias

/** Entries of LocalityAliases, ascending by the text of the match key, then by locality. */
namespace locality_alias {
inline constexpr std::size_t kKey = 0;
inline constexpr std::size_t kName = 4;
inline constexpr std::size_t kLocality = 8;
inline constexpr std::size_t kSize = 12;
}  // namespace locality_alias

/** Entries of AddressAliases, ascending by alias; both are ordinals. */
namespace address_alias {
inline constexpr std::size_t kAlias = 0;
inline constexpr std::size_t kPrincipal = 4;
inline constexpr std::size_t kSize = 8;
}  // namespace address_alias

inline constexpr std::size_t kMaxNeighbours = 24;  ///< of a locality

inline constexpr std::size_t kInfoEntrySize = 8;  ///< key and value, string numbers

constexpr std::uint64_t Aligned(std::uint64_t size)
{
  return (size + kAlignment - 1) / kAlignment * kAlignment;
}

}  // namespace arf::layout

#endif
