#include "TSLCLI/named_items.h"

#include "TSLCLI/delimited_table.h"
#include "TSLCLI/failure.h"

Selection PlacesOfNames(const std::string& where, const Names& wanted, const Names& names,
                        const char* const* labels) {
    Selection places = PlacesAmong(wanted, names);
    const Names byLabel = labels == nullptr ? Names() : Names(labels, labels + names.size());
    const Selection labelled = PlacesAmong(wanted, byLabel);
    for (std::size_t i = 0; i < wanted.size(); i++) {
        if (places[i] < 0) places[i] = labelled[i];
        if (places[i] < 0)
            FailRun(where + ": the session has no " + Quoted(wanted[i]) +
                    NearestTo(wanted[i], names));
    }
    return places;
}
