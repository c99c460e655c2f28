/* Copies its argument into eight characters: one that is too long must end the program with a damaged frame's code. */
#include <stdio.h>

static __attribute__((noinline)) void Copy(const char* from) {
    char kept[8];
    volatile char* to = kept;
    while (*from) *to++ = *from++;
    *to = 0;
    puts(kept);
}

int main(int count, char** arguments) {
    if (count > 1) Copy(arguments[1]);
    return 0;
}
