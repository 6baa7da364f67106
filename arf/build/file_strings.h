/**
 * The string section of a file in the making, and which text of the build has which number there.
 */
#ifndef QXPAF_ARF_BUILD_FILE_STRINGS_H
#define QXPAF_ARF_BUILD_FILE_STRINGS_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "arf/build/address_order.h"
#include "arf/build/section_writer.h"

namespace arf {

/**
 * Parts of points come first, the most used before the others, since points hold their numbers as varints; the match
 * keys follow in ascending order, so that a search through a dictionary stays in one stretch of the section; then the
 * other names.
 */
class FileStrings
{
 public:
  FileStrings(const AddressTable& table, const OrderedAddresses& ordered);

  std::uint32_t Add(std::string_view text) { return pool_.Intern(text); }
  std::uint32_t OfName(std::uint32_t name) const { return ofName_[name]; }
  std::uint32_t OfKey(std::uint32_t key) const { return ofKey_[key]; }
  /** For each part number of an ordered row. */
  const std::vector<std::uint32_t>& OfParts() const { return ofPart_; }

  void Write(SectionWriter& writer) const;

 private:
  void AddParts(const AddressTable& table, const OrderedAddresses& ordered);

  StringPool pool_;
  std::vector<std::uint32_t> ofName_, ofKey_, ofPart_;
};

}  // namespace arf

#endif
