/**
 * The 64-bit checksum of the database file.
 *
 * The idea is the xor-then-multiply step of the FNV-1a hash (G. Fowler, L. C. Noll, K.-P. Vo), taken over 64-bit words
 * instead of bytes and in eight independent lanes, so that the multiplications overlap and the speed is that of memory;
 * a shift follows each product, as in the finishing mixers of MurmurHash3 (A. Appleby), because a product alone never
 * carries its top bit downwards. Each step is a one-to-one mapping of the lane's state, and so is the way in which the
 * lanes are put together at the end: damage within one 64-bit word always changes the checksum; damage in several words
 * goes unseen with a probability of about 2^-64. It protects against accidents, not against forgery.
 */
#ifndef QXPAF_ARF_FORMAT_CHECKSUM_H
#define QXPAF_ARF_FORMAT_CHECKSUM_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace arf {

class Checksum
{
 public:
  static constexpr std::size_t kStripe = 64;  ///< bytes taken at a time

  /** Adds bytes; `size` is a multiple of kStripe, which the sections of the file are padded to. */
  void Add(const std::uint8_t* data, std::size_t size);
  std::uint64_t Value() const;

 private:
  static constexpr std::size_t kLanes = kStripe / sizeof(std::uint64_t);
  std::array<std::uint64_t, kLanes> lanes_ = {1, 2, 3, 4, 5, 6, 7, 8};
  std::uint64_t size_ = 0;
};

}  // namespace arf

#endif
