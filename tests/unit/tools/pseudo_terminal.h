/** A terminal without a screen, at which a test types and looks. */
#ifndef QXPAF_TESTS_UNIT_TOOLS_PSEUDO_TERMINAL_H
#define QXPAF_TESTS_UNIT_TOOLS_PSEUDO_TERMINAL_H

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tool_test {

/** Puts another open file in the place of one of the program's, until the destructor. */
class Replaced
{
 public:
  Replaced(int number, int by) : number_(number), before_(fcntl(number, F_DUPFD_CLOEXEC, 10)) { dup2(by, number); }
  ~Replaced()
  {
    std::fflush(stderr);
    dup2(before_, number_);
    close(before_);
  }
  Replaced(const Replaced&) = delete;
  Replaced& operator=(const Replaced&) = delete;

 private:
  int number_;
  int before_;
};

/** Both ends of a terminal of 24 rows and 80 columns. */
class TerminalPair
{
 public:
  TerminalPair()
  {
    const winsize size = {24, 80, 0, 0};
    if (openpty(&user_, &program_, nullptr, nullptr, &size) != 0) throw std::runtime_error("no terminal");
  }
  ~TerminalPair()
  {
    HangUp();
    close(program_);
  }
  TerminalPair(const TerminalPair&) = delete;
  TerminalPair& operator=(const TerminalPair&) = delete;

  int User() const { return user_; }
  int Program() const { return program_; }

  /** Takes the user's end away. */
  void HangUp()
  {
    if (user_ >= 0) close(user_);
    user_ = -1;
  }

 private:
  int user_ = -1;
  int program_ = -1;
};

/** Standard input and standard error are a terminal, from construction to destruction. */
class PseudoTerminal
{
 public:
  void Type(std::string_view keys) const
  {
    if (write(pair_.User(), keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
      throw std::runtime_error("cannot type");
    }
  }

  /** What has been written to the terminal since the last call; waits for `wanted`, ten seconds at most. */
  std::string Shown(std::string_view wanted = {}) const
  {
    std::string shown;
    while (IsReadable(shown.find(wanted) == std::string::npos ? 10'000 : 0)) {
      std::array<char, 4096> bytes{};
      const ssize_t got = read(pair_.User(), bytes.data(), bytes.size());
      if (got <= 0) break;
      shown.append(bytes.data(), static_cast<std::size_t>(got));
    }
    return shown;
  }

  void Resize(unsigned short rows, unsigned short columns) const
  {
    const winsize size = {rows, columns, 0, 0};
    ioctl(pair_.User(), TIOCSWINSZ, &size);
  }

  void HangUp() { pair_.HangUp(); }

  termios Settings() const
  {
    termios settings{};
    tcgetattr(pair_.Program(), &settings);
    return settings;
  }

 private:
  bool IsReadable(int milliseconds) const
  {
    pollfd output = {pair_.User(), POLLIN, 0};
    return poll(&output, 1, milliseconds) > 0;
  }

  TerminalPair pair_;
  Replaced input_{STDIN_FILENO, pair_.Program()};
  Replaced error_{STDERR_FILENO, pair_.Program()};
};

}  // namespace tool_test

#endif
