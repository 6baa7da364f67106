/**
 * Files that appear under their name only when they are complete.
 */
#ifndef QXPAF_ARF_BUILD_OUTPUT_FILE_H
#define QXPAF_ARF_BUILD_OUTPUT_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "arf/format/descriptor.h"

namespace arf {

/** A file being written under a temporary name beside its final one. Removed again unless it is published. */
class OutputFile
{
 public:
  /** Creates "<directory>/.<name>.<process>-<number>.tmp"; throws BuildError. */
  OutputFile(const std::string& directory, const std::string& name);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /** All of these throw BuildError when the system refuses. */
  void WriteAt(std::uint64_t offset, const void* data, std::size_t size);
  void Sync();     ///< brings the contents to disk
  void Publish();  ///< gives the file its name, replacing a file that has it

 private:
  std::string finalPath_;
  std::string temporaryPath_;
  Descriptor file_;
  bool published_ = false;
};

/** A directory to write into; made when it is missing, and then removed again unless it is kept. */
class OutputDirectory
{
 public:
  explicit OutputDirectory(const std::string& path);
  ~OutputDirectory();
  OutputDirectory(const OutputDirectory&) = delete;
  OutputDirectory& operator=(const OutputDirectory&) = delete;

  const std::string& Path() const { return path_; }
  void Sync();  ///< brings renames to disk
  void Keep() { made_ = false; }

 private:
  std::string path_;
  bool made_ = false;
};

}  // namespace arf

#endif
