#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>

#include <cstring>
#include <string>

#include "qxpaf/socket.h"
#include "unit/remote/socket_support.h"

namespace {

using test_support::ErrorBuffer;
using testing::StartsWith;

struct Made
{
  int status = 0;
  sockaddr_in address;
  std::string message;

  unsigned int Port() const { return ntohs(address.sin_port); }
  std::string Host() const { return inet_ntoa(address.sin_addr); }
};

Made Make(const char* host, const char* service, const char* protocol = "tcp")
{
  Made made;
  std::memset(&made.address, 0xA5, sizeof made.address);
  ErrorBuffer error;
  errno = 0;
  made.status = set_address(host, service, &made.address, protocol, error.Data());
  if (!error.Untouched()) made.message = error.Text();
  EXPECT_TRUE(error.Intact());
  return made;
}

struct Service
{
  const char* text;
  unsigned int port;
};

class SetAddressNumbers : public testing::TestWithParam<Service>
{
};

TEST_P(SetAddressNumbers, AreReadAsInC)
{
  const Made made = Make("127.0.0.1", GetParam().text);
  EXPECT_EQ(0, made.status);
  EXPECT_EQ(GetParam().port, made.Port());
  EXPECT_EQ("127.0.0.1", made.Host());
  EXPECT_EQ("", made.message);
}

INSTANTIATE_TEST_SUITE_P(Rows, SetAddressNumbers,
                         testing::Values(Service{"0x1F90", 8080}, Service{"0X1f90", 8080}, Service{"010", 8},
                                         Service{"07070", 3640}, Service{"", 0}, Service{"0", 0}, Service{"7070", 7070},
                                         Service{"65535", 65535}, Service{"65536", 0}, Service{"70000", 4464},
                                         Service{"-1", 65535}, Service{"+80", 80}, Service{" \t80", 80},
                                         Service{"99999999999999999999999", 65535},
                                         Service{"-99999999999999999999999", 0}));

class SetAddressUnknownServices : public testing::TestWithParam<const char*>
{
};

TEST_P(SetAddressUnknownServices, AreNamedInTheMessage)
{
  const Made made = Make("127.0.0.1", GetParam());
  EXPECT_EQ(4206, made.status);
  EXPECT_THAT(made.message, StartsWith(std::string("unknown socket service: ") + GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Rows, SetAddressUnknownServices,
                         testing::Values("nosuch", "80 ", "80x", "0x", "08", " ", "1e3", "-", "0b1"));

TEST(SetAddress, MessageOfAnUnknownServiceDoesNotRepeatAnOldError)
{
  sockaddr_in address;
  ErrorBuffer error;
  errno = ECONNREFUSED;
  EXPECT_EQ(4206, set_address(nullptr, "nosuch", &address, "tcp", error.Data()));
  EXPECT_THAT(error.Text(), StartsWith("unknown socket service: nosuch"));
  EXPECT_THAT(error.Text(), testing::Not(testing::HasSubstr("Connection refused")));
}

TEST(SetAddress, FindsServicesByNameAndProtocol)
{
  if (getservbyname("echo", "tcp") == nullptr) GTEST_SKIP() << "this machine has no list of services";
  const Made made = Make("127.0.0.1", "echo");
  EXPECT_EQ(0, made.status);
  EXPECT_EQ(7u, made.Port());
  EXPECT_EQ(4206, Make("127.0.0.1", "echo", "no-such-protocol").status);
}

TEST(SetAddress, ListensEverywhereWithoutAHost)
{
  const Made made = Make(nullptr, "7070");
  EXPECT_EQ(0, made.status);
  EXPECT_EQ(INADDR_ANY, ntohl(made.address.sin_addr.s_addr));
  EXPECT_EQ(7070u, made.Port());
}

TEST(SetAddress, FillsTheWholeAddress)
{
  const Made made = Make("1.2.3.4", "258");
  sockaddr_in expected;
  std::memset(&expected, 0, sizeof expected);
  expected.sin_family = AF_INET;
  expected.sin_port = htons(258);
  expected.sin_addr.s_addr = htonl(0x01020304);
  EXPECT_EQ(0, std::memcmp(&expected, &made.address, sizeof expected));
}

struct Host
{
  const char* text;
  const char* address;
};

TEST(SetAddress, TakesEveryWayToWriteANumericAddress)
{
  for (const Host& host :
       {Host{"127.0.0.1", "127.0.0.1"}, Host{"127.1", "127.0.0.1"}, Host{"0x7f.1", "127.0.0.1"},
        Host{"2130706433", "127.0.0.1"}, Host{"255.255.255.255", "255.255.255.255"}, Host{"0.0.0.0", "0.0.0.0"}}) {
    const Made made = Make(host.text, "1");
    EXPECT_EQ(0, made.status) << host.text;
    EXPECT_EQ(host.address, made.Host()) << host.text;
  }
}

TEST(SetAddress, ResolvesNames)
{
  const Made made = Make("localhost", "1");
  EXPECT_EQ(0, made.status);
  EXPECT_EQ(127u, ntohl(made.address.sin_addr.s_addr) >> 24);
}

// Names that no name server is asked for, because they cannot be any host's.
class SetAddressUnknownHosts : public testing::TestWithParam<std::string>
{
};

TEST_P(SetAddressUnknownHosts, ComeBeforeTheService)
{
  const Made made = Make(GetParam().c_str(), "no such service");
  EXPECT_EQ(4205, made.status);
  // A name of 300 characters does not fit into the message.
  const std::string name = GetParam().size() < 200 ? GetParam() : "";
  EXPECT_THAT(made.message, StartsWith("unknown socket host: " + name));
  EXPECT_THAT(made.message, testing::Not(testing::HasSubstr("xxxxxxxx")));
}

INSTANTIATE_TEST_SUITE_P(Rows, SetAddressUnknownHosts,
                         testing::Values("", "bad..name", "no host", std::string(300, 'x')));

TEST(SetAddress, NeedsNoErrorBuffer)
{
  sockaddr_in address;
  EXPECT_EQ(0, set_address(nullptr, "1", &address, "tcp", nullptr));
  EXPECT_EQ(4206, set_address(nullptr, "nosuch", &address, "tcp", nullptr));
  EXPECT_EQ(4205, set_address("bad..name", "1", &address, "tcp", nullptr));
}

}  // namespace
