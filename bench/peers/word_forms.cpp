#include "word_forms.h"

#include <fstream>
#include <stdexcept>

namespace peers {
namespace {

constexpr std::string_view kDropped = "'`";

bool IsWordCharacter(char c)
{
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c & 0x80) != 0;
}

char Upper(char c)
{
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::vector<std::string> Split(std::string_view text)
{
  std::vector<std::string> words;
  bool isInWord = false;
  for (const char c : text) {
    if (kDropped.find(c) != std::string_view::npos) continue;
    const bool isWord = IsWordCharacter(c);
    if (isWord && !isInWord) words.emplace_back();
    if (isWord) words.back() += Upper(c);
    isInWord = isWord;
  }
  return words;
}

}  // namespace

WordForms::WordForms(const std::string& path)
{
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t tab = line.find('\t');
    if (tab != std::string::npos) usual_.emplace(line.substr(0, tab), line.substr(tab + 1));
  }
}

std::string WordForms::Usual(const std::string& word) const
{
  const auto found = usual_.find(word);
  return found == usual_.end() ? word : found->second;
}

std::vector<std::string> WordForms::Words(std::string_view text) const
{
  std::vector<std::string> words = Split(text);
  for (std::string& word : words) word = Usual(word);
  return words;
}

std::vector<std::string> WordForms::WordsSoFar(std::string_view text) const
{
  const bool isUnfinished = !text.empty() && IsWordCharacter(text.back());
  std::vector<std::string> words = Split(text);
  const std::size_t finished = words.size() - (isUnfinished ? 1 : 0);
  for (std::size_t i = 0; i < finished; ++i) words[i] = Usual(words[i]);
  return words;
}

std::string Joined(const std::vector<std::string>& words)
{
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += ' ';
    text += word;
  }
  return text;
}

}  // namespace peers
