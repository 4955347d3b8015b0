#include <benchmark/benchmark.h>

#include <string>

#include "VelmoraWidget/AdSenseClient.hpp"
#include "VelmoraWidget/Reports.hpp"

// A daily report from the answer's text to the table of days, from the 35 rows of a refresh to far
// more than any account has. Run by script/bench.

namespace {

std::string report(std::int64_t rows) {
  std::string text = R"({"headers":[{"name":"DATE","type":"DIMENSION"})";
  for (const char* name : {"ESTIMATED_EARNINGS", "PAGE_VIEWS", "PAGE_VIEWS_RPM", "IMPRESSIONS",
                           "CLICKS", "COST_PER_CLICK", "PAGE_VIEWS_CTR"})
    text += std::string(R"(,{"name":")") + name + R"(","currencyCode":"EUR"})";
  text += R"(],"rows":[)";
  for (std::int64_t row = 0; row < rows; ++row) {
    if (row > 0) text += ',';
    text += R"({"cells":[{"value":")" + std::to_string(1'000'000 + row) + "\"}";
    for (const char* value : {"11.49", "4510", "2.55", "15123", "203", "0.06", "0.045"})
      text += std::string(R"(,{"value":")") + value + "\"}";
    text += "]}";
  }
  return text + "]}";
}

void readReport(benchmark::State& state) {
  const auto text = report(state.range(0));
  for (auto _ : state) {
    const auto answer = velmora::decodeReportResponse(text);
    benchmark::DoNotOptimize(velmora::parseReportRows(answer.headers, answer.rows));
  }
  state.SetComplexityN(state.range(0));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readReport)->Arg(35)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Complexity();

}  // namespace

BENCHMARK_MAIN();
