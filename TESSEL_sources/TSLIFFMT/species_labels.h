#pragma once
/// \file
/// Labels of species, made from their names.

inline constexpr int kSpeciesLabelLength = 4;

/// Puts a label and a blank before each of the n names (room for 71 bytes each), of which 65
/// characters remain. The label is the first two characters of the name and the first two of its
/// next word. While an earlier species has the same label it is altered: each character in turn to
/// upper case; then each in turn raised by one code value (to '!' from a control character, so that
/// a name stays one line); then it counts on through the characters '!' to '~', the last character
/// the fastest.
void LabelSpecies(int n, char** names);
