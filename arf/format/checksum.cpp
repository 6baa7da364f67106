#include "arf/format/checksum.h"

#include <bit>
#include <cstring>

namespace arf {
namespace {

// Odd, with their bits well spread: 2^64 divided by the golden ratio, and by the square root of 2.
constexpr std::uint64_t kFirst = 0x9E3779B97F4A7C15;
constexpr std::uint64_t kSecond = 0xB504F333F9DE6485;
constexpr int kTurn = 31;

std::uint64_t Mix(std::uint64_t state, std::uint64_t word)
{
  return std::rotl(state + word * kFirst, kTurn) * kSecond;
}

}  // namespace

void Checksum::Add(const std::uint8_t* data, std::size_t size)
{
  std::array<std::uint64_t, kLanes> lanes = lanes_;
  for (std::size_t at = 0; at < size; at += kStripe) {
    std::array<std::uint64_t, kLanes> words;
    std::memcpy(words.data(), data + at, kStripe);
    for (std::size_t i = 0; i < kLanes; ++i) lanes[i] = Mix(lanes[i], words[i]);
  }
  lanes_ = lanes;
  size_ += size;
}

std::uint64_t Checksum::Value() const
{
  std::uint64_t value = Mix(0, size_);
  for (const std::uint64_t lane : lanes_) value = Mix(value, lane);
  return value ^ (value >> 32);
}

}  // namespace arf
