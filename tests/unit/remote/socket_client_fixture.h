/** Tests of clients of their own against a scripted server. */
#ifndef QXPAF_TESTS_UNIT_REMOTE_SOCKET_CLIENT_FIXTURE_H
#define QXPAF_TESTS_UNIT_REMOTE_SOCKET_CLIENT_FIXTURE_H

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <memory>
#include <string>

#include "fakes/scripted_server.h"
#include "qxpaf/remote.h"
#include "remote/socket_client.h"
#include "support/guarded_buffer.h"

namespace socket_client_tests {

using fake::Reply;
using qxpaf::SocketClient;
using test_support::GuardedBuffer;

struct Answer
{
  int status;
  std::string reply;
  std::string errorText;
  std::string request;  // as the call left it
};

/** One exchange with exact buffers. */
inline Answer Call(SocketClient& client, const std::string& request, int replySize = 1024)
{
  GuardedBuffer line(request.size() + 1);
  request.copy(line.Data(), request.size());
  line.Data()[request.size()] = '\0';
  GuardedBuffer reply(static_cast<std::size_t>(replySize));
  GuardedBuffer errorText(qxpaf::kSocketErrorTextSize);
  const int status = client.CallSocSvr(line.Data(), reply.Data(), replySize, errorText.Data());
  EXPECT_TRUE(line.Intact() && reply.Intact() && errorText.Intact());
  return {status, status == 0 ? reply.Data() : "", errorText.Data(), line.Data()};
}

inline sockaddr_in Loopback(int port)
{
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

/** A port on which nobody listens, for as long as the test lives: bound, and no more. */
class SilentPort
{
 public:
  SilentPort() : socket_(socket(AF_INET, SOCK_STREAM, 0))
  {
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    EXPECT_EQ(0, bind(socket_, reinterpret_cast<const sockaddr*>(&address), size));
    EXPECT_EQ(0, getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size));
    port_ = ntohs(address.sin_port);
  }
  ~SilentPort() { close(socket_); }
  SilentPort(const SilentPort&) = delete;
  SilentPort& operator=(const SilentPort&) = delete;
  int Number() const { return port_; }

 private:
  int socket_;
  int port_ = 0;
};

/** The descriptor in this process that is connected to a port; -1 when there is none. */
inline int DescriptorTo(const std::string& port)
{
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 && peer.sin_family == AF_INET &&
        std::to_string(ntohs(peer.sin_port)) == port) {
      return descriptor;
    }
  }
  return -1;
}

class Client : public testing::Test
{
 protected:
  Client()
  {
    SetTcpHost("127.0.0.1");
    SetTcpPort(server.Port().c_str());
    server.AnswerOthers([](const std::string& request) { return Reply::Line("to " + request); });
  }

  ~Client() override
  {
    // A client's destruction leaves its connection open.
    if (client) client->BreakConnection();
    SetTcpHost("");
    SetTcpPort("");
  }

  void ExpectWorks() { EXPECT_EQ("to question", Call(*client, "question").reply); }

  fake::ScriptedServer server;
  std::unique_ptr<SocketClient> client = std::make_unique<SocketClient>();
};

}  // namespace socket_client_tests

#endif
