#pragma once

#include "objects/face/smmodeldocument_002_000.h"

namespace CLI {
class App;
}

/** Adds `--limits` to a command that reads models. What it is given holds for every model that the run reads. */
void AddLimits(CLI::App& command);

/** The bounds on the models of this run. */
const SMXMLLimits& LimitsInForce();
