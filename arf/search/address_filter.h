/** Which addresses the client's filters let through. */
#ifndef QXPAF_ARF_SEARCH_ADDRESS_FILTER_H
#define QXPAF_ARF_SEARCH_ADDRESS_FILTER_H

#include <array>
#include <cstdint>

#include "arf/search/code_list.h"
#include "arf/search/search_settings.h"
#include "arf/spatial/point_filter.h"

namespace arf {

class AddressFilter final : public PointFilter
{
 public:
  /** Takes every address until Configure. @param database  must outlive the filter */
  explicit AddressFilter(const Database& database) : database_(database) {}

  /**
   * Copies what it needs from the settings. Codes of kinds that this database does not have let nothing through.
   *
   * @return this, or null when every address passes
   */
  PointFilter* Configure(const SearchSettings& settings);

  bool Takes(std::uint32_t ordinal) override;

 private:
  struct Code
  {
    CodeKind kind;
    std::string_view code;
    bool isKnown = false;
    std::uint32_t group = 0;  ///< codes of one kind: one of them must fit
  };

  void EnterStreet(std::uint32_t ordinal);
  bool TakesStreet() const;
  bool TakesPoint(std::uint32_t ordinal) const;
  bool TakesCodes(std::uint32_t ordinal) const;

  const Database& database_;
  SearchSettings settings_;
  std::array<Code, kMaxCodes> codes_;
  std::size_t codeCount_ = 0;
  Street street_;  ///< of the last point
  Locality locality_;
  bool takesStreet_ = false;
};

}  // namespace arf

#endif
