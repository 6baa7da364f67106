#include "arf/build/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "arf/build/build_error.h"

namespace arf {
namespace {

/** Distinguishes the temporary files of builds that run at the same time in one process. */
std::string TemporarySuffix()
{
  static std::atomic<unsigned> next{0};
  return std::string(".").append(std::to_string(getpid())).append("-").append(std::to_string(next++)).append(".tmp");
}

}  // namespace

std::string SystemError(const std::string& path, int error)
{
  return path + ": " + std::system_category().message(error);
}

OutputFile::OutputFile(const std::string& directory, const std::string& name)
    : finalPath_(directory + "/" + name),
      temporaryPath_(directory + "/." + name + TemporarySuffix()),
      file_(open(temporaryPath_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666))
{
  if (!file_.IsOpen()) throw BuildError(SystemError(temporaryPath_, errno));
}

OutputFile::~OutputFile()
{
  if (!published_) unlink(temporaryPath_.c_str());
}

void OutputFile::WriteAt(std::uint64_t offset, const void* data, std::size_t size)
{
  const auto* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t done = pwrite(file_.Value(), bytes, size, static_cast<off_t>(offset));
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) throw BuildError(SystemError(temporaryPath_, errno));
    bytes += done;
    offset += static_cast<std::uint64_t>(done);
    size -= static_cast<std::size_t>(done);
  }
}

void OutputFile::Sync()
{
  if (fsync(file_.Value()) != 0) throw BuildError(SystemError(temporaryPath_, errno));
}

void OutputFile::Publish()
{
  if (rename(temporaryPath_.c_str(), finalPath_.c_str()) != 0) throw BuildError(SystemError(finalPath_, errno));
  published_ = true;
}

OutputDirectory::OutputDirectory(const std::string& path) : path_(path)
{
  made_ = mkdir(path.c_str(), 0777) == 0;
  if (!made_ && errno != EEXIST) throw BuildError(SystemError(path, errno));
}

OutputDirectory::~OutputDirectory()
{
  if (made_) rmdir(path_.c_str());
}

void OutputDirectory::Sync()
{
  const Descriptor directory(open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.IsOpen() || fsync(directory.Value()) != 0) throw BuildError(SystemError(path_, errno));
}

}  // namespace arf
