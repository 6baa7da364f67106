#include <iostream>
#include <memory>
#include <optional>

#include "advice.h"
#include "answer.h"
#include "command.h"
#include "exit_code.h"
#include "inputs.h"
#include "json.h"
#include "qxpaf/arf_au.h"

namespace tool {
namespace {

struct FormatOptions
{
  QueryOptions query;
  std::vector<std::string> addresses;
  bool upper = false;
  bool titleLastLine = false;
  bool abbreviate = false;
  bool oneLine = false;
  long lines = 0;
  long width = 0;

  long Value() const
  {
    return (upper ? PAF_AU_FORMAT_UPPER : 0) | (titleLastLine ? PAF_AU_FORMAT_LAST_LINE_TITLE : 0) |
           (abbreviate ? PAF_AU_FORMAT_ABBREVIATE : 0) | (oneLine ? PAF_AU_FORMAT_ONE_LINE : 0) |
           lines << PAF_AU_FORMAT_LINES_SHIFT | width << PAF_AU_FORMAT_WIDTH_SHIFT;
  }
};

std::vector<std::string> Lines(const std::string& text)
{
  std::vector<std::string> lines;
  const Record record(text);
  for (std::size_t number = 1; number <= record.Size(); ++number) {
    lines.push_back(record.Field(number));
  }
  return lines;
}

/** Prints the layouts: labels with an empty line behind each, or one line an address. */
class LayoutWriter
{
 public:
  explicit LayoutWriter(const FormatOptions& options) : options_(options)
  {
    if (options.query.json) {
      json_.emplace(std::cout);
    }
  }

  void Write(const std::string& input, const Reply& reply)
  {
    exitStatus_ = std::max(exitStatus_, ExitStatusOf(reply));
    if (json_) {
      WriteJson(input, reply);
    } else {
      WriteText(reply);
    }
  }

  int ExitStatus() const { return exitStatus_; }

 private:
  void WriteText(const Reply& reply)
  {
    if (reply.status != 0) {
      std::cout << "-\t" << StatusText(reply) << '\n';
    }
    for (const std::string& line : reply.status == 0 ? Lines(reply.text) : std::vector<std::string>()) {
      std::cout << line << '\n';
    }
    std::cout << (options_.oneLine ? "" : "\n");
  }

  void WriteJson(const std::string& input, const Reply& reply)
  {
    json_->Write({{"input", input},
                  {"status", reply.status},
                  {"lines", reply.status == 0 ? Json(Lines(reply.text)) : Json::array()},
                  {"description", reply.description}});
  }

  const FormatOptions& options_;
  std::optional<JsonArray> json_;  ///< empty for text
  int exitStatus_ = kExitFound;
};

int Run(const FormatOptions& options)
{
  Session session;
  OpenOrExplain(session, options.query.database);
  LayoutWriter writer(options);
  ForEachInput(options.addresses,
               [&](const std::string& address) { writer.Write(address, session.Format(address, options.Value())); });
  return writer.ExitStatus();
}

}  // namespace

Command AddFormatCommand(CLI::App& program)
{
  auto options = std::make_shared<FormatOptions>();
  CLI::App* app = program.add_subcommand("format", "Lay addresses out as on an envelope");
  app->add_option("address", options->addresses, "Addresses; without any, the lines of standard input")
      ->option_text("ADDRESS...");
  app->add_flag("--upper", options->upper, "Everything in upper case");
  app->add_flag("--title-last-line", options->titleLastLine, "The last line not in upper case");
  app->add_flag("--abbreviate", options->abbreviate, "Types abbreviated: St, Apt 3");
  app->add_flag("--one-line", options->oneLine, "One line an address");
  app->add_option("--lines", options->lines, "At most so many lines (1 to 255)")
      ->option_text("N")
      ->check(CLI::Range(1, 255));
  app->add_option("--width", options->width, "At most so many characters a line (1 to 32767)")
      ->option_text("M")
      ->check(CLI::Range(1, 32767));
  AddQueryOptions(*app, options->query);
  app->footer(
      "An address that the database has by the strict rules is written as it has it, any other in its own words.\n"
      "Prints an empty line behind each address, except with --one-line.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
