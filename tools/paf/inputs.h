/** The texts that a command works on: its arguments, or the lines of standard input. */
#ifndef PAF_TOOL_INPUTS_H
#define PAF_TOOL_INPUTS_H

#include <functional>
#include <string>
#include <vector>

namespace tool {

/**
 * Calls `visit` for every argument; without arguments for every line of standard input that is not blank, without its
 * line end. Says on standard error what it waits for when standard input is a terminal.
 */
void ForEachInput(const std::vector<std::string>& arguments, const std::function<void(const std::string&)>& visit);

/** Arguments as one text, with a space between them. */
std::string JoinWords(const std::vector<std::string>& words);

}  // namespace tool

#endif
