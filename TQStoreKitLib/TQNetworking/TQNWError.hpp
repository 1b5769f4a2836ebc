#pragma once

#include <optional>
#include <string>
#include <utility>

#include "TQStoreKitLib/detail/TaggedUnion.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/StringEncoding.hpp"

namespace TQStoreKitLib {

/// Why a request has no result.
///
/// Thread: a plain value.
class TQNWError {
 public:
  enum class Case {
    stringEncodingFailed = 0,
    jsonDecodeFailed = 1,
    objectDecodeFailed = 2,
    common = 3,
    noData = 4,
    unknow = 5,
  };

  /// The body is no text in that encoding.
  struct StringEncodingFailed {
    Foundation::NSStringEncoding encoding;
  };
  /// The body is no JSON.
  struct JsonDecodeFailed {
    Foundation::NSError error;
  };
  /// The body is not a value of the type asked for.
  struct ObjectDecodeFailed {
    Foundation::NSError error;
  };
  /// Nothing came through; `error` is the platform's own, unchanged.
  struct Common {
    Foundation::NSError error;
  };
  /// There was an answer, without a body.
  struct NoData {};
  /// Never made by the library: for applications.
  struct Unknow {};

  [[nodiscard]] static TQNWError stringEncodingFailed(Foundation::NSStringEncoding encoding) {
    return TQNWError(Union(std::in_place_index<0>, StringEncodingFailed{encoding}));
  }
  [[nodiscard]] static TQNWError jsonDecodeFailed(const Foundation::NSError& error) {
    return TQNWError(Union(std::in_place_index<1>, JsonDecodeFailed{error}));
  }
  [[nodiscard]] static TQNWError objectDecodeFailed(const Foundation::NSError& error) {
    return TQNWError(Union(std::in_place_index<2>, ObjectDecodeFailed{error}));
  }
  [[nodiscard]] static TQNWError common(const Foundation::NSError& error) {
    return TQNWError(Union(std::in_place_index<3>, Common{error}));
  }
  [[nodiscard]] static TQNWError noData() {
    return TQNWError(Union(std::in_place_index<4>, NoData{}));
  }
  [[nodiscard]] static TQNWError unknow() {
    return TQNWError(Union(std::in_place_index<5>, Unknow{}));
  }

  [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(union_.index()); }

  /// The payload of that case; null in every other.
  [[nodiscard]] const StringEncodingFailed* asStringEncodingFailed() const noexcept {
    return union_.get<0>();
  }
  [[nodiscard]] const JsonDecodeFailed* asJsonDecodeFailed() const noexcept {
    return union_.get<1>();
  }
  [[nodiscard]] const ObjectDecodeFailed* asObjectDecodeFailed() const noexcept {
    return union_.get<2>();
  }
  [[nodiscard]] const Common* asCommon() const noexcept { return union_.get<3>(); }

  /// What people read: "String encoding failed: " and the platform's name of the encoding, "No
  /// Data", "Unknow", else the description of the error within.
  [[nodiscard]] std::string message() const;

  /// Calls the function that takes this case's payload. A forgotten case does not compile.
  template <class... Functions>
  decltype(auto) match(Functions&&... functions) const {
    return union_.match(std::forward<Functions>(functions)...);
  }

 private:
  using Union = detail::TaggedUnion<StringEncodingFailed, JsonDecodeFailed, ObjectDecodeFailed,
                                    Common, NoData, Unknow>;
  explicit TQNWError(Union value) : union_(std::move(value)) {}

  Union union_;
};

/// A platform error as one of the client's: always the case `common`, with that very error. Absent
/// for none.
[[nodiscard]] std::optional<TQNWError> tqnwError(const std::optional<Foundation::NSError>& error);

}  // namespace TQStoreKitLib
