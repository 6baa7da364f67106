#include "arf/format/checksum.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "support/random_seed.h"

namespace {

using arf::Checksum;
using Bytes = std::vector<std::uint8_t>;

std::uint64_t SumOf(const Bytes& bytes)
{
  Checksum sum;
  sum.Add(bytes.data(), bytes.size());
  return sum.Value();
}

/** The definition, word by word. */
std::uint64_t SlowSumOf(const Bytes& bytes)
{
  const auto mix = [](std::uint64_t state, std::uint64_t word) {
    state += word * 0x9E3779B97F4A7C15U;
    state = (state << 31) | (state >> 33);
    return state * 0xB504F333F9DE6485U;
  };
  std::uint64_t sum = mix(0, bytes.size());
  for (std::size_t lane = 0; lane < 8; ++lane) {
    std::uint64_t state = lane + 1;
    for (std::size_t at = lane * 8; at < bytes.size(); at += 64) {
      std::uint64_t word = 0;
      for (std::size_t i = 0; i < 8; ++i) word |= std::uint64_t{bytes[at + i]} << (8 * i);
      state = mix(state, word);
    }
    sum = mix(sum, state);
  }
  return sum ^ (sum >> 32);
}

Bytes RandomBytes(std::mt19937& random, std::size_t size)
{
  Bytes bytes(size);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

TEST(Checksum, EqualsItsDefinition)
{
  std::mt19937 random(test_support::RandomSeed());
  for (std::size_t stripes = 0; stripes < 40; ++stripes) {
    const Bytes bytes = RandomBytes(random, stripes * Checksum::kStripe);
    EXPECT_EQ(SumOf(bytes), SlowSumOf(bytes));
  }
}

TEST(Checksum, NeverChanges)
{
  Bytes bytes(3 * Checksum::kStripe);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 7);
  EXPECT_EQ(SumOf(bytes), 15398218701647367751U);
}

TEST(Checksum, DoesNotDependOnHowTheBytesAreCut)
{
  std::mt19937 random(test_support::RandomSeed());
  const Bytes bytes = RandomBytes(random, 20 * Checksum::kStripe);
  for (std::size_t cut = 0; cut <= bytes.size(); cut += Checksum::kStripe) {
    Checksum sum;
    sum.Add(bytes.data(), cut);
    sum.Add(bytes.data() + cut, bytes.size() - cut);
    EXPECT_EQ(sum.Value(), SumOf(bytes));
  }
}

TEST(Checksum, TellsEverySingleBitAndEveryPairInNeighbouringWords)
{
  std::mt19937 random(test_support::RandomSeed());
  Bytes bytes = RandomBytes(random, 4 * Checksum::kStripe);
  std::set<std::uint64_t> sums = {SumOf(bytes)};
  std::size_t tried = 1;
  const auto flip = [&](std::size_t bit) { bytes[bit / 8] ^= static_cast<std::uint8_t>(1 << (bit % 8)); };
  for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit, ++tried) {
    flip(bit);
    sums.insert(SumOf(bytes));
    flip(bit);
  }
  // Two bits that meet in the same lane, one step apart: what a product alone would let cancel out.
  const std::size_t stripe = Checksum::kStripe * 8;
  for (std::size_t a = 0; a < 64; ++a) {
    for (std::size_t b = 0; b < 64; ++b, ++tried) {
      flip(a);
      flip(stripe + b);
      sums.insert(SumOf(bytes));
      flip(stripe + b);
      flip(a);
    }
  }
  EXPECT_EQ(sums.size(), tried);
}

TEST(Checksum, TellsLengths)
{
  std::set<std::uint64_t> sums;
  for (std::size_t stripes = 0; stripes < 100; ++stripes) sums.insert(SumOf(Bytes(stripes * Checksum::kStripe)));
  EXPECT_EQ(sums.size(), 100U);
}

}  // namespace
