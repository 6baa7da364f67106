#include "batch_output.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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

void RefuseUnusableTarget(const std::string& path)
{
  std::error_code ignored;
  const auto status = std::filesystem::status(path, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw Failure(path + ": is no regular file");
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
    : path_(std::move(path)), partialPath_(path_ + ".partial"), journalPath_(path_ + ".journal"), run_(std::move(run))
{
  RefuseUnusableTarget(path_);
  OpenPartial();
  const auto journal = ReadJournal();
  const bool hasRest = journal && size_ > 0;
  if (hasRest && leftover == Leftover::Refuse) {
    close(file_);
    throw Failure(partialPath_ +
                  " holds what an interrupted run has done; --resume goes on with it, --restart begins anew");
  }
  if (hasRest && leftover == Leftover::Resume) {
    TakeUp(*journal);
  } else {
    size_ = 0;
  }
  if (ftruncate(file_, static_cast<off_t>(size_)) != 0 || lseek(file_, 0, SEEK_END) < 0) {
    FailWith(partialPath_, errno);
  }
}

BatchOutput::~BatchOutput()
{
  if (file_ >= 0) {
    close(file_);
  }
}

void BatchOutput::OpenPartial()
{
  file_ = open(partialPath_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  struct stat status = {};
  if (file_ < 0 || fstat(file_, &status) != 0) {
    FailWith(partialPath_, errno);
  }
  if (flock(file_, LOCK_EX | LOCK_NB) != 0) {
    throw Failure(partialPath_ + ": another run is writing it");
  }
  size_ = static_cast<std::uint64_t>(status.st_size);
}

/** Nothing when there is no journal, or none that can be read. */
std::optional<Json> BatchOutput::ReadJournal() const
{
  std::ifstream file(journalPath_);
  const Json journal = Json::parse(file, nullptr, false);
  if (!journal.is_object() || !journal.contains("run") || !journal.contains("outputSize")) {
    return std::nullopt;
  }
  return journal;
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
  while (!text.empty()) {
    const ssize_t written = write(file_, text.data(), text.size());
    if (written < 0 && errno != EINTR) {
      FailWith(partialPath_, errno);
    }
    const auto count = static_cast<std::size_t>(written < 0 ? 0 : written);
    text.remove_prefix(count);
    size_ += count;
  }
}

void BatchOutput::Keep(const Progress& progress)
{
  if (fdatasync(file_) != 0) {
    FailWith(partialPath_, errno);
  }
  const Json journal = {{"run", run_},
                        {"inputOffset", progress.inputOffset},
                        {"inputLine", progress.inputLine},
                        {"outputSize", size_},
                        {"tally", progress.tally.ToJson()}};
  const std::string next = journalPath_ + ".new";
  std::ofstream file(next, std::ios::trunc);
  file << ToText(journal) << '\n';
  file.close();
  if (!file) {
    FailWith(next, errno);
  }
  Rename(next, journalPath_);
}

void BatchOutput::Finish()
{
  if (fsync(file_) != 0) {
    FailWith(partialPath_, errno);
  }
  Rename(partialPath_, path_);
  std::remove(journalPath_.c_str());
}

}  // namespace tool
