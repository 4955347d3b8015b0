#include "VelmoraWidget/EarningsWidget.hpp"
#include "platform/widgets/widget_runtime.hpp"

int main(int argumentCount, char** arguments) {
  return platform::widgetBundleMain(velmora::VelmoraWidgetBundle{}, argumentCount, arguments);
}
