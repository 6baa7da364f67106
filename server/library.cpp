#include "library.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "failure.h"
#include "log.h"
#include "qxpaf/paf.h"
#include "qxpaf/registry.h"

namespace pafd {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFirstPlace = ".morvex";  // in the working directory; comes before the environment's file
constexpr const char* kVariable = "MORVEX_CONFIG_FILE";
constexpr const char* kRemoteKey = "PindleSvr";

std::string RemoteSetting()
{
  for (const char* name : {"TcpHost", "TcpPort"}) {
    std::array<char, 256> value{};
    int size = static_cast<int>(value.size());
    if (LookUpRegistry_(kRemoteKey, name, value.data(), size, false) == 0 && value[0] != '\0') {
      return std::string(kRemoteKey) + "/" + name + "=" + value.data();
    }
  }
  return "";
}

}  // namespace

std::string StatusText(int status)
{
  std::array<char, 1024> text{};
  pafGetErrorDescription(text.data(), status, static_cast<int>(text.size()));
  return std::string(text.data()) + (text[0] == '\0' ? "status " : " (status ") + std::to_string(status) +
         (text[0] == '\0' ? "" : ")");
}

void UseConfiguration(const std::string& file)
{
  std::error_code error;
  const fs::path path = fs::absolute(file, error);
  if (error || fs::is_directory(path, error) || ::access(path.c_str(), R_OK) != 0) {
    const char* reason = fs::is_directory(path, error) ? "it is a directory" : std::strerror(errno);
    throw Failure("cannot read the configuration file " + file + ": " + reason);
  }
  if (::access(kFirstPlace, R_OK) == 0 && !fs::equivalent(kFirstPlace, path, error)) {
    throw Failure("the file .morvex of the working directory " + fs::current_path(error).string() +
                  " would be read instead of " + file + "; start pafd in another directory");
  }
  ::setenv(kVariable, path.c_str(), 1);
}

void WorkLocally(bool ignoresRemote)
{
  const std::string setting = RemoteSetting();
  if (!setting.empty() && !ignoresRemote) {
    throw Failure("the configuration has the line " + setting +
                  ", which makes libraries ask a socket server; this is the server. Remove the line, name another "
                  "file with --config, or serve locally all the same with --ignore-remote");
  }
  pafSetProperties("UseSockets", "False");
}

DefaultDatabase::DefaultDatabase()
{
  const int status = pafOpenPaf();
  isOpen_ = status == 0;
  if (!isOpen_) {
    spdlog::info("no default database for requests without an Id: {}", StatusText(status));
  }
}

DefaultDatabase::~DefaultDatabase()
{
  if (isOpen_) {
    pafClosePaf();
  }
}

}  // namespace pafd
