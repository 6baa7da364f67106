/** A socket server of the test's own, with the plug-ins that the test itself has. */
#ifndef QXPAF_TESTS_BLACKBOX_TWIN_SERVER_PROCESS_H
#define QXPAF_TESTS_BLACKBOX_TWIN_SERVER_PROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace blackbox {

class ServerProcess
{
 public:
  /** Starts the server on loopback and waits until it serves. Throws when it does not. @param port 0: any free one */
  ServerProcess(const std::string& configFile, const std::vector<std::string>& options = {}, int port = 0);
  /** Ends it as Stop does; that it ends badly is a failure of the test. */
  ~ServerProcess();
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  int Port() const { return port_; }

  /** SIGTERM. @return its exit status; 0 when it was stopped before */
  int Stop();

 private:
  pid_t pid_ = -1;
  int port_ = 0;
};

}  // namespace blackbox

#endif
