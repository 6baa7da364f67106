#include "usage.h"

#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace peers {
namespace {

std::string ProcessFile(pid_t process, std::string_view name)
{
  return "/proc/" + std::to_string(process) + "/" + std::string(name);
}

/** The sum of the lines "NAME: number kB" of a file that have one of the names. */
std::uint64_t SumOf(const std::string& path, std::initializer_list<std::string_view> names)
{
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::uint64_t sum = 0;
  for (std::string line; std::getline(file, line);) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    for (const std::string_view name : names)
      if (std::string_view(line).substr(0, colon) == name) sum += std::stoull(line.substr(colon + 1));
  }
  return sum;
}

void Add(Memory& memory, pid_t process)
{
  const std::string rollup = ProcessFile(process, "smaps_rollup");
  memory.privateKib += SumOf(rollup, {"Private_Clean", "Private_Dirty"});
  memory.residentKib += SumOf(rollup, {"Pss"});
  memory.peakKib += SumOf(ProcessFile(process, "status"), {"VmHWM"});
}

std::vector<pid_t> ChildrenOf(pid_t process)
{
  std::ifstream file(ProcessFile(process, "task/" + std::to_string(process) + "/children"));
  std::vector<pid_t> children;
  for (pid_t child = 0; file >> child;) children.push_back(child);
  return children;
}

/** This process and the server's. */
std::vector<pid_t> Processes(pid_t server)
{
  std::vector<pid_t> processes = {getpid()};
  if (server == 0) return processes;
  processes.push_back(server);
  for (const pid_t child : ChildrenOf(server)) processes.push_back(child);
  return processes;
}

}  // namespace

Memory MemoryInUse(pid_t server)
{
  Memory memory;
  for (const pid_t process : Processes(server)) Add(memory, process);
  return memory;
}

double CpuSeconds(pid_t server)
{
  double nanoseconds = 0;
  for (const pid_t process : Processes(server)) {
    std::ifstream file(ProcessFile(process, "schedstat"));
    double each = 0;
    if (!(file >> each)) throw std::runtime_error("cannot read " + ProcessFile(process, "schedstat"));
    nanoseconds += each;
  }
  return nanoseconds / 1e9;
}

}  // namespace peers
