/** What one connection may use, and the serving of its requests; no input or output. */
#ifndef PAFD_SESSION_H
#define PAFD_SESSION_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>

#include "arguments.h"
#include "reply.h"
#include "request_table.h"

namespace pafd {

struct SessionLimits
{
  std::size_t maxInstances = 1000;
  /** Clients may name files and libraries and switch the library to remote mode. */
  bool isTrusted = false;
};

/** How a request went; `request` is null for a name that cannot be requested. A Value has the status 0. */
struct Outcome
{
  const Request* request = nullptr;
  int status = 0;
};

/**
 * Serves the requests of one connection. All calls, the destructor included, must come from one thread, which serves
 * no other connection: error texts and the default instance belong to the thread.
 */
class Session
{
 public:
  explicit Session(const SessionLimits& limits) : limits_(limits) {}
  /** Closes every instance that is still open. */
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /** Serves a request line. `reply` receives the reply line with its line feed. */
  Outcome Serve(std::string_view line, std::string& reply);

 private:
  int Refusal(const Request& request) const;
  void Call(const Request& request, bool isJoined);
  void KeepAccount(const Request& request);
  void RestoreRecord();
  void NeedDefaultInstance();

  SessionLimits limits_;
  std::unordered_set<int> instances_;
  bool hasDefault_ = false;
  Arguments arguments_;
  Answer answer_;
};

}  // namespace pafd

#endif
