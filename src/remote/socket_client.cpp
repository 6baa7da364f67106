#include "remote/socket_client.h"

#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/immortal.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"
#include "qxpaf/socket.h"
#include "remote/server_address.h"
#include "remote/sigpipe_shield.h"

namespace qxpaf {

/**
 * Breaks the connection when an exchange fails, and also when its thread is cancelled in the middle: the reply that is
 * still to come would otherwise be taken for that to the next request.
 */
class SocketClient::BreakUnlessComplete : public QXNonCopyable
{
 public:
  explicit BreakUnlessComplete(SocketClient& client) : client_(client) {}
  ~BreakUnlessComplete()
  {
    if (!complete_) client_.BreakConnectionLocked();
  }
  void Complete() { complete_ = true; }

 private:
  SocketClient& client_;
  bool complete_ = false;
};

SocketClient::SocketClient(unsigned long responseTimeout) : responseTimeout_(responseTimeout) {}

int SocketClient::CallSocSvr(char* request, char* reply, int replySize, char* errorText)
{
  *errorText = '\0';
  if (broken_) return PAF_ERR_SOCKET_BROKEN;
  const QXScopedLock lock(mutex_, true);
  // Broken while this thread waited for its turn: its instance is lost too.
  if (broken_) return PAF_ERR_SOCKET_BROKEN;
  if (const int status = ConnectLocked(errorText); status != 0) return status;
  return ExchangeLocked(request, reply, replySize, errorText);
}

void SocketClient::BreakConnection()
{
  const QXScopedLock lock(mutex_, true);
  BreakConnectionLocked();
}

int SocketClient::ConnectLocked(char* errorText)
{
  if (!socketsInitialised_) {
    if (const int status = InitSockets(); status != 0) return status;
    socketsInitialised_ = true;
  }
  if (connected_) return PAF_OK;

  CloseLocked();  // what an attempt left that failed or was cancelled
  const ServerAddress address = CurrentServerAddress();
  errno = 0;  // an error of long ago is no part of the failure's words
  const int status = tcp_client(&socket_, *address.host != '\0' ? address.host : nullptr, address.port, errorText);
  connected_ = status == 0;
  mayBeClosed_ = false;
  return status;
}

int SocketClient::ExchangeLocked(char* request, char* reply, int replySize, char* errorText)
{
  BreakUnlessComplete connection(*this);
  if (const int status = SendLocked(request, errorText); status != 0) return status;
  if (const int status = ReceiveLocked(reply, replySize, errorText); status != 0) return status;
  connection.Complete();
  return PAF_OK;
}

int SocketClient::SendLocked(char* request, char* errorText) const
{
  char* const end = request + std::strlen(request);
  std::replace(request, end, '\n', '\t');
  *end = '\n';
  ssize_t sent = -1;
  if (ServerHasClosedLocked()) {
    errno = EPIPE;
  } else {
    const SigpipeShield shield;
    sent = send(socket_, request, static_cast<std::size_t>(end - request) + 1, 0);
  }
  *end = '\0';
  if (sent >= 0) return PAF_OK;
  return FormatSocketError(errorText, PAF_ERR_SOCKET_SEND, "socket send error", nullptr, nullptr);
}

bool SocketClient::ServerHasClosedLocked() const
{
  char next = '\0';
  return mayBeClosed_ && recv(socket_, &next, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

int SocketClient::ReceiveLocked(char* reply, int replySize, char* errorText)
{
  errno = 0;  // a time-out leaves it alone
  const int length = readcrlf(socket_, reply, replySize, errorText, '\n', responseTimeout_);
  mayBeClosed_ = length == 0;
  if (length >= 0) return PAF_OK;
  return errno == EMSGSIZE ? PAF_ERR_SOCKET_RESPONSE_TOO_LONG : PAF_ERR_SOCKET_READLINE;
}

void SocketClient::BreakConnectionLocked()
{
  CloseLocked();
  broken_ = true;
  connected_ = false;
}

void SocketClient::CloseLocked()
{
  if (socket_ < 0) return;
  // Destructors come here, and a cancellation must not leave them.
  int before = 0;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before);
  close(socket_);
  pthread_setcancelstate(before, nullptr);
  socket_ = -1;
}

SocketClient& TheSocketClient()
{
  return Immortal<SocketClient>();
}

}  // namespace qxpaf

bool IsSocketBroken()
{
  return qxpaf::TheSocketClient().IsBroken();
}

void AcknowlegeSocketIsBroken()
{
  qxpaf::TheSocketClient().AllowReConnect();
}
