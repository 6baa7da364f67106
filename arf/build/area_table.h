/**
 * Which areas mesh blocks belong to, as the statistics office publishes it: a CSV file with a row a mesh block, its
 * columns chosen by name, with or without the year of an issue behind it ("SA2_CODE_2021"; the latest one counts):
 *
 *   mesh_block, MB_CODE                                          the mesh block; required
 *   statistical_area, SA2_CODE, SA2_MAINCODE, else SA1_CODE, SA1_MAINCODE   becomes statistical_area
 *   local_government_area, LGA_CODE                              becomes local_government_area
 *
 * One of the two areas is required. Of several rows of one mesh block the first counts.
 */
#ifndef QXPAF_ARF_BUILD_AREA_TABLE_H
#define QXPAF_ARF_BUILD_AREA_TABLE_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/address_table.h"
#include "arf/build/builder.h"
#include "arf/build/string_pool.h"

namespace arf {

class AreaTable
{
 public:
  /** Reads a file; throws BuildError when it cannot be used. */
  explicit AreaTable(const std::string& path);

  /**
   * Gives addresses the areas of their mesh blocks, as attributes; what an address has already stays. Throws BuildError
   * when the addresses have no mesh blocks, or none of those in the file.
   */
  AreaReport Fill(AddressTable& table) const;

 private:
  static constexpr std::size_t kKinds = 2;  ///< of areas

  struct Columns
  {
    std::size_t meshBlock = SIZE_MAX;
    std::array<std::size_t, kKinds> areas{SIZE_MAX, SIZE_MAX};
  };

  Columns FindColumns(std::span<const std::string_view> header);
  void FillKind(AddressTable& table, std::size_t kind) const;
  /** The areas of a mesh block, as numbers of `texts_`; null when it is not in the file. */
  const std::array<std::uint32_t, kKinds>* Find(std::string_view meshBlock) const;

  std::string path_;
  std::vector<std::string> columns_;  ///< names of those in use
  std::array<bool, kKinds> hasKind_{};
  StringPool meshBlocks_, texts_;
  std::vector<std::array<std::uint32_t, kKinds>> areas_;  ///< of each mesh block
};

}  // namespace arf

#endif
