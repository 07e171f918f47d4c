// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

/// Finds among many texts those that contain a given part, in time that depends on the part and on what is found,
/// not on the number of texts. Texts are numbered from 0 in the order in which they are added.
///
/// It is a suffix automaton of all texts (Blumer et al., "The smallest automaton recognizing the subwords of a text",
/// 1985, in its form for several texts): a state stands for all parts that end at the same places, a path from the
/// start spells every part of every text, and the links from a state to the state of its longest suffix that also
/// ends elsewhere form a tree. The texts that contain a part are those with a beginning in the tree below the part's
/// state. Memory and building time are proportional to the texts' bytes. Compared with a plain search in
/// tests/ppd/SubstringIndexTest.cpp.
class SubstringIndex {
 public:
  using Number = std::uint32_t;

  /// Adds a text and returns its number.
  Number add(std::string_view text);

  /// Takes the text out of what `allContaining` finds.
  void remove(Number text) { removed_[text] = true; }

  /// The lowest number of a text, removed ones included, that contains `part`; absent when none does or `part` is
  /// empty.
  std::optional<Number> firstContaining(std::string_view part) const;

  /// The numbers, ascending, of the texts that contain `part`; none when `part` is empty.
  std::vector<Number> allContaining(std::string_view part);

 private:
  using StateNumber = std::uint32_t;
  static constexpr StateNumber kStart = 0;
  static constexpr std::uint32_t kNone = UINT32_MAX;

  struct State {
    std::uint32_t length = 0;  // of the longest part that the state stands for, in bytes
    Number first = 0;          // the lowest text with these parts
    StateNumber link = kNone;
    StateNumber firstBelow = kNone;  // the states that link here: the first one, and the next one of the same link
    StateNumber nextBeside = kNone;
    std::uint32_t ends = kNone;  // the first of the state's entries in ends_
    bool exhausted = false;      // every text below has been removed
    std::vector<std::pair<char, StateNumber>> next;
  };
  // A beginning of a text that is a part of the state; the entries of one state are a list.
  struct End {
    Number text;
    std::uint32_t next;
  };

  StateNumber extend(StateNumber last, char byte);
  StateNumber cloneFor(StateNumber from, char byte, StateNumber target);
  StateNumber addState(std::uint32_t length);
  void linkTo(StateNumber state, StateNumber link);
  void unlink(StateNumber state);
  void endText(StateNumber state);
  StateNumber* next(StateNumber from, char byte);
  std::optional<StateNumber> find(std::string_view part) const;
  std::vector<StateNumber> statesBelow(StateNumber top) const;
  void markExhausted(const std::vector<StateNumber>& downwards);

  std::vector<State> states_ = std::vector<State>(1);
  std::vector<End> ends_;
  std::vector<bool> removed_;
};
