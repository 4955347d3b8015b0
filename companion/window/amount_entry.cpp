#include "companion/window/amount_entry.hpp"

#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/PerformanceMetrics.hpp"
#include "platform/foundation/formatting.hpp"

namespace companion::window {

namespace {

constexpr double smallest = 0.01;
constexpr double largest = 1e9;
constexpr double pageOfSteps = 10;
constexpr unsigned mostFractionDigits = 2;

int readAmount(GtkSpinButton* entry, double* amount, gpointer) {
  const auto value = platform::decimalFromText(gtk_editable_get_text(GTK_EDITABLE(entry)),
                                               velmora::displayLocale());
  if (!value) return GTK_INPUT_ERROR;
  *amount = *value;
  return TRUE;
}

gboolean writeAmount(GtkSpinButton* entry, gpointer) {
  const auto text = velmora::formatNumber(gtk_spin_button_get_value(entry),
                                          static_cast<int>(gtk_spin_button_get_digits(entry)));
  if (text != gtk_editable_get_text(GTK_EDITABLE(entry)))
    gtk_editable_set_text(GTK_EDITABLE(entry), text.c_str());
  return TRUE;
}

/// Scrolling the page must not change the amount that happens to pass under the pointer.
void ignoreScrolling(GtkWidget* entry) {
  const Reference<GListModel> controllers(gtk_widget_observe_controllers(entry));
  for (guint i = 0; i < g_list_model_get_n_items(controllers.get()); ++i) {
    const Reference<GtkEventController> controller(
        GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers.get(), i)));
    if (GTK_IS_EVENT_CONTROLLER_SCROLL(controller.get()))
      gtk_event_controller_set_propagation_phase(controller.get(), GTK_PHASE_NONE);
  }
}

}  // namespace

GtkWidget* makeAmountEntry(double step) {
  auto* adjustment = gtk_adjustment_new(smallest, smallest, largest, step, step * pageOfSteps, 0);
  GtkWidget* entry = gtk_spin_button_new(adjustment, 0, mostFractionDigits);
  gtk_spin_button_set_update_policy(GTK_SPIN_BUTTON(entry), GTK_UPDATE_IF_VALID);
  gtk_editable_set_width_chars(GTK_EDITABLE(entry), 8);
  gtk_editable_set_max_width_chars(GTK_EDITABLE(entry), 8);
  gtk_editable_set_alignment(GTK_EDITABLE(entry), 1);
  gtk_widget_set_valign(entry, GTK_ALIGN_CENTER);
  g_signal_connect(entry, "input", G_CALLBACK(readAmount), nullptr);
  g_signal_connect(entry, "output", G_CALLBACK(writeAmount), nullptr);
  ignoreScrolling(entry);
  return entry;
}

void showAmount(GtkWidget* entry, double amount, const std::string& currency) {
  auto* spin = GTK_SPIN_BUTTON(entry);
  const auto digits = platform::currencyFractionDigits(currency).value_or(mostFractionDigits);
  gtk_spin_button_set_digits(spin, std::min(static_cast<unsigned>(digits), mostFractionDigits));
  if (amount != gtk_spin_button_get_value(spin)) gtk_spin_button_set_value(spin, amount);
}

double amountOf(GtkWidget* entry) { return gtk_spin_button_get_value(GTK_SPIN_BUTTON(entry)); }

}  // namespace companion::window
