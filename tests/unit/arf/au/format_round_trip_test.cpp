// Every address that FormatAddress lays out is found again by what it printed, whatever the option.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "arf/match/occupancy_words.h"
#include "arf/tables/level_types.h"
#include "arf/tables/unit_types.h"
#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Searcher;

constexpr long kAllOptions =
    PAF_AU_FORMAT_UPPER | PAF_AU_FORMAT_LAST_LINE_TITLE | PAF_AU_FORMAT_ABBREVIATE | PAF_AU_FORMAT_ONE_LINE;

/** An address as the data has it, and the identifier that it is found with. */
struct Label
{
  std::string text;
  std::string dpid;
};

class FormatRoundTrip : public testing::Test
{
 protected:
  void Open(const std::string& csv)
  {
    database_.reset(GetDb());
    char error[255] = "";
    ASSERT_EQ(database_->Open(arf_test::BuildDatabaseFrom(dir_, csv).c_str(), 2, error, sizeof error), 0) << error;
    searcher_ = std::make_unique<Searcher>(*database_);
  }

  /** All addresses of a state. */
  std::vector<Label> LabelsOf(const std::string& state)
  {
    std::vector<Label> labels;
    (*searcher_)->SetProperties("OutputFields", "DPID", nullptr, 0);
    for (Answer answer = searcher_->Get(state); answer.status == 0 && !answer.text.empty(); answer = searcher_->Next())
      labels.push_back({std::string(), answer.text});
    for (Label& label : labels) label.text = Written(label.dpid);
    return labels;
  }

  /** "QUEEN VICTORIA BUILDING, SHOP 12 GROUND 455 GEORGE STREET, SYDNEY NSW 2000" */
  std::string Written(const std::string& dpid)
  {
    (*searcher_)->SetProperties("OutputFields", "1;2;3;4;5;6", nullptr, 0);
    std::istringstream fields(searcher_->Get("\t\t\t\t\t\t\t" + dpid).text);
    std::string text, field;
    for (int i = 1; std::getline(fields, field, '\t'); ++i)
      if (!field.empty()) text += field + (i < 4 ? ", " : " ");
    return text;
  }

  std::string Format(const std::string& text, long option)
  {
    char out[512] = "#";
    EXPECT_EQ((*searcher_)->FormatAddress(text.c_str(), out, option, sizeof out), 0) << text;
    return out;
  }

  void Check(const std::vector<Label>& labels)
  {
    for (const Label& label : labels)
      for (long option = 0; option <= kAllOptions; ++option) {
        const std::string printed = Format(label.text, option);
        EXPECT_EQ(searcher_->Lookup(printed), (Answer{0, label.dpid}))
            << label.text << " with option " << option << " is " << printed;
      }
  }

  test_support::TempDir dir_;
  arf_test::DatabasePointer database_;
  std::unique_ptr<Searcher> searcher_;
};

TEST_F(FormatRoundTrip, TheSample)
{
  Open(ARF_SAMPLE_ADDRESSES);
  std::size_t addresses = 0, found = 0;
  for (const char* state : {"NSW", "VIC", "QLD", "SA", "WA", "TAS", "NT", "ACT"}) {
    std::vector<Label> labels = LabelsOf(state);
    addresses += labels.size();
    // A building in a street without a number is not found by all that the data says of it.
    std::erase_if(labels, [this](const Label& label) { return searcher_->Lookup(label.text).text != label.dpid; });
    found += labels.size();
    Check(labels);
  }
  EXPECT_EQ(addresses, 412U);
  EXPECT_GT(found, 400U);
}

/** Every kind of level and unit, alone and together, with and without a number where that makes sense. */
TEST_F(FormatRoundTrip, UnitsAndLevelsOfEveryType)
{
  std::string csv =
      "dpid,unit_type,unit_number,level_type,level_number,number_first,street_name,street_type,locality,state,"
      "postcode\n";
  unsigned number = 1;
  const auto add = [&](std::string_view unit, const char* unitNumber, std::string_view level, const char* levelNumber) {
    csv += std::to_string(30000000 + number) + ',' + std::string(unit) + ',' + unitNumber + ',' + std::string(level) +
           ',' + levelNumber + ',' + std::to_string(number) + ",Mill,Lane,Alderton,NSW,2991\n";
    ++number;
  };
  for (const arf::WordRow& unit : arf::UnitTypeRows()) {
    add(unit.full, "12", "", "");
    add(unit.full, "3", "GROUND", "");
    add(unit.full, "4", "LEVEL", "2");
  }
  for (const arf::WordRow& level : arf::LevelTypeRows()) {
    add("", "", level.full, "2");
    add("UNIT", "8", level.full, "2");
    if (!arf::StandsAlone(level.full)) continue;
    add("", "", level.full, "");
    add("SHOP", "7", level.full, "");
  }
  Open(dir_.Write("units.csv", csv));
  const std::vector<Label> labels = LabelsOf("NSW");
  EXPECT_EQ(labels.size(), number - 1);
  Check(labels);
}

}  // namespace
