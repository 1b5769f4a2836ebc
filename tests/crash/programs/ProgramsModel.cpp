#include "tests/crash/programs/ProgramsModel.hpp"

#include <cstdlib>

#include "tests/crash/Broken.hpp"
#include "tests/crash/Telling.hpp"

namespace crash {

namespace {

using State = StoreKit::SKPaymentTransactionState;

bool isOneOf(const std::string& word, std::initializer_list<const char*> words) {
  for (const auto* each : words) {
    if (word == each) return true;
  }
  return false;
}

}  // namespace

std::string stateText(State state) { return std::to_string(static_cast<std::int64_t>(state)); }

void ProgramsModel::start(const std::string& name) {
  programs_[name] = Program();
  programs_[name].startedAt = ++now_;
}

void ProgramsModel::hear(const std::string& line) {
  ++now_;
  const auto fields = split(line);
  const auto program = programs_.find(fields.empty() ? "" : fields[0]);
  if (fields.size() < 2 || program == programs_.end()) throw Broken("somebody said: " + line);
  if (fields[1] == "opened") {
    program->second.opened = true;
  } else if (fields[1] == "delivered") {
    hearDelivered(program->second);
  } else if (fields.size() > 2 && isOneOf(fields[1], {"told", "may", "removed"})) {
    hearOfTransaction(fields, program->second);
  } else if (fields.size() > 2 && isOneOf(fields[1], {"refunding", "refunded", "revoked"})) {
    hearOfRefund(fields, program->second);
  } else if (fields[1] != "quiet") {
    throw Broken("a program said: " + line);
  }
}

void ProgramsModel::hearOfTransaction(const Fields& fields, Program& program) {
  const auto number = std::stoll(fields[2]);
  if (number < 1) throw Broken("the ledger refused a purchase: " + fields.back());
  if (fields[1] == "told") {
    hearTold(number, fields, program);
  } else if (fields[1] == "may") {
    known_.at(number).mayBeFinished = true;
  } else {
    hearRemoved(number, program);
  }
}

void ProgramsModel::hearOfRefund(const Fields& fields, Program& program) {
  if (fields[1] == "refunding") program.refundingAt = now_;
  if (fields[1] == "refunded") refunds_.grant(fields[2], program.refundingAt, now_);
  if (fields[1] == "revoked") refunds_.tell(fields[2], now_);
}

void ProgramsModel::hearTold(std::int64_t number, const Fields& fields, Program& program) {
  if (fields.size() != 6) broken(number, "was told in half a line");
  const auto& known = known_.learn(number, fields[4]);
  if (known.removedAt && *known.removedAt < program.startedAt) {
    broken(number, "came back after its removal");
  }
  if (program.removed.contains(number)) broken(number, "came back after it was told as removed");
  program.told.insert(number);
  if (fields[3] == stateText(State::purchasing)) {
    hearBegun(number, fields[0], program);
  } else if (fields[3] == stateText(State::deferred)) {
    hearDeferred(number, program);
  } else {
    hearOutcome(number, fields[3] + " " + fields[5], program);
  }
}

// An outcome is committed by the program that has called it purchasing; who takes it over does so
// once that one is dead.
void ProgramsModel::hearBegun(std::int64_t number, const std::string& name, Program& program) {
  auto& known = known_.at(number);
  if (known.outcome) broken(number, "had an outcome, and is purchasing again");
  if (known.begunBy == name) broken(number, "began twice in one program");
  if (known.begunBy && !programs_[*known.begunBy].killed) broken(number, "is under way twice");
  known.begunBy = name;
  if (number < program.lastBegun) broken(number, "began out of its order");
  program.lastBegun = number;
  checkBuyer(number, name, program);
}

void ProgramsModel::checkBuyer(std::int64_t number, const std::string& name, Program& program) {
  const auto prefix = " for " + name + ".";
  const auto& payment = known_.at(number).payment;
  const auto place = payment.find(prefix);
  if (place == std::string::npos) return;
  const auto buyer = std::atol(payment.c_str() + place + prefix.size());
  if (buyer <= program.lastBuyer) broken(number, "was added before the one ahead of it");
  program.lastBuyer = buyer;
}

void ProgramsModel::hearDeferred(std::int64_t number, const Program& program) {
  if (program.outcomes.contains(number)) broken(number, "had an outcome, and is deferred again");
  if (wasSettled(known_.at(number), program)) broken(number, "has lost its outcome");
}

void ProgramsModel::hearOutcome(std::int64_t number, const std::string& outcome, Program& program) {
  const auto& known = known_.at(number);
  const bool ofBacklog = wasSettled(known, program);
  known_.learnOutcome(number, outcome, now_);
  if (!program.outcomes.insert(number).second) broken(number, "had two outcomes in one program");
  if (!ofBacklog) return;
  if (number < program.lastOfBacklog) broken(number, "came back out of its order");
  program.lastOfBacklog = number;
}

void ProgramsModel::hearRemoved(std::int64_t number, Program& program) {
  if (!known_.at(number).mayBeFinished) broken(number, "was removed, and nobody finished it");
  if (!program.told.contains(number)) broken(number, "was removed, and was not there");
  if (!program.removed.insert(number).second) broken(number, "was removed twice");
  known_.learnRemoval(number, now_);
}

void ProgramsModel::hearDelivered(const Program& program) {
  for (const auto number : known_.unfinished()) {
    const auto& known = known_.at(number);
    const bool expected = wasSettled(known, program) && !known.mayBeFinished;
    if (expected && !program.told.contains(number)) broken(number, "did not come back");
  }
  refunds_.checkTold(program.startedAt);
}

bool ProgramsModel::wasSettled(const KnownTransaction& known, const Program& program) {
  return known.outcomeAt && *known.outcomeAt < program.startedAt;
}

}  // namespace crash
