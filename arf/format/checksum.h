/**
 * The 64-bit checksum of the database file.
 *
 * The idea is the round of xxHash64 (Y. Collet): a word is multiplied and added to the state, which is rotated and
 * multiplied again. It is taken over eight independent lanes, so that the multiplications overlap and the speed is that
 * of memory. Each step is a one-to-one mapping of the word and of the lane's state, and so is the way in which the
 * lanes are put together at the end: damage within one 64-bit word always changes the checksum. With two
 * multiplications and the rotation between them no bit has a predictable effect on a later word, so damage in several
 * words goes unseen with a probability of about 2^-64. It protects against accidents, not against forgery.
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
