#include "terminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "exit_code.h"
#include "interruption.h"

namespace tool {
namespace {

constexpr int kEscapeWait = 50;  // milliseconds; the rest of a key's sequence comes at once

constexpr int kEnd = -1;
constexpr int kInterrupted = -2;

constexpr char Control(char letter)
{
  return static_cast<char>(letter & 0x1F);
}

constexpr char kEscape = 0x1B;
constexpr char kDelete = 0x7F;

bool IsReadable(int milliseconds)
{
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, milliseconds) > 0;
}

winsize WindowSize()
{
  winsize size = {};
  ioctl(STDERR_FILENO, TIOCGWINSZ, &size);
  return size;
}

/** A handler that does nothing makes the signal end a read. */
void NoticeResize()
{
  struct sigaction notice = {};
  notice.sa_handler = [](int) {};
  sigaction(SIGWINCH, &notice, nullptr);
}

/** The bytes of a UTF-8 character that follow its first. */
std::size_t FollowingBytes(char first)
{
  const auto byte = static_cast<unsigned char>(first);
  return byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
}

Key::Kind KindOf(char c)
{
  switch (c) {
    case '\r':
    case '\n':
      return Key::Kind::Enter;
    case '\t':
      return Key::Kind::Tab;
    case kDelete:
    case Control('H'):
      return Key::Kind::Backspace;
    case Control('W'):
      return Key::Kind::EraseWord;
    case Control('U'):
      return Key::Kind::EraseAll;
    case Control('P'):
      return Key::Kind::Up;
    case Control('N'):
      return Key::Kind::Down;
    case Control('C'):
    case Control('D'):
      return Key::Kind::Leave;
    default:
      return Key::Kind::Other;
  }
}

}  // namespace

bool Terminal::IsPresent()
{
  return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

Terminal::Terminal()
{
  CatchInterruption();
  NoticeResize();
  if (tcgetattr(STDIN_FILENO, &before_) != 0) {
    throw Failure(std::string("the terminal cannot be set up: ") + std::strerror(errno));
  }
  termios raw = before_;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
  raw.c_iflag &= ~static_cast<tcflag_t>(IXON | ICRNL);
  raw.c_cc[VMIN] = 1;
  raw.c_cc[VTIME] = 0;
  tcsetattr(STDIN_FILENO, TCSADRAIN, &raw);
}

Terminal::~Terminal()
{
  tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
}

int Terminal::ReadByte() const
{
  unsigned char byte = 0;
  const ssize_t got = read(STDIN_FILENO, &byte, 1);
  if (got == 1) {
    return byte;
  }
  return got < 0 && errno == EINTR && !IsInterrupted() ? kInterrupted : kEnd;
}

bool Terminal::HasKey() const
{
  return IsReadable(0);
}

Key Terminal::ReadKey()
{
  const int byte = IsInterrupted() ? kEnd : ReadByte();
  if (byte == kEnd) {
    return {Key::Kind::Leave, ""};
  }
  if (byte == kInterrupted) {
    return {Key::Kind::Resize, ""};
  }
  const char c = static_cast<char>(byte);
  if (c == kEscape) {
    return ReadEscape();
  }
  const bool isControl = byte < ' ' || c == kDelete;
  return isControl ? Key{KindOf(c), ""} : ReadText(c);
}

/** Escape alone, or the sequence of an arrow key; others are read to their end and passed over. */
Key Terminal::ReadEscape()
{
  if (!IsReadable(kEscapeWait)) {
    return {Key::Kind::Leave, ""};
  }
  const int introducer = ReadByte();
  if (introducer != '[' && introducer != 'O') {
    return {};
  }
  int last = 0;
  do {
    last = IsReadable(kEscapeWait) ? ReadByte() : kEnd;
  } while (last >= '0' && last <= '?');
  return {last == 'A' ? Key::Kind::Up : last == 'B' ? Key::Kind::Down : Key::Kind::Other, ""};
}

Key Terminal::ReadText(char first)
{
  Key key{Key::Kind::Text, std::string(1, first)};
  for (std::size_t rest = FollowingBytes(first); rest > 0; --rest) {
    const int byte = IsReadable(kEscapeWait) ? ReadByte() : kEnd;
    if (byte < 0x80) {
      return {};
    }
    key.text += static_cast<char>(byte);
  }
  return key;
}

std::size_t Terminal::Columns() const
{
  const std::size_t columns = WindowSize().ws_col;
  return columns == 0 ? 80 : columns;
}

std::size_t Terminal::Rows() const
{
  const std::size_t rows = WindowSize().ws_row;
  return rows == 0 ? 24 : rows;
}

}  // namespace tool
