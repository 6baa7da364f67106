/**
 * How much of an address has to be typed until it is among the first five hints.
 *
 *     bench_hint_accuracy [database directory]
 *
 * Addresses of the database, chosen at random, are typed letter by letter in two forms. For each the share of its
 * letters is counted after which a hint with its identifier, or one that reads the same, is among the first five; an
 * address that never appears counts as typed whole. The same is counted for hints that contain it: its number or its
 * street, from which it can be chosen.
 */
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "arf/hint/hint_enumeration.h"
#include "hint_sample.h"

namespace {

constexpr std::size_t kHints = 5;
constexpr std::size_t kSample = 4000;

enum class Found
{
  No,
  Inside,  ///< behind one of the hints
  Itself
};

class Typist
{
 public:
  explicit Typist(const arf::Database& data) : data_(data), hints_(std::make_unique<arf::HintEnumeration>(data)) {}

  Found Look(std::string_view typed, std::uint32_t ordinal)
  {
    Found found = Found::No;
    const std::string label = bench::LabelOf(data_, ordinal);
    for (hints_->StartHints(typed, "", kHints); const arf::Hint* hint = hints_->Current(); hints_->Advance()) {
      if (IsItself(*hint, ordinal, label)) return Found::Itself;
      if (IsInside(*hint, ordinal)) found = Found::Inside;
    }
    return found;
  }

 private:
  bool IsItself(const arf::Hint& hint, std::uint32_t ordinal, const std::string& label)
  {
    if (hint.own == arf::kNoIndex) return false;
    if (hint.own == ordinal) return true;
    char buffer[512];
    arf::BoundedText text(buffer, sizeof buffer);
    arf::AppendHintText(text, data_, hint);
    return label == text.View();
  }

  bool IsInside(const arf::Hint& hint, std::uint32_t ordinal) const
  {
    if (hint.kind == arf::HintKind::Locality) return false;
    const arf::IndexRange points =
        hint.kind == arf::HintKind::Street ? data_.StreetAt(hint.street).points : hint.points;
    return ordinal - points.first < points.count;
  }

  const arf::Database& data_;
  std::unique_ptr<arf::HintEnumeration> hints_;
};

void Measure(const arf::Database& data, const char* name, bench::Form form)
{
  Typist typist(data);
  double itself = 0;
  double inside = 0;
  std::size_t never = 0;
  const std::vector<bench::TypedAddress> sample = bench::SampleOf(data, form, kSample);
  for (const auto& [text, ordinal] : sample) {
    std::size_t untilInside = text.size();
    std::size_t untilItself = text.size();
    Found found = Found::No;
    for (std::size_t typed = 1; typed <= text.size() && found != Found::Itself; ++typed) {
      found = typist.Look(std::string_view(text).substr(0, typed), ordinal);
      if (found != Found::No) untilInside = std::min(untilInside, typed);
      if (found == Found::Itself) untilItself = typed;
    }
    never += found != Found::Itself;
    itself += static_cast<double>(untilItself) / static_cast<double>(text.size());
    inside += static_cast<double>(untilInside) / static_cast<double>(text.size());
  }
  const auto percent = [&](double sum) { return 100 * sum / static_cast<double>(sample.size()); };
  std::printf("%-6s  itself %5.1f %%   itself or what contains it %5.1f %%   never %.2f %%\n", name, percent(itself),
              percent(inside), percent(static_cast<double>(never)));
}

}  // namespace

int main(int argc, char** argv)
{
  const std::unique_ptr<arf::Database> data = bench::OpenDatabase(argc, argv);
  if (!data) return argc > 1 ? 1 : 0;
  std::printf("letters typed until the address is among the first %zu hints, mean of %zu addresses\n", kHints, kSample);
  Measure(*data, "label", bench::Form::Label);
  Measure(*data, "hasty", bench::Form::Hasty);
}
