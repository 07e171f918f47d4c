// SPDX-License-Identifier: MIT
#include "explain/watch/DocumentChanges.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace {

using Kind = Report::ChangeKind;

std::string textOf(const IATPPDObject& object) {
  std::string text;
  object.giveStringsTo([&text](const StatementString& string) { text += string.view(); });
  return text;
}

// Joins a statement that was removed and added again elsewhere with the same text: that is a cleanup and a setup which
// came to the same end.
void joinMoved(std::vector<Report::Change>& changes) {
  std::unordered_multimap<std::string_view, Report::Change*> removed;
  for (Report::Change& change : changes) {
    if (change.kind == Kind::removed) removed.emplace(change.before, &change);
  }
  std::unordered_set<const Report::Change*> joined;
  for (Report::Change& change : changes) {
    if (change.kind != Kind::added) continue;
    const auto found = removed.find(change.after);
    if (found == removed.end()) continue;
    change.kind = Kind::moved;
    change.before = change.after;
    joined.insert(found->second);
    removed.erase(found);
  }
  std::vector<Report::Change> kept;
  for (Report::Change& change : changes) {
    if (joined.count(&change) == 0) kept.push_back(std::move(change));
  }
  changes = std::move(kept);
}

}  // namespace

DocumentChanges::DocumentChanges(const ATPPD& ppd) {
  collect(ppd);
}

void DocumentChanges::collect(const ATPPDCompoundObject& compound) {
  for (const auto& object : compound.PPDObjects()) {
    if (const auto* inner = dynamic_cast<const ATPPDCompoundObject*>(object.get())) {
      collect(*inner);
    } else {
      statements_.push_back({object, textOf(*object)});
    }
  }
}

std::vector<Report::Change> DocumentChanges::to(const DocumentChanges& later) const {
  std::unordered_set<const IATPPDObject*> before;
  for (const Statement& statement : statements_) before.insert(statement.object.get());

  std::vector<Report::Change> changes;
  auto next = later.statements_.begin();
  const auto takeAdded = [&] {
    for (; next != later.statements_.end() && before.count(next->object.get()) == 0; ++next) {
      changes.push_back({Kind::added, "", next->text});
    }
  };
  for (const Statement& statement : statements_) {
    takeAdded();
    if (next == later.statements_.end() || next->object != statement.object) {
      changes.push_back({Kind::removed, statement.text, ""});
    } else {
      if (next->text != statement.text) changes.push_back({Kind::changed, statement.text, next->text});
      ++next;
    }
  }
  takeAdded();
  joinMoved(changes);
  return changes;
}
