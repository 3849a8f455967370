// The actions of a scenario line.
#pragma once

#include "tools/zorctl/ScenarioWords.h"

// Takes one action from `words`, which hold a fault afterwards where there is none.
Action ParseAction(CWords& words);
