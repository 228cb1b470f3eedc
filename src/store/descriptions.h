// Loading of the description dictionaries: KorvessaDesc<n>.kvl of the program folder, each guarded by its
// hash.
#pragma once

#include <string>

#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::store {

// Files 0, 1, 2, 4, 5, 6, 7, 9, 10 into AppState::Desc. A missing file leaves its array as it is; a wrong
// hash is logged and leaves it empty. A run-time error is fatal ("Initial:LoadDescArrays").
void LoadDescArrays(core::AppState& state, core::ErrorLog& log);

// Path of description file n.
std::string DescPath(const core::AppState& state, int n);

}  // namespace zendrix::store
