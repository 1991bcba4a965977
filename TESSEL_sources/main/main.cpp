#include "TSLIF/menus.h"

int main() {
    mainInit();
}
