/** Reads test cases from files that people without a compiler can edit. */
#ifndef QXPAF_TESTS_UNIT_ARF_MATCH_TSV_H
#define QXPAF_TESTS_UNIT_ARF_MATCH_TSV_H

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace arf_test {

struct TsvRow
{
  std::string place;  ///< "lookup_cases.tsv:12"
  std::vector<std::string> fields;
};

/** Replaces \n, \r, \t and \xNN. */
inline std::string Unescape(const std::string& text)
{
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
    if (next == 'x') {
      out += static_cast<char>(std::strtoul(text.substr(i + 2, 2).c_str(), nullptr, 16));
      i += 3;
    } else if (next == 'n' || next == 'r' || next == 't') {
      out += next == 'n' ? '\n' : next == 'r' ? '\r' : '\t';
      ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

/** The rows of a file with at least some fields each; empty lines and those that start with "#" are remarks. */
inline std::vector<TsvRow> ReadTsv(const std::string& path, std::size_t fields)
{
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  const std::string name = path.substr(path.rfind('/') + 1);
  std::vector<TsvRow> rows;
  std::string line;
  for (std::size_t number = 1; std::getline(file, line); ++number) {
    if (line.empty() || line.front() == '#') continue;
    TsvRow row{name + ":" + std::to_string(number), {}};
    std::istringstream columns(line);
    for (std::string field; std::getline(columns, field, '\t');) row.fields.push_back(Unescape(field));
    if (row.fields.size() < fields) throw std::runtime_error(row.place + ": too few columns");
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace arf_test

#endif
