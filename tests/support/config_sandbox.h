#ifndef QXPAF_TESTS_SUPPORT_CONFIG_SANDBOX_H
#define QXPAF_TESTS_SUPPORT_CONFIG_SANDBOX_H

#include <filesystem>
#include <string>

#include "support/temp_dir.h"

namespace test_support {

/**
 * A process in which no configuration file is found but the test's own: the working directory and HOME are empty
 * directories and MORVEX_CONFIG_FILE is unset. The file of the whole machine, /usr/etc/.morvex, cannot be hidden; tests
 * that need no file at all look at MachineHasConfig first.
 */
class ConfigSandbox
{
 public:
  /** Writes the configuration file in the working directory, which comes first. */
  void Configure(const std::string& content) const { dir_.Write("work/.morvex", content); }

  /** The temporary directory; the working directory is "work" in it, HOME is "home". */
  const TempDir& Dir() const { return dir_; }

  static bool MachineHasConfig() { return std::filesystem::exists("/usr/etc/.morvex"); }

 private:
  TempDir dir_;
  WorkingDirectory workingDirectory_{dir_.MakeDirectory("work")};
  EnvValue home_{"HOME", dir_.MakeDirectory("home")};
  EnvValue configFile_{"MORVEX_CONFIG_FILE", std::nullopt};
};

}  // namespace test_support

#endif
