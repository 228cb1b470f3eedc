// How the three checks of the Home console say what they found: small numbers of one sense, with their flag
// and their sentence.
#pragma once

#include <cstdint>
#include <string>

#include "core/app_state.h"
#include "home/views.h"
#include "widgets/image.h"
#include "widgets/label.h"

namespace zendrix::home {

inline constexpr int kUndecided = 0, kGood = 1, kAttention = 2, kImmediate = 3;

// The picture of a status.
const char* FlagOf(int status);

// The sentence of a group (a view's index) and a status; "Description Not Available" when there is none.
std::string StatusText(const core::AppState& state, int group, int status);

// One row of the Summary pane: the flag, the name and one sentence of the pane that it leads to.
struct StatusRow {
  explicit StatusRow(int view);
  widgets::Image Flag;
  widgets::Label icView;
  widgets::Label icDesc;
};

}  // namespace zendrix::home
