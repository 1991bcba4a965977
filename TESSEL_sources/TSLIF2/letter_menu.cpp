#include "TSLIF2/letter_menu.h"

#include <cctype>
#include <cstdio>

#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"

int AskLetter(const LetterMenu& menu) {
    std::fputs("Type option: ", out);
    const int letter = std::toupper(ReadCharIn(menu.accepted));
    std::fputs(menu.afterAnswer, out);
    return letter;
}

bool RunEntry(const LetterMenu& menu, int letter) {
    for (const MenuEntry& entry : menu.entries)
        if (entry.letter == letter && entry.run != nullptr) {
            entry.run();
            return true;
        }
    return false;
}
