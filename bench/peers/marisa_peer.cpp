// marisa-trie: one trie of "WORDS TAB identifier". It answers exact labels and beginnings of them; nothing else is in
// it, neither coordinates nor mesh blocks, and it corrects nothing.
#include <marisa.h>

#include <filesystem>

#include "peer.h"

namespace peers {
namespace {

constexpr char kSeparator = '\t';

class MarisaPeer : public Peer
{
 public:
  MarisaPeer(std::string directory, const WordForms& forms)
      : path_(std::filesystem::path(std::move(directory)) / "addresses.marisa"), forms_(forms)
  {
  }

  void Build(const std::vector<Address>& addresses) override
  {
    marisa::Keyset keys;
    for (const Address& each : addresses) {
      const std::string key = Joined(forms_.Words(each.label)) + kSeparator + each.identifier;
      keys.push_back(key.data(), key.size());
    }
    trie_.build(keys);
    trie_.save(path_.c_str());
  }

  std::uint64_t Bytes() override { return std::filesystem::file_size(path_); }

  void Open() override { trie_.mmap(path_.c_str()); }

  void Lookup(const std::string& text, Answers& answers) override
  {
    Take(Joined(forms_.Words(text)) + kSeparator, 1, answers);
  }

  void Complete(const std::string& text, Answers& answers) override
  {
    Take(Joined(forms_.WordsSoFar(text)), kHints, answers);
  }

 private:
  void Take(const std::string& beginning, std::size_t most, Answers& answers)
  {
    agent_.set_query(beginning.data(), beginning.size());
    while (answers.size() < most && trie_.predictive_search(agent_)) {
      const std::string_view key(agent_.key().ptr(), agent_.key().length());
      answers.emplace_back(key.substr(key.find(kSeparator) + 1));
    }
  }

  std::string path_;
  const WordForms& forms_;
  marisa::Trie trie_;
  marisa::Agent agent_;
};

}  // namespace

std::unique_ptr<Peer> MakePeer(const std::string& place, const WordForms& forms)
{
  return std::make_unique<MarisaPeer>(place, forms);
}

}  // namespace peers
