#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "qxpaf/paf.h"
#include "qxpaf/socket.h"

const int ERR_SOCKET_SOCKET = PAF_ERR_SOCKET_CREATE;
const int ERR_SOCKET_SETSOCKOPT = PAF_ERR_SOCKET_OPTION;
const int ERR_SOCKET_BIND = PAF_ERR_SOCKET_BIND;
const int ERR_SOCKET_LISTEN = PAF_ERR_SOCKET_LISTEN;
const int ERR_SOCKET_CONNECT = PAF_ERR_SOCKET_CONNECT;
const int ERR_SOCKET_GETHOSTNAME = PAF_ERR_SOCKET_HOST;
const int ERR_SOCKET_GETSERVBYNAME = PAF_ERR_SOCKET_SERVICE;
const int ERR_SOCKET_TIMEDOUT = PAF_ERR_SOCKET_TIMEOUT;
const int ERR_SOCKET_SELECT = PAF_ERR_SOCKET_SELECT;

namespace {

/** Builds a message in an error buffer out of pieces, each of which goes in whole or not at all. */
class Message
{
 public:
  explicit Message(char* buffer) : end_(buffer) {}

  bool HasRoomFor(std::size_t length) const { return length < room_; }

  bool Append(std::string_view piece)
  {
    if (!HasRoomFor(piece.size())) return false;
    std::memcpy(end_, piece.data(), piece.size());
    end_ += piece.size();
    *end_ = '\0';
    room_ -= piece.size();
    return true;
  }

 private:
  char* end_;
  std::size_t room_ = SOCKET_ERROR_SIZE;
};

void AppendExtras(Message& message, const char* extra1, const char* extra2)
{
  if (extra1 == nullptr || !message.Append(extra1) || extra2 == nullptr) return;
  if (message.HasRoomFor(std::strlen(extra2) + 1)) {
    message.Append(" ");
    message.Append(extra2);
  }
}

void AppendSystemError(Message& message, int error)
{
  char number[32];
  std::snprintf(number, sizeof number, ": (%d) ", error);
  char scratch[128];
  if (message.Append(number)) message.Append(strerror_r(error, scratch, sizeof scratch));
}

}  // namespace

int FormatSocketError(char* errbuf, int code, const char* message, const char* extra1, const char* extra2)
{
  const int savedErrno = errno;
  if (errbuf == nullptr) return code;
  Message text(errbuf);
  if (text.Append(message)) {
    AppendExtras(text, extra1, extra2);
    if (savedErrno != 0) AppendSystemError(text, savedErrno);
  }
  errno = savedErrno;
  return code;
}
