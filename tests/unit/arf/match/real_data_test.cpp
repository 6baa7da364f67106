// Matching over real addresses. QXPAF_TEST_DATA names a directory with register extracts (gnaf-nt-core.psv,
// gnaf-ot-core.psv) and written queries with their answers (synthetic-pairs-nt-ot.csv); without it the tests are
// skipped.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using Row = std::vector<std::string>;

Row Split(const std::string& line, char separator)
{
  Row fields(1);
  bool quoted = false;
  for (const char c : line) {
    if (c == '"')
      quoted = !quoted;
    else if (c == separator && !quoted)
      fields.emplace_back();
    else if (c != '\r')
      fields.back() += c;
  }
  return fields;
}

/** A table with a header row. */
class Table
{
 public:
  Table(const std::string& path, char separator) : file_(path), separator_(separator)
  {
    std::string header;
    if (!std::getline(file_, header)) throw std::runtime_error("cannot read " + path);
    const Row names = Split(header, separator);
    for (std::size_t i = 0; i < names.size(); ++i) columns_[names[i]] = i;
  }
  bool Next()
  {
    std::string line;
    if (!std::getline(file_, line)) return false;
    row_ = Split(line, separator_);
    return true;
  }
  const std::string& operator[](const std::string& column) const { return row_.at(columns_.at(column)); }

 private:
  std::ifstream file_;
  char separator_;
  std::map<std::string, std::size_t> columns_;
  Row row_;
};

/** Columns of the register and what the builder calls them. */
constexpr std::pair<const char*, const char*> kColumns[] = {{"ADDRESS_DETAIL_PID", "source_identifier"},
                                                            {"BUILDING_NAME", "building"},
                                                            {"FLAT_TYPE", "unit_type"},
                                                            {"FLAT_NUMBER", "unit_number"},
                                                            {"LEVEL_TYPE", "level_type"},
                                                            {"LEVEL_NUMBER", "level_number"},
                                                            {"LOT_NUMBER", "lot"},
                                                            {"NUMBER_FIRST", "number_first"},
                                                            {"NUMBER_LAST", "number_last"},
                                                            {"STREET_NAME", "street_name"},
                                                            {"STREET_TYPE", "street_type"},
                                                            {"STREET_SUFFIX", "street_suffix"},
                                                            {"LOCALITY_NAME", "locality"},
                                                            {"STATE", "state"},
                                                            {"POSTCODE", "postcode"},
                                                            {"LATITUDE", "latitude"},
                                                            {"LONGITUDE", "longitude"}};

/** Numbers of an address and its written forms, as the register has them. */
struct Label
{
  std::string pid;
  std::string text;
};

class RealData : public testing::Test
{
 protected:
  void SetUp() override
  {
    const char* given = std::getenv("QXPAF_TEST_DATA");
    if (given == nullptr || *given == '\0') GTEST_SKIP() << "QXPAF_TEST_DATA names no directory with address data";
    directory_ = std::string(given) + "/";
    const std::string csv = Convert();
    // Some house numbers of the register have letters in front, for which there is no column.
    engine_ = arf_test::OpenEngine(arf_test::BuildDatabaseFrom(dir_, csv, true));
    matcher_ = std::make_unique<arf::Matcher>(*engine_);
  }

  std::string Convert()
  {
    std::string csv = "dpid";
    for (const auto& [theirs, ours] : kColumns) csv += std::string(",") + ours;
    csv += '\n';
    std::uint32_t dpid = 30'000'000;
    for (const char* file : {"gnaf-nt-core.psv", "gnaf-ot-core.psv"})
      for (Table table(directory_ + file, '|'); table.Next();) {
        csv += std::to_string(dpid++);
        for (const auto& [theirs, ours] : kColumns) csv += "," + table[theirs];
        csv += '\n';
        labels_.push_back({table["ADDRESS_DETAIL_PID"], table["ADDRESS_LABEL"]});
      }
    return dir_.Write("real.csv", csv);
  }

  std::string PidOf(const arf::LookupAnswer& answer) const
  {
    const arf::Database& data = engine_->Data();
    arf::AttributeText text;
    return std::string(data.AttributeOf(answer.ordinal, data.FindAttribute("source_identifier").value(), text));
  }

  test_support::TempDir dir_;
  std::string directory_;
  std::vector<Label> labels_;
  std::unique_ptr<const arf::Engine> engine_;
  std::unique_ptr<arf::Matcher> matcher_;
};

struct Score
{
  std::size_t asked = 0;
  std::size_t right = 0;
  std::size_t wrong = 0;
};

TEST_F(RealData, WrittenQueries)
{
  const std::set<std::string> covered = {"label",    "written",     "lower_no_punct",       "slash_unit",
                                         "no_state", "no_postcode", "postcode_before_state"};
  for (const arf::Rules rules : {arf::Rules::Strict, arf::Rules::Lenient}) {
    std::map<std::string, Score> scores;
    Score all;
    for (Table table(directory_ + "synthetic-pairs-nt-ot.csv", ','); table.Next();) {
      Score& score = scores[table["kind"]];
      ++score.asked;
      const arf::LookupAnswer answer = matcher_->Lookup(table["input"], rules);
      if (answer.verdict != arf::Verdict::Found) continue;
      const bool isRight = (";" + table["acceptable_pids"] + ";").find(";" + PidOf(answer) + ";") != std::string::npos;
      ++(isRight ? score.right : score.wrong);
      ++(isRight ? all.right : all.wrong);
      if (!isRight) std::printf("wrong: %s\n", table["input"].c_str());
    }
    ASSERT_EQ(scores.size(), 18U);
    for (const auto& [kind, score] : scores) {
      std::printf("%s %-22s %zu of %zu right, %zu wrong\n", rules == arf::Rules::Strict ? "strict " : "lenient",
                  kind.c_str(), score.right, score.asked, score.wrong);
      const bool isAnswered = rules == arf::Rules::Lenient || covered.count(kind) > 0;
      const std::size_t least = covered.count(kind) > 0 ? 97 : 92;
      if (isAnswered) {
        EXPECT_GE(score.right * 100, score.asked * least) << kind;
      }
    }
    EXPECT_LE(all.wrong * 1000, all.right + all.wrong);
  }
}

/** The register's own labels; a few stand for two addresses each. */
TEST_F(RealData, EveryLabel)
{
  std::map<std::string, std::set<std::string>> pids;
  for (const Label& label : labels_) pids[label.text].insert(label.pid);
  Score score;
  for (const auto& [text, acceptable] : pids) {
    if (acceptable.size() > 1) continue;
    ++score.asked;
    const arf::LookupAnswer answer = matcher_->Lookup(text, arf::Rules::Strict);
    if (answer.verdict != arf::Verdict::Found) continue;
    ++(acceptable.count(PidOf(answer)) > 0 ? score.right : score.wrong);
  }
  std::printf("labels: %zu of %zu right, %zu wrong\n", score.right, score.asked, score.wrong);
  EXPECT_GE(score.right * 1000, score.asked * 998);
  EXPECT_EQ(score.wrong, 0U);
}

}  // namespace
