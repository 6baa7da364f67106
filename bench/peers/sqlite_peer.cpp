// SQLite: FTS5 with a word index (prefixes of 2 to 4 characters) and, where the words find nothing, a trigram index;
// an R*tree for places.
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include "geometry.h"
#include "peer.h"

namespace peers {
namespace {

constexpr const char* kSchema = R"(
  CREATE TABLE address(id INTEGER PRIMARY KEY, identifier TEXT, label TEXT, latitude REAL, longitude REAL,
                       mesh_block TEXT);
  CREATE VIRTUAL TABLE word USING fts5(words, content='', prefix='2 3 4');
  CREATE VIRTUAL TABLE trigram USING fts5(words, content='', tokenize='trigram');
  CREATE VIRTUAL TABLE place USING rtree(id, south, north, west, east);
)";

constexpr const char* kFinish = R"(
  INSERT INTO word(word) VALUES('optimize');
  INSERT INTO trigram(trigram) VALUES('optimize');
  COMMIT;
  ANALYZE;
)";

constexpr const char* kByWords =
    "SELECT identifier FROM word JOIN address ON address.id = word.rowid WHERE word MATCH ?1 ORDER BY rank LIMIT 1";
constexpr const char* kByTrigrams =
    "SELECT identifier FROM trigram JOIN address ON address.id = trigram.rowid WHERE trigram MATCH ?1 ORDER BY rank "
    "LIMIT 1";
constexpr const char* kHintsByWords =
    "SELECT identifier FROM word JOIN address ON address.id = word.rowid WHERE word MATCH ?1 LIMIT ?2";
constexpr const char* kInBox =
    "SELECT identifier, latitude, longitude FROM place JOIN address USING(id) WHERE north >= ?1 AND south <= ?2 AND "
    "east >= ?3 AND west <= ?4";

class Statement
{
 public:
  Statement(sqlite3* database, const char* sql)
  {
    if (sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(database));
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(statement_); }

  void Bind(int index, const std::string& text)
  {
    sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }
  void Bind(int index, double number) { sqlite3_bind_double(statement_, index, number); }
  void Bind(int index, std::int64_t number) { sqlite3_bind_int64(statement_, index, number); }

  /** The next row. @return false behind the last one; the statement can be bound anew then */
  bool Step()
  {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    sqlite3_reset(statement_);
    if (result != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(sqlite3_db_handle(statement_)));
    return false;
  }
  void Reset() { sqlite3_reset(statement_); }

  std::string Text(int column)
  {
    const unsigned char* text = sqlite3_column_text(statement_, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text), size);
  }
  double Number(int column) { return sqlite3_column_double(statement_, column); }

 private:
  sqlite3_stmt* statement_ = nullptr;
};

struct Box
{
  double south, north, west, east;
};

/** A term of a full-text query; words have no quotation marks. */
std::string Quoted(const std::string& term)
{
  return "\"" + term + "\"";
}

std::string AllWords(const std::vector<std::string>& words)
{
  std::string query;
  for (const std::string& word : words) query += Quoted(word) + " ";
  return query;
}

/** Bytes of a text's next three characters, or 0 when it has fewer. */
std::size_t TrigramSize(std::string_view text)
{
  std::size_t size = 0;
  for (int characters = 0; characters < 3; ++characters) {
    if (size >= text.size()) return 0;
    ++size;
    while (size < text.size() && (text[size] & 0xC0) == 0x80) ++size;
  }
  return size;
}

std::string AnyTrigram(std::string_view text)
{
  std::string query;
  while (const std::size_t size = TrigramSize(text)) {
    if (!query.empty()) query += " OR ";
    query += Quoted(std::string(text.substr(0, size)));
    text.remove_prefix(1);
    while (!text.empty() && (text.front() & 0xC0) == 0x80) text.remove_prefix(1);
  }
  return query;
}

class SqlitePeer : public Peer
{
 public:
  SqlitePeer(std::string directory, const WordForms& forms)
      : path_(std::filesystem::path(std::move(directory)) / "addresses.sqlite"), forms_(forms)
  {
  }
  ~SqlitePeer() override
  {
    statements_.reset();
    sqlite3_close(database_);
  }

  void Build(const std::vector<Address>& addresses) override
  {
    Connect(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    Run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;");
    Run(kSchema);
    Run("BEGIN;");
    Insert(addresses);
    Run(kFinish);
  }

  std::uint64_t Bytes() override { return std::filesystem::file_size(path_); }

  void Open() override
  {
    Connect(SQLITE_OPEN_READONLY);
    Run("PRAGMA mmap_size = 1073741824; PRAGMA cache_size = -65536;");
    statements_ = std::make_unique<Statements>(database_);
  }

  void Lookup(const std::string& text, Answers& answers) override
  {
    const std::vector<std::string> words = forms_.Words(text);
    if (words.empty() || TakeFirst(statements_->byWords, AllWords(words), answers)) return;
    const std::string trigrams = AnyTrigram(Joined(words));
    if (!trigrams.empty()) TakeFirst(statements_->byTrigrams, trigrams, answers);
  }

  void Complete(const std::string& text, Answers& answers) override
  {
    std::vector<std::string> words = forms_.WordsSoFar(text);
    if (words.empty()) return;
    const std::string last = words.back();
    words.pop_back();
    Statement& hints = statements_->hints;
    hints.Bind(1, AllWords(words) + Quoted(last) + "*");
    hints.Bind(2, static_cast<std::int64_t>(kHints));
    while (hints.Step()) answers.push_back(hints.Text(0));
  }

  void FindNearest(Place place, Answers& answers) override
  {
    // First a box that holds anything, then one that holds everything as near as the nearest of it.
    constexpr double kSmallest = 0.001;
    constexpr double kDegreeMetres = 111'320;
    Near nearest;
    for (double reach = kSmallest; nearest.identifier.empty() && reach < 360; reach *= 2)
      nearest = NearestIn(place, reach);
    nearest = NearestIn(place, nearest.metres / kDegreeMetres * 1.001 + 1e-6);
    if (!nearest.identifier.empty()) answers.push_back(nearest.identifier);
  }

  void FindWithin(const std::vector<Place>& corners, Answers& answers) override
  {
    const auto [south, north] = std::minmax_element(
        corners.begin(), corners.end(), [](const Place& a, const Place& b) { return a.latitude < b.latitude; });
    const auto [west, east] = std::minmax_element(
        corners.begin(), corners.end(), [](const Place& a, const Place& b) { return a.longitude < b.longitude; });
    Statement& inBox = SelectBox({south->latitude, north->latitude, west->longitude, east->longitude});
    while (inBox.Step())
      if (IsWithin({inBox.Number(1), inBox.Number(2)}, corners)) answers.push_back(inBox.Text(0));
  }

 private:
  struct Statements
  {
    explicit Statements(sqlite3* database)
        : byWords(database, kByWords),
          byTrigrams(database, kByTrigrams),
          hints(database, kHintsByWords),
          inBox(database, kInBox)
    {
    }
    Statement byWords;
    Statement byTrigrams;
    Statement hints;
    Statement inBox;
  };

  struct Near
  {
    std::string identifier;
    double metres = std::numeric_limits<double>::infinity();
  };

  void Connect(int flags)
  {
    if (sqlite3_open_v2(path_.c_str(), &database_, flags, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(database_));
  }

  void Run(const char* sql)
  {
    if (sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(database_));
  }

  void Insert(const std::vector<Address>& addresses)
  {
    Statement address(database_, "INSERT INTO address VALUES(?1, ?2, ?3, ?4, ?5, ?6)");
    Statement word(database_, "INSERT INTO word(rowid, words) VALUES(?1, ?2)");
    Statement trigram(database_, "INSERT INTO trigram(rowid, words) VALUES(?1, ?2)");
    Statement place(database_, "INSERT INTO place VALUES(?1, ?2, ?2, ?3, ?3)");
    std::int64_t id = 0;
    for (const Address& each : addresses) {
      const std::string words = Joined(forms_.Words(each.label));
      for (Statement* statement : {&address, &word, &trigram, &place}) statement->Bind(1, id);
      address.Bind(2, each.identifier);
      address.Bind(3, each.label);
      address.Bind(4, each.place.latitude);
      address.Bind(5, each.place.longitude);
      address.Bind(6, each.meshBlock);
      word.Bind(2, words);
      trigram.Bind(2, words);
      place.Bind(2, each.place.latitude);
      place.Bind(3, each.place.longitude);
      for (Statement* statement : {&address, &word, &trigram, &place}) statement->Step();
      ++id;
    }
  }

  static bool TakeFirst(Statement& statement, const std::string& query, Answers& answers)
  {
    statement.Bind(1, query);
    if (!statement.Step()) return false;
    answers.push_back(statement.Text(0));
    statement.Reset();
    return true;
  }

  Statement& SelectBox(const Box& box)
  {
    Statement& inBox = statements_->inBox;
    inBox.Bind(1, box.south);
    inBox.Bind(2, box.north);
    inBox.Bind(3, box.west);
    inBox.Bind(4, box.east);
    return inBox;
  }

  /** The nearest address in a box of that many degrees of latitude around a place. */
  Near NearestIn(Place place, double reach)
  {
    const double reachEast = reach / std::max(0.01, CosineOfDegrees(place.latitude));
    Statement& inBox = SelectBox(
        {place.latitude - reach, place.latitude + reach, place.longitude - reachEast, place.longitude + reachEast});
    Near nearest;
    while (inBox.Step()) {
      const double metres = MetresBetween(place, {inBox.Number(1), inBox.Number(2)});
      if (metres < nearest.metres) nearest = {inBox.Text(0), metres};
    }
    return nearest;
  }

  std::string path_;
  const WordForms& forms_;
  sqlite3* database_ = nullptr;
  std::unique_ptr<Statements> statements_;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(const std::string& place, const WordForms& forms)
{
  return std::make_unique<SqlitePeer>(place, forms);
}

}  // namespace peers
