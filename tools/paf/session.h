/** One open instance of an address database, with std::string results. */
#ifndef PAF_TOOL_SESSION_H
#define PAF_TOOL_SESSION_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "reply.h"

namespace tool {

/** The database name as the library takes it: a directory written relative to the current one is made absolute. */
std::string LibraryName(const std::string& database);

/** Two codes, and the addresses that have both. */
struct Correspondence
{
  std::string from;
  std::string to;
  unsigned int addresses = 0;
  unsigned int total = 0;  ///< addresses with the first code and any of the second kind
  double percent = 0;      ///< addresses of total
};

/**
 * Holds one instance; not to be used by two threads at once.
 *
 * A text that the library would cut on its way to a socket server is refused with PAF_ERR_SERVER_INPUT_TOO_LONG.
 */
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

  /** The text is the corrected address; `verdict` is given on success and on failure, NUL where there is none. */
  Reply Validate(const std::string& address, bool strict, char& verdict);

  /** The text is the address in lines separated by TAB; the option is one of the plug-in's. */
  Reply Format(const std::string& address, long option);

  /** How the last search went, one of PafAuFindStatus; -1 when nobody can say. */
  int FindStatus();

  /** The text is the value of a property. */
  Reply Property(const std::string& name);
  Reply SetProperty(const std::string& name, const std::string& value);

  /** The text is the first record that matches a record query; NextRecord gives the others. */
  Reply FirstRecord(const std::string& query);
  Reply NextRecord();

  /** The addresses in a polygon, those nearest to the two numbers of `middle` first: begin, then next until the record
      is empty. */
  Reply BeginPolygon(const std::string& polygon, const std::string& middle);
  Reply NextInPolygon();

  /** The addresses that fit words in any order, best first: begin, then next until the record is empty. */
  Reply BeginSearch(const std::string& words);
  Reply NextFound();

  /** Three numbers: addresses, streets, localities. `metres` is that of a "Radius", otherwise empty. */
  Reply Statistics(const std::string& kind, const std::string& what, const std::string& metres);

  /** The pairs of codes that addresses have in common, of at least so many percent: begin, then next until both codes
      are empty. An empty `code` is every code. */
  Reply BeginConcordance(const std::string& from, const std::string& code, const std::string& to, int percent);
  Reply NextCorrespondence(Correspondence& correspondence);

  /** What may be meant by a text that is still being typed: the first hint, then next until the text is empty. */
  Reply FirstHint(const std::string& text, const std::string& place, int most);
  Reply NextHint();

 private:
  std::optional<Reply> RefusalOf(std::string_view function, std::initializer_list<std::string_view> arguments) const;

  int id_ = 0;
  bool isRemote_ = false;
};

}  // namespace tool

#endif
