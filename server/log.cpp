#include "log.h"

#include <spdlog/sinks/stdout_sinks.h>

namespace pafd {
namespace {

constexpr std::size_t kLongestText = 1024;
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void AppendPrintable(std::string& line, char c)
{
  const auto byte = static_cast<unsigned char>(c);
  if (c == '\t') {
    line += "\\t";
  } else if (c == '\\') {
    line += "\\\\";
  } else if (byte < 0x20 || byte == 0x7F) {
    line += "\\x";
    line += kHexDigits[byte >> 4];
    line += kHexDigits[byte & 0x0F];
  } else {
    line += c;
  }
}

}  // namespace

void StartLog(bool isQuiet)
{
  const auto logger = spdlog::stderr_logger_mt("pafd");
  logger->set_pattern("%Y-%m-%dT%H:%M:%S.%e%z %l: %v");
  logger->set_level(isQuiet ? spdlog::level::warn : spdlog::level::info);
  spdlog::set_default_logger(logger);
}

std::string Printable(std::string_view text)
{
  std::string line;
  for (const char c : text.substr(0, kLongestText)) {
    AppendPrintable(line, c);
  }
  if (text.size() > kLongestText) {
    line += "...";
  }
  return line;
}

}  // namespace pafd
