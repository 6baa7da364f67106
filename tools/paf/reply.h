/** What a call of the library answered. */
#ifndef PAF_TOOL_REPLY_H
#define PAF_TOOL_REPLY_H

#include <string>

namespace tool {

/** The text when status is 0, otherwise the library's or the plug-in's words for the status. */
struct Reply
{
  int status = 0;
  std::string text;
  std::string description;
};

/** True when the status says something about the question ("no such street"), not about the set-up: plug-ins number
    their own statuses below 600, the library from 600 on. */
bool IsAboutTheQuestion(int status);

/** True when the status says that a socket server could not be reached, or did not answer. */
bool IsAboutTheConnection(int status);

/** "description (status 12)", or "status 12" where there is no description. */
std::string StatusText(const Reply& reply);

}  // namespace tool

#endif
