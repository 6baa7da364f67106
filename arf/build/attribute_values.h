/**
 * The values of one attribute column in the order of the rows, eight bytes each: a text in front, shared by all rows
 * that have it, and the number at the value's end. Identifiers of registers and areas differ in that number only.
 */
#ifndef QXPAF_ARF_BUILD_ATTRIBUTE_VALUES_H
#define QXPAF_ARF_BUILD_ATTRIBUTE_VALUES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/string_pool.h"

namespace arf {

class AttributeValues
{
 public:
  void Reserve(std::size_t rows) { codes_.reserve(rows); }
  void Add(std::string_view text);
  /** Takes the rows of another list for which `taken` is true; it has an entry for each. */
  void Append(const AttributeValues& other, const std::vector<bool>& taken);
  /** Keeps the rows for which `keep` is true; it has an entry for each. */
  void Keep(const std::vector<bool>& keep);

  std::size_t Size() const { return codes_.size(); }
  /** The value of a row in `scratch`. */
  std::string_view TextOf(std::size_t row, std::string& scratch) const { return TextOfCode(codes_[row], scratch); }

  /** Equal exactly where the values are. */
  std::uint64_t CodeOf(std::size_t row) const { return codes_[row]; }
  std::string_view TextOfCode(std::uint64_t code, std::string& scratch) const;

  /** What stands in front of the numbers. */
  const StringPool& Fronts() const { return fronts_; }
  static std::uint32_t FrontOf(std::uint64_t code) { return static_cast<std::uint32_t>(code >> kNumberBits); }
  /** 0 where the value does not end in digits, otherwise the number and one. */
  static std::uint64_t NumberOf(std::uint64_t code) { return code & kNumberMask; }
  static std::uint64_t Code(std::uint32_t front, std::uint64_t number);

 private:
  static constexpr unsigned kNumberBits = 37;
  static constexpr std::uint64_t kNumberMask = (std::uint64_t{1} << kNumberBits) - 1;

  StringPool fronts_;
  std::vector<std::uint64_t> codes_;
};

}  // namespace arf

#endif
