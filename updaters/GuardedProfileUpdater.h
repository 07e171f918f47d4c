// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <new>
#include <optional>
#include <string>

#include "base/ATLog.h"
#include "base/Format.h"
#include "ppd/lists/Budget.h"
#include "updaters/ATMediaTypePCL3PPDUpdater.h"

/// Runs the operation and gives the reason of the exception, of whatever type, that ended it; absent when none did. A
/// lack of memory and an exceeded budget are not caught: they end the run.
template <class Operation>
std::optional<std::string> reasonOfFailure(Operation operation) {
  try {
    operation();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const BudgetExceeded&) {
    throw;
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "unknown";
  }
  return std::nullopt;
}

/// A profile updater that adapts a medium's record before `Base` adds or sets its profiles. A record that cannot be
/// adapted costs the medium its profiles, not the queue its setup: the error is logged, and what was changed before
/// stays.
template <class Base>
class GuardedProfileUpdater : public Base {
 public:
  using Record = ATMediaTypePPDUpdater::Record;
  using Base::Base;

  /// An error, such as an entry without a gloss value, is logged and gives false.
  bool addICCProfileForMediaWithData(const Record& record, ATPPD& toPPD) const override {
    bool added = false;
    const auto reason =
        reasonOfFailure([&] { added = Base::addICCProfileForMediaWithData(adaptedRecord(record, toPPD), toPPD); });
    if (!reason) return added;
    ATLog(fmt::format("-[{} addICCProfileForMediaWithData:toPPD:]", className()),
          "INFO: Cannot add profile from {}, reason: {}", record.description(), *reason);
    this->observer().profilesFailed(*reason);
    return false;
  }

  /// An error is logged.
  void setICCProfileForMediaWithData(const Record& record, ATPPD& inPPD) const override {
    const auto reason =
        reasonOfFailure([&] { Base::setICCProfileForMediaWithData(adaptedRecord(record, inPPD), inPPD); });
    if (!reason) return;
    ATLog(fmt::format("-[{} setICCProfileForMediaWithData:inPPD:]", className()),
          "INFO: Cannot set profile from {}, reason: {}", record.description(), *reason);
    this->observer().profilesFailed(*reason);
  }

 private:
  /// The record for `Base`; throws ATException when it cannot be made.
  virtual Record adaptedRecord(const Record& record, const ATPPD& ppd) const = 0;
  /// Of the class that the messages name.
  virtual const char* className() const = 0;
};
