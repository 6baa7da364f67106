/**
 * The same calls made twice, in one process that has the databases and in one that asks a server which has them, and
 * their answers compared. Where the answers differ by design, the call says why and what the remote one must be.
 *
 *     twin.Same("find status", [this] { return Number(pafGetFindStatusId(id)); });
 *     twin.Differs("a small buffer", "the server's answer is cut", call, [](const Answers& local) { ... });
 *     twin.Check();
 *
 * Both runs are children of the test, forked when Check is called: the library decides once in a process whether it
 * works remotely. Calls are made in order, on one thread, and share what they capture; rules run in the test itself.
 */
#ifndef QXPAF_TESTS_BLACKBOX_TWIN_TWIN_H
#define QXPAF_TESTS_BLACKBOX_TWIN_TWIN_H

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "blackbox/support/workspace.h"
#include "blackbox/twin/answer.h"
#include "blackbox/twin/server_process.h"

namespace blackbox {

/** Answers by the name of their call. */
class Answers
{
 public:
  void Add(const std::string& name, Answer answer) { answers_[name] = std::move(answer); }
  /** Throws when there is no call of this name. */
  const Answer& operator[](const std::string& name) const { return answers_.at(name); }

 private:
  std::map<std::string, Answer> answers_;
};

using TwinCall = std::function<Answer()>;
using Rule = std::function<Answer(const Answers& local)>;

class Twin
{
 public:
  /** Databases of the sample in "sample" and "newer", and configurations for both processes and the server. */
  Twin();

  /** Adds a call. Names are unique. */
  void Same(const std::string& name, TwinCall call);
  void Differs(const std::string& name, const char* why, TwinCall call, Rule rule);
  /** The remote answer is that of another call, made locally. */
  void Like(const std::string& name, const std::string& other, const char* why, TwinCall call);
  /** Runs in both processes and is not compared. */
  void Do(std::function<void()> action);

  /** Makes all the calls in both processes and compares. */
  void Check();
  void Check(ServerProcess& server);

  /** How many calls there are, and how many of them must be answered alike. */
  std::size_t Calls() const { return calls_.size(); }
  std::size_t Alike() const;

  const Workspace& Place() const { return workspace_; }
  std::string ServerConfig() const { return workspace_.Root() + "/server.conf"; }
  std::unique_ptr<ServerProcess> StartServer(const std::vector<std::string>& options = {}, int port = 0) const;

 private:
  struct Step
  {
    std::string name;  // empty: not compared
    TwinCall call;
    Rule rule;        // empty: the local answer
    const char* why;  // it differs
  };

  void Add(Step step);
  std::vector<Answer> RunWith(const std::string& configFile) const;
  [[noreturn]] void RunInChild(const std::string& configFile, const std::string& answersFile) const;
  void Compare(const std::vector<Answer>& local, const std::vector<Answer>& remote) const;

  Workspace workspace_;
  std::vector<Step> calls_;
};

}  // namespace blackbox

#endif
