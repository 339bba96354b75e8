#include "app/startup_state.h"

Flag startingUp{0};
Flag fatalStartupError{0};
