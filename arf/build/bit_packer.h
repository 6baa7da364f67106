/** Packs numbers of a fixed width into a section, the first into the lowest bits; ByteReader::BitsAt reads them. */
#ifndef QXPAF_ARF_BUILD_BIT_PACKER_H
#define QXPAF_ARF_BUILD_BIT_PACKER_H

#include <array>
#include <cstdint>

#include "arf/build/section_writer.h"
#include "arf/format/layout.h"

namespace arf {

class BitPacker
{
 public:
  /** @param bits  at most 32 */
  BitPacker(SectionWriter& writer, std::uint32_t bits) : writer_(writer), bits_(bits) {}

  void Put(std::uint32_t number)
  {
    word_ |= std::uint64_t{number} << used_;
    used_ += bits_;
    if (used_ < 32) return;
    writer_.AppendNumber(static_cast<std::uint32_t>(word_));
    word_ >>= 32;
    used_ -= 32;
  }

  /** Writes what is left and the zeros that let a reader load eight bytes at any number. */
  void Finish()
  {
    constexpr std::array<std::uint8_t, layout::kPackedPadding> kPadding{};
    writer_.AppendNumber(static_cast<std::uint32_t>(word_));
    writer_.Append(kPadding.data(), kPadding.size());
  }

 private:
  SectionWriter& writer_;
  std::uint32_t bits_;
  std::uint64_t word_ = 0;
  std::uint32_t used_ = 0;
};

}  // namespace arf

#endif
