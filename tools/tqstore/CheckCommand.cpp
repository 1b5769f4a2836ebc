#include "tools/tqstore/CheckCommand.hpp"

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/ProductTable.hpp"

namespace tqstore {

namespace {

using StoreKit::Catalogue;
using StoreKit::ConfigurationProblem;
using StoreKit::ConfigurationReading;

const char* severityName(ConfigurationProblem::Severity severity) {
  return severity == ConfigurationProblem::Severity::warning ? "warning" : "error";
}

// Every catalogue is looked at alone: none is ever compared with another.
constexpr std::uint64_t kOrigin = 0;

Catalogue catalogueOf(const ConfigurationReading& reading, const std::string& locale) {
  if (!reading.configuration) return {};
  const auto& settings = reading.configuration->settings;
  return {*reading.configuration, locale.empty() ? settings.locale : locale, settings.storefront,
          kOrigin};
}

Json problemJson(const ConfigurationProblem& problem) {
  return {{"severity", severityName(problem.severity)},
          {"place", problem.place},
          {"message", problem.message}};
}

void writeAsJson(const std::string& file, const ConfigurationReading& reading,
                 const Catalogue& catalogue) {
  Json problems = Json::array();
  for (const auto& problem : reading.problems) problems.push_back(problemJson(problem));
  Json products = Json::array();
  for (const auto& entry : catalogue.entries()) products.push_back(toJson(entry));
  writeJson({{"file", file},
             {"readable", reading.configuration.has_value()},
             {"problems", std::move(problems)},
             {"products", std::move(products)}});
}

void writeForPerson(const std::string& file, const ConfigurationReading& reading,
                    const Catalogue& catalogue) {
  for (const auto& problem : reading.problems) {
    const auto text = printable(problem.description());
    writeLine(styled(severityName(problem.severity), Style::red) + "  " + text);
  }
  auto summary = printable(file) + ": " + counted(reading.problems.size(), "problem");
  if (!reading.configuration) return writeLine(summary + ", cannot be used");
  const auto& settings = reading.configuration->settings;
  summary += ", " + counted(catalogue.entries().size(), "product") + ", storefront " +
             printable(settings.storefront) + ", locale " + printable(settings.locale);
  writeLine(styled(summary, Style::bold));
  if (!catalogue.entries().empty()) writeProducts(catalogue.entries());
}

ExitStatus check(const std::vector<std::string>& files, const GlobalOptions& options) {
  bool good = true;
  for (const auto& file : files) {
    const auto reading = StoreKit::readConfiguration(file);
    const auto catalogue = catalogueOf(reading, options.locale);
    (options.json ? writeAsJson : writeForPerson)(file, reading, catalogue);
    good = good && reading.configuration && reading.problems.empty();
  }
  return good ? kDone : kRefused;
}

Manual manual() {
  return {.group = "The shop",
          .summary = "Look for mistakes in configurations",
          .description =
              "Reads .storekit configurations and shows each problem with its place in the file, "
              "and what the store makes of the rest: products, prices, periods. Places are JSON "
              "pointers (/products/0/displayPrice), or line and column where the text is no JSON. "
              "Nothing is opened or changed. With --json each file is one object.",
          .refusal = "There is a problem, or a file cannot be read.",
          .examples =
              " tqstore check shop.storekit\n"
              " tqstore --json check *.storekit | jq '.problems[]'\n"};
}

}  // namespace

void addCheck(CommandLine& line) {
  const auto files = std::make_shared<std::vector<std::string>>();
  auto command = line.addWithoutStore(
      "check", manual(), [files, &options = line.options()] { return check(*files, options); });
  command.addOption("FILE", *files, "A .storekit configuration").required();
}

}  // namespace tqstore
