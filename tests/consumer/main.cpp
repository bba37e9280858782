#include <cstdio>

#include <dorsel/dorsel.h>
#include <platform/cstring.h>

int main() {
    CString text("chantier d'\xE9t\xE9");
    text.MakeUpper();
    std::printf("%d %d\n", pvg.size, text.GetLength());
    return pvg.size == 4464 && text == "CHANTIER D'\xC9T\xC9" ? 0 : 1;
}
