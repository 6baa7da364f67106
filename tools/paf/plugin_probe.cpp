#include "plugin_probe.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <array>

#include "qxpaf/platform/dynamic_library.h"

namespace tool {
namespace {

constexpr const char* kOtherProperties = "GetOtherProperties";

std::string FileOf(void* handle)
{
  link_map* map = nullptr;
  return dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 && map != nullptr ? map->l_name : "";
}

std::string VersionOf(void* handle)
{
  using GetOtherProperties = int (*)(const char*, char*, int);
  const auto ask = reinterpret_cast<GetOtherProperties>(QXDLL::GetProc(handle, kOtherProperties));
  std::array<char, 64> version{};
  if (ask == nullptr || ask("PafLibVersion", version.data(), static_cast<int>(version.size())) != 0) {
    return "";
  }
  return version.data();
}

}  // namespace

bool PluginProbe::IsUsable() const
{
  return loaded && std::all_of(entryPoints.begin(), entryPoints.end(),
                               [](const EntryPoint& entry) { return entry.present || !entry.required; });
}

PluginProbe ProbePlugin(const std::string& library)
{
  PluginProbe probe;
  probe.library = library;
  void* handle = QXDLL::Load(library.c_str());
  if (handle == nullptr) {
    std::array<char, 512> message{};
    QXDLL::GetError(message.data(), message.size());
    probe.message = message.data();
    return probe;
  }
  probe.loaded = true;
  probe.file = FileOf(handle);
  for (const char* name : {"GetDb", "GetSearcher", "CanUnloadNow"}) {
    probe.entryPoints.push_back({name, true, QXDLL::GetProc(handle, name) != nullptr});
  }
  probe.entryPoints.push_back({kOtherProperties, false, QXDLL::GetProc(handle, kOtherProperties) != nullptr});
  probe.version = VersionOf(handle);
  QXDLL::Unload(handle);
  return probe;
}

}  // namespace tool
