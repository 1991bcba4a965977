#include "TSLIF/simulation/data_set_scratch.h"

#include <initializer_list>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFMT/raw_files.h"
#include "mxlibDim/dim.h"

DataSetScratch::DataSetScratch(int traits, int OTUs) {
    RequireRoomForTable(traits, kLabelLength + 1, sizeof(char));
    RequireRoomForTable(OTUs, traits, sizeof(float));
    FreeGlobals2();
    hasTraitGroups = hasPhylogeny = includePhylogeny = 0;
    temEnvQuant = temEnvQual = temEnvBin = 0;
    nch = traits;
    tcst = OTUs;
    nSpp = 0;
    chLabel = dim2Dchar(nch, kLabelLength + 1);
    chtype = dim1Dint(nch);
    weight = dim1Dfloat(nch);
    nchor = dim1Dint(nch);
    nGrPoly = dim1Dint(nch);
    partition_OTUs = dim1Dint(tcst);
}

DataSetScratch::~DataSetScratch() {
    FreeGlobals2();
    for (int** memberships : {&nestingMembershipOTUs, &partition_OTUs_Phyl}) {
        free1D(*memberships);
        *memberships = nullptr;
    }
}
