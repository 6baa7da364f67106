#include "database_stamp.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "arf/format/layout.h"
#include "configuration.h"

namespace tool {
namespace {

namespace header = arf::layout::header;

std::string HexDigits(const char* bytes, std::size_t count)
{
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

}  // namespace

std::string DatabaseStamp(Session& session)
{
  if (IsRemoteConfigured()) {
    return "";
  }
  const std::filesystem::path directory = session.Property("OpenArfPaths").text;
  std::ifstream file(directory / "address.arf", std::ios::binary);
  std::array<char, header::kSize> bytes{};
  if (!file.read(bytes.data(), bytes.size())) {
    return "";
  }
  return HexDigits(bytes.data() + header::kChecksum, sizeof(std::uint64_t));
}

}  // namespace tool
