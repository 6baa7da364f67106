#include "server/request_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace pafd {
namespace {

TEST(RequestTable, FindsEveryRowByItsExactName)
{
  for (const Request& row : Requests()) {
    const std::string name(row.name);
    EXPECT_EQ(FindRequest(name), &row);
    EXPECT_EQ(FindRequest(name + " "), nullptr);
    EXPECT_EQ(FindRequest(name.substr(1)), nullptr);
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
    EXPECT_EQ(FindRequest(upper), nullptr);
  }
}

TEST(RequestTable, HoldsEveryRequestOfTheClients)
{
  const std::vector<std::string> clients = {"pafOpenPafId",
                                            "pafOpenArfId",
                                            "pafOpenPafMemId",
                                            "pafClosePafId",
                                            "pafGetDpidId",
                                            "pafGetDpidNonAmasId",
                                            "pafFixLastLineId",
                                            "pafValidatePartialAddressId",
                                            "pafGetAddressId",
                                            "pafGetNextAddressId",
                                            "pafGetBorderPostcodesId",
                                            "pafGetPopupHintId",
                                            "pafGetNextPopupHintId",
                                            "pafDpidToAddressId",
                                            "pafGetAddressHintId",
                                            "pafGetNextAddressHintId",
                                            "pafGetFindStatusId",
                                            "pafGetParsedInputId",
                                            "pafGetPropertiesId",
                                            "pafSetPropertiesId",
                                            "pafValidateFullAddressId",
                                            "pafFormatAddressId",
                                            "pafFormatAddressS",
                                            "pafFormatAddress",
                                            "pafReadLocalityRecord",
                                            "pafReadGroupRecord",
                                            "pafReadPointRecord",
                                            "pafReadSynonymRecord",
                                            "pafReadBorderRecord",
                                            "pafGetLocalityRecordCount",
                                            "pafGetGroupRecordCount",
                                            "pafGetPointRecordCount",
                                            "pafGetSynonymRecordCount",
                                            "pafSetGeographicalCodesId",
                                            "pafBeginPolygonSearch",
                                            "pafGetNextAddressInPolygon",
                                            "pafGetSearchStatistics",
                                            "pafBuildBarcode_",
                                            "pafCustInfoBarcode",
                                            "pafGenerateBarcode",
                                            "pafDpidToBarcode",
                                            "pafPostcodeToBsp",
                                            "pafPostcodeToNpsp",
                                            "pafGetErrorDescription"};
  EXPECT_EQ(Requests().size(), clients.size());
  for (const std::string& name : clients) {
    EXPECT_NE(FindRequest(name), nullptr) << name;
  }
}

TEST(RequestTable, EveryRowFitsItsArguments)
{
  for (const Request& row : Requests()) {
    const auto count = [&](auto... kinds) { return (std::count(row.fields.begin(), row.fields.end(), kinds) + ...); };
    EXPECT_LE(count(Field::Id), 1) << row.name;
    EXPECT_LE(count(Field::Number), 2) << row.name;
    EXPECT_LE(count(Field::Text, Field::Lines, Field::Record), 4) << row.name;
    EXPECT_LE(count(Field::Lines, Field::Record), 1) << row.name;
    EXPECT_EQ(count(Field::None), 0) << row.name;
  }
}

}  // namespace
}  // namespace pafd
