#include "platform/embedded/store/configuration/ConfigurationReader.hpp"

#include <utility>

#include "platform/embedded/store/configuration/ConfigurationCatalogue.hpp"
#include "platform/embedded/store/configuration/ConfigurationJson.hpp"
#include "platform/embedded/store/configuration/ConfigurationSettings.hpp"
#include "platform/embedded/store/configuration/ConfigurationShape.hpp"

namespace StoreKit {

namespace detail {

namespace {

bool isBlank(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  return text.find_first_not_of(" \t\r\n") == text.npos;
}

StoreConfiguration readFields(const ConfigurationValue& root, ConfigurationProblems& problems) {
  const ConfigurationFields file(root, problems);
  return {.products = readCatalogue(file, problems), .settings = readSettings(file, problems)};
}

ConfigurationReading readTree(const ConfigurationValue& root, const std::string& name) {
  ConfigurationProblems problems(name, root);
  checkShape(root, problems);
  std::optional<StoreConfiguration> configuration = readFields(root, problems);
  if (problems.refused()) configuration.reset();  // read for its other problems alone
  return {std::move(configuration), problems.take()};
}

}  // namespace

ConfigurationReading refusedConfiguration(const std::string& file, std::string place,
                                          std::string reason) {
  return {std::nullopt,
          {{ConfigurationProblem::Severity::error, file, std::move(place), std::move(reason)}}};
}

}  // namespace detail

ConfigurationReading parseConfiguration(std::string_view text, const std::string& name) {
  using detail::refusedConfiguration;
  if (text.size() > kLargestConfigurationFile) {
    return refusedConfiguration(name, {}, "is larger than 64 MiB");
  }
  if (detail::isBlank(text)) return refusedConfiguration(name, {}, "is empty");
  const auto json = detail::readJson(text);
  if (!json.value) return refusedConfiguration(name, json.place, json.reason);
  if (!std::holds_alternative<detail::ConfigurationValue::Object>(json.value->content)) {
    return refusedConfiguration(name, {}, detail::mismatch("an object", *json.value));
  }
  return detail::readTree(*json.value, name);
}

}  // namespace StoreKit
