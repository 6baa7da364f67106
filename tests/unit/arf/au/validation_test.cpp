// Verdicts on whole and incomplete addresses, and addresses laid out, through the plug-in's interface.
#include <gtest/gtest.h>

#include <string>

#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Searcher;

class Validation : public testing::Test
{
 protected:
  struct Judged
  {
    Answer answer;
    char verdict = 'x';
  };

  Judged Full(const std::string& text, int flags = 0)
  {
    Judged judged;
    char out[512] = "#";
    judged.answer.status = searcher_->ValidateFullAddress(text.c_str(), out, sizeof out, flags, &judged.verdict);
    judged.answer.text = out;
    return judged;
  }
  Answer Partial(const std::string& text)
  {
    char out[10] = "#";
    const int status = searcher_->ValidatePartialAddress(text.c_str(), out, sizeof out);
    return {status, out};
  }
  Answer Format(const std::string& text, long option = 0, int size = 512)
  {
    std::string out(512, '#');
    const int status = searcher_->FormatAddress(text.c_str(), out.data(), option, size);
    return {status, out.c_str()};
  }

  arf_test::DatabasePointer database_ = arf_test::OpenSmall();
  Searcher searcher_{*database_};
};

TEST_F(Validation, VerdictsOnWholeAddresses)
{
  struct Row
  {
    const char* written;
    int flags;
    char verdict;
    int status;
    const char* text;
  };
  const Row rows[] = {
      {"1 George Street, Sydney NSW 2000", 0, 'V', 0, "1 GEORGE STREET, SYDNEY NSW 2000"},
      {"1 george st sydney nsw 2000", 0, 'V', 0, "1 GEORGE STREET, SYDNEY NSW 2000"},
      {"1 George Street, Sydney 2000", 0, 'C', 0, "1 GEORGE STREET, SYDNEY NSW 2000"},
      {"1 George Street, Sydney NSW", 0, 'C', 0, "1 GEORGE STREET, SYDNEY NSW 2000"},
      {"138 Pitt St Sydney NSW 2000", 0, 'C', 0, "138-144 PITT STREET, SYDNEY NSW 2000"},
      {"138 Pitt St Sydney NSW 2000", PAF_AU_VALIDATE_STRICT, 'S', PAF_AU_ERR_WRONG_NUMBER, ""},
      {"138 Pitt St Sydney NSW 2000", 2, 'C', 0, "138-144 PITT STREET, SYDNEY NSW 2000"},
      {"900 George St Sydney NSW 2000", 0, 'S', PAF_AU_ERR_WRONG_NUMBER, ""},
      {"Cnr George St & Pitt St, Sydney", 0, 'S', PAF_AU_ERR_WRONG_NUMBER, ""},
      {"George & Pitt Sts, Sydney", PAF_AU_VALIDATE_STRICT, 'S', PAF_AU_ERR_WRONG_NUMBER, ""},
      {"Cnr Qwertz St & Pitt St, Sydney", 0, 'L', PAF_AU_ERR_WRONG_STREET, ""},
      {"483 George St (cnr Pitt St), Sydney", 0, 'C', 0, "SYDNEY TOWN HALL, 483 GEORGE STREET, SYDNEY NSW 2000"},
      {"1 Qwertz St Sydney NSW 2000", 0, 'L', PAF_AU_ERR_WRONG_STREET, ""},
      {"1 Windsor St Richmond", 0, 'A', PAF_AU_ERR_SEVERAL_FOUND, ""},
      {"1 George St Atlantis", 0, 'N', PAF_AU_ERR_WRONG_LOCALITY, ""},
      {"xyzzy", 0, 'N', PAF_AU_ERR_NOT_FOUND, ""},
      {"", 0, 'N', PAF_AU_ERR_NOT_FOUND, ""},
  };
  for (const Row& row : rows) {
    const Judged judged = Full(row.written, row.flags);
    EXPECT_EQ(judged.answer, (Answer{row.status, row.text})) << row.written;
    EXPECT_EQ(judged.verdict, row.verdict) << row.written;
  }
  EXPECT_EQ(Full(std::string(20000, 'a')).verdict, 'N');
}

TEST_F(Validation, TheVerdictMayBeLeftOut)
{
  char out[64];
  EXPECT_EQ(searcher_->ValidateFullAddress("1 George St Sydney", out, sizeof out, 0, nullptr), 0);
  EXPECT_STREQ(out, "1 GEORGE STREET, SYDNEY NSW 2000");
}

TEST_F(Validation, AnAnswerThatDoesNotFitHasAVerdictAndNoText)
{
  char out[10] = "#########";
  char verdict = 'x';
  EXPECT_EQ(searcher_->ValidateFullAddress("1 George St Sydney", out, 5, 0, &verdict), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(verdict, 'C');
  EXPECT_EQ(out[5], '#');
}

TEST_F(Validation, IncompleteAddresses)
{
  struct Row
  {
    const char* written;
    int status;
    const char* text;
    int findStatus;
  };
  const Row rows[] = {
      {"1 George St Sydney", 0, "30000001", PAF_AU_FIND_MATCHED},
      {"George St Sydney", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"1 Windsor St Richmond", 0, "SEVERAL", PAF_AU_FIND_SEVERAL},
      {"900 George St Sydney", PAF_AU_ERR_WRONG_NUMBER, "", PAF_AU_FIND_NO_NUMBER},
      {"1 Qwertz St Sydney", PAF_AU_ERR_WRONG_STREET, "", PAF_AU_FIND_NO_STREET},
      {"1 George Ave Sydney NSW", 0, "30000001", PAF_AU_FIND_CHANGED},
      {"xyzzy", PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
      {"", PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
      // Localities, also where the end of a name is another one.
      {"Sydney NSW", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"Richmond", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"East Melbourne VIC", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"2000 Sydney", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"NSW 2000 Sydney", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"2001 NSW, Sydney", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"Qwertz Melbourne VIC", PAF_AU_ERR_WRONG_STREET, "", PAF_AU_FIND_NO_STREET},
      {"Sydney VIC", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"3000 Sydney", PAF_AU_ERR_WRONG_STREET, "", PAF_AU_FIND_NO_STREET},
      {"Atlantis", PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
      // State and postcode alone.
      {"vic 3121", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"2600", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"0800", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"NSW", 0, "SEVERAL", PAF_AU_FIND_SEVERAL},
      {"ACT", 0, "LOCALITY", PAF_AU_FIND_NO_STREET},
      {"TAS", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"vic 2000", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"9999", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      // Streets without locality.
      {"george st", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"1 george st", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"unit 2/30 george st", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"george st nsw", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"the esplanade", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"o'connell street", 0, "STREET", PAF_AU_FIND_NO_NUMBER},
      {"14 broadway", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"900 george st", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"george st vic", PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"george ave", PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
      {"george", PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
      {"gorge st", PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Partial(row.written), (Answer{row.status, row.text})) << row.written;
    EXPECT_EQ(searcher_->GetFindStatus(), row.findStatus) << row.written;
  }
}

TEST_F(Validation, Formatting)
{
  EXPECT_EQ(Format("1 george st sydney"), (Answer{0, "1 George Street\tSYDNEY NSW 2000"}));
  EXPECT_EQ(Format("483 george st, sydney", PAF_AU_FORMAT_ONE_LINE | PAF_AU_FORMAT_ABBREVIATE),
            (Answer{0, "Sydney Town Hall, 483 George St, SYDNEY NSW 2000"}));
  EXPECT_EQ(Format("138 pitt st sydney"), (Answer{0, "138 PITT ST SYDNEY"})) << "nothing is corrected";
  EXPECT_EQ(Format("12 foo st,atlantis"), (Answer{0, "12 Foo St\tATLANTIS"}));
  EXPECT_EQ(Format(""), (Answer{0, ""}));
  EXPECT_EQ(searcher_.SetProperty("Delimiter", "|"), (Answer{0, ""}));
  EXPECT_EQ(Format("1 george st sydney"), (Answer{0, "1 George Street|SYDNEY NSW 2000"}));
  EXPECT_EQ(Format("1 george st sydney", 0, 10), (Answer{PAF_ERR_BUFFER_TOO_SMALL, ""}));
  EXPECT_EQ(Format("1 george st sydney", 4L << PAF_AU_FORMAT_WIDTH_SHIFT), (Answer{PAF_AU_ERR_LAYOUT, ""}));
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_LAYOUT),
            "The address does not fit the lines that the format option allows. Allow more or longer lines, or "
            "abbreviations.");
  EXPECT_EQ(Format(std::string(511, 'x')).status, 0);
  std::string lines;
  for (int i = 0; i < 33; ++i) lines += "x,";
  for (const std::string& text : {std::string(513, 'x'), lines}) {
    EXPECT_EQ(Format(text), (Answer{PAF_AU_ERR_LAYOUT, ""}));
    EXPECT_EQ(searcher_.Description(PAF_AU_ERR_LAYOUT).substr(0, 63),
              "The text has more than 32 lines, or one of more than 512 bytes.");
  }
}

/** Laying out looks an address up: what was read and how the search went belong together. */
TEST_F(Validation, FormattingSetsFindStatusAndParsedInput)
{
  struct Row
  {
    const char* written;
    int findStatus;
  };
  const Row rows[] = {{"1 george st sydney", PAF_AU_FIND_MATCHED},     {"138 pitt st sydney", PAF_AU_FIND_NO_NUMBER},
                      {"1 qwertz st sydney", PAF_AU_FIND_NO_STREET},   {"1 windsor st richmond", PAF_AU_FIND_SEVERAL},
                      {"12 foo st,atlantis", PAF_AU_FIND_NO_LOCALITY}, {"mary", PAF_AU_FIND_NOTHING}};
  for (const Row& row : rows) {
    searcher_.Lookup("483 gorge st sydney", 0);
    EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_CHANGED);
    EXPECT_EQ(Format(row.written).status, 0) << row.written;
    EXPECT_EQ(searcher_->GetFindStatus(), row.findStatus) << row.written;
    EXPECT_EQ(searcher_.Property("MatchPenalties"), (Answer{0, ""})) << row.written;
    const std::string parsed = searcher_.Parsed().text;
    EXPECT_NE(parsed.find('\t' + std::to_string(row.findStatus) + '\t'), std::string::npos) << parsed;
  }
  EXPECT_EQ(Format(std::string(5000, 'a')).status, PAF_AU_ERR_INPUT_TOO_LONG);
  EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_NOT_SEARCHED);
}

}  // namespace
