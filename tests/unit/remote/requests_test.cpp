/** Every request function: what it sends, byte for byte, and what it makes of the reply. */
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "client_fixture.h"
#include "qxpaf/paf.h"
#include "support/guarded_buffer.h"

namespace {

using fake::Reply;
using test_support::GuardedBuffer;

template <class Row>
std::string RowName(const testing::TestParamInfo<Row>& row)
{
  return row.param.name;
}

template <class Row>
class Requests : public testing::TestWithParam<Row>, protected WithServer
{
};

// Requests with a text for reply

struct TextRow
{
  const char* name;
  int (*call)(char* buffer, int size);
  const char* request;
};

/** What a buffer that is sent too holds before. */
constexpr const char* kInput = "1 Main St\nPerth";

const TextRow kTextRows[] = {
    {"GetDpidId", [](char* b, int s) { return GetDpidIdViaSocket(7, b, s); }, "pafGetDpidId\t7\t1 Main St\tPerth"},
    {"GetDpidNonAmasId", [](char* b, int s) { return GetDpidNonAmasIdViaSocket(7, b, s); },
     "pafGetDpidNonAmasId\t7\t1 Main St\tPerth"},
    {"FixLastLineId", [](char* b, int s) { return FixLastLineIdViaSocket(7, b, s); },
     "pafFixLastLineId\t7\t1 Main St\tPerth"},
    {"ValidatePartialAddressId", [](char* b, int s) { return ValidatePartialAddressIdViaSocket(7, b, s); },
     "pafValidatePartialAddressId\t7\t1 Main St\tPerth"},
    {"GetAddressId", [](char* b, int s) { return GetAddressIdViaSocket(7, "in\nput", b, s); },
     "pafGetAddressId\t7\tin\tput"},
    {"GetNextAddressId", [](char* b, int s) { return GetNextAddressIdViaSocket(INT_MIN, b, s); },
     "pafGetNextAddressId\t-2147483648"},
    {"GetBorderPostcodesId", [](char* b, int s) { return GetBorderPostcodesIdViaSocket(7, -3644, b, s); },
     "pafGetBorderPostcodesId\t7\t-3644"},
    {"GetPopupHintId", [](char* b, int s) { return GetPopupHintIdViaSocket(7, "first", "second", 3, b, s); },
     "pafGetPopupHintId\t7\tfirst\tsecond\t3"},
    {"GetPopupHintId_Tabs", [](char* b, int s) { return GetPopupHintIdViaSocket(7, "a\tb\nc", "d\te", -3, b, s); },
     "pafGetPopupHintId\t7\ta b\tc\td\te\t-3"},
    {"GetNextPopupHintId", [](char* b, int s) { return GetNextPopupHintIdViaSocket(7, b, s); },
     "pafGetNextPopupHintId\t7"},
    {"DpidToAddressId", [](char* b, int s) { return DpidToAddressIdViaSocket(7, LONG_MAX, b, s); },
     "pafDpidToAddressId\t7\t9223372036854775807"},
    {"GetAddressHintId", [](char* b, int s) { return GetAddressHintIdViaSocket(7, "first", "second", b, s); },
     "pafGetAddressHintId\t7\tfirst\tsecond"},
    {"GetAddressHintId_Tabs", [](char* b, int s) { return GetAddressHintIdViaSocket(7, "\ta", "\tb", b, s); },
     "pafGetAddressHintId\t7\t a\t\tb"},
    {"GetAddressHintId_Nulls", [](char* b, int s) { return GetAddressHintIdViaSocket(7, nullptr, nullptr, b, s); },
     "pafGetAddressHintId\t7\t\t"},
    {"GetNextAddressHintId", [](char* b, int s) { return GetNextAddressHintIdViaSocket(7, b, s); },
     "pafGetNextAddressHintId\t7"},
    {"GetParsedInputId", [](char* b, int s) { return GetParsedInputIdViaSocket(7, b, s); }, "pafGetParsedInputId\t7"},
    {"GetPropertiesId", [](char* b, int s) { return GetPropertiesIdViaSocket(7, "Delimiter", b, s); },
     "pafGetPropertiesId\t7\tDelimiter"},
    {"ValidateFullAddressId", [](char* b, int s) { return ValidateFullAddressIdViaSocket(7, "in", b, s, 5, nullptr); },
     "pafValidateFullAddressId\t7\t5\tin"},
    {"FormatAddressId", [](char* b, int s) { return FormatAddressIdViaSocket(7, "in", b, LONG_MIN, s); },
     "pafFormatAddressId\t7\t-9223372036854775808\tin"},
    {"FormatAddressS", [](char* b, int s) { return FormatAddressSViaSocket(b, s); },
     "pafFormatAddressS\t1 Main St\tPerth"},
    {"FormatAddress", [](char* b, int s) { return FormatAddressViaSocket("in", b, 9, s); }, "pafFormatAddress\t9\tin"},
    {"ReadPointRecordId", [](char* b, int s) { return ReadPointRecordIdViaSocket(7, 88, b, s); },
     "pafReadPointRecord\t88"},
    {"GetNextAddressInPolygon", [](char* b, int s) { return GetNextAddressInPolygonViaSocket(7, b, s); },
     "pafGetNextAddressInPolygon\t7"},
    {"GetSearchStatistics", [](char* b, int s) { return GetSearchStatisticsViaSocket(7, "a", "", "c\n", "d", b, s); },
     "pafGetSearchStatistics\t7\ta\t\tc\t\td"},
    {"GetSearchStatistics_Nulls",
     [](char* b, int s) { return GetSearchStatisticsViaSocket(7, nullptr, nullptr, nullptr, nullptr, b, s); },
     "pafGetSearchStatistics\t7\t\t\t\t"},
    {"BuildBarcode_", [](char* b, int s) { return BuildBarcode_ViaSocket("a", "b", "c", -1, b, s); },
     "pafBuildBarcode_\ta\tb\tc\t-1"},
    {"CustInfoBarcode", [](char* b, int s) { return CustInfoBarcodeViaSocket(b, s); },
     "pafCustInfoBarcode\t1 Main St\tPerth"},
    {"GenerateBarcode", [](char* b, int s) { return GenerateBarcodeViaSocket(b, s); },
     "pafGenerateBarcode\t1 Main St\tPerth"},
    {"DpidToBarcode", [](char* b, int s) { return DpidToBarcodeViaSocket(b, s); },
     "pafDpidToBarcode\t1 Main St\tPerth"},
    {"PostcodeToBsp", [](char* b, int s) { return PostcodeToBspViaSocket(b, s); },
     "pafPostcodeToBsp\t1 Main St\tPerth"},
    {"PostcodeToNpsp", [](char* b, int s) { return PostcodeToNpspViaSocket(b, s); },
     "pafPostcodeToNpsp\t1 Main St\tPerth"},
    {"GetErrorDescription", [](char* b, int s) { return GetErrorDescriptionViaSocket(b, 12, s); },
     "pafGetErrorDescription\t12"},
};

class TextRequests : public Requests<TextRow>
{
 protected:
  /** Calls with a buffer of some bytes that holds the input, and with that size or another one. */
  int Call(int size)
  {
    const std::string input = kInput;
    input.copy(buffer.Data(), input.size());
    buffer.Data()[input.size()] = '\0';
    before = buffer.Bytes();
    const int status = GetParam().call(buffer.Data(), size);
    EXPECT_TRUE(buffer.Intact());
    return status;
  }

  GuardedBuffer buffer{30};
  std::string before;
};

INSTANTIATE_TEST_SUITE_P(All, TextRequests, testing::ValuesIn(kTextRows), RowName<TextRow>);

TEST_P(TextRequests, SendTheirFieldsAndTakeTheText)
{
  server.Expect(GetParam().request, Reply::Line("0\tthe answer"));
  EXPECT_EQ(0, Call(30));
  EXPECT_STREQ("the answer", buffer.Data());
  EXPECT_EQ(GetParam().request + std::string("\n"), server.Requests().at(0));
}

TEST_P(TextRequests, CutTheTextToTheSize)
{
  for (const int size : {1, 4, 10, 11}) {
    server.Expect(GetParam().request, Reply::Line("0\tthe answer"));
    EXPECT_EQ(0, Call(size));
    EXPECT_EQ(std::string("the answer").substr(0, static_cast<std::size_t>(size) - 1), buffer.Data());
  }
  for (const int size : {0, -1}) {
    server.Expect(GetParam().request, Reply::Line("0\tthe answer"));
    EXPECT_EQ(0, Call(size));
    EXPECT_EQ(before, buffer.Bytes());
  }
  EXPECT_EQ(0u, server.StepsLeft());
}

TEST_P(TextRequests, EmptyTheBufferWhenTheServerReportsAFailure)
{
  server.Expect(GetParam().request, Reply::Line("6405\tInvalid Id"));
  EXPECT_EQ(6405, Call(30));
  EXPECT_STREQ("", buffer.Data());
  EXPECT_EQ(0, Recorded().code);
}

TEST_P(TextRequests, LeaveTheBufferWhenTheTransportFails)
{
  server.Expect(GetParam().request, ReplyTooLong().reply);
  EXPECT_EQ(ReplyTooLong().status, Call(30));
  EXPECT_EQ(before, buffer.Bytes());
  ExpectRecorded(ReplyTooLong().status, ReplyTooLong().text);
  EXPECT_EQ(4556, Call(30));
  EXPECT_EQ(before, buffer.Bytes());
  EXPECT_EQ(1u, server.Requests().size());
}

// Requests with a number for reply

struct NumberRow
{
  const char* name;
  int (*call)();
  const char* request;
};

const NumberRow kNumberRows[] = {
    {"ClosePafId", [] { return ClosePafIdViaSocket(7); }, "pafClosePafId\t7"},
    {"GetFindStatusId", [] { return GetFindStatusIdViaSocket(7); }, "pafGetFindStatusId\t7"},
    {"SetPropertiesId", [] { return SetPropertiesIdViaSocket(7, "Name", "a\nvalue"); },
     "pafSetPropertiesId\t7\tName\ta\tvalue"},
    {"SetPropertiesId_Nulls", [] { return SetPropertiesIdViaSocket(-7, nullptr, nullptr); },
     "pafSetPropertiesId\t-7\t\t"},
    {"SetGeographicalCodesId", [] { return SetGeographicalCodesIdViaSocket(7, "NSW;VIC"); },
     "pafSetGeographicalCodesId\t7\tNSW;VIC"},
    {"BeginPolygonSearch", [] { return BeginPolygonSearchViaSocket(7, "a", "-33.5,150.25"); },
     "pafBeginPolygonSearch\t7\t-33.5\t150.25\ta"},
    {"BeginPolygonSearch_NullPoint", [] { return BeginPolygonSearchViaSocket(7, "a", nullptr); },
     "pafBeginPolygonSearch\t7\t\t\ta"},
    {"BeginPolygonSearch_NoNumber", [] { return BeginPolygonSearchViaSocket(7, "a", "here"); },
     "pafBeginPolygonSearch\t7\t\t\ta"},
    {"BeginPolygonSearch_OneNumber", [] { return BeginPolygonSearchViaSocket(7, nullptr, "12"); },
     "pafBeginPolygonSearch\t7\t12\t\t"},
    {"GetLocalityRecordCountId", [] { return GetLocalityRecordCountIdViaSocket(7); }, "pafGetLocalityRecordCount"},
    {"GetGroupRecordCountId", [] { return GetGroupRecordCountIdViaSocket(7); }, "pafGetGroupRecordCount"},
    {"GetPointRecordCountId", [] { return GetPointRecordCountIdViaSocket(7); }, "pafGetPointRecordCount"},
    {"GetSynonymRecordCountId", [] { return GetSynonymRecordCountIdViaSocket(7); }, "pafGetSynonymRecordCount"},
};

class NumberRequests : public Requests<NumberRow>
{
};

INSTANTIATE_TEST_SUITE_P(All, NumberRequests, testing::ValuesIn(kNumberRows), RowName<NumberRow>);

TEST_P(NumberRequests, SendTheirFieldsAndReturnTheNumber)
{
  for (const int number : {0, 1, -1, 6405}) {
    server.Expect(GetParam().request, Reply::Line(std::to_string(number)));
    EXPECT_EQ(number, GetParam().call());
  }
  EXPECT_EQ(GetParam().request + std::string("\n"), server.Requests().at(3));
  EXPECT_EQ(0, Recorded().code);
}

TEST_P(NumberRequests, RecordWhatTheTransportMeetsWith)
{
  server.Expect(GetParam().request, Reply::Line(std::string(64, '1')));
  EXPECT_EQ(4555, GetParam().call());
  ExpectRecorded(4555, ReplyTooLong().text);
  EXPECT_EQ(4556, GetParam().call());
  ExpectRecorded(4556, "");
}

// Opening

struct OpenRow
{
  const char* name;
  int (*call)(int* id);
  const char* request;
};

const OpenRow kOpenRows[] = {
    {"OpenPafId", OpenPafIdViaSocket, "pafOpenPafId"},
    {"OpenArfId", [](int* id) { return OpenArfIdViaSocket(id, 2, "AU.Main"); }, "pafOpenArfId\t2\tAU.Main"},
    {"OpenArfId_Empty", [](int* id) { return OpenArfIdViaSocket(id, -1, ""); }, "pafOpenArfId\t-1\t"},
    {"OpenPafMemId", [](int* id) { return OpenPafMemIdViaSocket(id, 3); }, "pafOpenPafMemId\t3"},
};

class OpenRequests : public Requests<OpenRow>
{
};

INSTANTIATE_TEST_SUITE_P(All, OpenRequests, testing::ValuesIn(kOpenRows), RowName<OpenRow>);

TEST_P(OpenRequests, GiveAnIdOrZero)
{
  int id = 99;
  server.Expect(GetParam().request, Reply::Line("0\t41"));
  EXPECT_EQ(0, GetParam().call(&id));
  EXPECT_EQ(41, id);
  server.Expect(GetParam().request, Reply::Line("6499\t41"));
  EXPECT_EQ(6499, GetParam().call(&id));
  EXPECT_EQ(0, id);
  id = 99;
  server.Expect(GetParam().request, ReplyTooLong().reply);
  EXPECT_EQ(4555, GetParam().call(&id));
  EXPECT_EQ(0, id);
  EXPECT_EQ(GetParam().request + std::string("\n"), server.Requests().at(2));
}

// Records

struct RecordRow
{
  const char* name;
  int (*call)(char* text, long* a, long* b);
  const char* request;
  bool two;
};

const RecordRow kRecordRows[] = {
    {"Locality", [](char* t, long* a, long* b) { return ReadLocalityRecordIdViaSocket(7, 12, t, a, b); },
     "pafReadLocalityRecord\t12", true},
    {"Group", [](char* t, long* a, long* b) { return ReadGroupRecordIdViaSocket(7, LONG_MIN, t, a, b); },
     "pafReadGroupRecord\t-9223372036854775808", true},
    {"Synonym", [](char* t, long* a, long*) { return ReadSynonymRecordIdViaSocket(7, 12, t, a); },
     "pafReadSynonymRecord\t12", false},
};

class RecordRequests : public Requests<RecordRow>
{
};

INSTANTIATE_TEST_SUITE_P(All, RecordRequests, testing::ValuesIn(kRecordRows), RowName<RecordRow>);

TEST_P(RecordRequests, TakeNumbersAndText)
{
  for (const int status : {0, 6408}) {
    GuardedBuffer text(256);
    long a = 99;
    long b = 99;
    const std::string reply = GetParam().two ? "\t11\t22\tSYDNEY" : "\t11\tSYDNEY";
    server.Expect(GetParam().request, Reply::Line(std::to_string(status) + reply));
    EXPECT_EQ(status, GetParam().call(text.Data(), &a, &b));
    EXPECT_EQ(11, a);
    EXPECT_EQ(GetParam().two ? 22 : 99, b);
    EXPECT_STREQ("SYDNEY", text.Data());
    EXPECT_TRUE(text.Intact());
  }
  EXPECT_EQ(GetParam().request + std::string("\n"), server.Requests().at(0));
}

TEST_P(RecordRequests, LeaveEverythingWhenTheTransportFails)
{
  GuardedBuffer text(256);
  long a = 98;
  long b = 99;
  server.Expect(GetParam().request, ReplyTooLong().reply);
  EXPECT_EQ(4555, GetParam().call(text.Data(), &a, &b));
  EXPECT_EQ(98, a);
  EXPECT_EQ(99, b);
  EXPECT_EQ(std::string(256, GuardedBuffer::kFill), text.Bytes());
}

// What is particular to one of them

class OneRequest : public testing::Test, protected WithServer
{
};

TEST_F(OneRequest, BorderRecordsKeepTheirServersStatusToThemselves)
{
  int values[3] = {-9, -9, -9};
  int count = 2;
  server.Expect("pafReadBorderRecord\t-12", Reply::Line("0\t11\t22\t33"));
  EXPECT_EQ(0, ReadBorderRecordIdViaSocket(7, -12, values, &count));
  EXPECT_EQ(4, count);
  EXPECT_EQ((std::vector<int>{11, 22, -9}), std::vector<int>(values, values + 3));
  server.Expect("pafReadBorderRecord\t-12", Reply::Line("6408\t1"));
  EXPECT_EQ(0, ReadBorderRecordIdViaSocket(7, -12, values, &count));
  EXPECT_EQ(0, count);
  server.Expect("pafReadBorderRecord\t-12", Reply::Line(std::string(256, '0')));
  count = 3;
  EXPECT_EQ(4555, ReadBorderRecordIdViaSocket(7, -12, values, &count));
  EXPECT_EQ(3, count);
}

TEST_F(OneRequest, FullValidationHandsOutTheServersWords)
{
  GuardedBuffer out(10);
  GuardedBuffer message(256);
  server.Expect("pafValidateFullAddressId\t7\t5\tin", Reply::Line("12\t" + std::string(300, 'w')));
  EXPECT_EQ(12, ValidateFullAddressIdViaSocket(7, "in", out.Data(), 10, 5, message.Data()));
  EXPECT_EQ(std::string(255, 'w'), message.Data());
  EXPECT_STREQ("", out.Data());
  EXPECT_TRUE(message.Intact());

  GuardedBuffer untouched(256);
  server.Expect("pafValidateFullAddressId\t7\t5\tin", Reply::Line("0\tfine"));
  EXPECT_EQ(0, ValidateFullAddressIdViaSocket(7, "in", out.Data(), 10, 5, untouched.Data()));
  EXPECT_STREQ("fine", out.Data());
  EXPECT_EQ(std::string(256, GuardedBuffer::kFill), untouched.Bytes());
}

TEST_F(OneRequest, OnlyTheFirstTextOfAHintIsKeptFreeOfTabs)
{
  server.AnswerOthers([](const std::string&) { return Reply::Line("0"); });
  const std::string x126(126, 'x');
  char out[4];
  GetAddressHintIdViaSocket(1, (x126 + "\t\tlost").c_str(), "b\tc", out, 4);
  EXPECT_EQ("pafGetAddressHintId\t1\t" + x126 + " \tb\tc", server.LastRequest());
  GetPopupHintIdViaSocket(1, (x126 + "\t\tlost").c_str(), "b\tc", 2, out, 4);
  EXPECT_EQ("pafGetPopupHintId\t1\t" + x126 + " \tb\tc\t2", server.LastRequest());
  GetAddressHintIdViaSocket(1, (x126 + "xx").c_str(), "b", out, 4);
  EXPECT_EQ("pafGetAddressHintId\t1\t" + x126 + "xx\tb", server.LastRequest());
}

TEST_F(OneRequest, RequestsAreCutAt255Characters)
{
  server.AnswerOthers([](const std::string&) { return Reply::Line("0"); });
  const std::string name = "pafGetAddressId\t7\t";
  for (const std::size_t length : {254u, 255u, 256u, 257u, 5000u}) {
    char out[4];
    const std::string text(length - name.size(), 'x');
    EXPECT_EQ(0, GetAddressIdViaSocket(7, text.c_str(), out, 4));
    EXPECT_EQ((name + text).substr(0, 255), server.LastRequest());
  }
  char out[4];
  GetPopupHintIdViaSocket(7, std::string(240, 'x').c_str(), "lost", 5, out, 4);
  EXPECT_EQ(("pafGetPopupHintId\t7\t" + std::string(240, 'x')).substr(0, 255), server.LastRequest());
  EXPECT_TRUE(server.Faults().empty());
}

TEST_F(OneRequest, PolygonsAndStatisticsAreSentWhole)
{
  server.AnswerOthers([](const std::string&) { return Reply::Line("0"); });
  const std::string number(200, '1');
  const std::string sent = number.substr(0, 127);
  const std::string x(20000, 'x');
  BeginPolygonSearchViaSocket(INT_MIN, x.c_str(), (number + "," + number + ",").c_str());
  EXPECT_EQ("pafBeginPolygonSearch\t-2147483648\t" + sent + "\t" + sent + "\t" + x, server.LastRequest());

  char out[4];
  for (const std::size_t length : {0u, 60u, 20000u}) {
    const std::string t = x.substr(0, length);
    GetSearchStatisticsViaSocket(INT_MIN, t.c_str(), t.c_str(), t.c_str(), t.c_str(), out, 4);
    EXPECT_EQ("pafGetSearchStatistics\t-2147483648\t" + t + "\t" + t + "\t" + t + "\t" + t, server.LastRequest());
  }
  EXPECT_TRUE(server.Faults().empty());
}

TEST_F(OneRequest, InputAndOutputMayBeOneBuffer)
{
  char text[64] = "1 Main St";
  server.Expect("pafGetAddressId\t7\t1 Main St", Reply::Line("0\tanother text"));
  EXPECT_EQ(0, GetAddressIdViaSocket(7, text, text, sizeof text));
  EXPECT_STREQ("another text", text);
}

TEST_F(OneRequest, NoServerIsReportedAndNothingIsBroken)
{
  SetTcpPort("no such service");
  char text[256] = "1 Main St";
  EXPECT_EQ(4206, GetDpidIdViaSocket(7, text, sizeof text));
  EXPECT_STREQ("1 Main St", text);
  EXPECT_EQ("unknown socket service: no such service", std::string(Recorded().text).substr(0, 39));

  SetTcpPort(fake::ScriptedServer().Port().c_str());  // which is gone again
  EXPECT_EQ(4204, GetDpidIdViaSocket(7, text, sizeof text));
  ExpectRecorded(4204, std::string("socket connect error to 127.0.0.1 ") + GetTcpPort() + ": (111) Connection refused");
  EXPECT_STREQ("1 Main St", text);
  int id = 99;
  EXPECT_EQ(4204, OpenPafIdViaSocket(&id));
  EXPECT_EQ(0, id);
  EXPECT_FALSE(IsSocketBroken());

  SetTcpPort(server.Port().c_str());
  server.Expect("pafOpenPafId", Reply::Line("0\t3"));
  EXPECT_EQ(0, OpenPafIdViaSocket(&id));
  EXPECT_EQ(3, id);
}

TEST_F(OneRequest, FailuresAreDescribedWithTheSystemsWords)
{
  char text[256] = "1 Main St";
  server.Expect("pafGetDpidId\t7\t1 Main St", Reply::Close());
  EXPECT_EQ(0, GetDpidIdViaSocket(7, text, sizeof text)) << "noticed by the next request";
  EXPECT_STREQ("", text);
  EXPECT_FALSE(IsSocketBroken());
  EXPECT_EQ(4551, GetDpidIdViaSocket(7, text, sizeof text));
  EXPECT_TRUE(IsSocketBroken());
  pafGetErrorDescription(text, 4551, sizeof text);
  EXPECT_STREQ("ERR_SOC_SEND. socket send error: (32) Broken pipe", text);

  EXPECT_EQ(4556, ClosePafIdViaSocket(7));
  pafGetErrorDescription(text, 4556, sizeof text);
  EXPECT_STREQ("ERR_SOC_BROKEN", text);

  AcknowlegeSocketIsBroken();
  EXPECT_FALSE(IsSocketBroken());
  server.Expect("pafClosePafId\t7", Reply::Line("6405"));
  EXPECT_EQ(6405, ClosePafIdViaSocket(7));
  EXPECT_EQ(2, server.Connections());
}

}  // namespace
