#include "session.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <vector>

#include "configuration.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace tool {
namespace {

constexpr std::size_t kResultSize = 2048;     // the longest answer of any call used here, terminator included
constexpr std::size_t kLongestRequest = 255;  // to a socket server, in bytes
constexpr std::size_t kServerIdDigits = 4;

std::string Description(int status)
{
  std::array<char, 1024> text{};
  pafGetErrorDescription(text.data(), status, static_cast<int>(text.size()));
  return text.data();
}

Reply MakeReply(int status, const char* text)
{
  if (status != 0) {
    return {status, "", Description(status)};
  }
  return {0, text, ""};
}

/** Text for a call that takes it up to its first NUL. */
std::string WithoutNul(std::string text)
{
  std::replace(text.begin(), text.end(), '\0', ' ');
  return text;
}

/** Runs a call whose one buffer is both question and answer. */
template <class Call>
Reply AskInPlace(const std::string& question, Call call)
{
  std::vector<char> buffer(std::max(question.size() + 1, kResultSize));
  std::replace_copy(question.begin(), question.end(), buffer.begin(), '\0', ' ');
  const int status = call(buffer.data(), static_cast<int>(buffer.size()));
  return MakeReply(status, buffer.data());
}

/** Runs a call that only writes. */
template <class Call>
Reply Ask(Call call)
{
  std::array<char, kResultSize> buffer{};
  const int status = call(buffer.data(), static_cast<int>(buffer.size()));
  return MakeReply(status, buffer.data());
}

/** Runs a call that writes nothing. */
Reply Tell(int status)
{
  return MakeReply(status, "");
}

}  // namespace

std::string LibraryName(const std::string& database)
{
  const std::size_t slash = database.find('/');
  const bool relative = slash != std::string::npos && slash != 0;
  // A name that ends in "/" means a directory below ArfBaseDir to the library; that meaning stays.
  std::error_code ignored;
  if (!relative || database.back() == '/' || !std::filesystem::is_directory(database, ignored)) {
    return database;
  }
  return std::filesystem::absolute(database, ignored).lexically_normal().string();
}

Session::~Session()
{
  if (id_ > 0) {
    pafClosePafId(id_);
  }
}

Reply Session::Open(const std::string& database)
{
  int id = 0;
  const int status = pafOpenArfId(&id, 0, LibraryName(database).c_str());
  if (status == 0) {
    id_ = id;
    isRemote_ = IsRemoteConfigured();
  }
  return MakeReply(status, "");
}

/** The refusal of a call whose request would be cut; nothing when it fits, or when there is no server. */
std::optional<Reply> Session::RefusalOf(std::string_view function,
                                        std::initializer_list<std::string_view> arguments) const
{
  std::size_t size = function.size() + 1 + kServerIdDigits;
  for (const std::string_view argument : arguments) {
    size += 1 + argument.size();
  }
  if (!isRemote_ || size <= kLongestRequest) {
    return std::nullopt;
  }
  return Reply{PAF_ERR_SERVER_INPUT_TOO_LONG, "",
               "The text is " + std::to_string(size - kLongestRequest) +
                   " bytes too long for a socket server. Shorten it, or ask a database on this machine."};
}

Reply Session::Lookup(const std::string& address, bool strict)
{
  if (const auto refusal = RefusalOf(strict ? "pafGetDpidId" : "pafGetDpidNonAmasId", {address})) {
    return *refusal;
  }
  return AskInPlace(address, [&](char* text, int size) { return pafLookupAddress(id_, text, size, strict ? 1 : 0); });
}

Reply Session::Address(long dpid)
{
  return Ask([&](char* out, int size) { return pafDpidToAddressId(id_, dpid, out, size); });
}

Reply Session::FixLastLine(const std::string& line)
{
  if (const auto refusal = RefusalOf("pafFixLastLineId", {line})) {
    return *refusal;
  }
  return AskInPlace(line, [&](char* text, int size) { return pafFixLastLineId(id_, text, size); });
}

Reply Session::Validate(const std::string& address, bool strict, char& verdict)
{
  const std::string question = WithoutNul(address);
  const int flags = strict ? PAF_AU_VALIDATE_STRICT : PAF_AU_VALIDATE_LENIENT;
  if (const auto refusal = RefusalOf("pafValidateFullAddressId", {std::to_string(flags), address})) {
    return *refusal;
  }
  return Ask(
      [&](char* out, int size) { return pafValidateFullAddressId(id_, question.c_str(), out, size, flags, &verdict); });
}

Reply Session::Format(const std::string& address, long option)
{
  const std::string question = WithoutNul(address);
  if (const auto refusal = RefusalOf("pafFormatAddressId", {std::to_string(option), address})) {
    return *refusal;
  }
  std::vector<char> out(std::max(2 * question.size(), kResultSize));
  const int status = pafFormatAddressId(id_, question.c_str(), out.data(), option, static_cast<int>(out.size()));
  return MakeReply(status, out.data());
}

int Session::FindStatus()
{
  return pafGetFindStatusId(id_);
}

Reply Session::Property(const std::string& name)
{
  return Ask([&](char* out, int size) { return pafGetPropertiesId(id_, name.c_str(), out, size); });
}

Reply Session::SetProperty(const std::string& name, const std::string& value)
{
  if (const auto refusal = RefusalOf("pafSetPropertiesId", {name, value})) {
    return *refusal;
  }
  return Tell(pafSetPropertiesId(id_, name.c_str(), value.c_str()));
}

Reply Session::FirstRecord(const std::string& query)
{
  if (const auto refusal = RefusalOf("pafGetAddressId", {query})) {
    return *refusal;
  }
  return Ask([&](char* out, int size) { return pafGetAddressId(id_, query.c_str(), out, size); });
}

Reply Session::NextRecord()
{
  return Ask([&](char* out, int size) { return pafGetNextAddressId(id_, out, size); });
}

Reply Session::BeginPolygon(const std::string& polygon, const std::string& middle)
{
  return Tell(pafBeginPolygonSearch(id_, WithoutNul(polygon).c_str(), middle.c_str()));
}

Reply Session::NextInPolygon()
{
  return Ask([&](char* out, int size) { return pafGetNextAddressInPolygon(id_, out, size); });
}

Reply Session::BeginSearch(const std::string& words)
{
  return Tell(pafBeginAddressSearch(id_, WithoutNul(words).c_str()));
}

Reply Session::NextFound()
{
  return Ask([&](char* out, int size) { return pafGetNextAddressSearch(id_, out, size); });
}

Reply Session::Statistics(const std::string& kind, const std::string& what, const std::string& metres)
{
  const std::string question = WithoutNul(what);
  return Ask([&](char* out, int size) {
    return pafGetSearchStatistics(id_, kind.c_str(), question.c_str(), metres.c_str(), "", out, size);
  });
}

Reply Session::BeginConcordance(const std::string& from, const std::string& code, const std::string& to, int percent)
{
  const auto argument = [](const std::string& text) { return reinterpret_cast<std::intptr_t>(text.c_str()); };
  return Tell(pafBeginGifConcordance(id_, argument(from), argument(code), argument(to), 0, 0, percent));
}

Reply Session::NextCorrespondence(Correspondence& correspondence)
{
  std::array<char, kResultSize> from{};
  std::array<char, kResultSize> to{};
  PafAuConcordance weight{};
  constexpr int kSize = kResultSize;
  const int status = pafGetNextGifConcordance(id_, from.data(), kSize, to.data(), kSize, &weight);
  correspondence = {from.data(), to.data(), weight.addresses, weight.total, weight.percent};
  return Tell(status);
}

Reply Session::FirstHint(const std::string& text, const std::string& place, int most)
{
  if (const auto refusal = RefusalOf("pafGetPopupHintId", {text, place, std::to_string(most)})) {
    return *refusal;
  }
  const std::string question = WithoutNul(text);
  return Ask(
      [&](char* out, int size) { return pafGetPopupHintId(id_, question.c_str(), place.c_str(), most, out, size); });
}

Reply Session::NextHint()
{
  return Ask([&](char* out, int size) { return pafGetNextPopupHintId(id_, out, size); });
}

}  // namespace tool
