#include "doctor_report.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "advice.h"
#include "command.h"
#include "country.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kVersionFile = "PAF.ver";
constexpr const char* kAddressFile = "address.arf";

std::vector<Setting> Settings()
{
  std::vector<Setting> settings = {
      {"ArfBaseDir", {}, "directory below which names ending in \"/\" are looked for"},
      {"PafDir", {}, "directory of the default database, the one without a name"},
      {"OpenPaf", {}, "how databases are opened: Map, Mem or Ram, otherwise from disk"},
  };
  for (Setting& setting : settings) {
    setting.value = ConfigurationValue("", setting.name);
  }
  for (const char* name : {"TcpHost", "TcpPort"}) {
    settings.push_back(
        {std::string("PindleSvr/") + name, ConfigurationValue("PindleSvr", name), "switches remote mode on when set"});
  }
  return settings;
}

/** The text behind DATABASENAME=, "" when the file has no such line, nothing when there is no file. */
std::optional<std::string> DatabaseTitle(const fs::path& directory)
{
  std::ifstream file(directory / kVersionFile);
  if (!file) {
    return std::nullopt;
  }
  constexpr std::string_view key = "DATABASENAME=";
  std::string line;
  while (std::getline(file, line)) {
    if (UpperCase(line.substr(0, key.size())) == key) {
      line.erase(line.find_last_not_of("\r\n") + 1);
      return line.substr(key.size());
    }
  }
  return "";
}

void ExamineFiles(DatabaseReport& report)
{
  std::error_code error;
  report.directoryExists = fs::is_directory(report.directory, error);
  report.title = DatabaseTitle(report.directory);
  const std::uintmax_t bytes = fs::file_size(fs::path(report.directory) / kAddressFile, error);
  if (!error) {
    report.fileBytes = bytes;
  }
}

std::string LibraryOf(const std::string& country)
{
  const auto* found =
      std::find_if(kCountries.begin(), kCountries.end(), [&](const Country& known) { return known.code == country; });
  return found == kCountries.end() ? "" : std::string(found->library);
}

DatabaseReport ExamineDatabase(const ConfiguredDatabase& configured)
{
  DatabaseReport report;
  report.configured = configured;
  report.directory = configured.path;
  const auto dll = SplitDllName(configured.path);
  if (dll) {
    report.directory = dll->path;
    report.library = dll->library;
  }
  ExamineFiles(report);
  if (!dll) {
    report.country = SplitDatabaseName(configured.name).country;
    if (report.country.empty() && report.title) {
      report.country = CountryOfDatabaseTitle(*report.title);
    }
    report.library = LibraryOf(report.country);
  }
  Session session;
  report.open = session.Open(configured.name);
  if (report.open.status == 0) {
    report.hasMintedIdentifiers = session.Property("Notice").text.find("minted") != std::string::npos;
  }
  return report;
}

/** The Australian plug-in, which also serves the barcodes, and every other that a database needs. */
std::vector<PluginProbe> ProbePlugins(const std::vector<DatabaseReport>& databases)
{
  std::vector<std::string> libraries = {LibraryOf(kDefaultDatabase)};
  for (const DatabaseReport& database : databases) {
    if (!database.library.empty() &&
        std::find(libraries.begin(), libraries.end(), database.library) == libraries.end()) {
      libraries.push_back(database.library);
    }
  }
  std::vector<PluginProbe> probes;
  probes.reserve(libraries.size());
  for (const std::string& library : libraries) {
    probes.push_back(ProbePlugin(library));
  }
  return probes;
}

std::string OpenProblem(const DatabaseReport& database)
{
  const std::string advice = OpenAdvice(database.configured.name, database.open.status);
  return DisplayName(database.configured) + " cannot be opened: " + StatusText(database.open) +
         (advice.empty() ? "" : "\n" + advice);
}

ServerReport ExamineServer()
{
  ServerReport report;
  report.place = ConfigurationValue("PindleSvr", "TcpHost").value_or("") + ":" +
                 ConfigurationValue("PindleSvr", "TcpPort").value_or("");
  report.database = DefaultDatabase();
  Session session;
  report.open = session.Open(report.database);
  return report;
}

std::string ServerProblem(const ServerReport& server)
{
  const std::string what = server.IsReached() ? " does not open " + server.database : " does not answer";
  return "The socket server " + server.place + what + ": " + StatusText(server.open) + "\n" +
         OpenAdvice(server.database, server.open.status);
}

void CollectProblems(DoctorReport& report)
{
  const auto used = std::find_if(report.places.begin(), report.places.end(),
                                 [](const Place& place) { return place.state == PlaceState::Used; });
  if (used == report.places.end()) {
    report.problems.push_back("There is no configuration file. Make one that names a database directory:\n  echo '" +
                              ConfigurationLine(kDefaultDatabase) + "/path/to/database' > ~/.morvex");
    return;
  }
  if (!used->reason.empty()) {
    report.problems.push_back("The configuration file " + used->path + " cannot be read: " + used->reason + ".");
  } else if (report.databases.empty() && !report.remote) {
    report.problems.push_back("The configuration names no database. Add a line to " + used->path + ":\n  " +
                              ConfigurationLine(kDefaultDatabase) + "/path/to/database");
  }
  if (report.server && report.server->open.status != 0) {
    report.problems.push_back(ServerProblem(*report.server));
  }
  const bool isServed = !report.server || report.server->IsReached();
  for (const DatabaseReport& database : report.databases) {
    if (database.open.status != 0 && isServed) {
      report.problems.push_back(OpenProblem(database));
    }
  }
}

void NoteLongLines(DoctorReport& report, const std::string& path)
{
  constexpr std::size_t longest = 254;
  std::ifstream file(path);
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.size() > longest) {
      report.notes.push_back("Line " + std::to_string(number) + " of " + path + " has more than " +
                             std::to_string(longest) +
                             " characters: this report, and programs that use the registry functions, see it cut.");
    }
  }
}

void CollectNotes(DoctorReport& report)
{
  if (const auto file = ConfigurationFile()) {
    NoteLongLines(report, file->path);
  }
  const std::string asked = DefaultDatabase();
  bool named = report.databases.empty();
  for (const DatabaseReport& database : report.databases) {
    named = named || UpperCase(database.configured.name) == UpperCase(asked);
    if (database.hasMintedIdentifiers) {
      report.notes.push_back(DisplayName(database.configured) +
                             ": its identifiers were minted when it was built and must not be printed on mail.");
    }
    if (!database.directory.empty() && database.directory.front() != '/') {
      report.notes.push_back(DisplayName(database.configured) + ": \"" + database.directory +
                             "\" is relative, so it depends on the directory in which a program runs.");
    }
  }
  if (!named && asked.find('/') == std::string::npos) {
    report.notes.push_back("paf asks " + asked +
                           " unless told otherwise, which is not among the databases; use "
                           "--database, or set " +
                           kDatabaseVariable + ".");
  }
}

}  // namespace

DoctorReport Examine()
{
  DoctorReport report;
  report.places = ConfigurationPlaces();
  report.settings = Settings();
  report.remote = IsRemoteConfigured();
  if (report.remote) {
    report.server = ExamineServer();
  }
  for (const ConfiguredDatabase& database : ConfiguredDatabases()) {
    report.databases.push_back(ExamineDatabase(database));
  }
  report.plugins = ProbePlugins(report.databases);
  CollectProblems(report);
  CollectNotes(report);
  return report;
}

bool ServerReport::IsReached() const
{
  return !IsAboutTheConnection(open.status);
}

std::string DisplayName(const ConfiguredDatabase& database)
{
  return database.name.empty() ? "(default database)" : database.name;
}

}  // namespace tool
