// Six-bit packing in blocks: four characters fill three bytes, most significant bit first.
#ifndef QXPAF_SRC_TEXT_SIX_BIT_H
#define QXPAF_SRC_TEXT_SIX_BIT_H

#include <cstddef>

namespace qxpaf {

// Ways to the same bytes, slowest first. Each uses those before it for what is too short for its own blocks.
enum class SixBitPath
{
  kPortable,
  kSsse3,
  kAvx2
};

// The fastest that this processor has.
SixBitPath BestSixBitPath();

// Pack and unpack whole groups of four characters. Exactly 3 * groups bytes and 4 * groups characters are touched; the
// two must not overlap. The processor must have the path.
void PackSixBitGroups(SixBitPath path, char* to, const char* from, std::size_t groups);
void UnpackSixBitGroups(SixBitPath path, char* to, const char* from, std::size_t groups);

}  // namespace qxpaf

#endif
