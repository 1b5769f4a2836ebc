#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace TQStoreKitLib {

/// A media type with its parameters, as a header field says it: "application/json; charset=utf-8".
///
/// Thread: a plain value.
class TQHeaderValue {
 public:
  using Parameters = std::map<std::string, std::string>;

  TQHeaderValue(std::string type, std::string subType, Parameters parameters)
      : type_(std::move(type)), subType_(std::move(subType)), parameters_(std::move(parameters)) {}

  /// "application/json; charset=utf-8"; made on first use, never destroyed.
  [[nodiscard]] static const TQHeaderValue& json();

  [[nodiscard]] const std::string& type() const { return type_; }
  [[nodiscard]] const std::string& subType() const { return subType_; }
  [[nodiscard]] const Parameters& parameters() const { return parameters_; }

  /// TYPE/SUBTYPE, and "; KEY=VALUE" for each parameter, in the order of the keys. All is copied as
  /// it is: nothing is quoted, escaped or trimmed, and the slash is there between empty texts too.
  [[nodiscard]] std::string serialize() const;

  /// Over all three fields, as equality.
  [[nodiscard]] std::size_t hashValue() const;
  /// For unordered containers.
  struct Hash {
    std::size_t operator()(const TQHeaderValue& value) const { return value.hashValue(); }
  };
  friend bool operator==(const TQHeaderValue&, const TQHeaderValue&) = default;

 private:
  std::string type_;
  std::string subType_;
  Parameters parameters_;
};

}  // namespace TQStoreKitLib
