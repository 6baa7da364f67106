#include "inputs.h"

#include <unistd.h>

#include <iostream>

#include "exit_code.h"

namespace tool {
namespace {

bool IsBlank(const std::string& line)
{
  return line.find_first_not_of(" \t\r\v\f") == std::string::npos;
}

/** A program that talks to this one through pipes gets its answer before the next question is waited for. */
bool NextLine(std::istream& in, std::string& line)
{
  if (in.rdbuf()->in_avail() <= 0) {
    std::cout.flush();
  }
  return static_cast<bool>(std::getline(in, line));
}

void ForEachLine(std::istream& in, const std::function<void(const std::string&)>& visit)
{
  std::string line;
  while (NextLine(in, line)) {
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    if (!IsBlank(line)) {
      visit(line);
    }
  }
  if (in.bad()) {
    throw Failure("standard input cannot be read");
  }
}

}  // namespace

void ForEachInput(const std::vector<std::string>& arguments, const std::function<void(const std::string&)>& visit)
{
  for (const std::string& argument : arguments) {
    visit(argument);
  }
  if (!arguments.empty()) {
    return;
  }
  if (isatty(STDIN_FILENO) != 0) {
    std::cerr << "paf: reading from the terminal, one input a line; Ctrl-D ends\n";
  }
  ForEachLine(std::cin, visit);
}

std::string JoinWords(const std::vector<std::string>& words)
{
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

}  // namespace tool
