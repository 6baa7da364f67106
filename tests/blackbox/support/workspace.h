/** A test's own corner of the machine: a temporary working directory with a configuration file in it. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_WORKSPACE_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_WORKSPACE_H

#include <filesystem>
#include <string>
#include <vector>

namespace blackbox {

class Workspace
{
 public:
  /** Makes the directory, changes into it, and hides the machine's own configuration files from the library. */
  Workspace();
  explicit Workspace(const std::vector<std::string>& configuration);
  /** Changes back and removes everything. */
  ~Workspace();
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  const std::string& Root() const { return root_; }

  /** Replaces the configuration file; "@" in a line stands for the workspace's path. */
  void Configure(const std::vector<std::string>& lines) const;
  void RemoveConfiguration() const;

  /** Makes a directory below the workspace. @return its absolute path, without a trailing separator */
  std::string MakeDirectory(const std::string& name) const;

  /** Makes a database directory whose PAF.ver has the given contents. @return its absolute path */
  std::string MakeDatabase(const std::string& name, const std::string& pafVer) const;

  /** Writes a file below the workspace, making the directories it needs. @return its absolute path */
  std::string WriteFile(const std::string& name, const std::string& contents) const;

 private:
  std::string root_;
  std::filesystem::path previous_;
};

/** A text with every "@" replaced by the workspace's path. */
std::string Expand(const std::string& text, const Workspace& workspace);

}  // namespace blackbox

#endif
