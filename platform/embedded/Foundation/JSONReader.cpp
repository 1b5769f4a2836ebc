#include "platform/Foundation/JSONReader.hpp"

#include <simdjson.h>

#include <utility>
#include <variant>
#include <vector>

#include "platform/Foundation/UnicodeText.hpp"

namespace Foundation {

namespace {

namespace ondemand = simdjson::ondemand;

constexpr const char* kGoesOn = "the text goes on behind the value";

// The text as the only element of a list, with the room behind it that simdjson reads ahead into.
// The outermost value is then one like any other.
std::string padded(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 2 + simdjson::SIMDJSON_PADDING);
  (result += '[').append(text) += ']';
  result.append(simdjson::SIMDJSON_PADDING, '\0');
  return result;
}

JSONNumber numberOf(ondemand::number& number) {
  switch (number.get_number_type()) {
    case ondemand::number_type::signed_integer:
      return number.get_int64();
    case ondemand::number_type::unsigned_integer:
      return number.get_uint64();
    case ondemand::number_type::floating_point_number:
      break;
  }
  return number.get_double();
}

// Whether a value of that kind begins with that character.
bool begins(JSONKind kind, char first) {
  switch (kind) {
    case JSONKind::null:
      return first == 'n';
    case JSONKind::boolean:
      return first == 't' || first == 'f';
    case JSONKind::number:
      return first == '-' || (first >= '0' && first <= '9');
    case JSONKind::text:
      return first == '"';
    case JSONKind::list:
      return first == '[';
    case JSONKind::object:
      return first == '{';
  }
  return false;
}

// A list or object that the reader is in.
struct Level {
  std::variant<ondemand::array_iterator, ondemand::object_iterator> position;
  bool isBegun = false;
};

}  // namespace

class JSONReader::Implementation {
 public:
  explicit Implementation(std::string_view text) {
    if (text.size() > kLongestJSON) {
      problem_ = "the text is too long";
      return;
    }
    text_ = padded(withoutMark(text));
    const auto length = text_.size() - simdjson::SIMDJSON_PADDING;
    ondemand::array outermost;
    if (!succeeds(parser_.iterate(text_.data(), length, text_.size()).get(document_)) ||
        !succeeds(document_.get_array().get(outermost)) || !enter(outermost)) {
      return;
    }
    if (!nextElement() && problem_.empty()) problem_ = "the text is empty";
  }

  std::optional<JSONKind> kind() {
    if (!problem_.empty()) return std::nullopt;
    for (const auto kind : {JSONKind::text, JSONKind::number, JSONKind::object, JSONKind::list,
                            JSONKind::boolean, JSONKind::null}) {
      if (begins(kind, first())) return kind;
    }
    (void)succeeds(simdjson::TAPE_ERROR);
    return std::nullopt;
  }

  bool readNull() {
    bool isNull = false;
    return isAt(JSONKind::null) && reads(value_.is_null().get(isNull)) && isNull;
  }
  bool readBoolean(bool& value) {
    return isAt(JSONKind::boolean) && reads(value_.get_bool().get(value));
  }
  bool readNumber(JSONNumber& value) {
    ondemand::number number;
    double big = 0;
    if (!isAt(JSONKind::number)) return false;
    if (value_.get_number().get(number) == simdjson::SUCCESS) {
      value = numberOf(number);
    } else {  // an integer beyond all integers may still be a double
      if (!succeeds(value_.get_double().get(big))) return false;
      value = big;
    }
    isAtValue_ = false;
    return true;
  }
  bool readText(std::string& value) {
    std::string_view text;
    if (!isAt(JSONKind::text) || !reads(value_.get_string().get(text))) return false;
    value = text;
    return true;
  }

  bool enterList() {
    ondemand::array list;
    return isAt(JSONKind::list) && reads(value_.get_array().get(list)) && enter(list);
  }
  bool enterObject() {
    ondemand::object object;
    return isAt(JSONKind::object) && reads(value_.get_object().get(object)) && enter(object);
  }

  bool nextElement() {
    auto* const position = advance<ondemand::array_iterator>();
    if (position == nullptr) return false;
    auto element = **position;
    if (!succeeds(element.error())) return false;
    value_ = element.value_unsafe();
    isAtValue_ = true;
    return true;
  }
  bool nextField() {
    auto* const position = advance<ondemand::object_iterator>();
    if (position == nullptr) return false;
    auto result = **position;
    if (!succeeds(result.error())) return false;
    auto&& field = std::move(result).value_unsafe();
    if (!succeeds(field.unescaped_key().get(key_))) return false;
    value_ = field.value();
    isAtValue_ = true;
    return true;
  }
  [[nodiscard]] std::string_view key() const { return key_; }

  // Lists and objects are walked through, not recursed into.
  bool skip() {
    const auto depth = levels_.size();
    do {
      if (isAtValue_ && !skipOne()) return false;
      if (levels_.size() > depth) nextInLevel();
    } while (problem_.empty() && levels_.size() > depth);
    return problem_.empty();
  }

  bool isAtEnd() {
    if (levels_.size() == 1 && nextElement()) problem_ = kGoesOn;
    if (!problem_.empty() || !levels_.empty()) return false;
    const char* behind = nullptr;
    if (document_.current_location().get(behind) == simdjson::SUCCESS) problem_ = kGoesOn;
    return problem_.empty();
  }

  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  [[nodiscard]] char first() { return *value_.raw_json_token().data(); }
  bool isAt(JSONKind wanted) { return isAtValue_ && problem_.empty() && begins(wanted, first()); }

  bool succeeds(simdjson::error_code error) {
    if (error == simdjson::SUCCESS) return true;
    if (problem_.empty()) problem_ = std::string("not JSON: ") + simdjson::error_message(error);
    return false;
  }
  bool reads(simdjson::error_code error) {
    if (!succeeds(error)) return false;
    isAtValue_ = false;
    return true;
  }

  template <class Container>
  bool enter(Container& container) {
    if (levels_.size() > kDeepestJSON) {
      problem_ = "lies too deep in lists and objects";
      return false;
    }
    auto begin = container.begin();
    if (!succeeds(begin.error())) return false;
    levels_.push_back({begin.value_unsafe()});
    return true;
  }

  // Steps on in the innermost list or object; null when it is at its end, which leaves it.
  template <class Iterator>
  Iterator* advance() {
    if (isAtValue_ && !skip()) return nullptr;
    if (!problem_.empty() || levels_.empty()) return nullptr;
    auto* const position = std::get_if<Iterator>(&levels_.back().position);
    if (position == nullptr) return nullptr;
    if (std::exchange(levels_.back().isBegun, true)) ++*position;
    if (*position != Iterator()) return position;
    levels_.pop_back();
    return nullptr;
  }

  void nextInLevel() {
    const bool isList = std::holds_alternative<ondemand::array_iterator>(levels_.back().position);
    (void)(isList ? nextElement() : nextField());
  }

  // Reads a plain value, or enters a list or object.
  bool skipOne() {
    bool truth = false;
    JSONNumber number;
    std::string_view text;
    switch (kind().value_or(JSONKind::null)) {
      case JSONKind::null:
        return readNull();
      case JSONKind::boolean:
        return readBoolean(truth);
      case JSONKind::number:
        return readNumber(number);
      case JSONKind::text:
        return reads(value_.get_string().get(text));
      case JSONKind::list:
        return enterList();
      case JSONKind::object:
        return enterObject();
    }
    return false;
  }

  std::string text_;
  ondemand::parser parser_;
  ondemand::document document_;
  ondemand::value value_;
  std::string_view key_;
  std::vector<Level> levels_;
  std::string problem_;
  bool isAtValue_ = false;
};

JSONReader::JSONReader(std::string_view text)
    : implementation_(std::make_unique<Implementation>(text)) {}
JSONReader::~JSONReader() = default;

std::optional<JSONKind> JSONReader::kind() { return implementation_->kind(); }
bool JSONReader::readNull() { return implementation_->readNull(); }
bool JSONReader::readBoolean(bool& value) { return implementation_->readBoolean(value); }
bool JSONReader::readNumber(JSONNumber& value) { return implementation_->readNumber(value); }
bool JSONReader::readText(std::string& value) { return implementation_->readText(value); }
bool JSONReader::enterList() { return implementation_->enterList(); }
bool JSONReader::nextElement() { return implementation_->nextElement(); }
bool JSONReader::enterObject() { return implementation_->enterObject(); }
bool JSONReader::nextField() { return implementation_->nextField(); }
std::string_view JSONReader::key() const { return implementation_->key(); }
bool JSONReader::skip() { return implementation_->skip(); }
bool JSONReader::isAtEnd() { return implementation_->isAtEnd(); }
const std::string& JSONReader::problem() const { return implementation_->problem(); }

}  // namespace Foundation
