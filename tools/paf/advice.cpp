#include "advice.h"

#include <filesystem>
#include <system_error>

#include "configuration.h"
#include "country.h"
#include "exit_code.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace tool {
namespace {

std::string PlacesText()
{
  std::string text = "A configuration file is looked for in this order:";
  for (const Place& place : ConfigurationPlaces()) {
    text += "\n  " + place.name + std::string(22 - place.name.size(), ' ') + Describe(place);
  }
  return text;
}

/** A bare word is a name of the configuration; people also mean the directory beside them. */
std::string DirectoryAdvice(const std::string& database)
{
  std::error_code ignored;
  if (database.empty() || database.find('/') != std::string::npos ||
      !std::filesystem::is_directory(database, ignored)) {
    return "";
  }
  return "\nTo open the directory " + database + " here, write ./" + database;
}

std::string LineAdvice(const std::string& database, const std::string& file)
{
  return "Name the database's directory there, for instance:\n  echo '" + ConfigurationLine(database) +
         "/path/to/database' >> " + file +
         "\n(paf build makes a database from a CSV file; --database also takes its directory as it is.)" +
         DirectoryAdvice(database);
}

std::string NoFileAdvice(const std::string& database)
{
  return PlacesText() + "\n" + LineAdvice(database, "~/.morvex");
}

std::string NotConfiguredAdvice(const std::string& database)
{
  const auto file = ConfigurationFile();
  if (!file) {
    return NoFileAdvice(database);
  }
  std::string names;
  for (const ConfiguredDatabase& known : ConfiguredDatabases()) {
    names += known.name.empty() ? "" : (names.empty() ? "" : ", ") + known.name;
  }
  return "The configuration file " + file->path + " does not name it; it names " + (names.empty() ? "none" : names) +
         ".\n" + LineAdvice(database, file->path);
}

/** The directory of a database, with a slash behind it; empty when it is not known. */
std::string DirectoryText(const std::string& database)
{
  const auto dll = SplitDllName(database);
  std::string directory = dll ? dll->path : database.find('/') == std::string::npos ? "" : database;
  for (const ConfiguredDatabase& known : ConfiguredDatabases()) {
    if (UpperCase(known.name) == UpperCase(database)) {
      directory = known.path;
    }
  }
  return directory.empty() || directory.back() == '/' ? directory : directory + "/";
}

std::string BuildText(const std::string& database)
{
  const std::string directory = DirectoryText(database);
  return "make it again from its source:\n  paf build addresses.csv " +
         (directory.empty() ? "/path/to/database" : directory.substr(0, directory.size() - 1));
}

std::string StatusAdvice(const std::string& database, int status)
{
  switch (status) {
    case PAF_ERR_CONFIGURATION:
      return NoFileAdvice(database);
    case PAF_ERR_NOT_CONFIGURED:
      return NotConfiguredAdvice(database);
    case PAF_ERR_UNKNOWN_COUNTRY:
      return "What stands before the \".\" must be AU, NZ, US, UK or INT.";
    case PAF_ERR_LIBRARY_NOT_LOADED:
    case PAF_ERR_ENTRY_POINT_MISSING:
      return "Plug-ins are looked for beside libqxpaf.so, in the directories of LD_LIBRARY_PATH and in the system's "
             "own.";
    case PAF_ERR_OPEN_FILE:
      return "A database directory holds the files PAF.ver and address.arf; paf build makes one from a CSV file.";
    case PAF_AU_ERR_NOT_A_DATABASE:
      return DirectoryText(database) +
             "address.arf is not what paf build writes. Name the directory of a database, or " + BuildText(database);
    case PAF_AU_ERR_DATABASE_VERSION:
      return DirectoryText(database) + "address.arf was written by another version of paf build. With this one, " +
             BuildText(database);
    case PAF_AU_ERR_DATABASE_TRUNCATED:
    case PAF_AU_ERR_DATABASE_DAMAGED:
      return DirectoryText(database) + "address.arf is not as it was written. Copy it again, or " + BuildText(database);
    default:
      return "";
  }
}

}  // namespace

std::string OpenAdvice(const std::string& database, int status)
{
  if (IsRemoteConfigured() && !IsAboutTheConnection(status)) {
    return "The socket server answers, but it cannot open that: its own configuration must name the database, and its "
           "log says more.\nOn its machine, paf doctor checks both.";
  }
  if (IsRemoteConfigured()) {
    return "The configuration switches remote mode on: the socket server that it names must be running. Without its "
           "lines\nPindleSvr/TcpHost= and PindleSvr/TcpPort= databases are opened on this machine.";
  }
  return StatusAdvice(database, status);
}

void RefuseInRemoteMode(const std::string& command)
{
  if (IsRemoteConfigured()) {
    throw Failure("a socket server cannot answer paf " + command +
                  ", and the configuration names one. Ask where the database is, with a\nconfiguration without "
                  "PindleSvr/TcpHost= and PindleSvr/TcpPort=.");
  }
}

void OpenOrExplain(Session& session, const std::string& database)
{
  const Reply reply = session.Open(database);
  if (reply.status == 0) {
    return;
  }
  const std::string name = database.empty() ? "the default database" : "database \"" + database + "\"";
  const std::string advice = OpenAdvice(database, reply.status);
  throw Failure("cannot open " + name + ": " + StatusText(reply) + (advice.empty() ? "" : "\n" + advice) +
                "\npaf doctor checks the whole set-up.");
}

}  // namespace tool
