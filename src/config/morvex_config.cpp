#include "config/morvex_config.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "config/config_file.h"
#include "platform/ascii.h"
#include "qxpaf/text/encoding.h"

namespace qxpaf {

bool MorvexConfig::OpenKey(const std::string& key, int /*access*/)
{
  EnsureConfigFileLoaded();
  if (!StartOperation()) return false;
  SetCurrentKey(key);
  return true;
}

void MorvexConfig::SetCurrentKey(std::string key)
{
  std::replace(key.begin(), key.end(), '\\', '/');
  if (!key.empty() && key.back() != '/') key += '/';
  currentKey_ = std::move(key);
}

bool MorvexConfig::ReadValue(const std::string& name, std::string& value)
{
  return ReadText(name, value);
}

bool MorvexConfig::ReadValue(const std::wstring& name, std::wstring& value)
{
  return ReadText(name, value);
}

bool MorvexConfig::ReadValueI(const std::string& name, unsigned int& value)
{
  std::string text;
  if (!ReadValue(name, text)) return false;
  char* end = nullptr;
  const unsigned long number = std::strtoul(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0') return SetError(kRegistryNotUnsigned);
  value = static_cast<unsigned int>(number);
  return true;
}

bool MorvexConfig::EnumerateValues(std::vector<std::string>& names, std::vector<std::string>& values)
{
  return EnumerateText(names, values);
}

bool MorvexConfig::EnumerateValues(std::vector<std::wstring>& names, std::vector<std::wstring>& values)
{
  return EnumerateText(names, values);
}

std::vector<std::string> MorvexConfig::EnumerateKeys()
{
  std::vector<std::string> keys;
  if (!StartOperation()) return keys;
  for (const std::string& line : lines_) {
    const std::optional<std::string_view> rest = BelowCurrentKey(line);
    if (!rest) continue;
    const std::size_t end = rest->find_first_of("/=");
    if (end != std::string_view::npos && (*rest)[end] == '/') keys.emplace_back(rest->substr(0, end));
  }
  std::sort(keys.begin(), keys.end());
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  return keys;
}

int MorvexConfig::LastError() const
{
  return lastError_;
}

bool MorvexConfig::SetError(int code)
{
  lastError_ = code;
  return false;
}

int MorvexConfig::ReadConfigFile(FILE* file)
{
  ConfigLineReader<kLongestConfigPiece> reader(file);
  for (std::string_view line; reader.Next(line);) {
    if (!line.empty()) lines_.emplace_back(line);
  }
  return std::ferror(file) != 0 ? kRegistryReadError : 0;
}

/** Runs once: a load that failed is not tried again. */
void MorvexConfig::EnsureConfigFileLoaded()
{
  if (loaded_ != 0) return;
  loaded_ = 1;
  SelfClosingFILE file;
  loadStatus_ = OpenConfigFile(file, kAnyHome) ? ReadConfigFile(file.f()) : kRegistryNoFile;
}

/** Forgets the last error; an object whose file could not be loaded fails with that error again. */
bool MorvexConfig::StartOperation()
{
  lastError_ = 0;
  return loadStatus_ == 0 || SetError(loadStatus_);
}

bool MorvexConfig::FindValue(const std::string& name, std::string_view& value)
{
  if (!StartOperation()) return false;
  if (name.find_first_of("/=") != std::string::npos) return SetError(kRegistryBadName);
  const std::string start = currentKey_ + name + "=";
  const auto line = std::find_if(lines_.begin(), lines_.end(),
                                 [&start](const std::string& text) { return StartsWithIgnoringCase(text, start); });
  if (line == lines_.end()) return SetError(kRegistryNotFound);
  value = std::string_view(*line).substr(start.size());
  return true;
}

/** What follows the current key in a line, if the line is in it. */
std::optional<std::string_view> MorvexConfig::BelowCurrentKey(std::string_view line) const
{
  if (!StartsWithIgnoringCase(line, currentKey_)) return std::nullopt;
  return line.substr(currentKey_.size());
}

template <class S>
bool MorvexConfig::ReadText(const S& name, S& value)
{
  std::string_view found;
  if (!FindValue(ToUtf8IfWide(name), found)) return false;
  value = FromUtf8IfWide<S>(std::string(found));
  return true;
}

template <class S>
bool MorvexConfig::EnumerateText(std::vector<S>& names, std::vector<S>& values)
{
  names.clear();
  values.clear();
  if (!StartOperation()) return false;
  for (const std::string& line : lines_) {
    const std::optional<std::string_view> rest = BelowCurrentKey(line);
    const std::size_t end = rest ? rest->find_first_of("/=") : std::string_view::npos;
    if (end == std::string_view::npos || (*rest)[end] == '/') continue;
    names.push_back(FromUtf8IfWide<S>(std::string(rest->substr(0, end))));
    values.push_back(FromUtf8IfWide<S>(std::string(rest->substr(end + 1))));
  }
  return true;
}

}  // namespace qxpaf
