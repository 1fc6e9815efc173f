#pragma once

#include "tools/smodel/command.h"
#include "objects/face/smmodeldocument_002_000.h"

/** Adds `--limits` to a command that reads models. What it is given holds for every model that the run reads. */
void AddLimits(const Command& command);

/** The bounds on the models of this run. */
const SMXMLLimits& LimitsInForce();
