#include "platform/widgets/widget_runtime.hpp"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <future>
#include <iostream>

#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/bundle.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/library_logs.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/standard_streams.hpp"
#include "platform/foundation/text.hpp"

namespace platform {

namespace {

enum ExitStatus { answered = 0, cannotWrite = 1, wrongCall = 2 };

/// What the command line asks for.
struct HostCall {
  enum class Question { describe, placeholder, snapshot, timeline };

  Question question = Question::describe;
  std::string family = "small";
  double scale = 1;
  std::string output;
};

int complain(ExitStatus status, const std::string& message) {
  std::cerr << mainBundleName << ": " << oneLine(message) << std::endl;
  return status;
}

std::string checkFamily(const std::vector<WidgetFamily>& families, const std::string& name) {
  const auto family = familyFromName(name);
  const bool supported =
      family && std::find(families.begin(), families.end(), *family) != families.end();
  return supported ? "" : "'" + name + "' is none of small, medium, large";
}

std::string checkScale(const std::string& text) {
  double scale = 0;
  const bool number = CLI::detail::lexical_cast(text, scale);
  return number && scale > 0 && scale <= 8 ? "" : "'" + text + "' is not above 0 and at most 8";
}

std::string checkOutput(const std::string& file) {
  return pictureFormat(file) ? "" : "'" + file + "' does not end in .png, .svg, .pdf or .json";
}

void addQuestion(CLI::App& app, HostCall& call, const WidgetConfiguration& widget,
                 const std::string& name, HostCall::Question question,
                 const std::string& description) {
  auto* command = app.add_subcommand(name, description);
  command->callback([&call, question] { call.question = question; });
  if (question == HostCall::Question::describe) return;
  command->add_option("--family", call.family, "small, medium or large (default small)")
      ->check(CLI::Validator(
          [families = widget.families](std::string& text) { return checkFamily(families, text); },
          ""));
  command->add_option("--scale", call.scale, "device pixels per point, above 0 to 8 (default 1)")
      ->check(CLI::Validator([](std::string& text) { return checkScale(text); }, ""));
  command->add_option("--output", call.output, "picture file ending in .png, .svg, .pdf or .json")
      ->check(CLI::Validator([](std::string& text) { return checkOutput(text); }, ""));
}

Json describe(const std::vector<WidgetConfiguration>& widgets) {
  Json list = Json::array();
  for (const auto& widget : widgets) {
    Json families = Json::array();
    for (const auto family : widget.families) families.push_back(familyName(family));
    list.push_back({{"kind", widget.kind},
                    {"displayName", widget.displayName},
                    {"description", widget.description},
                    {"families", families}});
  }
  return {{"widgets", list}};
}

Timeline<HostEntry> awaitTimeline(const WidgetConfiguration& widget,
                                  const TimelineProviderContext& context) {
  std::promise<Timeline<HostEntry>> promise;
  widget.getTimeline(context, [&promise](Timeline<HostEntry> timeline) {
    promise.set_value(std::move(timeline));
  });
  auto timeline = promise.get_future().get();
  drainBackgroundTasks();
  return timeline;
}

/// What the provider says, and when to ask again if that was asked.
struct Answer {
  std::vector<HostEntry> entries;
  std::optional<Instant> reloadDate;
};

Answer ask(const WidgetConfiguration& widget, const HostCall& call, WidgetFamily family) {
  const TimelineProviderContext context{.family = family};
  Answer answer;
  if (call.question == HostCall::Question::placeholder) {
    answer.entries.push_back(widget.placeholder(context));
  } else if (call.question == HostCall::Question::snapshot) {
    widget.getSnapshot(context,
                       [&](HostEntry entry) { answer.entries.push_back(std::move(entry)); });
  } else {
    auto timeline = awaitTimeline(widget, context);
    answer.entries = std::move(timeline.entries);
    answer.reloadDate = timeline.policy.date;
  }
  return answer;
}

int print(const Json& json) {
  return printLine(printJson(json)) ? answered
                                    : complain(cannotWrite, "cannot write to standard output");
}

/// Draws the entries, writes the picture of the first if that is asked for, and prints them.
int report(const WidgetConfiguration& widget, const HostCall& call) {
  const auto family = *familyFromName(call.family);
  const auto answer = ask(widget, call, family);
  Json list = Json::array();
  for (const auto& entry : answer.entries) {
    const auto drawn = drawWidget(entry.view, family, call.scale);
    if (!call.output.empty() && list.empty())
      writeOutputFile(call.output, picture(drawn, *pictureFormat(call.output)));
    list.push_back({{"date", iso8601(entry.date)},
                    {"content", entry.figures},
                    {"accessibility", drawn.accessibility}});
  }
  Json result{{"kind", widget.kind}, {"entries", list}};
  if (answer.reloadDate) result["policy"] = {{"after", iso8601(*answer.reloadDate)}};
  return print(result);
}

}  // namespace

void prepareWidgetProcess() {
  static const std::string program(mainBundleName);
  occupyStandardStreams();
  surviveFailedWrites();
  silenceLibraryLogs(program.c_str());
  loadStringTables();
}

int answerHost(const std::vector<WidgetConfiguration>& widgets, int argumentCount,
               char** arguments) {
  const auto& widget = widgets.front();
  HostCall call;
  CLI::App app(widget.description, std::string(mainBundleName));
  app.require_subcommand(1);
  using Question = HostCall::Question;
  addQuestion(app, call, widget, "describe", Question::describe, "Say what this program offers");
  addQuestion(app, call, widget, "placeholder", Question::placeholder, "Made-up figures, at once");
  addQuestion(app, call, widget, "snapshot", Question::snapshot, "The figures at hand, at once");
  addQuestion(app, call, widget, "timeline", Question::timeline,
              "Fresh figures, if they can be had");
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    return complain(wrongCall, error.what());
  }
  if (call.question == Question::describe) return print(describe(widgets));
  try {
    return report(widget, call);
  } catch (const std::exception& error) {
    return complain(cannotWrite, error.what());
  }
}

}  // namespace platform
