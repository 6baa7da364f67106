#include "blackbox/twin/twin.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace blackbox {
namespace {

const std::vector<std::string> kDatabases = {"ArfBaseDir=@",         "PafDir=@/sample",    "ARF/AU/=@/sample",
                                             "ARF/AU/Main=@/sample", "ARF/AU/New=@/newer", "ARF/AU/Gone=@/gone"};

std::string Text(const std::vector<std::string>& lines, const Workspace& workspace)
{
  std::string text;
  for (const std::string& line : lines) text += Expand(line, workspace) + "\n";
  return text;
}

std::vector<std::string> With(std::vector<std::string> lines, const std::string& line)
{
  lines.push_back(line);
  return lines;
}

void Build(const std::string& name)
{
  const std::string command = std::string(PAF_PROGRAM) + " build " + SAMPLE_FOLDER + "/addresses.csv " + name +
                              " --sort-plan " + SAMPLE_FOLDER + "/sortplan.csv --data-version " + name +
                              " >>build.log 2>&1";
  if (std::system(command.c_str()) != 0) throw std::runtime_error(command);
}

void WriteText(std::ostream& out, const std::string& text)
{
  out << text.size() << ' ' << text;
}

std::string ReadText(std::istream& in)
{
  std::size_t size = 0;
  in >> size;
  in.ignore(1);
  std::string text(size, '\0');
  in.read(text.data(), static_cast<std::streamsize>(size));
  return text;
}

std::vector<Answer> ReadAnswers(const std::string& path)
{
  std::vector<Answer> answers;
  std::ifstream in(path, std::ios::binary);
  for (int status = 0; in >> status;) {
    Answer answer{status, ReadText(in), {}};
    answer.words = ReadText(in);
    answers.push_back(std::move(answer));
  }
  return answers;
}

}  // namespace

Twin::Twin()
{
  Build("sample");
  Build("newer");
  workspace_.WriteFile("local.conf", Text(With(kDatabases, "iPindle/Owner=databases"), workspace_));
  workspace_.WriteFile("server.conf", Text(With(kDatabases, "iPindle/Owner=databases"), workspace_));
}

void Twin::Add(Step step)
{
  const auto isSame = [&step](const Step& other) { return !step.name.empty() && other.name == step.name; };
  if (std::any_of(calls_.begin(), calls_.end(), isSame)) throw std::logic_error("two calls named " + step.name);
  calls_.push_back(std::move(step));
}

void Twin::Same(const std::string& name, TwinCall call)
{
  Add({name, std::move(call), {}, ""});
}

void Twin::Differs(const std::string& name, const char* why, TwinCall call, Rule rule)
{
  Add({name, std::move(call), std::move(rule), why});
}

void Twin::Like(const std::string& name, const std::string& other, const char* why, TwinCall call)
{
  Differs(name, why, std::move(call), [other](const Answers& local) { return local[other]; });
}

void Twin::Do(std::function<void()> action)
{
  Add({"",
       [action = std::move(action)] {
         action();
         return Answer();
       },
       {},
       ""});
}

std::size_t Twin::Alike() const
{
  return static_cast<std::size_t>(
      std::count_if(calls_.begin(), calls_.end(), [](const Step& s) { return !s.name.empty() && !s.rule; }));
}

std::unique_ptr<ServerProcess> Twin::StartServer(const std::vector<std::string>& options, int port) const
{
  return std::make_unique<ServerProcess>(ServerConfig(), options, port);
}

void Twin::Check()
{
  const std::unique_ptr<ServerProcess> server = StartServer();
  Check(*server);
}

void Twin::Check(ServerProcess& server)
{
  workspace_.WriteFile("remote.conf", "PindleSvr/TcpHost=127.0.0.1\nPindleSvr/TcpPort=" +
                                          std::to_string(server.Port()) + "\niPindle/Owner=client\n");
  const std::vector<Answer> local = RunWith("local.conf");
  const std::vector<Answer> remote = RunWith("remote.conf");
  ASSERT_EQ(local.size(), calls_.size()) << "the local run ended early";
  ASSERT_EQ(remote.size(), calls_.size()) << "the remote run ended early";
  Compare(local, remote);
}

std::vector<Answer> Twin::RunWith(const std::string& configFile) const
{
  const std::string answers = workspace_.Root() + "/answers";
  std::cout.flush();
  const pid_t child = fork();
  if (child == 0) RunInChild(workspace_.Root() + "/" + configFile, answers);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "the process with " << configFile << " failed";
  return ReadAnswers(answers);
}

void Twin::RunInChild(const std::string& configFile, const std::string& answersFile) const
{
  setenv("MORVEX_CONFIG_FILE", configFile.c_str(), 1);
  std::ofstream out(answersFile, std::ios::binary | std::ios::trunc);
  for (const Step& step : calls_) {
    const Answer answer = step.call();
    out << answer.status << ' ';
    WriteText(out, answer.text);
    WriteText(out, answer.words);
    out << '\n' << std::flush;
  }
  std::cout.flush();
  _exit(testing::Test::HasFailure() ? 1 : 0);
}

void Twin::Compare(const std::vector<Answer>& local, const std::vector<Answer>& remote) const
{
  Answers answers;
  for (std::size_t i = 0; i < calls_.size(); ++i) answers.Add(calls_[i].name, local[i]);
  for (std::size_t i = 0; i < calls_.size(); ++i) {
    const Step& step = calls_[i];
    if (step.name.empty()) continue;
    const Answer expected = step.rule ? step.rule(answers) : local[i];
    EXPECT_EQ(remote[i], expected) << step.name << ", locally " << local[i] << ' ' << step.why;
  }
}

}  // namespace blackbox
