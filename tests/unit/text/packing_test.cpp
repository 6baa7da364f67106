// Six-bit and five-bit packing.
#include "qxpaf/text/packing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "reference/packing_reference.h"
#include "text/six_bit.h"
#include "unit/text/encoding_text.h"
#include "unit/text/normalise_text.h"

namespace {

using encoding_test::Bytes;
using encoding_test::Hex;
using normalise_test::kTexts;
using normalise_test::RandomText;
using test_support::GuardedBuffer;

/** A result and all bytes of the destination. */
template <class Result>
using Packed = std::pair<Result, std::string>;

// The source is a heap copy without terminator, so that reading behind it is seen.
template <class Pack>
auto Packing(Pack pack, const std::string& text, std::size_t size)
{
  const std::vector<char> source(text.begin(), text.end());
  GuardedBuffer buffer(size);
  const auto result = pack(buffer.Data(), size, source.data(), source.size());
  EXPECT_TRUE(buffer.Intact()) << Hex(text) << "into " << size;
  return Packed<decltype(result)>(result, buffer.Bytes());
}

std::string Unpacking(void (*unpack)(char*, const char*, int), const std::string& packed, int count)
{
  const std::vector<char> source(packed.begin(), packed.end());
  GuardedBuffer buffer(static_cast<std::size_t>(count));
  unpack(buffer.Data(), source.data(), count);
  EXPECT_TRUE(buffer.Intact()) << Hex(packed);
  return buffer.Bytes();
}

std::size_t SixBitSize(std::size_t chars)
{
  return (chars * 6 + 7) / 8;
}

TEST(SixBits, Characters)
{
  EXPECT_EQ(CharToSixBits('A'), 33);
  EXPECT_EQ(CharToSixBits(' '), 0);
  EXPECT_EQ(CharToSixBits('a'), 0);
  for (int c = 0; c <= 0xFF; ++c)
    EXPECT_EQ(CharToSixBits(static_cast<char>(c)), c >= 0x20 && c <= 0x5F ? c - 0x20 : 0) << c;
}

struct SixBitRow
{
  const char* text;
  std::size_t size;
  unsigned long result;
  std::string bytes;  // of the whole destination; 0xA5 is what was there before
};

TEST(SixBits, Rows)
{
  const SixBitRow rows[] = {
      {"ABCD", 3, 3, Bytes({0x86, 0x28, 0xE4})},
      {"ABCD", 4, 3, Bytes({0x86, 0x28, 0xE4, 0})},
      {"ABCD", 6, 3, Bytes({0x86, 0x28, 0xE4, 0, 0, 0xA5})},
      {"ABCDE", 6, 4, Bytes({0x86, 0x28, 0xE4, 0x94, 0, 0xA5})},
      {"ABCDEF", 6, 5, Bytes({0x86, 0x28, 0xE4, 0x96, 0x60, 0})},
      {"ABCDEF", 7, 5, Bytes({0x86, 0x28, 0xE4, 0x96, 0x60, 0, 0xA5})},
      {"ABCDEFG", 6, 6, Bytes({0x86, 0x28, 0xE4, 0x96, 0x69, 0xC0})},
      {"ABC", 5, 3, Bytes({0x86, 0x28, 0xC0, 0, 0xA5})},
      {"AB", 4, 2, Bytes({0x86, 0x20, 0, 0xA5})},
      {"A", 3, 1, Bytes({0x84, 0xA5, 0xA5})},
      {"", 2, 0, Bytes({0, 0xA5})},
      {"ABCD", 2, 2, Bytes({0x86, 0x28})},
      {"ABCD", 1, 1, Bytes({0x86})},
      {"A", 1, 1, Bytes({0x84})},
      {"a", 1, 1, Bytes({0x04})},  // folded onto '!'
      {"ABCD", 0, 0, ""},
      {"", 0, 0, ""},
  };
  for (const SixBitRow& row : rows) {
    const auto [result, bytes] = Packing(Compress6, row.text, row.size);
    EXPECT_EQ(result, row.result) << row.text << " into " << row.size;
    EXPECT_EQ(Hex(bytes), Hex(row.bytes)) << row.text << " into " << row.size;
  }
}

TEST(SixBits, UnpackRows)
{
  EXPECT_EQ(Unpacking(Decompress6, Bytes({0x86, 0x28, 0xE4}), 4), "ABCD");
  EXPECT_EQ(Unpacking(Decompress6, Bytes({0x86, 0x28, 0xE4}), 3), "ABC");
  EXPECT_EQ(Unpacking(Decompress6, Bytes({0x86, 0x28}), 2), "AB");
  EXPECT_EQ(Unpacking(Decompress6, Bytes({0x86}), 1), "A");
  EXPECT_EQ(Unpacking(Decompress6, Bytes({0x00, 0x0F, 0xFF}), 4), "  __");
  EXPECT_EQ(Unpacking(Decompress6, "", 0), "");
  GuardedBuffer buffer(0);
  Decompress6(buffer.Data(), nullptr, -1);
  Decompress6(buffer.Data(), nullptr, INT_MIN);
  EXPECT_TRUE(buffer.Intact());
}

TEST(SixBits, EveryLengthIntoEverySize)
{
  RandomText random;
  for (std::size_t length = 0; length <= 80; ++length) {
    const std::string text = (random.Bytes(length) + std::string(length, 'K')).substr(0, length);
    for (std::size_t size = 1; size <= SixBitSize(length) + 4; ++size)
      ASSERT_EQ(Packing(Compress6, text, size), Packing(reference::Compress6, text, size))
          << length << " into " << size;
  }
}

TEST(SixBits, EveryLengthAndItsUnpacking)
{
  RandomText random;
  for (int length = 0; length <= 300; ++length) {
    std::string packed(SixBitSize(static_cast<std::size_t>(length)), '\0');
    for (char& c : packed) c = static_cast<char>(random.Below(256));
    ASSERT_EQ(Unpacking(Decompress6, packed, length), Unpacking(reference::Decompress6, packed, length)) << length;
  }
}

std::string StorableText(RandomText& random, std::size_t most)
{
  std::string text(random.Below(most + 1), '\0');
  for (char& c : text) c = static_cast<char>(0x20 + random.Below(64));
  return text;
}

TEST(SixBits, LikeReference)
{
  RandomText random;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = i % 3 == 0 ? random.Bytes(150) : i % 3 == 1 ? random.Address() : StorableText(random, 150);
    const std::size_t size = 1 + random.Below(SixBitSize(text.size()) + 5);
    ASSERT_EQ(Packing(Compress6, text, size), Packing(reference::Compress6, text, size)) << Hex(text) << size;
  }
}

TEST(SixBits, UnpackLikeReferenceAndBack)
{
  RandomText random;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = StorableText(random, 150);
    const int count = static_cast<int>(text.size());
    const auto [used, packed] = Packing(Compress6, text, SixBitSize(text.size()) + 1);
    const std::string needed = packed.substr(0, used);
    ASSERT_EQ(Unpacking(Decompress6, needed, count), text);
    ASSERT_EQ(Unpacking(reference::Decompress6, needed, count), text);
  }
}

std::vector<qxpaf::SixBitPath> PathsHere()
{
  using Path = qxpaf::SixBitPath;
  std::vector<Path> paths;
  for (const Path path : {Path::kPortable, Path::kSsse3, Path::kAvx2})
    if (path <= qxpaf::BestSixBitPath()) paths.push_back(path);
  return paths;
}

TEST(SixBits, EveryPathDoesTheSame)
{
  RandomText random;
  for (const qxpaf::SixBitPath path : PathsHere()) {
    for (std::size_t groups = 0; groups <= 100; ++groups) {
      const std::string text = (random.Bytes(groups * 4) + std::string(groups * 4, 'k')).substr(0, groups * 4);
      const auto pack = [=](char* to, std::size_t, const char* from, std::size_t) {
        qxpaf::PackSixBitGroups(path, to, from, groups);
        return 0;
      };
      const std::string packed = Packing(pack, text, groups * 3).second;
      if (groups > 0) {
        ASSERT_EQ(packed, Packing(reference::Compress6, text, groups * 3).second);
      }

      const std::vector<char> source(packed.begin(), packed.end());
      GuardedBuffer back(groups * 4);
      qxpaf::UnpackSixBitGroups(path, back.Data(), source.data(), groups);
      ASSERT_TRUE(back.Intact());
      ASSERT_EQ(back.Bytes(), Unpacking(reference::Decompress6, packed, static_cast<int>(groups * 4)));
    }
  }
}

TEST(SixBits, AMegabyte)
{
  RandomText random;
  std::string text((1 << 20) + 3, '\0');
  for (char& c : text) c = static_cast<char>(0x20 + random.Below(64));
  const auto [used, packed] = Packing(Compress6, text, text.size());
  EXPECT_EQ(used, SixBitSize(text.size()));
  EXPECT_EQ(Unpacking(Decompress6, packed.substr(0, used), static_cast<int>(text.size())), text);
}

long FiveBitCode(char c)
{
  const auto [used, bytes] = Packing(Compress5, std::string(1, c), 1);
  EXPECT_EQ(used, 1);
  EXPECT_EQ(bytes[0] & 7, 0);
  return static_cast<unsigned char>(bytes[0]) >> 3;
}

TEST(FiveBits, Codes)
{
  constexpr char kListed[] =
      "\0"
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string listed(kListed, sizeof kListed - 1);
  const long codes[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18,
                        19, 19, 20, 21, 22, 23, 24, 25, 24, 26, 27, 28, 29, 29, 30, 31, 31, 31};
  for (std::size_t i = 0; i < listed.size(); ++i) EXPECT_EQ(FiveBitCode(listed[i]), codes[i]) << listed[i];
  for (int c = 1; c <= 0xFF; ++c) {
    if (listed.find(static_cast<char>(c)) == std::string::npos) {
      EXPECT_EQ(FiveBitCode(static_cast<char>(c)), 31) << c;
    }
  }
}

struct FiveBitRow
{
  std::string text;
  std::size_t size;
  long result;
  std::string bytes;
};

TEST(FiveBits, Rows)
{
  const FiveBitRow rows[] = {
      {"", 2, 0, Bytes({0xA5, 0xA5})},
      {"", 0, 0, ""},
      {"A", 0, 1, ""},
      {"0", 1, 1, Bytes({0x08})},
      {"00", 1, 2, Bytes({0x08})},
      {"00", 2, 2, Bytes({0x08, 0x40})},
      {"ABCDEFGH", 5, 5, Bytes({0x5B, 0x1A, 0xE7, 0xC2, 0x32})},
      {"ABCDEFGH", 6, 5, Bytes({0x5B, 0x1A, 0xE7, 0xC2, 0x32, 0xA5})},
      {"ABCDEFGH", 4, 5, Bytes({0x5B, 0x1A, 0xE7, 0xC2})},
      {"ABCDEFGHI", 5, 6, Bytes({0x5B, 0x1A, 0xE7, 0xC2, 0x32})},
      {"ABCDEFGHABCDEFGH", 5, 6, Bytes({0x5B, 0x1A, 0xE7, 0xC2, 0x32})},
  };
  for (const FiveBitRow& row : rows) {
    const auto [result, bytes] = Packing(Compress5, row.text, row.size);
    EXPECT_EQ(result, row.result) << row.text << " into " << row.size;
    EXPECT_EQ(Hex(bytes), Hex(row.bytes)) << row.text << " into " << row.size;
  }
}

TEST(FiveBits, EveryLengthIntoEverySize)
{
  RandomText random;
  for (std::size_t length = 0; length <= 50; ++length) {
    const std::string text = (random.Bytes(length) + std::string(length, 'K')).substr(0, length);
    for (std::size_t size = 0; size <= length + 2; ++size)
      ASSERT_EQ(Packing(Compress5, text, size), Packing(reference::Compress5, text, size))
          << length << " into " << size;
  }
}

TEST(FiveBits, LikeReference)
{
  RandomText random;
  for (int i = 0; i < kTexts; ++i) {
    std::string text = i % 3 == 0 ? random.Bytes(60) : i % 3 == 1 ? random.Address() : StorableText(random, 60);
    if (random.Below(4) == 0) text += std::string(random.Below(3), '\0') + "X";
    const std::size_t size = random.Below(text.size() + 2);
    ASSERT_EQ(Packing(Compress5, text, size), Packing(reference::Compress5, text, size)) << Hex(text) << size;
  }
}

}  // namespace
