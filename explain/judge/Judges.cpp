// SPDX-License-Identifier: MIT
#include "explain/judge/Judges.h"

#include "explain/judge/CUPSLimits.h"
#include "explain/judge/ConsequencesJudge.h"
#include "explain/judge/DeviceJudge.h"
#include "explain/judge/InputJudge.h"
#include "explain/judge/LeftoversJudge.h"
#include "explain/judge/MediaJudge.h"
#include "explain/judge/NearMissJudge.h"
#include "explain/judge/ProfileJudge.h"
#include "explain/judge/UpdatersJudge.h"

namespace {

enum class Of { everyRun, success };

struct Judge {
  Of of;
  void (*judge)(const Evidence& evidence, Warnings& warnings);
};

constexpr Judge kJudges[] = {
    {Of::everyRun, InputJudge::judge},        {Of::everyRun, CUPSLimits::judge},
    {Of::success, UpdatersJudge::judge},      {Of::success, DeviceJudge::judge},
    {Of::success, MediaJudge::judge},         {Of::success, ProfileJudge::judge},
    {Of::success, LeftoversJudge::judge},     {Of::everyRun, NearMissJudge::judge},
    {Of::everyRun, ConsequencesJudge::judge},
};

}  // namespace

void Judges::judge(const Evidence& evidence, Warnings& warnings) {
  for (const Judge& each : kJudges) {
    if (each.of == Of::everyRun || evidence.report.succeeded()) each.judge(evidence, warnings);
  }
}
