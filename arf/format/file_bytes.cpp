#include "arf/format/file_bytes.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "arf/format/descriptor.h"

namespace arf {
namespace {

void Fail(OpenResult& result, int error)
{
  result.failure = error == ENOMEM ? OpenFailure::OutOfMemory : OpenFailure::CannotOpen;
  result.message = std::system_category().message(error);
}

int OpenForReading(const std::string& path)
{
  // Without O_NONBLOCK, opening a pipe of that name would wait for its writer before it can be refused.
  return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

}  // namespace

void Refuse(OpenResult& result, OpenFailure failure, const std::string& path, const std::string& what)
{
  result.failure = failure;
  result.message = path + ": " + what;
}

FileBytes::~FileBytes()
{
  if (data_) munmap(data_, size_);
}

FileBytes::FileBytes(FileBytes&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0))
{
}

FileBytes& FileBytes::operator=(FileBytes&& other) noexcept
{
  std::swap(data_, other.data_);
  std::swap(size_, other.size_);
  return *this;
}

FileBytes FileBytes::Acquire(const std::string& path, OpenMode mode, OpenResult& result)
{
  const Descriptor file(OpenForReading(path));
  struct stat status;
  if (!file.IsOpen() || fstat(file.Value(), &status) != 0) {
    Fail(result, errno);
  } else if (!S_ISREG(status.st_mode)) {
    result.failure = OpenFailure::CannotOpen;
    result.message = S_ISDIR(status.st_mode) ? "is a directory, not a file" : "is not a regular file";
  } else if (status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    FileBytes bytes =
        mode == OpenMode::Memory ? Load(file.Value(), size, result) : Map(file.Value(), size, mode, result);
    if (result.failure == OpenFailure::None) return bytes;
  }
  if (result.failure != OpenFailure::None) Refuse(result, result.failure, path, result.message);
  return {};
}

FileBytes FileBytes::Map(int descriptor, std::size_t size, OpenMode mode, OpenResult& result)
{
  void* data = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
  if (data == MAP_FAILED) {
    Fail(result, errno);
    return {};
  }
  // Verification reads the file once from end to end, whatever happens to the pages afterwards.
  madvise(data, size, mode == OpenMode::Mapped ? MADV_WILLNEED : MADV_SEQUENTIAL);
  return {data, size};
}

FileBytes FileBytes::Load(int descriptor, std::size_t size, OpenResult& result)
{
  void* data = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (data == MAP_FAILED) {
    Fail(result, errno);
    return {};
  }
  FileBytes bytes(data, size);
  madvise(data, size, MADV_HUGEPAGE);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = read(descriptor, static_cast<char*>(data) + done, size - done);
    if (got > 0) {
      done += static_cast<std::size_t>(got);
    } else if (got == 0) {
      result = {OpenFailure::Truncated, "became shorter while it was being read"};
      return {};
    } else if (errno != EINTR) {
      Fail(result, errno);
      return {};
    }
  }
  mprotect(data, size, PROT_READ);
  return bytes;
}

void FileBytes::SettleInto(OpenMode mode)
{
  if (!data_ || mode != OpenMode::Disk) return;
  madvise(data_, size_, MADV_RANDOM);
  madvise(data_, size_, MADV_DONTNEED);  // drops this process's pages only; the mapping is read-only and shared
}

}  // namespace arf
