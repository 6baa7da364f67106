/** Remote mode against a scripted server of the test's own. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_REMOTE_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_REMOTE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "blackbox/support/workspace.h"
#include "fakes/scripted_server.h"

namespace blackbox {

using Lines = std::vector<std::string>;

/** A request or a reply as tests write it: "|" for the TAB. */
std::string Tabbed(std::string line);

/** Remote mode with a server that expects what it was told, all of it and nothing else. */
class RemoteTest : public testing::Test
{
 protected:
  /** What the server calls the first instance of a test. */
  static constexpr int kServerId = 17;

  void SetUp() override;
  void TearDown() override;

  /** The next request, and the line that answers it. */
  void Expect(const std::string& request, const std::string& reply);
  void Expect(const std::string& request, fake::Reply reply);

  /** Opens an instance that the server calls `serverId`. @return its Id */
  int OpenRemote(const std::string& name = "AU.x", int serverId = kServerId, int memoryMode = 0);

  /** A reply that breaks the connection with 4555, whatever was asked. */
  static fake::Reply TooLong() { return fake::Reply::Line(std::string(1024, 'x')); }

  /** Loses the connection in a call on this instance. */
  void Break(int id);

  /** The requests since the last call of Sent, with "|" for the TAB and without line feeds. */
  Lines Sent();

  Workspace workspace{std::vector<std::string>{}};
  fake::ScriptedServer server;

 private:
  std::size_t seen_ = 0;
};

/** How the server answers a request. */
enum class Shape
{
  kText,    // a status and a text, which goes into the caller's buffer
  kNumber,  // the function's result
  kNone     // there is no request
};

/** A function on an instance, called with arguments that can be told apart. */
struct RemoteCall
{
  const char* name;
  int (*run)(int id, char* text, int size);
  const char* request;  // "#" stands for the server's Id, "|" for the TAB
  Shape shape;
  bool reconnects;          // brings back an instance that the server lost, before anything else
  const char* input = "";   // of a function that works in place: what it finds in the buffer
  bool checksSize = false;  // 6406 for sizes below 1, before anything else
  bool empties = false;     // the buffer, before anything else

  std::string Request(int serverId) const;
};

const std::vector<RemoteCall>& RemoteCalls();

inline void PrintTo(const RemoteCall& call, std::ostream* out)
{
  *out << call.name;
}

}  // namespace blackbox

#endif
