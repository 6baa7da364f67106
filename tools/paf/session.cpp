#include "session.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <vector>

#include "qxpaf/paf.h"

namespace tool {
namespace {

constexpr std::size_t kResultSize = 2048;  // the longest answer of any call used here, terminator included
constexpr int kFirstLibraryStatus = 600;

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

}  // namespace

bool IsAboutTheQuestion(int status)
{
  return status > 0 && status < kFirstLibraryStatus;
}

std::string StatusText(const Reply& reply)
{
  const std::string number = "status " + std::to_string(reply.status);
  return reply.description.empty() ? number : reply.description + " (" + number + ")";
}

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
  }
  return MakeReply(status, "");
}

Reply Session::Lookup(const std::string& address, bool strict)
{
  return AskInPlace(address, [&](char* text, int size) { return pafLookupAddress(id_, text, size, strict ? 1 : 0); });
}

Reply Session::Address(long dpid)
{
  return Ask([&](char* out, int size) { return pafDpidToAddressId(id_, dpid, out, size); });
}

Reply Session::FixLastLine(const std::string& line)
{
  return AskInPlace(line, [&](char* text, int size) { return pafFixLastLineId(id_, text, size); });
}

Reply Session::FirstRecord(const std::string& query)
{
  return Ask([&](char* out, int size) { return pafGetAddressId(id_, query.c_str(), out, size); });
}

Reply Session::NextRecord()
{
  return Ask([&](char* out, int size) { return pafGetNextAddressId(id_, out, size); });
}

}  // namespace tool
