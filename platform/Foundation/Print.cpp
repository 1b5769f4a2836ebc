#include "platform/Foundation/Print.hpp"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace Foundation {

namespace {

struct Printer {
  std::mutex mutex;
  std::shared_ptr<const PrintHandler> handler;
};

Printer& printer() {
  static auto& instance = *new Printer;
  return instance;
}

void writeLine(std::FILE* file, std::string_view message) {
  std::string line(message);
  line += '\n';
  std::fwrite(line.data(), 1, line.size(), file);
  std::fflush(file);
}

}  // namespace

void print(std::string_view message) {
  std::shared_ptr<const PrintHandler> handler;
  {
    const std::lock_guard lock(printer().mutex);
    handler = printer().handler;
  }
  if (handler) {
    (*handler)(message);
  } else {
    writeLine(stdout, message);
  }
}

void setPrintHandler(PrintHandler handler) {
  auto replacement = handler ? std::make_shared<const PrintHandler>(std::move(handler)) : nullptr;
  const std::lock_guard lock(printer().mutex);
  printer().handler.swap(replacement);
}

void warn(std::string_view message) { writeLine(stderr, message); }

void fatalError(std::string_view message) {
  writeLine(stderr, "Fatal error: " + std::string(message));
  std::abort();
}

}  // namespace Foundation
