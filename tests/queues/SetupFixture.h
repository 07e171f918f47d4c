// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "library/Snapshot.h"
#include "setup/SetupDigest.h"
#include "setup/SetupFolder.h"
#include "setup/SetupStatement.h"
#include "setup/StrictSetup.h"
#include "tests/support/SnapshotDeviceModelLibrary.h"
#include "tests/support/TemporaryFolder.h"

/// A folder with one setup, p/z9.ppd, whose device has one custom medium; its files are old enough not to be waited
/// for.
class SetupFixture : public testing::Test {
 protected:
  SetupFixture() {
    std::filesystem::create_directory(folder_.path("ppd"));
    writePPD("");
    writeSnapshot("Canvas");
  }
  ~SetupFixture() override {
    DeviceModelLibrary::setDefaultLibrary(nullptr);
    unsetenv("QZVORANTISMODEL_SNAPSHOT");
  }

  void writePPD(const std::string& statements) {
    write("ppd/z9.ppd",
          "*PPD-Adobe: \"4.3\"\n*Manufacturer: \"Vorantis\"\n*ModelName: \"Z9\"\n"
          "*QZPPDUpdaters: \"ATMediaTypePCL3PPDUpdater\"\n" +
              statements +
              "*OpenGroup: QZImagingOptions/Imaging Options\n*OpenUI *MediaType/Media Type: PickOne\n"
              "*DefaultMediaType: Plain\n*MediaType Plain/Plain: \"(1001)\"\n*CloseUI: *MediaType\n"
              "*CloseGroup: QZImagingOptions\n");
  }
  void writeSnapshot(const std::string& mediumName) {
    const std::string text =
        R"({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"uri": "socket://h:1",)"
        R"("modelName": "\"Z9\"", "dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "7", "MediaInfo": {"a":)"
        R"({"Name": ")" +
        mediumName +
        R"(", "MediumID": "4711", "CategoryName": "C", "CategoryID": "CUSTOM", "ICCProfiles": [], "ParentID": "1001"}}}}}]})";
    write("p.json", text);
    library_ = std::make_unique<SnapshotDeviceModelLibrary>(snapshot::Snapshot::fromJSON(text));
    DeviceModelLibrary::setDefaultLibrary(library_.get());
  }
  /// What the driver program would write.
  std::string made() {
    SetupFolder setups(folder_.path());
    const std::string name = "vorantis-autosetup:p/z9.ppd";
    const std::string digest = SetupDigest::ofFiles(folder_.path("ppd/z9.ppd"), folder_.path("p.json"));
    return SetupStatement::addedTo(StrictSetup::run(setups.named(name)).ppd, name, digest);
  }
  static std::string replaced(std::string text, const std::string& part, const std::string& with) {
    return text.replace(text.find(part), part.size(), with);
  }

  TemporaryFolder folder_;

 private:
  void write(const std::string& name, const std::string& text) {
    using std::filesystem::file_time_type;
    std::filesystem::last_write_time(folder_.file(name, text), file_time_type::clock::now() - std::chrono::minutes(1));
  }

  std::unique_ptr<SnapshotDeviceModelLibrary> library_;
};
