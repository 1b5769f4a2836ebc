// Reading a date, beside ICU by itself with a formatter that is made for each text.

#include <benchmark/benchmark.h>
#include <unicode/smpdtfmt.h>

#include "TQStoreKitLib/utilities/OptionalString.hpp"
#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace {

constexpr const char* kText = "2020-01-02 13:45:59";
constexpr const char* kPattern = "yyyy-MM-dd HH:mm:ss";

void toDateOurs(benchmark::State& state) {
  Foundation::setCurrentLocale(Foundation::Locale("en_US"));
  for (auto _ : state) {
    auto date = TQStoreKitLib::toDate(kText, kPattern);
    benchmark::DoNotOptimize(date);
  }
  Foundation::setCurrentLocale(std::nullopt);
}

void toDateBare(benchmark::State& state) {
  for (auto _ : state) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(icu::UnicodeString::fromUTF8(kPattern), icu::Locale("en_US"),
                                 status);
    format.adoptTimeZone(icu::TimeZone::createTimeZone(u"UTC"));
    format.setLenient(false);
    auto date = format.parse(icu::UnicodeString::fromUTF8(kText), status);
    benchmark::DoNotOptimize(date);
  }
}

BENCHMARK(toDateOurs)->Name("toDate/ours");
BENCHMARK(toDateBare)->Name("toDate/bare");

}  // namespace
