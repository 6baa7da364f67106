/** What processes take of the machine, as the kernel counts it. */
#ifndef QXPAF_BENCH_PEERS_USAGE_H
#define QXPAF_BENCH_PEERS_USAGE_H

#include <sys/types.h>

#include <cstdint>

namespace peers {

struct Memory
{
  std::uint64_t privateKib = 0;   ///< used by one process only
  std::uint64_t residentKib = 0;  ///< with the mapped files and the shares of what several processes use
  std::uint64_t peakKib = 0;      ///< the most that each process has had, added up
};

/** Of this process and, unless it is 0, of a server with the processes that it started. */
Memory MemoryInUse(pid_t server);

/** Time that the same processes have had a processor. */
double CpuSeconds(pid_t server);

}  // namespace peers

#endif
