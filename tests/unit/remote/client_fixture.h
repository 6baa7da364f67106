/** Tests of the process's client against a scripted server. */
#ifndef QXPAF_TESTS_UNIT_REMOTE_CLIENT_FIXTURE_H
#define QXPAF_TESTS_UNIT_REMOTE_CLIENT_FIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "errors/thread_data.h"
#include "fakes/scripted_server.h"
#include "qxpaf/remote.h"
#include "remote/socket_client.h"

/** Mixed into a fixture: a server of the test's own, and a client that is not connected and not broken. */
struct WithServer
{
  WithServer()
  {
    Disconnect();
    qxpaf::SetErrorDescription(0, "");
    SetTcpHost("127.0.0.1");
    SetTcpPort(server.Port().c_str());
  }

  ~WithServer()
  {
    Disconnect();
    SetTcpHost("");
    SetTcpPort("");
  }

  WithServer(const WithServer&) = delete;
  WithServer& operator=(const WithServer&) = delete;

  static void Disconnect()
  {
    qxpaf::TheSocketClient().BreakConnection();
    qxpaf::TheSocketClient().AllowReConnect();
  }

  /** What the last failure left for this thread. */
  static qxpaf::LastError Recorded()
  {
    qxpaf::ThreadData* record = nullptr;
    EXPECT_EQ(0, qxpaf::GetThreadData(true, record));
    return record->lastError;
  }

  fake::ScriptedServer server;
};

/** Expects one recorded failure of the library itself. */
inline void ExpectRecorded(int code, const std::string& text)
{
  const qxpaf::LastError recorded = WithServer::Recorded();
  EXPECT_EQ(code, recorded.code);
  EXPECT_EQ(0, recorded.id);
  EXPECT_EQ(text, recorded.text);
}

/** Another way for an exchange to fail: what the server does, the status, and the words for it. */
struct TransportFailure
{
  const char* name;
  fake::Reply reply;
  int status;
  const char* text;
};

inline TransportFailure ReplyTooLong()
{
  return {"TooLong", fake::Reply::Line(std::string(1024, 'x')), 4555,
          "socket recv buffer too small: (90) Message too long"};
}

#endif
