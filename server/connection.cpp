#include "connection.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>

#include "log.h"
#include "qxpaf/paf.h"

namespace pafd {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kFirstSystemStatus = 600;        // below are the plug-ins' answers to questions that have none
constexpr std::uint64_t kMostErrorLines = 10;  // of one connection; the rest is counted

/** Sending the last reply may take this long before the connection is reset behind it. */
constexpr int kFlushSteps = 100;
constexpr auto kFlushStep = 5ms;

void Set(int socket, int level, int option, int value)
{
  ::setsockopt(socket, level, option, &value, sizeof value);
}

void SetTimeout(int socket, int option, std::chrono::seconds limit)
{
  const timeval value = {limit.count(), 0};
  ::setsockopt(socket, SOL_SOCKET, option, &value, sizeof value);
}

bool IsTimeout(int error)
{
  return error == EAGAIN || error == EWOULDBLOCK;
}

bool IsUnsent(int socket)
{
  int bytes = 0;
  return ::ioctl(socket, SIOCOUTQ, &bytes) == 0 && bytes > 0;
}

}  // namespace

Connection::Connection(FileDescriptor socket, const Endpoint& peer, std::uint64_t number,
                       const ConnectionLimits& limits, Metrics& metrics)
    : socket_(std::move(socket)),
      peer_(Describe(peer)),
      number_(number),
      limits_(limits),
      metrics_(metrics),
      reader_(limits.maxLine),
      started_(Clock::now())
{
  Set(socket_.Get(), IPPROTO_TCP, TCP_NODELAY, 1);
  // Finds out about clients whose machine is gone without a word.
  Set(socket_.Get(), SOL_SOCKET, SO_KEEPALIVE, 1);
  Set(socket_.Get(), IPPROTO_TCP, TCP_KEEPIDLE, 60);
  Set(socket_.Get(), IPPROTO_TCP, TCP_KEEPINTVL, 15);
  Set(socket_.Get(), IPPROTO_TCP, TCP_KEEPCNT, 4);
  SetTimeout(socket_.Get(), SO_SNDTIMEO, limits.requestTimeout);
}

void Connection::Run()
{
  End end = End::Broken;
  try {
    Session session(limits_.session);
    end = Converse(session);
  } catch (const std::exception& error) {
    spdlog::error("connection {} from {}: {}", number_, peer_, error.what());
  }
  if (end != End::ByPeer && end != End::Broken) {
    Reset();
  }
  LogEnd(end);
}

void Connection::Stop()
{
  isStopping_ = true;
  ::shutdown(socket_.Get(), SHUT_RD);
}

void Connection::Abandon()
{
  ::shutdown(socket_.Get(), SHUT_RDWR);
}

Connection::End Connection::Converse(Session& session)
{
  End end = End::Stopped;
  while (!isStopping_) {
    std::string_view line;
    const LineReader::Found found = reader_.Next(line);
    const bool goesOn = found == LineReader::Found::More ? Receive(end) : Answer(session, found, line, end);
    if (!goesOn) {
      return isStopping_ ? End::Stopped : end;
    }
  }
  return End::Stopped;
}

/** Waits for more of a line, or for the next one. */
bool Connection::Receive(End& end)
{
  const std::chrono::seconds limit = ReceiveLimit();
  if (isInsideLine_ && limit <= 0s) {
    end = End::SlowRequest;
    return false;
  }
  LimitReceive(limit);
  const std::span<char> space = reader_.Space();
  const ssize_t count = ::recv(socket_.Get(), space.data(), space.size(), 0);
  if (count > 0) {
    reader_.Received(static_cast<std::size_t>(count));
    return true;
  }
  if (count < 0 && errno == EINTR) {
    return true;
  }
  if (count < 0 && IsTimeout(errno)) {
    end = isInsideLine_ ? End::SlowRequest : End::Idle;
    return false;
  }
  end = count == 0 ? End::ByPeer : End::Broken;
  return false;
}

/** How long the next piece may take: a line must be whole in time however its pieces drip in. */
std::chrono::seconds Connection::ReceiveLimit()
{
  const bool wasInsideLine = std::exchange(isInsideLine_, reader_.IsInsideLine());
  if (!isInsideLine_) {
    return limits_.idleTimeout;
  }
  const Clock::time_point now = Clock::now();
  if (!wasInsideLine) {
    lineBegan_ = now;
  }
  return std::chrono::ceil<std::chrono::seconds>(limits_.requestTimeout - (now - lineBegan_));
}

void Connection::LimitReceive(std::chrono::seconds limit)
{
  if (limit != receiveLimit_) {
    SetTimeout(socket_.Get(), SO_RCVTIMEO, limit);
    receiveLimit_ = limit;
  }
}

bool Connection::Answer(Session& session, LineReader::Found found, std::string_view line, End& end)
{
  isInsideLine_ = false;
  const Clock::time_point began = Clock::now();
  Outcome outcome;
  if (found == LineReader::Found::Line) {
    outcome = session.Serve(line, reply_);
  } else {
    outcome.status = PAF_ERR_SERVER_INPUT_TOO_LONG;
    WriteStatus(outcome.status, reply_);
  }
  metrics_.Served(outcome, Clock::now() - began);
  NoteRequest(outcome, line, reply_);
  return Send(reply_, end);
}

bool Connection::Send(std::string_view reply, End& end)
{
  while (!reply.empty()) {
    const ssize_t count = ::send(socket_.Get(), reply.data(), reply.size(), MSG_NOSIGNAL);
    if (count >= 0) {
      reply.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      end = IsTimeout(errno) ? End::SlowReply : End::Broken;
      return false;
    }
  }
  return true;
}

void Connection::NoteRequest(const Outcome& outcome, std::string_view line, std::string_view reply)
{
  ++requests_;
  if (limits_.logsRequests) {
    spdlog::info("connection {} request {} reply {}", number_, Printable(line),
                 Printable(reply.substr(0, reply.size() - 1)));
  }
  if (outcome.status == 0) {
    return;
  }
  ++errors_;
  if (outcome.status >= kFirstSystemStatus && errors_ <= kMostErrorLines) {
    spdlog::warn("connection {} from {}: {} answered {}{}", number_, peer_,
                 outcome.request != nullptr ? outcome.request->name : "a line that is no request", outcome.status,
                 errors_ == kMostErrorLines ? "; further errors of this connection are only counted" : "");
  }
}

/**
 * Lets the client have what was sent, and prepares the close that follows to be a reset. A client that sees an orderly
 * end would take it for an empty reply to its next request; after a reset that request fails and the client connects
 * anew.
 */
void Connection::Reset()
{
  for (int i = 0; i < kFlushSteps && IsUnsent(socket_.Get()); ++i) {
    std::this_thread::sleep_for(kFlushStep);
  }
  const linger atOnce = {1, 0};
  ::setsockopt(socket_.Get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

void Connection::LogEnd(End end) const
{
  static constexpr std::array kReasons = {"closed by the client",
                                          "idle for too long",
                                          "a request took too long to arrive",
                                          "the client did not take its reply",
                                          "the server is stopping",
                                          "broken"};
  const std::chrono::duration<double> duration = Clock::now() - started_;
  spdlog::info("connection {} from {} ended: {}; {} requests, {} errors, {:.3f} s", number_, peer_,
               kReasons[static_cast<std::size_t>(end)], requests_, errors_, duration.count());
}

}  // namespace pafd
