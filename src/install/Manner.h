// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

namespace brevok {

/// How an operation treats whoever may be there. As it stands: a person asked for it.
struct Manner {
    bool skipRunningTargets = false; ///< what belongs to a running application is left for another time
    bool unattended = false; ///< nobody is asked for rights, no alert is shown
    bool toldTogether = false; ///< whoever asked for several shows one alert for all that failed
    bool foreseen = false; ///< nothing is changed: the outcome tells what would become of it
};

} // namespace brevok
