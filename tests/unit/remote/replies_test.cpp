#include "remote/replies.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "client_fixture.h"
#include "support/guarded_buffer.h"

namespace {

using fake::Reply;
using test_support::GuardedBuffer;

struct SplitRow
{
  std::string reply;
  std::vector<std::string> fields;  // the first field and the rests, as they stand after all cuts
};

TEST(SplitFirstField, CutsAtTheFirstTab)
{
  const std::vector<SplitRow> rows = {
      {"", {"", ""}},     {"0", {"0", ""}},     {"0\t", {"0", ""}},         {"\t", {"", ""}},
      {"\tx", {"", "x"}}, {"0\tx", {"0", "x"}}, {"0\tx\ty", {"0", "x\ty"}}, {"0\t\tx", {"0", "\tx"}},
  };
  for (SplitRow row : rows) {
    const char* const end = row.reply.data() + row.reply.size();
    const char* const rest = qxpaf::SplitFirstField(row.reply.data());
    EXPECT_EQ(row.fields[0], row.reply.c_str());
    EXPECT_EQ(row.fields[1], rest);
    EXPECT_EQ(end, rest + std::string(rest).size());
  }
}

TEST(SplitThreeFields, GivesEmptyTextsFromTheFirstMissingTabOn)
{
  const std::vector<SplitRow> rows = {
      {"", {"", "", "", ""}},
      {"0", {"0", "", "", ""}},
      {"0\t", {"0", "", "", ""}},
      {"0\t1", {"0", "1", "", ""}},
      {"0\t1\t2", {"0", "1", "2", ""}},
      {"0\t1\t2\t3", {"0", "1", "2", "3"}},
      {"0\t1\t2\t3\t4", {"0", "1", "2", "3\t4"}},
      {"\t\t\t", {"", "", "", ""}},
      {"0\t\tx", {"0", "", "x", ""}},
  };
  for (SplitRow row : rows) {
    const auto rests = qxpaf::SplitThreeFields(row.reply.data());
    EXPECT_EQ(row.fields[0], row.reply.c_str());
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(row.fields[i + 1], rests[i]) << row.fields[0] << i;
  }
}

class Replies : public testing::Test, protected WithServer
{
 protected:
  /** Request for which the server has this reply. */
  char* Asking(Reply reply)
  {
    server.Expect("pafQuestion", std::move(reply));
    return request_.data();
  }

  char* Asking(const std::string& line) { return Asking(Reply::Line(line)); }

 private:
  std::string request_ = "pafQuestion";
};

struct NumberRow
{
  const char* reply;
  int result;
};

TEST_F(Replies, NumbersAreReadAsFarAsTheyGo)
{
  const NumberRow rows[] = {
      {"0", 0},
      {"6405", 6405},
      {"-1", -1},
      {"+3", 3},
      {"", 0},
      {"abc", 0},
      {"  12", 12},
      {"12\t5", 12},
      {"12abc", 12},
      {"\t12", 12},
      {"007", 7},
      {"1.9", 1},
      {"2147483647", 2147483647},
      {"--1", 0},
      {"-2147483648", -2147483647 - 1},
  };
  for (const NumberRow& row : rows) EXPECT_EQ(row.result, qxpaf::CallForStatus(Asking(row.reply))) << row.reply;
  EXPECT_EQ(0u, server.StepsLeft());
}

TEST_F(Replies, NumbersMayHave63Characters)
{
  EXPECT_EQ(7, qxpaf::CallForStatus(Asking(std::string(62, '0') + '7')));
  EXPECT_EQ(4555, qxpaf::CallForStatus(Asking(std::string(63, '0') + '7')));
  ExpectRecorded(4555, ReplyTooLong().text);
}

struct OpenRow
{
  const char* reply;
  int status;
  int id;
};

TEST_F(Replies, OpensGiveAnIdOrZero)
{
  const OpenRow rows[] = {
      {"0\t5", 0, 5},   {"0\t 5x", 0, 5},  {"0\t-5", 0, -5},     {"0\t", 0, 0},     {"0", 0, 0},
      {"", 0, 0},       {"\t5", 0, 5},     {"6499\t5", 6499, 0}, {"6499", 6499, 0}, {"6499\twords", 6499, 0},
      {"-1\t5", -1, 0}, {"0\t5\t6", 0, 5},
  };
  for (const OpenRow& row : rows) {
    int id = 99;
    EXPECT_EQ(row.status, qxpaf::CallForOpen(Asking(row.reply), &id)) << row.reply;
    EXPECT_EQ(row.id, id) << row.reply;
  }
}

TEST_F(Replies, OpensMayHave255Characters)
{
  int id = 0;
  EXPECT_EQ(0, qxpaf::CallForOpen(Asking("0\t" + std::string(252, '0') + '7'), &id));
  EXPECT_EQ(7, id);
  EXPECT_EQ(4555, qxpaf::CallForOpen(Asking("0\t" + std::string(253, '0') + '7'), &id));
  EXPECT_EQ(0, id);
}

struct TextRow
{
  std::string reply;
  int status;
  std::string text;
  std::optional<std::string> message;  // none: not written
};

const std::string kWords300(300, 'w');

TEST_F(Replies, TextsComeOnSuccessAndMessagesOnFailure)
{
  const std::vector<TextRow> rows = {
      {"0\tanswer", 0, "answer", std::nullopt},
      {"0", 0, "", std::nullopt},
      {"0\t", 0, "", std::nullopt},
      {"", 0, "", std::nullopt},
      {"\tanswer", 0, "answer", std::nullopt},
      {"text\tanswer", 0, "answer", std::nullopt},
      {"0\tone\ttwo\t", 0, "one\ttwo\t", std::nullopt},
      {"6405\twords", 6405, "", "words"},
      {"6405", 6405, "", ""},
      {"-1\tone\ttwo", -1, "", "one\ttwo"},
      {"12\t" + kWords300.substr(0, 255), 12, "", kWords300.substr(0, 255)},
      {"12\t" + kWords300, 12, "", kWords300.substr(0, 255)},
  };
  for (const TextRow& row : rows) {
    GuardedBuffer out(100);
    GuardedBuffer message(qxpaf::kServerTextSize);
    EXPECT_EQ(row.status, qxpaf::CallForText(Asking(row.reply), out.Data(), 100, message.Data())) << row.reply;
    EXPECT_EQ(row.text, out.Data()) << row.reply;
    if (row.message) {
      EXPECT_EQ(*row.message, message.Data()) << row.reply;
    } else {
      EXPECT_EQ(std::string(message.Size(), GuardedBuffer::kFill), message.Bytes()) << row.reply;
    }
    EXPECT_TRUE(out.Intact() && message.Intact()) << row.reply;
  }
  EXPECT_EQ(0, Recorded().code) << "what the server answers is not recorded";
}

TEST_F(Replies, TextsAreCutToTheBuffer)
{
  for (const int size : {-1, 0, 1, 2, 6, 7, 8}) {
    for (const char* const reply : {"0\tanswer", "12\tanswer"}) {
      const std::string expected = *reply == '0' ? "answer" : "";
      GuardedBuffer out(size < 1 ? 1 : static_cast<std::size_t>(size));
      qxpaf::CallForText(Asking(reply), out.Data(), size);
      if (size < 1) {
        EXPECT_EQ(std::string(1, GuardedBuffer::kFill), out.Bytes()) << size;
      } else {
        EXPECT_EQ(expected.substr(0, static_cast<std::size_t>(size) - 1), out.Data()) << size;
      }
      EXPECT_TRUE(out.Intact()) << size;
    }
  }
}

TEST_F(Replies, TextsMayBeUnwanted)
{
  EXPECT_EQ(0, qxpaf::CallForText(Asking("0\tanswer"), nullptr, 10));
  EXPECT_EQ(12, qxpaf::CallForText(Asking("12\twords"), nullptr, 10));
}

TEST_F(Replies, TextsMayHave1023Characters)
{
  const std::string text(1021, 't');
  GuardedBuffer out(1024);
  EXPECT_EQ(0, qxpaf::CallForText(Asking("0\t" + text), out.Data(), 1024));
  EXPECT_EQ(text, out.Data());
  GuardedBuffer untouched(1024);
  EXPECT_EQ(4555, qxpaf::CallForText(Asking("0\t" + text + "t"), untouched.Data(), 1024));
  EXPECT_EQ(std::string(1024, GuardedBuffer::kFill), untouched.Bytes());
  ExpectRecorded(4555, ReplyTooLong().text);
  EXPECT_TRUE(IsSocketBroken());
}

struct RecordRow
{
  std::string reply;
  int status;
  long first;
  long second;
  std::string text;           // with two numbers
  std::string textBehindOne;  // with one
};

TEST_F(Replies, RecordsAreTakenOverWhateverTheStatus)
{
  const std::vector<RecordRow> rows = {
      {"0\t1\t2\ttext", 0, 1, 2, "text", "2"},
      {"0\t-1\t-2\tone\ttwo", 0, -1, -2, "one\ttwo", "-2"},
      {"6408\t1\t2\ttext", 6408, 1, 2, "text", "2"},
      {"6408", 6408, 0, 0, "", ""},
      {"0\t1", 0, 1, 0, "", ""},
      {"0\t1\t2", 0, 1, 2, "", "2"},
      {"", 0, 0, 0, "", ""},
      {"0\t\t\ttext", 0, 0, 0, "text", ""},
      {"0\t1\t2\t" + kWords300, 0, 1, 2, kWords300.substr(0, 255), "2"},
      {"0\t1\t" + kWords300, 0, 1, 0, "", kWords300.substr(0, 255)},
  };
  for (const RecordRow& row : rows) {
    for (const bool two : {true, false}) {
      GuardedBuffer text(qxpaf::kServerTextSize);
      long first = 99;
      long second = 99;
      EXPECT_EQ(row.status, qxpaf::CallForRecord(Asking(row.reply), text.Data(), &first, two ? &second : nullptr))
          << row.reply;
      EXPECT_EQ(row.first, first) << row.reply;
      EXPECT_EQ(two ? row.second : 99, second) << row.reply;
      EXPECT_EQ(two ? row.text : row.textBehindOne, text.Data()) << row.reply;
      EXPECT_TRUE(text.Intact());
    }
  }
}

struct ListRow
{
  std::string reply;
  int room;
  int count;
  std::vector<int> values;  // those that are written
};

TEST_F(Replies, ListsGiveTheirValuesAndOneMoreForTheCount)
{
  const std::vector<ListRow> rows = {
      {"0\t11\t22\t33", 2, 4, {11, 22}},
      {"0\t11\t22\t33", 3, 4, {11, 22, 33}},
      {"0\t11\t22\t33", 4, 4, {11, 22, 33}},
      {"0\t11\t22\t33", 1, 4, {11}},
      {"0\t11\t22\t33", 0, 4, {}},
      {"0\t11\t22\t33", -5, 4, {}},
      {"0", 3, 1, {}},
      {"", 3, 1, {}},
      {"0\t", 3, 2, {0}},
      {"0\t11\t\tx\t 7y", 5, 5, {11, 0, 0, 7}},
      {"\t11", 3, 2, {11}},
      {"0x\t11", 3, 2, {11}},
      {"6408", 3, 0, {}},
      {"6408\t11\t22", 3, 0, {}},
      {"-1\t11", 3, 0, {}},
  };
  for (const ListRow& row : rows) {
    std::vector<int> values(6, -99);
    int count = row.room;
    EXPECT_EQ(0, qxpaf::CallForList(Asking(row.reply), values.data(), &count)) << row.reply;
    EXPECT_EQ(row.count, count) << row.reply << " " << row.room;
    std::vector<int> expected = row.values;
    expected.resize(values.size(), -99);
    EXPECT_EQ(expected, values) << row.reply << " " << row.room;
  }
}

TEST_F(Replies, ListsMayHave255Characters)
{
  std::string reply = "0";
  while (reply.size() < 255) reply += "\t1";
  std::vector<int> values(200, 0);
  int count = 200;
  EXPECT_EQ(0, qxpaf::CallForList(Asking(reply), values.data(), &count));
  EXPECT_EQ(128, count);
  EXPECT_EQ(1, values[126]);
  EXPECT_EQ(0, values[127]);
  count = 200;
  EXPECT_EQ(4555, qxpaf::CallForList(Asking(reply + "1"), values.data(), &count));
  EXPECT_EQ(200, count);
}

TEST_F(Replies, TransportFailuresLeaveResultsAndAreRecorded)
{
  EXPECT_EQ(4555, qxpaf::CallForStatus(Asking(ReplyTooLong().reply)));
  // From here on the connection counts as broken; these failures have no words.
  char request[] = "pafQuestion";
  int id = 99;
  EXPECT_EQ(4556, qxpaf::CallForOpen(request, &id));
  EXPECT_EQ(0, id);
  ExpectRecorded(4556, "");
  GuardedBuffer out(20);
  GuardedBuffer text(qxpaf::kServerTextSize);
  long numbers[2] = {98, 99};
  int values[2] = {96, 97};
  int count = 2;
  EXPECT_EQ(4556, qxpaf::CallForText(request, out.Data(), 20, text.Data()));
  EXPECT_EQ(4556, qxpaf::CallForRecord(request, text.Data(), &numbers[0], &numbers[1]));
  EXPECT_EQ(4556, qxpaf::CallForList(request, values, &count));
  EXPECT_EQ(4556, qxpaf::CallForStatus(request));
  EXPECT_EQ(std::string(20, GuardedBuffer::kFill), out.Bytes());
  EXPECT_EQ(std::string(text.Size(), GuardedBuffer::kFill), text.Bytes());
  EXPECT_EQ(98 + 99 + 96 + 97 + 2, numbers[0] + numbers[1] + values[0] + values[1] + count);
  EXPECT_EQ(1u, server.Requests().size());
}

/** Split at every position the same text comes together. */
TEST_F(Replies, MayComeInPieces)
{
  const std::string whole = "0\tanswer\n";
  for (std::size_t at = 1; at < whole.size(); ++at) {
    GuardedBuffer out(20);
    char* const request = Asking(Reply::Pieces({whole.substr(0, at), whole.substr(at)}));
    EXPECT_EQ(0, qxpaf::CallForText(request, out.Data(), 20)) << at;
    EXPECT_STREQ("answer", out.Data()) << at;
  }
  EXPECT_EQ(1, server.Connections());
}

}  // namespace
