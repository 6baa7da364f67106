/**
 * The address database: building, opening, finding, decoding.
 *
 * Makes its own input, the same for the same number of addresses: QXPAF_BENCH_ADDRESSES, one million unless set. Prints
 * the size of each section before it begins. Figures are of one thread, with the file in the page cache.
 */
#include <benchmark/benchmark.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "arf/build/builder.h"
#include "arf/format/checksum.h"
#include "arf/format/database.h"

namespace {

constexpr std::uint32_t kBoxes = 10'000;  // of the one long street

using Random = std::mt19937;

std::string RandomName(Random& random, std::size_t syllables)
{
  static constexpr const char* kSyllables[] = {"BAR", "KIN", "TON", "WAL", "LEY", "MON", "ROS", "HILL", "DAN",
                                               "GER", "MAR", "SUT", "PEN", "RI",  "CO",  "NA",  "LO",   "VER"};
  std::string name;
  for (; syllables > 0; --syllables) name += kSyllables[random() % std::size(kSyllables)];
  return name;
}

/** Writes rows of addresses: streets of some thirty houses a little apart, units here and there. */
class InputWriter
{
 public:
  InputWriter(const std::string& path, std::uint32_t count) : file_(path), left_(count), count_(count) {}

  void Write()
  {
    file_ << "dpid,unit_type,unit_number,number_first,street_name,street_type,postal_type,postal_number,locality,state,"
             "postcode,latitude,longitude\n";
    for (std::uint32_t box = 1; box <= kBoxes && left_ > 0; ++box) {
      file_ << NextDpid() << ",,,,,,PO BOX," << box << ",SYDNEY,NSW,2000,-33.868800,151.209300\n";
    }
    while (left_ > 0) WriteLocality();
    if (!file_.flush()) throw std::runtime_error("the input cannot be written");
  }

 private:
  void WriteLocality()
  {
    static constexpr const char* kStates[] = {"NSW", "VIC", "QLD", "SA", "WA", "TAS"};
    const std::string locality = RandomName(random_, 2 + random_() % 3) + "," + kStates[random_() % 6] + "," +
                                 std::to_string(2000 + random_() % 6000);
    const double latitude = -38 + static_cast<double>(random_() % 1300) / 100;
    const double longitude = 116 + static_cast<double>(random_() % 3700) / 100;
    for (auto streets = 20 + random_() % 100; streets > 0 && left_ > 0; --streets) {
      WriteStreet(locality, latitude + Offset(20000), longitude + Offset(20000));
    }
  }

  void WriteStreet(const std::string& locality, double latitude, double longitude)
  {
    static constexpr const char* kTypes[] = {"STREET", "STREET", "ROAD", "AVENUE", "COURT", "PLACE", "CRESCENT"};
    const std::string street = RandomName(random_, 2 + random_() % 2) + "," + kTypes[random_() % 7];
    unsigned long number = 0;
    for (auto houses = 3 + random_() % 50; houses > 0 && left_ > 0; --houses) {
      number += 1 + random_() % 3;
      latitude += Offset(200);
      longitude += Offset(200);
      const auto units = random_() % 10 == 0 ? 1 + random_() % 12 : 0;
      for (unsigned long unit = 0; unit <= units && left_ > 0; ++unit) {
        char place[40];
        std::snprintf(place, sizeof place, "%.6f,%.6f", latitude, longitude);
        file_ << NextDpid() << (unit > 0 ? ",UNIT," + std::to_string(unit) : ",,") << ',' << number << ',' << street
              << ",,," << locality << ',' << place << '\n';
      }
    }
  }

  /** Degrees, up to that many millionths in either direction. */
  double Offset(std::uint32_t millionths)
  {
    return (static_cast<double>(random_() % (2 * millionths)) - millionths) / 1e6;
  }

  /** Eight digits, all different, in no order. */
  std::uint64_t NextDpid()
  {
    constexpr std::uint64_t kFirst = 30'000'000, kRange = 69'999'989, kStep = 38'113'703;  // the range is a prime
    --left_;
    return kFirst + (count_ - left_) * kStep % kRange;
  }

  std::ofstream file_;
  Random random_{1};
  std::uint64_t left_, count_;
};

/** The input, the database built from it, and what to look for. Removed at the end. */
class Fixture
{
 public:
  static Fixture& Get()
  {
    static Fixture fixture;
    return fixture;
  }

  ~Fixture() { std::filesystem::remove_all(directory_); }
  Fixture(const Fixture&) = delete;
  Fixture& operator=(const Fixture&) = delete;

  arf::BuildReport Build() const
  {
    arf::BuildOptions options;
    options.inputs = {directory_ + "/in.csv"};
    options.outputDirectory = Directory();
    return arf::BuildDatabase(options);
  }

  std::string Directory() const { return directory_ + "/db"; }
  const arf::Database& Database() const { return *database_; }
  const std::vector<std::uint32_t>& Dpids() const { return dpids_; }

 private:
  Fixture()
  {
    const char* given = std::getenv("QXPAF_BENCH_ADDRESSES");
    const auto count = static_cast<std::uint32_t>(given ? std::strtoul(given, nullptr, 10) : 1'000'000);
    directory_ = (std::filesystem::temp_directory_path() / "qxpaf-bench-XXXXXX").string();
    if (!mkdtemp(directory_.data())) throw std::runtime_error("no temporary directory");
    InputWriter(directory_ + "/in.csv", count).Write();
    const arf::BuildReport report = Build();
    if (report.outcome != arf::BuildOutcome::Built) throw std::runtime_error(report.errors.at(0));
    arf::OpenResult result;
    database_ = arf::Database::Open(Directory(), arf::OpenMode::Mapped, result);
    if (!database_) throw std::runtime_error(result.message);
    Random random(2);
    for (int i = 0; i < 1'000'000; ++i) {
      dpids_.push_back(database_->DpidOf(static_cast<std::uint32_t>(random() % database_->PointCount())));
    }
    PrintSections();
  }

  void PrintSections() const
  {
    const double points = database_->PointCount();
    for (std::uint32_t i = 0; i < database_->SectionCount(); ++i) {
      const arf::SectionInfo section = database_->SectionAt(i);
      std::printf("%-20.*s %12" PRIu64 " bytes %8.3f an address\n", static_cast<int>(section.name.size()),
                  section.name.data(), section.length, static_cast<double>(section.length) / points);
    }
    std::printf("%-20s %12" PRIu64 " bytes %8.3f an address, %u addresses, %u streets, %u localities\n", "file",
                database_->FileSize(), static_cast<double>(database_->FileSize()) / points, database_->PointCount(),
                database_->StreetCount(), database_->LocalityCount());
  }

  std::string directory_;
  std::unique_ptr<arf::Database> database_;
  std::vector<std::uint32_t> dpids_;
};

void Build(benchmark::State& state)
{
  const Fixture& fixture = Fixture::Get();
  for (auto _ : state) {
    const arf::BuildReport report = fixture.Build();
    state.SetItemsProcessed(state.items_processed() + report.addresses);
  }
}
BENCHMARK(Build)->Unit(benchmark::kMillisecond)->Iterations(3);

void Open(benchmark::State& state)
{
  const Fixture& fixture = Fixture::Get();
  for (auto _ : state) {
    arf::OpenResult result;
    benchmark::DoNotOptimize(arf::Database::Open(fixture.Directory(), arf::OpenMode(state.range(0)), result));
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(fixture.Database().FileSize()) * state.iterations());
}
BENCHMARK(Open)->ArgName("mode")->DenseRange(1, 3)->Unit(benchmark::kMillisecond);

void Verify(benchmark::State& state)
{
  const std::vector<std::uint8_t> bytes(64 << 20, 7);
  for (auto _ : state) {
    arf::Checksum sum;
    sum.Add(bytes.data(), bytes.size());
    benchmark::DoNotOptimize(sum.Value());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
}
BENCHMARK(Verify)->Unit(benchmark::kMillisecond);

void FindDpid(benchmark::State& state)
{
  const Fixture& fixture = Fixture::Get();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(fixture.Database().FindDpid(fixture.Dpids()[i]));
    i = (i + 1) % fixture.Dpids().size();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(FindDpid);

void PointOfDpid(benchmark::State& state)
{
  const Fixture& fixture = Fixture::Get();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(fixture.Database().PointAt(*fixture.Database().FindDpid(fixture.Dpids()[i])));
    i = (i + 1) % fixture.Dpids().size();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(PointOfDpid);

void DecodeAllPoints(benchmark::State& state)
{
  const arf::Database& database = Fixture::Get().Database();
  for (auto _ : state) {
    arf::Point point;
    for (std::uint32_t street = 0; street < database.StreetCount(); ++street) {
      arf::PointCursor cursor = database.Points(database.StreetAt(street));
      while (cursor.Next(point)) benchmark::DoNotOptimize(point);
    }
  }
  state.SetItemsProcessed(state.iterations() * database.PointCount());
}
BENCHMARK(DecodeAllPoints)->Unit(benchmark::kMillisecond);

void NumberOnLongStreet(benchmark::State& state)
{
  const arf::Database& database = Fixture::Get().Database();
  const std::optional<std::uint32_t> name = database.FindLocalityName("SYDNEY");
  const arf::Locality sydney = database.LocalityAt(database.LocalitiesNamed(name.value_or(0))[0]);
  const arf::Street boxes = database.StreetAt(database.PostalStreetsOf(sydney).first);
  std::uint32_t number = 1;
  for (auto _ : state) {
    arf::Point point;
    arf::PointCursor cursor = database.PointsNumbered(boxes, number);
    benchmark::DoNotOptimize(cursor.Next(point));
    number = number * 7 % kBoxes + 1;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(NumberOnLongStreet);

void FindStreetName(benchmark::State& state)
{
  const arf::Database& database = Fixture::Get().Database();
  std::uint32_t n = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(database.FindStreetName(database.StreetName(n)));
    n = (n + 7919) % database.StreetNameCount();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(FindStreetName);

}  // namespace

BENCHMARK_MAIN();
