#include "app/LaunchChain.h"

int main(int argc, char** argv) {
    return tw::LaunchChain::run(argc, argv);
}
