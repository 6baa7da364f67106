#include "paf/filters.h"

#include <gtest/gtest.h>

#include "unit/tools/failure_of.h"
#include "unit/tools/scripted_session.h"

namespace tool {
namespace {

using tool_test::FailureOf;
using tool_test::Script;

Filters Parsed(const std::string& commandLine)
{
  CLI::App app;
  Filters filters;
  AddFilterOptions(app, filters);
  app.parse(commandLine);
  return filters;
}

/** "Name=value" for every property that the filters set. */
std::vector<std::string> Properties(const Filters& filters)
{
  std::vector<std::string> set;
  Script() = {};
  Script().setProperty = [&set](const std::string& name, const std::string& value) {
    set.push_back(name + "=" + value);
    return Reply{};
  };
  Session session;
  ApplyFilters(session, filters);
  return set;
}

TEST(Filters, SetOnlyWhatWasAskedFor)
{
  EXPECT_TRUE(Properties(Parsed("")).empty());
  EXPECT_EQ(Properties(Parsed("--states VIC")), (std::vector<std::string>{"StateFilter=VIC"}));
  EXPECT_EQ(Properties(Parsed("--named-buildings")), (std::vector<std::string>{"PointsOfInterest=True"}));
}

TEST(Filters, ListsAreWrittenAsThePropertiesTakeThem)
{
  EXPECT_EQ(Properties(Parsed("--states NSW,VIC --kinds Street,Unit --codes MeshBlock=1,Postcode=2000")),
            (std::vector<std::string>{"StateFilter=NSW;VIC", "AddressFilter=Street;Unit",
                                      "GeographicalCodes=MeshBlock=1;Postcode=2000"}));
}

struct RefusedRow
{
  const char* property;
  const char* option;
};

constexpr RefusedRow kRefused[] = {{"StateFilter", "--states"},
                                   {"AddressFilter", "--kinds"},
                                   {"GeographicalCodes", "--codes"},
                                   {"PointsOfInterest", "--named-buildings"}};

TEST(Filters, ARefusalNamesTheOption)
{
  const Filters filters = Parsed("--states a --kinds b --codes c --named-buildings");
  for (const RefusedRow& row : kRefused) {
    Script() = {};
    Script().setProperty = [&row](const std::string& name, const std::string&) {
      return name == row.property ? Reply{9, "", "No."} : Reply{};
    };
    Session session;
    EXPECT_EQ(FailureOf([&] { ApplyFilters(session, filters); }), std::string(row.option) + ": No. (status 9)");
  }
}

}  // namespace
}  // namespace tool
