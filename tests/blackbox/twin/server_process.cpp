#include "blackbox/twin/server_process.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace blackbox {
namespace {

[[noreturn]] void Become(std::vector<std::string> words, int output)
{
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  close(output);
  execv(arguments[0], arguments.data());
  std::perror(arguments[0]);
  _exit(127);
}

/** The port in the line "clients 127.0.0.1:41873" with which the server says that it serves; 0 when there is none. */
int AnnouncedPort(int pipe)
{
  std::string line;
  for (char c = '\0'; read(pipe, &c, 1) == 1 && c != '\n';) line += c;
  const std::size_t colon = line.rfind(':');
  return line.rfind("clients ", 0) == 0 && colon != std::string::npos ? std::atoi(line.c_str() + colon + 1) : 0;
}

bool CanConnect(int port)
{
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int client = socket(AF_INET, SOCK_STREAM, 0);
  const bool connected = connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(client);
  return connected;
}

/** A port that was asked for is not announced: there the server serves when it takes a connection. */
int ServedPort(int port, int pipe)
{
  using namespace std::chrono_literals;
  if (port == 0) return AnnouncedPort(pipe);
  for (const auto until = std::chrono::steady_clock::now() + 30s; std::chrono::steady_clock::now() < until;) {
    if (CanConnect(port)) return port;
    std::this_thread::sleep_for(10ms);
  }
  return 0;
}

}  // namespace

ServerProcess::ServerProcess(const std::string& configFile, const std::vector<std::string>& options, int port)
{
  std::vector<std::string> words = {PAFD_PROGRAM, "--quiet", "--config", configFile};
  words.insert(words.end(), {"--listen", "127.0.0.1:" + std::to_string(port)});
  words.insert(words.end(), options.begin(), options.end());
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("pipe");
  pid_ = fork();
  if (pid_ == 0) {
    close(ends[0]);
    Become(words, ends[1]);
  }
  close(ends[1]);
  port_ = ServedPort(port, ends[0]);
  close(ends[0]);
  if (port_ == 0) throw std::runtime_error("the server does not serve");
}

ServerProcess::~ServerProcess()
{
  EXPECT_EQ(Stop(), 0) << "the server did not end in order";
}

int ServerProcess::Stop()
{
  if (pid_ == -1) return 0;
  kill(pid_, SIGTERM);
  int status = -1;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace blackbox
