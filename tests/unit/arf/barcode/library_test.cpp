// Barcodes and sort plans all the way: the library's exported functions, the plug-in as a file, a database on disk.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "arf/build/builder.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"
#include "support/guarded_buffer.h"
#include "support/temp_dir.h"
#include "unit/arf/barcode/plain_four_state.h"

namespace {

using arf_test::PlainFourState;

struct Answer
{
  int status;
  std::string text;
  friend bool operator==(const Answer&, const Answer&) = default;
};

void PrintTo(const Answer& answer, std::ostream* out)
{
  *out << answer.status << " \"" << answer.text << '"';
}

/** Calls a function that answers in place, with the one byte more than `size` that it may use. */
Answer Call(int (*function)(char*, int), const std::string& text, int size = 67)
{
  test_support::GuardedBuffer buffer(static_cast<std::size_t>(size) + 1);
  std::memcpy(buffer.Data(), text.c_str(), text.size() + 1);
  const int status = function(buffer.Data(), size);
  EXPECT_TRUE(buffer.Intact());
  return {status, status == 0 ? buffer.Data() : ""};
}

/** A configured database; one for the test program, because the library remembers what names lead to. */
class Setting
{
 public:
  Setting() : configuration_("MORVEX_CONFIG_FILE", Configure()), inside_(dir_.Path()) {}

 private:
  std::string Configure() const
  {
    arf::BuildOptions options;
    options.inputs = {dir_.Write("in.csv", "dpid,street_name,locality,state,postcode\n30000001,A,B,NSW,2000\n")};
    options.outputDirectory = dir_.Path("db");
    options.sortPlanPath = dir_.Write("plan.csv",
                                      "date,2026-05-31\npostcode,bsp,npsp\n2000,019,N07\n"
                                      "2001,1234567890123456789,\n");
    options.info = {{"version", "test data 1"}};
    EXPECT_EQ(arf::BuildDatabase(options).outcome, arf::BuildOutcome::Built);
    const std::string path = dir_.Path("db");
    return dir_.Write("configuration", "PafDir=" + path + "\nARF/AU/Main=" + path + "\nARF/AU/None=" + path + "x\n");
  }

  test_support::TempDir dir_;
  test_support::EnvValue configuration_;
  test_support::WorkingDirectory inside_;
};

class BarcodeLibrary : public testing::Test
{
 protected:
  static void SetUpTestSuite() { setting_ = std::make_unique<Setting>(); }
  static void TearDownTestSuite()
  {
    pafForceCloseAll();
    setting_.reset();
  }

  static Answer Property(int id, const std::string& name)
  {
    char out[512] = "";
    const int status = pafGetPropertiesId(id, name.c_str(), out, sizeof out);
    return {status, out};
  }

 private:
  static inline std::unique_ptr<Setting> setting_;
};

TEST_F(BarcodeLibrary, Identifiers)
{
  const std::string bars = PlainFourState("11", "30000001", "", true);
  EXPECT_EQ(Call(pafDpidToBarcode, "30000001", 37), (Answer{0, bars}));
  EXPECT_EQ(Call(pafDpidToBarcode, "30000001", 36), (Answer{PAF_ERR_BUFFER_TOO_SMALL, ""}));
  EXPECT_EQ(Call(pafDpidToBarcode, "1234", 37), (Answer{0, PlainFourState("11", "00001234", "", true)}));
  EXPECT_EQ(Call(pafDpidToBarcode, "", 37), (Answer{PAF_AU_ERR_BARCODE_DPID, ""}));
  EXPECT_EQ(Call(pafDpidToBarcode, "1234567x", 37), (Answer{PAF_ERR_BARCODE, ""}));
  EXPECT_EQ(Call(pafDpidToBarcode, "12345678x", 37), (Answer{PAF_AU_ERR_BARCODE_DPID, ""}));
  EXPECT_EQ(Call(pafCustInfoBarcode, "30000001", 37), (Answer{0, bars}));
}

TEST_F(BarcodeLibrary, CustomerInformation)
{
  EXPECT_EQ(Call(pafCustInfoBarcode, "300000015212345678"),
            (Answer{0, PlainFourState("59", "30000001", "12345678", true)}));
  EXPECT_EQ(Call(pafCustInfoBarcode, "3000000152Ab #9"), (Answer{0, PlainFourState("59", "30000001", "Ab #9", false)}));
  EXPECT_EQ(Call(pafCustInfoBarcode, "3000000167Hello 12#"),
            (Answer{0, PlainFourState("62", "30000001", "Hello 12#", false)}));
  EXPECT_EQ(Call(pafCustInfoBarcode, "3000000152ABCDEF"), (Answer{PAF_AU_ERR_CUSTOMER_TOO_LONG, ""}));
  EXPECT_EQ(Call(pafCustInfoBarcode, "3000000152A.B"), (Answer{PAF_AU_ERR_CUSTOMER_CHARACTER, ""}));
  EXPECT_EQ(Call(pafCustInfoBarcode, "3000000152"), (Answer{PAF_ERR_NOT_IMPLEMENTED, ""}));
  EXPECT_EQ(Call(pafGenerateBarcode, "3000000159C12345"),
            (Answer{0, PlainFourState("59", "30000001", "12345", false)}));
  EXPECT_EQ(Call(pafGenerateBarcode, "3000000159X12345"), (Answer{0, ""}));
}

TEST_F(BarcodeLibrary, SeparateParts)
{
  struct Row
  {
    const char* format;
    const char* customer;
    int flag;
    Answer answer;
  };
  const Row rows[] = {
      {"11", "", 0, {0, PlainFourState("11", "30000001", "", true)}},
      {"92", "", 1, {0, PlainFourState("92", "30000001", "", true)}},
      {"59", "12345", 1, {0, PlainFourState("59", "30000001", "12345", true)}},
      {"59", "12345", 0, {0, PlainFourState("59", "30000001", "12345", false)}},
      {"62", "123456789012345", 1, {0, PlainFourState("62", "30000001", "123456789012345", true)}},
      {"62", "abcdefghij", 0, {0, PlainFourState("62", "30000001", "abcdefghij", false)}},
      {"62", "abcdefghij", 1, {PAF_AU_ERR_CUSTOMER_CHARACTER, ""}},
      {"13", "", 0, {PAF_AU_ERR_BARCODE_FORMAT, ""}},
      {"11", "A", 0, {PAF_AU_ERR_CUSTOMER_NOT_TAKEN, ""}},
  };
  for (const Row& row : rows) {
    test_support::GuardedBuffer out(68);
    out.Data()[0] = '\0';
    int length = -1;
    const int status = pafBuildBarcode_(row.format, "30000001", row.customer, row.flag, out.Data(), &length);
    EXPECT_EQ((Answer{status, out.Data()}), row.answer) << row.format << ' ' << row.customer;
    EXPECT_TRUE(out.Intact());
    if (status == 0) {
      EXPECT_EQ(length, static_cast<int>(row.answer.text.size()));
    }
  }
}

TEST_F(BarcodeLibrary, SortPlanOfTheDefaultDatabase)
{
  EXPECT_EQ(Call(pafPostcodeToBsp, "2000", 10), (Answer{0, ""})) << "no database is open";
  ASSERT_EQ(pafOpenPaf(), 0);
  EXPECT_EQ(Call(pafPostcodeToBsp, "2000", 10), (Answer{0, "019"}));
  EXPECT_EQ(Call(pafPostcodeToNpsp, "2000", 10), (Answer{0, "N07"}));
  EXPECT_EQ(Call(pafPostcodeToBsp, "2001", 19), (Answer{0, "1234567890123456789"}));
  EXPECT_EQ(Call(pafPostcodeToNpsp, "2001", 19), (Answer{0, ""}));
  EXPECT_EQ(Call(pafPostcodeToBsp, "2002", 10), (Answer{0, ""}));
  EXPECT_EQ(Call(pafPostcodeToBsp, "nonsense", 10), (Answer{0, ""}));
  EXPECT_EQ(pafClosePaf(), 0);
}

TEST_F(BarcodeLibrary, Properties)
{
  int id = 0;
  ASSERT_EQ(pafOpenArfId(&id, 0, "AU.Main"), 0);
  const std::string ours =
      "Delimiter;OutputFields;PafEngineVersion;PafLibVersion;PafVersionInfo;SortPlanDate;Notice;LatLongSearchRange;"
      "StateFilter;AddressFilter;PointsOfInterest;"
      "GeographicalCodes;GeographicalCodesFilter;GifCommonMinimumPercent;MatchPenalties;PenaltyTable";
  EXPECT_EQ(Property(id, "Properties"),
            (Answer{0,
                    "OpenARF;ClientCount;PafMachine;CountryCode;ArfLibVersion;ArfLibVersionAu;ArfLibVersionNz;"
                    "ArfLibVersionUs;ArfLibVersionUk;ARFs;DefaultArf;" +
                        ours}));
  EXPECT_EQ(Property(id, "PropertyName12"), (Answer{0, "Delimiter"}));
  EXPECT_EQ(Property(id, "PropertyName18"), (Answer{0, "Notice"}));
  EXPECT_EQ(Property(id, "PropertyName27"), (Answer{0, "PenaltyTable"}));
  EXPECT_EQ(Property(id, "PropertyName28"), (Answer{0, ""}));
  EXPECT_EQ(Property(id, "SortPlanDate"), (Answer{0, "2026-05-31"}));
  for (const int any : {id, 0}) {
    EXPECT_EQ(Property(any, "ArfStatus:AU.Main"), (Answer{0, "ARF OK"}));
    EXPECT_EQ(Property(any, "ArfVersion:AU.Main"), (Answer{0, "AU test data 1 (format 3, 1 address)"}));
    EXPECT_EQ(Property(any, "ArfStatus:AU.None"), (Answer{0, "ARF Not Found"}));
    EXPECT_EQ(Property(any, "ArfStatus:AU.Other"), (Answer{0, "ARF Not Registered"}));
    EXPECT_EQ(Property(any, "Barcode:30000001"), (Answer{0, PlainFourState("11", "30000001", "", true)}));
    EXPECT_EQ(Property(any, "ArfLibVersionAu"), (Answer{0, "5.10.246"}));
  }
  EXPECT_EQ(Property(0, "PafVersionInfo"), (Answer{0, ""}));
  EXPECT_EQ(Property(id, "PafVersionInfo"), (Answer{0, "test data 1"}));
  EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_F(BarcodeLibrary, FailuresOfAnInstanceAreDescribed)
{
  int id = 0;
  ASSERT_EQ(pafOpenArfId(&id, 0, "AU.Main"), 0);
  ASSERT_EQ(Property(id, "NPSP:2001"), (Answer{PAF_AU_ERR_NOT_IN_SORT_PLAN, ""}));
  char text[256];
  pafGetErrorDescription(text, PAF_AU_ERR_NOT_IN_SORT_PLAN, sizeof text);
  EXPECT_STREQ(text,
               "The sort plan has no NPSP for the postcode 2001. Check the postcode, and whether the plan is current.");
  EXPECT_EQ(pafClosePafId(id), 0);
}

}  // namespace
