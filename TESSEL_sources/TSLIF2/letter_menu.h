#pragma once
/// \file
/// Menus of letters: a table of what each letter starts.

#include <span>

/// What a letter of a menu starts; null leaves the menu.
struct MenuEntry {
    char letter;
    void (*run)();
};

struct LetterMenu {
    const char* options;
    const char* accepted;
    const char* afterAnswer;
    std::span<const MenuEntry> entries;
};

/// Asks for a letter of the menu and gives it in upper case.
int AskLetter(const LetterMenu& menu);

/// Runs the entry of a letter; false for the entry that leaves the menu.
bool RunEntry(const LetterMenu& menu, int letter);
