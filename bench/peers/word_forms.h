/** Brings addresses into the one way of writing under which peers index and seek them. */
#ifndef QXPAF_BENCH_PEERS_WORD_FORMS_H
#define QXPAF_BENCH_PEERS_WORD_FORMS_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace peers {

class WordForms
{
 public:
  WordForms() = default;

  /** @param path  lines of a written form, TAB, the form that stands for it; upper case
      @throws std::runtime_error when it cannot be read */
  explicit WordForms(const std::string& path);

  /** Words in upper case, apostrophes left out, other punctuation as a space, known forms replaced. */
  std::vector<std::string> Words(std::string_view text) const;

  /** The same, but a last word that may be unfinished stays as it is. */
  std::vector<std::string> WordsSoFar(std::string_view text) const;

 private:
  std::string Usual(const std::string& word) const;

  std::map<std::string, std::string> usual_;
};

/** Words with a space between them. */
std::string Joined(const std::vector<std::string>& words);

}  // namespace peers

#endif
