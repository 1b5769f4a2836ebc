#include "tools/tqstore/SettingsCommand.hpp"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "platform/embedded/store/StoreSettings.hpp"
#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/Table.hpp"

namespace tqstore {

namespace {

using StoreKit::StoreSession;

constexpr int kWidthWithoutTerminal = 100;

struct SettingsOptions {
  std::string name;
  std::optional<std::string> value;
  bool reset = false;
};

// Texts, whatever they read like.
bool isText(std::string_view name) {
  return name == "locale" || name == "storefront" || StoreKit::isHostedContentSetting(name);
}

// Truth values and numbers as such.
Json valueJson(std::string_view name, const std::string& text) {
  if (isText(name) || !Json::accept(text)) return text;
  auto value = Json::parse(text);
  return value.is_boolean() || value.is_number() ? value : Json(text);
}

std::vector<std::string> names() {
  const auto known = StoreKit::settingNames();
  std::vector<std::string> names(known.begin(), known.end());
  for (const auto& [name, value] : ledger().settings()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

ExitStatus show(const StoreSession& session, const std::vector<std::string>& names, bool json) {
  const auto set = ledger().settings();
  Json object = Json::object();
  Table table({{.title = "Setting", .whole = true}, {.title = "Value"}, {.title = "From"}});
  for (const auto& name : names) {
    const auto value = session.setting(name);
    if (!value) continue;
    object[name] = valueJson(name, *value);
    table.add({name, printable(*value), set.contains(name) ? "settings" : "configuration"});
  }
  if (json) {
    writeJson(object);
  } else {
    table.write(terminalWidth(kWidthWithoutTerminal));
  }
  return kDone;
}

ExitStatus showOne(const StoreSession& session, const std::string& name, bool json) {
  if (session.setting(name)) return show(session, {name}, json);
  complain(printable(name) + " is no setting");
  return kUsage;
}

// A name or a value that no setting has is wrong usage; what the ledger refuses is not.
ExitStatus change(const StoreSession& session, const SettingsOptions& wanted, bool json) {
  auto trial = session.settings();
  const bool known = StoreKit::settingText(trial, wanted.name).has_value();
  const bool good =
      known && (!wanted.value || !StoreKit::setSetting(trial, wanted.name, *wanted.value));
  auto& store = StoreKit::EmbeddedStore::current();
  if (const auto problem = store.set(wanted.name, wanted.value)) {
    complain(printable(problem->localizedDescription()));
    return good ? kRefused : kUsage;
  }
  return session.setting(wanted.name) ? show(session, {wanted.name}, json) : kDone;
}

ExitStatus resetAll(StoreSession& session, bool json) {
  session.resetToDefaultState();
  if (!ledger().settings().empty()) return kRefused;  // and the store has said why
  return show(session, names(), json);
}

ExitStatus run(StoreSession& session, const SettingsOptions& wanted, bool json) {
  if (wanted.name.empty()) {
    return wanted.reset ? resetAll(session, json) : show(session, names(), json);
  }
  if (wanted.reset || wanted.value) return change(session, wanted, json);
  return showOne(session, wanted.name, json);
}

std::string nameList() {
  std::string text;
  for (const auto name : StoreKit::settingNames()) {
    text += (text.empty() ? "" : ", ") + std::string(name);
  }
  return text;
}

Manual manual() {
  return {
      .group = "The shop",
      .summary = "Show or change how the store behaves",
      .description =
          "Without a KEY, shows all settings; without a VALUE, that one. What is set here takes "
          "the place of what the configuration says, for every program on the ledger, until "
          "it is reset; programs that are running see it at once. With --json the settings "
          "are one object.\n"
          "\n"
          "The settings are those of StoreKit::StoreSession: " +
          nameList() +
          ". Two more for each product name what is downloaded with it: hostedContent.PRODUCT, a "
          "folder (empty: nothing), and hostedContentVersion.PRODUCT.",
      .refusal = "The ledger cannot be written to.",
      .examples =
          " tqstore --config shop.storekit settings\n"
          " tqstore --config shop.storekit settings askToBuyEnabled true\n"
          " tqstore --config shop.storekit settings askToBuyEnabled --reset\n"};
}

}  // namespace

void addSettings(CommandLine& line) {
  const auto wanted = std::make_shared<SettingsOptions>();
  auto command = line.add("settings", manual(), [wanted, &options = line.options()](auto& session) {
    return run(session, *wanted, options.json);
  });
  command.addOption("KEY", wanted->name, "Only this setting");
  const auto value = command.addOption("VALUE", wanted->value, "What it is from now on");
  command.addFlag("--reset", wanted->reset, "Back to what the configuration says: KEY, or all")
      .excludes(value);
}

}  // namespace tqstore
