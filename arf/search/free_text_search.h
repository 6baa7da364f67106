/**
 * Addresses by words in any order: of street, locality and building, with type, number, unit, state and postcode.
 *
 * Each word has a weight, more the fewer names have it; a word that no name has stands for those that begin with it, at
 * half the weight, and for those that one typing error turns into it, at a third. Streets, localities and buildings
 * collect the weights of the words that lead to them, less a little for words of their names that were not written; a
 * street also for its type, and for a house number and unit that it has. They are answered by descending weight, then
 * number of addresses, then order of the file, down to half the weight of the best. An address is answered once. A
 * state's code (NT, not NORTHERN TERRITORY) leaves out all others. A kind of postal delivery (GPO BOX) stands for the
 * boxes of the localities written, and for those of the largest localities.
 *
 * The work is bounded whatever the text is; all memory is taken by the first search.
 */
#ifndef QXPAF_ARF_SEARCH_FREE_TEXT_SEARCH_H
#define QXPAF_ARF_SEARCH_FREE_TEXT_SEARCH_H

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "arf/format/database.h"
#include "arf/format/word_index.h"
#include "arf/hint/postal_lists.h"
#include "arf/match/input_text.h"
#include "arf/spatial/point_filter.h"

namespace arf {

class FreeTextSearch
{
 public:
  /** @param database  must outlive the search */
  explicit FreeTextSearch(const Database& database);

  /**
   * Starts an enumeration; words behind the sixteenth do not count.
   *
   * @param filter  must outlive the enumeration; null takes all
   * @return a fault ends the enumeration that ran
   */
  InputFault Start(std::string_view text, PointFilter* filter);
  void Reset() { isStarted_ = false; }
  bool IsStarted() const { return isStarted_; }

  /** The address whose turn it is; null at the end. It stays the same until Advance. */
  const Point* Current() const { return atPoint_ ? &point_ : nullptr; }
  void Advance();

 private:
  /** Words of the text, one bit each; kMaxWords above it is the bit of the word as a mistyped one. */
  using WordMask = std::uint32_t;
  static constexpr std::size_t kMaxWords = 16;
  static constexpr std::size_t kMaxMistyped = 16;
  static constexpr std::size_t kMaxNumbers = 4;

  struct QueryWord
  {
    std::string_view text;
    std::string_view streetType;  ///< its full form, where it is one
    int weight = 0;
    int mistypedWeight = 0;
    std::array<std::uint32_t, kMaxMistyped> mistyped{};  ///< words of the index that may be meant instead
    std::size_t mistypedCount = 0;
  };

  /** What a word of the index is to a written one. */
  enum class Likeness : std::uint8_t
  {
    Same,
    LongerOne,
    Mistyped
  };

  /** A written house number or unit. */
  struct WrittenNumber
  {
    std::uint32_t number = 0;
    std::string_view suffix;
    std::string_view text;
    std::size_t word = 0;
    std::string_view prefix;  ///< of a box's number, "C" of C96
  };

  /** A name with words of the text; `id` is of the kind's names. */
  struct NameHit
  {
    std::uint32_t id = 0;
    WordMask words = 0;
    int missing = 0;  ///< words of the name that were not written
    int score = 0;
  };

  struct LocalityHit
  {
    std::uint32_t locality = 0;
    WordMask words = 0;
    int missing = 0;
  };

  enum class Kind : std::uint8_t
  {
    Building,
    Street,
    Locality
  };

  /** How well a point's number fits. */
  enum Fit : std::uint8_t
  {
    kAnyNumber,
    kNumberFits,
    kUnitFits
  };

  /** Addresses that are answered together. */
  struct Group
  {
    int score = 0;
    std::uint32_t count = 0;  ///< of all addresses of the street, locality or building
    Kind kind = Kind::Street;
    Fit fit = kAnyNumber;
    std::uint8_t bestFit = kAnyNumber;  ///< that the street has; better ones have groups of their own
    std::uint8_t number = 0;            ///< index of the written number, where one fits
    std::uint32_t index = 0;            ///< of the street, locality or building
    IndexRange points;                  ///< of a building: places in its list
    std::uint32_t street = kNoIndex;    ///< of a building's points
  };

  /** A street with groups of its own. */
  struct AnsweredStreet
  {
    std::uint32_t street = 0;
    Fit least = kAnyNumber;  ///< points that fit so well or better are answered by these groups
    std::uint8_t number = 0;
    bool operator<(const AnsweredStreet& other) const
    {
      return street < other.street || (street == other.street && least < other.least);
    }
  };

  void Reserve();
  void ReadPostalType();
  void ReadWords();
  void AddNumber(std::size_t word);
  void WeighWord(std::size_t word);
  void FindMistyped(std::size_t word);
  int RarityWeight(std::size_t names) const;
  void AddNames(std::size_t word, std::uint32_t indexWord);
  template <class Visit>
  void ForEachIndexWord(std::size_t word, Visit visit) const;
  void CollectNames(Named kind, std::vector<NameHit>& hits);
  std::string_view NameOf(Named kind, std::uint32_t id) const;
  void CollectLocalities();
  void AddLocality(std::uint32_t index, WordMask words, int missing);
  int Weight(WordMask words) const;
  static WordMask BitOf(std::size_t word, Likeness likeness)
  {
    return WordMask{1} << (likeness == Likeness::Mistyped ? word + kMaxWords : word);
  }
  /** The words of a mask, mistyped or not. */
  static WordMask Written(WordMask words) { return (words | words >> kMaxWords) & ((WordMask{1} << kMaxWords) - 1); }
  bool IsOtherState(std::string_view state) const { return !state_.empty() && state != state_; }

  void FindGroups();
  void AddStreetsOfLocalities(const NameHit& name);
  void AddStreetsAnywhere(const NameHit& name, int bestScore);
  void AddStreet(std::uint32_t index, const NameHit& name, const LocalityHit* locality);
  void AddPostal();
  void AddPostalStreet(std::uint32_t index, const LocalityHit* locality);
  int PostalWeight(const NameHit& name, IndexRange points, const Street& street) const;
  void AddBuilding(const NameHit& name);
  void AddBuildingPoints(const NameHit& name, IndexRange points);
  void AddLocalities();
  void MergeStreets();
  void AddNumbers();
  void AddNumbersOf(std::size_t place);
  Fit FitOf(const Street& street, std::size_t number) const;
  Fit FitOf(const Point& point, std::size_t number) const;
  void RankGroups();
  void Sort();

  void EnterGroup();
  bool NextInGroup();
  bool TakesInGroup(const Group& group) const;
  bool IsInBuilding(std::uint32_t ordinal, std::uint32_t street) const;
  const AnsweredStreet* FindAnswered(std::uint32_t street) const;

  const Database& database_;
  const WordIndex& index_;
  PostalLists postalLists_;
  InputText input_;
  PointFilter* filter_ = nullptr;
  std::array<QueryWord, kMaxWords> words_;
  std::size_t wordCount_ = 0;
  std::array<WrittenNumber, kMaxNumbers> numbers_;
  std::size_t numberCount_ = 0;
  std::string_view state_;       ///< the code that was written
  std::string_view postalType_;  ///< the kind of delivery that was written
  WordRange postalWords_;        ///< of it, in the input
  WordMask postalMask_ = 0;      ///< of it

  std::vector<NameHit> links_, streets_, localities_, buildings_;
  std::vector<LocalityHit> localityHits_;
  std::vector<Group> groups_;
  std::vector<AnsweredStreet> answered_;       ///< ascending
  std::vector<std::uint32_t> buildingGroups_;  ///< places of groups of buildings

  std::size_t nextGroup_ = 0;
  PointCursor cursor_;
  IndexRange localityStreets_;
  std::uint32_t nextBuildingPoint_ = 0;
  Point point_;
  bool atPoint_ = false;
  bool isStarted_ = false;
};

}  // namespace arf

#endif
