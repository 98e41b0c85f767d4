#include "bench/comparison.h"

int main(int argc, char** argv) {
    return lq::bench::RunAndCompare(argc, argv);
}
