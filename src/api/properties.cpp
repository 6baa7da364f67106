/** Reading and setting properties. */
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "api/change_arf.h"
#include "api/library_properties.h"
#include "api/property_names.h"
#include "api/query_frame.h"
#include "platform/ascii.h"
#include "platform/bounded.h"
#include "plugins/database_name.h"
#include "plugins/open_databases.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"
#include "remote/remote_mode.h"

using namespace qxpaf;

namespace {

constexpr std::string_view kPropertyName = "PropertyName";
constexpr const char* kArfVersion = "ArfVersion:";
constexpr const char* kArfStatus = "ArfStatus:";

/** Where an answer goes. */
struct Answer
{
  char* out;
  int size;

  int Refusing(std::string_view text) const
  {
    return CopyWhole(out, Capacity(size), text) ? PAF_OK : PAF_ERR_BUFFER_TOO_SMALL;
  }
  int Cutting(std::string_view text) const { return CopyCut(out, Capacity(size), text), PAF_OK; }
};

/** "ArfVersion:" or "ArfStatus:" when the name begins with it, otherwise null. */
const char* DatabasePrefix(std::string_view name)
{
  for (const char* const prefix : {kArfVersion, kArfStatus}) {
    if (StartsWithIgnoringCase(name, prefix)) return prefix;
  }
  return nullptr;
}

/** Asks `ask` for the prefix and the path of the database that the name names behind it. */
template <class Ask>
int AskAboutDatabase(const char* prefix, std::string_view name, const Answer& answer, Ask&& ask)
{
  const std::string database(name.substr(std::strlen(prefix)));
  std::string path;
  std::string country;
  std::string options;
  if (GetArfPath(database.c_str(), path, country, options) != 0) {
    return answer.Cutting(prefix == kArfStatus ? "ARF Not Registered" : "");
  }
  return ask((prefix + path).c_str());
}

std::string_view CountryOf(IArfSearcher& searcher)
{
  IArfDb* const db = searcher.GetArfDb();
  const char* const country = db != nullptr ? db->GetCountry() : nullptr;
  return country != nullptr ? country : "";
}

int AskSearcher(IArfSearcher& searcher, int id, const char* name, const Answer& answer)
{
  const auto ask = [&](const char* request) {
    return RecordFailure(searcher.GetProperties(request, answer.out, answer.size), id, nullptr);
  };
  if (const char* const prefix = DatabasePrefix(name)) return AskAboutDatabase(prefix, name, answer, ask);
  if (EqualIgnoringCase(name, "CountryCode")) return answer.Cutting(CountryOf(searcher));
  return ask(name);
}

bool GoesToDefaultPlugin(std::string_view name)
{
  for (const char* const prefix : {"Barcode:", "Barcode2:", "Barcode3:", "GIFProperty:"}) {
    if (StartsWithIgnoringCase(name, prefix)) return true;
  }
  return IsDefaultPluginProperty(name);
}

int AskDefaultPlugin(const char* name, const Answer& answer)
{
  const auto ask = [&](const char* request) { return GetPropertyFromDll(request, answer.out, answer.size); };
  if (const char* const prefix = DatabasePrefix(name)) return AskAboutDatabase(prefix, name, answer, ask);
  return GoesToDefaultPlugin(name) ? ask(name) : PAF_OK;
}

int ReadLocal(int id, IArfSearcher* searcher, const char* name, const Answer& answer)
{
  if (const auto text = LocalProperty(name)) return answer.Refusing(*text);
  if (EqualIgnoringCase(name, "Properties")) return ListPropertyNames(searcher, id, answer.out, answer.size);
  if (StartsWithIgnoringCase(name, kPropertyName)) {
    const long digits = std::strtol(name + kPropertyName.size(), nullptr, 10);
    const int number = static_cast<int>(std::clamp<long>(digits, INT_MIN, INT_MAX));
    return GetPropertyNameByIndex(searcher, id, number, answer.out, answer.size);
  }
  return searcher != nullptr ? AskSearcher(*searcher, id, name, answer) : AskDefaultPlugin(name, answer);
}

int ReadProperty(int id, const char* name, const Answer& answer)
{
  if (const auto text = ProcessProperty(name)) return answer.Refusing(*text);
  PafInfo* info = nullptr;
  const DecrementUsageCountWhenFinished guard(info);
  AcquireInstance(id, info);  // the names that need no instance are answered all the same
  const bool remote = info != nullptr ? info->serverId != 0 : IsRemoteMode();
  IArfSearcher* const searcher = info != nullptr ? info->searcher : nullptr;
  if (EqualIgnoringCase(name, "OpenARF")) {
    if (remote) return answer.Refusing(info != nullptr ? info->remoteArfName : "");
    return answer.Refusing(searcher != nullptr ? info->arfName : "");
  }
  if (!remote) return ReadLocal(id, searcher, name, answer);
  if (info != nullptr) {
    if (const int status = ReconnectIfBroken(*info); status != 0) return status;
  }
  return GetPropertiesIdViaSocket(info != nullptr ? info->serverId : 0, name, answer.out, answer.size);
}

}  // namespace

int pafGetPropertiesId(int id, const char* name, char* out, int size)
{
  if (out == nullptr || size < 1) return PAF_ERR_BUFFER_TOO_SMALL;
  out[0] = '\0';
  return AtBoundary([&] { return ReadProperty(id, name != nullptr ? name : "", {out, size}); });
}

int pafSetPropertiesId(int id, const char* name, const char* value)
{
  if (name == nullptr) name = "";
  if (value == nullptr) value = "";
  return AtBoundary([&] {
    if (SetConnectionProperty(name, value)) return static_cast<int>(PAF_OK);
    if (EqualIgnoringCase(name, "OpenARF")) return ChangeArf(id, 0, value);
    const auto setRemotely = [&](PafInfo& info) {
      const int status = SetPropertiesIdViaSocket(info.serverId, name, value);
      if (status == 0) RememberProperty(info, name, value);
      return status;
    };
    return WithInstance(id, Reconnect::First, setRemotely, [&](IArfSearcher& searcher) {
      char errText[kErrorTextSize] = {};
      const int status = searcher.SetProperties(name, value, errText, sizeof errText);
      errText[sizeof errText - 1] = '\0';
      return RecordFailure(status, id, errText);
    });
  });
}
