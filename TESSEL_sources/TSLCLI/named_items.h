#pragma once
/// \file
/// Items of a session that an option or a table names.

#include <string>
#include <string_view>

#include "TSLCLI/name_matching.h"
#include "TSLIFFMT/selection.h"

/// The longest of the names with which the text begins, behind which `end` or its end stands;
/// empty for none.
std::string_view NameAtStart(std::string_view text, const Names& known, char end);

/// The names behind an option: parted at the commas that are not within one of the known names.
Names NamesAsGiven(const Names& given, const Names& known);

/// The places of the wanted names among `names` or, where it is none of them, among as many labels
/// (null without any). Fails for a name that is neither, under the name of the file it stands in;
/// `what` it would name: "community".
Selection PlacesOfNames(const std::string& file, const char* what, const Names& wanted,
                        const Names& names, const char* const* labels);

/// The same of the names behind an option, as given. An unknown one, or one given twice, is wrong
/// usage.
Selection PlacesOfOption(const char* option, const char* what, const Names& given,
                         const Names& names, const char* const* labels);
