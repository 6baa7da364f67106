// Requests for barcodes, through the plug-in's entry point and through a searcher: both must agree.
#include <gtest/gtest.h>

#include <string>

#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/barcode/plain_four_state.h"

namespace {

using arf_test::Answer;
using arf_test::PlainFourState;
using arf_test::Searcher;

struct Row
{
  std::string request;
  Answer answer;
};

class BarcodeProperties : public testing::Test
{
 protected:
  Answer Ask(const std::string& request)
  {
    char out[128] = "#";
    const int status = GetOtherProperties(request.c_str(), out, sizeof out);
    EXPECT_EQ(searcher_.Property(request), (Answer{status, out})) << request;
    return {status, out};
  }

  template <class Rows>
  void Expect(const Rows& rows)
  {
    for (const Row& row : rows) EXPECT_EQ(Ask(row.request), row.answer) << row.request;
  }

  arf_test::DatabasePointer database_ = arf_test::OpenSmall();
  Searcher searcher_{*database_};
};

Answer Bars(const char* format, const char* dpid, const char* customer = "", bool numeric = true)
{
  return {0, PlainFourState(format, dpid, customer, numeric)};
}

Answer Fails(int status)
{
  return {status, ""};
}

TEST_F(BarcodeProperties, OfAnIdentifier)
{
  const Row rows[] = {
      {"Barcode:30000001", {0, "1301011000000000000001322231321110013"}},
      {"BARCODE:30000001", {0, "1301011000000000000001322231321110013"}},
      {"barcode:41234567", Bars("11", "41234567")},
      {"Barcode:99999999", Bars("11", "99999999")},
      {"Barcode:0", Bars("11", "00000000")},
      {"Barcode:1234567", Bars("11", "01234567")},
      {"Barcode: 41234567\r\n", Bars("11", "41234567")},
      {"Barcode:", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode: ", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode:412345671", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode:41234567A", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode:41234567 12345", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode:3954-954", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode:+954955", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode:" + std::string(1000, '1'), Fails(PAF_AU_ERR_BARCODE_DPID)},
  };
  Expect(rows);
}

TEST_F(BarcodeProperties, OfFormatEncodingAndInformation)
{
  const Row rows[] = {
      {"Barcode2:4123456711N", Bars("11", "41234567")},
      {"Barcode2:4123456711C", Bars("11", "41234567")},
      {"Barcode2:4123456711", Bars("11", "41234567")},
      {"barcode2:4123456745N", Bars("45", "41234567")},
      {"Barcode2:4123456787N", Bars("87", "41234567")},
      {"Barcode2:4123456792N", Bars("92", "41234567")},
      {"Barcode2:4123456759N", Bars("59", "41234567")},
      {"Barcode2:4123456759N12345678", Bars("59", "41234567", "12345678")},
      {"Barcode2:4123456759C12345", Bars("59", "41234567", "12345", false)},
      {"Barcode2:4123456759CAa #9", Bars("59", "41234567", "Aa #9", false)},
      {"Barcode2:4123456759C ", Bars("59", "41234567", " ", false)},
      {"Barcode2:4123456762N123456789012345", Bars("62", "41234567", "123456789012345")},
      {"Barcode2:4123456762CNC11N", Bars("62", "41234567", "NC11N", false)},
      {"Barcode2:", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode2:41234567", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode2:412345675", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode2:412345671N", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode2:395495411N", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode2:39549511N", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode2:3954911N", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode2:11N12345678", Fails(PAF_AU_ERR_BARCODE_ENCODING)},
      {"Barcode2:4123456752N", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode2:4123456759X12", Fails(PAF_AU_ERR_BARCODE_ENCODING)},
      {"Barcode2:4123456759n12", Fails(PAF_AU_ERR_BARCODE_ENCODING)},
      {"Barcode2:412345675912345678", Fails(PAF_AU_ERR_BARCODE_ENCODING)},
      {"Barcode2:4123456711N1", Fails(PAF_AU_ERR_CUSTOMER_NOT_TAKEN)},
      {"Barcode2:4123456745CA", Fails(PAF_AU_ERR_CUSTOMER_NOT_TAKEN)},
      {"Barcode2:4123456759N123456789", Fails(PAF_AU_ERR_CUSTOMER_TOO_LONG)},
      {"Barcode2:4123456759CABCDEF", Fails(PAF_AU_ERR_CUSTOMER_TOO_LONG)},
      {"Barcode2:4123456762N1234567890123456", Fails(PAF_AU_ERR_CUSTOMER_TOO_LONG)},
      {"Barcode2:4123456762CABCDEFGHIJK", Fails(PAF_AU_ERR_CUSTOMER_TOO_LONG)},
      {"Barcode2:4123456759N12A", Fails(PAF_AU_ERR_CUSTOMER_CHARACTER)},
      {"Barcode2:4123456759CA-B", Fails(PAF_AU_ERR_CUSTOMER_CHARACTER)},
      {"Barcode2:4123456759C\xE9", Fails(PAF_AU_ERR_CUSTOMER_CHARACTER)},
  };
  Expect(rows);
}

TEST_F(BarcodeProperties, OfInformationThatChoosesItsEncoding)
{
  const Row rows[] = {
      {"Barcode3:412345675912345678", Bars("59", "41234567", "12345678")},
      {"Barcode3:41234567591234", Bars("59", "41234567", "1234")},
      {"BARCODE3:4123456759A1234", Bars("59", "41234567", "A1234", false)},
      {"Barcode3:4123456759N1", Bars("59", "41234567", "N1", false)},
      {"Barcode3:4123456762123456789012345", Bars("62", "41234567", "123456789012345")},
      {"Barcode3:4123456762Hello 12#", Bars("62", "41234567", "Hello 12#", false)},
      {"Barcode3:4123456759", Bars("59", "41234567")},
      {"Barcode3:4123456711", Bars("11", "41234567")},
      {"Barcode3:", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode3:41234567521", Fails(PAF_AU_ERR_BARCODE_FORMAT)},
      {"Barcode3:3954955a591", Fails(PAF_AU_ERR_BARCODE_DPID)},
      {"Barcode3:41234567111", Fails(PAF_AU_ERR_CUSTOMER_NOT_TAKEN)},
      {"Barcode3:4123456759123456789", Fails(PAF_AU_ERR_CUSTOMER_TOO_LONG)},
      {"Barcode3:4123456759A12345", Fails(PAF_AU_ERR_CUSTOMER_TOO_LONG)},
      {"Barcode3:4123456759A.1", Fails(PAF_AU_ERR_CUSTOMER_CHARACTER)},
  };
  Expect(rows);
}

TEST_F(BarcodeProperties, FailuresSayWhatIsWrong)
{
  const std::pair<const char*, const char*> rows[] = {
      {"Barcode:12x", "\"12x\" is no DPID: a DPID is a number of up to eight digits. Pass the DPID by itself."},
      {"Barcode2:3000000113N",
       "\"13\" is no format control code: 11, 45, 59, 62, 87, 92 are. Use 11, 45, 59, 62, 87 or 92."},
      {"Barcode2:3000000159Q",
       "\"Q\" is no encoding: N (digits) and C (characters) are. Write N for digits, C for characters."},
      {"Barcode2:3000000145N1", "Format 45 carries no customer information; 59 and 62 do. Use format 59 or 62."},
      {"Barcode3:3000000159A.B",
       "\".\" cannot be encoded: customer information consists of letters, digits, spaces and #. Use letters, digits, "
       "spaces and #."},
  };
  for (const auto& [request, description] : rows) {
    const int status = searcher_.Property(request).status;
    EXPECT_EQ(searcher_.Description(status), description);
  }
}

}  // namespace
