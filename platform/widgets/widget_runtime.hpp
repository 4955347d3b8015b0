#pragma once

#include <vector>

#include "platform/widgets/widget_configuration.hpp"

namespace platform {

/// Prepares the process: languages first, since a widget's declaration already needs them.
void prepareWidgetProcess();

/// Answers the host's call on the command line for the first of the widgets and prints the answer
/// on standard output as one JSON object. Returns the exit status: 0 when there is an answer, 2
/// for a wrong call, 1 when the answer cannot be written.
int answerHost(const std::vector<WidgetConfiguration>& widgets, int argumentCount,
               char** arguments);

/// The main of a widget bundle: prepares the process and answers the host.
template <class Bundle>
int widgetBundleMain(const Bundle& bundle, int argumentCount, char** arguments) {
  prepareWidgetProcess();
  std::vector<WidgetConfiguration> widgets;
  for (const auto& widget : bundle.body()) widgets.push_back(widget.body());
  return answerHost(widgets, argumentCount, arguments);
}

}  // namespace platform
