/**
 * Writes database files with one defect each:
 *
 *     make_broken_files <good database directory> <output directory>
 *
 * makes a directory for each defect, with the file address.arf in it, and prints what opening it says.
 */
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "faults/broken_files.h"

namespace {

arf_test::Bytes ReadFile(const std::filesystem::path& path)
{
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool WriteFile(const std::filesystem::path& path, const arf_test::Bytes& bytes)
{
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
  return static_cast<bool>(file.flush());
}

}  // namespace

int main(int count, char** arguments)
{
  if (count != 3) {
    std::fprintf(stderr, "usage: %s <good database directory> <output directory>\n", arguments[0]);
    return 2;
  }
  const arf_test::Bytes good = ReadFile(std::filesystem::path(arguments[1]) / arf::kDatabaseFileName);
  arf::OpenResult result;
  if (!arf::Database::OpenBytes(good, arguments[1], result)) {
    std::fprintf(stderr, "%s\n", result.message.c_str());
    return 1;
  }
  for (const arf_test::BrokenFile& file : arf_test::BreakFile(good)) {
    const std::filesystem::path directory = std::filesystem::path(arguments[2]) / file.name;
    if (!WriteFile(directory / arf::kDatabaseFileName, file.bytes)) {
      std::fprintf(stderr, "%s cannot be written\n", directory.c_str());
      return 1;
    }
    arf::Database::Open(directory, arf::OpenMode::Disk, result);
    std::printf("%-40s %s\n", file.name.c_str(), result.message.empty() ? "opens" : result.message.c_str());
  }
  return 0;
}
