#include "TSLIFFMT/environment_kinds.h"

#include <algorithm>

#include "TSLGLOB/dataset.h"
#include "mxlibRes/gower.h"

namespace {

bool HasType(VariableType type) {
    return std::find(envVarType, envVarType + nenv, type) != envVarType + nenv;
}

}  // namespace

void FlagVariableTypes() {
    if (HasType(kBinaryVariable)) temEnvBin = 1;
    if (HasType(kNominalVariable)) temEnvQual = 1;
    if (HasType(kIntervalVariable) || HasType(kOrdinalVariable)) temEnvQuant = 1;
}

bool TypesAreMixed() {
    return temEnvBin + temEnvQual + temEnvQuant >= 2;
}

EnvironmentKind KindOfOneType() {
    return temEnvQual != 0 ? kQualitative : temEnvQuant != 0 ? kDifferentUnits : kOnlyBinary;
}
