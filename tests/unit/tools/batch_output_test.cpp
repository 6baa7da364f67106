#include "paf/batch_output.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/file_size_limit.h"
#include "support/temp_dir.h"
#include "unit/tools/failure_of.h"

namespace tool {
namespace {

using tool_test::FailureOf;

class Output : public testing::Test
{
 protected:
  bool Exists(const std::string& name) const { return std::filesystem::exists(dir_.Path(name)); }

  /** Writes as a run does that is interrupted: what is behind the last Keep is not in the journal. */
  void LeaveRest(const std::string& kept, const std::string& unkept)
  {
    BatchOutput output(path_, run_, Leftover::Discard);
    output.Write(kept);
    Tally tally;
    tally.Count(Outcome::Ambiguous);
    output.Keep({77, 5, tally});
    output.Write(unkept);
  }

  std::string ResumeFailure() const
  {
    return FailureOf([this] { BatchOutput(path_, run_, Leftover::Resume); });
  }

  test_support::TempDir dir_;
  std::string path_ = dir_.Path("out.csv");
  Json run_ = {{"input", "in.csv"}, {"size of the input", 100}};
};

TEST_F(Output, AppearsWhenItIsComplete)
{
  BatchOutput output(path_, run_, Leftover::Refuse);
  EXPECT_FALSE(output.Resumed());
  output.Write("a\n");
  output.Keep({});
  output.Write(std::string("b\0\n", 3));
  output.Write("");
  EXPECT_FALSE(Exists("out.csv"));
  EXPECT_TRUE(Exists("out.csv.partial"));
  output.Finish();
  EXPECT_EQ(dir_.Read("out.csv"), std::string("a\nb\0\n", 5));
  EXPECT_FALSE(Exists("out.csv.partial"));
  EXPECT_FALSE(Exists("out.csv.journal"));
  EXPECT_FALSE(Exists("out.csv.journal.new"));
}

TEST_F(Output, ReplacesAnOlderOneOnlyAtTheEnd)
{
  dir_.Write("out.csv", "old");
  BatchOutput output(path_, run_, Leftover::Refuse);
  output.Write("new");
  output.Keep({});
  EXPECT_EQ(dir_.Read("out.csv"), "old");
  output.Finish();
  EXPECT_EQ(dir_.Read("out.csv"), "new");
}

TEST_F(Output, GoesOnBehindWhatTheJournalKept)
{
  LeaveRest("kept\n", "half a ro");
  BatchOutput output(path_, run_, Leftover::Resume);
  ASSERT_TRUE(output.Resumed());
  EXPECT_EQ(output.Resumed()->inputOffset, 77U);
  EXPECT_EQ(output.Resumed()->inputLine, 5U);
  EXPECT_EQ(output.Resumed()->tally.Of(Outcome::Ambiguous), 1U);
  output.Write("next\n");
  output.Finish();
  EXPECT_EQ(dir_.Read("out.csv"), "kept\nnext\n");
}

TEST_F(Output, ARestIsNotTouchedUnlessToldTo)
{
  LeaveRest("kept\n", "more");
  const std::string journal = dir_.Read("out.csv.journal");
  EXPECT_EQ(FailureOf([this] { BatchOutput(path_, run_, Leftover::Refuse); }),
            path_ + ".partial holds what an interrupted run has done; --resume goes on with it, --restart begins anew");
  EXPECT_EQ(dir_.Read("out.csv.partial"), "kept\nmore");
  EXPECT_EQ(dir_.Read("out.csv.journal"), journal);
}

TEST_F(Output, AStrangePartialFileIsNotTouchedUnlessToldTo)
{
  dir_.Write("out.csv.partial", "somebody's");
  EXPECT_EQ(FailureOf([this] { BatchOutput(path_, run_, Leftover::Refuse); }),
            path_ + ".partial is there, but nothing that says how to go on with it; --restart begins anew");
  EXPECT_EQ(dir_.Read("out.csv.partial"), "somebody's");
}

TEST_F(Output, IsBegunAnewWhenToldTo)
{
  LeaveRest("kept\n", "more");
  BatchOutput output(path_, run_, Leftover::Discard);
  EXPECT_FALSE(output.Resumed());
  EXPECT_EQ(dir_.Read("out.csv.partial"), "");
  output.Finish();
  EXPECT_EQ(dir_.Read("out.csv"), "");
}

TEST_F(Output, NothingToGoOnWithIsABeginning)
{
  EXPECT_FALSE(BatchOutput(path_, run_, Leftover::Resume).Resumed());
  // Stopped before anything was kept.
  dir_.Write("out.csv.partial", "header");
  EXPECT_FALSE(BatchOutput(path_, run_, Leftover::Resume).Resumed());
  EXPECT_EQ(dir_.Read("out.csv.partial"), "");
}

TEST_F(Output, AFileThatWasCutIsNotGoneOnWith)
{
  LeaveRest("0123456789", "");
  std::filesystem::resize_file(path_ + ".partial", 9);
  EXPECT_EQ(ResumeFailure(), path_ + ".partial is shorter than " + path_ + ".journal says; --restart begins anew");
  EXPECT_EQ(dir_.Read("out.csv.partial"), "012345678");
  std::filesystem::resize_file(path_ + ".partial", 10);
  EXPECT_EQ(ResumeFailure(), "none");
}

TEST_F(Output, AnotherRunIsNotGoneOnWith)
{
  LeaveRest("kept", "");
  run_["size of the input"] = 101;
  EXPECT_EQ(ResumeFailure(), "the interrupted run had another size of the input (100, now 101); --restart begins anew");
  run_["size of the input"] = 100;
  run_["delimiter"] = ";";
  EXPECT_EQ(ResumeFailure(), "the interrupted run had another delimiter (null, now \";\"); --restart begins anew");
  EXPECT_EQ(dir_.Read("out.csv.partial"), "kept");
}

constexpr const char* kDamaged[] = {
    "",
    "{",
    "[]",
    "null",
    "\xFF\xFE",
    R"({"run": 3, "outputSize": 1})",
    R"({"outputSize": 1})",
    R"({"run": {"input": "in.csv", "size of the input": 100}})",
    R"({"run": {"input": "in.csv", "size of the input": 100}, "outputSize": "x"})",
    R"({"run": {"input": "in.csv", "size of the input": 100}, "outputSize": 1, "inputOffset": 1, "inputLine": 1})",
    R"({"run": {"input": "in.csv", "size of the input": 100}, "outputSize": 1, "inputOffset": 1, "inputLine": 1,
        "tally": {}})",
};

TEST_F(Output, ADamagedJournalIsNotGoneOnWith)
{
  for (const char* journal : kDamaged) {
    SCOPED_TRACE(journal);
    dir_.Write("out.csv.partial", "rows of an hour");
    dir_.Write("out.csv.journal", journal);
    EXPECT_EQ(ResumeFailure(), path_ + ".journal: is damaged; --restart begins anew");
    EXPECT_NE(FailureOf([this] { BatchOutput(path_, run_, Leftover::Refuse); }), "none");
    EXPECT_EQ(dir_.Read("out.csv.partial"), "rows of an hour");
  }
}

TEST_F(Output, BelongsToOneRunAtATime)
{
  const BatchOutput output(path_, run_, Leftover::Refuse);
  for (const Leftover leftover : {Leftover::Refuse, Leftover::Resume, Leftover::Discard}) {
    EXPECT_EQ(FailureOf([&] { BatchOutput(path_, run_, leftover); }), path_ + ".partial: another run is writing it");
  }
}

TEST_F(Output, NeedsAPlaceForAFile)
{
  dir_.MakeDirectory("directory");
  dir_.MakeDirectory("taken.partial");
  const auto failure = [&](const std::string& path) {
    return FailureOf([&] { BatchOutput(path, run_, Leftover::Refuse); });
  };
  EXPECT_EQ(failure(dir_.Path("directory")), dir_.Path("directory") + ": is no regular file");
  EXPECT_EQ(failure("/dev/null"), "/dev/null: is no regular file");
  EXPECT_EQ(failure(dir_.Path("no/out.csv")), dir_.Path("no/out.csv.partial") + ": No such file or directory");
  EXPECT_EQ(failure(dir_.Path("taken")), dir_.Path("taken.partial") + ": Is a directory");
}

TEST_F(Output, AJournalThatCannotBeWrittenIsTold)
{
  dir_.MakeDirectory("out.csv.journal.new");
  BatchOutput output(path_, run_, Leftover::Refuse);
  EXPECT_EQ(FailureOf([&] { output.Keep({}); }), path_ + ".journal.new: Is a directory");
}

TEST_F(Output, GoesOnAfterTheDiskWasFull)
{
  {
    BatchOutput output(path_, run_, Leftover::Refuse);
    output.Write("0123456789");
    output.Keep({10, 2, {}});
    const test_support::FileSizeLimit limit(1000);
    EXPECT_EQ(FailureOf([&] { output.Write(std::string(5000, 'x')); }), path_ + ".partial: File too large");
  }
  EXPECT_EQ(std::filesystem::file_size(path_ + ".partial"), 1000U);
  BatchOutput output(path_, run_, Leftover::Resume);
  ASSERT_TRUE(output.Resumed());
  EXPECT_EQ(output.Resumed()->inputOffset, 10U);
  output.Write("rest");
  output.Finish();
  EXPECT_EQ(dir_.Read("out.csv"), "0123456789rest");
}

}  // namespace
}  // namespace tool
