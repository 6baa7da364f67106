/**
 * Delivery points as they come out of an address database, and the cursor that walks those of one street.
 */
#ifndef QXPAF_ARF_FORMAT_POINT_CURSOR_H
#define QXPAF_ARF_FORMAT_POINT_CURSOR_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "arf/format/byte_reader.h"

namespace arf {

/** A half-open range of indexes. */
struct IndexRange
{
  std::uint32_t first = 0;
  std::uint32_t count = 0;
};

/** "None" where an index is optional. */
inline constexpr std::uint32_t kNoIndex = UINT32_MAX;

/** Coordinates are degrees × 1,000,000; kNoCoordinate where the source has none. A point has both or neither. */
inline constexpr std::int32_t kNoCoordinate = INT32_MIN;

struct Point
{
  std::uint32_t ordinal = 0;
  std::uint32_t street = 0;
  std::uint32_t dpid = 0;
  std::uint32_t numberFirst = 0;  ///< 0 where there is none; of a postal delivery, its number
  std::uint32_t numberLast = 0;   ///< 0 unless a range
  std::string_view numberPrefix;  ///< letters before a postal number, "C" of "GPO BOX C96"; empty for streets
  std::string_view numberFirstSuffix;
  std::string_view numberLastSuffix;
  std::string_view unitType;    ///< full form, "UNIT"
  std::string_view unitNumber;  ///< as text: "3", "12A", "G07"
  std::string_view levelType;   ///< full form, "LEVEL"
  std::string_view levelNumber;
  std::string_view lot;
  std::string_view building;
  std::int32_t latitude = kNoCoordinate;
  std::int32_t longitude = kNoCoordinate;
};

struct FileView;

/**
 * Walks the points of a street in stored order: number, number prefix, number suffix, range end and its suffix, then
 * unit number, unit type, level number, level type, lot, building, DPID. Texts compare by the value of their digit runs
 * ("2" before "10"), none before some. A small value type; valid as long as the database that made it.
 */
class PointCursor
{
 public:
  static constexpr std::uint32_t kMaxBlockPoints = 256;  ///< the largest block that a file may use

  PointCursor() = default;

  /** The next point; false at the end, the point then left alone. */
  bool Next(Point& point);

 private:
  friend class Database;

  /** What is none again where another number begins; texts as string numbers. */
  struct Premise
  {
    std::uint32_t numberLast = 0;
    std::uint32_t numberPrefix = 0, numberFirstSuffix = 0, numberLastSuffix = 0;
    std::uint32_t unitType = 0, unitNumber = 0, levelType = 0, levelNumber = 0, lot = 0, building = 0;
  };

  /** What a point inherits from the one before it in its block. */
  struct State
  {
    std::uint32_t numberFirst = 0;
    Premise premise;
    std::uint32_t latitude = 0, longitude = 0;  ///< unsigned, so that sums of a broken file wrap round
    bool located = false;
  };

  PointCursor(const FileView& file, ByteReader data, std::uint32_t street, IndexRange points);
  /** Moves to the point at `place` of the street and decodes it. */
  bool Seek(std::uint32_t place);
  std::uint32_t BlockCount() const;
  std::uint32_t BlockField(std::uint32_t block, std::size_t field) const;
  bool EnterBlock();
  bool SkipToWantedBlock();
  void OpenBlock();
  static void Decode(ByteReader& block, State& state);
  static void DecodeHead(ByteReader& block, State& state);
  bool IsWanted() const;
  void Fill(Point& point) const;

  const FileView* file_ = nullptr;
  ByteReader table_;   ///< the block table; empty when the street has one block
  ByteReader blocks_;  ///< all blocks
  ByteReader block_;   ///< what is left of the block being decoded
  State start_;        ///< what the first point of a block inherits
  State state_;
  std::uint32_t street_ = 0;
  IndexRange points_;
  std::uint32_t nextBlock_ = 0;
  std::uint32_t next_ = 0;           ///< place in the street of the next point to decode
  std::uint32_t blockEnd_ = 0;       ///< place in the street of the first point behind the block
  std::uint32_t wanted_ = kNoIndex;  ///< the number to narrow to; kNoIndex: all points
  bool onlyNamed_ = false;           ///< narrow to points with a lot or a building
};

}  // namespace arf

#endif
