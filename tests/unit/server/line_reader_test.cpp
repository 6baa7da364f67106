#include "server/line_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/random_seed.h"

namespace pafd {
namespace {

constexpr const char* kTooLong = "(too long)";

/** Everything that a reader finds when it gets a text in pieces of at most `piece` bytes. */
std::vector<std::string> Lines(LineReader& reader, std::string_view text, std::size_t piece)
{
  std::vector<std::string> lines;
  while (true) {
    std::string_view line;
    const LineReader::Found found = reader.Next(line);
    if (found == LineReader::Found::Line) {
      lines.emplace_back(line);
    } else if (found == LineReader::Found::TooLong) {
      lines.emplace_back(kTooLong);
    } else if (text.empty()) {
      return lines;
    } else {
      const std::span<char> space = reader.Space();
      EXPECT_FALSE(space.empty());
      const std::size_t count = std::min({piece, space.size(), text.size()});
      std::copy_n(text.begin(), count, space.begin());
      reader.Received(count);
      text.remove_prefix(count);
    }
  }
}

struct Row
{
  std::string text;
  std::vector<std::string> lines;
  bool isInsideLine;
};

TEST(LineReader, FindsLinesWhateverThePieces)
{
  const std::string ten = "0123456789";
  const std::vector<Row> rows = {{"", {}, false},
                                 {"a", {}, true},
                                 {"\n", {""}, false},
                                 {"\r\n", {""}, false},
                                 {"\r", {}, true},
                                 {"a\nb\r\n\nc", {"a", "b", ""}, true},
                                 {"a\rb\n", {"a\rb"}, false},
                                 {"a\r\r\n", {"a\r"}, false},
                                 {ten + "\n", {ten}, false},
                                 {ten + "\r\n", {ten}, false},
                                 {ten + "x\n", {kTooLong}, false},
                                 {ten + "x\r\n", {kTooLong}, false},
                                 {ten + "\r\r\n", {kTooLong}, false},
                                 {ten + ten + ten + "\nab\n", {kTooLong, "ab"}, false},
                                 {ten + ten, {}, true},
                                 {ten + "x\n" + ten + "y\n" + ten + "\n", {kTooLong, kTooLong, ten}, false},
                                 {std::string("a\0b\n", 4), {std::string("a\0b", 3)}, false}};
  for (const Row& row : rows) {
    for (std::size_t piece = 1; piece <= row.text.size() + 1; ++piece) {
      LineReader reader(10);
      EXPECT_EQ(Lines(reader, row.text, piece), row.lines) << row.text << " in pieces of " << piece;
      EXPECT_EQ(reader.IsInsideLine(), row.isInsideLine) << row.text << " in pieces of " << piece;
    }
  }
}

TEST(LineReader, HoldsLinesOfEveryLengthUpToTheLongest)
{
  constexpr std::size_t kLongest = 20000;
  LineReader reader(kLongest);
  for (const std::size_t length : {0ul, 1ul, 511ul, 512ul, 4095ul, 4096ul, 4097ul, kLongest - 1, kLongest, 1ul}) {
    const std::string line(length, 'z');
    EXPECT_EQ(Lines(reader, line + "\n", 3000), std::vector<std::string>{line});
  }
  EXPECT_EQ(Lines(reader, std::string(kLongest + 1, 'z') + "\n", 3000), std::vector<std::string>{kTooLong});
}

TEST(LineReader, HoldsNoMoreThanALine)
{
  constexpr std::size_t kLongest = 10000;
  LineReader reader(kLongest);
  const std::string much(1'000'000, 'z');
  EXPECT_TRUE(Lines(reader, much, much.size()).empty());
  EXPECT_LE(reader.Space().size(), 4 * kLongest);
  EXPECT_EQ(Lines(reader, "\n", 1), std::vector<std::string>{kTooLong});
  EXPECT_LE(reader.Space().size(), 4096u);
}

TEST(LineReader, AgreesWithASimpleReaderOnRandomTexts)
{
  std::mt19937 source(test_support::RandomSeed());
  for (int round = 0; round < 300; ++round) {
    std::string text;
    std::vector<std::string> expected;
    for (int i = 0; i < 20; ++i) {
      const std::string line(source() % 600, 'a');
      text += line + (source() % 2 == 0 ? "\n" : "\r\n");
      expected.push_back(line.size() <= 300 ? line : kTooLong);
    }
    LineReader reader(300);
    EXPECT_EQ(Lines(reader, text, 1 + source() % 1000), expected);
  }
}

}  // namespace
}  // namespace pafd
