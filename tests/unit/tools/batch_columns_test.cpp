#include "paf/batch_columns.h"

#include <gtest/gtest.h>

#include "unit/tools/failure_of.h"

namespace tool {
namespace {

using tool_test::FailureOf;
using Texts = std::vector<std::string>;

struct UsualRow
{
  const char* what;
  Texts header;
  Texts names;
  Texts fields;
  std::string address;
};

const UsualRow kUsual[] = {
    {"one column, whatever its name", {"x"}, {"x"}, {"1 High St"}, "1 High St"},
    {"a whole address comes before its parts",
     {"street", "Full Address", "postcode"},
     {"Full Address"},
     {"a", "1 High St, Town 3999", "b"},
     "1 High St, Town 3999"},
    {"a line and the last line",
     {"id", "Address", "Suburb", "STATE", "Post Code"},
     {"Address", "Suburb", "STATE", "Post Code"},
     {"7", "1 High St", "Town", "VIC", "3999"},
     "1 High St, Town, VIC 3999"},
    {"the last line in another order than the columns",
     {"postcode", "city", "address"},
     {"address", "city", "postcode"},
     {"3999", "Town", "1 High St"},
     "1 High St, Town, 3999"},
    {"parts of the street",
     {"Building_Name", "unit no", "street-number", "street_name", "street_type", "locality", "state"},
     {"Building_Name", "unit no", "street-number", "street_name", "street_type", "locality", "state"},
     {"The Mill", "2", "12", "High", "St", "Town", "VIC"},
     "The Mill, 2/12 High St, Town, VIC"},
    {"parts that are missing leave no separators",
     {"building", "unit", "number", "street", "suburb"},
     {"building", "unit", "number", "street", "suburb"},
     {"", "", "12", "High St", ""},
     "12 High St"},
    {"numbered lines by their numbers",
     {"address2", "Address 1", "address_3", "town"},
     {"Address 1", "address2", "address_3", "town"},
     {"1 High St", "The Mill", "", "Town"},
     "The Mill, 1 High St, Town"},
    {"the first of two columns of one kind",
     {"suburb", "address", "city"},
     {"address", "suburb"},
     {"Town", "1 High St", "Other"},
     "1 High St, Town"},
    {"an empty row", {"address", "suburb"}, {"address", "suburb"}, {"", ""}, ""},
};

TEST(AddressColumns, AreFoundByTheirUsualNames)
{
  for (const UsualRow& row : kUsual) {
    SCOPED_TRACE(row.what);
    const AddressColumns columns(row.header, {});
    EXPECT_EQ(columns.Names(), row.names);
    EXPECT_EQ(columns.Join(row.fields), row.address);
  }
}

TEST(AddressColumns, AreTheChosenOnesInTheOrderOfTheChoice)
{
  const Texts header = {"a", "B b", "c", "b B"};
  const AddressColumns columns(header, {"C", "b B", "a", "c"});
  EXPECT_EQ(columns.Names(), (Texts{"c", "B b", "a", "c"}));
  EXPECT_EQ(columns.Join({"1", "2", "3", "4"}), "3, 2, 1, 3");
  EXPECT_EQ(columns.Join({"1", "", "", "4"}), "1");
}

TEST(AddressColumns, SayWhatThereIsWhenNoneFits)
{
  EXPECT_EQ(FailureOf([] {
              AddressColumns({"a", "b"}, {"a", "x"});
            }),
            "there is no column \"x\"; the columns are: a, b");
  EXPECT_EQ(FailureOf([] { AddressColumns({"a"}, {""}); }), "there is no column \"\"; the columns are: a");
  EXPECT_EQ(FailureOf([] {
              AddressColumns({"a", "phone"}, {});
            }),
            "no column has a name that addresses usually have; name them with --column. The columns are: a, phone");
}

/** A place alone is no address. */
TEST(AddressColumns, NeedMoreThanTheLastLine)
{
  EXPECT_NE(FailureOf([] { AddressColumns({"suburb", "state", "postcode"}, {}); }), "none");
  EXPECT_NE(FailureOf([] { AddressColumns({"", "  ", "\xC3\xA9"}, {}); }), "none");
}

}  // namespace
}  // namespace tool
