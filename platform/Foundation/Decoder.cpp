#include "platform/Foundation/Decoder.hpp"

#include "platform/Foundation/NumberText.hpp"

namespace Foundation {

namespace {

std::string_view nameOf(JSONKind kind) {
  switch (kind) {
    case JSONKind::null:
      return "null";
    case JSONKind::boolean:
      return "a boolean";
    case JSONKind::number:
      return "a number";
    case JSONKind::text:
      return "text";
    case JSONKind::list:
      return "a list";
    case JSONKind::object:
      return "an object";
  }
  return "something else";
}

std::string rangeText(const std::string& lowest, const std::string& highest) {
  return "expected an integer from " + lowest + " to " + highest + ", found another number";
}

}  // namespace

void Decoder::fail(std::string_view message) {
  if (hasFailed()) return;
  failure_ = path_.description();
  if (!failure_.empty()) failure_ += ": ";
  failure_ += message.empty() ? "can't be decoded" : message;
}

void Decoder::failMissing(std::string_view key) {
  if (hasFailed()) return;
  path_.enterObject();
  path_.nextField(key);
  fail("is missing");
}

// Text that is no JSON explains every failure to read.
bool Decoder::check(bool wasRead, std::string_view message) {
  if (!wasRead) fail(reader_.problem().empty() ? message : reader_.problem());
  return wasRead;
}

bool Decoder::failMismatch(std::string_view expected) {
  const auto found = kind();
  fail("expected " + std::string(expected) + ", found " + std::string(nameOf(found)));
  return false;
}

JSONKind Decoder::kind() {
  if (hasFailed()) return JSONKind::null;
  const auto kind = reader_.kind();
  check(kind.has_value(), "");
  return kind.value_or(JSONKind::null);
}

bool Decoder::takeNull() { return !hasFailed() && reader_.readNull(); }

void Decoder::boolean(bool& value) {
  if (!hasFailed()) expect(reader_.readBoolean(value), "a boolean");
}

void Decoder::number(JSONNumber& value) {
  if (!hasFailed()) expect(reader_.readNumber(value), "a number");
}

void Decoder::integer(std::int64_t& value, std::int64_t lowest, std::int64_t highest) {
  JSONNumber number;
  if (hasFailed() || !expect(reader_.readNumber(number), "an integer")) return;
  if (!fits(number, value) || value < lowest || value > highest) {
    fail(rangeText(std::to_string(lowest), std::to_string(highest)));
  }
}

void Decoder::unsignedInteger(std::uint64_t& value, std::uint64_t highest) {
  JSONNumber number;
  if (hasFailed() || !expect(reader_.readNumber(number), "an integer")) return;
  if (!fits(number, value) || value > highest) fail(rangeText("0", std::to_string(highest)));
}

void Decoder::floating(double& value, double highest) {
  JSONNumber number;
  this->number(number);
  if (hasFailed()) return;
  value = doubleOf(number);
  if (value < -highest || value > highest) fail("the number is beyond " + textFromDouble(highest));
}

void Decoder::text(std::string& value) {
  if (!hasFailed()) expect(reader_.readText(value), "text");
}

// Leaves the list or object when it is at its end, or fails when it can't go on.
bool Decoder::step(bool isAtValue) {
  if (isAtValue) return true;
  if (!check(reader_.problem().empty(), "")) return false;
  path_.leave();
  return false;
}

void Decoder::beginList() {
  if (!hasFailed() && expect(reader_.enterList(), "a list")) path_.enterList();
}

bool Decoder::nextElement() {
  if (hasFailed() || !step(reader_.nextElement())) return false;
  path_.nextElement();
  return true;
}

void Decoder::beginObject() {
  if (!hasFailed() && expect(reader_.enterObject(), "an object")) path_.enterObject();
}

bool Decoder::nextField() {
  if (hasFailed() || !step(reader_.nextField())) return false;
  path_.nextField(reader_.key());
  return true;
}

void Decoder::skip() {
  if (!hasFailed()) check(reader_.skip(), "");
}

void Decoder::finish() {
  if (!hasFailed()) check(reader_.isAtEnd(), "the text goes on behind the value");
}

}  // namespace Foundation
