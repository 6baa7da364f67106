/** The file that a batch writes: complete under its name, and until then able to be gone on with. */
#ifndef PAF_TOOL_BATCH_OUTPUT_H
#define PAF_TOOL_BATCH_OUTPUT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "arf/format/descriptor.h"
#include "batch_tally.h"
#include "json.h"

namespace tool {

/** How far a batch has come. */
struct Progress
{
  std::uint64_t inputOffset = 0;  ///< behind the last row that is in the output
  std::uint64_t inputLine = 1;    ///< the line there
  Tally tally;
};

/** What to do about the rest of a batch that did not end. */
enum class Leftover
{
  Refuse,  ///< say that it is there
  Resume,  ///< go on with it
  Discard  ///< begin anew
};

/**
 * Writes OUT.partial, and in OUT.journal what goes with it: the run (what was asked, of which file and database) and
 * the progress. Finish renames the first and removes the second. What is on the disk at any moment suffices to go on.
 *
 * Every function throws Failure when the files cannot be written.
 */
class BatchOutput
{
 public:
  /** Takes the files; Failure also when another process has them or when a rest may not be used. */
  BatchOutput(std::string path, Json run, Leftover leftover);

  /** The progress of the rest that is gone on with; none when the file is new. */
  const std::optional<Progress>& Resumed() const { return resumed_; }

  void Write(std::string_view text);

  /** Writes the journal, so that everything up to here is kept. */
  void Keep(const Progress& progress);

  /** Gives the file its name. */
  void Finish();

 private:
  std::optional<Json> ReadJournal() const;
  void TakeUp(const Json& journal);
  void CheckSameRun(const Json& before) const;

  std::string path_;
  std::string partialPath_;
  std::string journalPath_;
  Json run_;
  arf::Descriptor file_;
  std::uint64_t size_ = 0;
  std::optional<Progress> resumed_;
};

}  // namespace tool

#endif
