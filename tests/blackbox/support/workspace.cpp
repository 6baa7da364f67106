#include "blackbox/support/workspace.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace blackbox {
namespace fs = std::filesystem;

Workspace::Workspace() : previous_(fs::current_path())
{
  std::string pattern = (fs::temp_directory_path() / "qxpaf-blackbox-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp " + pattern);
  root_ = fs::canonical(pattern).string();
  fs::current_path(root_);
  unsetenv("MORVEX_CONFIG_FILE");
  setenv("HOME", (root_ + "/no-home").c_str(), 1);
}

Workspace::Workspace(const std::vector<std::string>& configuration) : Workspace()
{
  Configure(configuration);
}

Workspace::~Workspace()
{
  std::error_code ignored;
  fs::current_path(previous_, ignored);
  fs::remove_all(root_, ignored);
}

void Workspace::Configure(const std::vector<std::string>& lines) const
{
  std::string contents;
  for (const std::string& line : lines) contents.append(Expand(line, *this)).append("\n");
  WriteFile(".morvex", contents);
}

void Workspace::RemoveConfiguration() const
{
  fs::remove(root_ + "/.morvex");
}

std::string Workspace::MakeDirectory(const std::string& name) const
{
  const std::string path = root_ + "/" + name;
  fs::create_directories(path);
  return path;
}

std::string Workspace::MakeDatabase(const std::string& name, const std::string& pafVer) const
{
  WriteFile(name + "/PAF.ver", pafVer);
  return root_ + "/" + name;
}

std::string Workspace::WriteFile(const std::string& name, const std::string& contents) const
{
  const fs::path path = fs::path(root_) / name;
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << contents;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
  return path.string();
}

std::string Expand(const std::string& text, const Workspace& workspace)
{
  std::string expanded;
  for (char c : text) {
    if (c == '@')
      expanded += workspace.Root();
    else
      expanded += c;
  }
  return expanded;
}

}  // namespace blackbox
