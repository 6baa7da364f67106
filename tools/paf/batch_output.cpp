#include "batch_output.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "exit_code.h"

namespace tool {
namespace {

[[noreturn]] void FailWith(const std::string& path, int error)
{
  throw Failure(path + ": " + std::strerror(error));
}

/** The path, when a file can be put there. */
std::string Usable(std::string path)
{
  std::error_code ignored;
  const auto status = std::filesystem::status(path, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw Failure(path + ": is no regular file");
  }
  return path;
}

/** Opens and locks a file that may be there already; what is in it stays. */
int OpenPartial(const std::string& path)
{
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (file < 0) {
    FailWith(path, errno);
  }
  return file;
}

/** Fails when another run has the file, or has just given it its final name. */
void Lock(int file, const std::string& path)
{
  struct stat opened = {};
  struct stat named = {};
  if (flock(file, LOCK_EX | LOCK_NB) != 0 || fstat(file, &opened) != 0 || stat(path.c_str(), &named) != 0 ||
      opened.st_ino != named.st_ino) {
    throw Failure(path + ": another run is writing it");
  }
}

void WriteWhole(int file, std::string_view text, const std::string& path)
{
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno != EINTR) {
      FailWith(path, errno);
    }
    text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
  }
}

void Synchronise(int file, const std::string& path)
{
  if (fdatasync(file) != 0) {
    FailWith(path, errno);
  }
}

void Rename(const std::string& from, const std::string& to)
{
  if (std::rename(from.c_str(), to.c_str()) != 0) {
    FailWith(to, errno);
  }
}

}  // namespace

BatchOutput::BatchOutput(std::string path, Json run, Leftover leftover)
    : path_(Usable(std::move(path))),
      partialPath_(path_ + ".partial"),
      journalPath_(path_ + ".journal"),
      run_(std::move(run)),
      file_(OpenPartial(partialPath_))
{
  Lock(file_.Value(), partialPath_);
  size_ = static_cast<std::uint64_t>(std::filesystem::file_size(partialPath_));
  const auto journal = ReadJournal();
  if (size_ > 0 && leftover == Leftover::Refuse) {
    throw Failure(partialPath_ +
                  (journal ? " holds what an interrupted run has done; --resume goes on with it, "
                           : " is there, but nothing that says how to go on with it; ") +
                  "--restart begins anew");
  }
  if (size_ > 0 && journal && leftover == Leftover::Resume) {
    TakeUp(*journal);
  } else {
    size_ = 0;
  }
  if (ftruncate(file_.Value(), static_cast<off_t>(size_)) != 0 || lseek(file_.Value(), 0, SEEK_END) < 0) {
    FailWith(partialPath_, errno);
  }
}

/** Nothing when there is no journal, a discarded value when it cannot be read. */
std::optional<Json> BatchOutput::ReadJournal() const
{
  if (!std::filesystem::exists(journalPath_)) {
    return std::nullopt;
  }
  std::ifstream file(journalPath_);
  return Json::parse(file, nullptr, false);
}

void BatchOutput::TakeUp(const Json& journal)
{
  try {
    CheckSameRun(journal.at("run"));
    const auto size = journal.at("outputSize").get<std::uint64_t>();
    if (size > size_) {
      throw Failure(partialPath_ + " is shorter than " + journalPath_ + " says; --restart begins anew");
    }
    size_ = size;
    resumed_ = Progress{journal.at("inputOffset").get<std::uint64_t>(), journal.at("inputLine").get<std::uint64_t>(),
                        Tally::FromJson(journal.at("tally"))};
  } catch (const Json::exception&) {
    throw Failure(journalPath_ + ": is damaged; --restart begins anew");
  }
}

void BatchOutput::CheckSameRun(const Json& before) const
{
  for (const auto& [name, value] : run_.items()) {
    if (!before.contains(name) || before.at(name) != value) {
      throw Failure("the interrupted run had another " + name + " (" + before.value(name, Json()).dump() + ", now " +
                    value.dump() + "); --restart begins anew");
    }
  }
}

void BatchOutput::Write(std::string_view text)
{
  WriteWhole(file_.Value(), text, partialPath_);
  size_ += text.size();
}

void BatchOutput::Keep(const Progress& progress)
{
  Synchronise(file_.Value(), partialPath_);
  const Json journal = {{"run", run_},
                        {"inputOffset", progress.inputOffset},
                        {"inputLine", progress.inputLine},
                        {"outputSize", size_},
                        {"tally", progress.tally.ToJson()}};
  const std::string next = journalPath_ + ".new";
  const arf::Descriptor file(open(next.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!file.IsOpen()) {
    FailWith(next, errno);
  }
  WriteWhole(file.Value(), ToText(journal) + "\n", next);
  Synchronise(file.Value(), next);
  Rename(next, journalPath_);
}

void BatchOutput::Finish()
{
  if (fsync(file_.Value()) != 0) {
    FailWith(partialPath_, errno);
  }
  Rename(partialPath_, path_);
  std::remove(journalPath_.c_str());
}

}  // namespace tool
