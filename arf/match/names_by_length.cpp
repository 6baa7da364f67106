#include "arf/match/names_by_length.h"

namespace arf {

NamesByLength::NamesByLength(std::span<const std::uint32_t> signatures)
    : letters_(signatures.size()), names_(signatures.size())
{
  for (const std::uint32_t bits : signatures) ++starts_[NameSignature::FromBits(bits).Length() + 1];
  for (std::size_t length = 1; length < starts_.size(); ++length) starts_[length] += starts_[length - 1];
  auto next = starts_;
  for (std::uint32_t name = 0; name < names_.size(); ++name) {
    const NameSignature signature = NameSignature::FromBits(signatures[name]);
    const std::uint32_t place = next[signature.Length()]++;
    letters_[place] = signature.Letters();
    names_[place] = name;
  }
}

}  // namespace arf
