// Barcode requests, word for word as they reach the Australian plug-in, and what comes back.
#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <future>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

const std::string kText300 = std::string(300, '7');

/** A function that takes the caller's text, sends it and puts the answer in its place. */
struct InPlace
{
  const char* name;
  int (*call)(char* text, int size);
  bool hidesFailures;  // the text is emptied and the result is 0
};

constexpr InPlace kDpid = {"pafDpidToBarcode", pafDpidToBarcode, false};
constexpr InPlace kCustInfo = {"pafCustInfoBarcode", pafCustInfoBarcode, false};
constexpr InPlace kGenerate = {"pafGenerateBarcode", pafGenerateBarcode, true};

class BarcodeTest : public testing::Test
{
 protected:
  Workspace workspace{std::vector<std::string>{}};
  Fake fake{"libqxarfau.so"};
};

struct RequestRow
{
  std::string name;
  InPlace function;
  std::string text;
  std::string request;
};

class BarcodeRequest : public BarcodeTest, public testing::WithParamInterface<RequestRow>
{
};

const RequestRow kRequests[] = {
    {"DpidOfNothing", kDpid, "", "Barcode:"},
    {"DpidOfOneDigit", kDpid, "1", "Barcode:1"},
    {"DpidOfSevenDigits", kDpid, "1234567", "Barcode:1234567"},
    {"DpidOfEightDigits", kDpid, "12345678", "Barcode:12345678"},
    {"DpidOfNineDigits", kDpid, "123456789", "Barcode:123456789"},
    {"DpidOfAllDigits", kDpid, "0987654321", "Barcode:0987654321"},
    {"DpidWithALetterBehind", kDpid, "12345678X", "Barcode:12345678X"},
    {"DpidWithTextBehind", kDpid, "12345678 and so on", "Barcode:12345678 and so on"},
    {"DpidWithMoreDigitsAndALetter", kDpid, "1234567890123X", "Barcode:1234567890123X"},
    {"DpidOf300Digits", kDpid, kText300, "Barcode:" + kText300},
    {"CustInfoOfNothing", kCustInfo, "", "Barcode:"},
    {"CustInfoOfOne", kCustInfo, "x", "Barcode:x"},
    {"CustInfoOfEight", kCustInfo, "12345678", "Barcode:12345678"},
    {"CustInfoOfEightLetters", kCustInfo, "abcdefgh", "Barcode:abcdefgh"},
    {"CustInfoOfNine", kCustInfo, "123456789", "123456789"},
    {"CustInfoOfTen", kCustInfo, "1234567852", "1234567852"},
    {"CustInfoOfTenWithAnotherCode", kCustInfo, "1234567811", "1234567811"},
    {"CustInfoWith52", kCustInfo, "1234567852A", "Barcode3:1234567859A"},
    {"CustInfoWith67", kCustInfo, "1234567867A", "Barcode3:1234567862A"},
    {"CustInfoWith52Twice", kCustInfo, "525252525252", "Barcode3:525252525952"},
    {"CustInfoWithALongText", kCustInfo, "abcdefgh67" + kText300, "Barcode3:abcdefgh62" + kText300},
    {"GenerateOfNothing", kGenerate, "", "Barcode2:"},
    {"GenerateOfSomething", kGenerate, "1234567859N123", "Barcode2:1234567859N123"},
    {"GenerateOfAnything", kGenerate, "Barcode: ;\t\xff", "Barcode2:Barcode: ;\t\xff"},
    {"GenerateOfALongText", kGenerate, kText300, "Barcode2:" + kText300},
};

INSTANTIATE_TEST_SUITE_P(Of, BarcodeRequest, testing::ValuesIn(kRequests), RowName());

TEST_P(BarcodeRequest, ReachesThePluginWithOneByteMoreThanTheSize)
{
  fake.Answer(kFakeGetOtherProperties, 0, "1301012");
  constexpr int kSize = 40;
  GuardedBuffer text(GetParam().text, kSize + 1);
  EXPECT_EQ(GetParam().function.call(text.data(), kSize), 0);
  ASSERT_EQ(fake.Count(kFakeGetOtherProperties), 1u);
  const Call call = fake.Last(kFakeGetOtherProperties);
  EXPECT_EQ(call.arguments[0], GetParam().request);
  EXPECT_TRUE(call.arguments[1].Is(text.data())) << "the answer is written into the caller's buffer";
  EXPECT_EQ(call.arguments[2], kSize + 1);
  EXPECT_EQ(text.Text(), "1301012");
}

class BarcodeRefusal : public BarcodeTest, public testing::WithParamInterface<RequestRow>
{
};

const RequestRow kRefusals[] = {
    {"DpidOfALetter", kDpid, "X", ""},
    {"DpidWithALetterBehindSevenDigits", kDpid, "1234567X", ""},
    {"DpidWithALetterAmongTheDigits", kDpid, "1X345678", ""},
    {"DpidWithABlankInFront", kDpid, " 12345678", ""},
    {"DpidWithABlankBehindSevenDigits", kDpid, "1234567 ", ""},
    {"DpidWithASign", kDpid, "+12345678", ""},
    {"DpidWithAHighByte", kDpid, "1234567\xb2", ""},
    {"CustInfoWith11", kCustInfo, "1234567811A", ""},
    {"CustInfoWith59", kCustInfo, "1234567859A", ""},
    {"CustInfoWith62", kCustInfo, "1234567862A", ""},
    {"CustInfoWith25", kCustInfo, "1234567825A", ""},
    {"CustInfoWith57", kCustInfo, "1234567857A", ""},
    {"CustInfoWith62Displaced", kCustInfo, "123456785 2A", ""},
    {"CustInfoWith52OneTooEarly", kCustInfo, "1234567520A", ""},
    {"CustInfoWith52OneTooLate", kCustInfo, "12345678052A", ""},
};

INSTANTIATE_TEST_SUITE_P(Of, BarcodeRefusal, testing::ValuesIn(kRefusals), RowName());

TEST_P(BarcodeRefusal, DoesNotReachThePlugin)
{
  for (const int size : {40, 36, 0}) {
    GuardedBuffer text(GetParam().text, 41);
    const std::string before = text.Bytes();
    EXPECT_EQ(GetParam().function.call(text.data(), size), PAF_ERR_BARCODE) << "size " << size;
    EXPECT_EQ(text.Bytes(), before);
  }
  EXPECT_EQ(fake.Sequence(), "");
}

TEST_F(BarcodeTest, OfADpidNeedsASizeOf37)
{
  fake.Answer(kFakeGetOtherProperties, 0, "answer");
  for (const int size : {INT_MIN, -1, 0, 1, 35, 36}) {
    GuardedBuffer text("12345678", 40);
    const std::string before = text.Bytes();
    EXPECT_EQ(pafDpidToBarcode(text.data(), size), PAF_ERR_BUFFER_TOO_SMALL) << "size " << size;
    EXPECT_EQ(text.Bytes(), before);
  }
  EXPECT_EQ(fake.Sequence(), "");
  for (const int size : {37, 38, 255}) {
    GuardedBuffer text("12345678", static_cast<size_t>(size) + 1);
    EXPECT_EQ(pafDpidToBarcode(text.data(), size), 0) << "size " << size;
    EXPECT_EQ(fake.Last(kFakeGetOtherProperties).arguments[2], size + 1);
  }
}

class BarcodeInPlace : public BarcodeTest, public testing::WithParamInterface<InPlace>
{
 protected:
  int Call(GuardedBuffer& text, int size) const { return GetParam().call(text.data(), size); }

  /** A failure is a status, or hidden behind an emptied text. */
  void ExpectFailure(GuardedBuffer& text, int result, int status)
  {
    EXPECT_EQ(result, GetParam().hidesFailures ? 0 : status);
    if (GetParam().hidesFailures) {
      EXPECT_EQ(text.Text(), "");
    }
  }
};

INSTANTIATE_TEST_SUITE_P(By, BarcodeInPlace, testing::Values(kDpid, kCustInfo, kGenerate), RowName());

TEST_P(BarcodeInPlace, FillsTheSizeAndTheByteBehindIt)
{
  fake.Behave(kFakeGetOtherProperties, kFakeFill);
  for (const int size : {37, 67, 300}) {
    GuardedBuffer text("12345678", static_cast<size_t>(size) + 1);
    EXPECT_EQ(Call(text, size), 0);
    EXPECT_EQ(text.Text(), std::string(static_cast<size_t>(size), 'x'));
  }
}

TEST_P(BarcodeInPlace, AnswersThePluginsFailureAndRecordsNone)
{
  for (const int status : {1, 77, -1, 6405, INT_MAX, INT_MIN}) {
    fake.Answer(kFakeGetOtherProperties, status, "why");
    GuardedBuffer text("12345678", 41);
    ExpectFailure(text, Call(text, 40), status);
    EXPECT_EQ(Describe(77), "");
  }
}

TEST_P(BarcodeInPlace, AnswersAnExceptionAsAStatus)
{
  for (const auto& [what, status] :
       {std::pair(kFakeThrowBadAlloc, 6404), std::pair(kFakeThrowError, 6494), std::pair(kFakeThrowInt, 6494)}) {
    fake.Behave(kFakeGetOtherProperties, what);
    GuardedBuffer text("12345678", 41);
    ExpectFailure(text, Call(text, 40), status);
  }
  fake.Answer(kFakeGetOtherProperties, 0, "fine");
  GuardedBuffer text("12345678", 41);
  EXPECT_EQ(Call(text, 40), 0);
  EXPECT_EQ(text.Text(), "fine");
}

TEST_P(BarcodeInPlace, KeepsATextThatThePluginLeavesAlone)
{
  fake.Behave(kFakeGetOtherProperties, kFakeSilent);
  GuardedBuffer text("12345678", 41);
  EXPECT_EQ(Call(text, 40), 0);
  EXPECT_EQ(text.Text(), "12345678");
}

TEST_P(BarcodeInPlace, AsksTheLocalPluginInRemoteModeToo)
{
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  fake.Answer(kFakeGetOtherProperties, 0, "local");
  GuardedBuffer text("12345678", 41);
  EXPECT_EQ(Call(text, 40), 0);
  EXPECT_EQ(text.Text(), "local");
}

TEST_P(BarcodeInPlace, DatabasesAreOpenedWhileThePluginThinks)
{
  fake.Answer(kFakeGetOtherProperties, 0, "late");
  GuardedBuffer text("12345678", 41);
  BlockedCall thinking(fake, kFakeGetOtherProperties, [&] { return Call(text, 40); });
  auto other = std::async(std::launch::async, [] { return pafClosePafId(Open("AU./other")); });
  EXPECT_EQ(other.wait_for(std::chrono::seconds(20)), std::future_status::ready) << "a lock is held";
  EXPECT_EQ(thinking.Finish(), 0);
  EXPECT_EQ(other.get(), 0);
  EXPECT_EQ(text.Text(), "late");
}

TEST_F(BarcodeTest, OfCustomerInformationMustNotBeEmpty)
{
  for (const char* const input : {"", "12345678", "123456789", "1234567852A"}) {
    fake.Answer(kFakeGetOtherProperties, 0, "");
    GuardedBuffer text(input, 41);
    EXPECT_EQ(pafCustInfoBarcode(text.data(), 40), PAF_ERR_BARCODE);
    fake.Answer(kFakeGetOtherProperties, 77, "");
    EXPECT_EQ(pafCustInfoBarcode(text.data(), 40), 77) << "the status comes first";
  }
}

TEST_F(BarcodeTest, AnEmptyAnswerToADpidIsNoFailure)
{
  GuardedBuffer dpid("12345678", 41);
  EXPECT_EQ(pafDpidToBarcode(dpid.data(), 40), 0);
  EXPECT_EQ(dpid.Text(), "");
}

TEST_F(BarcodeTest, OfCustomerInformationTakesAnySize)
{
  fake.Answer(kFakeGetOtherProperties, 0, "answer");
  for (const int size : {-2, -1, 0, 1, 3, 9}) {
    for (const InPlace& function : {kCustInfo, kGenerate}) {
      GuardedBuffer text("12345678", 10);
      EXPECT_EQ(function.call(text.data(), size), size == 0 && !function.hidesFailures ? PAF_ERR_BARCODE : 0) << size;
      EXPECT_EQ(fake.Last(kFakeGetOtherProperties).arguments[2], size + 1);
      const std::string expected = size < 0 ? "12345678" : std::string("answer").substr(0, static_cast<size_t>(size));
      EXPECT_EQ(text.Text(), expected) << function.name << ", size " << size;
    }
  }
}

struct BuildRow
{
  std::string name;
  std::string a;
  std::string b;
  std::string c;
  int flag;
  std::string request;
};

class BuildBarcode : public BarcodeTest
{
 protected:
  static int Build(char* out, int* length) { return pafBuildBarcode_("59", "12345678", "ABC", 0, out, length); }
};

class BuildBarcodeRequest : public BuildBarcode, public testing::WithParamInterface<BuildRow>
{
};

const BuildRow kBuilds[] = {
    {"Characters", "59", "12345678", "ABC", 0, "Barcode2:1234567859CABC"},
    {"Digits", "59", "12345678", "123", 1, "Barcode2:1234567859N123"},
    {"AnyOtherFlag", "59", "12345678", "123", -5, "Barcode2:1234567859N123"},
    {"GreatFlag", "59", "12345678", "123", 256, "Barcode2:1234567859N123"},
    {"Nothing", "", "", "", 0, "Barcode2:C"},
    {"NothingOfDigits", "", "", "", 1, "Barcode2:N"},
    {"ShortParts", "5", "123", "A", 0, "Barcode2:1235CA"},
    {"FifteenCharacters", "62", "12345678", "ABCDEFGHIJKLMNO", 0, "Barcode2:1234567862CABCDEFGHIJKLMNO"},
    {"TwentyCharacters", "62", "12345678", "ABCDEFGHIJKLMNOPQRST", 0, "Barcode2:1234567862CABCDEFGHIJKLMNO"},
    {"AllTooLong", "629", "123456789", "0123456789abcdefg", 1, "Barcode2:1234567862N0123456789abcde"},
    {"AllMuchTooLong", kText300, kText300, kText300, 1, "Barcode2:7777777777N777777777777777"},
};

INSTANTIATE_TEST_SUITE_P(Of, BuildBarcodeRequest, testing::ValuesIn(kBuilds), RowName());

TEST_P(BuildBarcodeRequest, IsBuiltFromTheParts)
{
  const BuildRow& row = GetParam();
  fake.Answer(kFakeGetOtherProperties, 0, "1301012");
  GuardedBuffer out(68);
  int length = -5;
  EXPECT_EQ(pafBuildBarcode_(row.a.c_str(), row.b.c_str(), row.c.c_str(), row.flag, out.data(), &length), 0);
  const Call call = fake.Last(kFakeGetOtherProperties);
  EXPECT_EQ(call.arguments[0], row.request);
  EXPECT_LE(row.request.size(), 35u);
  EXPECT_EQ(call.arguments[2], 128);
  EXPECT_EQ(out.Text(), "1301012");
  EXPECT_EQ(length, 7);
}

TEST_F(BuildBarcode, TakesAnswersOf1To67Characters)
{
  for (const size_t size : {0u, 1u, 2u, 36u, 66u, 67u, 68u, 69u, 126u, 127u, 200u}) {
    const std::string answer(size, 'b');
    fake.Answer(kFakeGetOtherProperties, 0, answer.c_str());
    GuardedBuffer out(68);
    int length = -5;
    const bool fits = size >= 1 && size <= 67;
    EXPECT_EQ(Build(out.data(), &length), fits ? 0 : PAF_ERR_BARCODE) << size << " characters";
    if (fits) {
      EXPECT_EQ(out.Text(), answer);
      EXPECT_EQ(length, static_cast<int>(size));
    } else {
      EXPECT_TRUE(out.IsUntouched());
      EXPECT_EQ(length, -5);
    }
  }
}

TEST_F(BuildBarcode, AnAnswerThatWasNotWrittenIsEmpty)
{
  fake.Behave(kFakeGetOtherProperties, kFakeSilent);
  GuardedBuffer out(68);
  EXPECT_EQ(Build(out.data(), nullptr), PAF_ERR_BARCODE);
  EXPECT_TRUE(out.IsUntouched());
}

TEST_F(BuildBarcode, EitherOutputMayBeNull)
{
  fake.Answer(kFakeGetOtherProperties, 0, "1301012");
  GuardedBuffer out(68);
  EXPECT_EQ(Build(out.data(), nullptr), 0);
  EXPECT_EQ(out.Text(), "1301012");
  int length = -5;
  EXPECT_EQ(Build(nullptr, &length), 0);
  EXPECT_EQ(length, 7);
  EXPECT_EQ(Build(nullptr, nullptr), 0);
  fake.Answer(kFakeGetOtherProperties, 77);
  EXPECT_EQ(Build(nullptr, nullptr), 77);
}

TEST_F(BuildBarcode, AnswersThePluginsFailureAndLeavesTheOutputsAlone)
{
  for (const int status : {1, 77, -1, 6406, INT_MAX, INT_MIN}) {
    fake.Answer(kFakeGetOtherProperties, status, "1301012");
    GuardedBuffer out(68);
    int length = -5;
    EXPECT_EQ(Build(out.data(), &length), status);
    EXPECT_TRUE(out.IsUntouched());
    EXPECT_EQ(length, -5);
    EXPECT_EQ(Describe(77), "") << "nothing is recorded";
  }
}

TEST_F(BuildBarcode, AnswersAnExceptionAsAStatus)
{
  fake.Behave(kFakeGetOtherProperties, kFakeThrowBadAlloc);
  EXPECT_EQ(Build(nullptr, nullptr), PAF_ERR_OUT_OF_MEMORY);
  fake.Behave(kFakeGetOtherProperties, kFakeThrowError);
  EXPECT_EQ(Build(nullptr, nullptr), PAF_ERR_PLUGIN_SYSTEM);
}

TEST_F(BuildBarcode, AsksTheLocalPluginInRemoteModeToo)
{
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
  fake.Answer(kFakeGetOtherProperties, 0, "local");
  GuardedBuffer out(68);
  EXPECT_EQ(Build(out.data(), nullptr), 0);
  EXPECT_EQ(out.Text(), "local");
}

/** Without a plug-in that answers; each suite runs against the folder of fakes that its name says. */
class BarcodeWithout : public testing::Test
{
 protected:
  void ExpectFailures(int status)
  {
    for (const InPlace& function : {kDpid, kCustInfo, kGenerate}) {
      GuardedBuffer text("12345678", 41);
      EXPECT_EQ(function.call(text.data(), 40), function.hidesFailures ? 0 : status) << function.name;
      EXPECT_EQ(text.Text(), function.hidesFailures ? "" : "12345678") << function.name;
    }
    GuardedBuffer out(68);
    int length = -5;
    EXPECT_EQ(pafBuildBarcode_("59", "12345678", "ABC", 0, out.data(), &length), status);
    EXPECT_TRUE(out.IsUntouched());
    EXPECT_EQ(length, -5);
    EXPECT_EQ(Describe(status), "") << "nothing is recorded";
  }

  Workspace workspace{std::vector<std::string>{}};
};

class BarcodeWithoutEntryPoint : public BarcodeWithout
{
};

TEST_F(BarcodeWithoutEntryPoint, Fails)
{
  ExpectFailures(PAF_ERR_ENTRY_POINT_MISSING);
}

class BarcodeWithoutLibrary : public BarcodeWithout
{
};

TEST_F(BarcodeWithoutLibrary, Fails)
{
  ExpectFailures(PAF_ERR_LIBRARY_NOT_LOADED);
}

}  // namespace
}  // namespace blackbox
