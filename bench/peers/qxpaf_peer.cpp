// This library, through its C functions as an application uses them. `paf build` makes the database.
#include <charconv>
#include <cstdio>
#include <string_view>

#include "peer.h"
#include "qxpaf/paf.h"

namespace peers {
namespace {

constexpr int kNotOffered = 6408;
constexpr int kBufferSize = 512;
constexpr int kFieldsBeforeLatitude = 42;
constexpr int kFieldsBeforeIdentifier = 3;  // of a hint
constexpr const char* kFarthestMetres = "100000";

/** Two numbers with a separator between them, as short as they can be read back. */
std::string Pair(double first, char separator, double second)
{
  char buffer[64];
  char* end = std::to_chars(buffer, buffer + sizeof buffer / 2, first).ptr;
  *end++ = separator;
  return {buffer, std::to_chars(end, buffer + sizeof buffer, second).ptr};
}

/** A field of a record, the first being number 0. */
std::string_view Field(std::string_view record, int number)
{
  for (; number > 0; --number) {
    const std::size_t end = record.find('\t');
    if (end == std::string_view::npos) return {};
    record.remove_prefix(end + 1);
  }
  return record.substr(0, record.find('\t'));
}

class LibraryPeer : public Peer
{
 public:
  explicit LibraryPeer(std::string directory) : directory_(std::move(directory)) {}
  ~LibraryPeer() override
  {
    if (id_ > 0) pafClosePafId(id_);
  }

  void Build(const std::vector<Address>&) override { throw NotOffered("paf build makes the database"); }
  std::uint64_t Bytes() override { throw NotOffered("paf build makes the database"); }

  void Open() override
  {
    Check(pafOpenArfId(&id_, 0, ("AU." + directory_).c_str()));
    Check(pafSetPropertiesId(id_, "OutputFields", "SourceIdentifier"));
  }

  void Lookup(const std::string& text, Answers& answers) override
  {
    char buffer[kBufferSize];
    std::snprintf(buffer, sizeof buffer, "%s", text.c_str());
    if (pafLookupAddress(id_, buffer, sizeof buffer, 0) == 0) answers.emplace_back(buffer);
  }

  void Complete(const std::string& text, Answers& answers) override
  {
    char hint[kBufferSize];
    int status = pafGetAddressHintId(id_, text.c_str(), "", hint, sizeof hint);
    while (TakeHint(status, hint, answers) && answers.size() < kHints)
      status = pafGetNextAddressHintId(id_, hint, sizeof hint);
  }

  void List(const std::string& text, Answers& answers) override
  {
    char hint[kBufferSize];
    int status = pafGetPopupHintId(id_, text.c_str(), "", static_cast<int>(kHints), hint, sizeof hint);
    while (TakeHint(status, hint, answers) && answers.size() < kHints)
      status = pafGetNextPopupHintId(id_, hint, sizeof hint);
  }

  void Translate(Answers& answers) override
  {
    char record[kBufferSize];
    for (std::string& answer : answers) {
      if (answer.empty()) continue;
      Check(pafDpidToAddressId(id_, std::stol(answer), record, sizeof record));
      answer = record;
    }
  }

  void FindNearest(Place place, Answers& answers) override
  {
    if (!isRangeSet_) Check(pafSetPropertiesId(id_, "LatLongSearchRange", kFarthestMetres));
    isRangeSet_ = true;
    const std::string query = std::string(kFieldsBeforeLatitude, '\t') + Pair(place.latitude, '\t', place.longitude);
    char record[kBufferSize];
    Check(pafGetAddressId(id_, query.c_str(), record, sizeof record));
    answers.emplace_back(record);
  }

  void FindWithin(const std::vector<Place>& corners, Answers& answers) override
  {
    std::string polygon;
    for (const Place& corner : corners) {
      if (!polygon.empty()) polygon += ';';
      polygon += Pair(corner.latitude, ',', corner.longitude);
    }
    Check(pafBeginPolygonSearch(id_, polygon.c_str(), ""));
    char record[kBufferSize];
    for (;;) {
      Check(pafGetNextAddressInPolygon(id_, record, sizeof record));
      if (record[0] == '\0') return;
      answers.emplace_back(record);
    }
  }

 private:
  /** Keeps the identifier of a hint; one of several addresses has none. @return false behind the last hint */
  bool TakeHint(int status, const char* hint, Answers& answers) const
  {
    Check(status);
    if (Field(hint, 0).empty()) return false;
    answers.emplace_back(Field(hint, kFieldsBeforeIdentifier));
    return true;
  }

  /** @throws NotOffered, std::runtime_error when a call failed */
  void Check(int status) const
  {
    if (status == 0) return;
    char reason[1024] = "";
    pafGetErrorDescription(reason, status, sizeof reason);
    const std::string text = std::string(reason) + " (status " + std::to_string(status) + ")";
    if (status == kNotOffered) throw NotOffered(text);
    throw std::runtime_error(text);
  }

  std::string directory_;
  int id_ = 0;
  bool isRangeSet_ = false;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(const std::string& place, const WordForms&)
{
  return std::make_unique<LibraryPeer>(place);
}

}  // namespace peers
