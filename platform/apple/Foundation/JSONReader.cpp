#include "platform/Foundation/JSONReader.hpp"

#include <utility>
#include <vector>

#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/Foundation/JSONScanner.hpp"

// The platform's own parser builds a tree and rounds numbers, so that this one reads the text.

namespace Foundation {

namespace {

// A list or object that the reader is in.
struct Level {
  JSONKind kind;
  bool isBegun = false;
  std::string_view key{};
};

}  // namespace

class JSONReader::Implementation {
 public:
  explicit Implementation(std::string_view text)
      : scanner_(text.size() > kLongestJSON ? std::string_view() : withoutMark(text)) {
    if (text.size() > kLongestJSON) scanner_.stop("the text is too long");
    if (scanner_.isAtEnd()) scanner_.stop("the text is empty");
  }

  std::optional<JSONKind> kind() {
    if (!isAtValue_) return std::nullopt;
    switch (scanner_.next()) {
      case 'n':
        return JSONKind::null;
      case 't':
      case 'f':
        return JSONKind::boolean;
      case '"':
        return JSONKind::text;
      case '[':
        return JSONKind::list;
      case '{':
        return JSONKind::object;
      case '-':
      case '0':
      case '1':
      case '2':
      case '3':
      case '4':
      case '5':
      case '6':
      case '7':
      case '8':
      case '9':
        return JSONKind::number;
      default:
        scanner_.fail("this is no value");
        return std::nullopt;
    }
  }

  bool readNull() { return isAt(JSONKind::null) && passed(scanner_.takeWord("null")); }
  bool readBoolean(bool& value) {
    if (!isAt(JSONKind::boolean)) return false;
    const bool truth = scanner_.next() == 't';
    if (!passed(scanner_.takeWord(truth ? "true" : "false"))) return false;
    value = truth;
    return true;
  }
  bool readNumber(JSONNumber& value) {
    return isAt(JSONKind::number) && passed(scanner_.takeNumber(value));
  }
  bool readText(std::string& value) {
    std::string_view text;
    if (!isAt(JSONKind::text) || !passed(scanner_.takeText(text))) return false;
    value = text;
    return true;
  }

  bool enterList() { return enter(JSONKind::list, '['); }
  bool enterObject() { return enter(JSONKind::object, '{'); }

  bool nextElement() { return advance(JSONKind::list, ']') && stand(); }
  bool nextField() {
    if (!advance(JSONKind::object, '}') || !scanner_.takeText(levels_.back().key)) return false;
    if (!scanner_.take(':')) return scanner_.fail("a colon should stand here");
    return stand();
  }
  [[nodiscard]] std::string_view key() const {
    return levels_.empty() ? std::string_view() : levels_.back().key;
  }

  // Lists and objects are walked through, not recursed into.
  bool skip() {
    const auto depth = levels_.size();
    do {
      if (isAtValue_ && !skipOne()) return false;
      if (levels_.size() > depth) nextInLevel();
    } while (problem().empty() && levels_.size() > depth);
    return problem().empty();
  }

  bool isAtEnd() {
    if (!levels_.empty() || !skip()) return false;
    return scanner_.isAtEnd() || scanner_.stop("the text goes on behind the value");
  }

  [[nodiscard]] const std::string& problem() const { return scanner_.problem(); }

 private:
  bool isAt(JSONKind wanted) { return kind() == wanted; }
  bool stand() { return isAtValue_ = true; }
  bool passed(bool isTaken) {
    if (isTaken) isAtValue_ = false;
    return isTaken;
  }

  bool enter(JSONKind kind, char mark) {
    if (!isAt(kind)) return false;
    if (levels_.size() == kDeepestJSON) return scanner_.stop("lies too deep in lists and objects");
    levels_.push_back({kind});
    return passed(scanner_.take(mark));
  }

  // Steps on in the innermost list or object; false at its end, which leaves it.
  bool advance(JSONKind kind, char endMark) {
    if (isAtValue_ && !skip()) return false;
    if (!problem().empty() || levels_.empty() || levels_.back().kind != kind) return false;
    const bool isFirst = !std::exchange(levels_.back().isBegun, true);
    if (scanner_.take(endMark)) {
      levels_.pop_back();
      return false;
    }
    return isFirst || scanner_.take(',') || scanner_.fail("a comma or the end should stand here");
  }

  void nextInLevel() {
    (void)(levels_.back().kind == JSONKind::list ? nextElement() : nextField());
  }

  // Reads a plain value, or enters a list or object.
  bool skipOne() {
    bool truth = false;
    JSONNumber number;
    std::string_view text;
    const auto found = kind();
    if (!found) return false;
    switch (*found) {
      case JSONKind::null:
        return readNull();
      case JSONKind::boolean:
        return readBoolean(truth);
      case JSONKind::number:
        return readNumber(number);
      case JSONKind::text:
        return passed(scanner_.takeText(text));
      case JSONKind::list:
        return enterList();
      case JSONKind::object:
        return enterObject();
    }
    return false;
  }

  JSONScanner scanner_;
  std::vector<Level> levels_;
  bool isAtValue_ = true;
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
