#pragma once
/// \file
/// Groups of communities as the user defines them. Results: number of groups, group of each of n
/// communities (from 1), labels of the groups (room for n labels of 4 characters). Communities
/// stand in messages as `word`, "communities", and under their labels in memory.

/// Groups of communities that follow go to the first of the session's partitions: nGroups, groupRel
/// and grLabel.
void PrepareGroups();

/// Gives n groups the labels 1, 2, ...
void NumberGroups(int n, char** labels);

/// Any groups, none included.
void SettingAnyGroups(int n, int* groups, int* membership, char** labels, const char* word);

/// Pairs. With the order in which each 2nd community follows its 1st one, the pairs have the
/// numbers 1, 3, 5 and so on; there are n / 2 groups all the same, so that later pairs and even
/// numbers have no part in what is made of the groups. Of an odd number of communities the last one
/// is in no group.
void SettingNewReleves(int n, int* groups, int* membership, char** labels);
