/** A socket server on the loopback that answers as it was told, and can misbehave. */
#ifndef QXPAF_TESTS_FAKES_SCRIPTED_SERVER_H
#define QXPAF_TESTS_FAKES_SCRIPTED_SERVER_H

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace fake {

/** What the server does when a request has come in. */
class Reply
{
 public:
  /** Sends a line with its line feed, in one piece. */
  static Reply Line(const std::string& line) { return Raw(line + '\n'); }

  /** Sends these bytes, in one piece. */
  static Reply Raw(std::string bytes) { return Reply({std::move(bytes)}, End::GoOn); }

  /** Sends pieces one after another, which arrive one after another. */
  static Reply Pieces(std::vector<std::string> pieces) { return Reply(std::move(pieces), End::GoOn); }

  /** Closes the connection in order, or so that the other side sees a reset. */
  static Reply Close() { return Reply({}, End::Close); }
  static Reply Reset() { return Reply({}, End::Reset); }

  /** Answers nothing and waits for the client to end the connection. */
  static Reply Never() { return Reply({}, End::Stall); }

  /** The same after a while. */
  Reply After(std::chrono::milliseconds delay) &&;

  /** The same, and then the connection is closed. */
  Reply ThenClose() &&;

 private:
  friend class ScriptedServer;
  enum class End
  {
    GoOn,
    Close,
    Reset,
    Stall
  };

  Reply(std::vector<std::string> pieces, End end) : pieces_(std::move(pieces)), end_(end) {}

  std::vector<std::string> pieces_;
  End end_;
  std::chrono::milliseconds delay_{0};
};

/**
 * Serves one connection after another, each until it is closed, from construction to destruction. Requests come from a
 * script: a request that it does not expect is answered with the line kUnexpected.
 */
class ScriptedServer
{
 public:
  static constexpr const char* kUnexpected = "4500\tnot in the script";

  ScriptedServer();
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  /** The port as text, on 127.0.0.1. */
  std::string Port() const;

  /** Adds to the script: the next request, without its line feed, and what follows it. */
  void Expect(std::string request, Reply reply);

  /** Answers every request that is not in the script by a function, which the server's thread calls. */
  void AnswerOthers(std::function<Reply(const std::string& request)> answer);

  /** Everything it was asked, byte for byte, line feeds included. */
  std::vector<std::string> Requests() const;

  /** What the last request was, without its line feed; empty when there was none. */
  std::string LastRequest() const;

  /** Connections accepted so far. */
  int Connections() const;

  /** Steps of the script that no request has come for. */
  std::size_t StepsLeft() const;

  /** What went against the protocol: bytes behind a request's line feed before its answer, or a request cut short. */
  std::vector<std::string> Faults() const;

 private:
  struct Step
  {
    std::string request;
    Reply reply;
  };

  void Run();
  void Serve(int connection);
  bool ReadRequest(int connection, std::string& request);
  bool WaitReadable(int descriptor) const;
  Reply NextReply(const std::string& request);
  bool Answer(int connection, const Reply& reply);

  int listener_;
  int stop_;                  // becomes readable when the server is to end
  mutable std::mutex mutex_;  // guards what follows
  std::deque<Step> script_;
  std::function<Reply(const std::string&)> others_;
  std::vector<std::string> requests_;
  std::vector<std::string> faults_;
  int connections_ = 0;
  std::thread thread_;
};

}  // namespace fake

#endif
