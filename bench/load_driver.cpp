/**
 * pafd_load: how fast a server answers requests over its wire.
 *
 *     pafd_load property --port 7070 --processes 50 --requests 20000
 *
 * Each process has one connection and sends its requests one after the other. All start together, after requests that
 * are not counted. Every reply is checked; one that is wrong ends the measurement. What is asked:
 *
 *     property      pafGetPropertiesId through libqxpaf in remote mode, as applications ask: library, wire and server
 *     address       pafGetDpidNonAmasId through libqxpaf in remote mode
 *     raw-property  the same line as property, written to a socket without the library
 *     redis-ping    an inline PING to a redis server, by the same code as raw-property
 */
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "qxpaf/paf.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMeasured = 0;
constexpr int kFailed = 1;
constexpr int kPatienceMilliseconds = 60'000;  // for all processes to be connected and warm
constexpr int kMostProcesses = 4096;
constexpr int kMostRequests = 10'000'000;
constexpr const char* kProperty = "Delimiter";  // needs no matching, and is answered by the instance's plug-in
constexpr const char* kPropertyValue = "\t";

struct Options
{
  std::string kind;
  std::string host = "127.0.0.1";
  std::string port;
  std::string database = "AU";
  std::vector<std::string> addresses;
  std::size_t processes = 1;
  std::size_t requests = 10'000;  // of each process
  std::size_t warmUp = 1'000;
  bool isJson = false;
};

[[noreturn]] void Fail(const std::string& what)
{
  throw std::runtime_error(what);
}

[[noreturn]] void FailSystem(const std::string& what)
{
  Fail(what + ": " + std::strerror(errno));
}

/** One connection, and what is asked over it. */
class Asker
{
 public:
  Asker() = default;
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;
  virtual ~Asker() = default;

  /** Sends the request and takes its reply. @throws std::runtime_error when it is not the right one */
  virtual void Ask() = 0;
};

/** An instance of a database behind a server. */
class RemoteInstance
{
 public:
  explicit RemoteInstance(const std::string& database) { Check(pafOpenArfId(&id_, 0, database.c_str()), "opening"); }
  RemoteInstance(const RemoteInstance&) = delete;
  RemoteInstance& operator=(const RemoteInstance&) = delete;
  ~RemoteInstance() { pafClosePafId(id_); }

  int Id() const { return id_; }

  static void Check(int status, const char* what)
  {
    if (status == 0) return;
    char reason[1024] = "";
    pafGetErrorDescription(reason, status, sizeof reason);
    Fail(std::string(what) + ": " + reason + " (status " + std::to_string(status) + ")");
  }

 private:
  int id_ = 0;
};

class LibraryProperty : public Asker
{
 public:
  explicit LibraryProperty(const Options& options) : instance_(options.database) {}

  void Ask() override
  {
    char answer[64];
    RemoteInstance::Check(pafGetPropertiesId(instance_.Id(), kProperty, answer, sizeof answer), kProperty);
    if (std::strcmp(answer, kPropertyValue) != 0) Fail(std::string("the property's value is ") + answer);
  }

 private:
  RemoteInstance instance_;
};

class LibraryAddress : public Asker
{
 public:
  explicit LibraryAddress(const Options& options) : instance_(options.database), addresses_(options.addresses)
  {
    if (addresses_.empty()) Fail("no address to look up: name some with --address");
  }

  void Ask() override
  {
    const std::string& address = addresses_[next_];
    next_ = next_ + 1 == addresses_.size() ? 0 : next_ + 1;
    char text[1024];
    std::snprintf(text, sizeof text, "%s", address.c_str());
    RemoteInstance::Check(pafGetDpidNonAmasId(instance_.Id(), text, sizeof text), address.c_str());
    if (text[0] < '0' || text[0] > '9') Fail("no identifier for " + address + ": " + text);
  }

 private:
  RemoteInstance instance_;
  const std::vector<std::string>& addresses_;
  std::size_t next_ = 0;
};

/** Addresses typed letter by letter: the first hint, or the whole list, after each letter. */
class LibraryHint : public Asker
{
 public:
  LibraryHint(const Options& options, bool wholeList)
      : instance_(options.database), addresses_(options.addresses), wholeList_(wholeList)
  {
    if (addresses_.empty()) Fail("no address to type: name some with --address");
  }

  void Ask() override
  {
    const std::string& address = addresses_[next_];
    const std::string typed = address.substr(0, ++letters_);
    char hint[1024];
    RemoteInstance::Check(pafGetPopupHintId(instance_.Id(), typed.c_str(), "", kHints, hint, sizeof hint), "hint");
    const bool isTyped = letters_ == address.size();
    if (isTyped && hint[0] == '\t') Fail("no hint for " + address);
    while (wholeList_ && hint[0] != '\t')
      RemoteInstance::Check(pafGetNextPopupHintId(instance_.Id(), hint, sizeof hint), "next hint");
    if (!isTyped) return;
    letters_ = 0;
    next_ = next_ + 1 == addresses_.size() ? 0 : next_ + 1;
  }

 private:
  static constexpr int kHints = 10;

  RemoteInstance instance_;
  const std::vector<std::string>& addresses_;
  bool wholeList_;
  std::size_t next_ = 0;
  std::size_t letters_ = 0;
};

class FirstHint : public LibraryHint
{
 public:
  explicit FirstHint(const Options& options) : LibraryHint(options, false) {}
};

class HintList : public LibraryHint
{
 public:
  explicit HintList(const Options& options) : LibraryHint(options, true) {}
};

/** Lines over a socket of its own; the least that a client can do. */
class LineClient
{
 public:
  LineClient(const std::string& host, const std::string& port)
  {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (const int error = ::getaddrinfo(host.c_str(), port.c_str(), &wanted, &found); error != 0) {
      Fail(host + ": " + ::gai_strerror(error));
    }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> addresses(found, ::freeaddrinfo);
    socket_ = ::socket(found->ai_family, found->ai_socktype | SOCK_CLOEXEC, 0);
    if (socket_ < 0 || ::connect(socket_, found->ai_addr, found->ai_addrlen) != 0) {
      FailSystem("connecting to " + host + " " + port);
    }
    const int atOnce = 1;
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
  }
  LineClient(const LineClient&) = delete;
  LineClient& operator=(const LineClient&) = delete;
  ~LineClient()
  {
    if (socket_ >= 0) ::close(socket_);
  }

  /** @param request with its line feed. @return the reply with its line feed, until the next call */
  std::string_view Exchange(std::string_view request)
  {
    if (::send(socket_, request.data(), request.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(request.size())) {
      FailSystem("sending");
    }
    std::size_t length = 0;
    do {
      const ssize_t count = ::recv(socket_, reply_.data() + length, reply_.size() - length, 0);
      if (count < 0) FailSystem("receiving");
      if (count == 0) Fail("the server ended the connection, or its reply is too long");
      length += static_cast<std::size_t>(count);
    } while (reply_[length - 1] != '\n');
    return {reply_.data(), length};
  }

 private:
  int socket_ = -1;
  std::array<char, 4096> reply_{};
};

/** One request and its one right reply. */
class RawRequest : public Asker
{
 public:
  RawRequest(const Options& options, std::string request, std::string expected)
      : client_(options.host, options.port), request_(std::move(request)), expected_(std::move(expected))
  {
  }

  void Ask() override
  {
    const std::string_view reply = client_.Exchange(request_);
    if (reply != expected_) Fail("the reply is " + std::string(reply));
  }

 protected:
  LineClient client_;
  std::string request_;

 private:
  std::string expected_;
};

class RawProperty : public RawRequest
{
 public:
  explicit RawProperty(const Options& options) : RawRequest(options, "", std::string("0\t") + kPropertyValue + "\n")
  {
    const std::string reply(client_.Exchange("pafOpenArfId\t0\t" + options.database + "\n"));
    if (!reply.starts_with("0\t")) Fail("opening: " + reply);
    request_ = "pafGetPropertiesId\t" + reply.substr(2, reply.size() - 3) + "\t" + kProperty + "\n";
  }
};

class RedisPing : public RawRequest
{
 public:
  explicit RedisPing(const Options& options) : RawRequest(options, "PING\r\n", "+PONG\r\n") {}
};

template <class Kind>
std::unique_ptr<Asker> Make(const Options& options)
{
  return std::make_unique<Kind>(options);
}

struct Kind
{
  const char* name;
  std::unique_ptr<Asker> (*make)(const Options& options);
};

constexpr Kind kKinds[] = {{"property", Make<LibraryProperty>}, {"address", Make<LibraryAddress>},
                           {"hint", Make<FirstHint>},           {"hint-list", Make<HintList>},
                           {"raw-property", Make<RawProperty>}, {"redis-ping", Make<RedisPing>}};

/** A directory whose configuration file makes the library ask the server; the working directory while it lives. */
class ClientDirectory
{
 public:
  explicit ClientDirectory(const Options& options)
  {
    std::string pattern = (std::filesystem::temp_directory_path() / "pafd-load-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) FailSystem(pattern);
    path_ = pattern;
    std::ofstream(path_ / ".morvex") << "PindleSvr/TcpHost=" << options.host << "\nPindleSvr/TcpPort=" << options.port
                                     << '\n';
    std::filesystem::current_path(path_);
  }
  ClientDirectory(const ClientDirectory&) = delete;
  ClientDirectory& operator=(const ClientDirectory&) = delete;
  ~ClientDirectory()
  {
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);
    std::filesystem::remove_all(path_, ignored);
  }

 private:
  std::filesystem::path path_;
};

/** What one process tells the first, in memory that they share. */
struct Report
{
  Clock::time_point began;
  Clock::time_point ended;
  char failure[512];  // empty when there was none
};

/** Objects in memory that processes share. */
template <class Object>
class Shared
{
 public:
  explicit Shared(std::size_t count)
  {
    void* memory = ::mmap(nullptr, count * sizeof(Object), PROT_READ | PROT_WRITE,
                          MAP_SHARED | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    if (memory == MAP_FAILED) FailSystem("no memory for the results");
    objects_ = {static_cast<Object*>(memory), count};
  }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;
  ~Shared() { ::munmap(objects_.data(), objects_.size_bytes()); }

  std::span<Object> Objects() const { return objects_; }

 private:
  std::span<Object> objects_;
};

struct Pipe
{
  Pipe()
  {
    if (::pipe2(ends, O_CLOEXEC) != 0) FailSystem("pipe");
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe()
  {
    ::close(ends[0]);
    CloseWriting();
  }
  void CloseWriting()
  {
    if (ends[1] >= 0) ::close(ends[1]);
    ends[1] = -1;
  }

  int ends[2];
};

/** All processes wait here until the slowest is ready. */
class StartingLine
{
 public:
  /** In a process: says that it is ready, and waits for the start. */
  void Wait()
  {
    start_.CloseWriting();
    Tell(kReady);
    char byte = 0;
    while (::read(start_.ends[0], &byte, 1) < 0 && errno == EINTR) continue;
  }

  /** In a process: says that it will never be ready. */
  void GiveUp() { Tell(kGivenUp); }

  /** In the first process: starts the others when they are ready. @return false when one is not, or not in time */
  bool Start(std::size_t processes)
  {
    std::size_t count = 0;
    pollfd entry = {ready_.ends[0], POLLIN, 0};
    while (count<processes&& ::poll(&entry, 1, kPatienceMilliseconds)> 0) {
      char byte = kGivenUp;
      if (::read(ready_.ends[0], &byte, 1) != 1 || byte == kGivenUp) return false;
      ++count;
    }
    start_.CloseWriting();
    return count == processes;
  }

 private:
  static constexpr char kReady = 'r';
  static constexpr char kGivenUp = 'g';

  void Tell(char byte)
  {
    if (::write(ready_.ends[1], &byte, 1) != 1) ::_exit(kFailed);
  }

  Pipe ready_;
  Pipe start_;
};

/** The work of one process. */
void Measure(const Options& options, const Kind& kind, StartingLine& line, std::span<std::uint64_t> nanoseconds,
             Report& report)
{
  const std::unique_ptr<Asker> asker = kind.make(options);
  for (std::size_t i = 0; i < options.warmUp; ++i) asker->Ask();
  line.Wait();
  Clock::time_point last = report.began = Clock::now();
  for (std::uint64_t& time : nanoseconds) {
    asker->Ask();
    const Clock::time_point now = Clock::now();
    time = static_cast<std::uint64_t>((now - last).count());
    last = now;
  }
  report.ended = last;
}

[[noreturn]] void RunProcess(const Options& options, const Kind& kind, StartingLine& line,
                             std::span<std::uint64_t> nanoseconds, Report& report)
{
  int exitCode = kMeasured;
  try {
    Measure(options, kind, line, nanoseconds, report);
  } catch (const std::exception& error) {
    std::snprintf(report.failure, sizeof report.failure, "%s", error.what());
    line.GiveUp();
    exitCode = kFailed;
  }
  ::_exit(exitCode);
}

struct Result
{
  double perSecond = 0;
  std::vector<std::uint64_t> sorted;  // nanoseconds of every request

  /** The smallest time that so large a share of the requests did not exceed. */
  double Microseconds(double share) const
  {
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
    return static_cast<double>(sorted[std::clamp<std::size_t>(rank, 1, sorted.size()) - 1]) / 1e3;
  }
};

/** The processes; those that still run are killed. */
class Processes
{
 public:
  Processes() = default;
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;
  ~Processes()
  {
    for (const pid_t pid : running_) ::kill(pid, SIGKILL);
    Join();
  }

  void Add(pid_t pid) { running_.push_back(pid); }

  /** @return true when all have measured */
  bool Join()
  {
    bool haveMeasured = true;
    for (const pid_t pid : running_) {
      int status = 0;
      while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) continue;
      haveMeasured = haveMeasured && WIFEXITED(status) && WEXITSTATUS(status) == kMeasured;
    }
    running_.clear();
    return haveMeasured;
  }

 private:
  std::vector<pid_t> running_;
};

[[noreturn]] void FailAsReported(std::span<const Report> reports)
{
  const auto failed =
      std::find_if(reports.begin(), reports.end(), [](const Report& r) { return r.failure[0] != '\0'; });
  Fail(failed != reports.end() ? failed->failure : "a process did not get ready, or was ended");
}

Result Run(const Options& options, const Kind& kind)
{
  const ClientDirectory directory(options);
  const Shared<std::uint64_t> times(options.processes * options.requests);
  const Shared<Report> reports(options.processes);
  {
    StartingLine line;
    Processes processes;
    for (std::size_t i = 0; i < options.processes; ++i) {
      const pid_t pid = ::fork();
      if (pid < 0) FailSystem("fork");
      if (pid == 0) {
        RunProcess(options, kind, line, times.Objects().subspan(i * options.requests, options.requests),
                   reports.Objects()[i]);
      }
      processes.Add(pid);
    }
    if (!line.Start(options.processes) || !processes.Join()) FailAsReported(reports.Objects());
  }
  const auto [first, ignored] = std::ranges::minmax(reports.Objects(), {}, &Report::began);
  const auto [ignoredToo, last] = std::ranges::minmax(reports.Objects(), {}, &Report::ended);
  const std::chrono::duration<double> duration = last.ended - first.began;
  Result result{static_cast<double>(times.Objects().size()) / duration.count(),
                {times.Objects().begin(), times.Objects().end()}};
  std::ranges::sort(result.sorted);
  return result;
}

struct Percentile
{
  const char* name;
  double share;
};

constexpr Percentile kPercentiles[] = {
    {"p50", 0.5}, {"p90", 0.9}, {"p99", 0.99}, {"p99.9", 0.999}, {"max", 1},
};

void Print(const Options& options, const Result& result)
{
  if (options.isJson) {
    nlohmann::json document = {{"kind", options.kind},
                               {"processes", options.processes},
                               {"requests", result.sorted.size()},
                               {"per_second", result.perSecond}};
    for (const auto& [name, share] : kPercentiles) document["microseconds"][name] = result.Microseconds(share);
    std::cout << document.dump() << '\n';
    return;
  }
  std::printf("%s: %zu processes, %zu requests, %.0f a second; microseconds:", options.kind.c_str(), options.processes,
              result.sorted.size(), result.perSecond);
  for (const auto& [name, share] : kPercentiles) std::printf(" %s %.1f", name, result.Microseconds(share));
  std::printf("\n");
}

void AddOptions(CLI::App& program, Options& options)
{
  std::vector<std::string> kinds;
  for (const Kind& kind : kKinds) kinds.emplace_back(kind.name);
  program.add_option("kind", options.kind, "What is asked")->required()->check(CLI::IsMember(kinds));
  program.add_option("--host", options.host, "The server's host")->capture_default_str();
  program.add_option("--port", options.port, "The server's port")->required();
  program.add_option("--processes", options.processes, "How many, with one connection each")
      ->check(CLI::Range(1, kMostProcesses))
      ->capture_default_str();
  program.add_option("--requests", options.requests, "How many each process sends")
      ->check(CLI::Range(1, kMostRequests))
      ->capture_default_str();
  program.add_option("--warm-up", options.warmUp, "How many each process sends before those that count")
      ->check(CLI::Range(0, kMostRequests))
      ->capture_default_str();
  program.add_option("--database", options.database, "The server's name of the database")->capture_default_str();
  program.add_option("--address", options.addresses, "What to look up or type in turn; may be given several times")
      ->allow_extra_args(false);
  program.add_flag("--json", options.isJson, "Print a JSON document");
  program.footer("Exit status: 0 measured, 1 a request failed or was answered wrongly.");
}

}  // namespace

int main(int argc, char** argv)
{
  Options options;
  CLI::App program("Measures how fast a server answers.", "pafd_load");
  AddOptions(program, options);
  CLI11_PARSE(program, argc, argv);
  try {
    const Kind* kind = std::ranges::find_if(kKinds, [&](const Kind& row) { return options.kind == row.name; });
    Print(options, Run(options, *kind));
    return kMeasured;
  } catch (const std::exception& error) {
    std::cerr << "pafd_load: " << error.what() << '\n';
    return kFailed;
  }
}
