#include "platform/embedded/store/ledger/LedgerRow.hpp"

#include <any>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

namespace StoreKit::detail {

namespace {

using Foundation::NSError;
using Foundation::detail::SqliteStatement;
using Json = nlohmann::json;

Json errorJson(const NSError& error);

// Absent for a value that has no JSON form.
std::optional<Json> valueJson(const std::any& value) {
  if (const auto* text = std::any_cast<std::string>(&value)) return Json(*text);
  if (const auto* integer = std::any_cast<std::int64_t>(&value)) return Json(*integer);
  if (const auto* real = std::any_cast<double>(&value)) return Json(*real);
  if (const auto* flag = std::any_cast<bool>(&value)) return Json(*flag);
  if (const auto* error = std::any_cast<NSError>(&value)) return errorJson(*error);
  return std::nullopt;
}

Json errorJson(const NSError& error) {
  Json userInfo = Json::object();
  for (const auto& [key, value] : error.userInfo()) {
    if (auto json = valueJson(value)) userInfo[key] = std::move(*json);
  }
  return {{"domain", error.domain()}, {"code", error.code()}, {"userInfo", std::move(userInfo)}};
}

NSError errorFrom(const Json& json);

std::any valueFrom(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  if (json.is_number_integer()) return json.get<std::int64_t>();
  if (json.is_number()) return json.get<double>();
  if (json.is_boolean()) return json.get<bool>();
  return errorFrom(json);
}

NSError errorFrom(const Json& json) {
  NSError::UserInfo userInfo;
  for (const auto& [key, value] : json.at("userInfo").items()) {
    userInfo.emplace(key, valueFrom(value));
  }
  return {json.at("domain"), json.at("code"), std::move(userInfo)};
}

Json discountJson(const SKPaymentDiscount& discount) {
  return {{"identifier", discount.identifier},
          {"keyIdentifier", discount.keyIdentifier},
          {"nonce", discount.nonce},
          {"signature", discount.signature},
          {"timestamp", discount.timestamp}};
}

SKPaymentDiscount discountFrom(const Json& json) {
  return {.identifier = json.at("identifier"),
          .keyIdentifier = json.at("keyIdentifier"),
          .nonce = json.at("nonce"),
          .signature = json.at("signature"),
          .timestamp = json.at("timestamp")};
}

// Text that is not UTF-8 is kept as well as JSON can.
std::string dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<std::string> optionalText(const SqliteStatement& row, int column) {
  if (row.isNull(column)) return std::nullopt;
  return row.text(column);
}

std::optional<std::int64_t> optionalInteger(const SqliteStatement& row, int column) {
  if (row.isNull(column)) return std::nullopt;
  return row.integer(column);
}

void bindPayment(SqliteStatement& statement, const SKPayment::Values& payment) {
  statement.bind(payment.productIdentifier).bind(payment.quantity);
  if (const auto& data = payment.requestData) {
    statement.bindBytes(data->data(), data->size());
  } else {
    statement.bindNull();
  }
  statement.bind(payment.applicationUsername)
      .bind(std::int64_t{payment.simulatesAskToBuyInSandbox});
  if (const auto& discount = payment.paymentDiscount) {
    statement.bind(dump(discountJson(*discount)));
  } else {
    statement.bindNull();
  }
}

SKPayment::Values readPayment(const SqliteStatement& row, int column) {
  SKPayment::Values payment;
  payment.productIdentifier = row.text(column);
  payment.quantity = row.integer(column + 1);
  if (const auto data = optionalText(row, column + 2)) {
    auto& bytes = payment.requestData.emplace(data->size());
    std::memcpy(bytes.data(), data->data(), data->size());
  }
  payment.applicationUsername = optionalText(row, column + 3);
  payment.simulatesAskToBuyInSandbox = row.integer(column + 4) != 0;
  if (const auto discount = optionalText(row, column + 5)) {
    payment.paymentDiscount = discountFrom(Json::parse(*discount));
  }
  return payment;
}

}  // namespace

void bindEntry(SqliteStatement& statement, const LedgerEntry& entry) {
  statement.bind(entry.revision)
      .bind(static_cast<std::int64_t>(entry.state))
      .bind(std::int64_t{entry.finished})
      .bind(entry.owner);
  bindPayment(statement, entry.payment);
  statement.bind(entry.transactionIdentifier);
  if (const auto& date = entry.transactionDate) {
    statement.bind(date->timeIntervalSince1970());
  } else {
    statement.bindNull();
  }
  if (const auto& error = entry.error) {
    statement.bind(dump(errorJson(*error)));
  } else {
    statement.bindNull();
  }
  statement.bind(entry.original);
  if (entry.identifier != 0) {
    statement.bind(entry.identifier);
  } else {
    statement.bindNull();
  }
}

LedgerEntry readEntry(const SqliteStatement& row) {
  LedgerEntry entry;
  entry.revision = row.integer(0);
  entry.state = static_cast<SKPaymentTransactionState>(row.integer(1));
  entry.finished = row.integer(2) != 0;
  entry.owner = optionalInteger(row, 3);
  entry.payment = readPayment(row, 4);
  entry.transactionIdentifier = optionalText(row, 10);
  if (!row.isNull(11)) entry.transactionDate = Foundation::Date::sinceEpoch(row.real(11));
  if (const auto error = optionalText(row, 12)) entry.error = errorFrom(Json::parse(*error));
  entry.original = optionalInteger(row, 13);
  entry.identifier = row.integer(14);
  return entry;
}

}  // namespace StoreKit::detail
