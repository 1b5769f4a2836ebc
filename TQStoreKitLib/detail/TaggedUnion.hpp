#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>
#include <variant>

namespace TQStoreKitLib::detail {

template <class... F>
struct Overload : F... {
  using F::operator()...;
};
template <class... F>
Overload(F...) -> Overload<F...>;

/// What the library's tagged unions are built on: exactly one of several payloads.
///
/// Never empty, because a payload moves without throwing. Everything is reached by `get_if`: the
/// other ways into a variant are missing from the C++ library of the oldest systems we run on.
template <class... Payloads>
class TaggedUnion {
  static_assert((std::is_nothrow_move_constructible_v<Payloads> && ...),
                "a payload that throws when it is moved could leave the union without a value");

 public:
  template <std::size_t I, class... Arguments>
  explicit TaggedUnion(std::in_place_index_t<I> index, Arguments&&... arguments)
      : value_(index, std::forward<Arguments>(arguments)...) {}

  /// The position of the payload that is held; the cases are declared in this order.
  [[nodiscard]] std::size_t index() const noexcept { return value_.index(); }

  /// The payload at position `I` when that is the one held, else null.
  template <std::size_t I>
  [[nodiscard]] const auto* get() const noexcept {
    return std::get_if<I>(&value_);
  }

  /// Calls the one of `functions` that takes the payload held and returns its answer. It does not
  /// compile unless there is a function for each payload.
  template <class... Functions>
  decltype(auto) match(Functions&&... functions) const {
    using Visitor = Overload<std::decay_t<Functions>...>;
    static_assert((std::is_invocable_v<const Visitor&, const Payloads&> && ...),
                  "match needs a function for every case");
    const Visitor visitor{std::forward<Functions>(functions)...};
    return visit<0>(visitor);
  }

 private:
  template <std::size_t I, class Visitor>
  decltype(auto) visit(const Visitor& visitor) const {
    if constexpr (I + 1 == sizeof...(Payloads)) {
      return visitor(*std::get_if<I>(&value_));
    } else {
      if (const auto* payload = std::get_if<I>(&value_)) return visitor(*payload);
      return visit<I + 1>(visitor);
    }
  }

  std::variant<Payloads...> value_;
};

}  // namespace TQStoreKitLib::detail
