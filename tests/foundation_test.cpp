#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <thread>

#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/calendar.hpp"
#include "platform/foundation/formatting.hpp"
#include "platform/foundation/json.hpp"
#include "platform/foundation/languages.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/text.hpp"
#include "platform/foundation/url.hpp"
#include "tests/support/environment.hpp"
#include "tests/support/held_clock.hpp"

using namespace platform;
using testing::ElementsAre;

namespace {

template <class Read>
std::string decodingError(std::string_view document, const Read& read) {
  try {
    read(JsonDecoder(document));
  } catch (const JsonDecodingError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(Json, decodesStrictly) {
  const JsonDecoder object(
      R"({"a":5.0,"b":-9223372036854775808,"c":null,"d":1,"d":"x","e":[1,2],"f":1e2})");
  EXPECT_EQ(object.at("a").integer(), 5);
  EXPECT_EQ(object.at("b").integer(), INT64_MIN);
  EXPECT_EQ(object.at("f").integer(), 100);
  EXPECT_EQ(object.at("a").number(), 5.0);
  EXPECT_EQ(object.optionalString("c"), std::nullopt);
  EXPECT_EQ(object.optionalString("missing"), std::nullopt);
  EXPECT_EQ(object.optionalString("d"), "x");
  EXPECT_EQ(object.at("e").array()[1].integer(), 2);
  EXPECT_TRUE(object.contains("c"));
}

TEST(Json, errorsNameTheField) {
  const auto integer = [](const JsonDecoder& d) {
    (void)d.at("list").array()[1].at("n").integer();
  };
  for (const char* bad : {"5.5", "true", "\"5\"", "null", "9223372036854775808", "[]", "{}",
                          "1e300", "-9223372036854775809"}) {
    const auto document = std::string(R"({"list":[{},{"n":)") + bad + "}]}";
    EXPECT_EQ(decodingError(document, integer), "list[1].n: expected a 64-bit integer") << bad;
  }
  const auto number = [](const JsonDecoder& d) { (void)d.at("n").number(); };
  EXPECT_EQ(decodingError(R"({"n":true})", number), "n: expected a number");
  EXPECT_EQ(decodingError(R"({"m":1})", number), "n: missing");
  EXPECT_EQ(decodingError("[1]", number), "the document: expected an object");
  const auto optional = [](const JsonDecoder& d) { (void)d.optionalString("n"); };
  EXPECT_EQ(decodingError(R"({"n":1})", optional), "n: expected a string");
}

TEST(Json, refusesWhatIsNoDocument) {
  const auto nothing = [](const JsonDecoder&) {};
  for (const std::string bad : {"", " ", "{", "{}x", "{} {}", "[1,]", "1e999", "-1e999", "nan",
                                "{\"a\":\"\xff\"}", "<html>", "{'a':1}"})
    EXPECT_EQ(decodingError(bad, nothing), "not a JSON document") << bad;
  const auto nested = [&](std::size_t depth) {
    return decodingError(std::string(depth, '[') + std::string(depth, ']'), nothing);
  };
  EXPECT_EQ(nested(512), "no error");
  for (const std::size_t deep : {520, 200'000}) EXPECT_EQ(nested(deep), "nested too deeply");
  std::string many = "[0";
  for (int i = 0; i < 4'000'000; ++i) many += ",0";
  EXPECT_EQ(decodingError(many + "]", nothing), "too many values");
}

TEST(Json, writesNumbersExactlyAndRefusesWhatItCannotHold) {
  EXPECT_EQ(
      encodeJson({jsonNumber(96), jsonNumber(-978307200), jsonNumber(0.1), jsonNumber(1e300)}),
      "[96,-978307200,0.1,1e+300]");
  const double precise = 801'234'567.123456789;
  EXPECT_EQ(JsonDecoder(encodeJson(jsonNumber(precise))).number(), precise);
  EXPECT_TRUE(std::signbit(JsonDecoder(encodeJson(jsonNumber(-0.0))).number()));
  EXPECT_THROW(encodeJson({{"a", {1, jsonNumber(NAN)}}}), JsonEncodingError);
  EXPECT_THROW(encodeJson(jsonNumber(INFINITY)), JsonEncodingError);
  EXPECT_THROW(encodeJson("\xff"), JsonEncodingError);
  EXPECT_EQ(printJson({jsonNumber(NAN), "\xff"}), "[null,\"\xef\xbf\xbd\"]");
}

TEST(Text, readsNumbersAsTheCLocaleDoes) {
  EXPECT_EQ(numberFromText("+1e1"), 10);
  EXPECT_EQ(numberFromText("0x10"), 16);
  EXPECT_EQ(numberFromText("-.5"), -0.5);
  EXPECT_TRUE(std::isinf(numberFromText("inf").value_or(0)));
  EXPECT_TRUE(std::isinf(numberFromText("1e999").value_or(0)));
  EXPECT_TRUE(std::isnan(numberFromText("nan").value_or(0)));
  for (const std::string bad :
       {"", " 1", "\t1", "\v1", "1 ", "1,5", "1.5.2", "--1", "x", "1\n", "-", "\xc2\xa0"})
    EXPECT_EQ(numberFromText(bad), std::nullopt) << bad;
  EXPECT_EQ(numberFromText(std::string("1\0", 2)), std::nullopt);
}

TEST(Text, repairsAndSplitsUtf8) {
  EXPECT_EQ(repairedUtf8("a\xffz \n"), "a\xef\xbf\xbdz \n");
  EXPECT_EQ(repairedUtf8("é€😀"), "é€😀");
  EXPECT_EQ(repairedUtf8("\xe2\x82"), "\xef\xbf\xbd");
  EXPECT_THAT(graphemeClusters("1e\xcc\x81€"), ElementsAre("1", "e\xcc\x81", "€"));
  EXPECT_TRUE(isNumeric("7") && isNumeric("½") && isNumeric("٣"));
  EXPECT_FALSE(isNumeric("€") || isNumeric("a") || isNumeric(""));
}

TEST(Calendar, rollsPartsOverAndRefusesImpossibleDays) {
  const UtcCalendar calendar;
  const auto day = [&](DateComponents parts) {
    const auto date = calendar.date(parts);
    return date ? iso8601(*date).substr(0, 10) : "none";
  };
  EXPECT_EQ(day({2026, 5, 21}), "2026-05-21");
  EXPECT_EQ(day({2026, 14, 35}), "2027-03-07");
  EXPECT_EQ(day({2026, 0, 0}), "2025-11-30");
  EXPECT_EQ(day({2026, 2, 30}), "2026-03-02");
  EXPECT_EQ(day({2026, {}, {}}), "2026-01-01");
  EXPECT_EQ(day({{}, 5, 21}), "0001-05-21");
  EXPECT_EQ(day({2026, -11, 1}), "2025-01-01");
  EXPECT_EQ(calendar.components(*calendar.date({0, -5, 1})).month, 7);
  EXPECT_EQ(day({40'000, 1, 1}), "none");
  EXPECT_EQ(day({INT64_MAX, INT64_MIN, INT64_MAX}), "none");
  EXPECT_EQ(calendar.daysInMonth(2024, 2), 29);
  EXPECT_EQ(calendar.daysInMonth(2023, 2), 28);
  EXPECT_EQ(calendar.daysInMonth(2023, 13), std::nullopt);
  EXPECT_FALSE(calendar.components({1e300}).year || calendar.components({NAN}).year);
}

TEST(Calendar, writesInstants) {
  const auto date = tests::instant("2026-05-21T09:30:00.25");
  EXPECT_EQ(iso8601(date), "2026-05-21T09:30:00.250Z");
  EXPECT_EQ(iso8601(instantFromUnixSeconds(-0.5)), "1969-12-31T23:59:59.500Z");
  EXPECT_EQ(iso8601(UtcCalendar{}.addingDays(date, -34)), "2026-04-17T09:30:00.250Z");
}

TEST(DayFormatter, readsOnlyWholeDates) {
  const DayFormatter formatter("en_US_POSIX", "yyyy-MM-dd");
  const auto date = formatter.date("2024-02-29");
  ASSERT_TRUE(date);
  EXPECT_EQ(formatter.text(*date), "2024-02-29");
  EXPECT_EQ(formatter.text(*date + 86'399), "2024-02-29");
  const auto early = UtcCalendar{}.date({1000, 1, 1});
  EXPECT_EQ(formatter.text(*early), "1000-01-01") << "Gregorian before 1582, too";
  EXPECT_EQ(formatter.date("1000-01-01"), early);
  for (const char* bad : {"", "2026-02-30", "2026-05", "2026-05-21x", "today", "21.5.2026"})
    EXPECT_EQ(formatter.date(bad), std::nullopt) << bad;
}

TEST(Formatting, followsTheLocaleData) {
  EXPECT_EQ(decimalText(1234.5, 1, "fr_FR"), "1\u202f234,5");
  EXPECT_EQ(decimalText(1234, 0, "es"), "1234");  // groups from five digits on
  EXPECT_EQ(decimalText(2.5, 0, "en"), "2");
  EXPECT_EQ(decimalText(3.5, 0, "en"), "4");
  EXPECT_EQ(currencyText(9.21, "EUR", 2, "en_US"), "€9.21");
  EXPECT_EQ(currencyText(389.85, "EUR", 2, "fr-FR"), "389,85\u00a0€");
  EXPECT_EQ(currencyText(9.21, "JPY", 2, "en_US"), "¥9");
  EXPECT_EQ(currencyText(1.2345, "BHD", 2, "en_US"), "BHD\u00a01.23");
  EXPECT_EQ(currencyText(0.125, "USD", 2, "en_US"), "$0.12");
  EXPECT_EQ(currencyText(2.675, "USD", 2, "en_US"), "$2.68");
  EXPECT_EQ(currencyText(1, "", 2, "en_US"), std::nullopt);
  EXPECT_EQ(currencyText(1, "EURO", 2, "en_US"), std::nullopt);
  EXPECT_EQ(plainDecimalText(-1e300, 2).size(), 305U);
  EXPECT_EQ(mediumDateText(tests::instant("2026-05-21T00:00:00"), "fr"), "21 mai 2026");
  EXPECT_EQ(mediumDateText(*UtcCalendar{}.date({1, 1, 1}), "en_US"), "Jan 1, 1");
}

TEST(Formatting, readsAmountsAsTheyAreTyped) {
  EXPECT_EQ(decimalFromText("1.234,5", "de"), 1234.5);
  EXPECT_EQ(decimalFromText(" 12,5 ", "fr"), 12.5);
  EXPECT_EQ(decimalFromText("12.5", "de"), 12.5) << "the point does not group here";
  EXPECT_EQ(decimalFromText("١٥٫٢٥", "ar_EG"), 15.25);
  for (const auto* text : {"", " ", "x", "1x", "1e999", "nan", "inf"})
    EXPECT_EQ(decimalFromText(text, "en"), std::nullopt) << text;
}

TEST(Url, encodesAndRecognisesAddresses) {
  EXPECT_EQ(percentEncoded("a b/+é~", "ab~"), "a%20b%2F%2B%C3%A9~");
  EXPECT_EQ(urlWithQuery("https://x.example/v2/a/reports:generate",
                         {{"metrics", "A"}, {"metrics", "B"}, {"d.year", "2026"}}),
            "https://x.example/v2/a/reports:generate?metrics=A&metrics=B&d.year=2026");
  for (const char* bad :
       {"", "x", "ftp://x/", "https://", "https://a b/", "https://x/%zz", "https://x/é", "//x/y"})
    EXPECT_FALSE(originOf(bad) && urlWithQuery(bad, {})) << bad;
  EXPECT_EQ(originOf("https://X.example:443/a"), originOf("https://x.example/b"));
  for (const char* allowed :
       {"https://x.example", "http://localhost:1", "http://127.9.9.9/", "http://[::1]:8/"})
    EXPECT_TRUE(isAllowed(*originOf(allowed))) << allowed;
  for (const char* forbidden : {"http://x.example", "http://localhost.example", "http://128.0.0.1",
                                "http://127.0.0.1.example"})
    EXPECT_FALSE(isAllowed(*originOf(forbidden))) << forbidden;
}

using Languages = tests::Environment;

TEST_F(Languages, comeFromTheEnvironment) {
  setenv("LANGUAGE", "fr_CA.UTF-8::sr_RS@latin:de", 1);
  EXPECT_THAT(preferredLanguages(), ElementsAre("fr_CA", "sr_Latn_RS", "de"));
  unsetenv("LANGUAGE");
  EXPECT_TRUE(preferredLanguages().empty());
  setenv("LANG", "pl_PL.UTF-8", 1);
  EXPECT_EQ(currentLocaleIdentifier(), "pl_PL");
  setenv("LC_MESSAGES", "de_AT@euro", 1);
  EXPECT_EQ(currentLocaleIdentifier(), "de_AT");
  setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_EQ(currentLocaleIdentifier(), "en_US");
}

TEST(LocalizedStrings, fillsPlaceholders) {
  EXPECT_EQ(
      localizedFormat("AdSense error (%lld): %s", {std::int64_t{403}, std::string("{%s}\0!", 6)}),
      std::string("AdSense error (403): {%s}\0!", 27));
  EXPECT_EQ(localizedFormat("%2$s %1$lld %% %s", {std::int64_t{-1}, "x"}), "x -1 % -1");
  EXPECT_EQ(localizedString(""), "");
}

TEST(BackgroundTasks, areDrained) {
  std::atomic<int> done = 0;
  for (int i = 0; i < 20; ++i) {
    startBackgroundTask([&done] {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      ++done;
    });
  }
  drainBackgroundTasks();
  EXPECT_EQ(done, 20);
}
