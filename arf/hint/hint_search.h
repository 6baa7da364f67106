/**
 * Finds what may be meant by a text that is still being typed. The text is read from its beginning: unit and number,
 * street, locality, state, postcode; of the last word only a part may be there. All memory is in the object itself, so
 * that a search allocates nothing, and the work of one is bounded whatever the text is. For one thread at a time.
 */
#ifndef QXPAF_ARF_HINT_HINT_SEARCH_H
#define QXPAF_ARF_HINT_HINT_SEARCH_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arf/format/database.h"
#include "arf/format/word_index.h"
#include "arf/hint/hint.h"
#include "arf/hint/mistyped_names.h"
#include "arf/hint/name_tree.h"
#include "arf/hint/place_reading.h"
#include "arf/hint/postal_lists.h"
#include "arf/hint/premise_search.h"
#include "arf/hint/tail_reading.h"
#include "arf/hint/typed_text.h"
#include "arf/match/postal_words.h"

namespace arf {

class HintSearch
{
 public:
  /** @param database  must outlive the search */
  explicit HintSearch(const Database& database)
      : data_(database),
        streetTree_(NameTree::OfStreets(database)),
        tails_(database),
        postalLists_(database),
        wordIndex_(database.Words())
  {
  }

  /**
   * Replaces the hints.
   *
   * @param text   what was typed
   * @param place  where all hints must lie: a last line, perhaps only its beginning; empty: anywhere
   * @param most   hints wanted, 1 to HintList::kMax
   * @return None, or why a text was refused; there are no hints then
   */
  InputFault Search(std::string_view text, std::string_view place, std::size_t most);

  std::span<const Hint> Hints() const { return {hints_.begin(), hints_.end()}; }

 private:
  /** What one pass over the readings of a text allows beside what was typed. */
  struct Pass
  {
    bool unlikely = false;       ///< readings of numbers that seldom make sense
    bool streetTypo = false;     ///< and only names with one
    bool placeTypo = false;      ///< and only localities with one
    bool anyStreetType = false;  ///< whatever type was written
    bool isTurned = false;       ///< the number was written behind the street and has been put in front of it
    bool sureStart = false;      ///< the first letter is right
  };

  /** One reading of the whole text. */
  struct Query
  {
    const Premise* premise = nullptr;  ///< null: none
    NameSpan names;
    std::string_view typedName;
    Spelling spelling = Spelling::AsTyped;
    bool isUnfinished = false;  ///< whole names were looked for before
    TypedEnding ending;
    const StreetAliasEntry* alias = nullptr;  ///< null: the street's own name is meant
    const Place* place = nullptr;             ///< null: none
  };

  /** A kind of postal delivery, and its number where it has one. */
  struct PostalQuery
  {
    std::string_view type;
    WordRange number;
    std::uint8_t rank = 0;      ///< of all that a place has of the kind, where no number was typed
    bool isNumberOpen = false;  ///< numbers are wanted that begin with the one typed
  };

  void ReadContext();
  void RunPasses();
  bool MayBeMistyped() const;
  bool IsNothing() const { return streets_.Empty() && localities_.Empty(); }
  void Run(const Pass& pass);
  void SearchPremises();
  bool MayEndPremise(std::size_t end) const;
  bool IsUsable(const Premise& premise, std::size_t end) const;

  void SearchStreets(const Premise* premise, std::size_t first);
  void SearchName(Query query, WordRange words);
  bool IsWorthwhile(const Query& query) const;
  void SearchMistypedNames(Query query, WordRange words);
  void SearchAliases(Query query, WordRange words);
  void SearchTails(const Query& query, const NameSpan& names, std::size_t first);
  void SearchTail(Query query, const TypedTail& tail);
  void Visit(const Query& query);
  void VisitLargest(const Query& query);
  void VisitPostings(const Query& query, std::size_t most);
  void VisitPlace(const Query& query, const Place& place);
  void VisitNamesIn(const Query& query, IndexRange streets);
  void VisitLocality(const Query& query, const Locality& locality);
  bool Exhausted() const;
  void VisitStreet(const Query& query, std::uint32_t index);
  void VisitAlias(const Query& query);
  void VisitFitting(const Query& query, const Street& street);
  void AddPremises(const Query& query, const Street& street);
  void AddStreet(const Query& query, const Street& street);
  std::uint8_t RankOf(const Query& query, const Street& street, NumberFit fit) const;
  bool IsInContext(std::uint32_t index, const Locality& locality) const;

  void SearchPostal();
  void SearchPostal(const PostalQuery& query, std::size_t placeStart);
  void SearchPostalTypes(std::size_t most);
  void VisitLargestPostal(const PostalQuery& query, const Place& place);
  void VisitPostal(const PostalQuery& query, const Place& place);
  void AddPostal(const PostalQuery& query, const Street& street, Spelling spelling);
  void AddPostalStreet(const PostalQuery& query, const Street& street, Spelling spelling);
  void AddPostalNumbers(const PostalNumber& begun, const Street& street, Spelling spelling);

  void SearchBuildings();
  void VisitBuildings(WordRange words, const Place* place);
  void AddBuildingPoint(std::uint32_t ordinal, bool isWhole, const Place* place);

  bool TurnNumberToFront();
  void StartText();

  void SearchLocalities();
  void AddLocalities(const Place& place);
  void AddLocality(const Place& place, std::uint32_t index);
  void Merge();

  static constexpr std::size_t kMaxPremiseWords = 12;

  const Database& data_;
  NameTree streetTree_;
  TailReader tails_;
  PostalLists postalLists_;
  const WordIndex& wordIndex_;
  MistypedNames mistypedNames_;
  std::array<std::optional<Premises>, kMaxPremiseWords + 1> premises_;  ///< by the number of their words; once read
  TypedText typed_;
  TypedText context_;
  PlaceReader::Readings contextPlaces_;
  std::size_t contextCount_ = 0;
  bool hasContext_ = false;
  Pass pass_;
  std::size_t most_ = 0;
  std::uint32_t visited_ = 0;    ///< streets and localities that this search looked at
  std::uint32_t compared_ = 0;   ///< streets whose numbers it looked at
  std::uint32_t points_ = 0;     ///< addresses it looked at
  std::uint32_t buildings_ = 0;  ///< names of buildings it looked at
  HintList streets_;
  HintList localities_;
  HintList hints_;
};

}  // namespace arf

#endif
