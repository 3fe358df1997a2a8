/* Tells whether this machine runs 32-bit Windows code: built for x86 and
   started under Wine, it prints its token and the answer of IsWow64Process. */
#include <stdio.h>
#include <windows.h>

int main(void)
{
    BOOL wow64 = FALSE;
    IsWow64Process(GetCurrentProcess(), &wow64);
    printf("zor-x86-probe %s\n", wow64 ? "wow64" : "native");
    return 0;
}
