#include "tools/tqstore/FetchCommand.hpp"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "TQStoreKitLib/TQNetworking.hpp"
#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Address.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

namespace {

using namespace TQStoreKitLib;
using Answer = TQResponse<Foundation::Data>;

Answer load(const Foundation::URL& url) {
  std::optional<Answer> answer;
  TQNetworking::shared().requestData(url, TQHttpMethod::get, std::nullopt, {},
                                     [&](const Answer& response) {
                                       Dispatch::mainQueue().async([&answer, response] {
                                         answer = response;
                                         Dispatch::MainLoop::stop();
                                       });
                                     });
  while (!answer) Dispatch::MainLoop::run();
  return *answer;
}

ExitStatus writeOut(const Foundation::Data& data) {
  const auto written = std::fwrite(data.data(), 1, data.size(), stdout);
  if (written == data.size() && std::fflush(stdout) == 0) return kDone;
  complain("standard output cannot be written");
  return kRefused;
}

ExitStatus fetch(const std::string& text) {
  const auto url = addressFrom(text);
  if (!url) return kUsage;
  const auto answer = load(*url);
  if (!answer.error) return answer.data ? writeOut(*answer.data) : kDone;
  complain(printable(answer.error->asCommon()->error.localizedDescription()));
  return kRefused;
}

}  // namespace

void addFetch(CommandLine& line) {
  const auto url = std::make_shared<std::string>();
  auto command = line.addWithoutStore(
      "fetch",
      {.group = "Network",
       .summary = "Load what is behind an address",
       .description =
           "Loads the address with the library's HTTP client, and writes the body of the "
           "answer to standard output as it came, whatever the HTTP status. Redirects "
           "are followed; proxies and certificates are those that the environment names "
           "(http_proxy, https_proxy, no_proxy, CURL_CA_BUNDLE, SSL_CERT_FILE).\n"
           "\n"
           "The body is all that is written, with --json as well. Addresses of another kind than "
           "http and https (ftp://example.com) cannot be loaded: no answer comes. A text without a "
           "kind and a host (example.com, file:///etc/hosts) is no address, and wrong usage.",
       .refusal = "No answer came, or standard output cannot be written to.",
       .examples = " tqstore fetch https://example.com/prices.json\n"},
      [url] { return fetch(*url); });
  command.addOption("URL", *url, "An address that begins with http:// or https://").required();
}

}  // namespace tqstore
