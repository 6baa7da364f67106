/** A searcher over a few addresses in three made-up places, most of them with coordinates and codes. */
#ifndef QXPAF_TESTS_UNIT_ARF_SEARCH_TOWN_FIXTURE_H
#define QXPAF_TESTS_UNIT_ARF_SEARCH_TOWN_FIXTURE_H

#include <string>
#include <vector>

#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/build/test_database.h"

namespace arf_test {

/** A thousandth of a degree is 111 metres northwards and 93 eastwards in Alderton. */
inline constexpr const char* kTowns =
    "dpid,building,unit_type,unit_number,number_first,number_last,street_name,street_type,postal_type,postal_number,"
    "lot,"
    "locality,state,postcode,latitude,longitude,mesh_block,local_government_area\n"
    "30000001,,,,1,,HIGH,STREET,,,,ALDERTON,NSW,2991,-33.500000,151.000000,M1,L1\n"
    "30000002,,,,3,,HIGH,STREET,,,,ALDERTON,NSW,2991,-33.500000,151.000500,M1,L1\n"
    "30000003,,UNIT,1,5,,HIGH,STREET,,,,ALDERTON,NSW,2991,-33.500000,151.001000,M2,L1\n"
    "30000004,,UNIT,2,5,,HIGH,STREET,,,,ALDERTON,NSW,2991,-33.500000,151.001000,M2,L1\n"
    "30000005,OLD MILL,,,7,,HIGH,STREET,,,,ALDERTON,NSW,2991,-33.500500,151.001000,M2,L1\n"
    "30000006,,,,2,,MILL,LANE,,,,ALDERTON,NSW,2991,-33.501000,151.000000,M1,L1\n"
    "30000007,,,,,,,,PO BOX,12,,ALDERTON,NSW,2991,,,,\n"
    "30000008,,,,,,,,,,5,ALDERTON,NSW,2991,-33.510000,151.000000,M3,L1\n"
    "30000009,,,,10,,HIGH,STREET,,,,BRAMLEY,VIC,3991,-36.000000,146.000000,M4,L2\n"
    "30000010,,,,12,,GREEN VALLEY,ROAD,,,,BRAMLEY,VIC,3991,-36.001000,146.000000,M4,L2\n"
    "30000011,,,,14,16,GREEN VALLEY,ROAD,,,,BRAMLEY,VIC,3991,-36.001000,146.001000,M5,L2\n"
    "30000012,,,,1,,ST MARY,ROAD,,,,CRANFORD,NSW,2991,-33.520000,151.020000,M6,L2\n";

struct Towns : testing::Test
{
  static const std::string& Directory()
  {
    static const test_support::TempDir dir;
    static const std::string path = BuiltDirectory(dir, kTowns);
    return path;
  }

  Towns() : database(GetDb())
  {
    char error[255] = "";
    EXPECT_EQ(database->Open(Directory().c_str(), 2, error, sizeof error), 0) << error;
    searcher = std::make_unique<Searcher>(*database);
    EXPECT_EQ(searcher->SetProperty("OutputFields", "DPID").status, 0);
  }

  template <class Operation>
  static Answer Fill(Operation operation)
  {
    std::string buffer(1024, '#');
    const int status = operation(buffer.data(), static_cast<int>(buffer.size()));
    return {status, buffer.substr(0, buffer.find('\0'))};
  }

  /** The last two digits of the identifiers that an enumeration gives, separated by spaces; or its status. */
  template <class Next>
  static std::string Collect(int status, Next next)
  {
    std::string all;
    for (int i = 0; status == 0 && i < 100; ++i) {
      const Answer answer = next();
      status = answer.status;
      if (answer.status == 0 && answer.text.empty()) return all;
      if (!all.empty()) all += ' ';
      all += answer.text.substr(answer.text.size() - std::min<std::size_t>(2, answer.text.size()));
    }
    return "status " + std::to_string(status);
  }

  std::string Near(const std::string& latitude, const std::string& longitude)
  {
    const Answer first = searcher->Get(std::string(42, '\t') + latitude + '\t' + longitude);
    bool isFirst = true;
    return Collect(first.status, [&] { return std::exchange(isFirst, false) ? first : searcher->Next(); });
  }
  std::string Get(const std::string& query)
  {
    const Answer first = searcher->Get(query);
    bool isFirst = true;
    return Collect(first.status, [&] { return std::exchange(isFirst, false) ? first : searcher->Next(); });
  }
  Answer NextInPolygon()
  {
    return Fill([&](char* out, int size) { return (*searcher)->GetNextAddressInPolygon(out, size); });
  }
  std::string Polygon(const std::string& polygon, const std::string& centre = "")
  {
    return Collect((*searcher)->BeginPolygonSearch(polygon.c_str(), centre.c_str()), [&] { return NextInPolygon(); });
  }
  Answer Statistics(const std::string& in, const std::string& what, const std::string& metres = "")
  {
    return Fill([&](char* out, int size) {
      return (*searcher)->GetSearchStatistics(in.c_str(), what.c_str(), metres.c_str(), "", out, size);
    });
  }
  std::string Search(const std::string& text)
  {
    return Collect((*searcher)->BeginAddressSearch(text.c_str()), [&] {
      return Fill([&](char* out, int size) { return (*searcher)->GetNextAddressSearch(out, size); });
    });
  }

  DatabasePointer database;
  std::unique_ptr<Searcher> searcher;
};

}  // namespace arf_test

#endif
