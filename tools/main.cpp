#include <cstdio>

int main() {
    std::printf("vexor %s\n", VEXOR_VERSION);
    return 0;
}
