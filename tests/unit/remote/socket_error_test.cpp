#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "qxpaf/paf.h"
#include "qxpaf/socket.h"
#include "unit/remote/socket_support.h"

extern "C" int UseSocketsFromC(void);

namespace {

using test_support::ErrorBuffer;

struct Code
{
  const int& constant;
  int value;
  const char* text;
};

TEST(SocketErrorCodes, HaveTheirValuesAndTexts)
{
  const Code kCodes[] = {
      {ERR_SOCKET_SOCKET, 4200, "Socket call"},
      {ERR_SOCKET_SETSOCKOPT, 4201, "set socket option"},
      {ERR_SOCKET_BIND, 4202, "socket bind"},
      {ERR_SOCKET_LISTEN, 4203, "socket listen"},
      {ERR_SOCKET_CONNECT, 4204, "socket connect"},
      {ERR_SOCKET_GETHOSTNAME, 4205, "unknown socket host"},
      {ERR_SOCKET_GETSERVBYNAME, 4206, "unknown socket service"},
      {ERR_SOCKET_TIMEDOUT, 4207, "socket timed out"},
      {ERR_SOCKET_SELECT, 4208, "socket select"},
  };
  for (const Code& code : kCodes) {
    EXPECT_EQ(code.value, code.constant);
    char text[64] = "";
    EXPECT_EQ(0, pafGetErrorDescription(text, code.constant, sizeof text));
    EXPECT_STREQ(code.text, text);
  }
}

/** The pieces of a message, by length; -1 is null. What is expected is a letter a piece. */
struct Row
{
  int message;
  int extra1;
  int extra2;
  int error;
  /** m message, 1 and 2 the extra texts (2 with its space), n the number, t the system's text; - is untouched */
  const char* expected;
};

class FormatSocketErrorRows : public testing::TestWithParam<Row>
{
};

std::string Piece(int length, char fill)
{
  return std::string(length > 0 ? static_cast<std::size_t>(length) : 0, fill);
}

std::string Expected(const Row& row)
{
  std::string text;
  for (const char piece : std::string(row.expected)) {
    if (piece == 'm') text += Piece(row.message, 'm');
    if (piece == '1') text += Piece(row.extra1, 'a');
    if (piece == '2') text += " " + Piece(row.extra2, 'b');
    if (piece == 'n') text += ": (" + std::to_string(row.error) + ") ";
    if (piece == 't') text += std::strerror(row.error);
  }
  return text;
}

TEST_P(FormatSocketErrorRows, TakesThePiecesThatFit)
{
  const Row& row = GetParam();
  const std::string message = Piece(row.message, 'm');
  const std::string extra1 = Piece(row.extra1, 'a');
  const std::string extra2 = Piece(row.extra2, 'b');
  ErrorBuffer buffer;
  errno = row.error;
  const int code = FormatSocketError(buffer.Data(), 4711, message.c_str(), row.extra1 < 0 ? nullptr : extra1.c_str(),
                                     row.extra2 < 0 ? nullptr : extra2.c_str());
  EXPECT_EQ(row.error, errno);
  EXPECT_EQ(4711, code);
  if (row.expected == std::string("-")) {
    EXPECT_TRUE(buffer.Untouched());
  } else {
    EXPECT_EQ(Expected(row), buffer.Text());
  }
  EXPECT_TRUE(buffer.Intact());
}

INSTANTIATE_TEST_SUITE_P(Message, FormatSocketErrorRows,
                         testing::Values(Row{0, -1, -1, 0, "m"}, Row{1, -1, -1, 0, "m"}, Row{254, -1, -1, 0, "m"},
                                         Row{255, -1, -1, 0, "m"}, Row{256, -1, -1, 0, "-"}, Row{257, -1, -1, 0, "-"},
                                         Row{5000, 1, 1, 5, "-"}));

INSTANTIATE_TEST_SUITE_P(Extras, FormatSocketErrorRows,
                         testing::Values(Row{10, 3, -1, 0, "m1"}, Row{10, 3, 4, 0, "m12"}, Row{10, -1, 4, 0, "m"},
                                         // What fits by one character, and what does not.
                                         Row{200, 55, -1, 0, "m1"}, Row{200, 56, -1, 0, "m"}, Row{255, 0, -1, 0, "m1"},
                                         Row{200, 20, 34, 0, "m12"}, Row{200, 20, 35, 0, "m1"},
                                         Row{254, 0, 0, 0, "m12"}, Row{255, 0, 0, 0, "m1"},
                                         // The second text never comes without the first.
                                         Row{200, 56, 1, 0, "m"}, Row{200, 5000, 1, 0, "m"},
                                         Row{200, 1, 5000, 0, "m1"}));

// EAGAIN, whose number takes seven characters and whose text 32.
INSTANTIATE_TEST_SUITE_P(Errno, FormatSocketErrorRows,
                         testing::Values(Row{0, -1, -1, EAGAIN, "mnt"}, Row{10, 3, 4, EAGAIN, "m12nt"},
                                         Row{216, -1, -1, EAGAIN, "mnt"}, Row{217, -1, -1, EAGAIN, "mn"},
                                         Row{248, -1, -1, EAGAIN, "mn"}, Row{249, -1, -1, EAGAIN, "m"},
                                         Row{255, -1, -1, EAGAIN, "m"}, Row{200, 5, 10, EAGAIN, "m12nt"},
                                         Row{200, 5, 11, EAGAIN, "m12n"},
                                         // The system's part comes also where an extra text did not fit.
                                         Row{200, 56, -1, EAGAIN, "mnt"}, Row{200, 10, 45, EAGAIN, "m1nt"},
                                         // Numbers without a meaning.
                                         Row{10, -1, -1, 99999, "mnt"}, Row{10, -1, -1, -1, "mnt"},
                                         Row{10, -1, -1, -2147483647 - 1, "mnt"}));

TEST(FormatSocketError, GivesTheUsualMessage)
{
  ErrorBuffer buffer;
  errno = ECONNREFUSED;
  EXPECT_EQ(4204, FormatSocketError(buffer.Data(), 4204, "socket connect error to ", "10.0.0.5", "7070"));
  EXPECT_EQ("socket connect error to 10.0.0.5 7070: (111) Connection refused", buffer.Text());
}

TEST(FormatSocketError, NeedsNoBuffer)
{
  errno = EPIPE;
  EXPECT_EQ(-1, FormatSocketError(nullptr, -1, "message", "a", "b"));
  EXPECT_EQ(EPIPE, errno);
}

TEST(FormatSocketError, ReturnsAnyCode)
{
  for (const int code : {0, 1, -1, 4208, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(code, FormatSocketError(nullptr, code, "", nullptr, nullptr));
  }
}

TEST(SocketHeader, ServesProgramsInC)
{
  EXPECT_EQ(0, UseSocketsFromC());
}

TEST(SocketLibrary, IsAlwaysReady)
{
  EXPECT_EQ(1, SocketsInitialised());
  EXPECT_EQ(0, InitSockets());
  EXPECT_EQ(0, InitSockets());
  EXPECT_EQ(1, SocketsInitialised());
  FiniSockets();
  EXPECT_EQ(1, SocketsInitialised());
}

}  // namespace
