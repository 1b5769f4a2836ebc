#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// What a finished program left behind.
struct ToolRun {
  int exitStatus = -1;  ///< -1 when it did not end by itself
  std::string output;
  std::string errors;

  [[nodiscard]] std::vector<std::string> lines() const;
  /// Each line of the output as JSON; a line that is none fails to parse, and the test with it.
  [[nodiscard]] std::vector<nlohmann::ordered_json> json() const;
};

/// Runs tqstore without standard input and with no store and no locale in its environment, except
/// what `environment` ("NAME=value") adds.
[[nodiscard]] ToolRun runTool(const std::vector<std::string>& arguments,
                              const std::vector<std::string>& environment = {});

/// A file with this text, gone with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// The shop that the tests of the tool buy from: one product of each kind.
[[nodiscard]] std::string shopConfiguration();
