#include "platform/embedded/store/ledger/LedgerRow.hpp"

#include <cstring>
#include <utility>

#include "platform/embedded/store/ledger/LedgerJson.hpp"

namespace StoreKit::detail {

namespace {

using Foundation::detail::SqliteStatement;

std::optional<std::string> optionalText(const SqliteStatement& row, int column) {
  if (row.isNull(column)) return std::nullopt;
  return row.text(column);
}

std::optional<std::int64_t> optionalInteger(const SqliteStatement& row, int column) {
  if (row.isNull(column)) return std::nullopt;
  return row.integer(column);
}

std::optional<Foundation::Date> optionalDate(const SqliteStatement& row, int column) {
  if (row.isNull(column)) return std::nullopt;
  return Foundation::Date::sinceEpoch(row.real(column));
}

std::optional<double> seconds(const std::optional<Foundation::Date>& date) {
  if (!date) return std::nullopt;
  return date->timeIntervalSince1970();
}

void bindPeriod(SqliteStatement& statement, const std::optional<SubscriptionPeriod>& period) {
  if (period) {
    statement.bind(period->group).bind(std::int64_t{period->running});
    statement.bind(periodText(*period));
  } else {
    statement.bindNull().bind(std::int64_t{0}).bindNull();
  }
}

std::optional<SubscriptionPeriod> readPeriod(const SqliteStatement& row, int column) {
  if (row.isNull(column)) return std::nullopt;
  auto period = periodFrom(row.text(column + 2));
  period.group = row.text(column);
  period.running = row.integer(column + 1) != 0;
  return period;
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
    statement.bind(discountText(*discount));
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
    payment.paymentDiscount = discountFrom(*discount);
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
  statement.bind(entry.transactionIdentifier).bind(seconds(entry.transactionDate));
  if (const auto& error = entry.error) {
    statement.bind(errorText(*error));
  } else {
    statement.bindNull();
  }
  statement.bind(entry.original)
      .bind(seconds(entry.cancelDate))
      .bind(entry.refundRevision)
      .bind(std::int64_t{entry.hasPurchaseIssue})
      .bind(std::int64_t{entry.asksApplication})
      .bind(std::int64_t{entry.deleted});
  bindPeriod(statement, entry.period);
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
  entry.transactionDate = optionalDate(row, 11);
  if (const auto error = optionalText(row, 12)) entry.error = errorFrom(*error);
  entry.original = optionalInteger(row, 13);
  entry.cancelDate = optionalDate(row, 14);
  entry.refundRevision = optionalInteger(row, 15);
  entry.hasPurchaseIssue = row.integer(16) != 0;
  entry.asksApplication = row.integer(17) != 0;
  entry.deleted = row.integer(18) != 0;
  entry.period = readPeriod(row, 19);
  entry.identifier = row.integer(22);
  return entry;
}

}  // namespace StoreKit::detail
