#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Foundation {

/// An address: of something on the net, or of a file.
///
/// A value that keeps the text it was made from; its parts are found when they are asked for. Two
/// addresses are equal when their texts are.
/// Thread: a plain value.
class URL {
 public:
  /// Reads an address, absolute or relative. Absent for text that is none: the empty one, blanks,
  /// control characters, what is not ASCII, a "%" without two hexadecimal digits, a port that is no
  /// number. Nothing is percent-encoded on the way.
  [[nodiscard]] static std::optional<URL> withString(std::string_view text);

  /// The address of a file or folder. `path` is taken byte by byte: what an address can't hold is
  /// percent-encoded. A relative one is taken from the current folder.
  [[nodiscard]] static URL fileURLWithPath(std::string_view path);

  /// The text, as it was given or made.
  [[nodiscard]] const std::string& absoluteString() const { return text_; }

  /// "https", as it is written; absent for a relative address.
  [[nodiscard]] std::optional<std::string> scheme() const;
  /// The host, percent-decoded and without brackets, user and port; absent when there is none.
  [[nodiscard]] std::optional<std::string> host() const;
  /// The path, percent-decoded and without a slash at its end; of a file, what the system calls it.
  /// "/" and the empty path stay.
  [[nodiscard]] std::string path() const;
  /// True for the scheme "file", in whatever case.
  [[nodiscard]] bool isFileURL() const;

  /// What stands behind the last slash of the path, percent-decoded; a slash at the end doesn't
  /// count. "/" for the root, empty for an address without path.
  ///
  /// What came from the net may decode to anything: "..", or a text with slashes of its own.
  [[nodiscard]] std::string lastPathComponent() const;

  /// The address without its last path component, with a slash at its end: "http://a/b/c?q" gives
  /// "http://a/b/?q". The root, and an address without path, stay as they are; behind "." and ".."
  /// comes another step up.
  [[nodiscard]] URL deletingLastPathComponent() const;

  /// The address with `component` behind its path and one slash between them. `component` is plain
  /// text: what an address can't hold is percent-encoded, slashes are kept.
  [[nodiscard]] URL appendingPathComponent(std::string_view component) const;

  friend bool operator==(const URL&, const URL&) = default;

 private:
  explicit URL(std::string text) : text_(std::move(text)) {}

  std::string text_;
};

}  // namespace Foundation
