/**
 * Read access to one address database file: an immutable, checksummed, position-independent index, mapped or loaded
 * whole. Everything handed out is a view into the file's bytes and lives as long as the Database. A Database is
 * immutable after Open and may be read by any number of threads; no member allocates but Open.
 *
 * Shape of the data. Localities (name + state + postcode) hold streets, streets hold delivery points. Streets of a
 * locality and points of a street are contiguous, so a locality's streets and a street's points are index ranges, and a
 * point's place in the whole file is its ordinal. All names are upper case, single-spaced UTF-8, punctuation kept
 * ("O'CONNOR"). Localities are sorted by name key, name, state, postcode; the streets of a locality by name key, name,
 * type, suffix, with postal delivery kinds first, then what has no street name.
 *
 * Name keys. The two dictionaries of distinct names hold match keys (arf/format/fold.h): upper case, letters and digits
 * only, accents and apostrophes dropped, words single-spaced ("OCONNOR"). The functions that take a name fold it to its
 * key themselves, so "O'Connor", "OCONNOR" and "o’connor" find the same streets.
 *
 * Bounds. An index that is out of range gives an empty value (empty texts, zeros, empty ranges), never undefined
 * behaviour; so does a file whose contents contradict themselves although its checksums are right.
 */
#ifndef QXPAF_ARF_FORMAT_DATABASE_H
#define QXPAF_ARF_FORMAT_DATABASE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "arf/format/byte_reader.h"
#include "arf/format/layout.h"
#include "arf/format/point_cursor.h"

namespace arf {

inline constexpr const char* kDatabaseFileName = "address.arf";
inline constexpr const char* kVersionFileName = "PAF.ver";

/** Info entry that says where identifiers come from: the value below, or absent where the data brought them. */
inline constexpr std::string_view kIdentifiersKey = "identifiers";
inline constexpr std::string_view kMintedIdentifiers = "minted";

/** How the bytes of the file are reached; the values are those of IArfDb::Open. */
enum class OpenMode
{
  Disk = 1,    ///< mapped, nothing kept or fetched ahead once verified; pages come in as queries touch them
  Memory = 2,  ///< read into private memory; independent of the file from then on
  Mapped = 3   ///< mapped, and the kernel is asked to fetch the whole file ahead
};

/** Which checksums opening verifies. */
enum class Verification
{
  Whole,  ///< all of them, which reads the whole file
  Quick   ///< those of sections up to a mebibyte: quick whatever the file's size, and safe, as reads are bounded anyway
};

/** Why a file was refused. */
enum class OpenFailure
{
  None,
  CannotOpen,    ///< missing, not readable, not a regular file
  NotADatabase,  ///< empty, or of another kind
  WrongVersion,  ///< an older or newer format than this reader's
  Truncated,     ///< shorter than its header says
  Damaged,       ///< a checksum differs, or header or sections contradict themselves
  OutOfMemory
};

struct OpenResult
{
  OpenFailure failure = OpenFailure::None;
  std::string message;  ///< one sentence naming the file and what is wrong with it; empty on success
};

struct Locality
{
  std::string_view name;
  std::string_view state;     ///< abbreviation, "NSW"
  std::string_view postcode;  ///< four digits
  IndexRange streets;
  std::uint32_t nameIndex = 0;  ///< of the name's key among LocalityName
};

/**
 * A street of a locality; or the postal boxes of one kind there (isPostal; name is then empty, type "PO BOX"); or, with
 * neither name nor type, the points of the locality that are known by a lot or a building only.
 */
struct Street
{
  std::uint32_t index = kNoIndex;
  std::uint32_t locality = 0;
  std::string_view name;
  std::string_view type;    ///< full form, "STREET"; may be empty
  std::string_view suffix;  ///< full form, "NORTH"; may be empty
  bool isPostal = false;
  IndexRange points;                   ///< ordinals; the count is the street's number of addresses
  std::uint32_t nameIndex = kNoIndex;  ///< of the name's key among StreetName; kNoIndex where there is no name
  std::uint32_t dataOffset = 0;        ///< where the points are coded; for Points only
};

/** One section of the file, for programs that look into it. */
struct SectionInfo
{
  std::uint32_t id = 0;
  std::string_view name;  ///< "streets", …; empty for a section that this reader does not know
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
};

/** Room for the value of an attribute that is put together from parts. */
using AttributeText = std::array<char, 256>;

/** Another name of a street, or of a locality. */
struct StreetAliasEntry
{
  std::string_view key;  ///< match key of the name
  std::string_view name, type, suffix;
  std::uint32_t street = kNoIndex;
};

struct LocalityAliasEntry
{
  std::string_view key;
  std::string_view name;
  std::uint32_t locality = kNoIndex;
};

struct InfoEntry
{
  std::string_view key;
  std::string_view value;
};

class WordIndex;

class Database
{
 public:
  /** Opens directory/address.arf, verifies magic, version, sizes and checksums. */
  static std::unique_ptr<Database> Open(const std::string& directory, OpenMode mode, OpenResult& result,
                                        Verification verification = Verification::Whole);
  /**
   * Opens a database whose file the caller has in memory, at an address that is a multiple of eight; the bytes must
   * stay there unchanged as long as the Database. `name` stands for the file in messages.
   */
  static std::unique_ptr<Database> OpenBytes(std::span<const std::uint8_t> bytes, const std::string& name,
                                             OpenResult& result, Verification verification = Verification::Whole);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  std::uint32_t LocalityCount() const;
  std::uint32_t StreetCount() const;
  std::uint32_t PointCount() const;

  Locality LocalityAt(std::uint32_t index) const;
  Street StreetAt(std::uint32_t index) const;
  /** Decodes part of a block, up to PointCursor::kMaxBlockPoints points; a cursor is quicker for neighbours. */
  Point PointAt(std::uint32_t ordinal) const;
  Point PointAt(std::uint32_t ordinal, Street& street) const;  ///< tells its street as well
  std::uint32_t DpidOf(std::uint32_t ordinal) const;           ///< without decoding the point; 0 when out of range
  std::uint32_t StreetOf(std::uint32_t ordinal) const;         ///< index; kNoIndex when out of range

  /** The points of a street as StreetAt gave it, in stored order. */
  PointCursor Points(const Street& street) const;
  /**
   * The points of a street whose number is `number` or whose range contains it (either parity), in stored order;
   * number 0: the points without a number. Only the blocks that can hold one are decoded.
   */
  PointCursor PointsNumbered(const Street& street, std::uint32_t number) const;
  /** The points of a street that have a lot or a building, in stored order. */
  PointCursor PointsNamed(const Street& street) const;

  std::optional<std::uint32_t> FindDpid(std::uint32_t dpid) const;  ///< the point's ordinal

  /** Keys of the distinct locality names in ascending byte order, and the localities whose name has key n. */
  std::uint32_t LocalityNameCount() const;
  std::string_view LocalityName(std::uint32_t n) const;
  std::span<const std::uint32_t> LocalitiesNamed(std::uint32_t n) const;
  std::optional<std::uint32_t> FindLocalityName(std::string_view name) const;
  /** Distinct postcodes in ascending order, and the localities of one. */
  std::uint32_t PostcodeCount() const;
  std::string_view Postcode(std::uint32_t n) const;
  std::span<const std::uint32_t> LocalitiesOfPostcode(std::string_view postcode) const;

  /** Keys of the distinct street names in ascending byte order, and the streets whose name has key n, ascending. */
  std::uint32_t StreetNameCount() const;
  std::string_view StreetName(std::uint32_t n) const;
  std::span<const std::uint32_t> StreetsNamed(std::uint32_t n) const;
  std::optional<std::uint32_t> FindStreetName(std::string_view name) const;

  /** Keys of the distinct names of buildings in ascending byte order. */
  std::uint32_t BuildingNameCount() const;
  std::string_view BuildingName(std::uint32_t n) const;
  std::optional<std::uint32_t> FindBuildingName(std::string_view name) const;
  /** The words of all names, and the points of buildings. */
  const WordIndex& Words() const;

  /** Fields of LocalityAt and StreetAt, without the rest, which lies far apart in the file. */
  std::string_view LocalityState(std::uint32_t locality) const;
  IndexRange LocalityStreets(std::uint32_t locality) const;
  std::uint32_t LocalityNameIndex(std::uint32_t locality) const;
  std::uint32_t StreetNameIndex(std::uint32_t street) const;

  /** Those of a locality's streets that bear a name (by key), contiguous because they are sorted by it. */
  IndexRange StreetsOf(const IndexRange& localityStreets, std::string_view name) const;
  IndexRange StreetsOf(const IndexRange& localityStreets, std::uint32_t nameIndex) const;
  /** The postal delivery kinds of a locality (isPostal): the first of its streets. */
  IndexRange PostalStreetsOf(const Locality& locality) const;

  /** Localities that border on one, nearest first; at most layout::kMaxNeighbours. Empty in files without them. */
  std::span<const std::uint32_t> NeighboursOf(std::uint32_t locality) const;
  /** Other names of streets and localities, ascending by match key, and those whose key is that of `name`. */
  std::uint32_t StreetAliasCount() const;
  StreetAliasEntry StreetAliasAt(std::uint32_t index) const;
  IndexRange StreetAliasesNamed(std::string_view name) const;
  std::uint32_t LocalityAliasCount() const;
  LocalityAliasEntry LocalityAliasAt(std::uint32_t index) const;
  IndexRange LocalityAliasesNamed(std::string_view name) const;

  /** Points that are another way to say an address: how many there are, and the address that one of them says. */
  std::uint32_t AddressAliasCount() const;
  std::uint32_t AddressAliasCount(const IndexRange& points) const;
  bool IsAddressAlias(std::uint32_t ordinal) const { return PrincipalOf(ordinal) != kNoIndex; }
  std::uint32_t PrincipalOf(std::uint32_t alias) const;  ///< kNoIndex when the point is an address itself

  /** Attribute columns beyond the known ones: their names in lower case, sorted, and a point's value. */
  std::uint32_t AttributeCount() const;
  std::string_view AttributeName(std::uint32_t column) const;
  std::optional<std::uint32_t> FindAttribute(std::string_view name) const;  ///< exact, lower case
  /** The value is a part of the file, or of `text`, which then must live as long as it is used. */
  std::string_view AttributeOf(std::uint32_t ordinal, std::uint32_t column, AttributeText& text) const;

  std::string_view Info(std::string_view key) const;  ///< "name", "source", "addresses", …; empty when absent
  std::uint32_t InfoCount() const;
  InfoEntry InfoAt(std::uint32_t index) const;  ///< ascending by key

  /** The bytes of a section, for the rooms that read one by themselves; empty when the file lacks it. */
  ByteReader Section(layout::SectionId id) const;

  std::uint64_t FileSize() const;
  std::uint32_t SectionCount() const;
  SectionInfo SectionAt(std::uint32_t index) const;

 private:
  struct Impl;
  void ReadStreet(std::uint32_t index, Street& street) const;
  explicit Database(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace arf

#endif
