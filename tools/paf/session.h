/** One open instance of an address database, with std::string results. */
#ifndef PAF_TOOL_SESSION_H
#define PAF_TOOL_SESSION_H

#include <string>

namespace tool {

/** What a call answered: the text when status is 0, otherwise the library's or the plug-in's words for the status. */
struct Reply
{
  int status = 0;
  std::string text;
  std::string description;
};

/** True when the status says something about the question ("no such street"), not about the set-up: plug-ins number
    their own statuses below 600, the library from 600 on. */
bool IsAboutTheQuestion(int status);

/** "description (status 12)", or "status 12" where there is no description. */
std::string StatusText(const Reply& reply);

/** The database name as the library takes it: a directory written relative to the current one is made absolute. */
std::string LibraryName(const std::string& database);

/** Holds one instance; not to be used by two threads at once. */
class Session
{
 public:
  Session() = default;
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /** Opens an instance, once. The text of the reply is empty. */
  Reply Open(const std::string& database);

  /** The text is the delivery point identifier. */
  Reply Lookup(const std::string& address, bool strict);

  /** The text is the record of the delivery point. */
  Reply Address(long dpid);

  /** The text is the corrected last line. */
  Reply FixLastLine(const std::string& line);

  /** The text is the first record that matches a record query; NextRecord gives the others. */
  Reply FirstRecord(const std::string& query);
  Reply NextRecord();

 private:
  int id_ = 0;
};

}  // namespace tool

#endif
