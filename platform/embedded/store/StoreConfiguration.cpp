#include "platform/embedded/store/StoreConfiguration.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/embedded/Foundation/SystemError.hpp"
#include "platform/embedded/store/configuration/ConfigurationReader.hpp"

namespace StoreKit {

namespace {

class OpenFile {
 public:
  // Without O_NONBLOCK, opening a pipe that nobody writes to would wait for ever.
  explicit OpenFile(const std::string& path)
      : descriptor_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}
  ~OpenFile() {
    if (isOpen()) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

// Why this is not a file to read from; empty when it is one.
std::string reasonAgainst(const OpenFile& file) {
  if (!file.isOpen()) return "can't be opened: " + Foundation::lastSystemError().message();
  struct stat status{};
  if (::fstat(file.descriptor(), &status) != 0)
    return "can't be read: " + Foundation::lastSystemError().message();
  if (S_ISDIR(status.st_mode)) return "is a folder, not a file";
  if (!S_ISREG(status.st_mode)) return "is not a regular file";
  return {};
}

// One byte more than the limit is enough to know that a file is too large. Returns why the file
// can't be read; empty when it was.
std::string readInto(std::string& text, const OpenFile& file) {
  constexpr std::size_t kChunk = std::size_t{64} << 10;
  while (text.size() <= kLargestConfigurationFile) {
    const auto before = text.size();
    text.resize(before + kChunk);
    const auto count = ::read(file.descriptor(), text.data() + before, kChunk);
    text.resize(before + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count < 0 && errno != EINTR)
      return "can't be read: " + Foundation::lastSystemError().message();
    if (count == 0) return {};
  }
  return {};
}

}  // namespace

std::string_view toString(ProductType type) {
  switch (type) {
    case ProductType::consumable:
      return "Consumable";
    case ProductType::nonConsumable:
      return "NonConsumable";
    case ProductType::nonRenewingSubscription:
      return "NonRenewingSubscription";
    case ProductType::autoRenewableSubscription:
      return "RecurringSubscription";
  }
  return "Unknown";
}

std::string ConfigurationProblem::description() const {
  std::string result;
  for (const auto& part : {file, place}) {
    if (!part.empty()) result += part + ": ";
  }
  return result + message;
}

ConfigurationReading readConfiguration(const std::string& path) {
  if (path.find('\0') != path.npos) {
    return detail::refusedConfiguration(path, {}, "can't be opened: the name has a zero byte");
  }
  const OpenFile file(path);
  std::string text;
  auto reason = reasonAgainst(file);
  if (reason.empty()) reason = readInto(text, file);
  if (!reason.empty()) return detail::refusedConfiguration(path, {}, std::move(reason));
  return parseConfiguration(text, path);
}

}  // namespace StoreKit
