#include "arf/format/byte_reader.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace {

using arf::ByteReader;

/** Bytes in a heap block of exactly their size, so that the address sanitizer sees a read outside. */
class Exact
{
 public:
  Exact(std::initializer_list<int> bytes) : size_(bytes.size()), data_(new std::uint8_t[bytes.size()])
  {
    std::size_t i = 0;
    for (const int byte : bytes) data_[i++] = static_cast<std::uint8_t>(byte);
  }
  ByteReader Reader() const { return {data_.get(), size_}; }

 private:
  std::size_t size_;
  std::unique_ptr<std::uint8_t[]> data_;
};

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(ByteReader, ReadsLittleEndianNumbersAnywhereInside)
{
  const Exact bytes = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  const ByteReader reader = bytes.Reader();
  EXPECT_EQ(reader.U8At(8), 9U);
  EXPECT_EQ(reader.U16At(7), 0x0908U);
  EXPECT_EQ(reader.U32At(5), 0x09080706U);
  EXPECT_EQ(reader.U64At(1), 0x0908070605040302U);
}

TEST(ByteReader, ReadsZeroOutside)
{
  const Exact bytes = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  const ByteReader reader = bytes.Reader();
  for (const std::uint64_t offset : {std::uint64_t{9}, std::uint64_t{10}, kHuge - 8, kHuge - 1, kHuge}) {
    EXPECT_EQ(reader.U8At(offset), 0U);
    EXPECT_EQ(reader.U16At(offset), 0U);
    EXPECT_EQ(reader.U32At(offset), 0U);
    EXPECT_EQ(reader.U64At(offset), 0U);
  }
  EXPECT_EQ(reader.U16At(8), 0U);
  EXPECT_EQ(reader.U32At(6), 0U);
  EXPECT_EQ(reader.U64At(2), 0U);
  EXPECT_EQ(ByteReader().U64At(0), 0U);
}

TEST(ByteReader, GivesPartsThatLieInside)
{
  const Exact bytes = {'a', 'b', 'c', 'd'};
  const ByteReader reader = bytes.Reader();
  EXPECT_EQ(reader.Part(1, 2).Text(), "bc");
  EXPECT_EQ(reader.Part(0, 4).Text(), "abcd");
  EXPECT_EQ(reader.Part(4, 0).Text(), "");
  EXPECT_NE(reader.Part(4, 0).Data(), nullptr);
  EXPECT_EQ(reader.From(3).Text(), "d");
  EXPECT_EQ(reader.From(4).Size(), 0U);
  const std::pair<std::uint64_t, std::uint64_t> outside[] = {{0, 5},     {4, 1},     {5, 0},
                                                             {1, kHuge}, {kHuge, 1}, {kHuge, kHuge}};
  for (const auto& [offset, length] : outside) {
    EXPECT_FALSE(reader.Holds(offset, length));
    EXPECT_EQ(reader.Part(offset, length).Data(), nullptr) << offset << " " << length;
  }
  EXPECT_EQ(reader.From(5).Data(), nullptr);
}

TEST(ByteReader, GivesWholeWords)
{
  alignas(4) const std::uint8_t bytes[] = {1, 0, 0, 0, 2, 0, 0, 0, 3};
  const std::span<const std::uint32_t> words = ByteReader(bytes, sizeof bytes).Words();
  ASSERT_EQ(words.size(), 2U);
  EXPECT_EQ(words[1], 2U);
}

struct VarintRow
{
  Exact bytes;
  std::uint32_t value;
  std::size_t left;
};

TEST(ByteReader, TakesVarints)
{
  const VarintRow rows[] = {
      {{0}, 0, 0},
      {{0x7F, 1}, 127, 1},
      {{0x80, 0x01}, 128, 0},
      {{0xFF, 0x7F, 9}, 16383, 1},
      {{0xFF, 0xFF, 0xFF, 0xFF, 0x0F}, UINT32_MAX, 0},
      {{0x80, 0x80, 0x80, 0x80, 0x08}, 0x80000000, 0},
      {{0x80, 0x00}, 0, 0},
      // Too long, too large, or cut off: nothing is left to read.
      {{0x80, 0x80, 0x80, 0x80, 0x10, 1}, 0, 0},
      {{0x80, 0x80, 0x80, 0x80, 0x80, 0x01}, 0, 0},
      {{0x80}, 0, 0},
      {{0xFF, 0xFF, 0xFF}, 0, 0},
  };
  for (const VarintRow& row : rows) {
    ByteReader reader = row.bytes.Reader();
    EXPECT_EQ(reader.TakeVarint(), row.value);
    EXPECT_EQ(reader.Size(), row.left);
  }
  EXPECT_EQ(ByteReader().TakeVarint(), 0U);
}

TEST(ByteReader, TakesSignedNumbers)
{
  const Exact bytes = {0, 1, 2, 3, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F, 0xFE, 0xFF, 0xFF, 0xFF, 0x0F};
  ByteReader reader = bytes.Reader();
  for (const std::int32_t expected : {0, -1, 1, -2, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(static_cast<std::int32_t>(reader.TakeZigzag()), expected);
  }
}

}  // namespace
