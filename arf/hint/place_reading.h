/**
 * The end of what was typed, read as a place: a locality of which perhaps only the beginning is there, state, postcode.
 */
#ifndef QXPAF_ARF_HINT_PLACE_READING_H
#define QXPAF_ARF_HINT_PLACE_READING_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "arf/format/database.h"
#include "arf/hint/name_tree.h"
#include "arf/hint/typed_text.h"
#include "arf/match/last_line.h"

namespace arf {

/** How well what was typed fits the data, best first. */
enum class Spelling : std::uint8_t
{
  AsTyped = 0,
  Other = 1,    ///< another way to write the same
  Mistyped = 2  ///< one typing error
};

/** One way to read some words as a place. */
struct Place
{
  static constexpr std::size_t kMaxRanges = 64;

  std::array<IndexRange, kMaxRanges> ranges;  ///< of localities; only the first `rangeCount` are set
  std::size_t rangeCount = 0;
  bool hasName = false;        ///< the ranges come from a locality's name, not from a postcode
  bool isWhole = true;         ///< no word of the name is unfinished
  std::string_view typedName;  ///< of the locality, as typed
  bool isAnywhere = true;      ///< neither name nor postcode: the ranges mean nothing
  NameSpan names;              ///< of the localities, when all of one span may be meant
  Spelling spelling = Spelling::AsTyped;
  WrittenPlace written;
  std::string_view beginningOfState;     ///< upper case; empty: none
  std::string_view beginningOfPostcode;  ///< digits; empty: none

  std::span<const IndexRange> Ranges() const { return {ranges.data(), rangeCount}; }
  bool Holds(std::uint32_t localityIndex, const Locality& locality) const;
  void Add(IndexRange range);
};

class PlaceReader
{
 public:
  explicit PlaceReader(const Database& database) : data_(database), tree_(NameTree::OfLocalities(database)) {}

  static constexpr std::size_t kMaxReadings = 8;
  using Readings = std::array<Place, kMaxReadings>;

  /**
   * All readings of the words from `first` to the end of the text, the one with the longest name first.
   *
   * @param mistyped  whether the locality's name may have a typing error; readings without one are then left out
   * @param readings  room for them; what does not fit is left out; there are never more than kMaxReadings
   * @return how many there are
   */
  std::size_t Read(const TypedText& typed, std::size_t first, bool mistyped, std::span<Place> readings) const;

  const NameTree& Tree() const { return tree_; }

 private:
  bool ReadTail(const TypedText& typed, std::size_t first, Place& place) const;
  bool ReadOpenWord(std::string_view word, bool isNumber, Place& place) const;
  bool AddPostcodes(Place& place) const;
  std::size_t ReadNames(const TypedText& typed, WordRange words, Place& place, std::span<Place> readings) const;
  bool AddMistyped(std::span<const NameTree::Found> found, Place& place) const;
  void AddAliases(Place& place) const;
  bool AddSpan(const NameSpan& span, Place& place) const;

  const Database& data_;
  NameTree tree_;
};

}  // namespace arf

#endif
