// A reader of the Unicode Character Database of its own, for the tests that compare the library with the data.
#ifndef QXPAF_TESTS_UNIT_TEXT_UNICODE_DATA_H
#define QXPAF_TESTS_UNIT_TEXT_UNICODE_DATA_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace unicode_test {

/** Where the data are: QXPAF_UCD_DIR, else a directory beside the repository; it need not exist. */
inline std::filesystem::path DataDirectory()
{
  const char* given = std::getenv("QXPAF_UCD_DIR");
  if (given != nullptr && *given != '\0') return given;
  return std::filesystem::path(QXPAF_SOURCE_DIR) / ".." / "shared" / "ucd";
}

inline std::vector<std::string> Split(const std::string& text, char separator)
{
  std::vector<std::string> fields;
  std::istringstream in(text);
  for (std::string field; std::getline(in, field, separator);) {
    const std::size_t first = field.find_first_not_of(' ');
    const std::size_t last = field.find_last_not_of(' ');
    fields.push_back(first == std::string::npos ? "" : field.substr(first, last - first + 1));
  }
  return fields;
}

/** The fields of every line that has some, remarks left out. */
inline std::vector<std::vector<std::string>> ReadFile(const std::string& name)
{
  std::ifstream in(DataDirectory() / name);
  if (!in) throw std::runtime_error("cannot read " + (DataDirectory() / name).string());
  std::vector<std::vector<std::string>> lines;
  for (std::string line; std::getline(in, line);) {
    const std::vector<std::string> fields = Split(line.substr(0, line.find('#')), ';');
    if (fields.size() > 1) lines.push_back(fields);
  }
  return lines;
}

inline long Hexadecimal(const std::string& digits)
{
  return std::stol(digits, nullptr, 16);
}

inline std::vector<long> Sequence(const std::string& text)
{
  std::vector<long> codePoints;
  for (const std::string& digits : Split(text, ' ')) codePoints.push_back(Hexadecimal(digits));
  return codePoints;
}

struct Character
{
  std::string category;
  std::string decomposition;
  std::string upper;
  std::string lower;
};

/** UnicodeData.txt; the lines of a range stand for all between them. */
inline std::map<long, Character> ReadCharacters(const std::string& version)
{
  std::map<long, Character> characters;
  long first = -1;
  for (std::vector<std::string> fields : ReadFile(version + "/UnicodeData.txt")) {
    fields.resize(15);
    const long c = Hexadecimal(fields[0]);
    const bool isFirst = fields[1].find(", First>") != std::string::npos;
    const bool isLast = fields[1].find(", Last>") != std::string::npos;
    for (long i = isLast ? first : c; i <= c; ++i) characters[i] = {fields[2], fields[5], fields[12], fields[13]};
    if (isFirst) first = c;
  }
  return characters;
}

/** The code points with a property, from PropList.txt or DerivedCoreProperties.txt. */
inline std::set<long> ReadProperty(const std::string& file, const std::string& property)
{
  std::set<long> codePoints;
  for (const std::vector<std::string>& fields : ReadFile(file)) {
    if (fields[1] != property) continue;
    const std::size_t dots = fields[0].find("..");
    const long first = Hexadecimal(fields[0]);
    const long last = dots == std::string::npos ? first : Hexadecimal(fields[0].substr(dots + 2));
    for (long c = first; c <= last; ++c) codePoints.insert(c);
  }
  return codePoints;
}

/** CaseFolding.txt, statuses C and F. */
inline std::map<long, std::vector<long>> ReadFolds(const std::string& version)
{
  std::map<long, std::vector<long>> folds;
  for (const std::vector<std::string>& fields : ReadFile(version + "/CaseFolding.txt"))
    if (fields[1] == "C" || fields[1] == "F") folds[Hexadecimal(fields[0])] = Sequence(fields[2]);
  return folds;
}

}  // namespace unicode_test

#endif
