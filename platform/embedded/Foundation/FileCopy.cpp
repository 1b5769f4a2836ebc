#include "platform/embedded/Foundation/FileCopy.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>
#include <vector>

#include "platform/embedded/Foundation/SystemError.hpp"

namespace Foundation {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPortion = std::size_t{256} * 1024;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int number() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  // Some file systems say only here that there was no room.
  [[nodiscard]] std::error_code close() {
    return ::close(std::exchange(number_, -1)) == 0 ? std::error_code() : lastSystemError();
  }

 private:
  int number_;
};

std::error_code writeAll(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const auto written = ::write(file, bytes, count);
    if (written < 0 && errno != EINTR) return lastSystemError();
    if (written <= 0) continue;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return {};
}

std::error_code copyBytes(int from, int to) {
  std::vector<char> portion(kPortion);
  for (;;) {
    const auto count = ::read(from, portion.data(), portion.size());
    if (count == 0) return {};
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return lastSystemError();
    if (const auto error = writeAll(to, portion.data(), static_cast<std::size_t>(count))) {
      return error;
    }
  }
}

// The permissions come last, since they may forbid writing.
std::error_code copyFile(const fs::path& from, const fs::path& to) {
  const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  if (!source.isOpen()) return lastSystemError();
  Descriptor copy(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!copy.isOpen()) return lastSystemError();
  if (const auto error = copyBytes(source.number(), copy.number())) return error;
  if (const auto error = copy.close()) return error;
  std::error_code error;
  const auto time = fs::last_write_time(from, error);
  if (!error) fs::last_write_time(to, time, error);
  if (!error) fs::permissions(to, fs::status(from, error).permissions(), error);
  return error;
}

std::error_code copyOne(const fs::path& from, const fs::path& to) {
  std::error_code error;
  const auto type = fs::symlink_status(from, error).type();
  if (error) return error;
  if (type == fs::file_type::regular) return copyFile(from, to);
  if (type == fs::file_type::symlink) {
    fs::copy_symlink(from, to, error);
  } else if (type == fs::file_type::directory) {
    fs::create_directory(to, from, error);
  } else {
    error = std::make_error_code(std::errc::operation_not_supported);
  }
  return error;
}

}  // namespace

std::error_code copyTree(const fs::path& from, const fs::path& to) {
  auto error = copyOne(from, to);
  if (error || !fs::is_directory(fs::symlink_status(from, error))) return error;
  auto item = fs::recursive_directory_iterator(from, error);
  while (!error && item != fs::recursive_directory_iterator()) {
    error = copyOne(item->path(), to / item->path().lexically_relative(from));
    if (!error) item.increment(error);
  }
  return error;
}

}  // namespace Foundation
