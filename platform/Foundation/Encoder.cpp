#include "platform/Foundation/Encoder.hpp"

#include <cmath>

#include "platform/Foundation/JSONReader.hpp"
#include "platform/Foundation/NumberText.hpp"
#include "platform/Foundation/UnicodeText.hpp"

namespace Foundation {

namespace {

// The letter behind the backslash for characters that have a short form; 0 for all others.
char shortEscape(char c) {
  switch (c) {
    case '"':
    case '\\':
    case '/':
      return c;
    case '\b':
      return 'b';
    case '\f':
      return 'f';
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return 0;
  }
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

void appendEscaped(std::string& json, char c) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  if (const char letter = shortEscape(c)) {
    (json += '\\') += letter;
  } else {
    const auto code = static_cast<unsigned char>(c);
    ((json += "\\u00") += kHexDigits[code >> 4U]) += kHexDigits[code & 15U];
  }
}

}  // namespace

void Encoder::fail(std::string_view message) {
  if (hasFailed()) return;
  failure_ = path_.description();
  if (!failure_.empty()) failure_ += ": ";
  failure_ += message.empty() ? "can't be encoded" : message;
}

void Encoder::null() {
  if (!hasFailed()) json_ += "null";
}

void Encoder::boolean(bool value) {
  if (!hasFailed()) json_ += value ? "true" : "false";
}

void Encoder::integer(std::int64_t value) {
  if (!hasFailed()) json_ += std::to_string(value);
}

void Encoder::unsignedInteger(std::uint64_t value) {
  if (!hasFailed()) json_ += std::to_string(value);
}

void Encoder::floating(double value) {
  if (hasFailed()) return;
  const auto text = textFromDouble(value);
  if (std::isfinite(value)) {
    json_ += text;
  } else {
    fail(text + " is not a JSON number");
  }
}

void Encoder::text(std::string_view value) {
  if (!hasFailed()) appendText(value);
}

void Encoder::appendText(std::string_view text) {
  if (!isUTF8(text)) return fail("the text is not UTF-8");
  json_ += '"';
  for (const char c : text) {
    if (isControl(c) || shortEscape(c) != 0) {
      appendEscaped(json_, c);
    } else {
      json_ += c;
    }
  }
  json_ += '"';
}

bool Encoder::enter(char bracket) {
  if (hasFailed()) return false;
  if (path_.depth() == kDeepestJSON) fail("lies too deep in lists and objects");
  json_ += bracket;
  return !hasFailed();
}

void Encoder::leave(char bracket) {
  if (hasFailed()) return;
  json_ += bracket;
  path_.leave();
}

void Encoder::beginList() {
  if (enter('[')) path_.enterList();
}

void Encoder::nextElement() {
  if (hasFailed()) return;
  if (path_.count() > 0) json_ += ',';
  path_.nextElement();
}

void Encoder::endList() { leave(']'); }

void Encoder::beginObject() {
  if (enter('{')) path_.enterObject();
}

void Encoder::key(std::string_view key) {
  if (hasFailed()) return;
  if (path_.count() > 0) json_ += ',';
  path_.nextField(key);
  appendText(key);
  json_ += ':';
}

void Encoder::endObject() { leave('}'); }

}  // namespace Foundation
