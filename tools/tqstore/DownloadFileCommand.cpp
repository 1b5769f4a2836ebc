#include "tools/tqstore/DownloadFileCommand.hpp"

#include <sys/stat.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "TQStoreKitLib/TQNetworking.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "platform/embedded/Foundation/URLLoading.hpp"
#include "tools/tqstore/Address.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/Interruption.hpp"
#include "tools/tqstore/Json.hpp"
#include "tools/tqstore/ProgressBar.hpp"

namespace tqstore {

namespace {

namespace fs = std::filesystem;
using namespace TQStoreKitLib;
using Foundation::URL;

struct Arguments {
  std::string url;
  std::string destination;
  bool replace = false;
};

struct Outcome {
  std::optional<URL> file;
  Foundation::URLResponsePtr response;
  std::optional<Foundation::NSError> error;
};

// The folder that the download goes to, and its name there, unless the server is to choose it.
struct Place {
  fs::path folder;
  std::string name;
};

Place placeFor(const std::string& destination) {
  const auto path = (fs::current_path() / destination).lexically_normal();
  std::error_code none;
  if (path.filename().empty()) return {path.parent_path(), ""};
  if (fs::is_directory(path, none)) return {path, ""};
  return {path.parent_path(), path.filename()};
}

// Where the address names no file, the library's choice is the temporary file's name.
std::string chosenName(const URL& temporaryURL, const Foundation::URLResponse& response) {
  auto name =
      TQRequest::defaultDestination(temporaryURL, response).destinationURL.lastPathComponent();
  return name == temporaryURL.lastPathComponent() ? "download" : name;
}

TQNetworking::DestinationChoice choice(const Place& place, bool replace) {
  return [place, replace](const URL& temporaryURL, const Foundation::URLResponse& response) {
    const auto name = place.name.empty() ? chosenName(temporaryURL, response) : place.name;
    TQDownloadOptions options{TQDownloadOptions::createIntermediateDirectories()};
    if (replace) options.insert(TQDownloadOptions::removePreviousFile());
    return TQRequest::Destination{URL::fileURLWithPath((place.folder / name).string()), options};
  };
}

// The first interruption cancels the download, which removes what has come so far.
Outcome run(const URL& url, const Place& place, bool replace, ProgressBar& bar) {
  const Interruption interruption;
  std::optional<Outcome> outcome;
  const auto task = TQNetworking::shared().download(
      url, [&bar](auto, std::int64_t done, std::int64_t total) { bar.show(done, total); },
      choice(place, replace),
      [&outcome](auto file, auto response, auto error) {
        outcome = Outcome{std::move(file), std::move(response), std::move(error)};
        Dispatch::MainLoop::stop();
      });
  while (!outcome) {
    Dispatch::MainLoop::run();
    if (!outcome) task->cancel();
  }
  return *std::move(outcome);
}

// Temporary files are their owner's alone; a finished one is as readable as any other.
void givePermissions(const std::string& path) {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ::chmod(path.c_str(), 0666U & ~mask);
}

std::int64_t statusOf(const Foundation::URLResponsePtr& response) {
  const auto http = Foundation::httpResponse(response);
  return http ? http->statusCode() : 0;
}

void tell(const std::string& path, const Foundation::URLResponsePtr& response, bool json) {
  std::error_code none;
  const auto size = static_cast<std::int64_t>(fs::file_size(path, none));
  const auto status = statusOf(response);
  if (json) return writeJson({{"file", path}, {"bytes", size}, {"status", status}});
  constexpr std::int64_t kFirstFailure = 400;
  if (status >= kFirstFailure)
    complain("the server answered with status " + std::to_string(status));
  writeLine("Downloaded " + byteText(size) + " to " + printable(path));
}

ExitStatus downloadFile(const Arguments& arguments, const GlobalOptions& options) {
  const auto url = addressFrom(arguments.url);
  if (!url) return kUsage;
  const auto place = placeFor(arguments.destination);
  std::error_code none;
  if (fs::is_directory(place.folder, none)) Foundation::setDownloadFolder(place.folder.string());
  ProgressBar bar(printable(place.name.empty() ? url->lastPathComponent() : place.name));
  const auto outcome = run(*url, place, arguments.replace, bar);
  bar.hide();
  if (const auto& file = outcome.file) {
    givePermissions(file->path());
    tell(file->path(), outcome.response, options.json);
    return kDone;
  }
  complain(outcome.error ? printable(outcome.error->localizedDescription()) : "nothing came");
  return kRefused;
}

}  // namespace

void addDownloadFile(CommandLine& line) {
  const auto arguments = std::make_shared<Arguments>();
  auto command = line.addWithoutStore(
      "download-file",
      {.group = "Network",
       .summary = "Download to a file",
       .description =
           "Downloads what is behind the address with the library's HTTP client, whatever "
           "the size, and shows on a terminal how far it has come. The HTTP status is not "
           "looked at, but one that tells of a failure is said.\n"
           "\n"
           "DESTINATION is a folder that is there, or one with a slash at its end, and "
           "the file gets the server's name; else it is the file itself. Without it the "
           "file comes into the current folder. Folders are made; a file that is there "
           "already stays, and the download fails, unless --replace is given.\n"
           "\n"
           "When it is interrupted nothing is left.",
       .refusal = "No answer came, or the file could not be put into its place.",
       .examples = " tqstore download-file https://example.com/maps.zip\n"
                   " tqstore download-file https://example.com/maps.zip content/ --replace\n"},
      [arguments, &options = line.options()] { return downloadFile(*arguments, options); });
  command.addOption("URL", arguments->url, "An address that begins with http:// or https://")
      .required();
  command.addOption("DESTINATION", arguments->destination, "The file, or the folder for it");
  command.addFlag("--replace", arguments->replace, "Replace a file that is there");
}

}  // namespace tqstore
