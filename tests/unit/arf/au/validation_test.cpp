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
  EXPECT_EQ(Partial("1 George St Sydney"), (Answer{0, "30000001"}));
  EXPECT_EQ(Partial("George St Sydney"), (Answer{0, "STREET"}));
  EXPECT_EQ(Partial("Sydney NSW"), (Answer{0, "LOCALITY"}));
  EXPECT_EQ(Partial("1 Windsor St Richmond"), (Answer{0, "SEVERAL"}));
  EXPECT_EQ(Partial("900 George St Sydney"), (Answer{PAF_AU_ERR_WRONG_NUMBER, ""}));
  EXPECT_EQ(Partial("1 Qwertz St Sydney"), (Answer{PAF_AU_ERR_WRONG_STREET, ""}));
  EXPECT_EQ(Partial("xyzzy"), (Answer{PAF_AU_ERR_NOT_FOUND, ""}));
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
}

}  // namespace
