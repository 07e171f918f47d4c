// SPDX-License-Identifier: MIT
//
// What must hold for every setup with the PostScript updater, on a PPD in good order and random devices: a setup
// without media behind one with media leaves nothing of the custom media; and a setup behind a setup adds nothing
// twice. Each setup leaves one empty line behind for each group that the one before it had written: a group statement
// ends with an empty line, and what is read as an empty line is an object of its own, which no cleanup removes. The
// lines are therefore compared without empty ones.

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>

#include "tests/support/DocumentReading.h"
#include "updaters/ATMediaTypePSPPDUpdater.h"

namespace {

constexpr const char* kFactoryPPD =
    "*PPD-Adobe: \"4.3\"\n"
    "*cupsLanguages: \"en de fr\"\n"
    "*QZValueAttributes MediaType.Plain: \"glossy=NO;defaultGE='off-ge'\"\n"
    "*QZValueAttributes MediaType.Glossy: \"glossy=YES;defaultGE='whole-page-ge'\"\n"
    "*OpenGroup: QZImagingOptions/Imaging\n"
    "*OpenUI *MediaType/Media: PickOne\n"
    "*DefaultMediaType: Plain\n"
    "*MediaType Plain/Plain: \"(1001)\"\n"
    "*MediaType Glossy/Glossy: \"(1002)\"\n"
    "*CloseUI: *MediaType\n"
    "*OpenUI *QZGlossEnhancer/Gloss: PickOne\n"
    "*DefaultQZGlossEnhancer: whole-page-ge\n"
    "*CloseUI: *QZGlossEnhancer\n"
    "*CloseGroup: QZImagingOptions\n";

class FixedReader : public IATDataReader {
 public:
  explicit FixedReader(DeviceValue data) : data_(std::move(data)) {}
  DeviceValue dataForKey(std::string_view) const override { return data_; }
  DeviceValue familyNameForKey(std::string_view) const override { return {}; }
  std::optional<std::string> printerURI() const override { return "socket://192.0.2.10:9100"; }

 private:
  DeviceValue data_;
};

DeviceValue deviceData(const std::vector<DeviceValue>& media) {
  auto data = std::make_shared<DeviceMap>();
  data->set("MedaListVersion", "17");
  data->set("MediaList", std::make_shared<DeviceValue::List>(media));
  return data;
}

rc::Gen<DeviceValue> medium() {
  return rc::gen::apply(
      [](const std::string& name, const std::string& ID, const std::string& category, const std::string& parent,
         const std::string& gloss) {
        auto record = std::make_shared<DeviceMap>();
        record->set("MediaName", name);
        record->set("ID", ID);
        record->set("CategoryID", category);
        if (!parent.empty()) record->set("ParentID", parent);
        if (!gloss.empty()) record->set("DefaultGlossEnhancer", gloss);
        return DeviceValue(record);
      },
      rc::gen::element<std::string>("Canvas", "Film: clear", "Papier \xC3\xA0 grain", "A", "Satin"),
      rc::gen::element<std::string>("1001", "4711", "47", "12", "1234", "9"),
      rc::gen::element<std::string>("CUSTOM", "QZ_EXTENDED_MEDIA", "PHOTO"),
      rc::gen::element<std::string>("", "1001", "1002", "77"), rc::gen::element<std::string>("", "OFF", "FULLPAGE"));
}

std::string setUp(const std::string& text, const std::vector<DeviceValue>& media) {
  const auto reading = DocumentReading::read(text);
  RC_ASSERT(ATMediaTypePSPPDUpdater().updatePPD(&reading->ppd, std::make_unique<FixedReader>(deviceData(media)).get()));
  return DocumentReading::textOf(reading->ppd);
}

std::vector<std::string> linesWithoutEmptyOnes(const std::string& text) {
  auto lines = DocumentReading::pieces(text);
  std::erase(lines, "\n");
  return lines;
}

RC_GTEST_PROP(Setup, AnEmptyMediaListLeavesNothingOfCustomMedia, ()) {
  const auto media = *rc::gen::container<std::vector<DeviceValue>>(medium());
  const std::string cleaned = setUp(setUp(kFactoryPPD, media), {});
  RC_ASSERT(cleaned.find("Custom") == std::string::npos);
  RC_ASSERT(linesWithoutEmptyOnes(cleaned) == linesWithoutEmptyOnes(setUp(kFactoryPPD, {})));
}

RC_GTEST_PROP(Setup, ASetupAgainAddsNothingTwice, ()) {
  const auto media = *rc::gen::container<std::vector<DeviceValue>>(medium());
  const std::string once = setUp(kFactoryPPD, media);
  RC_ASSERT(linesWithoutEmptyOnes(setUp(once, media)) == linesWithoutEmptyOnes(once));
}

}  // namespace
