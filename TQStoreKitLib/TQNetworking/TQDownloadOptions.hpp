#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>

namespace TQStoreKitLib {

/// What may be done to make room for a download: a set of options.
///
///     TQDownloadOptions options{TQDownloadOptions::removePreviousFile()};
///     options.insert(TQDownloadOptions::createIntermediateDirectories());
///
/// Each option is a set with itself in it. Union, intersection and symmetric difference are the
/// operators `|`, `&` and `^`. Bits that no option has are kept, and count as others do.
/// Thread: a plain value.
class TQDownloadOptions {
 public:
  constexpr TQDownloadOptions() = default;
  constexpr explicit TQDownloadOptions(std::int64_t rawValue) : rawValue_(rawValue) {}
  constexpr TQDownloadOptions(std::initializer_list<TQDownloadOptions> list) {
    for (const auto& options : list) rawValue_ |= options.rawValue_;
  }

  /// Removes a file that is at the destination. A folder there is never removed.
  [[nodiscard]] static constexpr TQDownloadOptions removePreviousFile() {
    return TQDownloadOptions(std::int64_t{1});
  }
  /// Makes the folders that the destination is to be in.
  [[nodiscard]] static constexpr TQDownloadOptions createIntermediateDirectories() {
    return TQDownloadOptions(std::int64_t{2});
  }

  [[nodiscard]] constexpr std::int64_t rawValue() const { return rawValue_; }
  [[nodiscard]] constexpr bool isEmpty() const { return rawValue_ == 0; }

  /// True when all of `other` is in this set.
  [[nodiscard]] constexpr bool contains(TQDownloadOptions other) const {
    return (*this & other) == other;
  }
  [[nodiscard]] constexpr bool isSubset(TQDownloadOptions other) const {
    return other.contains(*this);
  }
  [[nodiscard]] constexpr bool isSuperset(TQDownloadOptions other) const { return contains(other); }
  [[nodiscard]] constexpr bool isDisjoint(TQDownloadOptions other) const {
    return (*this & other).isEmpty();
  }

  /// Puts `options` in; true when any of them was new.
  constexpr bool insert(TQDownloadOptions options) {
    const bool isNew = !contains(options);
    rawValue_ |= options.rawValue_;
    return isNew;
  }
  /// Takes `options` out; those of them that were in, absent when none was.
  constexpr std::optional<TQDownloadOptions> remove(TQDownloadOptions options) {
    const auto common = *this & options;
    rawValue_ &= ~options.rawValue_;
    return common.isEmpty() ? std::nullopt : std::optional(common);
  }
  /// Puts `options` in; those of them that were in before, absent when none was.
  constexpr std::optional<TQDownloadOptions> update(TQDownloadOptions options) {
    const auto common = *this & options;
    rawValue_ |= options.rawValue_;
    return common.isEmpty() ? std::nullopt : std::optional(common);
  }

  [[nodiscard]] friend constexpr TQDownloadOptions operator|(TQDownloadOptions a,
                                                             TQDownloadOptions b) {
    return TQDownloadOptions(a.rawValue_ | b.rawValue_);
  }
  [[nodiscard]] friend constexpr TQDownloadOptions operator&(TQDownloadOptions a,
                                                             TQDownloadOptions b) {
    return TQDownloadOptions(a.rawValue_ & b.rawValue_);
  }
  [[nodiscard]] friend constexpr TQDownloadOptions operator^(TQDownloadOptions a,
                                                             TQDownloadOptions b) {
    return TQDownloadOptions(a.rawValue_ ^ b.rawValue_);
  }
  friend constexpr bool operator==(TQDownloadOptions, TQDownloadOptions) = default;

 private:
  std::int64_t rawValue_ = 0;
};

}  // namespace TQStoreKitLib
