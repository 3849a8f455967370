// The actions of a scenario line.
#pragma once

#include "tools/zorctl/scenario/ScenarioWords.h"

// Takes one action from `words`, which hold a fault afterwards where there is none.
Action ParseAction(CWords& words);
