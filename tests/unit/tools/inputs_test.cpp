#include "paf/inputs.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace tool {
namespace {

using Texts = std::vector<std::string>;

/** Standard input holds a text, from construction to destruction. */
class InputText
{
 public:
  explicit InputText(const std::string& text) : text_(text), before_(std::cin.rdbuf(text_.rdbuf())) {}
  ~InputText()
  {
    std::cin.rdbuf(before_);
    std::cin.clear();
  }
  InputText(const InputText&) = delete;
  InputText& operator=(const InputText&) = delete;

 private:
  std::istringstream text_;
  std::streambuf* before_;
};

Texts Visited(const Texts& arguments, const std::string& input)
{
  const InputText text(input);
  Texts visited;
  ForEachInput(arguments, [&visited](const std::string& one) { visited.push_back(one); });
  return visited;
}

struct InputRow
{
  std::string input;
  Texts visited;
};

const InputRow kInputs[] = {{"", {}},
                            {"\n\r\n \t\n\v\f\n", {}},
                            {"a", {"a"}},
                            {"a\nb\n", {"a", "b"}},
                            {"a\r\n b \r\n", {"a", " b "}},
                            {"a\r\r\nb\rc\n", {"a\r", "b\rc"}},
                            {std::string("a\0b\n", 4), {std::string("a\0b", 3)}},
                            {"caf\xE9\n", {"caf\xE9"}},
                            {std::string(100'000, 'x') + "\ny", {std::string(100'000, 'x'), "y"}}};

TEST(Inputs, AreTheLinesOfStandardInputThatAreNotBlank)
{
  for (const InputRow& row : kInputs) {
    EXPECT_EQ(Visited({}, row.input), row.visited) << testing::PrintToString(row.input.substr(0, 40));
  }
}

TEST(Inputs, AreTheArgumentsWhenThereAreAny)
{
  EXPECT_EQ(Visited({"a", "", "b\nc"}, "ignored\n"), (Texts{"a", "", "b\nc"}));
}

/** An answer must not wait for a question that has not come yet. */
TEST(Inputs, AnswersAreWrittenOutBeforeTheNextLineIsWaitedFor)
{
  struct CountingBuffer : std::stringbuf
  {
    int sync() override { return ++flushes, 0; }
    int flushes = 0;
  } buffer;
  std::streambuf* const before = std::cout.rdbuf(&buffer);
  Visited({}, "a\nb\n");
  std::cout.rdbuf(before);
  EXPECT_GE(buffer.flushes, 1);
}

TEST(Words, AreJoinedBySpaces)
{
  EXPECT_EQ(JoinWords({}), "");
  EXPECT_EQ(JoinWords({"a"}), "a");
  EXPECT_EQ(JoinWords({"a b", "c"}), "a b c");
}

}  // namespace
}  // namespace tool
