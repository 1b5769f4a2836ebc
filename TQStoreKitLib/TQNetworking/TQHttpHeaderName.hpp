#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace TQStoreKitLib {

/// The name of a header field, exactly as it was given: nothing is trimmed, checked or folded.
/// "content-type" and "Content-Type" are two names.
///
/// Thread: a plain value.
class TQHttpHeaderName {
 public:
  explicit TQHttpHeaderName(std::string name) : name_(std::move(name)) {}

  // The names that are needed most; made on first use, never destroyed.
  [[nodiscard]] static const TQHttpHeaderName& accept();           ///< "Accept"
  [[nodiscard]] static const TQHttpHeaderName& acceptEncoding();   ///< "Accept-Encoding"
  [[nodiscard]] static const TQHttpHeaderName& authorization();    ///< "Authorization"
  [[nodiscard]] static const TQHttpHeaderName& contentEncoding();  ///< "Content-Encoding"
  [[nodiscard]] static const TQHttpHeaderName& contentLength();    ///< "Content-Length"
  [[nodiscard]] static const TQHttpHeaderName& contentType();      ///< "Content-Type"

  [[nodiscard]] const std::string& name() const { return name_; }

  /// The hash of the text.
  [[nodiscard]] std::size_t hashValue() const;
  /// For unordered containers.
  struct Hash {
    std::size_t operator()(const TQHttpHeaderName& name) const { return name.hashValue(); }
  };

  friend bool operator==(const TQHttpHeaderName&, const TQHttpHeaderName&) = default;
  /// By bytes, for ordered containers.
  friend bool operator<(const TQHttpHeaderName& a, const TQHttpHeaderName& b) {
    return a.name_ < b.name_;
  }

 private:
  std::string name_;
};

}  // namespace TQStoreKitLib
