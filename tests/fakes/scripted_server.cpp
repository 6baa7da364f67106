#include "fakes/scripted_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

namespace fake {
namespace {

// Long enough for the pieces of a reply to be received one by one, which a busy machine may still prevent.
constexpr std::chrono::milliseconds kBetweenPieces{2};

[[noreturn]] void Fail(const char* what)
{
  perror(what);
  std::abort();
}

int ListenOnLoopback()
{
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (listener < 0 || bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
      listen(listener, 16) != 0) {
    Fail("scripted server");
  }
  return listener;
}

/** A close now resets the connection instead of ending it in order. */
void CloseByReset(int connection)
{
  const linger atOnce{1, 0};
  setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

}  // namespace

Reply Reply::After(std::chrono::milliseconds delay) &&
{
  delay_ = delay;
  return std::move(*this);
}

Reply Reply::ThenClose() &&
{
  end_ = End::Close;
  return std::move(*this);
}

ScriptedServer::ScriptedServer() : listener_(ListenOnLoopback()), stop_(eventfd(0, 0)), thread_([this] { Run(); }) {}

ScriptedServer::~ScriptedServer()
{
  const std::uint64_t one = 1;
  if (write(stop_, &one, sizeof one) != sizeof one) Fail("scripted server");
  thread_.join();
  close(listener_);
  close(stop_);
}

std::string ScriptedServer::Port() const
{
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) Fail("scripted server");
  return std::to_string(ntohs(address.sin_port));
}

void ScriptedServer::Expect(std::string request, Reply reply)
{
  const std::lock_guard lock(mutex_);
  script_.push_back({std::move(request), std::move(reply)});
}

void ScriptedServer::AnswerOthers(std::function<Reply(const std::string&)> answer)
{
  const std::lock_guard lock(mutex_);
  others_ = std::move(answer);
}

std::vector<std::string> ScriptedServer::Requests() const
{
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::string ScriptedServer::LastRequest() const
{
  const std::lock_guard lock(mutex_);
  return requests_.empty() ? "" : requests_.back().substr(0, requests_.back().find('\n'));
}

int ScriptedServer::Connections() const
{
  const std::lock_guard lock(mutex_);
  return connections_;
}

std::size_t ScriptedServer::StepsLeft() const
{
  const std::lock_guard lock(mutex_);
  return script_.size();
}

std::vector<std::string> ScriptedServer::Faults() const
{
  const std::lock_guard lock(mutex_);
  return faults_;
}

void ScriptedServer::Run()
{
  while (WaitReadable(listener_)) {
    const int connection = accept(listener_, nullptr, nullptr);
    if (connection < 0) Fail("scripted server");
    {
      const std::lock_guard lock(mutex_);
      ++connections_;
    }
    const int on = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    Serve(connection);
    close(connection);
  }
}

void ScriptedServer::Serve(int connection)
{
  std::string request;
  while (ReadRequest(connection, request)) {
    if (!Answer(connection, NextReply(request))) return;
  }
}

bool ScriptedServer::WaitReadable(int descriptor) const
{
  pollfd waiting[2] = {{stop_, POLLIN, 0}, {descriptor, POLLIN, 0}};
  if (poll(waiting, 2, -1) < 0) Fail("scripted server");
  return waiting[0].revents == 0;
}

bool ScriptedServer::ReadRequest(int connection, std::string& request)
{
  request.clear();
  char chunk[4096];
  while (request.find('\n') == std::string::npos) {
    if (!WaitReadable(connection)) return false;
    const ssize_t got = recv(connection, chunk, sizeof chunk, 0);
    if (got <= 0) {
      const std::lock_guard lock(mutex_);
      if (!request.empty()) faults_.push_back("cut short: " + request);
      return false;
    }
    request.append(chunk, static_cast<std::size_t>(got));
  }
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  if (request.back() != '\n' || request.find('\n') + 1 != request.size()) faults_.push_back("too early: " + request);
  return true;
}

Reply ScriptedServer::NextReply(const std::string& request)
{
  const std::string line = request.substr(0, request.find('\n'));
  std::unique_lock lock(mutex_);
  if (!script_.empty() && script_.front().request == line) {
    Reply reply = std::move(script_.front().reply);
    script_.pop_front();
    return reply;
  }
  const auto others = others_;
  lock.unlock();
  return others ? others(line) : Reply::Line(kUnexpected);
}

bool ScriptedServer::Answer(int connection, const Reply& reply)
{
  std::this_thread::sleep_for(reply.delay_);
  for (std::size_t i = 0; i < reply.pieces_.size(); ++i) {
    if (i > 0) std::this_thread::sleep_for(kBetweenPieces);
    const std::string& piece = reply.pieces_[i];
    // A client that is gone is the test's intention.
    if (send(connection, piece.data(), piece.size(), MSG_NOSIGNAL) < 0) return false;
  }
  if (reply.end_ == Reply::End::Reset) CloseByReset(connection);
  if (reply.end_ == Reply::End::Stall) WaitReadable(connection);
  return reply.end_ == Reply::End::GoOn;
}

}  // namespace fake
