/** Where the configuration file is and how its lines are read. The search order is known here and nowhere else. */
#ifndef QXPAF_SRC_CONFIG_CONFIG_FILE_H
#define QXPAF_SRC_CONFIG_CONFIG_FILE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/self_closing_file.h"

namespace qxpaf {

/** No limit on HOME but that of the system's paths. */
inline constexpr std::size_t kAnyHome = SIZE_MAX;

/** The longest HOME with which the registry-style accessors look for a file there: its length plus 8 is below 255. */
inline constexpr std::size_t kLongestRegistryHome = 246;

/** Characters that MorvexConfig and the registry-style accessors take as one line at most, its line feed included. */
inline constexpr std::size_t kLongestConfigPiece = 1023;
inline constexpr std::size_t kLongestRegistryPiece = 255;

/**
 * Opens the configuration file for reading: ".morvex" in the working directory, else the file that the environment
 * variable MORVEX_CONFIG_FILE names, else ".morvex" in the directory HOME, else "/usr/etc/.morvex". The first that
 * opens is taken, readable or not: a directory opens too and fails when it is read.
 *
 * @param longestHome  a longer HOME is passed over
 * @return false when none opens
 */
bool OpenConfigFile(SelfClosingFILE& file, std::size_t longestHome) noexcept;

/** The path of the file that OpenConfigFile would open with any HOME, or empty when there is none. */
std::string FindConfigFile();

/**
 * Reads a file in lines: each is a piece of at most `longest` characters, without its line feed, a carriage return
 * directly before that, and leading white space. A longer line of the file comes as several. A piece ends at a zero
 * byte.
 */
template <std::size_t longest>
class ConfigLineReader
{
 public:
  explicit ConfigLineReader(FILE* file) : file_(file) {}

  /** The next line, possibly empty, valid until the next call. @return false at the end of the file or on an error */
  bool Next(std::string_view& line);

 private:
  FILE* file_;
  char piece_[longest + 1];
};

/** A line as it is matched: see ConfigLineReader. */
std::string_view TrimConfigLine(const char* piece);

template <std::size_t longest>
bool ConfigLineReader<longest>::Next(std::string_view& line)
{
  if (std::fgets(piece_, static_cast<int>(sizeof piece_), file_) == nullptr) return false;
  line = TrimConfigLine(piece_);
  return true;
}

using RegistryLineReader = ConfigLineReader<kLongestRegistryPiece>;

}  // namespace qxpaf

#endif
