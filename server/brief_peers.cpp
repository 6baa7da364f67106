#include "brief_peers.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace pafd {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostPeers = 64;
constexpr std::size_t kLongestRequest = 8192;
constexpr auto kTime = 1s;

/** The close that follows resets the connection: what the peer sends later must fail, not be lost. */
void ResetOnClose(int socket)
{
  const linger atOnce = {1, 0};
  ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

bool IsWholeHead(const std::string& request)
{
  return request.find("\r\n\r\n") != std::string::npos || request.find("\n\n") != std::string::npos;
}

}  // namespace

void BriefPeers::Tell(FileDescriptor socket, std::string text)
{
  Peer peer = {std::move(socket), Clock::now() + kTime, nullptr, "", std::move(text)};
  Write(peer);
  Add(std::move(peer));
}

void BriefPeers::Serve(FileDescriptor socket, Answerer answerer)
{
  Add({std::move(socket), Clock::now() + kTime, std::move(answerer), "", ""});
}

void BriefPeers::Add(Peer peer)
{
  if (peers_.size() >= kMostPeers) {
    peers_.pop_front();
  }
  ::fcntl(peer.socket.Get(), F_SETFL, O_NONBLOCK);
  peers_.push_back(std::move(peer));
}

void BriefPeers::AppendTo(std::vector<pollfd>& entries) const
{
  for (const Peer& peer : peers_) {
    const short events = peer.unsent.empty() ? POLLIN : POLLIN | POLLOUT;
    entries.push_back({peer.socket.Get(), events, 0});
  }
}

void BriefPeers::Handle(const pollfd* entries)
{
  const Clock::time_point now = Clock::now();
  for (auto peer = peers_.begin(); peer != peers_.end(); ++entries) {
    const bool stays = Progress(*peer, entries->revents) && now < peer->deadline;
    if (!stays) {
      ResetOnClose(peer->socket.Get());
    }
    peer = stays ? std::next(peer) : peers_.erase(peer);
  }
}

/** @return false when the peer is done with */
bool BriefPeers::Progress(Peer& peer, short events)
{
  if ((events & ~POLLOUT) != 0 && !Read(peer)) {
    return false;
  }
  if (peer.answerer && IsWholeHead(peer.request)) {
    peer.unsent = std::exchange(peer.answerer, nullptr)(peer.request);
  }
  Write(peer);
  return true;
}

/** Keeps what belongs to a request and passes over the rest. @return false when the peer has gone or says too much */
bool BriefPeers::Read(Peer& peer)
{
  std::array<char, 2048> piece;
  const ssize_t count = ::recv(peer.socket.Get(), piece.data(), piece.size(), 0);
  if (count < 0) {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
  }
  if (peer.answerer) {
    peer.request.append(piece.data(), static_cast<std::size_t>(count));
  }
  return count > 0 && peer.request.size() <= kLongestRequest;
}

void BriefPeers::Write(Peer& peer)
{
  if (peer.unsent.empty()) {
    return;
  }
  const ssize_t count = ::send(peer.socket.Get(), peer.unsent.data(), peer.unsent.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count > 0) {
    peer.unsent.erase(0, static_cast<std::size_t>(count));
  }
  if (peer.unsent.empty()) {
    ::shutdown(peer.socket.Get(), SHUT_WR);
  }
}

}  // namespace pafd
