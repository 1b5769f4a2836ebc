#include "platform/embedded/store/configuration/ConfigurationJson.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace StoreKit::detail {

namespace {

using Value = ConfigurationValue;

std::string placeOf(std::string_view text, std::size_t charactersRead) {
  const auto read = text.substr(0, std::min(charactersRead, text.size()));
  const auto lineStart = read.rfind('\n', read.size() < 2 ? 0 : read.size() - 2);
  const auto before = lineStart == std::string_view::npos ? 0 : lineStart + 1;
  const auto lines =
      std::count(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(before), '\n');
  const auto line = read.substr(before);
  const auto columns = std::count_if(line.begin(), line.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;  // one per UTF-8 character
  });
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(columns);
}

// What the parser says, without its own vocabulary and without quoting the file.
std::string plainReason(std::string_view what) {
  if (what.find("number overflow") != what.npos) return "is a number beyond all bounds";
  const auto start = what.find(" - ");
  if (start == what.npos) return "is not JSON";
  const auto reason = what.substr(start + 3, what.find("; last read") - (start + 3));
  return "is not JSON: " + std::string(reason);
}

std::optional<std::int64_t> wholeOf(double number) {
  constexpr double kExact = 9007199254740992.0;  // beyond it a double skips whole numbers
  if (std::abs(number) > kExact || std::trunc(number) != number) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

// Builds the tree while the text is read, and stops the reading where a limit is passed.
class TreeBuilder final : public nlohmann::json_sax<nlohmann::json> {
 public:
  bool null() override { return add(std::monostate()); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(Value::Number{value}); }
  bool number_unsigned(number_unsigned_t value) override {
    constexpr auto kMost = number_unsigned_t{std::numeric_limits<std::int64_t>::max()};
    if (value > kMost) return add(Value::Number{});
    return add(Value::Number{static_cast<std::int64_t>(value)});
  }
  bool number_float(number_float_t value, const string_t& /*text*/) override {
    return add(Value::Number{wholeOf(value)});
  }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }  // JSON texts have none
  bool start_object(std::size_t /*size*/) override { return open(Value::Object()); }
  bool start_array(std::size_t /*size*/) override { return open(Value::Array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& value) override {
    key_ = std::move(value);
    return true;
  }
  bool parse_error(std::size_t charactersRead, const std::string& /*token*/,
                   const nlohmann::json::exception& error) override {
    errorPosition_ = charactersRead;
    return refuse(plainReason(error.what()));
  }

  JsonReading outcome(bool accepted, std::string_view text) {
    if (accepted) return {std::move(root_), {}, {}};
    if (!errorPosition_) return {std::nullopt, {}, reason_};
    if (*errorPosition_ > text.size()) reason_ = "is not JSON: the text ends too early";
    return {std::nullopt, placeOf(text, *errorPosition_), reason_};
  }

 private:
  bool refuse(std::string reason) {
    reason_ = std::move(reason);
    return false;
  }

  template <typename Content>
  std::optional<Value::Member> next(Content&& content) {
    if (count_ == kMostValues) return std::nullopt;
    return Value::Member{std::exchange(key_, {}), {std::forward<Content>(content), count_++}};
  }

  template <typename Content>
  bool add(Content&& content) {
    auto member = next(std::forward<Content>(content));
    if (!member) return refuse("holds more than " + std::to_string(kMostValues) + " values");
    place(std::move(*member));
    return true;
  }

  template <typename Container>
  bool open(Container&& container) {
    if (open_.size() == kDeepestNesting) {
      return refuse("is nested deeper than " + std::to_string(kDeepestNesting) + " levels");
    }
    auto member = next(std::forward<Container>(container));
    if (!member) return refuse("holds more than " + std::to_string(kMostValues) + " values");
    open_.push_back(std::move(*member));
    return true;
  }

  bool close() {
    auto member = std::move(open_.back());
    open_.pop_back();
    place(std::move(member));
    return true;
  }

  void place(Value::Member member) {
    if (open_.empty()) {
      root_ = std::move(member.value);
    } else if (auto* list = std::get_if<Value::Array>(&open_.back().value.content)) {
      list->push_back(std::move(member.value));
    } else if (auto* object = std::get_if<Value::Object>(&open_.back().value.content)) {
      object->push_back(std::move(member));
    }
  }

  Value root_;
  std::vector<Value::Member> open_;  // the containers whose end has not been read yet
  std::string key_;
  std::uint32_t count_ = 0;
  std::optional<std::size_t> errorPosition_;
  std::string reason_;
};

}  // namespace

JsonReading readJson(std::string_view text) {
  // The parser would take a zero byte for the end of the text.
  if (const auto zero = text.find('\0'); zero != text.npos) {
    return {std::nullopt, placeOf(text, zero + 1), "is not UTF-8 text: there is a zero byte"};
  }
  TreeBuilder builder;
  const bool accepted = nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
  return builder.outcome(accepted, text);
}

}  // namespace StoreKit::detail
