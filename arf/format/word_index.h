/**
 * The words that names consist of, and the buildings' names: a section of the file. A word leads to the street names,
 * locality names and buildings that have it, a building to its points.
 *
 * An index is a view: opening it compares a few numbers. Whatever the bytes are, nothing outside the section is read;
 * what the index answers may be out of the range of the database, whose functions then answer nothing.
 */
#ifndef QXPAF_ARF_FORMAT_WORD_INDEX_H
#define QXPAF_ARF_FORMAT_WORD_INDEX_H

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arf/format/byte_reader.h"
#include "arf/format/file_view.h"

namespace arf {

/** What has words. Numbers are indexes of Database::StreetName, of Database::LocalityName, or of Building. */
enum class Named : std::uint8_t
{
  Street,
  Locality,
  Building
};
inline constexpr std::size_t kNamedKinds = 3;

class WordIndex
{
 public:
  /** @param section  its bytes; empty, or anything that is no index, gives one without words */
  explicit WordIndex(ByteReader section);

  /** Words of match keys, ascending. */
  std::uint32_t WordCount() const { return words_.count; }
  std::string_view Word(std::uint32_t i) const { return words_.At(i); }
  std::optional<std::uint32_t> Find(std::string_view word) const;
  IndexRange WithPrefix(std::string_view prefix) const;
  /**
   * Words that one typing error turns into the given one: a letter wrong, missing, too many, or two swapped. Letters
   * are those from A to Z; words of more than kLongestMistyped bytes have none.
   *
   * @param found  receives the first so many, by the place of the error
   * @return       how many it received
   */
  std::size_t Mistyped(std::string_view word, std::span<std::uint32_t> found) const;
  static constexpr std::size_t kLongestMistyped = 40;
  /** The names of a kind that have a word, ascending. */
  std::span<const std::uint32_t> NamesWith(Named kind, std::uint32_t word) const;

  /** Match keys of the buildings' names, ascending, and the ordinals of the points of each, ascending. */
  std::uint32_t BuildingCount() const { return buildings_.count; }
  std::string_view Building(std::uint32_t i) const { return buildings_.At(i); }
  std::span<const std::uint32_t> PointsOf(std::uint32_t building) const;

 private:
  std::uint32_t FirstFrom(IndexRange range, std::string_view word) const;
  IndexRange WithPrefix(IndexRange range, std::string_view prefix) const;

  /** Lists of numbers, one for each of some things: where each begins, then all of them. */
  struct Lists
  {
    std::span<const std::uint32_t> starts;
    std::span<const std::uint32_t> numbers;
    std::span<const std::uint32_t> At(std::uint32_t i) const;
  };

  TextTable words_, buildings_;
  Lists points_;
  std::array<Lists, kNamedKinds> names_;
};

}  // namespace arf

#endif
