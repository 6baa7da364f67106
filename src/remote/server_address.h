/** Host and port of the socket server, for the library's own use: copies, taken under the lock of the setters. */
#ifndef QXPAF_SRC_REMOTE_SERVER_ADDRESS_H
#define QXPAF_SRC_REMOTE_SERVER_ADDRESS_H

#include <string>

namespace qxpaf {

struct ServerAddress
{
  char host[256] = {};
  char port[32] = {};
};

/** Host and port as they are at one moment. Allocates nothing. */
ServerAddress CurrentServerAddress();

std::string TcpHost();
std::string TcpPort();

}  // namespace qxpaf

#endif
