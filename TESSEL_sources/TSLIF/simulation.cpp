#include "TSLIF/simulation.h"

#include <cstdio>

#include "TSLGLOB/shell.h"

void IFAssemblyRulesSimulation_EnvFeedback_TypeI_II_Error() {
    std::fprintf(out, "The simulation of community assembly is not available in this version.\n");
}
