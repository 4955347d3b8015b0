#include "companion/end_page.hpp"

#include <glib.h>

#include "platform/foundation/formatting.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/raii.hpp"
#include "platform/foundation/text.hpp"

namespace companion {

namespace {

using platform::localizedString;

constexpr const char* style = R"(
*{box-sizing:border-box;margin:0}
html{color-scheme:dark;background:#0a1729}
body{min-height:100vh;min-height:100dvh;display:flex;align-items:center;justify-content:center;
padding:24px;background:linear-gradient(#14294d,#0a1729);color:#fff;
font:17px/1.5 Inter,system-ui,sans-serif;text-align:center}
main{width:100%;max-width:26rem}
svg{width:96px;height:96px;margin-bottom:28px}
h1{font-size:1.6rem;line-height:1.25;font-weight:600;text-wrap:balance}
p{margin-top:12px;color:#b8c4d9;overflow-wrap:anywhere;text-wrap:balance}
.who{color:#fff;font-weight:500}
)";

// The widget's two rings, whole for a good end and broken for a bad one.
constexpr const char* goodRings = R"(<svg viewBox="0 0 96 96" fill="none" aria-hidden="true">
<circle cx="48" cy="48" r="42" stroke="#ebb333" stroke-width="8"/>
<circle cx="48" cy="48" r="28" stroke="#32d74b" stroke-width="8"/>
<path d="m37 49 8 8 15-17" stroke="#fff" stroke-width="6" stroke-linecap="round"
stroke-linejoin="round"/></svg>)";

constexpr const char* badRings = R"(<svg viewBox="0 0 96 96" fill="none" aria-hidden="true">
<circle cx="48" cy="48" r="42" stroke="#fff" stroke-opacity=".15" stroke-width="8"/>
<path d="M48 6a42 42 0 0 1 42 42" stroke="#ebb333" stroke-width="8" stroke-linecap="round"/>
<path d="M48 32v19" stroke="#fff" stroke-width="6" stroke-linecap="round"/>
<circle cx="48" cy="63" r="4" fill="#fff"/></svg>)";

std::string escaped(const std::string& text) {
  const platform::Owned<gchar, g_free> markup(
      g_markup_escape_text(text.data(), static_cast<gssize>(text.size())));
  return markup.get();
}

std::string paragraph(const std::string& text, const char* attributes = "") {
  return text.empty() ? "" : std::string("<p") + attributes + ">" + escaped(text) + "</p>";
}

/// `lang` and `dir` of the language that the texts are in.
std::string languageAttributes() {
  const auto locale = platform::textLanguage();
  const auto language = locale.substr(0, locale.find_first_of("_-"));
  return "lang=\"" + escaped(language) + "\" dir=\"" +
         (platform::isRightToLeft(locale) ? "rtl" : "ltr") + "\"";
}

std::string page(const char* rings, const std::string& title, const std::string& paragraphs) {
  return "<!DOCTYPE html><html " + languageAttributes() +
         "><head><meta charset=\"utf-8\"><meta name=\"viewport\" content=\"width=device-width, "
         "initial-scale=1\"><meta name=\"robots\" content=\"noindex\"><link rel=\"icon\" "
         "href=\"data:,\"><title>Velmora</title><style>" +
         style + "</style></head><body><main>" + rings + "<h1>" + escaped(title) + "</h1>" +
         paragraphs + "</main></body></html>\n";
}

}  // namespace

std::string successPage(const std::string& account) {
  return page(goodRings, localizedString("You are signed in"),
              paragraph(account, " class=\"who\"") +
                  paragraph(localizedString("Velmora shows your figures from now on. Close "
                                            "this page and go back to Velmora.")));
}

std::string failurePage(const std::string& reason) {
  return page(
      badRings, localizedString("The sign-in did not succeed"),
      paragraph(reason) + paragraph(localizedString("Close this page and go back to Velmora.")));
}

std::string strangerPage() {
  return page(badRings, localizedString("This page belongs to no sign-in"),
              paragraph(localizedString("Velmora did not expect this request, and nothing has "
                                        "changed. Go back to the sign-in page, or start again "
                                        "from Velmora.")));
}

}  // namespace companion
