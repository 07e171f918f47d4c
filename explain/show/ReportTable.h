// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Many reports on one page: which devices lost what, the worst first.
class ReportTable {
 public:
  struct Row {
    std::string file;    ///< the report's name in its folder
    std::string colour;  ///< of the verdict; "unreadable" when the file is no report
    std::string device, PPD;
    std::size_t onDevice = 0, lost = 0;
    std::string reasons;   ///< why media were lost: codes with their numbers
    std::string warnings;  ///< codes with their numbers
  };

  /// Of all files of the folder that end with ".json". Absent folders have none.
  static ReportTable ofFolder(const std::string& path);

  /// The worst first.
  const std::vector<Row>& rows() const { return rows_; }

  std::string text() const;
  /// RFC 4180, with a line of titles.
  std::string csv() const;
  std::string html() const;

 private:
  std::vector<Row> rows_;
};
