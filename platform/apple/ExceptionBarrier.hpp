#pragma once

#include <string_view>
#include <type_traits>
#include <utility>

namespace Foundation {

/// The border between C++ and Objective-C, which no exception crosses in either direction.
///
/// Every function of the seam that speaks to the platform does so inside `callPlatform` or
/// `askPlatform`; every method that the platform calls goes to C++ through `callBack` or
/// `askBack`. `place` names the function in what standard error then says.

namespace detail {

/// True when `work` ended without an Objective-C exception.
bool runInObjectiveC(std::string_view place, void* context, void (*work)(void* context));
/// True when `work` ended without any exception.
bool runInCpp(std::string_view place, void* context, void (*work)(void* context)) noexcept;

template <class Work>
void invoke(void* context) {
  (*static_cast<Work*>(context))();
}

}  // namespace detail

/// Runs `work` in an autorelease pool of its own, so on any thread. When Objective-C raises an
/// exception, standard error says which, and the answer is false. What leaves `work` must be a C++
/// value or retained.
template <class Work>
bool callPlatform(std::string_view place, Work work) {
  return detail::runInObjectiveC(place, &work, detail::invoke<Work>);
}

/// The answer of `work`, which is run as `callPlatform` does; `otherwise` when it came to none.
template <class Work, class Result = std::invoke_result_t<Work>>
[[nodiscard]] Result askPlatform(std::string_view place, std::type_identity_t<Result> otherwise,
                                 Work work) {
  callPlatform(place, [&] { otherwise = work(); });
  return otherwise;
}

/// Runs `work`, which is C++ of ours or of the application. When it throws, standard error says
/// what, and the platform carries on as if it had not.
template <class Work>
void callBack(std::string_view place, Work work) noexcept {
  detail::runInCpp(place, &work, detail::invoke<Work>);
}

/// The answer of `work`, which is run as `callBack` does; `otherwise` when it came to none.
template <class Work, class Result = std::invoke_result_t<Work>>
[[nodiscard]] Result askBack(std::string_view place, std::type_identity_t<Result> otherwise,
                             Work work) noexcept {
  callBack(place, [&] { otherwise = work(); });
  return otherwise;
}

}  // namespace Foundation
