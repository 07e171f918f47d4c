// SPDX-License-Identifier: MIT
#include "explain/judge/ProfileJudge.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include "base/Text.h"
#include "explain/judge/DeviceTextJudge.h"
#include "updaters/PPDKeywords.h"

namespace {

// As whom CUPS' filters read profiles.
constexpr const char* kReader = "lp";

std::optional<struct stat> statusOf(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

// Whether only root may change it.
bool belongsToRoot(const struct stat& status) {
  return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Whether the user of these numbers has the permission, given for others as 4, 2 or 1.
bool isPermitted(const struct stat& status, mode_t permission, uid_t user, gid_t group) {
  if (status.st_uid == user) return (status.st_mode & permission << 6) != 0;
  if (status.st_gid == group) return (status.st_mode & permission << 3) != 0;
  return (status.st_mode & permission) != 0;
}

// Whether CUPS' filters may read the file at the absolute path, and come to it; true where there is no such user.
bool isReadable(const std::string& path) {
  const passwd* reader = getpwnam(kReader);
  if (reader == nullptr) return true;
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    const auto folder = statusOf(path.substr(0, slash));
    if (folder && !isPermitted(*folder, S_IXOTH, reader->pw_uid, reader->pw_gid)) return false;
  }
  const auto file = statusOf(path);
  return file && isPermitted(*file, S_IROTH, reader->pw_uid, reader->pw_gid);
}

// Whether the regular file has the signature of an ICC profile (ICC.1, section 7.2); true when it cannot be read.
bool hasSignature(const std::string& path) {
  constexpr off_t kPlace = 36;
  char signature[4];
  const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return true;
  const ssize_t size = pread(descriptor, signature, sizeof signature, kPlace);
  close(descriptor);
  return size == sizeof signature && std::string_view(signature, sizeof signature) == "acsp";
}

// A profile of the device, and its medium.
class ProfileOfMedium {
 public:
  ProfileOfMedium(const Report::Profile& profile, const Report::Medium& medium, Warnings& warnings)
      : profile_(profile), medium_(medium), warnings_(warnings) {}

  void judge() {
    DeviceTextJudge::judge("profile spec", profile_.spec, DeviceTextJudge::Place::inFrontOfColon, warnings_, about());
    if (profile_.url) judgeURL(*profile_.url);
    if (profile_.path) judgePath(*profile_.path);
    if (profile_.path) judgeFile(*profile_.path);
  }

 private:
  AboutMedium about() const { return {medium_.name, medium_.ID}; }
  void warn(WarningCode code, std::vector<Warning::Fact> facts) { warnings_.add(code, std::move(facts), about()); }

  void judgePermissions(const std::string& path, const struct stat& file) {
    const auto folder = statusOf(path.substr(0, path.rfind('/') + 1));
    if (!belongsToRoot(file) || !folder || !belongsToRoot(*folder)) {
      warn(WarningCode::profilePermissions, {{"path", path}});
    }
    const std::unique_ptr<char, void (*)(void*)> target(realpath(path.c_str(), nullptr), std::free);
    if (!isReadable(path) || (target != nullptr && !isReadable(target.get()))) {
      warn(WarningCode::profileNotReadable, {{"user", kReader}, {"path", path}});
    }
  }

  void judgeFile(const std::string& path) {
    const auto file = statusOf(path);
    if (!file && errno != ENOENT && errno != ENOTDIR) {
      warn(WarningCode::profileNotReadable, {{"reason", std::strerror(errno)}, {"path", path}});
    } else if (!file) {
      warn(WarningCode::profileMissing, {{"path", path}});
    } else if (!path.starts_with('/') || !S_ISREG(file->st_mode)) {
      warn(WarningCode::profileNoFile, {{"path", path}});
    } else {
      judgePermissions(path, *file);
      if (!hasSignature(path)) warn(WarningCode::profileNoIcc, {{"path", path}});
    }
  }

  void judgePath(const std::string& path) {
    const auto parts = Text::split(path, "/");
    if (std::find(parts.begin(), parts.end(), "..") == parts.end()) return;
    warn(WarningCode::profileLeavesFolder, {{"path", path}});
  }

  // Of a URL only the path gets into the PPD; a plain path has no scheme.
  void judgeURL(const std::string& url) {
    const std::size_t scheme = url.find(':');
    if (scheme == std::string::npos || url.find('/') < scheme) return;
    const bool isFile = Text::startsWithIgnoringCase(url, "file:");
    const std::string_view rest = std::string_view(url).substr(scheme + 1);
    const std::string_view host = rest.starts_with("//") ? rest.substr(2, rest.find('/', 2) - 2) : "";
    if (isFile && (host.empty() || host == "localhost")) return;
    std::vector<Warning::Fact> facts = {{"url", url}};
    if (isFile) facts.emplace_back("host", host);
    warn(WarningCode::profileElsewhere, std::move(facts));
  }

  const Report::Profile& profile_;
  const Report::Medium& medium_;
  Warnings& warnings_;
};

// A later updater may have taken it out.
bool isIn(const ATPPD& ppd, const Report::Profile& profile) {
  const auto statements = ppd.attributesForName(PPDKeyword::profile, profile.spec.value_or(""));
  return std::any_of(statements.begin(), statements.end(), [&](const auto& statement) {
    return statement->spec() == profile.spec && statement->value() == "\"" + profile.path.value_or("") + "\"";
  });
}

}  // namespace

void ProfileJudge::judge(const Evidence& evidence, Warnings& warnings) {
  for (const Report::Updater& updater : evidence.report.updaters) {
    for (const Report::MediumOutcome& medium : updater.media) {
      for (const Report::Profile& profile : medium.profiles) {
        if (profile.outcome == Report::ProfileOutcome::skipped || !isIn(evidence.ppd, profile)) continue;
        ProfileOfMedium(profile, medium.device, warnings).judge();
      }
    }
  }
}
