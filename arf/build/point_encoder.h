/**
 * Codes the points of a street; PointCursor reads them again.
 */
#ifndef QXPAF_ARF_BUILD_POINT_ENCODER_H
#define QXPAF_ARF_BUILD_POINT_ENCODER_H

#include <cstdint>
#include <span>
#include <vector>

#include "arf/build/address_table.h"

namespace arf {

class PointEncoder
{
 public:
  /**
   * @param details      of the rows.
   * @param partStrings  for each part number of the details, the number of its text in the file.
   * @param blockPoints  points a block, at least 1.
   */
  PointEncoder(const std::vector<AddressDetails>& details, const std::vector<std::uint32_t>& partStrings,
               std::uint32_t blockPoints)
      : details_(details), partStrings_(partStrings), blockPoints_(blockPoints)
  {
  }

  /** The code of a street's points, which are in file order; valid until the next call. */
  const std::vector<std::uint8_t>& Encode(std::span<const AddressRow> points);

 private:
  void PutStart(std::span<const AddressRow> points);
  void PutBlock(std::span<const AddressRow> points);
  void PutPoint(const AddressRow& row);
  void PutHead(std::uint32_t number, const AddressDetails& details);
  bool HasSameHead(const AddressRow& row) const;
  std::uint32_t HighestNumber(std::span<const AddressRow> points) const;
  void PutPart(bool isPut, std::uint32_t part);
  void PutPlace(const AddressRow& row);

  const std::vector<AddressDetails>& details_;
  const std::vector<std::uint32_t>& partStrings_;
  std::uint32_t blockPoints_;
  std::uint32_t startLatitude_ = 0, startLongitude_ = 0;
  AddressRow before_;           ///< what a point inherits from the one before it
  AddressDetails inherited_;    ///< so too
  std::uint32_t latitude_ = 0;  ///< where the last point with coordinates was
  std::uint32_t longitude_ = 0;
  std::vector<std::uint8_t> code_;
  std::vector<std::uint8_t> blocks_;
};

}  // namespace arf

#endif
