#include "paf/answer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "paf/exit_code.h"

namespace tool {
namespace {

Answer Found()
{
  Answer answer;
  answer.input = "1 high st";
  answer.dpid = "30000001";
  answer.record.emplace("1 HIGH ST\t\t\tCARLTON\tVIC\t3053");
  answer.address = answer.record->OneLine();
  return answer;
}

Answer Failed(int status, const std::string& description)
{
  Answer answer;
  answer.input = "x";
  answer.reply = {status, "", description};
  return answer;
}

std::string Written(bool json, const std::vector<Answer>& answers)
{
  std::ostringstream out;
  {
    AnswerWriter writer(out, json);
    for (const Answer& answer : answers) {
      writer.Write(answer);
    }
  }
  return out.str();
}

TEST(AnswerWriter, WritesOneLineAnAnswer)
{
  Answer fixed;
  fixed.address = "CARLTON VIC 3053";
  EXPECT_EQ(Written(false, {Found(), fixed, Failed(12, "No such street"), Failed(13, "")}),
            "30000001\t1 HIGH ST, CARLTON VIC 3053\n"
            "CARLTON VIC 3053\n"
            "-\tNo such street (status 12)\n"
            "-\tstatus 13\n");
}

TEST(AnswerWriter, WritesOneJsonDocument)
{
  const auto document = nlohmann::json::parse(Written(true, {Found(), Failed(12, "No such street")}));
  ASSERT_EQ(document.size(), 2U);
  const nlohmann::json found = {
      {"input", "1 high st"},
      {"status", 0},
      {"dpid", "30000001"},
      {"address", "1 HIGH ST, CARLTON VIC 3053"},
      {"fields", {{"AddressLine1", "1 HIGH ST"}, {"Locality", "CARLTON"}, {"State", "VIC"}, {"Postcode", "3053"}}},
      {"description", ""}};
  EXPECT_EQ(document[0], found);
  const nlohmann::json failed = {{"input", "x"},
                                 {"status", 12},
                                 {"dpid", ""},
                                 {"address", ""},
                                 {"fields", nlohmann::json::object()},
                                 {"description", "No such street"}};
  EXPECT_EQ(document[1], failed);
}

TEST(AnswerWriter, WritesAnEmptyArrayForNoAnswers)
{
  EXPECT_EQ(Written(true, {}), "[]\n");
  EXPECT_EQ(Written(false, {}), "");
}

TEST(AnswerWriter, ReplacesBytesThatAreNoUtf8InJsonOnly)
{
  Answer answer = Failed(12, "caf\xe9 \xc3\xa9 \xed\xa0\x80");
  answer.input = "\xff\"\n";
  const auto document = nlohmann::json::parse(Written(true, {answer}));
  EXPECT_EQ(document[0]["input"], "\xef\xbf\xbd\"\n");
  EXPECT_EQ(document[0]["description"].get<std::string>().substr(0, 9), "caf\xef\xbf\xbd \xc3\xa9");
  EXPECT_EQ(Written(false, {answer}), "-\tcaf\xe9 \xc3\xa9 \xed\xa0\x80 (status 12)\n");
}

struct ExitRow
{
  std::vector<int> statuses;
  int exitStatus;
};

TEST(AnswerWriter, AddsUpToTheWorstExitStatus)
{
  const std::vector<ExitRow> rows = {{{}, kExitFound},          {{0, 0}, kExitFound}, {{0, 1, 0}, kExitNotFound},
                                     {{599, 0}, kExitNotFound}, {{600}, kExitFailed}, {{6408, 12, 0}, kExitFailed},
                                     {{12, 4556}, kExitFailed}, {{-1}, kExitFailed}};
  for (const ExitRow& row : rows) {
    std::ostringstream out;
    AnswerWriter writer(out, false);
    for (const int status : row.statuses) {
      writer.Write(Failed(status, ""));
    }
    EXPECT_EQ(writer.ExitStatus(), row.exitStatus) << out.str();
    EXPECT_EQ(writer.HasWritten(), !row.statuses.empty());
  }
}

}  // namespace
}  // namespace tool
