// Barcodes and tables from outside. QXPAF_TEST_DATA names a directory with barcode-examples.csv (fcc, dpid,
// customer_info, encoding, bars) and barcode-tables.csv (table, symbol, bars); without it the tests are skipped.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "arf/barcode/encoding_tables.h"
#include "arf/barcode/four_state.h"

namespace {

std::vector<std::string> Split(const std::string& line)
{
  std::vector<std::string> fields(1);
  for (const char c : line)
    if (c == ',')
      fields.emplace_back();
    else
      fields.back() += c;
  return fields;
}

class PublishedExamples : public testing::Test
{
 protected:
  void SetUp() override
  {
    const char* given = std::getenv("QXPAF_TEST_DATA");
    if (given == nullptr || *given == '\0') GTEST_SKIP() << "QXPAF_TEST_DATA names no directory with barcodes";
    directory_ = given;
  }

  /** The rows behind the header, which must be as expected. */
  std::vector<std::vector<std::string>> Rows(const std::string& name, const std::string& header) const
  {
    std::ifstream file(directory_ + "/" + name);
    std::string line;
    std::getline(file, line);
    EXPECT_EQ(line, header);
    std::vector<std::vector<std::string>> rows;
    while (std::getline(file, line)) rows.push_back(Split(line));
    return rows;
  }

 private:
  std::string directory_;
};

TEST_F(PublishedExamples, Barcodes)
{
  const auto rows =
      Rows("barcode-examples.csv", "id,kind,fcc,dpid,customer_info,encoding,length,bars,zint,independent_check");
  ASSERT_GE(rows.size(), 18U);
  for (const auto& row : rows) {
    const auto encoding = row[5] == "N" ? arf::CustomerEncoding::Numeric : arf::CustomerEncoding::Text;
    arf::FourStateBars bars;
    EXPECT_EQ(arf::EncodeFourState({row[3], row[2], row[4], encoding}, bars), arf::FourStateFault::None) << row[0];
    EXPECT_EQ(bars.View(), row[7]) << row[0];
  }
}

TEST_F(PublishedExamples, Tables)
{
  const auto rows = Rows("barcode-tables.csv", "table,symbol,bars");
  ASSERT_EQ(rows.size(), 74U);
  for (const auto& row : rows) {
    const char symbol = row[1].front();
    const unsigned code = row[0] == "N" ? arf::NumericCode(static_cast<unsigned>(symbol - '0'))
                                        : arf::kTextCodes[static_cast<unsigned char>(symbol)];
    EXPECT_EQ(code, static_cast<unsigned>(std::stoi(row[2], nullptr, 4))) << row[0] << ' ' << symbol;
  }
}

}  // namespace
