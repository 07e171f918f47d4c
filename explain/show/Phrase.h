// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// How good what is said is.
enum class Tone { plain, good, odd, bad };

/// What a report says in one place: words of its own, and names that the device or the PPD gives.
class Phrase {
 public:
  struct Piece {
    std::optional<std::string> text;  ///< absent: a name that is not there
    bool isName = false;              ///< may hold anything; words are visible text (Wording::visible)
    Tone tone = Tone::plain;
  };

  Phrase() = default;
  Phrase(const char* words) { say(words); }             // NOLINT(google-explicit-constructor): a phrase of words alone
  Phrase(std::string words) { say(std::move(words)); }  // NOLINT(google-explicit-constructor)

  Phrase& say(std::string words, Tone tone = Tone::plain) {
    pieces_.push_back({std::move(words), false, tone});
    return *this;
  }
  Phrase& name(std::optional<std::string> text) {
    pieces_.push_back({std::move(text), true, Tone::plain});
    return *this;
  }

  const std::vector<Piece>& pieces() const { return pieces_; }

 private:
  std::vector<Piece> pieces_;
};
