#include <iomanip>
#include <ostream>

#include "doctor_report.h"

namespace tool {
namespace {

constexpr int kNameWidth = 24;

void PrintRow(std::ostream& out, const std::string& name, const std::string& text)
{
  out << "  " << std::left << std::setw(kNameWidth) << name << text << '\n';
}

/** Prints every line of a text behind an indentation; the first behind `bullet` too. */
void PrintBullet(std::ostream& out, const std::string& text)
{
  out << "  * ";
  for (const char c : text) {
    out << c;
    if (c == '\n') {
      out << "    ";
    }
  }
  out << '\n';
}

void PrintBullets(std::ostream& out, const std::string& heading, const std::vector<std::string>& texts)
{
  if (texts.empty()) {
    return;
  }
  out << '\n' << heading << '\n';
  for (const std::string& text : texts) {
    PrintBullet(out, text);
  }
}

void PrintConfiguration(std::ostream& out, const DoctorReport& report)
{
  out << "Configuration file, in the order in which it is looked for\n";
  for (const Place& place : report.places) {
    const bool elsewhere = !place.path.empty() && place.path != place.name;
    PrintRow(out, place.name, Describe(place) + (elsewhere ? ": " + place.path : ""));
  }
  out << "\nSettings\n";
  for (const Setting& setting : report.settings) {
    PrintRow(out, setting.name, setting.value.value_or("not set") + "   (" + setting.meaning + ")");
  }
  PrintRow(out, "Remote mode", report.remote ? "on: every call goes to the socket server" : "off");
}

void PrintPlugin(std::ostream& out, const PluginProbe& plugin)
{
  if (!plugin.loaded) {
    PrintRow(out, plugin.library, "does not load: " + plugin.message);
    return;
  }
  PrintRow(out, plugin.library, "loads from " + plugin.file);
  PrintRow(out, "", "version " + (plugin.version.empty() ? "unknown" : plugin.version));
  for (const EntryPoint& entry : plugin.entryPoints) {
    const std::string absent = entry.required ? "MISSING" : "absent (optional)";
    PrintRow(out, "", entry.name + ": " + (entry.present ? "present" : absent));
  }
}

std::string FileText(const DatabaseReport& database)
{
  return database.fileBytes ? std::to_string(*database.fileBytes) + " bytes" : "missing";
}

std::string TitleText(const DatabaseReport& database)
{
  return database.title ? "DATABASENAME=" + *database.title : "missing";
}

void PrintDatabase(std::ostream& out, const DatabaseReport& database)
{
  out << "  " << DisplayName(database.configured) << '\n';
  PrintRow(out, "  configured", database.configured.line + database.configured.value);
  PrintRow(out, "  directory", database.directory + (database.directoryExists ? "" : " (missing)"));
  if (!database.configured.options.empty()) {
    PrintRow(out, "  options", database.configured.options);
  }
  PrintRow(out, "  PAF.ver", TitleText(database));
  PrintRow(out, "  address.arf", FileText(database));
  PrintRow(out, "  plug-in",
           database.library.empty() ? "unknown: no country in the name, no PAF.ver" : database.library);
  PrintRow(out, "  opens", database.open.status == 0 ? "yes" : "NO: " + StatusText(database.open));
}

void PrintServer(std::ostream& out, const ServerReport& server)
{
  out << "\nSocket server\n";
  PrintRow(out, server.place, server.IsReached() ? "answers" : "DOES NOT ANSWER: " + StatusText(server.open));
  if (server.IsReached()) {
    PrintRow(out, "  opens " + server.database, server.open.status == 0 ? "yes" : "NO: " + StatusText(server.open));
  }
}

}  // namespace

void PrintReport(std::ostream& out, const DoctorReport& report)
{
  PrintConfiguration(out, report);
  if (report.server) {
    PrintServer(out, *report.server);
  }
  out << "\nPlug-ins\n";
  for (const PluginProbe& plugin : report.plugins) {
    PrintPlugin(out, plugin);
  }
  out << "\nDatabases\n";
  for (const DatabaseReport& database : report.databases) {
    PrintDatabase(out, database);
  }
  if (report.databases.empty()) {
    out << (report.remote ? "  none configured here; the socket server has its own\n" : "  none configured\n");
  }
  PrintBullets(out, "Notes", report.notes);
  PrintBullets(out, "Problems", report.problems);
  out << '\n' << (report.problems.empty() ? "Everything is fine." : "Not everything is fine.") << '\n';
}

}  // namespace tool
