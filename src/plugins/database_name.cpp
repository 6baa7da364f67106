#include "plugins/database_name.h"

#include <cstdio>
#include <optional>
#include <unordered_map>

#include "config/setting.h"
#include "errors/status_text.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "platform/immortal.h"
#include "platform/self_closing_file.h"
#include "qxpaf/paf.h"
#include "qxpaf/platform/path.h"
#include "qxpaf/platform/thread.h"

namespace qxpaf {
namespace {

constexpr const char* kRootKey = "";
constexpr const char* kArfKey = "ARF";

/**
 * Names, paths and entries of the path cache take at most so many bytes. Where a wild card is configured, every name
 * that a client makes up resolves, and would stay.
 */
constexpr std::size_t kMostRememberedBytes = std::size_t{1} << 20;

/** What was resolved before. The lock is held for short reads and writes, never while the configuration is read. */
struct PathCache
{
  QXMutex lock{0};
  std::unordered_map<std::string, std::string> pathOfName;
  std::size_t rememberedBytes = 0;  ///< of pathOfName
  std::optional<std::string> baseDirectory;
  std::optional<std::string> defaultPath;
};

PathCache& Cache()
{
  return Immortal<PathCache>();
}

std::optional<std::string> CachedPath(const std::string& name)
{
  const QXScopedLock lock(Cache().lock, true);
  const auto found = Cache().pathOfName.find(name);
  if (found == Cache().pathOfName.end()) return std::nullopt;
  return found->second;
}

/** What does not fit any more is not remembered; what is there stays, so that its names keep their paths. */
void RememberPath(const std::string& name, const std::string& path)
{
  PathCache& cache = Cache();
  const std::size_t bytes = sizeof(decltype(cache.pathOfName)::value_type) + name.size() + path.size();
  const QXScopedLock lock(cache.lock, true);
  if (bytes > kMostRememberedBytes - cache.rememberedBytes) return;
  if (cache.pathOfName.emplace(name, path).second) cache.rememberedBytes += bytes;
}

std::optional<std::string> CachedSetting(std::optional<std::string> PathCache::*setting)
{
  const QXScopedLock lock(Cache().lock, true);
  return Cache().*setting;
}

void RememberSetting(std::optional<std::string> PathCache::*setting, const std::string& value)
{
  const QXScopedLock lock(Cache().lock, true);
  Cache().*setting = value;
}

/** A name taken apart: "aus.main" is database "main" of country "AU". */
struct NameParts
{
  std::string country;  ///< a known country, or empty
  std::string database;
};

/** The library's code of a country that was written in any of its usual codes, in upper case; empty when unknown. */
std::string KnownCountry(const std::string& written)
{
  static constexpr struct
  {
    const char* written;
    const char* country;
  } kCountries[] = {{"US", "US"},  {"AU", "AU"},  {"NZ", "NZ"},  {"UK", "UK"},  {"INT", "INT"},
                    {"USA", "US"}, {"AUS", "AU"}, {"NZL", "NZ"}, {"GBR", "UK"}, {"GB", "UK"}};
  for (const auto& row : kCountries) {
    if (written == row.written) return row.country;
  }
  return {};
}

bool IsSeparator(char c)
{
  return c == '/' || c == '\\';
}

bool HasDriveColon(const std::string& name)
{
  return name.size() > 1 && name[1] == ':';
}

bool HasSeparator(const std::string& name)
{
  return name.find_first_of("/\\") != std::string::npos;
}

bool IsAbsolute(const std::string& database)
{
  return !database.empty() && (IsSeparator(database.front()) || HasDriveColon(database));
}

bool EndsInSeparator(const std::string& database)
{
  return !database.empty() && IsSeparator(database.back());
}

/** Country codes have two or three letters, so only a "." behind those parts a name. */
int TakeApart(const std::string& name, NameParts& parts)
{
  const std::size_t dot = name.find('.');
  const bool parted = dot == 2 || dot == 3;
  const std::string database = parted ? name.substr(dot + 1) : std::string();
  const std::string country = KnownCountry(AsciiUpper(parted ? name.substr(0, dot) : name));
  if (!country.empty()) {
    parts = {country, database};
    return PAF_OK;
  }
  const bool isPath = HasSeparator(name) || HasDriveColon(name);
  const bool textBehindDot = dot != std::string::npos && dot + 1 < name.size();
  if (!database.empty() || (textBehindDot && !isPath)) return PAF_ERR_UNKNOWN_COUNTRY;
  parts = {std::string(), name};
  return PAF_OK;
}

int PathBelowBaseDirectory(const std::string& database, std::string& path)
{
  std::optional<std::string> base = CachedSetting(&PathCache::baseDirectory);
  if (!base) {
    std::string value;
    const int error = ReadSetting(kRootKey, "ArfBaseDir", value);
    if (error != 0) return RegistryErrorToPafError(error);
    base = QX_Path(value).AddTrailingPathDivider().String();
    RememberSetting(&PathCache::baseDirectory, *base);
  }
  path = *base + database;
  return PAF_OK;
}

int DefaultPath(std::string& path)
{
  if (const std::optional<std::string> cached = CachedSetting(&PathCache::defaultPath)) {
    path = *cached;
    return PAF_OK;
  }
  const int error = ReadSetting(kRootKey, "PafDir", path);
  if (error != 0) return RegistryErrorToPafError(error);
  RememberSetting(&PathCache::defaultPath, path);
  return PAF_OK;
}

/** "/data/au/" and the database's name, where the country is configured as "/data/au/" and a wild card. */
bool PathByWildcard(const NameParts& parts, std::string& path)
{
  const std::string& database = parts.database;
  if (database.empty() || database.front() == '.' || HasSeparator(database)) return false;
  std::string pattern;
  if (ReadSetting(kArfKey, parts.country, pattern) != 0 || pattern.empty()) return false;
  if (pattern.back() != '*' && pattern.back() != '?') return false;
  path = QX_Path(pattern).ExtractFilePath().AddTrailingPathDivider().String() + database;
  return true;
}

int ConfiguredPath(const std::string& name, const NameParts& parts, std::string& path)
{
  if (const std::optional<std::string> cached = CachedPath(name)) {
    path = *cached;
    return PAF_OK;
  }
  const std::string key = parts.country.empty() ? kArfKey : kArfKey + ("\\" + parts.country);
  const int error = ReadSetting(key, parts.database, path);
  if (error != 0 && !PathByWildcard(parts, path)) return RegistryErrorToPafError(error);
  RememberPath(name, path);
  return PAF_OK;
}

void CutOptions(std::string& path, std::string& options)
{
  if (IsDllName(path)) return;  // there the ";" stands before the plug-in's path
  const std::size_t semicolon = path.find(';');
  if (semicolon == std::string::npos) return;
  options = path.substr(semicolon) + ";";
  path.resize(semicolon);
}

std::string ModeText(const std::string& options)
{
  static const std::string kOption = ";OPENARF=";
  const std::string upper = AsciiUpper(options);
  const std::size_t found = upper.find(kOption);
  if (found != std::string::npos) {
    const std::size_t begin = found + kOption.size();
    const std::size_t end = upper.find(';', begin);
    if (end != std::string::npos) return upper.substr(begin, end - begin);
  }
  std::string value;
  ReadSetting(kRootKey, "OpenPaf", value);
  return AsciiUpper(value);
}

OpenMode ModeNamed(const std::string& upperText)
{
  if (upperText == "RAM" || upperText == "MEM") return kModeMemory;
  return upperText == "MAP" ? kModeMapped : kModeDisk;
}

/** The country that a version file's upper-case "DATABASENAME=" text stands for; the Australian files came first. */
std::string CountryNamed(std::string_view text)
{
  static constexpr struct
  {
    const char* prefix;
    const char* country;
  } kPrefixes[] = {{"NZ", "NZ"}, {"NEWZEALAND", "NZ"}, {"NEW ZEALAND", "NZ"}, {"UK", "UK"},
                   {"GB", "UK"}, {"USA", "US"},        {"US ", "US"}};
  for (const auto& row : kPrefixes) {
    if (StartsWithIgnoringCase(text, row.prefix)) return row.country;
  }
  return "AU";
}

}  // namespace

bool IsDllName(std::string_view name)
{
  return StartsWithIgnoringCase(name, "DLL:");
}

int GetArfPath(const char* name, std::string& path, std::string& country, std::string& options)
{
  path.clear();
  country.clear();
  options.clear();
  if (IsDllName(name)) {
    path = name;
    return PAF_OK;
  }
  NameParts parts;
  if (const int status = TakeApart(name, parts); status != 0) return status;
  country = parts.country;
  if (IsAbsolute(parts.database)) {
    path = parts.database;
    return PAF_OK;
  }
  if (EndsInSeparator(parts.database)) return PathBelowBaseDirectory(parts.database, path);
  if (parts.database.empty() && country.empty()) return DefaultPath(path);
  const int status = ConfiguredPath(name, parts, path);
  if (status == 0) CutOptions(path, options);
  return status;
}

void ExpireArfPaths()
{
  PathCache& cache = Cache();
  const QXScopedLock lock(cache.lock, true);
  GiveBack(cache.pathOfName);
  cache.rememberedBytes = 0;
  cache.baseDirectory.reset();
  cache.defaultPath.reset();
}

int OpeningMode(int mode, const std::string& options)
{
  if (mode == kModeConfigured) return ModeNamed(ModeText(options));
  return mode < kModeDisk || mode > kModeHighest ? kModeDisk : mode;
}

int CountryOfDatabase(const std::string& directory, std::string& country, char* errText, int errSize)
{
  const QX_Path versionFile = QX_Path(directory).AddTrailingPathDivider() += "PAF.ver";
  SelfClosingFILE file;
  if (!file.Open(versionFile.c_str(), "r", false)) {
    CopyCut(errText, Capacity(errSize), versionFile.Native());
    return PAF_ERR_OPEN_FILE;
  }
  static constexpr std::string_view kName = "DATABASENAME=";
  char line[256];
  country = CountryNamed("");
  while (std::fgets(line, sizeof line, file.f()) != nullptr) {
    if (!StartsWithIgnoringCase(line, kName)) continue;
    country = CountryNamed(line + kName.size());
    break;
  }
  return PAF_OK;
}

}  // namespace qxpaf
