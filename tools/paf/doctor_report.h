/** Everything that paf doctor finds out, before it is printed. */
#ifndef PAF_TOOL_DOCTOR_REPORT_H
#define PAF_TOOL_DOCTOR_REPORT_H

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "configuration.h"
#include "json.h"
#include "plugin_probe.h"
#include "session.h"

namespace tool {

/** A value of the configuration's root, or of the key that controls remote mode. */
struct Setting
{
  std::string name;
  std::optional<std::string> value;
  std::string meaning;
};

struct DatabaseReport
{
  ConfiguredDatabase configured;
  std::string directory;  ///< where the database's files are looked for
  bool directoryExists = false;
  std::optional<std::string> title;         ///< behind DATABASENAME= in PAF.ver; nothing when there is no PAF.ver
  std::optional<std::uintmax_t> fileBytes;  ///< of address.arf; nothing when there is none
  std::string country;                      ///< empty when the name or PAF.ver decides none
  std::string library;                      ///< the plug-in that serves it; empty when that is unknown
  Reply open;                               ///< what opening an instance answered
  bool hasMintedIdentifiers = false;        ///< made by the builder, not those of a post office
};

/** The socket server of remote mode. */
struct ServerReport
{
  std::string place;     ///< "host:port", as the configuration has them
  std::string database;  ///< the one that was asked for
  Reply open;            ///< what opening an instance answered

  /** False when no answer came. */
  bool IsReached() const;
};

struct DoctorReport
{
  std::vector<Place> places;
  std::vector<Setting> settings;
  bool remote = false;
  std::optional<ServerReport> server;  ///< in remote mode
  std::vector<PluginProbe> plugins;
  std::vector<DatabaseReport> databases;
  std::vector<std::string> problems;  ///< what is wrong and what to do about it, a few lines each
  std::vector<std::string> notes;     ///< what may surprise, without being wrong
};

DoctorReport Examine();

void PrintReport(std::ostream& out, const DoctorReport& report);
Json ToJson(const DoctorReport& report);

/** "AU.Main", or words for the default database. */
std::string DisplayName(const ConfiguredDatabase& database);

}  // namespace tool

#endif
