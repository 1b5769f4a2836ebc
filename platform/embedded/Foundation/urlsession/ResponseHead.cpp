#include "platform/embedded/Foundation/urlsession/ResponseHead.hpp"

#include <strings.h>

#include <charconv>
#include <optional>

namespace Foundation::detail {

namespace {

// Below libcurl's own limit, whose error does not say what was wrong.
constexpr std::size_t kLongestHead = std::size_t{256} * 1024;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return "";
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (auto& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::string_view unquoted(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
  return quoted ? text.substr(1, text.size() - 2) : text;
}

std::optional<std::string> mimeType(std::string_view contentType) {
  const auto type = trimmed(contentType.substr(0, contentType.find(';')));
  if (type.empty()) return std::nullopt;
  return lowerCase(type);
}

// The value of "charset" among the parameters of a content type.
std::optional<std::string> charset(std::string_view contentType) {
  while (!contentType.empty()) {
    const auto end = contentType.find(';');
    const auto part = contentType.substr(0, end);
    const auto equals = part.find('=');
    if (equals != std::string_view::npos &&
        lowerCase(trimmed(part.substr(0, equals))) == "charset") {
      return std::string(unquoted(trimmed(part.substr(equals + 1))));
    }
    contentType.remove_prefix(end == std::string_view::npos ? contentType.size() : end + 1);
  }
  return std::nullopt;
}

}  // namespace

bool ResponseHead::add(std::string_view line) {
  size_ += line.size();
  if (size_ > kLongestHead) return false;
  if (line.starts_with("HTTP/")) {
    begin(line);
  } else {
    addField(line);
  }
  return true;
}

void ResponseHead::begin(std::string_view statusLine) {
  const auto size = size_;
  *this = {};
  size_ = size;
  const auto code = statusLine.substr(std::min(statusLine.find(' '), statusLine.size()));
  const auto digits = trimmed(code);
  std::from_chars(digits.data(), digits.data() + digits.size(), status_);
}

// A line that begins with a blank continues the one before it.
void ResponseHead::addField(std::string_view line) {
  const auto colon = line.find(':');
  const bool continues = !line.empty() && (line.front() == ' ' || line.front() == '\t');
  if (continues && !lastName_.empty()) {
    fields_[lastName_].append(" ").append(trimmed(line));
  } else if (!continues && colon != std::string_view::npos) {
    lastName_ = trimmed(line.substr(0, colon));
    const auto value = trimmed(line.substr(colon + 1));
    const auto [field, isNew] = fields_.emplace(lastName_, value);
    if (!isNew) field->second.append(", ").append(value);
  }
}

std::string_view ResponseHead::field(std::string_view name) const {
  const auto found = fields_.find(name);
  return found == fields_.end() ? std::string_view() : found->second;
}

bool ResponseHead::hasBody(std::string_view method) const {
  constexpr int kNoContent = 204;
  constexpr int kNotModified = 304;
  return method != "HEAD" && status_ != kNoContent && status_ != kNotModified;
}

URLResponsePtr ResponseHead::takeResponse(const URL& url, std::int64_t length) {
  const auto type = field("Content-Type");
  const auto encoding = lowerCase(field("Content-Encoding"));
  const bool decoded = !encoding.empty() && encoding != "identity";
  URLResponse::Contents contents{
      .url = url,
      .mimeType = mimeType(type),
      .expectedContentLength = decoded || length < 0 ? kUnknownLength : length,
      .textEncodingName = charset(type)};
  return std::make_shared<const HTTPURLResponse>(std::move(contents), status_, std::move(fields_));
}

}  // namespace Foundation::detail
