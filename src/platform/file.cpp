#include "qxpaf/platform/file.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstring>
#include <memory>

#include "platform/bounded.h"
#include "qxpaf/text/encoding.h"

namespace {

/** The longest path that the functions with a working buffer take, in characters. */
constexpr std::size_t kLongestPath = 255;

struct CloseDirectory
{
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

bool HasMatchingEntry(DIR* directory, const char* pattern)
{
  while (const dirent* entry = readdir(directory)) {
    if (fnmatch(pattern, entry->d_name, 0) == 0) return true;
  }
  return false;
}

/**
 * Cuts the path back, part by part, to the longest directory that exists, or to nothing (an absolute path below a root
 * with none of it). A relative path of which nothing exists is cut to its first part, and that is created.
 * @return false when the first part could not be created
 */
bool CutToExistingDirectory(char* path)
{
  while (*path != '\0' && !DirectoryExists_(path)) {
    char* separator = std::strrchr(path, '/');
    if (separator == nullptr) return mkdir_(path) == 0;
    *separator = '\0';
  }
  return true;
}

/** Puts back the separators that were cut out of the path's `length` characters, one by one, creating a directory each.
 */
bool CreateRemainingDirectories(char* path, std::size_t length)
{
  for (std::size_t end = std::strlen(path); end < length; end = std::strlen(path)) {
    path[end] = '/';
    if (mkdir_(path) != 0) return false;
  }
  return true;
}

}  // namespace

QX_File::QX_File() : file_(nullptr) {}

QX_File::~QX_File()
{
  Close();
}

void QX_File::Close()
{
  if (file_ == nullptr) return;
  std::fclose(file_);
  file_ = nullptr;
}

bool QX_File::Open(const char* name, const char* mode, bool reportError)
{
  Close();
  file_ = std::fopen(name, mode);
  if (file_ == nullptr && reportError) std::perror(name);
  return IsOpen();
}

bool QX_File::Open(const wchar_t* name, const wchar_t* mode, bool reportError)
{
  return Open(WideToUtf8(name).c_str(), WideToUtf8(mode).c_str(), reportError);
}

bool QX_File::Open(const wchar_t* name, const char* mode, bool reportError)
{
  return Open(WideToUtf8(name).c_str(), mode, reportError);
}

bool QX_File::operator!() const
{
  return !IsOpen();
}

bool QX_File::IsOpen() const
{
  return file_ != nullptr;
}

FILE* QX_File::f() const
{
  return file_;
}

int QX_File_Remove(const char* path)
{
  return std::remove(path);
}

int QX_File_Remove(const wchar_t* path)
{
  return std::remove(WideToUtf8(path).c_str());
}

int QX_File_Rename(const char* from, const char* to)
{
  return std::rename(from, to);
}

int QX_File_Rename(const wchar_t* from, const wchar_t* to)
{
  return std::rename(WideToUtf8(from).c_str(), WideToUtf8(to).c_str());
}

bool FileExists_(const char* path)
{
  return path != nullptr && QX_File().Open(path, "r", false);
}

bool FileExists_(const wchar_t* path)
{
  return path != nullptr && FileExists_(WideToUtf8(path).c_str());
}

bool DirectoryExists_(const char* path)
{
  return path != nullptr && Directory(opendir(path)) != nullptr;
}

bool FilePatternExists_(const char* pattern)
{
  const char* separator = pattern != nullptr ? std::strrchr(pattern, '/') : nullptr;
  if (separator == nullptr) return false;
  const char* namePattern = separator + 1;
  const auto directoryLength = static_cast<std::size_t>(namePattern - pattern);
  if (directoryLength > kLongestPath || std::strlen(namePattern) > kLongestPath) return false;
  char directoryPart[kLongestPath + 1];
  qxpaf::CopyCut(directoryPart, sizeof directoryPart, {pattern, directoryLength});
  const Directory directory(opendir(directoryPart));
  return directory != nullptr && HasMatchingEntry(directory.get(), namePattern);
}

int mkdir_(const char* path)
{
  return mkdir(path, 0775);
}

bool CreateDir(const char* path)
{
  if (path == nullptr || *path == '\0') return false;
  std::size_t length = std::strlen(path);
  char buffer[kLongestPath + 1];
  if (!qxpaf::CopyWhole(buffer, sizeof buffer, {path, length})) return false;
  if (buffer[length - 1] == '/') buffer[--length] = '\0';
  return CutToExistingDirectory(buffer) && CreateRemainingDirectories(buffer, length);
}

long long ftell_(FILE* f)
{
  return ftello(f);
}

int fseek_(FILE* f, long long offset, int whence)
{
  return fseeko(f, offset, whence);
}
