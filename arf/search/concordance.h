/**
 * How the codes of one kind correspond to those of another: for each pair that addresses have, how many have it, and
 * what part that is of all addresses with the first code and one of the second kind.
 */
#ifndef QXPAF_ARF_SEARCH_CONCORDANCE_H
#define QXPAF_ARF_SEARCH_CONCORDANCE_H

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "arf/search/geographical_code.h"

namespace arf {

struct Correspondence
{
  std::uint32_t ordinal = 0;    ///< an address that has both codes
  std::uint32_t addresses = 0;  ///< that have both
  std::uint32_t total = 0;      ///< that have the first one, and any of the second kind
  double Percent() const { return total == 0 ? 0 : 100.0 * addresses / total; }
};

class Concordance
{
 public:
  /** @param database  must outlive the concordance */
  explicit Concordance(const Database& database) : database_(database) {}

  /**
   * Counts. Takes a look at every address of the database, or where the first kind is a locality or postcode and one
   * code was asked for, at those that have it. The first call takes memory for one pair a locality, so that those of
   * localities and postcodes never need more; it grows with the number of pairs beyond that and is kept.
   *
   * @param code            one code of the first kind; empty for all
   * @param minimumPercent  correspondences below it are left out
   */
  void Start(CodeKind from, std::string_view code, CodeKind to, double minimumPercent);
  void Reset() { isStarted_ = false; }
  bool IsStarted() const { return isStarted_; }

  /** Ascending by the first code, for each the most addresses first, then stored order; null at the end. */
  const Correspondence* Current() const { return next_ < pairs_.size() ? &pairs_[next_].pair.found : nullptr; }
  void Advance() { next_ += next_ < pairs_.size(); }
  std::string_view FromCode(const Correspondence& found, CodeText& text) const { return CodeAt(from_, found, text); }
  std::string_view ToCode(const Correspondence& found, CodeText& text) const { return CodeAt(to_, found, text); }

 private:
  struct Pair
  {
    std::uint64_t from = 0;  ///< hashes of the codes; 0 and 0 where the place is free
    std::uint64_t to = 0;
    Correspondence found;
  };

  /** A pair with the beginning of its first code, by which most pairs are told apart when they are sorted. */
  struct Ranked
  {
    std::array<std::uint64_t, 2> beginning{};
    Pair pair;
  };

  void CountLocality(std::uint32_t index, std::string_view code);
  void Count(std::uint32_t ordinal, std::uint32_t addresses, std::string_view from, std::string_view to);
  void Reserve();
  void Grow();
  void Collect(double minimumPercent);
  std::string_view CodeAt(CodeKind kind, const Correspondence& found, CodeText& text) const;
  bool IsBefore(const Ranked& a, const Ranked& b) const;

  const Database& database_;
  CodeKind from_, to_;
  std::vector<Pair> table_;  ///< by hash, open addressing; its size is a power of two
  std::size_t used_ = 0;
  std::vector<Ranked> pairs_;
  std::size_t next_ = 0;
  bool isStarted_ = false;
};

}  // namespace arf

#endif
