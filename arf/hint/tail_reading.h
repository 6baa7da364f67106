/**
 * What stands behind a street's name in a text that is being typed: perhaps a type and a suffix, and perhaps a place.
 * One search asks for the same words again and again, so everything is read once and kept until the next text.
 */
#ifndef QXPAF_ARF_HINT_TAIL_READING_H
#define QXPAF_ARF_HINT_TAIL_READING_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arf/format/database.h"
#include "arf/hint/place_reading.h"
#include "arf/hint/typed_text.h"

namespace arf {

/** Type and suffix of a street; texts as typed, and their full forms from the tables if they have one. */
struct TypedEnding
{
  std::string_view type;
  std::string_view fullType;
  bool isTypeOpen = false;
  std::string_view suffix;
  std::string_view fullSuffix;
  bool isSuffixOpen = false;
  bool Fits(std::string_view streetType, std::string_view streetSuffix) const;
};

/** One reading of the words behind a name. */
struct TypedTail
{
  TypedEnding ending;
  bool hasPlace = false;  ///< false: the text ends before it
  std::span<const Place> places;
};

/** Lists of readings by the word at which they begin, those with a typing error apart; all in the object itself. */
template <class Reading, std::size_t kRoom>
class ReadingMemo
{
 public:
  void Clear()
  {
    lists_ = {};
    used_ = 0;
  }

  std::optional<std::span<const Reading>> Find(std::size_t first, bool mistyped) const
  {
    const List& list = lists_[mistyped][first];
    if (!list.isKnown) return std::nullopt;
    return std::span(readings_).subspan(list.first, list.count);
  }

  /** Room for the next list; what does not go into it is lost. */
  std::span<Reading> Room() { return std::span(readings_).subspan(used_); }

  /** Keeps the first `count` of Room() as the list of a word. */
  std::span<const Reading> Keep(std::size_t first, bool mistyped, std::size_t count)
  {
    lists_[mistyped][first] = {true, static_cast<std::uint16_t>(used_), static_cast<std::uint16_t>(count)};
    used_ += count;
    return std::span(readings_).subspan(used_ - count, count);
  }

 private:
  struct List
  {
    bool isKnown = false;
    std::uint16_t first = 0;
    std::uint16_t count = 0;
  };

  std::array<std::array<List, kMaxInputWords + 1>, 2> lists_;
  std::array<Reading, kRoom> readings_;
  std::size_t used_ = 0;
};

class TailReader
{
 public:
  /** @param database  must outlive the reader */
  explicit TailReader(const Database& database) : placeReader_(database) {}

  /** Forgets what was read and starts with a text, which must stay until the next one. */
  void Start(const TypedText& typed);

  /** PlaceReader::Read. */
  std::span<const Place> Places(std::size_t first, bool mistyped);

  /**
   * All readings of the words from `first` to the end of the text. With `mistyped` only those whose place has a typing
   * error, otherwise only those without one.
   */
  std::span<const TypedTail> Read(std::size_t first, bool mistyped);

  const PlaceReader& Reader() const { return placeReader_; }

 private:
  class Collector;

  PlaceReader placeReader_;
  const TypedText* typed_ = nullptr;
  ReadingMemo<Place, 64> places_;
  ReadingMemo<TypedTail, 128> tails_;
};

}  // namespace arf

#endif
