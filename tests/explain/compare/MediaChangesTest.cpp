// SPDX-License-Identifier: MIT
#include "explain/compare/MediaChanges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

PPDMedia::Medium medium(const std::string& choice, const std::string& name, const std::string& ID) {
  return {choice, name, ID, "custom " + ID, "", {}, true};
}

std::vector<std::string> textsBetween(const PPDMedia& before, const PPDMedia& after) {
  std::vector<std::string> texts;
  for (const MediaChange& change : MediaChange::between(before, after)) {
    texts.push_back(std::string(change.kindName()) + ": " + change.text());
  }
  return texts;
}

}  // namespace

TEST(MediaChange, NothingChanged) {
  const PPDMedia media{{medium("Custom1", "Canvas", "4711")}, "Custom1"};
  EXPECT_THAT(MediaChange::between(media, media), IsEmpty());
}

TEST(MediaChange, AddedGoneRenamedAndRenumbered) {
  const PPDMedia before{{medium("Custom1", "Canvas", "4711"), medium("Custom2", "Linen", "4712")}, ""};
  const PPDMedia after{{medium("Custom1", "Fine linen", "4712"), medium("Custom2", "Mesh", "4713")}, ""};
  EXPECT_THAT(
      textsBetween(before, after),
      ElementsAre("gone: Canvas (ID 4711) is gone, it was Custom1", "renamed: Linen (ID 4712) is renamed to Fine linen",
                  "renumbered: Fine linen (ID 4712) becomes Custom1, it was Custom2",
                  "added: Mesh (ID 4713) is added as Custom2"));
}

TEST(MediaChange, OtherProfilesAndProperties) {
  PPDMedia before{{medium("Custom1", "Canvas", "4711")}, ""};
  PPDMedia after = before;
  before.media[0].profiles = {"a"};
  after.media[0].properties = "b";
  EXPECT_THAT(textsBetween(before, after), ElementsAre("profiles: Canvas (ID 4711) has other colour profiles",
                                                       "properties: Canvas (ID 4711) has other properties"));
}
