/**
 * What a test changes in the process, put back at the end of a scope: a temporary directory of its own, the working
 * directory, environment variables. The last two belong to the whole process: use them in tests without other threads.
 *
 *     TempDir dir;
 *     dir.Write(".morvex", "PafDir=/data\n");
 *     const WorkingDirectory inside(dir.Path());
 *     const EnvValue home("HOME", dir.Path("home"));
 */
#ifndef QXPAF_TESTS_SUPPORT_TEMP_DIR_H
#define QXPAF_TESTS_SUPPORT_TEMP_DIR_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>

namespace test_support {

/** A new, empty directory, removed with all that is in it by the destructor. */
class TempDir
{
 public:
  TempDir() : path_((std::filesystem::temp_directory_path() / "qxpaf-test-XXXXXX").string())
  {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary directory at " + path_);
  }

  ~TempDir()
  {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  /** The directory's absolute path, without a separator at the end. */
  const std::string& Path() const { return path_; }

  /** The path of a file or directory in it. */
  std::string Path(const std::string& name) const { return path_ + "/" + name; }

  /** Writes a file anew, byte for byte, creating the directories it lies in. @return its path */
  std::string Write(const std::string& name, const std::string& content) const
  {
    const std::filesystem::path path = Path(name);
    std::filesystem::create_directories(path.parent_path());
    // Some file systems wait for the disk when a file is cut and written again; a new file never waits.
    std::filesystem::remove(path);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content << std::flush;
    if (!file) throw std::runtime_error("cannot write " + path.string());
    return path.string();
  }

  /** The bytes of a file; throws when it cannot be read. */
  std::string Read(const std::string& name) const
  {
    std::ifstream file(Path(name), std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + Path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /** Creates a directory with its parents. @return its path */
  std::string MakeDirectory(const std::string& name) const
  {
    std::filesystem::create_directories(Path(name));
    return Path(name);
  }

 private:
  std::string path_;
};

/** Makes a directory the working directory; the destructor goes back to the one before. */
class WorkingDirectory
{
 public:
  explicit WorkingDirectory(const std::string& path) : before_(std::filesystem::current_path())
  {
    std::filesystem::current_path(path);
  }

  ~WorkingDirectory()
  {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
  }

  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  std::filesystem::path before_;
};

/** Gives an environment variable a value, or takes it away; the destructor restores what was there. */
class EnvValue
{
 public:
  /** @param value nothing: the variable is unset */
  EnvValue(const std::string& name, const std::optional<std::string>& value) : name_(name)
  {
    if (const char* before = std::getenv(name.c_str()); before != nullptr) before_ = before;
    Set(value);
  }

  ~EnvValue() { Set(before_); }

  EnvValue(const EnvValue&) = delete;
  EnvValue& operator=(const EnvValue&) = delete;

 private:
  void Set(const std::optional<std::string>& value)
  {
    if (value) {
      setenv(name_.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace test_support

#endif
