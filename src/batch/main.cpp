// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/RunBatch.h"

#include <iostream>

int main(int argc, char** argv)
{
    return RunBatch({argv + 1, argv + argc}, std::cout, std::cerr);
}
