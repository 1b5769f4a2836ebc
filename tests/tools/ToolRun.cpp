#include "tests/tools/ToolRun.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

std::string contents(std::FILE* file) {
  std::string text;
  std::rewind(file);
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
  return text;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (auto& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

[[noreturn]] void become(std::vector<std::string> command, std::vector<std::string> environment,
                         std::FILE* output, std::FILE* errors) {
  const int nothing = ::open("/dev/null", O_RDONLY);
  ::dup2(nothing, STDIN_FILENO);
  ::dup2(fileno(output), STDOUT_FILENO);
  ::dup2(fileno(errors), STDERR_FILENO);
  for (const char* name : {"TQSTORE_CONFIG", "TQSTORE_LEDGER", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    ::unsetenv(name);
  }
  for (auto& variable : environment) ::putenv(variable.data());
  const auto argv = pointers(command);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

}  // namespace

std::vector<std::string> ToolRun::lines() const {
  std::istringstream stream(output);
  std::vector<std::string> result;
  for (std::string line; std::getline(stream, line);) result.push_back(line);
  return result;
}

std::vector<nlohmann::ordered_json> ToolRun::json() const {
  std::vector<nlohmann::ordered_json> result;
  for (const auto& line : lines()) result.push_back(nlohmann::ordered_json::parse(line));
  return result;
}

ToolRun runTool(const std::vector<std::string>& arguments,
                const std::vector<std::string>& environment) {
  const File output(std::tmpfile(), &std::fclose);
  const File errors(std::tmpfile(), &std::fclose);
  std::vector<std::string> command{TQSTORE_PROGRAM};
  command.insert(command.end(), arguments.begin(), arguments.end());
  const pid_t child = ::fork();
  if (child == 0) become(std::move(command), environment, output.get(), errors.get());
  int status = 0;
  ::waitpid(child, &status, 0);
  return {.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
          .output = contents(output.get()),
          .errors = contents(errors.get())};
}

TemporaryFile::TemporaryFile(const std::string& text) {
  std::string pattern = (std::filesystem::current_path() / "tqstore-test-XXXXXX").string();
  const int file = ::mkstemp(pattern.data());
  ::close(file);
  path_ = pattern;
  std::ofstream(path_, std::ios::binary) << text;
}

TemporaryFile::~TemporaryFile() { std::remove(path_.c_str()); }

std::string shopConfiguration() {
  return R"({
  "products": [
    {"productID": "gems", "type": "Consumable", "displayPrice": "0.99", "familyShareable": false,
     "localizations": [{"locale": "en_US", "displayName": "Gems", "description": "Shiny"}]},
    {"productID": "levels", "type": "NonConsumable", "displayPrice": "12", "familyShareable": true,
     "localizations": []}
  ],
  "nonRenewingSubscriptions": [
    {"productID": "pass", "type": "NonRenewingSubscription", "displayPrice": "7.5",
     "localizations": []}
  ],
  "subscriptionGroups": [
    {"id": "G1", "name": "Club", "localizations": [], "subscriptions": [
      {"productID": "club", "type": "RecurringSubscription", "displayPrice": "29.99",
       "groupNumber": 1, "subscriptionGroupID": "G1", "recurringSubscriptionPeriod": "P1Y",
       "localizations": [],
       "introductoryOffer": {"paymentMode": "free", "subscriptionPeriod": "P2W"},
       "adHocOffers": [{"offerID": "back", "paymentMode": "payAsYouGo", "displayPrice": "9.99",
                        "subscriptionPeriod": "P1M", "numberOfPeriods": 3}]}
    ]}
  ],
  "settings": {"_storefront": "BRA", "_locale": "en_US"}
})";
}
