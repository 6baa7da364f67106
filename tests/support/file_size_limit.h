#ifndef QXPAF_TESTS_SUPPORT_FILE_SIZE_LIMIT_H
#define QXPAF_TESTS_SUPPORT_FILE_SIZE_LIMIT_H

#include <sys/resource.h>

#include <csignal>

namespace test_support {

/** Lets this process's files grow to so many bytes and no further, as a full disk does. */
class FileSizeLimit
{
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN))
  {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit()
  {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

}  // namespace test_support

#endif
