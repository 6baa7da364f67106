#include "server/reply.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

namespace pafd {
namespace {

std::string Written(const Answer& answer, Shape shape)
{
  std::string line = "left from the reply before";
  WriteReply(answer, shape, line);
  return line;
}

Answer WithText(int status, const std::string& text)
{
  Answer answer;
  answer.Reset(text);
  answer.status = status;
  answer.id = 3;
  answer.numbers = {11, -22};
  answer.values = {4, 5, 6};
  answer.valueCount = 2;
  return answer;
}

struct Row
{
  Shape shape;
  std::string onSuccess;
  std::string onFailure;
};

TEST(WriteReply, HasAllShapes)
{
  const std::vector<Row> rows = {{Shape::Number, "0\n", "6405\n"},
                                 {Shape::Value, "0\n", "6405\n"},
                                 {Shape::Open, "0\t3\n", "6405\t3\n"},
                                 {Shape::Text, "0\ttext\n", "6405\t\n"},
                                 {Shape::InPlace, "0\ttext\n", "6405\t\n"},
                                 {Shape::Record1, "0\t11\ttext\n", "6405\t11\ttext\n"},
                                 {Shape::Record2, "0\t11\t-22\ttext\n", "6405\t11\t-22\ttext\n"},
                                 {Shape::List, "0\t4\t5\n", "6405\n"}};
  for (const Row& row : rows) {
    EXPECT_EQ(Written(WithText(0, "text"), row.shape), row.onSuccess);
    EXPECT_EQ(Written(WithText(6405, "text"), row.shape), row.onFailure);
  }
}

TEST(WriteReply, SendsAMessageOnlyWithAFailure)
{
  Answer answer = WithText(0, "text");
  answer.message = "why";
  EXPECT_EQ(Written(answer, Shape::Text), "0\ttext\n");
  answer.status = 8;
  EXPECT_EQ(Written(answer, Shape::Text), "8\twhy\n");
}

TEST(WriteReply, TurnsLineFeedsIntoTabs)
{
  EXPECT_EQ(Written(WithText(0, "\na\n\nb\n"), Shape::Text), "0\t\ta\t\tb\t\n");
}

TEST(WriteReply, KeepsToTheLimits)
{
  for (const std::size_t size : {1020u, 1021u, 1022u, 5000u}) {
    const std::string line = Written(WithText(0, std::string(size, 'x')), Shape::Text);
    EXPECT_EQ(line.size(), std::min<std::size_t>(size + 2, 1023) + 1);
    EXPECT_EQ(line.back(), '\n');
  }
  EXPECT_EQ(Written(WithText(INT_MIN, std::string(5000, 'x')), Shape::Record2).size(), 1024u);
  Answer answer = WithText(0, "");
  answer.values.fill(INT_MIN);
  for (const int count : {-1, 0, 19, 20, 21, INT_MAX}) {
    answer.valueCount = count;
    const std::string line = Written(answer, Shape::List);
    EXPECT_LE(line.size(), 256u);
    EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), std::clamp(count, 0, 20));
  }
}

TEST(Answer, IsResetToATextWithRoomForAnAnswer)
{
  Answer answer = WithText(5, "text");
  answer.message = "why";
  for (const std::size_t size : {0u, 1u, 1022u, 1023u, 70000u, 3u}) {
    answer.Reset(std::string(size, 'y'));
    EXPECT_EQ(std::strlen(answer.Text()), size);
    EXPECT_GE(answer.buffer.size(), std::max<std::size_t>(size, kTextSize) + 1);
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.id, 0);
    EXPECT_EQ(answer.valueCount, 0);
    EXPECT_EQ(answer.message, "");
  }
  EXPECT_LT(answer.buffer.size(), 10000u);
}

TEST(WriteStatus, IsALine)
{
  std::string line = "before";
  WriteStatus(4500, line);
  EXPECT_EQ(line, "4500\n");
}

}  // namespace
}  // namespace pafd
