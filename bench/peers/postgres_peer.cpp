// PostgreSQL: pg_trgm with a GIN index, "%" with its default threshold and the order of similarity; a B-tree for
// beginnings; GiST indexes for places (earthdistance, point in polygon).
#include <libpq-fe.h>

#include <charconv>

#include "peer.h"

namespace peers {
namespace {

constexpr const char* kSchema = R"(
  CREATE EXTENSION pg_trgm;
  CREATE EXTENSION cube;
  CREATE EXTENSION earthdistance;
  CREATE TABLE address(id integer PRIMARY KEY, identifier text, label text, words text, latitude float8,
                       longitude float8, mesh_block text);
)";
constexpr const char* kFinish = R"(
  CREATE INDEX address_trigrams ON address USING gin(words gin_trgm_ops);
  CREATE INDEX address_words ON address(words);
  CREATE INDEX address_earth ON address USING gist(ll_to_earth(latitude, longitude));
  CREATE INDEX address_point ON address USING gist(point(longitude * 1e6, latitude * 1e6));
  VACUUM ANALYZE address;
)";
constexpr const char* kBySimilarity =
    "SELECT identifier FROM address WHERE words % $1 ORDER BY similarity(words, $1) DESC LIMIT 1";
// Words hold no character above 'Z' but those of UTF-8, whose first bytes are below 0xF8: the second bound is above
// every continuation.
constexpr const char* kByBeginning =
    "SELECT identifier FROM address WHERE words >= $1 AND words < $1 || chr(1114111) ORDER BY words LIMIT $2";
constexpr const char* kNearest =
    "SELECT identifier FROM address ORDER BY ll_to_earth(latitude, longitude) <-> ll_to_earth($1, $2) LIMIT 1";
// In millionths of a degree, for polygons are compared with an allowance that would be metres in degrees.
constexpr double kScale = 1e6;
constexpr const char* kWithin =
    "SELECT identifier FROM address WHERE point(longitude * 1e6, latitude * 1e6) <@ $1::polygon";

struct FreeResult
{
  void operator()(PGresult* result) const { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, FreeResult>;

std::string Text(double number)
{
  char buffer[64];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

/** A value of the text form of COPY. */
std::string Escaped(const std::string& value)
{
  std::string text;
  for (const char c : value) {
    if (c == '\\') text += '\\';
    text += c;
  }
  return text;
}

class PostgresPeer : public Peer
{
 public:
  PostgresPeer(const std::string& connection, const WordForms& forms)
      : connection_(PQconnectdb(connection.c_str())), forms_(forms)
  {
    if (PQstatus(connection_) != CONNECTION_OK) Fail();
  }
  ~PostgresPeer() override { PQfinish(connection_); }

  void Build(const std::vector<Address>& addresses) override
  {
    RunEach(kSchema);
    Copy(addresses);
    RunEach(kFinish);
  }

  std::uint64_t Bytes() override
  {
    const Result result = Checked(PQexec(connection_, "SELECT pg_total_relation_size('address')"));
    return std::stoull(PQgetvalue(result.get(), 0, 0));
  }

  void Open() override
  {
    Prepare("similar", kBySimilarity);
    Prepare("beginning", kByBeginning);
    Prepare("nearest", kNearest);
    Prepare("within", kWithin);
  }

  void Lookup(const std::string& text, Answers& answers) override
  {
    Ask("similar", {Joined(forms_.Words(text))}, answers);
  }

  void Complete(const std::string& text, Answers& answers) override
  {
    Ask("beginning", {Joined(forms_.WordsSoFar(text)), std::to_string(kHints)}, answers);
  }

  void FindNearest(Place place, Answers& answers) override
  {
    Ask("nearest", {Text(place.latitude), Text(place.longitude)}, answers);
  }

  void FindWithin(const std::vector<Place>& corners, Answers& answers) override
  {
    std::string polygon;
    for (const Place& corner : corners)
      polygon += (polygon.empty() ? "((" : ",(") + Text(corner.longitude * kScale) + "," +
                 Text(corner.latitude * kScale) + ")";
    Ask("within", {polygon + ")"}, answers);
  }

 private:
  [[noreturn]] void Fail() const { throw std::runtime_error(PQerrorMessage(connection_)); }

  Result Checked(PGresult* raw) const
  {
    Result result(raw);
    const ExecStatusType status = PQresultStatus(raw);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_COPY_IN) Fail();
    return result;
  }

  /** Commands that end with ";", each by itself, for VACUUM cannot stand in a row with others. */
  void RunEach(std::string_view commands)
  {
    for (std::size_t end = 0; (end = commands.find(';')) != std::string_view::npos; commands.remove_prefix(end + 1))
      Checked(PQexec(connection_, std::string(commands.substr(0, end)).c_str()));
  }

  void Copy(const std::vector<Address>& addresses)
  {
    Checked(PQexec(connection_, "COPY address FROM STDIN"));
    std::size_t id = 0;
    for (const Address& each : addresses) {
      const std::string row = std::to_string(id++) + '\t' + Escaped(each.identifier) + '\t' + Escaped(each.label) +
                              '\t' + Escaped(Joined(forms_.Words(each.label))) + '\t' + Text(each.place.latitude) +
                              '\t' + Text(each.place.longitude) + '\t' + Escaped(each.meshBlock) + '\n';
      if (PQputCopyData(connection_, row.data(), static_cast<int>(row.size())) != 1) Fail();
    }
    if (PQputCopyEnd(connection_, nullptr) != 1) Fail();
    while (PGresult* result = PQgetResult(connection_)) Checked(result);
  }

  void Prepare(const char* name, const char* sql) { Checked(PQprepare(connection_, name, sql, 0, nullptr)); }

  void Ask(const char* name, const std::vector<std::string>& values, Answers& answers)
  {
    std::vector<const char*> pointers;
    for (const std::string& value : values) pointers.push_back(value.c_str());
    const Result result = Checked(
        PQexecPrepared(connection_, name, static_cast<int>(pointers.size()), pointers.data(), nullptr, nullptr, 0));
    for (int row = 0; row < PQntuples(result.get()); ++row) answers.emplace_back(PQgetvalue(result.get(), row, 0));
  }

  PGconn* connection_;
  const WordForms& forms_;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(const std::string& place, const WordForms& forms)
{
  return std::make_unique<PostgresPeer>(place, forms);
}

}  // namespace peers
