/**
 * Barcode sort plans: which number (BSP) a postcode has in the post office's plan for barcoded letters, and which in
 * its plan for other letters (NPSP).
 *
 * A plan is a text file: a row with the plan's date, a header, a row a postcode in any order.
 *
 *     date,2026-05-31
 *     postcode,bsp,npsp
 *     0800,001,N01
 *     2000,019,N07
 *
 * UTF-8 or ASCII with or without a byte order mark; LF or CRLF; blank lines are passed over; no quotes. Each postcode
 * has four digits and stands once; the numbers are texts of up to 19 characters without commas, quotes and control
 * characters; either may be empty, not both.
 */
#ifndef QXPAF_ARF_BARCODE_SORT_PLAN_H
#define QXPAF_ARF_BARCODE_SORT_PLAN_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace arf {

/** The plan's name in a database directory. */
inline constexpr const char* kSortPlanFileName = "sortplan.csv";

/** Immutable once made, so any number of threads may read it. */
class SortPlan
{
 public:
  /** What applications ask with has room for 20 bytes, terminator included. */
  static constexpr std::size_t kMaxNumberLength = 19;
  /** A file longer than this is taken for another kind of file. */
  static constexpr std::size_t kMaxBytes = 1 << 20;

  struct Entry
  {
    std::string_view bsp;
    std::string_view npsp;
  };

  /** Reads a plan. Null when it is faulty; `fault` then says why: "12: postcode: …", 12 being the line. */
  static std::unique_ptr<const SortPlan> Parse(std::string text, std::string& fault);

  SortPlan(const SortPlan&) = delete;
  SortPlan& operator=(const SortPlan&) = delete;

  std::string_view Date() const { return date_; }
  std::size_t PostcodeCount() const { return entries_.size(); }
  /** Null where the plan does not have the postcode. */
  const Entry* Find(std::string_view postcode) const;
  /** The file as it was read. */
  const std::string& Text() const { return text_; }

 private:
  class Reader;
  static constexpr std::size_t kPostcodes = 10'000;

  explicit SortPlan(std::string text) : text_(std::move(text)) {}

  std::string text_;
  std::string_view date_;
  std::vector<Entry> entries_;
  std::array<std::uint16_t, kPostcodes> entryOf_{};  ///< by postcode: 1 + the entry's index; 0 for none
};

/** True for four digits. */
bool IsPostcode(std::string_view text);

/** What became of reading a file: a plan, a fault that names the file ("path:12: …"), or neither: there is no file. */
struct SortPlanFile
{
  std::unique_ptr<const SortPlan> plan;
  std::string fault;
};

SortPlanFile ReadSortPlan(const std::string& path);

/** The plan of a database directory. */
SortPlanFile ReadSortPlanOf(const std::string& directory);

}  // namespace arf

#endif
