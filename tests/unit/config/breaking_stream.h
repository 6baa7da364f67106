#ifndef QXPAF_TESTS_UNIT_CONFIG_BREAKING_STREAM_H
#define QXPAF_TESTS_UNIT_CONFIG_BREAKING_STREAM_H

#include <sys/types.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

/** A stream that gives some text and then a read error; to be closed with fclose. */
inline FILE* OpenBreakingStream(const std::string& text)
{
  struct Cookie
  {
    static ssize_t Read(void* cookie, char* out, std::size_t size)
    {
      std::string& rest = static_cast<Cookie*>(cookie)->rest;
      if (rest.empty()) return -1;
      const std::size_t count = std::min(size, rest.size());
      std::memcpy(out, rest.data(), count);
      rest.erase(0, count);
      return static_cast<ssize_t>(count);
    }

    static int Close(void* cookie)
    {
      delete static_cast<Cookie*>(cookie);
      return 0;
    }

    std::string rest;
  };
  cookie_io_functions_t functions = {};
  functions.read = &Cookie::Read;
  functions.close = &Cookie::Close;
  auto cookie = std::make_unique<Cookie>(Cookie{text});
  FILE* stream = fopencookie(cookie.get(), "r", functions);
  if (stream != nullptr) static_cast<void>(cookie.release());
  return stream;
}

#endif
