// Writes as many addresses as a country has, for measuring builds: the rows of address files divided by vertical bars,
// again and again, each time in other localities and with other identifiers and places.
//
//   make_country ROWS LOCALITIES.csv INPUT.psv... > OUT.psv
//
// LOCALITIES.csv has the columns postcode, locality, state, name, latitude, longitude in this order. The inputs have a
// first row with the names ADDRESS_DETAIL_PID, LOCALITY_NAME, STATE, POSTCODE, MB_CODE, LATITUDE, LONGITUDE among
// others, the same in all, and rows of one locality stand together; streets and numbers stay as they are.
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

using Fields = std::vector<std::string_view>;

Fields Split(std::string_view line, char divider)
{
  Fields fields;
  for (std::size_t end; (end = line.find(divider)) != std::string_view::npos; line.remove_prefix(end + 1)) {
    fields.push_back(line.substr(0, end));
  }
  fields.push_back(line);
  return fields;
}

std::vector<std::string> ReadLines(const std::string& path)
{
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  if (lines.empty()) throw std::runtime_error(path + " is empty");
  return lines;
}

struct Locality
{
  std::string name, state, postcode;
  double latitude = 0, longitude = 0;
};

std::vector<Locality> ReadLocalities(const std::string& path)
{
  std::vector<Locality> localities;
  const std::vector<std::string> lines = ReadLines(path);
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const Fields fields = Split(lines[i], ',');
    if (fields.size() < 6 || lines[i].find('"') != std::string::npos) continue;
    localities.push_back({std::string(fields[1]), std::string(fields[2]), std::string(fields[0]),
                          std::atof(std::string(fields[4]).c_str()), std::atof(std::string(fields[5]).c_str())});
  }
  if (localities.empty()) throw std::runtime_error(path + " has no localities");
  return localities;
}

/** Makes copies of rows in other localities. */
class Country
{
 public:
  Country(std::vector<Locality> localities, std::string_view header) : localities_(std::move(localities))
  {
    const Fields names = Split(header, '|');
    const auto place = [&names](std::string_view name) {
      for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] == name) return i;
      }
      throw std::runtime_error("the column " + std::string(name) + " is missing");
    };
    pid_ = place("ADDRESS_DETAIL_PID");
    locality_ = place("LOCALITY_NAME");
    state_ = place("STATE");
    postcode_ = place("POSTCODE");
    meshBlock_ = place("MB_CODE");
    latitude_ = place("LATITUDE");
    longitude_ = place("LONGITUDE");
  }

  void Write(std::string_view row, std::uint64_t round)
  {
    Fields fields = Split(row, '|');
    const std::string key = std::string(fields[locality_]) + "|" + std::string(fields[postcode_]);
    const auto [number, isNew] = numbers_.try_emplace(key, numbers_.size());
    const std::size_t at = (number->second + round * kStep) % localities_.size();
    const Locality& target = localities_[at];
    const std::string pid = "GA" + target.state + "_" + std::to_string(700'000'000 + next_++);
    const std::string meshBlock = std::to_string(Number(fields[meshBlock_]) + round * 100'000);
    fields[pid_] = pid;
    fields[locality_] = target.name;
    fields[state_] = target.state;
    fields[postcode_] = target.postcode;
    fields[meshBlock_] = meshBlock;
    const std::string latitude = Near(fields[latitude_], target.latitude);
    const std::string longitude = Near(fields[longitude_], target.longitude);
    fields[latitude_] = latitude;
    fields[longitude_] = longitude;
    line_.clear();
    for (const std::string_view field : fields) line_.append(field) += '|';
    line_.back() = '\n';
    if (std::fwrite(line_.data(), 1, line_.size(), stdout) != line_.size()) throw std::runtime_error("cannot write");
  }

 private:
  static constexpr std::size_t kStep = 7919;  // localities from one round to the next; shares no factor with lists

  static std::uint64_t Number(std::string_view text)
  {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
  }

  /** The coordinate's place in its own tenth of a degree, around another coordinate. */
  static std::string Near(std::string_view text, double center)
  {
    if (text.empty()) return {};
    const double value = std::atof(std::string(text).c_str());
    const double shifted = center + (value * 10 - static_cast<double>(static_cast<long>(value * 10))) / 20;
    char buffer[32];
    const int length = std::snprintf(buffer, sizeof buffer, "%.8f", shifted);
    return {buffer, static_cast<std::size_t>(length)};
  }

  std::vector<Locality> localities_;
  std::unordered_map<std::string, std::size_t> numbers_;
  std::size_t pid_ = 0, locality_ = 0, state_ = 0, postcode_ = 0, meshBlock_ = 0, latitude_ = 0, longitude_ = 0;
  std::uint64_t next_ = 0;
  std::string line_;
};

void Run(std::uint64_t rows, const std::string& localities, const std::vector<std::string>& inputs)
{
  std::vector<std::string> all;
  std::string header;
  for (const std::string& input : inputs) {
    std::vector<std::string> lines = ReadLines(input);
    header = lines.front();
    all.insert(all.end(), lines.begin() + 1, lines.end());
  }
  if (all.empty()) throw std::runtime_error("the inputs have no rows");
  Country country(ReadLocalities(localities), header);
  std::printf("%s\n", header.c_str());
  for (std::uint64_t i = 0; i < rows; ++i) country.Write(all[i % all.size()], i / all.size());
}

}  // namespace

int main(int argc, char** argv)
{
  try {
    if (argc < 4) throw std::runtime_error("usage: make_country ROWS LOCALITIES.csv INPUT.psv...");
    Run(std::stoull(argv[1]), argv[2], {argv + 3, argv + argc});
    if (std::fflush(stdout) != 0) throw std::runtime_error("cannot write");
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "make_country: " << error.what() << '\n';
    return 1;
  }
}
