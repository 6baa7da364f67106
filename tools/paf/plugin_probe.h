/** Tries to load a plug-in library as the address library would, without opening a database. */
#ifndef PAF_TOOL_PLUGIN_PROBE_H
#define PAF_TOOL_PLUGIN_PROBE_H

#include <string>
#include <vector>

namespace tool {

struct EntryPoint
{
  std::string name;
  bool required = true;
  bool present = false;
};

struct PluginProbe
{
  std::string library;  ///< file name asked of the loader
  bool loaded = false;
  std::string file;     ///< the file that the loader took
  std::string message;  ///< the loader's words when it failed
  std::string version;  ///< what it answers to "PafLibVersion"; may be empty
  std::vector<EntryPoint> entryPoints;

  /** True when it loads and has every required entry point. */
  bool IsUsable() const;
};

PluginProbe ProbePlugin(const std::string& library);

}  // namespace tool

#endif
