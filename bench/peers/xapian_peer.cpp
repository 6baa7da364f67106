// Xapian: the words of the label as terms, BM25. Words that no address has are replaced by the spelling suggestion
// (edit distance at most 2); where no address has all the words, the one that has most of them by weight is taken.
#include <xapian.h>

#include <filesystem>

#include "peer.h"

namespace peers {
namespace {

constexpr unsigned kEditDistance = 2;
constexpr Xapian::termcount kExpansions = 100;  // of an unfinished word

bool HasDigit(const std::string& word)
{
  return word.find_first_of("0123456789") != std::string::npos;
}

class XapianPeer : public Peer
{
 public:
  XapianPeer(std::string directory, const WordForms& forms)
      : path_(std::filesystem::path(std::move(directory)) / "addresses.xapian"), forms_(forms)
  {
  }

  void Build(const std::vector<Address>& addresses) override
  {
    Xapian::WritableDatabase database(path_, Xapian::DB_CREATE_OR_OVERWRITE | Xapian::DB_NO_SYNC);
    for (const Address& each : addresses) {
      Xapian::Document document;
      for (const std::string& word : forms_.Words(each.label)) {
        document.add_term(word);
        if (!HasDigit(word)) database.add_spelling(word);
      }
      document.set_data(each.identifier + '\t' + each.label + '\t' + std::to_string(each.place.latitude) + '\t' +
                        std::to_string(each.place.longitude) + '\t' + each.meshBlock);
      database.add_document(document);
    }
    database.commit();
    const std::string compact = path_ + ".compact";
    database.compact(compact, Xapian::DBCOMPACT_NO_RENUMBER);
    database.close();
    std::filesystem::remove_all(path_);
    std::filesystem::rename(compact, path_);
  }

  std::uint64_t Bytes() override
  {
    std::uint64_t bytes = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) bytes += entry.file_size();
    return bytes;
  }

  void Open() override
  {
    database_ = Xapian::Database(path_);
    enquire_ = std::make_unique<Xapian::Enquire>(database_);
  }

  void Lookup(const std::string& text, Answers& answers) override
  {
    std::vector<Xapian::Query> words;
    for (const std::string& word : forms_.Words(text)) words.push_back(Meant(word));
    Take(Xapian::Query(Xapian::Query::OP_AND, words.begin(), words.end()), 1, answers);
    if (answers.empty()) Take(Xapian::Query(Xapian::Query::OP_OR, words.begin(), words.end()), 1, answers);
  }

  void Complete(const std::string& text, Answers& answers) override
  {
    std::vector<std::string> words = forms_.WordsSoFar(text);
    if (words.empty()) return;
    Xapian::Query last(Xapian::Query::OP_WILDCARD, words.back(), kExpansions,
                       Xapian::Query::WILDCARD_LIMIT_MOST_FREQUENT);
    words.pop_back();
    std::vector<Xapian::Query> all(words.begin(), words.end());
    all.push_back(last);
    Take(Xapian::Query(Xapian::Query::OP_AND, all.begin(), all.end()), kHints, answers);
  }

 private:
  Xapian::Query Meant(const std::string& word) const
  {
    if (HasDigit(word) || database_.term_exists(word)) return Xapian::Query(word);
    const std::string suggestion = database_.get_spelling_suggestion(word, kEditDistance);
    return Xapian::Query(suggestion.empty() ? word : suggestion);
  }

  void Take(const Xapian::Query& query, std::size_t most, Answers& answers)
  {
    enquire_->set_query(query);
    const Xapian::MSet found = enquire_->get_mset(0, static_cast<Xapian::doccount>(most));
    for (auto i = found.begin(); i != found.end(); ++i) {
      const std::string data = i.get_document().get_data();
      answers.push_back(data.substr(0, data.find('\t')));
    }
  }

  std::string path_;
  const WordForms& forms_;
  Xapian::Database database_;
  std::unique_ptr<Xapian::Enquire> enquire_;
};

/** Xapian's errors are no std::exception. */
template <class Call>
auto Translated(Call call)
{
  try {
    return call();
  } catch (const Xapian::Error& error) {
    throw std::runtime_error(error.get_description());
  }
}

/** The same peer with errors that the program knows. */
class TranslatedXapianPeer : public Peer
{
 public:
  TranslatedXapianPeer(const std::string& directory, const WordForms& forms) : peer_(directory, forms) {}

  void Build(const std::vector<Address>& addresses) override
  {
    Translated([&] { peer_.Build(addresses); });
  }
  std::uint64_t Bytes() override { return peer_.Bytes(); }
  void Open() override
  {
    Translated([&] { peer_.Open(); });
  }
  void Lookup(const std::string& text, Answers& answers) override
  {
    Translated([&] { peer_.Lookup(text, answers); });
  }
  void Complete(const std::string& text, Answers& answers) override
  {
    Translated([&] { peer_.Complete(text, answers); });
  }

 private:
  XapianPeer peer_;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(const std::string& place, const WordForms& forms)
{
  return std::make_unique<TranslatedXapianPeer>(place, forms);
}

}  // namespace peers
