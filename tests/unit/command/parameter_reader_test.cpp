#include "command/parameter_reader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random_seed.h"

namespace {

using namespace qxpaf;
using test_support::GuardedBuffer;

struct Row
{
  const char* text;
  bool read;
  const char* key;
  const char* value;
  const char* rest;
};

const Row kRows[] = {
    {"Id=1;x", true, "Id", "1", "x"},
    {"Id=1;", true, "Id", "1", ""},
    {"=;", true, "", "", ""},
    {"=1;x", true, "", "1", "x"},
    {"Id=;x", true, "Id", "", "x"},
    {"Id=1=2=;x", true, "Id", "1=2=", "x"},
    {"Id=\t;x", true, "Id", "\t", "x"},
    {"Id=a\tb;x", true, "Id", "a\tb", "x"},
    {" a b =\n;x", true, " a b ", "\n", "x"},
    {"\xff=\xfe;\xfd", true, "\xff", "\xfe", "\xfd"},
    {"A=1;B=2;x", true, "A", "1", "B=2;x"},
    {"Id=1;;x", true, "Id", "1", ";x"},
    {"", false, "", "", ""},
    {"x", false, "", "", "x"},
    {"=", false, "", "", "="},
    {";", false, "", "", ";"},
    {"\t", false, "", "", "\t"},
    {"Id=1", false, "", "", "Id=1"},
    {"Id=1\t", false, "", "", "Id=1\t"},
    {"Id;x", false, "", "", "Id;x"},
    {";=;", false, "", "", ";=;"},
    {";Id=1;", false, "", "", ";Id=1;"},
    {"x;Id=1;", false, "", "", "x;Id=1;"},
    {"\tId=1;", false, "", "", "\tId=1;"},
    {"Id\t=1;", false, "", "", "Id\t=1;"},
    {"\t=;", false, "", "", "\t=;"},
};

/** A text in memory of exactly its size. */
class Buffer
{
 public:
  explicit Buffer(const std::string& text) : memory_(text.size() + 1)
  {
    std::memcpy(memory_.Data(), text.c_str(), text.size() + 1);
  }
  ~Buffer() { EXPECT_TRUE(memory_.Intact()); }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  char* Start() { return memory_.Data(); }
  std::string Bytes() { return memory_.Bytes(); }

 private:
  GuardedBuffer memory_;
};

TEST(ParameterReader, ReadsOneParameterOrNothing)
{
  for (const Row& row : kRows) {
    Buffer buffer(row.text);
    const std::string before = buffer.Bytes();
    char* position = buffer.Start();
    Parameter parameter{"old", "old"};
    EXPECT_EQ(row.read, ReadParameter(position, parameter)) << row.text;
    EXPECT_STREQ(row.key, parameter.key) << row.text;
    EXPECT_STREQ(row.value, parameter.value) << row.text;
    EXPECT_STREQ(row.rest, position) << row.text;
    EXPECT_TRUE(row.read || (position == buffer.Start() && before == buffer.Bytes())) << row.text;
  }
}

TEST(ParameterReader, ReadsOneAfterTheOther)
{
  Buffer buffer("A=1;b=;=3;rest=4");
  char* position = buffer.Start();
  std::vector<std::string> read;
  for (Parameter parameter; ReadParameter(position, parameter);)
    read.push_back(std::string(parameter.key) + ":" + parameter.value);
  EXPECT_EQ((std::vector<std::string>{"A:1", "b:", ":3"}), read);
  EXPECT_STREQ("rest=4", position);
}

TEST(ParameterReader, ComparesKeysIgnoringCase)
{
  const Parameter parameter{"LatLong", ""};
  EXPECT_TRUE(parameter.Is("LatLong"));
  EXPECT_TRUE(parameter.Is("LATLONG"));
  EXPECT_TRUE(parameter.Is("latlong"));
  for (const char* other : {"", "LatLon", "LatLongs", " LatLong", "Lat Long"}) EXPECT_FALSE(parameter.Is(other));
  EXPECT_TRUE((Parameter{"", ""}.Is("")));
  EXPECT_FALSE((Parameter{"", ""}.Is("Id")));
}

TEST(ParameterReader, KnowsOnlyTrueAsTrue)
{
  for (const char* value : {"True", "true", "TRUE", "tRUE"}) EXPECT_TRUE(IsTrue(value)) << value;
  for (const char* value : {"", "T", "Tru", "Truee", " True", "True ", "1", "Yes", "False"})
    EXPECT_FALSE(IsTrue(value)) << value;
}

/** The rule in its own words: the first TAB, the first "=" and the first ";" of the text. */
bool Expected(const std::string& text)
{
  const size_t tab = text.find('\t');
  const size_t equals = text.find('=');
  const size_t semicolon = text.find(';');
  return equals != std::string::npos && semicolon != std::string::npos && equals < semicolon && equals < tab;
}

TEST(ParameterReader, FollowsItsRuleOnRandomTexts)
{
  std::mt19937 random(test_support::RandomSeed());
  const std::string alphabet = "a1\t=;";
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 8, '\0');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    Buffer buffer(text);
    char* position = buffer.Start();
    Parameter parameter;
    ASSERT_EQ(Expected(text), ReadParameter(position, parameter)) << text;
    if (!Expected(text)) continue;
    ASSERT_EQ(text.substr(0, text.find('=')), parameter.key);
    ASSERT_EQ(text.substr(text.find('=') + 1, text.find(';') - text.find('=') - 1), parameter.value);
    ASSERT_EQ(text.substr(text.find(';') + 1), position);
  }
}

}  // namespace
