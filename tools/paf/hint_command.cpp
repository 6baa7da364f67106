#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "exit_code.h"
#include "hint_box.h"
#include "hints.h"
#include "inputs.h"
#include "json.h"

namespace tool {
namespace {

constexpr int kMostHints = 1000;

struct HintOptions
{
  QueryOptions query;
  std::vector<std::string> words;
  std::string place;
  unsigned long limit = 10;

  int Most() const { return limit == 0 ? kMostHints : static_cast<int>(limit); }
};

Json ToJson(const Hint& hint)
{
  return {{"text", hint.text},
          {"kind", hint.kind},
          {"addresses", std::strtoul(hint.count.c_str(), nullptr, 10)},
          {"dpid", hint.dpid},
          {"final", hint.IsFinal()}};
}

/** Prints the hints of one text after the other. */
class HintWriter
{
 public:
  HintWriter(Session& session, const HintOptions& options) : session_(session), options_(options)
  {
    if (options.query.json) {
      json_.emplace(std::cout);
    }
  }

  void Write(const std::string& text)
  {
    std::vector<Hint> hints;
    const Reply reply = ReadHints(session_, text, options_.place, options_.Most(), hints);
    const int status = reply.status == 0 && hints.empty() ? kExitNotFound : ExitStatusOf(reply);
    exitStatus_ = std::max(exitStatus_, status);
    if (json_) {
      WriteJson(text, reply, hints);
    } else {
      WriteText(reply, hints);
    }
  }

  int ExitStatus() const { return exitStatus_; }

 private:
  void WriteText(const Reply& reply, const std::vector<Hint>& hints)
  {
    if (reply.status != 0) {
      std::cout << "-\t" << StatusText(reply) << '\n';
    }
    for (const Hint& hint : hints) {
      std::cout << hint.text << '\t' << hint.kind << '\t' << hint.count << '\t' << hint.dpid << '\n';
    }
    std::cout << (options_.words.empty() ? "\n" : "");
  }

  void WriteJson(const std::string& text, const Reply& reply, const std::vector<Hint>& hints)
  {
    Json list = Json::array();
    for (const Hint& hint : hints) {
      list.push_back(ToJson(hint));
    }
    json_->Write({{"input", text}, {"status", reply.status}, {"hints", list}, {"description", reply.description}});
  }

  Session& session_;
  const HintOptions& options_;
  std::optional<JsonArray> json_;  ///< empty for text
  int exitStatus_ = kExitFound;
};

int RunInTerminal(Session& session, const HintOptions& options)
{
  const std::optional<Hint> hint = ChooseHint(session, options.place, options.Most());
  if (!hint) {
    return kExitNotFound;
  }
  AnswerWriter writer(std::cout, options.query.json);
  writer.Write(RecordAnswer(hint->text, session.Address(std::strtol(hint->dpid.c_str(), nullptr, 10))));
  return writer.ExitStatus();
}

int Run(const HintOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  if (options.words.empty() && Terminal::IsPresent()) {
    return RunInTerminal(session, options);
  }
  HintWriter writer(session, options);
  if (options.words.empty()) {
    ForEachInput({}, [&](const std::string& text) { writer.Write(text); });
  } else {
    writer.Write(JoinWords(options.words));
  }
  return writer.ExitStatus();
}

}  // namespace

Command AddHintCommand(CLI::App& program)
{
  auto options = std::make_shared<HintOptions>();
  CLI::App* app = program.add_subcommand("hint", "Show what may be meant while an address is being typed");
  app->add_option("prefix", options->words,
                  "The beginning of an address; without it, a box to type into on a terminal,\n"
                  "otherwise the lines of standard input")
      ->option_text("PREFIX");
  app->add_option("--place", options->place, "Only hints in this place: locality, state, postcode")
      ->option_text("LAST_LINE");
  AddLimitOption(*app, options->limit, "hints")->check(CLI::Range(0, kMostHints));
  AddQueryOptions(*app, options->query);
  app->footer(
      "Prints text, kind (locality, street, building, address), number of addresses and DPID, separated by TABs;\n"
      "for lines of standard input an empty line behind the hints of each. In the box the arrow keys choose, Enter\n"
      "takes the hint's text, or prints the address when there is only one, and Esc leaves.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
