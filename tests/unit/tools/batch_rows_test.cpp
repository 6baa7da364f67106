#include "paf/batch_rows.h"

#include <gtest/gtest.h>

#include "paf/exit_code.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"
#include "unit/tools/failure_of.h"
#include "unit/tools/scripted_session.h"

namespace tool {
namespace {

using tool_test::FailureOf;
using tool_test::Script;

class BatchRows : public testing::Test
{
 protected:
  BatchRows()
  {
    layout_.inputColumns = 3;
    layout_.fields = {"AddressLine1", "Postcode"};
    Script() = {};
    Script().findStatus = PAF_AU_FIND_MATCHED;
    Script().lookup = [](const std::string&, bool) { return Reply{0, "30000001", ""}; };
    Script().address = [](long) { return Reply{0, "1 HIGH STREET\t3999", ""}; };
  }

  std::string Output(const BatchRow& row)
  {
    BatchChunk chunk;
    chunk.rows = {row};
    layout_.Process(session_, chunk);
    tally_ = chunk.tally;
    return chunk.output;
  }

  BatchLayout layout_;
  Session session_;
  Tally tally_;
};

CsvRow HeaderOf(std::string_view text)
{
  CsvRow header;
  header.text = text;
  return header;
}

TEST_F(BatchRows, HeaderKeepsTheTextAndNamesWhatIsAdded)
{
  EXPECT_EQ(layout_.Header(HeaderOf("id, \"a,b\",c")),
            "id, \"a,b\",c,paf_dpid,paf_status,paf_result,paf_match_quality,paf_AddressLine1,paf_Postcode,"
            "paf_description\n");
  layout_.lineEnd = "\r\n";
  layout_.delimiter = ';';
  layout_.fields = {"a;b"};
  EXPECT_EQ(layout_.Header(HeaderOf("x")),
            "x;paf_dpid;paf_status;paf_result;paf_match_quality;\"paf_a;b\";paf_description\r\n");
}

TEST_F(BatchRows, FoundRowsKeepTheirTextAndGetTheAddress)
{
  long asked = 0;
  Script().address = [&asked](long dpid) {
    asked = dpid;
    return Reply{0, "UNIT 2, 1 HIGH STREET\t3999", ""};
  };
  EXPECT_EQ(Output({1, " 7,\"said \"\"x\"\"\",\xE9 ", "1 High St", ""}),
            " 7,\"said \"\"x\"\"\",\xE9 ,30000001,0,matched,1,\"UNIT 2, 1 HIGH STREET\",3999,\n");
  EXPECT_EQ(asked, 30000001);
  EXPECT_EQ(tally_.Of(Outcome::Matched), 1U);
}

TEST_F(BatchRows, AddressAndRulesAreAskedFor)
{
  std::string address;
  bool strict = false;
  Script().lookup = [&](const std::string& text, bool rules) {
    address = text;
    strict = rules;
    return Reply{0, "1", ""};
  };
  layout_.strict = true;
  Output({1, "x", "1 High St, \"Town\"\n3999", ""});
  EXPECT_EQ(address, "1 High St, \"Town\"\n3999");
  EXPECT_TRUE(strict);
}

TEST_F(BatchRows, MissedRowsHaveTheReasonAndNoAddress)
{
  Script().findStatus = PAF_AU_FIND_NO_NUMBER;
  Script().lookup = [](const std::string&, bool) { return Reply{4, "", "No number 9, see \"1\"."}; };
  EXPECT_EQ(Output({1, "a,b,c", "9 High St", ""}), "a,b,c,,4,no such number,4,,,\"No number 9, see \"\"1\"\".\"\n");
  EXPECT_EQ(tally_.Of(Outcome::NoNumber), 1U);
}

/** The find status belongs to the row before: the server was not asked. */
TEST_F(BatchRows, TextsThatAServerWouldGetCutAreRefused)
{
  Script().lookup = [](const std::string&, bool) { return Reply{PAF_ERR_SERVER_INPUT_TOO_LONG, "", "too long"}; };
  EXPECT_EQ(Output({1, "a,b,c", "9 High St", ""}), "a,b,c,,4502,refused,8,,,too long\n");
  EXPECT_EQ(tally_.Of(Outcome::Refused), 1U);
}

TEST_F(BatchRows, BrokenRowsAreOneFieldAndNobodyIsAsked)
{
  Script().lookup = nullptr;
  const std::string output = Output({7, "a,\"b", "", "a quote, too many"});
  EXPECT_EQ(output, "\"a,\"\"b\",,,,,broken row,,,,\"a quote, too many\"\n");
  EXPECT_EQ(tally_.Of(Outcome::BrokenRow), 1U);
}

/** Whatever becomes of a row, it has as many fields as the header. */
TEST_F(BatchRows, AllRowsHaveTheFieldsOfTheHeader)
{
  const auto fields = [](const std::string& text) { return std::count(text.begin(), text.end(), ','); };
  const auto expected = fields(layout_.Header(HeaderOf("a,b,c")));
  EXPECT_EQ(fields(Output({1, "x,y,z", "", ""})), expected);
  Script().lookup = [](const std::string&, bool) { return Reply{8, "", "none"}; };
  EXPECT_EQ(fields(Output({1, "x,y,z", "", ""})), expected);
  EXPECT_EQ(fields(Output({1, "xyz", "", "1 field instead of 3"})), expected);
  layout_.inputColumns = 1;
  EXPECT_EQ(fields(Output({1, "xyz", "", "too long"})), expected - 2);
}

TEST_F(BatchRows, AnAddressThatCannotBeGivenIsTold)
{
  Script().address = [](long) { return Reply{PAF_ERR_BUFFER_TOO_SMALL, "", "too small"}; };
  const std::string output = Output({1, "x,y,z", "a", ""});
  EXPECT_TRUE(output.starts_with("x,y,z,30000001," + std::to_string(PAF_ERR_BUFFER_TOO_SMALL))) << output;
  EXPECT_TRUE(output.ends_with(",,,too small\n")) << output;
  EXPECT_FALSE(tally_.AllFound());
}

TEST_F(BatchRows, ABrokenConnectionIsTriedOnceMore)
{
  int calls = 0;
  Script().lookup = [&calls](const std::string&, bool) {
    return ++calls == 1 ? Reply{601, "", "gone"} : Reply{0, "30000001", ""};
  };
  EXPECT_TRUE(Output({1, "x", "a", ""}).starts_with("x,30000001,0,matched"));
  EXPECT_EQ(calls, 2);
}

TEST_F(BatchRows, AConnectionThatStaysBrokenEndsTheWork)
{
  Script().lookup = [](const std::string&, bool) { return Reply{601, "", "gone"}; };
  EXPECT_EQ(FailureOf([this] {
              Output({1, "x", "a", ""});
            }),
            "the database cannot be asked any more: gone (status 601)");
  Script().lookup = [](const std::string&, bool) { return Reply{-1, "", ""}; };
  EXPECT_EQ(FailureOf([this] { Output({1, "x", "a", ""}); }), "the database cannot be asked any more: status -1");
}

TEST_F(BatchRows, FieldsThatTheRecordLacksAreEmpty)
{
  Script().address = [](long) { return Reply{0, "1 HIGH STREET", ""}; };
  EXPECT_EQ(Output({1, "x", "a", ""}), "x,30000001,0,matched,1,1 HIGH STREET,,\n");
}

TEST_F(BatchRows, NoRowsMakeNoOutput)
{
  BatchChunk chunk;
  layout_.Process(session_, chunk);
  EXPECT_EQ(chunk.output, "");
  EXPECT_EQ(chunk.tally.Total(), 0U);
}

}  // namespace
}  // namespace tool
