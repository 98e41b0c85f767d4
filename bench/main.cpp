#include "bench/comparison.h"
#include "bench/launcher.h"

int main(int argc, char** argv) {
    lq::bench::StartLauncher();
    return lq::bench::RunAndCompare(argc, argv);
}
