#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TQStoreKitLib/TQNetworking/TQHeaderValue.hpp"
#include "TQStoreKitLib/TQNetworking/TQHttpHeaderName.hpp"

namespace TQStoreKitLib {

/// One header field: a name and the text that is sent.
///
/// Thread: a plain value.
class TQHttpHeader {
 public:
  TQHttpHeader(TQHttpHeaderName name, std::string value)
      : name_(std::move(name)), value_(std::move(value)) {}
  /// Serialises `value` here and now, and keeps the text alone.
  TQHttpHeader(TQHttpHeaderName name, const TQHeaderValue& value)
      : TQHttpHeader(std::move(name), value.serialize()) {}

  [[nodiscard]] const TQHttpHeaderName& name() const { return name_; }
  [[nodiscard]] const std::string& value() const { return value_; }

 private:
  TQHttpHeaderName name_;
  std::string value_;
};

/// The header fields of one request: one text for each name.
///
///     TQHttpHeaders headers{{TQHttpHeaderName::accept(), TQHeaderValue::json()}};
///     headers.add({TQHttpHeaderName("X-Game"), "chess"});
///
/// Thread: a plain value.
struct TQHttpHeaders {
  using Map = std::map<TQHttpHeaderName, std::string>;

  TQHttpHeaders() = default;
  explicit TQHttpHeaders(Map fields) : headers(std::move(fields)) {}
  /// Of two headers of one name, the later one stays.
  explicit TQHttpHeaders(const std::vector<TQHttpHeader>& list);
  TQHttpHeaders(std::initializer_list<TQHttpHeader> list);

  /// The text under `name`, as it is spelled; absent when there is none.
  [[nodiscard]] std::optional<std::string> operator[](const TQHttpHeaderName& name) const;

  /// Inserts or replaces; two values are never joined into one field.
  void add(const TQHttpHeader& header);
  /// A name that is not there is fine.
  void remove(const TQHttpHeaderName& name);

  /// The fields of both; where both have one, that of `rhs`.
  [[nodiscard]] friend TQHttpHeaders operator+(TQHttpHeaders lhs, const TQHttpHeaders& rhs) {
    for (const auto& [name, value] : rhs.headers) lhs.headers[name] = value;
    return lhs;
  }

  Map headers;
};

}  // namespace TQStoreKitLib
