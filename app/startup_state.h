// The flags of the ordered start-up, which the window procedures and the
// device-change handling look at.
#pragma once

#include "base/flag.h"

// 1 while the MainWindow constructor runs: moves, sizes and device changes
// are let alone meanwhile.
extern Flag startingUp;
// Start-up can't go on.
extern Flag fatalStartupError;
